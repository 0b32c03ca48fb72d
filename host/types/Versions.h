#pragma once

#include "host/types/FixedBytes.h"

// The C library of some systems defines these as macros.
#undef major
#undef minor

namespace Corvid::Types {

/// A version of two small numbers, as that of the MXF standard that a file follows.
class CORVID_EXPORT VersionType : public Visitable<VersionType, FixedBytes<2>> {
public:
    VersionType(u8 major, u8 minor) noexcept {
        bytes_[0] = major;
        bytes_[1] = minor;
    }
    explicit VersionType(ByteView bytes) noexcept : Visitable(bytes) {}

    u8 major() const noexcept { return bytes_[0]; }
    u8 minor() const noexcept { return bytes_[1]; }
};

/// The version of a program: five numbers of 2 bytes (SMPTE ST 377-1). One maker writes the last,
/// the release, in one byte. A value keeps the form that it was read in.
class CORVID_EXPORT ProductVersion : public Visitable<ProductVersion, FixedBytes<10>> {
public:
    /// How finished the program is. Files hold other numbers too; they are kept.
    enum ReleaseVersion : u16 {
        unknownVersion = 0,     ///< nothing is said
        releasedVersion = 1,    ///< released
        developmentVersion = 2, ///< in development
        patchedVersion = 3,     ///< released and patched since
        betaVersion = 4,        ///< beta
        privateBuild = 5,       ///< not for release
    };

    ProductVersion(const u16& major, const u16& minor, const u16& patch, const u16& build,
                   ReleaseVersion release) noexcept {
        putAt(0, major);
        putAt(2, minor);
        putAt(4, patch);
        putAt(6, build);
        putAt(8, static_cast<u16>(release));
    }
    /// @param bytes  of which fits() is true.
    explicit ProductVersion(ByteView bytes) noexcept : size_(static_cast<u16>(bytes.size)) {
        std::memcpy(bytes_.data(), bytes.data, bytes.size);
    }

    static bool fits(ByteView bytes) noexcept {
        return bytes.size == fixedSize || bytes.size == shortSize;
    }

    u16 serializedSize() const override { return size_; }

    /// The same five numbers in 9 bytes. A release above 255 has no such form; then the value is
    /// returned as it is.
    ProductVersion inNineBytes() const noexcept {
        const auto release = static_cast<u16>(releaseVersion());
        ProductVersion result = *this;
        if (release <= 0xFF) {
            result.size_ = shortSize;
            result.bytes_[8] = static_cast<u8>(release);
            result.bytes_[9] = 0;
        }
        return result;
    }

    u16 major() const noexcept { return numberAt<u16>(0); }
    u16 minor() const noexcept { return numberAt<u16>(2); }
    u16 patch() const noexcept { return numberAt<u16>(4); }
    u16 build() const noexcept { return numberAt<u16>(6); }
    ReleaseVersion releaseVersion() const noexcept {
        return static_cast<ReleaseVersion>(size_ == shortSize ? bytes_[8] : numberAt<u16>(8));
    }

private:
    static constexpr u16 shortSize = 9;

    u16 size_ = fixedSize;
};

} // namespace Corvid::Types
