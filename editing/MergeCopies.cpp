#include "editing/MergeCopies.h"

#include "host/dataio/Memory.h"
#include "host/metadata/Names.h"
#include "host/mxf/SetReader.h"
#include "host/types/UuidMap.h"

#include <algorithm>
#include <map>
#include <optional>

namespace Corvid::Editing {

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

/// Sets that nobody can take apart are written once each, whatever identifiers their bytes hold.
std::optional<Types::UUID> identifierOf(const DarkMetadataSet& set,
                                        const Metadata::PartitionDictionary& primer) {
    return mxf::identifierOfDarkGroup(set.key(), {set.value()->begin(), set.value()->size()},
                                      primer);
}

/// Counts equal sets of one identifier.
class Copies {
public:
    /// @param ofFirst  how many are equal to the first, where that is known.
    explicit Copies(std::optional<Types::u32> ofFirst) : ofFirst_(ofFirst) {}

    enum class Verdict { first, another, kept, tooMany };
    Verdict add(const std::string& content) {
        const auto [place, isNew] = counts_.try_emplace(content);
        Content& same = place->second;
        same.isFirst = same.isFirst || counts_.size() == 1;
        ++same.count;
        const bool isTooMany = ofFirst_ ? same.isFirst && same.count > *ofFirst_ : !isNew;
        return isNew ? (same.isFirst ? Verdict::first : Verdict::another)
                     : (isTooMany ? Verdict::tooMany : Verdict::kept);
    }

private:
    struct Content {
        bool isFirst = false;
        Types::u32 count = 0;
    };

    std::optional<Types::u32> ofFirst_;
    std::map<std::string, Content> counts_;
};

ExpectedCopies expectedOf(const Types::UUID& identifier, const CopyCounts& counts) {
    const auto count = counts.find(identifier);
    return count == counts.end() ? ExpectedCopies() : count->second;
}

void mergeSets(PartitionMetadata& metadata, const CopyCounts& counts, MergedCopies& merged) {
    if (!metadata.isAmbiguous()) {
        return;
    }
    Templates::vector<const MetadataSet*> copies;
    for (const MetadataSet* set : metadata) {
        const auto sameIdentifier = metadata.resolve(set->instanceUID());
        if (!set->hasInstanceUID() || sameIdentifier.size() == 1 ||
            &sameIdentifier.front() != set) {
            continue;
        }
        const auto count = expectedOf(set->instanceUID(), counts).known;
        Copies seen(count);
        std::size_t nth = 0;
        for (const MetadataSet* copy : sameIdentifier) {
            const auto verdict = seen.add(bytesOf(*copy, metadata.partitionDictionary()));
            if (verdict == Copies::Verdict::tooMany) {
                copies.push_back(copy);
            } else if (verdict == Copies::Verdict::another) {
                merged.unequal.push_back(
                    {className(*copy), copy->instanceUID(), false, nth, count.has_value()});
            }
            ++nth;
        }
    }
    merged.equal += copies.size();
    metadata.remove(copies);
}

void mergeDarkSets(PartitionMetadata& metadata, const CopyCounts& counts, MergedCopies& merged) {
    Types::UuidMap<Copies> seen;
    std::size_t nth = 0;
    for (auto set = metadata.darkBegin(); set != metadata.darkEnd(); ++nth) {
        const auto identifier = identifierOf(**set, metadata.partitionDictionary());
        if (identifier) {
            const auto count = expectedOf(*identifier, counts).dark;
            auto& copies = seen.tryEmplace(*identifier, count).first;
            const auto verdict = copies.add(bytesOf(**set));
            if (verdict == Copies::Verdict::tooMany) {
                ++merged.equal;
                set = metadata.removeDark(set);
                continue;
            }
            if (verdict == Copies::Verdict::another) {
                merged.unequal.push_back({Platform::toUtf8((*set)->key().toString()), *identifier,
                                          true, nth, count.has_value()});
            }
        }
        ++set;
    }
}

} // namespace

MergedCopies mergeCopies(PartitionMetadata& metadata, const CopyCounts& copies) {
    MergedCopies merged;
    mergeSets(metadata, copies, merged);
    mergeDarkSets(metadata, copies, merged);
    return merged;
}

} // namespace Corvid::Editing
