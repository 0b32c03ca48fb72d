#include "XMLBuilder/json/SetBytes.h"

#include "host/klv/BerInput.h"
#include "host/mxf/LocalSet.h"

#include <algorithm>
#include <vector>

namespace Corvid::XMLBuilder {

SetPlaces::SetPlaces(const Metadata::PartitionMetadata& partition, const mxf::SetOffsets& offsets) {
    auto offset = offsets.sets.begin();
    for (auto set = partition.begin(); set != partition.end() && offset != offsets.sets.end();
         ++set) {
        offsets_[*set] = *offset++;
    }
    offset = offsets.dark.begin();
    for (auto set = partition.darkBegin();
         set != partition.darkEnd() && offset != offsets.dark.end(); ++set) {
        offsets_[*set] = *offset++;
    }
}

std::optional<std::uint64_t> SetPlaces::offsetOf(const void* set) const {
    const auto found = offsets_.find(set);
    return found == offsets_.end() ? std::nullopt : std::make_optional(found->second);
}

SetBytes::SetBytes(const Metadata::MetadataSet& set, Metadata::PartitionDictionary& primer)
    : sink_(set.serializedSize()) {
    std::vector<const Metadata::Element*> stored(set.invalidBegin(), set.invalidEnd());
    for (const auto& [label, element] : set.made()) {
        stored.push_back(element);
    }
    stored.erase(std::remove_if(stored.begin(), stored.end(),
                                [](const auto* element) { return element->isSkipped(); }),
                 stored.end());
    std::sort(stored.begin(), stored.end(),
              [](const auto* a, const auto* b) { return a->position() < b->position(); });
    set.serialize(sink_, primer);
    const Types::u8* const bytes = sink_.rawBuffer();
    const std::size_t head = KLV::Key::length + KLV::berOctetsFromFirst(bytes[KLV::Key::length]);
    mxf::LocalSet properties(set.key(), {bytes + head, sink_.serializedSize() - head});
    for (const auto* const element : stored) {
        if (const auto property = properties.next()) {
            properties_.insert(
                {element,
                 {Types::LocalTag(property->tag), head + property->offset, property->value}});
        }
    }
}

} // namespace Corvid::XMLBuilder
