#pragma once

#include "host/base/IdentifierText.h"
#include "host/types/FixedBytes.h"

namespace Corvid::Types {

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
    u8 operator[](int index) const noexcept {
        return this->bytes_[static_cast<std::size_t>(index)];
    }
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
