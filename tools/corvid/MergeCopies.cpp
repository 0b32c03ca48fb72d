#include "tools/corvid/MergeCopies.h"

#include "host/dataio/Memory.h"
#include "host/mxf/LocalSet.h"
#include "tools/corvid/SetValues.h"

#include <map>
#include <optional>
#include <set>

namespace Corvid::Tool {

namespace {

using Metadata::DarkMetadataSet;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;

std::string bytesOf(const MetadataSet& set, Metadata::PartitionDictionary& primer) {
    DataIO::Memory::MemoryDataSink sink;
    set.serialize(sink, primer);
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

/// Key, octets of the length and value.
std::string bytesOf(const DarkMetadataSet& set) {
    const auto& key = set.key().bytes();
    std::string bytes(key.begin(), key.end());
    bytes += static_cast<char>(set.berLength());
    return bytes.append(set.value()->begin(), set.value()->end());
}

bool isInstanceUID(Types::u16 tag, const Metadata::PartitionDictionary& primer) {
    const auto* const label = primer.find(Types::LocalTag(tag), true);
    return label != nullptr &&
           label->withoutVersion() ==
               Metadata::Structural::StructuralMetadataULs::instanceUID().withoutVersion();
}

std::optional<Types::UUID> identifierOf(const DarkMetadataSet& set,
                                        const Metadata::PartitionDictionary& primer) {
    std::optional<Types::UUID> identifier;
    if (!KLV::isLocalSet(set.key())) {
        return identifier;
    }
    mxf::LocalSet properties(set.key(), {set.value()->begin(), set.value()->size()});
    while (const auto property = properties.next()) {
        if (!identifier && Types::UUID::fits(property->value) &&
            isInstanceUID(property->tag, primer)) {
            identifier = Types::UUID(property->value);
        }
    }
    return properties.atEnd() ? identifier : std::nullopt;
}

void mergeSets(PartitionMetadata& metadata, MergedCopies& merged) {
    Templates::vector<const MetadataSet*> copies;
    for (const MetadataSet* set : metadata) {
        const auto sameIdentifier = metadata.resolve(set->instanceUID());
        if (!set->hasInstanceUID() || sameIdentifier.size() == 1 ||
            &sameIdentifier.front() != set) {
            continue;
        }
        std::set<std::string> seen;
        for (const MetadataSet* copy : sameIdentifier) {
            if (!seen.insert(bytesOf(*copy, metadata.partitionDictionary())).second) {
                copies.push_back(copy);
            } else if (copy != set) {
                merged.unequal.push_back({className(*copy), copy->instanceUID()});
            }
        }
    }
    merged.equal += copies.size();
    metadata.remove(copies);
}

void mergeDarkSets(PartitionMetadata& metadata, MergedCopies& merged) {
    std::map<Types::UUID, std::set<std::string>> seen;
    for (auto set = metadata.darkBegin(); set != metadata.darkEnd();) {
        const auto identifier = identifierOf(**set, metadata.partitionDictionary());
        if (identifier) {
            auto& copies = seen[*identifier];
            if (!copies.insert(bytesOf(**set)).second) {
                ++merged.equal;
                set = metadata.removeDark(set);
                continue;
            }
            if (copies.size() != 1) {
                merged.unequal.push_back({Platform::toUtf8((*set)->key().toString()), *identifier});
            }
        }
        ++set;
    }
}

} // namespace

MergedCopies mergeCopies(PartitionMetadata& metadata) {
    MergedCopies merged;
    mergeSets(metadata, merged);
    mergeDarkSets(metadata, merged);
    return merged;
}

} // namespace Corvid::Tool
