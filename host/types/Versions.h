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

/// The version of a program.
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
    explicit ProductVersion(ByteView bytes) noexcept : Visitable(bytes) {}

    u16 major() const noexcept { return numberAt<u16>(0); }
    u16 minor() const noexcept { return numberAt<u16>(2); }
    u16 patch() const noexcept { return numberAt<u16>(4); }
    u16 build() const noexcept { return numberAt<u16>(6); }
    ReleaseVersion releaseVersion() const noexcept {
        return static_cast<ReleaseVersion>(numberAt<u16>(8));
    }
};

} // namespace Corvid::Types
