#include "host/mxf/rewrite/EditedHeader.h"

#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/klv/BerOutput.h"
#include "host/mxf/HeaderMetadataReader.h"
#include "host/mxf/Keys.h"
#include "host/mxf/rewrite/EditIndex.h"

#include <algorithm>

namespace Corvid::mxf {

namespace {

std::uint64_t klvSize(unsigned char octets, const Bytes& value) {
    return KLV::Key::length + KLV::berOctets(value.size(), octets) + value.size();
}

} // namespace

EditedHeader::EditedHeader(const HeaderLayout& layout, const HeaderEdit& edit)
    : layout_(layout), tags_(layout), directory_(ObjectDirectory::find(layout)) {
    const EditIndex plan(layout, edit);
    for (std::size_t number = 0; number != layout.items().size(); ++number) {
        addItem(number, plan);
        addNewSets(number, plan);
    }
    if (layout.items().back().kind != LayoutItem::Kind::fill) {
        addFill(none);
    }
    if (tags_.hasNewEntries()) {
        const LayoutItem& primer = layout.items().front();
        pieces_.front() =
            anew(0, primer.triplet.key, primer.triplet.length.octets, tags_.primerValue());
    }
    if (directory_) {
        takeDirectory(plan);
    }
}

void EditedHeader::addItem(std::size_t number, const EditIndex& plan) {
    const LayoutItem& item = layout_.items()[number];
    if (item.kind == LayoutItem::Kind::fill) {
        addFill(number);
    } else if (const SetChange* change = plan.setChange(number)) {
        pieces_.push_back(anew(number, item.triplet.key, item.triplet.length.octets,
                               codeSet(layout_, *change, tags_)));
    } else if (const DarkChange* dark = plan.darkChange(number)) {
        pieces_.push_back(anew(number, item.triplet.key, item.triplet.length.octets, dark->value));
    } else if (!plan.removes(number)) {
        Piece piece;
        piece.item = number;
        piece.size = item.size();
        pieces_.push_back(std::move(piece));
    }
}

void EditedHeader::addNewSets(std::size_t after, const EditIndex& plan) {
    for (const NewSet* set : plan.newSets(after)) {
        pieces_.push_back(anew(none, set->key, set->lengthOctets, codeSet(*set, tags_)));
        if (directory_) {
            pieces_.back().instance = instanceOf(*set);
        }
    }
}

void EditedHeader::addFill(std::size_t item) {
    Piece piece;
    piece.item = item;
    piece.isFill = true;
    piece.key = item == none ? fillKey() : layout_.items()[item].triplet.key;
    if (item != none) {
        piece.octets = layout_.items()[item].triplet.length.octets;
    }
    pieces_.push_back(std::move(piece));
}

EditedHeader::Piece EditedHeader::anew(std::size_t item, const KLV::Key& key, unsigned char octets,
                                       Bytes value) {
    if (value.size() > greatestSetSize) {
        throw Exceptions::LimitExceeded("a set gets " + std::to_string(value.size()) +
                                            " bytes, expected at most " +
                                            std::to_string(greatestSetSize),
                                        CORVID_HERE);
    }
    Piece piece;
    piece.item = item;
    piece.isAnew = true;
    piece.key = key;
    piece.octets = KLV::berOctets(value.size(), octets);
    piece.size = klvSize(piece.octets, value);
    piece.value = std::move(value);
    return piece;
}

/// Gives the directory room for the sets that will be there.
void EditedHeader::takeDirectory(const EditIndex& plan) {
    plan.requireUntouched(directory_->item(), directory_->root());
    for (const auto& entry : directory_->entries()) {
        if (!plan.removes(entry.item)) {
            listed_.push_back(entry);
        }
    }
    for (const Piece& piece : pieces_) {
        if (piece.instance) {
            listed_.push_back({none, *piece.instance, 0});
        }
    }
    for (Piece& piece : pieces_) {
        if (piece.item == directory_->item() || piece.item == directory_->root()) {
            const LayoutItem& item = layout_.items()[piece.item];
            Bytes value;
            append(value, layout_.value(item));
            if (piece.item == directory_->item()) {
                value.resize(ObjectDirectory::valueSize(listed_.size()));
            }
            piece =
                anew(piece.item, item.triplet.key, item.triplet.length.octets, std::move(value));
            piece.isOffsets = true;
        }
    }
}

Templates::vector<FillSlot> EditedHeader::slots(std::uint64_t extra) const {
    Templates::vector<FillSlot> slots;
    FillSlot slot;
    for (const Piece& piece : pieces_) {
        if (!piece.isFill) {
            slot.content += piece.size;
            continue;
        }
        slot.end = piece.item == none ? layout_.size()
                                      : layout_.items()[piece.item].end() - layout_.begin();
        slots.push_back(slot);
        slot = FillSlot();
    }
    slots.back().content += slot.content;
    slots.back().end = layout_.size() + extra;
    return slots;
}

/// Gives sets that change longer forms of their lengths.
/// @return false where there are not enough of them; then nothing has changed.
bool EditedHeader::lengthen(std::uint64_t bytes) {
    const auto room = [](const Piece& piece) {
        return piece.isAnew && !piece.isOffsets
                   ? std::uint64_t{KLV::BerLength::greatestOctets} - piece.octets
                   : 0;
    };
    std::uint64_t all = 0;
    for (const Piece& piece : pieces_) {
        all += room(piece);
    }
    if (all < bytes) {
        return false;
    }
    for (Piece& piece : pieces_) {
        const std::uint64_t more = std::min(bytes, room(piece));
        piece.octets = static_cast<unsigned char>(piece.octets + more);
        piece.size += more;
        bytes -= more;
    }
    return true;
}

std::uint64_t EditedHeader::fit(std::uint64_t extra, std::uint64_t shift) {
    FillRoom room = giveRoom(slots(extra));
    if (room.gap != 0 && lengthen(room.gap)) {
        room = giveRoom(slots(extra));
    }
    if (room.gap != 0) {
        return leastFill - room.gap;
    }
    if (room.missing == 0) {
        place(room.sizes, shift);
    }
    return room.missing;
}

void EditedHeader::place(const Templates::vector<std::uint64_t>& fill, std::uint64_t shift) {
    std::uint64_t position = layout_.begin() + shift;
    auto next = fill.begin();
    for (Piece& piece : pieces_) {
        if (piece.isFill) {
            piece.size = *next++;
        }
        piece.offset = position;
        position += piece.size;
    }
    if (directory_) {
        fillDirectory();
    }
    for (Piece& piece : pieces_) {
        if (piece.isAnew || piece.isFill) {
            code(piece);
        }
    }
}

EditedHeader::Piece& EditedHeader::pieceOf(std::size_t item) {
    return *std::find_if(pieces_.begin(), pieces_.end(),
                         [item](const Piece& piece) { return piece.item == item; });
}

/// Writes where everything is into the directory, and where that is into the root set.
void EditedHeader::fillDirectory() {
    Templates::vector<std::uint64_t> offsets(layout_.items().size());
    Templates::vector<std::uint64_t> newOffsets;
    for (const Piece& piece : pieces_) {
        if (piece.item != none) {
            offsets[piece.item] = piece.offset;
        } else if (piece.instance) {
            newOffsets.push_back(piece.offset);
        }
    }
    Piece& directory = pieceOf(directory_->item());
    Types::writeBigEndian(pieceOf(directory_->root()).value.data() + directory_->offsetInRoot(),
                          directory.offset);
    directory.value.clear();
    ObjectDirectory::beginValue(directory.value, listed_.size());
    auto newOffset = newOffsets.begin();
    for (const auto& entry : listed_) {
        ObjectDirectory::addEntry(directory.value, entry.instance,
                                  entry.item == none ? *newOffset++ : offsets[entry.item],
                                  entry.flags);
    }
}

void EditedHeader::code(Piece& piece) {
    piece.coded.clear();
    if (piece.size == 0) {
        return;
    }
    if (piece.isFill) {
        piece.octets = fillOctets(piece.size, piece.octets);
    }
    DataIO::Memory::MemoryDataSink head;
    piece.key.serialize(head);
    KLV::writeBer(head, piece.size - KLV::Key::length - piece.octets, piece.octets);
    append(piece.coded, {head.rawBuffer(), head.serializedSize()});
    append(piece.coded, viewOf(piece.value));
}

Segments EditedHeader::segments() const {
    Segments segments;
    for (const Piece& piece : pieces_) {
        if (piece.size != 0) {
            segments.push_back({piece.offset, piece.isAnew || piece.isFill
                                                  ? viewOf(piece.coded)
                                                  : layout_.bytes(layout_.items()[piece.item])});
        }
    }
    return segments;
}

Segments EditedHeader::segmentsOf(const HeaderLayout& layout, std::uint64_t shift) {
    Segments segments;
    for (const LayoutItem& item : layout.items()) {
        segments.push_back({item.offset() + shift, layout.bytes(item)});
    }
    return segments;
}

} // namespace Corvid::mxf
