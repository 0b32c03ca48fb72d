#include "host/types/UuidMap.h"

#include "host/types/UID.h"

namespace Corvid::Types {

namespace {

constexpr std::size_t fewestSlots = 16;

KeyedHash::Key randomKey() {
    return Factories::UID::generateUUID(Factories::UID::uniqueVersion).bytes();
}

} // namespace

UuidNumbers::UuidNumbers() : hash_(randomKey()), slots_(fewestSlots) {}

std::uint32_t UuidNumbers::hashOf(const Bytes& bytes) const noexcept {
    return static_cast<std::uint32_t>(hash_(bytes.data(), bytes.size()));
}

/// The slot that a hash belongs to, or the next that fits or is free.
template <class Fits>
std::size_t UuidNumbers::slotFor(std::uint32_t hash, Fits fits) const noexcept {
    const std::size_t last = slots_.size() - 1;
    std::size_t i = hash & last;
    while (slots_[i].number != none && !(slots_[i].hash == hash && fits(slots_[i].number))) {
        i = (i + 1) & last;
    }
    return i;
}

UuidNumbers::Number UuidNumbers::find(const UUID& uuid) const noexcept {
    const Bytes& bytes = uuid.bytes();
    return slots_[slotFor(hashOf(bytes), [&](Number n) { return identifiers_[n] == bytes; })]
        .number;
}

std::pair<UuidNumbers::Number, bool> UuidNumbers::add(const UUID& uuid) {
    if (2 * (identifiers_.size() + 1) > slots_.size()) {
        widen(2 * slots_.size());
    }
    const Bytes& bytes = uuid.bytes();
    const std::uint32_t hash = hashOf(bytes);
    Slot& slot = slots_[slotFor(hash, [&](Number n) { return identifiers_[n] == bytes; })];
    if (slot.number != none) {
        return {slot.number, false};
    }
    const auto number = static_cast<Number>(identifiers_.size());
    identifiers_.push_back(bytes);
    slot = {hash, number};
    return {number, true};
}

void UuidNumbers::reserve(std::size_t count) {
    identifiers_.reserve(count);
    std::size_t slots = slots_.size();
    while (slots < 2 * count) {
        slots *= 2;
    }
    if (slots != slots_.size()) {
        widen(slots);
    }
}

void UuidNumbers::widen(std::size_t slots) {
    std::vector<Slot> narrow(slots);
    narrow.swap(slots_);
    for (const Slot& slot : narrow) {
        if (slot.number != none) {
            slots_[slotFor(slot.hash, [](Number) { return false; })] = slot;
        }
    }
}

} // namespace Corvid::Types
