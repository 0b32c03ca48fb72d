#pragma once

#include "host/mxf/LocalSet.h"
#include "host/mxf/Partitions.h"
#include "host/mxf/rewrite/Bytes.h"

#include <array>
#include <optional>

namespace Corvid::mxf {

/// A KLV of header metadata.
struct LayoutItem {
    enum class Kind : unsigned char {
        primer,
        set,  ///< a local set whose properties fill it exactly, whether or not its key is known
        dark, ///< any other KLV
        fill,
    };

    Kind kind = Kind::dark;
    KLV::Triplet triplet; ///< in bytes from the front of the file
    std::size_t at = 0;   ///< of its bytes among those of the layout

    std::uint64_t offset() const noexcept { return triplet.offset; }
    std::uint64_t end() const noexcept { return triplet.end(); }
    std::uint64_t size() const noexcept { return end() - offset(); }
};

/// Which byte of one copy of header metadata is what (SMPTE ST 377-1): all KLVs from the primer
/// pack to the end, fill included, with the bytes of all but the values of fill.
///
/// Fill and what follows the metadata are passed over: what is read of them is no more than reading
/// ahead takes, and memory grows with the metadata only.
class CORVID_EXPORT HeaderLayout {
public:
    /// Reads the copy of a partition.
    /// @param partition  as findPartitions() gives it.
    /// @throws InvalidFormat  there is no header metadata, or it is not whole.
    /// @throws LimitExceeded  a KLV is longer than greatestSetSize.
    /// @throws IOError        the bytes can't be read.
    HeaderLayout(DataIO::ReadWindow& window, const Partition& partition);

    const Partition& partition() const noexcept { return partition_; }

    /// From the primer pack, or from the first set where there is none, to the end of the last KLV.
    std::uint64_t begin() const noexcept { return begin_; }
    std::uint64_t end() const noexcept { return end_; }
    std::uint64_t size() const noexcept { return end_ - begin_; }
    /// Whether HeaderByteCount says the same. Where it does not, the metadata ends at the first
    /// key that cannot be metadata.
    bool hasTrueByteCount() const noexcept {
        return partition_.pack.headerByteCount == end_ - begin_;
    }

    /// The KLVs in the order of the file, without a gap; the primer pack is the first.
    const Templates::vector<LayoutItem>& items() const noexcept { return items_; }
    bool hasPrimer() const noexcept { return items_.front().kind == LayoutItem::Kind::primer; }

    /// Key, length and value of an item, of fill without the value; valid as long as the layout.
    Types::ByteView bytes(const LayoutItem& item) const noexcept;
    /// The value alone, empty for fill.
    Types::ByteView value(const LayoutItem& item) const noexcept;
    /// The properties of a set one after the other.
    LocalSet properties(const LayoutItem& set) const noexcept {
        return {set.triplet.key, value(set)};
    }

    /// The number of the set with an InstanceUID, the first of several; nothing where there is
    /// none.
    std::optional<std::size_t> find(const Types::UUID& instance) const;
    /// The InstanceUID of a set.
    std::optional<Types::UUID> instanceUID(const LayoutItem& set) const;

    /// What the primer pack says a tag means; null where it says nothing. Of two entries with one
    /// tag, the first counts.
    const Types::UniversalLabel* label(Types::u16 tag) const;
    /// The tag that the primer pack gives to a label, whatever its version byte.
    std::optional<Types::u16> tag(const Types::UniversalLabel& label) const;
    /// Whether the primer pack has an entry for a tag or a set has a property with it.
    bool isTagInUse(Types::u16 tag) const { return tagsInUse_[tag]; }
    /// Whether the primer pack's count, item size and length agree, so that it can be continued.
    bool hasSoundPrimer() const noexcept { return hasSoundPrimer_; }

private:
    struct Walk;

    void add(DataIO::ReadWindow& window, const KLV::Triplet& triplet);
    void takePrimer(const LayoutItem& primer);
    void takeSet(LayoutItem& set);

    Partition partition_;
    std::uint64_t begin_ = 0;
    std::uint64_t end_ = 0;
    Templates::vector<LayoutItem> items_;
    Bytes content_; ///< the items one after the other, fill without its value
    Templates::map<Types::u16, Types::UniversalLabel> labels_;
    Templates::map<std::array<Types::u8, 16>, Types::u16> tags_;
    Templates::map<Types::UUID, std::size_t> instances_;
    Templates::vector<bool> tagsInUse_;
    bool hasSoundPrimer_ = false;
};

} // namespace Corvid::mxf
