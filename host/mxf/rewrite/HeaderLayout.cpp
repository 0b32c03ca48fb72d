#include "host/mxf/rewrite/HeaderLayout.h"

#include "host/base/Exceptions.h"
#include "host/metadata/MetadataSet.h"
#include "host/mxf/HeaderMetadataReader.h"
#include "host/mxf/Keys.h"
#include "host/mxf/PrimerPack.h"
#include "host/mxf/rewrite/ObjectDirectory.h"

#include <algorithm>

namespace Corvid::mxf {

namespace {

constexpr std::size_t allTags = 0x10000;

/// How far to read ahead where the end of the metadata is not known: essence may follow.
constexpr std::uint64_t cautiousReadAhead = 4096;

[[noreturn]] void refuse(std::uint64_t offset, const std::string& why) {
    throw Exceptions::InvalidFormat("byte " + std::to_string(offset) + ": " + why +
                                        ", so the header metadata can't be changed",
                                    CORVID_HERE);
}

} // namespace

/// Goes from KLV to KLV and knows where the metadata ends.
struct HeaderLayout::Walk {
    DataIO::ReadWindow& window;
    const Partition& partition;
    std::uint64_t position;
    std::uint64_t declaredEnd; ///< 0 where HeaderByteCount is not believed

    Walk(DataIO::ReadWindow& from, const Partition& of, std::uint64_t begin)
        : window(from), partition(of), position(begin), declaredEnd(0) {
        const std::uint64_t count = partition.pack.headerByteCount;
        if (count != 0 && count <= partition.end - begin && isThere(begin, count)) {
            declaredEnd = begin + count;
            window.readAheadUpTo(declaredEnd);
        }
    }

    bool isThere(std::uint64_t offset, std::uint64_t count) const {
        return window.source().available(offset, count) == count;
    }

    /// The next KLV, or nothing at the end.
    std::optional<KLV::Triplet> next() {
        if (position > declaredEnd) {
            declaredEnd = 0; // a KLV runs past it
        }
        const bool atDeclaredEnd = declaredEnd != 0 && position == declaredEnd;
        if (position >= partition.end || window.source().available(position, 1) == 0) {
            return std::nullopt;
        }
        if (declaredEnd == 0) {
            window.readAheadUpTo(position + cautiousReadAhead);
        }
        KLV::Triplet triplet;
        try {
            triplet = KLV::readTriplet(window, position);
        } catch (const Exceptions::InvalidLength& error) {
            if (atDeclaredEnd) {
                return std::nullopt;
            }
            throw;
        }
        if (atDeclaredEnd) {
            if (!KLV::isStructuralMetadataSet(triplet.key)) {
                return std::nullopt;
            }
            declaredEnd = 0;
        }
        if (endsHeaderMetadata(triplet.key) || (declaredEnd == 0 && isSingleItem(triplet.key))) {
            return std::nullopt;
        }
        check(triplet);
        position = triplet.end();
        return triplet;
    }

    void check(const KLV::Triplet& triplet) const {
        // Zeros are no key, but would go on as empty KLVs through all of a hole in a sparse file.
        if (triplet.key == KLV::Key()) {
            refuse(position, "there are zeros instead of a key");
        }
        if (triplet.end() > partition.end ||
            !isThere(position, triplet.headSize() + triplet.length.value)) {
            refuse(position, "a KLV of " + std::to_string(triplet.length.value) +
                                 " bytes reaches past the end of the " +
                                 (triplet.end() > partition.end ? "partition" : "file"));
        }
        if (!isFill(triplet.key) && triplet.length.value > greatestSetSize) {
            throw Exceptions::LimitExceeded("byte " + std::to_string(position) + ": a set has " +
                                                std::to_string(triplet.length.value) +
                                                " bytes, expected at most " +
                                                std::to_string(greatestSetSize),
                                            CORVID_HERE);
        }
    }
};

HeaderLayout::HeaderLayout(DataIO::ReadWindow& window, const Partition& partition)
    : partition_(partition), tagsInUse_(allTags, false) {
    const auto start = findHeaderMetadata(window, partition);
    if (!start) {
        refuse(partition.offset(), "the partition has no header metadata");
    }
    begin_ = start->triplet.offset;
    Walk walk(window, partition, begin_);
    try {
        while (const auto triplet = walk.next()) {
            add(window, *triplet);
        }
    } catch (const Exceptions::InvalidLength& error) {
        refuse(walk.position, Platform::toUtf8(error.message()));
    }
    window.readAheadUpTo(0);
    end_ = walk.position;
    if (hasPrimer()) {
        takePrimer(items_.front());
    }
    for (LayoutItem& item : items_) {
        if (item.kind == LayoutItem::Kind::set) {
            takeSet(item);
        }
    }
}

void HeaderLayout::add(DataIO::ReadWindow& window, const KLV::Triplet& triplet) {
    LayoutItem item;
    item.triplet = triplet;
    item.at = content_.size();
    const auto size =
        isFill(triplet.key) ? triplet.headSize() : static_cast<std::size_t>(item.size());
    const auto view = window.view(triplet.offset, size);
    if (view.size != size) {
        refuse(triplet.offset, "the file has become shorter");
    }
    append(content_, {view.data, view.size});
    if (isFill(triplet.key)) {
        item.kind = LayoutItem::Kind::fill;
    } else if (items_.empty() && isPrimerPack(triplet.key)) {
        item.kind = LayoutItem::Kind::primer;
    } else if (KLV::isLocalSet(triplet.key) || isObjectRoot(triplet.key)) {
        item.kind = LayoutItem::Kind::set;
    }
    items_.push_back(item);
}

void HeaderLayout::takePrimer(const LayoutItem& primer) {
    Types::ByteView entries = value(primer);
    entries.size = std::min(entries.size, greatestPrimerSize);
    NoWarnings nobody;
    for (const auto& [tag, label] : parsePrimerPack(entries, primer.offset(), nobody)) {
        tagsInUse_[tag.value()] = true;
        if (labels_.emplace(tag.value(), label).second) {
            tags_.emplace(label.withoutVersion(), tag.value());
        }
    }
    constexpr std::size_t headSize = 8;
    if (entries.size >= headSize && (entries.size - headSize) % primerEntrySize == 0) {
        const std::size_t count = (entries.size - headSize) / primerEntrySize;
        hasSoundPrimer_ =
            entries.size == value(primer).size &&
            Types::readBigEndian<Types::u32>(entries.data) == count &&
            (count == 0 || Types::readBigEndian<Types::u32>(entries.data + 4) == primerEntrySize);
    }
}

void HeaderLayout::takeSet(LayoutItem& set) {
    LocalSet properties = this->properties(set);
    while (const auto property = properties.next()) {
        tagsInUse_[property->tag] = true;
    }
    if (!properties.atEnd()) {
        set.kind = LayoutItem::Kind::dark;
        return;
    }
    if (const auto instance = instanceUID(set)) {
        instances_.emplace(*instance, static_cast<std::size_t>(&set - items_.data()));
    }
}

Types::ByteView HeaderLayout::bytes(const LayoutItem& item) const noexcept {
    return {content_.data() + item.at, item.kind == LayoutItem::Kind::fill
                                           ? item.triplet.headSize()
                                           : static_cast<std::size_t>(item.size())};
}

Types::ByteView HeaderLayout::value(const LayoutItem& item) const noexcept {
    const Types::ByteView whole = bytes(item);
    const std::size_t head = item.triplet.headSize();
    return {whole.data + head, whole.size - head};
}

std::optional<std::size_t> HeaderLayout::find(const Types::UUID& instance) const {
    const auto found = instances_.find(instance);
    return found == instances_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Types::UUID> HeaderLayout::instanceUID(const LayoutItem& set) const {
    constexpr Types::u16 staticTag = 0x3C0A;
    LocalSet properties = this->properties(set);
    while (const auto property = properties.next()) {
        const auto* meaning = label(property->tag);
        const bool isIt = meaning == nullptr ? property->tag == staticTag
                                             : Metadata::Structural::isInstanceUID(*meaning);
        if (isIt && Types::UUID::fits(property->value)) {
            return Types::UUID(property->value);
        }
    }
    return std::nullopt;
}

const Types::UniversalLabel* HeaderLayout::label(Types::u16 tag) const {
    const auto found = labels_.find(tag);
    return found == labels_.end() ? nullptr : &found->second;
}

std::optional<Types::u16> HeaderLayout::tag(const Types::UniversalLabel& label) const {
    const auto found = tags_.find(label.withoutVersion());
    return found == tags_.end() ? std::nullopt : std::optional(found->second);
}

} // namespace Corvid::mxf
