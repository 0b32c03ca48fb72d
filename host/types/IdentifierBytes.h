#pragma once

#include "host/base/Text.h"
#include "host/types/FixedBytes.h"

namespace Corvid::Types {

/// Chooses the text form of an identifier.
enum StringRepresentationEncodingType : int {
    dottedHexadecimal = 0, ///< lower-case pairs of hexadecimal digits joined by full stops: 06.0e.2b
};

/// Writes bytes as dotted hexadecimal text.
CORVID_EXPORT Utf16Text toDottedHexadecimal(const u8* bytes, std::size_t size);

/// Reads dotted hexadecimal text of exactly size bytes, in either case.
/// @throws InvalidFormat  the text is no such text; it is quoted.
CORVID_EXPORT void fromDottedHexadecimal(const u16* text, u8* bytes, std::size_t size);

/// An identifier of Size bytes. Compared as a sequence of bytes.
template <std::size_t Size> class IdentifierBytes : public FixedBytes<Size> {
public:
    IdentifierBytes() noexcept = default;
    explicit IdentifierBytes(ByteView bytes) noexcept : FixedBytes<Size>(bytes) {}
    explicit IdentifierBytes(const std::array<u8, Size>& bytes) noexcept { this->bytes_ = bytes; }
    /// @throws InvalidFormat  the text is not of the form that toString() gives.
    IdentifierBytes(const u16* text, StringRepresentationEncodingType) {
        fromDottedHexadecimal(text, this->bytes_.data(), Size);
    }

    u16 size() const noexcept { return Size; }
    u8& operator[](int index) noexcept { return this->bytes_[static_cast<std::size_t>(index)]; }
    u8 operator[](int index) const noexcept { return this->bytes_[static_cast<std::size_t>(index)]; }
    const std::array<u8, Size>& bytes() const noexcept { return this->bytes_; }

    Utf16Text toString(StringRepresentationEncodingType = dottedHexadecimal) const {
        return toDottedHexadecimal(this->bytes_.data(), Size);
    }

    friend bool operator==(const IdentifierBytes& a, const IdentifierBytes& b) noexcept {
        return a.bytes_ == b.bytes_;
    }
    friend bool operator!=(const IdentifierBytes& a, const IdentifierBytes& b) noexcept {
        return a.bytes_ != b.bytes_;
    }
    friend bool operator<(const IdentifierBytes& a, const IdentifierBytes& b) noexcept {
        return std::memcmp(a.bytes_.data(), b.bytes_.data(), Size) < 0;
    }
};

} // namespace Corvid::Types
