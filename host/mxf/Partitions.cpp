#include "host/mxf/Partitions.h"

#include "host/base/Exceptions.h"
#include "host/mxf/Keys.h"
#include "host/mxf/PartitionWalk.h"
#include "host/mxf/RandomIndexPack.h"
#include "host/types/FixedBytes.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>

namespace Corvid::mxf {

namespace {

using Exceptions::InvalidLength;

std::string at(std::uint64_t offset) { return "byte " + std::to_string(offset); }

/// Reads the partition pack whose head has been read, and of its value no more than it needs.
/// @param end  of what may be the partition's.
/// @throws InvalidLength  the source ends before the fields of fixed size do.
Partition readPack(DataIO::ReadWindow& window, const KLV::Triplet& triplet, std::uint64_t end) {
    const auto value = [&](std::uint64_t size) {
        const auto view = window.view(
            triplet.valueOffset(), static_cast<std::size_t>(std::min(triplet.length.value, size)));
        return Types::ByteView{view.data, view.size};
    };
    const Types::ByteView head = value(partitionPackHead);
    const std::uint64_t labelsOffset = triplet.valueOffset() + partitionPackHead;
    std::uint64_t labels = 0;
    if (head.size == partitionPackHead && labelsOffset < end) {
        const auto count = Types::readBigEndian<Types::u32>(head.data + partitionPackHead - 8);
        labels = std::min<std::uint64_t>(
            std::min<std::uint64_t>(count, greatestEssenceContainerCount) * KLV::Key::length,
            end - labelsOffset);
    }
    return {triplet, parsePartitionPack(triplet.key, value(partitionPackHead + labels)), end};
}

class Finder {
public:
    Finder(DataIO::ReadWindow& window, const Partition& header, WarningSink& warnings)
        : window_(window), warnings_(warnings), front_(header.offset()), origin_(originOf(header)) {
        found_.emplace(header.offset(), header);
    }

    Partitions find() {
        const bool complete = takeRandomIndexPack();
        const bool footerIsNew = takeFooter();
        if (!complete || footerIsNew) {
            followChain();
        }
        if (!complete && leadsNowhere()) {
            takeWalk(walkPartitions(window_, found_.begin()->second));
        }
        return wholePartitions();
    }

private:
    /// The partitions that were found, as far as each reaches.
    Partitions wholePartitions() {
        Partitions result;
        result.reserve(found_.size());
        for (auto each = found_.begin(); each != found_.end(); ++each) {
            const auto next = std::next(each);
            result.push_back(readPack(window_, each->second.triplet,
                                      next == found_.end() ? Partition().end : next->first));
        }
        return result;
    }

    void warn(const WarningKind& kind, std::uint64_t offset, std::string text) {
        Warning warning(kind, std::move(text));
        warning.offset = offset;
        warnings_.warn(warning);
    }

    /// The partition at an offset in the file, but for its list of essence containers, or nothing.
    std::optional<Partition> readAt(std::uint64_t offset) {
        try {
            const KLV::Triplet triplet = KLV::readTriplet(window_, offset);
            if (isPartitionPack(triplet.key)) {
                return readPack(window_, triplet, triplet.valueOffset());
            }
        } catch (const InvalidLength&) {
            // Nothing that could be a pack; the caller knows what named it.
        }
        return std::nullopt;
    }

    /// Takes in the partition at an offset that counts from the header partition.
    /// @param named    the offset.
    /// @param namedAt  where in the file it is, in bytes.
    /// @param source   what names it.
    /// @return false where there is none.
    bool take(std::uint64_t named, std::uint64_t namedAt, const std::string& source) {
        if (named < origin_.missing) {
            return true; // that these bytes are missing is a warning already
        }
        const std::uint64_t offset = named - origin_.missing + origin_.runIn;
        if (offset < origin_.runIn || window_.source().available(offset, 1) == 0) {
            warn(WarningKinds::partitionPastEnd, namedAt,
                 source + " names a partition at " + at(offset < origin_.runIn ? named : offset) +
                     ", past the end of the file");
            return false;
        }
        if (found_.count(offset) != 0) {
            return true;
        }
        auto partition = readAt(offset);
        // Some writers count from the front of the run-in.
        if (!partition && origin_.runIn != 0) {
            if (found_.count(named) != 0) {
                return true;
            }
            partition = readAt(named);
        }
        if (!partition) {
            warn(WarningKinds::partitionNotFound, namedAt,
                 source + " names a partition at " + at(offset) +
                     ", where there is no partition pack");
            return false;
        }
        add(std::move(*partition));
        return true;
    }

    void add(Partition partition) {
        if (partition.pack.thisPartition != placeOf(partition)) {
            warn(WarningKinds::thisPartition, partition.offset(),
                 "ThisPartition is " + std::to_string(partition.pack.thisPartition) +
                     ", expected " + std::to_string(placeOf(partition)));
        }
        found_.emplace(partition.offset(), std::move(partition));
    }

    bool takeRandomIndexPack() {
        const auto pack = findRandomIndexPack(window_, warnings_);
        if (!pack) {
            return false;
        }
        Templates::vector<std::uint64_t> offsets;
        offsets.reserve(pack->entries.size());
        for (const auto& entry : pack->entries) {
            offsets.push_back(entry.offset);
        }
        std::sort(offsets.begin(), offsets.end());
        offsets.erase(std::unique(offsets.begin(), offsets.end()), offsets.end());
        // One lie, and the rest is not worth looking at: it may be as long as the file.
        return std::all_of(offsets.begin(), offsets.end(), [&](std::uint64_t offset) {
            return take(offset, pack->offset, "the random index pack");
        });
    }

    /// @return whether the footer partition was not known before.
    bool takeFooter() {
        const std::size_t before = found_.size();
        const PartitionPack& header = found_.begin()->second.pack;
        if (header.footerPartition != 0) {
            take(header.footerPartition, front_, "FooterPartition");
        }
        return found_.size() != before;
    }

    void followChain() {
        auto current = std::prev(found_.end());
        // The offsets must go down, so no chain is endless.
        while (current->first != front_) {
            const std::uint64_t previous = current->second.pack.previousPartition;
            if (previous >= placeOf(current->second)) {
                warn(WarningKinds::previousPartition, current->first,
                     "PreviousPartition is " + std::to_string(previous) +
                         ", expected less than the partition's own " +
                         std::to_string(placeOf(current->second)));
                return;
            }
            if (!take(previous, current->first, "PreviousPartition")) {
                return;
            }
            current = std::prev(current);
        }
    }

    /// Whether others than the header partition may exist, and nothing says where. A closed header
    /// partition has the metadata that counts, so its broken offset is not worth a search.
    bool leadsNowhere() const {
        const PartitionPack& header = found_.begin()->second.pack;
        return found_.size() == 1 && (header.footerPartition == 0 || !header.isClosed());
    }

    void takeWalk(PartitionWalk walk) {
        using End = PartitionWalk::End;
        const std::size_t count = walk.partitions.size();
        for (Partition& partition : walk.partitions) {
            add(std::move(partition));
        }
        if (count != 0) {
            warn(WarningKinds::partitionsSearched, front_,
                 std::string(found_.begin()->second.pack.footerPartition == 0
                                 ? "nothing in the file says where its partitions are; "
                                 : "what the file says does not lead to its partitions; ") +
                     std::to_string(count) + " found after the " +
                     found_.begin()->second.pack.kindName() +
                     " partition by going from KLV to KLV");
        }
        const std::string ended = "the search for partitions ended here";
        if (walk.end == End::limit) {
            warn(WarningKinds::partitionSearchEnded, walk.offset,
                 ended + " after " + std::to_string(greatestWalk) +
                     " KLVs, so there may be others");
        } else if (walk.end == End::noKlv) {
            warn(WarningKinds::partitionSearchEnded, walk.offset,
                 ended + ", where no KLV begins, so there may be others");
        } else if (walk.end == End::cutKlv) {
            warn(WarningKinds::partitionSearchEnded, walk.offset,
                 ended + ", in a KLV that runs past the end of the file");
        }
    }

    /// The offset of a partition as the packs of the file count.
    std::uint64_t placeOf(const Partition& partition) const noexcept {
        return partition.offset() - origin_.runIn + origin_.missing;
    }

    DataIO::ReadWindow& window_;
    WarningSink& warnings_;
    std::uint64_t front_; ///< of the first partition, in bytes from the front of the file
    Origin origin_;
    std::map<std::uint64_t, Partition> found_;
};

/// The offset of the first partition pack's key, or nothing.
std::optional<std::uint64_t> searchPartitionPack(DataIO::ReadWindow& window) {
    constexpr std::size_t piece = 4096;
    for (std::size_t start = 0; start <= greatestRunIn; start += piece) {
        const std::size_t places = std::min(piece, greatestRunIn + 1 - start);
        const auto bytes = window.view(start, places + KLV::Key::length - 1);
        for (std::size_t i = 0; i + KLV::Key::length <= bytes.size; ++i) {
            if (bytes.data[i] == 0x06 && isPartitionPack(KLV::Key(bytes.data + i))) {
                return start + i;
            }
        }
        if (bytes.size < places + KLV::Key::length - 1) {
            break;
        }
    }
    return std::nullopt;
}

} // namespace

Partition findHeaderPartition(DataIO::ReadWindow& window, WarningSink& warnings) {
    const auto offset = searchPartitionPack(window);
    if (!offset) {
        const auto searched = window.source().available(0, greatestRunIn + KLV::Key::length);
        throw Exceptions::InvalidFormat(
            searched == 0 ? std::string("the file is empty")
                          : "not an MXF file: no partition pack in the first " +
                                std::to_string(searched) + (searched == 1 ? " byte" : " bytes"),
            CORVID_HERE);
    }
    Partition header;
    try {
        header = readPack(window, KLV::readTriplet(window, *offset), Partition().end);
    } catch (const InvalidLength& error) {
        throw InvalidLength("the first partition pack, at " + at(*offset) +
                                ", can't be read: " + Platform::toUtf8(error.message()),
                            CORVID_HERE);
    }
    if (header.pack.kind != PartitionKind::header) {
        const std::uint64_t missing = originOf(header).missing;
        Warning warning(WarningKinds::noHeaderPartition,
                        std::string("the first partition is a ") + header.pack.kindName() +
                            " partition, expected the header partition" +
                            (missing == 0
                                 ? ""
                                 : "; its ThisPartition is " +
                                       std::to_string(header.pack.thisPartition) + ", so " +
                                       std::to_string(missing) + " bytes are missing before it"));
        warning.offset = *offset;
        warnings.warn(warning);
    }
    return header;
}

Origin originOf(const Partition& first) noexcept {
    // Only a header partition is where offsets count from.
    const std::uint64_t place =
        first.pack.kind == PartitionKind::header ? 0 : first.pack.thisPartition;
    return place <= first.offset() ? Origin{first.offset() - place, 0}
                                   : Origin{0, place - first.offset()};
}

Partitions findPartitions(DataIO::ReadWindow& window, const Partition& header,
                          WarningSink& warnings) {
    return Finder(window, header, warnings).find();
}

} // namespace Corvid::mxf
