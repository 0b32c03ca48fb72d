#pragma once

#include "host/types/FixedBytes.h"

#include <optional>

namespace Corvid::mxf {

/// Takes the properties of a local set one behind the other: tag (2 bytes), length (2 bytes), value
/// (SMPTE ST 336).
class LocalSet {
public:
    struct Property {
        Types::u16 tag = 0;
        std::size_t offset = 0; ///< of the tag, in bytes from the front of the set's value
        Types::ByteView value;
    };

    /// @param bytes  the set's value. Borrowed.
    explicit LocalSet(Types::ByteView bytes) noexcept : bytes_(bytes) {}

    /// The next property, or nothing at the end and where what is left holds none.
    std::optional<Property> next() noexcept {
        const std::size_t left = bytes_.size - position_;
        if (left < headSize) {
            return std::nullopt;
        }
        const Types::u8* const head = bytes_.data + position_;
        const std::size_t size = Types::readBigEndian<Types::u16>(head + 2);
        if (left - headSize < size) {
            return std::nullopt;
        }
        const Property property{
            Types::readBigEndian<Types::u16>(head), position_, {head + headSize, size}};
        position_ += headSize + size;
        return property;
    }

    /// Where the next property would stand, in bytes from the front of the set's value.
    std::size_t position() const noexcept { return position_; }
    bool atEnd() const noexcept { return position_ == bytes_.size; }

private:
    static constexpr std::size_t headSize = 4;

    Types::ByteView bytes_;
    std::size_t position_ = 0;
};

} // namespace Corvid::mxf
