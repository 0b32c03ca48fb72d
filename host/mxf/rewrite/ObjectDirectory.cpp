#include "host/mxf/rewrite/ObjectDirectory.h"

#include "host/base/Exceptions.h"

#include <algorithm>

namespace Corvid::mxf {

namespace {

constexpr std::size_t headSize = 9;
constexpr std::size_t entrySize = 25;
constexpr std::size_t offsetSize = 8;

/// The root's property with the directory's offset: its label without version byte, and its tag in
/// files whose primer pack lacks it.
constexpr std::array<Types::u8, 16> offsetLabel = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x00,
                                                   0x06, 0x01, 0x01, 0x07, 0x07, 0x00, 0x00, 0x00};
constexpr Types::u16 offsetTag = 0x0003;

bool isKey(const KLV::Key& key, const std::array<unsigned char, KLV::Key::length>& bytes) {
    return key.bytes() == bytes;
}

bool holdsOffset(Types::u16 tag, const HeaderLayout& layout) {
    const auto* label = layout.label(tag);
    return label == nullptr ? tag == offsetTag : label->withoutVersion() == offsetLabel;
}

[[noreturn]] void refuse(const LayoutItem& directory, const std::string& why) {
    throw Exceptions::InvalidFormat("byte " + std::to_string(directory.offset()) +
                                        ": the directory of the objects " + why +
                                        ", so the sets that it lists can't be moved",
                                    CORVID_HERE);
}

} // namespace

bool isObjectRoot(const KLV::Key& key) noexcept {
    return isKey(key, {0x80, 0x53, 0x08, 0x00, 0x36, 0x21, 0x08, 0x04, 0xb3, 0xb3, 0x98, 0xa5, 0x1c,
                       0x90, 0x11, 0xd4});
}

bool isObjectDirectory(const KLV::Key& key) noexcept {
    return isKey(key, {0x96, 0x13, 0xb3, 0x8a, 0x87, 0x34, 0x87, 0x46, 0xf1, 0x02, 0x96, 0xf0, 0x56,
                       0xe0, 0x4d, 0x2a});
}

std::optional<ObjectDirectory> ObjectDirectory::find(const HeaderLayout& layout) {
    const auto& items = layout.items();
    const auto numberOf = [&items](bool (*isIt)(const KLV::Key&) noexcept) {
        const auto found = std::find_if(items.begin(), items.end(), [&](const LayoutItem& item) {
            return isIt(item.triplet.key);
        });
        return static_cast<std::size_t>(found - items.begin());
    };
    ObjectDirectory result;
    result.item_ = numberOf(isObjectDirectory);
    result.root_ = numberOf(isObjectRoot);
    if (result.item_ == items.size()) {
        return std::nullopt;
    }
    if (layout.partition().offset() != layout.partition().pack.thisPartition) {
        refuse(items[result.item_], "counts from the front of a file that has a run-in");
    }
    result.readEntries(layout);
    result.readRoot(layout);
    return result;
}

void ObjectDirectory::readEntries(const HeaderLayout& layout) {
    const LayoutItem& directory = layout.items()[item_];
    const Types::ByteView value = layout.value(directory);
    if (value.size < headSize || value.data[headSize - 1] != entrySize ||
        (value.size - headSize) % entrySize != 0 ||
        Types::readBigEndian<Types::u64>(value.data) != (value.size - headSize) / entrySize) {
        refuse(directory, "does not have the length that its count asks for");
    }
    for (std::size_t at = headSize; at != value.size; at += entrySize) {
        const Types::u8* const bytes = value.data + at;
        Entry entry;
        entry.instance = Types::UUID(Types::ByteView{bytes, Types::UUID::fixedSize});
        entry.flags = bytes[entrySize - 1];
        const auto offset = Types::readBigEndian<Types::u64>(bytes + Types::UUID::fixedSize);
        const auto item = layout.find(entry.instance);
        if (!item || layout.items()[*item].offset() != offset) {
            refuse(directory, "lists the set " + Platform::toUtf8(entry.instance.toString()) +
                                  " at byte " + std::to_string(offset) + ", where it is not");
        }
        entry.item = *item;
        entries_.push_back(entry);
    }
}

void ObjectDirectory::readRoot(const HeaderLayout& layout) {
    const LayoutItem& directory = layout.items()[item_];
    if (root_ == layout.items().size() || layout.items()[root_].kind != LayoutItem::Kind::set) {
        refuse(directory, "has no root set");
    }
    const LayoutItem& root = layout.items()[root_];
    LocalSet properties = layout.properties(root);
    while (const auto property = properties.next()) {
        if (holdsOffset(property->tag, layout) && property->value.size >= offsetSize) {
            const Types::u8* const last = property->value.data + property->value.size - offsetSize;
            if (Types::readBigEndian<Types::u64>(last) != directory.offset()) {
                refuse(directory, "is not where its root set says");
            }
            offsetInRoot_ = static_cast<std::size_t>(last - layout.value(root).data);
            return;
        }
    }
    refuse(directory, "has a root set that does not say where it is");
}

std::size_t ObjectDirectory::valueSize(std::size_t entries) noexcept {
    return headSize + entries * entrySize;
}

void ObjectDirectory::beginValue(Bytes& value, std::size_t entries) {
    Types::u8 head[headSize];
    Types::writeBigEndian(head, static_cast<Types::u64>(entries));
    head[headSize - 1] = entrySize;
    append(value, {head, sizeof head});
}

void ObjectDirectory::addEntry(Bytes& value, const Types::UUID& instance, std::uint64_t offset,
                               Types::u8 flags) {
    Types::u8 number[offsetSize];
    Types::writeBigEndian(number, offset);
    append(value, {instance.bytes().data(), instance.bytes().size()});
    append(value, {number, sizeof number});
    value.push_back(flags);
}

} // namespace Corvid::mxf
