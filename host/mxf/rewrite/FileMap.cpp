#include "host/mxf/rewrite/FileMap.h"

#include "host/base/Exceptions.h"
#include "host/mxf/HeaderMetadataReader.h"

namespace Corvid::mxf {

namespace {

/// Keeps the first warning.
class FirstWarning : public WarningSink {
public:
    void warn(const Warning& warning) override {
        if (text.empty()) {
            text = warning.message();
        }
    }

    std::string text;
};

std::string field(const Partition& partition, const char* name, std::uint64_t found,
                  std::uint64_t expected) {
    return "byte " + std::to_string(partition.offset()) + ": " + name + " is " +
           std::to_string(found) + ", expected " + std::to_string(expected);
}

/// What is wrong with the offsets in the packs; empty where all are right.
std::string doubtIn(const FileMap& map) {
    const Partitions& all = map.partitions;
    const auto place = [&map](const Partition& partition) {
        return partition.offset() - map.runIn();
    };
    std::uint64_t previous = 0;
    for (const Partition& partition : all) {
        const PartitionPack& pack = partition.pack;
        if (pack.thisPartition != place(partition)) {
            return field(partition, "ThisPartition", pack.thisPartition, place(partition));
        }
        if (pack.previousPartition != previous) {
            return field(partition, "PreviousPartition", pack.previousPartition, previous);
        }
        if (pack.footerPartition != 0 && (pack.footerPartition != place(all.back()) ||
                                          all.back().pack.kind != PartitionKind::footer)) {
            return field(partition, "FooterPartition", pack.footerPartition, 0) +
                   " or the offset of the last partition, a footer partition";
        }
        previous = place(partition);
    }
    if (!map.index) {
        return {};
    }
    const auto& entries = map.index->entries;
    bool agrees = entries.size() == all.size();
    for (std::size_t i = 0; agrees && i != all.size(); ++i) {
        agrees = entries[i].offset == place(all[i]);
    }
    return agrees ? std::string()
                  : "byte " + std::to_string(map.index->offset) +
                        ": the random index pack does not list the partitions of the file in "
                        "their order";
}

/// Whether the file says where all its partitions are.
bool isListed(const FileMap& map) {
    return map.index ||
           (map.partitions.size() > 1 && map.partitions.front().pack.footerPartition != 0);
}

} // namespace

FileMap FileMap::of(DataIO::ReadWindow& window) {
    FirstWarning warnings;
    FileMap map;
    const Partition header = findHeaderPartition(window, warnings);
    map.partitions = findPartitions(window, header, warnings);
    map.index = findRandomIndexPack(window, warnings);
    map.doubt = warnings.text;
    if (map.doubt.empty()) {
        map.doubt = doubtIn(map);
    }
    // Fill after the pack is not counted.
    const auto metadata = findHeaderMetadata(window, header);
    const std::uint64_t end =
        (metadata ? metadata->triplet.offset : header.triplet.end()) + header.pack.headerByteCount;
    const bool isAll = map.partitions.size() == 1 && window.source().available(0, end + 1) <= end;
    if (map.doubt.empty() && !isListed(map) && !isAll) {
        map.doubt = "neither a random index pack nor FooterPartition says where the partitions of "
                    "the file are";
    }
    return map;
}

void FileMap::requireTrust() const {
    if (!doubt.empty()) {
        throw Exceptions::InvalidFormat("the header metadata can't grow, because not all offsets "
                                        "in the file are certain: " +
                                            doubt,
                                        CORVID_HERE);
    }
}

} // namespace Corvid::mxf
