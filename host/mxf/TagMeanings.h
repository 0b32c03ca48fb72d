#pragma once

#include "host/dictionary/MetaElement.h"
#include "host/dictionary/UnknownAttribute.h"
#include "host/metadata/Element.h"
#include "host/metadata/PartitionDictionary.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace Corvid::mxf {

/// What a local tag means in one partition. The attributes are shared by all elements that need
/// one.
struct TagMeaning {
    Types::u16 tag = 0;
    bool inPrimer = false;
    bool isInstanceUID = false;
    /// It is InstanceUID or GenerationUID, of which a document has room for one in a set.
    bool identifies = false;
    const Types::UniversalLabel* label = nullptr;          ///< null for a tag that has none
    const MetaMetadata::MetaElement* definition = nullptr; ///< null for a label that is not known
    /// The attribute in the class that asked last, kept for the many sets of one class.
    const MetaMetadata::MetaMetadataSet* lastClass = nullptr;
    const Metadata::Element::Attribute* lastAttribute = nullptr;
    Metadata::Element::Attribute misplaced; ///< null for a label that is not known
    Metadata::Element::Attribute unknown;
    Metadata::Element::Attribute unfit;

    /// The attribute of the property in a class, or null where it has no place in it.
    const Metadata::Element::Attribute* attributeIn(const MetaMetadata::MetaMetadataSet& set);
    /// The name of the property, or nothing.
    std::string name() const;
};

/// Looks up each tag of a partition once.
class TagMeanings {
public:
    /// @param dictionary  borrowed; must not get further entries.
    explicit TagMeanings(const Metadata::PartitionDictionary& dictionary)
        : dictionary_(dictionary) {}

    TagMeaning& of(Types::u16 tag);

private:
    const Metadata::PartitionDictionary& dictionary_;
    std::unordered_map<Types::u16, TagMeaning> meanings_;
};

} // namespace Corvid::mxf
