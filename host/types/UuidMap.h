#pragma once

#include "host/base/KeyedHash.h"
#include "host/types/IdentifierTypes.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace Corvid::Types {

/// Numbers UUIDs in the order in which they come up, from 0.
///
/// Files and documents choose the identifiers that are looked up here, so the hash has a secret
/// key: nobody can choose such as share a hash.
class CORVID_EXPORT UuidNumbers {
public:
    using Number = std::uint32_t;
    static constexpr Number none = 0xFFFFFFFF;

    /// @throws IOError  the system's random source gives nothing.
    UuidNumbers();

    /// Makes room for so many.
    void reserve(std::size_t count);

    /// The number of a UUID, or none.
    Number find(const UUID& uuid) const noexcept;
    /// The number of a UUID, and whether it got it with this call.
    std::pair<Number, bool> add(const UUID& uuid);

    UUID operator[](Number number) const noexcept { return UUID(identifiers_[number]); }
    std::size_t size() const noexcept { return identifiers_.size(); }

private:
    using Bytes = std::array<u8, UUID::fixedSize>;

    /// Where a UUID is found by its hash, or by the slots that follow, up to a free one. Two places
    /// in memory for a look-up: the slot, and the bytes to compare with.
    struct Slot {
        std::uint32_t hash = 0;
        Number number = none;
    };

    std::uint32_t hashOf(const Bytes& bytes) const noexcept;
    template <class Fits> std::size_t slotFor(std::uint32_t hash, Fits fits) const noexcept;
    void widen(std::size_t slots);

    KeyedHash hash_;
    std::vector<Bytes> identifiers_;
    std::vector<Slot> slots_; ///< a power of two of them, at least half of them free
};

/// Values by UUID, in the order in which they were added.
template <class Value> class UuidMap {
public:
    /// @throws IOError  as UuidNumbers().
    UuidMap() = default;

    Value* find(const UUID& uuid) noexcept {
        const auto number = numbers_.find(uuid);
        return number == UuidNumbers::none ? nullptr : &values_[number];
    }
    const Value* find(const UUID& uuid) const noexcept {
        return const_cast<UuidMap*>(this)->find(uuid);
    }

    /// The value of a UUID, made from the arguments where there is none, and whether it was made.
    /// Lives until the next one is added.
    template <class... Arguments>
    std::pair<Value&, bool> tryEmplace(const UUID& uuid, Arguments&&... arguments) {
        const auto [number, isNew] = numbers_.add(uuid);
        if (isNew) {
            values_.emplace_back(std::forward<Arguments>(arguments)...);
        }
        return {values_[number], isNew};
    }
    Value& operator[](const UUID& uuid) { return tryEmplace(uuid).first; }

    /// Calls the function with each UUID and its value, in order.
    template <class Function> void forEach(Function function) const {
        for (std::size_t i = 0; i != values_.size(); ++i) {
            function(numbers_[static_cast<UuidNumbers::Number>(i)], values_[i]);
        }
    }

    std::size_t size() const noexcept { return values_.size(); }

private:
    UuidNumbers numbers_;
    std::vector<Value> values_;
};

} // namespace Corvid::Types
