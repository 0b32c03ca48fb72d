#pragma once

#include "host/klv/Key.h"
#include "host/types/FixedBytes.h"

#include <optional>

namespace Corvid::mxf {

/// Takes the properties of a local set one after the other: tag (2 bytes), length, value (SMPTE
/// ST 336). The set's key says whether a length has 2 bytes or is a BER length.
class CORVID_EXPORT LocalSet {
public:
    /// Tag and length of a property.
    struct Head {
        /// The most bytes that a tag and a length have together.
        static constexpr std::size_t greatestSize = 11;

        Types::u16 tag = 0;
        unsigned char lengthOctets = 2; ///< bytes of the length, 1 to 9
        Types::u64 valueSize = 0;

        std::size_t size() const noexcept { return sizeof tag + lengthOctets; }
    };

    struct Property {
        Types::u16 tag = 0;
        unsigned char lengthOctets = 2;
        std::size_t offset = 0; ///< of the tag, in bytes from the front of the set's value
        Types::ByteView value;
    };

    /// @param key    of the set.
    /// @param bytes  the set's value. Borrowed.
    LocalSet(const KLV::Key& key, Types::ByteView bytes) noexcept
        : bytes_(bytes), hasBerLengths_(KLV::hasBerLengths(key)) {}

    /// The next property, or nothing at the end and where what is left holds none.
    std::optional<Property> next() noexcept {
        const Types::ByteView left{bytes_.data + position_, bytes_.size - position_};
        const auto head = readHead(left, hasBerLengths_);
        if (!head || left.size - head->size() < head->valueSize) {
            return std::nullopt;
        }
        const auto size = static_cast<std::size_t>(head->valueSize);
        const Property property{
            head->tag, head->lengthOctets, position_, {left.data + head->size(), size}};
        position_ += head->size() + size;
        return property;
    }

    /// Where the next property would begin, in bytes from the front of the set's value.
    std::size_t position() const noexcept { return position_; }
    bool atEnd() const noexcept { return position_ == bytes_.size; }

    /// Reads tag and length of a property.
    /// @param bytes  begin with its tag.
    /// @return nothing where the bytes end too early or hold no length that may be there.
    static std::optional<Head> readHead(Types::ByteView bytes, bool hasBerLengths) noexcept;

private:
    Types::ByteView bytes_;
    bool hasBerLengths_;
    std::size_t position_ = 0;
};

} // namespace Corvid::mxf
