#pragma once

#include "XMLBuilder/format/DictionaryNames.h"
#include "XMLBuilder/reader/Supplement.h"
#include "XMLBuilder/reader/strict/Mistakes.h"
#include "host/dictionary/Dictionary.h"
#include "host/types/IdentifierTypes.h"

#include <optional>
#include <string_view>
#include <vector>

namespace Corvid::MetaMetadata {
class MetaElement;
class MetaMetadataSet;
} // namespace Corvid::MetaMetadata

namespace Corvid::Metadata {
class PartitionMetadata;
}

namespace Corvid::XMLBuilder {

/// What a document of people must keep to, where the reader of the library takes what it finds:
/// names count by namespace and local name, and every mistake is reported.
class Strictness {
public:
    /// All are borrowed.
    /// @param supplement  says what a document may do because its file does; may be null.
    Strictness(const MetaMetadata::Dictionary& dictionary, const Supplement* supplement,
               Mistakes& mistakes);

    Mistakes& mistakes() noexcept { return mistakes_; }

    /// The class or property of a name, or null. Of two with one name the first in the dictionary.
    const MetaMetadata::MetaMetadataSet* findSet(const DocumentNode& element) const;
    const MetaMetadata::MetaElement* findProperty(const DocumentNode& element) const;

    /// Reports a root of another name.
    void checkRoot(const DocumentNode& root);
    /// Reports text in the root or in the container of dark sets, but for white space.
    void refuseStrayText(const DocumentNode& text);
    /// Reports an element where a set is expected.
    void refuseSet(const DocumentNode& element);
    /// Reports an element that is none of a set's properties, or there already.
    void refuseProperty(const DocumentNode& element, const MetaMetadata::MetaMetadataSet& setClass);
    /// Checks the name and the attributes of an element of a set's extension elements.
    /// @param definition  of the property; null where no dictionary has it.
    /// @return whether it can be read.
    bool checkExtension(const DocumentNode& element, const MetaMetadata::MetaElement* definition);

    /// Reports the attributes but those of the given local names in a namespace, see ValueRules.h.
    void checkAttributes(const DocumentNode& element, const char16_t* uri,
                         std::initializer_list<const char16_t*> locals);

    /// A set begins; it has to have an identifier of its own.
    /// @param identifier  null where it has none.
    /// @return what that is; nothing where it is reported.
    std::optional<Types::UUID> enterSet(const DocumentNode& element,
                                        const MetaMetadata::MetaMetadataSet& setClass,
                                        const DocumentNode* identifier);
    /// Whether a set was inside the property that owns it.
    bool hasSetsAsValues() const noexcept { return hasSetsAsValues_; }
    /// Checks the name and the attributes of a link.
    /// @return what it links to; nothing after a mistake.
    std::optional<Types::UUID> targetOf(const DocumentNode& link);
    /// Looks for the targets of all links. To be called when the document is read.
    /// @param partition  has all sets of the document.
    void finish(const Metadata::PartitionMetadata& partition);

    /// A dark set was read.
    void enterDarkSet(const DocumentNode& element) {
        darkSets_.push_back({element.line, element.column, ""});
    }
    /// Where the set with an identifier is, in the order of the document, for messages.
    /// @param nth  among those with the identifier, from 0.
    Mistakes::Entry placeOf(const Types::UUID& identifier, std::size_t nth);
    /// Where a dark set is.
    /// @param nth  among all of them, from 0.
    Mistakes::Entry placeOfDarkSet(std::size_t nth) const { return darkSets_.at(nth); }

private:
    struct Named {
        Types::UUID identifier;
        std::size_t line;
        std::size_t column;
    };
    struct Link {
        Types::UUID target;
        std::size_t line;
        std::size_t column;
        const char16_t* set;      ///< the names of the elements around it and its own
        const char16_t* property; //
        const char16_t* name;     //
    };

    bool isKnownLink(const DocumentNode& link);
    bool hasNameOfLink(const DocumentNode& link) const;
    bool checkDarkElement(const DocumentNode& element);
    std::string nearest(const DocumentNode& element, bool isSet) const;

    const MetaMetadata::Dictionary& dictionary_;
    const DictionaryNames& definitions_;
    const Supplement* supplement_;
    Mistakes& mistakes_;
    std::vector<Mistakes::Entry> darkSets_; ///< without text
    std::vector<Named> named_;
    std::vector<Link> links_;
    /// The name of the last link that was known: those of a document have few names, which keep
    /// their places.
    const char16_t* knownLocal_ = nullptr;
    const char16_t* knownUri_ = nullptr;
    bool isSorted_ = false; ///< named_ is, by identifier; only messages need that
    bool hasSetsAsValues_ = false;
};

} // namespace Corvid::XMLBuilder
