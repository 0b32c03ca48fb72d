#include "host/mxf/layout/FileRegions.h"

#include "host/base/Exceptions.h"
#include "host/mxf/Keys.h"
#include "host/mxf/RandomIndexPack.h"

#include <algorithm>

namespace Corvid::mxf {

namespace {

using Kind = FileRegion::Kind;

/// Fill items that are looked for between what a pack counts: real files have one.
constexpr int mostFillItems = 16;

class Division {
public:
    Division(DataIO::RandomAccessSource& source, const HeaderMetadata& header)
        : window_(source), header_(header), size_(source.size()) {
        NoWarnings warnings;
        const auto index = findRandomIndexPack(window_, warnings);
        end_ = index ? index->offset : size_;
        limit_ = end_;
    }

    Templates::vector<FileRegion> of(const Partitions& partitions) {
        take(Kind::runIn, partitions.front().offset());
        for (std::size_t i = 0; i != partitions.size(); ++i) {
            number_ = i;
            takePartition(partitions[i]);
        }
        number_.reset();
        take(Kind::other, end_);
        limit_ = size_;
        take(Kind::randomIndex, size_);
        return std::move(regions_);
    }

private:
    /// All up to an offset, if that is ahead; no more than the partition has.
    void take(Kind kind, std::uint64_t end) {
        end = std::min(end, limit_);
        if (end > position_) {
            regions_.push_back({kind, position_, end, number_});
            position_ = end;
        }
    }

    void takeBytes(Kind kind, std::uint64_t count) {
        take(kind, count > limit_ - position_ ? limit_ : position_ + count);
    }

    void takePartition(const Partition& partition) {
        limit_ = end_;
        take(Kind::other, partition.offset());
        limit_ = std::max(position_, std::min(partition.end, end_));
        take(Kind::pack, partition.triplet.end());
        if (const auto start = findHeaderMetadata(window_, partition)) {
            take(Kind::fill, start->triplet.offset);
            if (number_ == header_.partition) {
                take(Kind::metadata, header_.end);
            } else {
                takeBytes(Kind::metadata, partition.pack.headerByteCount);
            }
        }
        takeFill();
        takeBytes(Kind::index, partition.pack.indexByteCount);
        if (partition.pack.status == PartitionStatus::genericStream) {
            take(Kind::stream, limit_);
        } else if (partition.pack.bodySid != 0) {
            take(Kind::essence, limit_);
        }
        takeFill();
        take(Kind::other, limit_);
    }

    void takeFill() {
        try {
            for (int i = 0; i != mostFillItems && position_ < limit_; ++i) {
                const KLV::Triplet triplet = KLV::readTriplet(window_, position_);
                if (!isFill(triplet.key)) {
                    return;
                }
                take(Kind::fill, triplet.end());
            }
        } catch (const Exceptions::InvalidLength&) {
            // What is here is no KLV.
        }
    }

    DataIO::ReadWindow window_;
    const HeaderMetadata& header_;
    std::uint64_t size_;
    std::uint64_t end_ = 0;             ///< of the last partition
    std::uint64_t limit_ = 0;           ///< of the partition at work
    std::uint64_t position_ = 0;        ///< all before is in a region
    std::optional<std::size_t> number_; ///< of the partition at work
    Templates::vector<FileRegion> regions_;
};

} // namespace

const char* nameOf(FileRegion::Kind kind) noexcept {
    switch (kind) {
    case Kind::runIn:
        return "runIn";
    case Kind::pack:
        return "pack";
    case Kind::metadata:
        return "metadata";
    case Kind::index:
        return "index";
    case Kind::essence:
        return "essence";
    case Kind::stream:
        return "stream";
    case Kind::fill:
        return "fill";
    case Kind::randomIndex:
        return "randomIndex";
    case Kind::other:
        break;
    }
    return "other";
}

Templates::vector<FileRegion> fileRegions(DataIO::RandomAccessSource& source,
                                          const Partitions& partitions,
                                          const HeaderMetadata& header) {
    return Division(source, header).of(partitions);
}

} // namespace Corvid::mxf
