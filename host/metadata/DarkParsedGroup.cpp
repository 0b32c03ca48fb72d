#include "host/metadata/DarkParsedGroup.h"

#include "host/dictionary/UnknownAttribute.h"

namespace Corvid::Metadata {

DarkParsedGroup::DarkParsedGroup(PartitionMetadata& partition, const KLV::Key& key)
    : MetadataSet(partition, key, nullptr) {}

DarkParsedGroup::~DarkParsedGroup() = default;

void DarkParsedGroup::setInstanceUID(const Types::UUID& uuid, Types::u16 localTag) {
    Element::Attribute attribute(new MetaMetadata::UnknownAttribute(
        Types::LocalTag(localTag), MetaMetadata::UnknownAttribute::unknownLabel));
    auto& element = static_cast<SimpleElement&>(createElement(
        Structural::StructuralMetadataULs::instanceUID(), std::move(attribute), localTag));
    element.set(uuid.clone());
}

} // namespace Corvid::Metadata
