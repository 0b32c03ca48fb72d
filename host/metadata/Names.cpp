#include "host/metadata/Names.h"

#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/Element.h"
#include "host/metadata/MetadataSet.h"
#include "host/metadata/PartitionDictionary.h"

namespace Corvid::Metadata {

std::string className(const MetadataSet& set) {
    return set.metaMetadataSet() == nullptr ? Platform::toUtf8(set.key().toString())
                                            : MetaMetadata::tagName(*set.metaMetadataSet());
}

std::string propertyName(const PartitionDictionary& tags, const Element& element) {
    if (const auto* definition = element.definition()) {
        return MetaMetadata::tagName(*definition);
    }
    const Types::LocalTag tag(element.metaAttribute()->facts().localTag);
    const auto* const label = tags.find(tag, true);
    if (label == nullptr) {
        return "tag " + Platform::toUtf8(tag.toString());
    }
    const auto* const definition = tags.dictionary()->findElement(*label);
    return definition == nullptr ? Platform::toUtf8(label->toString())
                                 : MetaMetadata::tagName(*definition);
}

} // namespace Corvid::Metadata
