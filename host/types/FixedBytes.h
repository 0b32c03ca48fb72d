#pragma once

#include "host/types/DataType.h"

#include <array>
#include <cstring>
#include <type_traits>
#include <utility>

namespace Corvid::Types {

/// Bytes as a big-endian number; compilers see one load in it, which they don't in a loop.
template <std::size_t... At>
u64 joinBigEndian(const u8* bytes, std::index_sequence<At...> /*places*/) noexcept {
    return ((u64{bytes[At]} << (8 * (sizeof...(At) - 1 - At))) | ...);
}

/// Reads a big-endian number of the type's size.
template <class Number> Number readBigEndian(const u8* bytes) noexcept {
    return static_cast<Number>(joinBigEndian(bytes, std::make_index_sequence<sizeof(Number)>()));
}

/// Writes a number big-endian into as many bytes as its type has.
template <class Number> void writeBigEndian(u8* bytes, Number number) noexcept {
    auto rest = static_cast<u64>(static_cast<std::make_unsigned_t<Number>>(number));
    for (std::size_t i = sizeof(Number); i != 0; --i) {
        bytes[i - 1] = static_cast<u8>(rest);
        rest >>= 8;
    }
}

/// A value of a fixed number of bytes, which it holds as they are in a KLV value.
template <std::size_t Size> class FixedBytes : public SimpleDataType {
public:
    static constexpr std::size_t fixedSize = Size;

    static bool fits(ByteView bytes) noexcept { return bytes.size == Size; }

    const u8* rawBuffer() const override { return bytes_.data(); }
    u16 serializedSize() const override { return Size; }

protected:
    FixedBytes() noexcept : bytes_{} {}
    /// @param bytes  of which fits() is true.
    explicit FixedBytes(ByteView bytes) noexcept { std::memcpy(bytes_.data(), bytes.data, Size); }

    template <class Number> Number numberAt(std::size_t offset) const noexcept {
        return readBigEndian<Number>(bytes_.data() + offset);
    }
    template <class Number> void putAt(std::size_t offset, Number number) noexcept {
        writeBigEndian(bytes_.data() + offset, number);
    }

    std::array<u8, Size> bytes_;
};

} // namespace Corvid::Types
