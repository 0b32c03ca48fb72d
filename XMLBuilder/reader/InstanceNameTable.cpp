#include "XMLBuilder/reader/InstanceNameTable.h"

#include "host/base/Exceptions.h"
#include "host/types/UID.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

namespace {

constexpr std::size_t fewestSlots = 64;

KeyedHash::Key randomKey() {
    return Types::Factories::UID::generateUUID(Types::Factories::UID::uniqueVersion).bytes();
}

/// The slot that a hash belongs to, or the next that is free or fits.
template <class Slots, class Fits> auto& slotFor(Slots& slots, std::uint32_t hash, Fits fits) {
    const std::size_t last = slots.size() - 1;
    std::size_t i = hash & last;
    while (slots[i].number != 0 && !(slots[i].hash == hash && fits(slots[i].number))) {
        i = (i + 1) & last;
    }
    return slots[i];
}

bool never(std::uint32_t) { return false; }

} // namespace

InstanceNameTable::InstanceNameTable(WrittenIdentifiers written)
    : written_(written), hash_(randomKey()), slots_(fewestSlots) {}

const Types::UUID* InstanceNameTable::find(std::u16string_view name, std::uint32_t hash) const {
    const Slot& slot = slotFor(
        slots_, hash, [&](std::uint32_t number) { return entries_[number - 1].written == name; });
    return slot.number == 0 ? nullptr : &entries_[slot.number - 1].identifier;
}

const Types::UUID& InstanceNameTable::add(std::u16string_view name, std::uint32_t hash,
                                          const Types::UUID& identifier) {
    if (entries_.size() == slots_.size() / 2) {
        widen();
    }
    auto* const text =
        static_cast<char16_t*>(texts_.allocate(name.size() * sizeof(char16_t), alignof(char16_t)));
    name.copy(text, name.size());
    entries_.push_back({{text, name.size()}, identifier});
    slotFor(slots_, hash, never) = {hash, static_cast<std::uint32_t>(entries_.size())};
    return entries_.back().identifier;
}

void InstanceNameTable::widen() {
    std::vector<Slot> wider(2 * slots_.size());
    for (const Slot& slot : slots_) {
        if (slot.number != 0) {
            slotFor(wider, slot.hash, never) = slot;
        }
    }
    slots_.swap(wider);
}

bool InstanceNameTable::parse(const char16_t* text, Types::UUID& identifier) {
    try {
        identifier = Types::UUID(XMLUtils::fromXml(text), Types::dottedHexadecimal);
        return true;
    } catch (const Exceptions::InvalidFormat&) {
        return false;
    }
}

} // namespace Corvid::XMLBuilder
