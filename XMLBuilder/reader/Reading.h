#pragma once

#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/ChildSteps.h"
#include "XMLBuilder/reader/ExtensionTags.h"
#include "XMLBuilder/reader/InstanceNameTable.h"
#include "XMLBuilder/reader/PrefixScope.h"
#include "XMLBuilder/reader/SetDefinitionIndex.h"
#include "XMLBuilder/reader/Supplement.h"
#include "host/dictionary/Dictionary.h"

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Corvid::MetaMetadata {
class MetaElement;
class MetaMetadataSet;
} // namespace Corvid::MetaMetadata

namespace Corvid::Metadata {
class PartitionMetadata;
}

namespace Corvid::XMLBuilder {

/// How a property is looked for in the element of its set.
struct PropertyName {
    enum class Place {
        child,             ///< a child element
        instanceAttribute, ///< the attribute that identifies the set
        otherAttribute,    ///< another attribute
    };

    explicit PropertyName(const MetaMetadata::MetaElement& definition);

    ChildStep step;
    Place place;
    std::u16string attribute; ///< the qualified name of the attribute; empty for a child
};

/// A property that a set may have, prepared to be looked for in many sets.
struct ExpectedProperty {
    explicit ExpectedProperty(const MetaMetadata::MetaElement& element)
        : definition(element), name(element) {}

    const MetaMetadata::MetaElement& definition;
    PropertyName name;
};

/// What is being read, for messages.
struct ReadingPlace {
    const xercesc::DOMElement* set = nullptr;   ///< null outside of sets
    const xercesc::DOMNode* property = nullptr; ///< null between the properties of the set

    /// "set Preface 06.0e. ...: rp210:OperationalPattern: message"; the message alone outside of
    /// sets.
    std::string inFrontOf(const std::string& message) const;
};

class OpenSet;

/// What one call of the reader knows: shared by all its visitors, gone when the call returns.
class Reading {
public:
    /// All are borrowed.
    /// @param supplement  null for a document that has nothing but its elements.
    Reading(Metadata::PartitionMetadata& partition, InstanceNameTable& names,
            Supplement* supplement = nullptr);
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    Metadata::PartitionMetadata& partition() noexcept { return partition_; }
    const SetDefinitionIndex& sets() const noexcept { return sets_; }
    InstanceNameTable& names() noexcept { return names_; }
    ExtensionTags& tags() noexcept { return tags_; }
    Supplement* supplement() const noexcept { return supplement_; }

    /// The properties of a class and its ancestors, by label, as its sets list their elements.
    const std::vector<ExpectedProperty>& propertiesOf(const MetaMetadata::MetaMetadataSet& set);

    /// The property that has the name in XML: namespace and tag, first in the order of the
    /// dictionary, or null.
    /// @param qualified  namespace, colon, tag.
    const MetaMetadata::MetaElement* findMetaElementByQualifiedName(
        const std::u16string& qualified);

    /// What prefixes stand for at the root of a document.
    /// @param node  any node of it; the same document in each call.
    PrefixScope& prefixesOfRoot(const xercesc::DOMNode& node);

    /// What the prefix of the parts of values stands for in a document. Without declaration at the
    /// root this fails as the query for a part does.
    const XMLCh* uriOfParts(const Names::Namespace& parts, const xercesc::DOMNode& value);

    /// Passes on that nothing is read from an element at the present place.
    void leaveOut(const xercesc::DOMElement& element) const;

    /// Whoever changes the place puts it back, but not when what it does fails.
    ReadingPlace& place() noexcept { return place_; }

private:
    friend class OpenSet;

    Metadata::PartitionMetadata& partition_;
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary_;
    SetDefinitionIndex sets_;
    InstanceNameTable& names_;
    ExtensionTags tags_;
    Supplement* supplement_;
    std::optional<PrefixScope> prefixesOfRoot_; ///< made on first use
    std::unordered_map<const MetaMetadata::MetaMetadataSet*, std::vector<ExpectedProperty>>
        properties_;
    std::map<std::u16string, const MetaMetadata::MetaElement*> byQualifiedName_;
    ReadingPlace place_;
    std::deque<ChildSteps> children_; ///< one for each depth, kept for the next set there
    OpenSet* innermost_ = nullptr;    ///< the set that is being read; null outside of sets
};

/// A set's element while it is being read.
class OpenSet {
public:
    /// @throws LimitExceeded  sets stand in each other deeper than greatestInlineDepth.
    OpenSet(Reading& reading, const xercesc::DOMElement& element);
    OpenSet(const OpenSet&) = delete;
    OpenSet& operator=(const OpenSet&) = delete;
    ~OpenSet() { reading_.innermost_ = outer_; }

    const ChildSteps& children() const noexcept { return *children_; }
    PrefixScope& prefixes() noexcept { return prefixes_; }

private:
    Reading& reading_;
    OpenSet* outer_;    ///< the set that it stands in, or null
    std::size_t depth_; ///< how many sets are around it
    ChildSteps* children_;
    PrefixScope prefixes_;
};

} // namespace Corvid::XMLBuilder
