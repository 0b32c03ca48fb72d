#pragma once

#include "host/types/ByteRuns.h"
#include "host/types/FixedBytes.h"

namespace Corvid::Types {

/// The sizing of one JPEG 2000 component (SMPTE ST 422).
class CORVID_EXPORT J2KPictureComponent : public Visitable<J2KPictureComponent, FixedBytes<3>> {
public:
    J2KPictureComponent(u8 sSizi, u8 xRSizi, u8 yRSizi) noexcept {
        bytes_ = {sSizi, xRSizi, yRSizi};
    }
    explicit J2KPictureComponent(ByteView bytes) noexcept : Visitable(bytes) {}

    u8 sSizi() const noexcept { return bytes_[0]; }
    u8 xRSizi() const noexcept { return bytes_[1]; }
    u8 yRSizi() const noexcept { return bytes_[2]; }
};

/// The JPEG 2000 coding style default: Scod, SGcod, and the rest as bytes (SMPTE ST 422).
class CORVID_EXPORT J2KCodingStyleDefault : public Visitable<J2KCodingStyleDefault, ByteRun> {
public:
    J2KCodingStyleDefault(u8 scod, u32 sGcod, const u8* spcod, u64 spcodLength);
    explicit J2KCodingStyleDefault(ByteView bytes);
    static bool fits(ByteView bytes) noexcept { return ByteRun::fits(bytes) && bytes.size >= head; }

    u8 scod() const noexcept { return bytes_[0]; }
    u32 sGcod() const noexcept { return readBigEndian<u32>(bytes_.data() + 1); }
    const DataStream& spcod() const noexcept { return spcod_; }

private:
    static constexpr std::size_t head = 5;

    DataStream spcod_;
};

/// The JPEG 2000 quantisation default: Sqcd, and the rest as bytes (SMPTE ST 422).
class CORVID_EXPORT J2KQuantisationDefault : public Visitable<J2KQuantisationDefault, ByteRun> {
public:
    J2KQuantisationDefault(u8 sqcd, const u8* sPgcd, u64 sPgcdLength);
    explicit J2KQuantisationDefault(ByteView bytes);
    static bool fits(ByteView bytes) noexcept { return ByteRun::fits(bytes) && bytes.size >= head; }

    u8 sqcd() const noexcept { return bytes_[0]; }
    const DataStream& sPgcd() const noexcept { return sPgcd_; }

private:
    static constexpr std::size_t head = 1;

    DataStream sPgcd_;
};

} // namespace Corvid::Types
