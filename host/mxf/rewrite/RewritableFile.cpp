#include "host/mxf/rewrite/RewritableFile.h"

#include "host/base/Exceptions.h"
#include "host/mxf/HeaderMetadataReader.h"
#include "host/mxf/Keys.h"
#include "host/mxf/rewrite/EditedHeader.h"
#include "host/mxf/rewrite/PackContainers.h"

#include <algorithm>
#include <numeric>

namespace Corvid::mxf {

namespace {

std::string at(std::uint64_t offset) { return "byte " + std::to_string(offset); }

/// The bytes of which a growth is a multiple.
std::uint64_t stepOf(const Partitions& partitions, std::uint64_t blockSize) {
    std::uint64_t step = std::max<std::uint64_t>(blockSize, 1);
    for (const Partition& partition : partitions) {
        step = std::lcm(step, std::max<std::uint64_t>(partition.pack.kagSize, 1));
        if (step > greatestGrowthStep) {
            throw Exceptions::LimitExceeded(at(partition.offset()) + ": the KAG size " +
                                                std::to_string(partition.pack.kagSize) +
                                                " lets header metadata grow only in steps of " +
                                                std::to_string(step) + " bytes, expected at most " +
                                                std::to_string(greatestGrowthStep),
                                            CORVID_HERE);
        }
    }
    return step;
}

/// Where the fill ends that follows a partition pack.
std::uint64_t endOfFill(DataIO::ReadWindow& window, const Partition& partition) {
    std::uint64_t end = partition.triplet.end();
    try {
        KLV::Triplet next = KLV::readTriplet(window, end);
        while (isFill(next.key) && next.end() <= partition.end) {
            end = next.end();
            next = KLV::readTriplet(window, end);
        }
    } catch (const Exceptions::InvalidLength&) {
        // The file ends here, or goes on with something that is no KLV.
    }
    return end;
}

} // namespace

/// Plans one rewrite, from the front of the file to its end.
class RewritableFile::Planner {
public:
    Planner(RewritableFile& file, const FileEdit& edit, const Growth& growth)
        : file_(file), edit_(edit), growth_(growth) {
        result_.oldSize = file.window_.source().size();
        for (const CopyEdit& copy : edit.copies) {
            requirePartition(copy.partition);
            if (!copies_.emplace(copy.partition, &copy.edit).second) {
                throw Exceptions::InvalidArgument(
                    "the edit names the header metadata of partition " +
                        std::to_string(copy.partition) + " twice",
                    CORVID_HERE);
            }
        }
    }

    Rewrite plan() {
        for (std::size_t i = 0; i != file_.partitions().size(); ++i) {
            shifts_.push_back(shift_);
            planCopy(i);
        }
        if (shift_ != 0) {
            moveOffsets();
        }
        for (const PackEdit& edit : edit_.packs) {
            planPack(edit);
        }
        std::sort(result_.writes.begin(), result_.writes.end(),
                  [](const ByteRange& a, const ByteRange& b) { return a.offset < b.offset; });
        return std::move(result_);
    }

private:
    void requirePartition(std::size_t number) const {
        if (number >= file_.partitions().size()) {
            throw Exceptions::InvalidArgument("the edit names partition " + std::to_string(number) +
                                                  ", the last is " +
                                                  std::to_string(file_.partitions().size() - 1),
                                              CORVID_HERE);
        }
    }

    void planCopy(std::size_t number) {
        static const HeaderEdit nothing;
        const auto found = copies_.find(number);
        const bool isEdited = found != copies_.end();
        if (!isEdited && (shift_ == 0 || !file_.hasMetadata(number))) {
            return;
        }
        const HeaderLayout& layout = file_.layout(number);
        EditedHeader header(layout, isEdited ? *found->second : nothing);
        if (!isEdited && !header.hasOffsets()) {
            return;
        }
        std::uint64_t extra = 0;
        if (const std::uint64_t missing = header.fit(0, shift_)) {
            extra = grow(header, missing, layout);
        }
        for (ByteRange& range :
             differences(EditedHeader::segmentsOf(layout, shift_), header.segments())) {
            result_.writes.push_back(std::move(range));
        }
        if (extra != 0) {
            result_.insertions.push_back({layout.end(), extra});
            patch(number, PackFields::headerByteCount,
                  layout.partition().pack.headerByteCount + extra);
            shift_ += extra;
        }
    }

    std::uint64_t grow(EditedHeader& header, std::uint64_t missing, const HeaderLayout& layout) {
        file_.map_.requireTrust();
        if (!layout.hasTrueByteCount()) {
            throw Exceptions::InvalidFormat(
                at(layout.partition().offset()) + ": HeaderByteCount is " +
                    std::to_string(layout.partition().pack.headerByteCount) + ", expected " +
                    std::to_string(layout.size()) + ", so the header metadata can't grow",
                CORVID_HERE);
        }
        const std::uint64_t step = stepOf(file_.partitions(), growth_.blockSize);
        const std::uint64_t wanted = missing + std::min(growth_.reserve, greatestGrowthStep);
        std::uint64_t extra = (wanted + step - 1) / step * step;
        while (header.fit(extra, shift_) != 0) {
            extra += step; // a gap is left that no fill can fill
        }
        return extra;
    }

    /// Writes a number into a partition pack.
    void patch(std::size_t number, std::uint64_t field, std::uint64_t value) {
        Types::u8 bytes[sizeof value];
        Types::writeBigEndian(bytes, value);
        write(number, field, {bytes, sizeof bytes});
    }

    void write(std::size_t number, std::uint64_t field, Types::ByteView bytes) {
        ByteRange range;
        range.offset = file_.partitions()[number].triplet.valueOffset() + shifts_[number] + field;
        append(range.bytes, bytes);
        result_.writes.push_back(std::move(range));
    }

    /// Lets packs and random index pack name the partitions where they will be.
    void moveOffsets() {
        const Partitions& all = file_.partitions();
        for (std::size_t i = 0; i != all.size(); ++i) {
            const PartitionPack& pack = all[i].pack;
            if (shifts_[i] != 0) {
                patch(i, PackFields::thisPartition, pack.thisPartition + shifts_[i]);
                if (shifts_[i - 1] != 0) {
                    patch(i, PackFields::previousPartition,
                          pack.previousPartition + shifts_[i - 1]);
                }
            }
            if (pack.footerPartition != 0 && shifts_.back() != 0) {
                patch(i, PackFields::footerPartition, pack.footerPartition + shifts_.back());
            }
        }
        if (file_.map_.index) {
            moveIndex(*file_.map_.index);
        }
    }

    void moveIndex(const RandomIndexPack& index) {
        constexpr std::size_t entrySize = 12;
        constexpr std::size_t sidSize = 4;
        const std::uint64_t entries =
            KLV::readTriplet(file_.window_, index.offset).valueOffset() + shift_;
        for (std::size_t i = 0; i != index.entries.size(); ++i) {
            if (shifts_[i] != 0) {
                ByteRange range{entries + i * entrySize + sidSize, Bytes(sizeof(Types::u64))};
                Types::writeBigEndian(range.bytes.data(), index.entries[i].offset + shifts_[i]);
                result_.writes.push_back(std::move(range));
            }
        }
    }

    void planPack(const PackEdit& edit) {
        requirePartition(edit.partition);
        const Partition& partition = file_.partitions()[edit.partition];
        const PartitionPack& pack = partition.pack;
        if (edit.status && *edit.status != pack.status) {
            constexpr std::uint64_t statusByte = 14;
            result_.writes.push_back({partition.offset() + shifts_[edit.partition] + statusByte,
                                      Bytes(1, static_cast<Types::u8>(*edit.status))});
        }
        if (edit.namesFooter && pack.footerPartition == 0) {
            patch(edit.partition, PackFields::footerPartition,
                  file_.partitions().back().offset() - file_.map_.runIn() + shifts_.back());
        }
        if (edit.operationalPattern && *edit.operationalPattern != pack.operationalPattern) {
            const auto& label = edit.operationalPattern->bytes();
            write(edit.partition, PackFields::operationalPattern, {label.data(), label.size()});
        }
        if (edit.essenceContainers) {
            planContainers(edit.partition, *edit.essenceContainers, pack.essenceContainers);
        }
    }

    void planContainers(std::size_t number, const Templates::vector<Types::UniversalLabel>& wanted,
                        const Templates::vector<Types::UniversalLabel>& found) {
        if (wanted.size() != found.size()) {
            const Partition& partition = file_.partitions()[number];
            auto ranges = resizeContainers(file_.window_, partition, wanted);
            if (!ranges) {
                throw Exceptions::InvalidFormat(
                    at(partition.offset()) + ": the partition pack has " +
                        std::to_string(found.size()) + " essence containers and can't have " +
                        std::to_string(wanted.size()) +
                        ": no fill follows it that could make up for the difference",
                    CORVID_HERE);
            }
            for (ByteRange& range : *ranges) {
                range.offset += shifts_[number];
                result_.writes.push_back(std::move(range));
            }
            return;
        }
        for (std::size_t i = 0; i != wanted.size(); ++i) {
            if (wanted[i] != found[i]) {
                const auto& label = wanted[i].bytes();
                write(number, PackFields::essenceContainers + i * label.size(),
                      {label.data(), label.size()});
            }
        }
    }

    RewritableFile& file_;
    const FileEdit& edit_;
    const Growth& growth_;
    Templates::map<std::size_t, const HeaderEdit*> copies_;
    Templates::vector<std::uint64_t> shifts_; ///< of each partition
    std::uint64_t shift_ = 0;                 ///< of what comes next
    Rewrite result_;
};

RewritableFile::RewritableFile(DataIO::RandomAccessSource& source)
    : window_(source), map_(FileMap::of(window_)) {}

RewritableFile::~RewritableFile() = default;

const HeaderLayout& RewritableFile::layout(std::size_t partition) {
    auto& layout = layouts_[partition];
    if (!layout) {
        layout = std::make_unique<HeaderLayout>(window_, map_.partitions.at(partition));
    }
    return *layout;
}

bool RewritableFile::hasMetadata(std::size_t partition) {
    return findHeaderMetadata(window_, map_.partitions.at(partition)).has_value();
}

FileRange RewritableFile::afterMetadata(std::size_t partition) {
    const Partition& of = map_.partitions.at(partition);
    const std::uint64_t end =
        std::min({of.end, map_.index ? map_.index->offset : window_.source().size(),
                  window_.source().size()});
    return {hasMetadata(partition) ? layout(partition).end() : endOfFill(window_, of), end};
}

Rewrite RewritableFile::plan(const FileEdit& edit, const Growth& growth) {
    return Planner(*this, edit, growth).plan();
}

} // namespace Corvid::mxf
