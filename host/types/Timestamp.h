#pragma once

#include "host/types/FixedBytes.h"

namespace Corvid::Types {

/// A date and time. Nothing checks it against a calendar; all zeros mean an unknown time.
class CORVID_EXPORT Timestamp : public Visitable<Timestamp, FixedBytes<8>> {
public:
    /// @param milliSecond  the bytes hold it divided by 4 and its low 8 bits only.
    Timestamp(const u16& year, const u8& month, const u8& day, const u8& hour, const u8& minute,
              const u8& second, const u16& milliSecond) noexcept
        : milliSecond_(milliSecond) {
        putAt(0, year);
        bytes_[2] = month;
        bytes_[3] = day;
        bytes_[4] = hour;
        bytes_[5] = minute;
        bytes_[6] = second;
        bytes_[7] = static_cast<u8>(milliSecond / 4);
    }
    explicit Timestamp(ByteView bytes) noexcept
        : Visitable(bytes), milliSecond_(static_cast<u16>(bytes_[7] * 4)) {}

    u16 year() const noexcept { return numberAt<u16>(0); }
    u8 month() const noexcept { return bytes_[2]; }
    u8 day() const noexcept { return bytes_[3]; }
    u8 hour() const noexcept { return bytes_[4]; }
    u8 minute() const noexcept { return bytes_[5]; }
    u8 second() const noexcept { return bytes_[6]; }
    /// Milliseconds.
    u16 milliSecond() const noexcept { return milliSecond_; }

private:
    u16 milliSecond_;
};

} // namespace Corvid::Types
