#pragma once

#include "host/base/IdentifierText.h"
#include "host/dataio/DataSink.h"

#include <algorithm>
#include <array>

namespace Corvid::KLV {

/// The key of a KLV triplet: 16 bytes (SMPTE ST 336).
class CORVID_EXPORT Key {
public:
    static constexpr std::size_t length = 16;

    Key() noexcept : bytes_{} {}
    explicit Key(const std::array<unsigned char, length>& bytes) noexcept : bytes_(bytes) {}
    explicit Key(const unsigned char* bytes) noexcept;
    /// @throws InvalidFormat  the text is not of the form that toString() gives.
    Key(const unsigned short* text, Types::StringRepresentationEncodingType);

    Utf16Text toString(Types::StringRepresentationEncodingType = Types::dottedHexadecimal) const;

    /// The bytes of the key in a file.
    std::size_t serializedSize() const noexcept { return length; }
    static std::size_t serializedSize(const Key& key) noexcept { return key.serializedSize(); }
    void serialize(DataIO::DataSink& sink) const { sink.write(bytes_.data(), length); }

    const std::array<unsigned char, length>& bytes() const noexcept { return bytes_; }
    unsigned char operator[](std::size_t index) const noexcept { return bytes_[index]; }

    /// The part of the key that is matched: all but the version byte, the eighth, and of the two
    /// codings of a local set not which one it is (the sixth byte).
    std::array<unsigned char, length> forMatching() const noexcept;

    /// Whether the last eight bytes are the same, in which most keys differ.
    bool hasBackOf(const Key& other) const noexcept {
        return std::equal(bytes_.begin() + length / 2, bytes_.end(),
                          other.bytes_.begin() + length / 2);
    }

    friend bool operator==(const Key& a, const Key& b) noexcept { return a.bytes_ == b.bytes_; }
    friend bool operator!=(const Key& a, const Key& b) noexcept { return a.bytes_ != b.bytes_; }
    friend bool operator<(const Key& a, const Key& b) noexcept { return a.bytes_ < b.bytes_; }

private:
    std::array<unsigned char, length> bytes_;
};

/// True for two keys of the same thing: the parts that are matched are equal.
inline bool matches(const Key& a, const Key& b) noexcept {
    return a.hasBackOf(b) && a.forMatching() == b.forMatching();
}

/// True for the key of a structural metadata set (SMPTE ST 377-1).
CORVID_EXPORT bool isStructuralMetadataSet(const Key& key) noexcept;

/// True for the key of a set of properties with local tags of two bytes each, whose lengths have
/// two bytes or are BER lengths (SMPTE ST 336).
CORVID_EXPORT bool isLocalSet(const Key& key) noexcept;

/// True for the key of a local set whose properties have BER lengths.
CORVID_EXPORT bool hasBerLengths(const Key& key) noexcept;

} // namespace Corvid::KLV
