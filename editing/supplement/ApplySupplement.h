#pragma once

#include "editing/supplement/DocumentSupplement.h"
#include "editing/supplement/SupplementOutcome.h"
#include "host/metadata/PartitionMetadata.h"

#include <map>
#include <unordered_set>

namespace Corvid::Editing {

/// Reads a document together with its supplement: hand it to the reader, then call apply().
class SupplementReader final : public XMLBuilder::Supplement {
public:
    /// @param supplement  borrowed.
    explicit SupplementReader(const DocumentSupplement& supplement);

    /// To be called before the document is read.
    void explainTags(Metadata::PartitionDictionary& primer) const;

    const Properties* enter(Metadata::MetadataSet& set, std::u16string_view written) override;
    bool mayBeNameless(const MetaMetadata::MetaMetadataSet& setClass) const override;
    bool isPartial() const override { return supplement_.partial.has_value(); }
    void leaveOut(const std::string& name, const std::string& place) override;

    /// To be called when the document is read, before sets are merged or renamed.
    SupplementOutcome apply(Metadata::PartitionMetadata& metadata);

private:
    using Elements = Templates::vector<Metadata::Element*>;

    /// What is said of one property; one of the two.
    struct Saying {
        const DocumentSupplement::Form* form = nullptr;
        const DocumentSupplement::Bytes* bytes = nullptr;

        const PropertyAddress& address() const {
            return form == nullptr ? bytes->property : form->property;
        }
    };
    /// What is said of the sets that share an address, of each of them or of one.
    struct Group {
        std::map<XMLBuilder::PropertyIdentity, std::vector<Saying>> byProperty;
        const DocumentSupplement::SetKey* key = nullptr;
    };
    struct Sayings {
        Properties properties;
        std::map<std::optional<Types::u32>, Group> groups; ///< by the number of the copy
        Types::u32 met = 0;                                ///< sets so far
    };
    struct Met {
        Metadata::MetadataSet* set;
        const Sayings* sayings;
        Types::u32 copy;
    };

    Sayings& sayingsOf(const SetAddress& address);
    void add(const Saying& saying);
    void applyClassKeys(Metadata::PartitionMetadata& metadata);
    void giveKey(Metadata::MetadataSet& set, const KeyForm& form);
    void applyToSet(const Met& met);
    void applyGroup(Metadata::MetadataSet& set, const Properties& properties, const Group& group);
    Elements applyToProperty(Metadata::MetadataSet& set, const Elements& present,
                             const std::vector<Saying>& sayings);
    void clearEmptyValues(Metadata::MetadataSet& set, const Properties& properties);
    void terminateTexts(Metadata::PartitionMetadata& metadata);
    void overrule(const Metadata::MetadataSet& set, const std::string& what);

    using ClassKey = std::array<unsigned char, KLV::Key::length>;

    const DocumentSupplement& supplement_;
    std::map<Types::UUID, Sayings> ofSets_;
    std::map<ClassKey, Sayings> ofUnidentified_;
    std::map<ClassKey, Types::u32> unidentified_; ///< how many are still to come
    std::vector<Met> met_;
    std::vector<Metadata::MetadataSet*> nameless_;
    std::unordered_set<const Metadata::Element*> settled_; ///< whose end is said
    std::unordered_set<const Metadata::Element*> restored_;
    const Metadata::PartitionDictionary* tags_ = nullptr;
    SupplementOutcome outcome_;
};

} // namespace Corvid::Editing
