#pragma once

#include "host/base/Text.h"
#include "host/types/ByteRuns.h"

namespace Corvid::Types {

/// UTF-16 text. It ends at its first zero; a terminator and padding after it are kept as bytes but
/// are no part of the text.
class CORVID_EXPORT UTF16String : public Visitable<UTF16String, ByteRun> {
public:
    /// @param text  zero-terminated; its bytes have no terminator.
    explicit UTF16String(const u16* text);
    /// @param bytes  UTF-16, big-endian.
    explicit UTF16String(ByteView bytes);
    /// True for whole units, unless the first is the terminator and others than zeros follow it:
    /// as an empty text they would be lost.
    static bool fits(ByteView bytes) noexcept;

    /// The text in the machine's byte order, zero-terminated.
    const u16* value() const noexcept { return text_.c_str(); }

private:
    Utf16Text text_;
};

/// 7-bit text (ISO/IEC 646), or 8-bit text that claims to be. It ends at its first zero.
class CORVID_EXPORT ISO7String : public Visitable<ISO7String, ByteRun> {
public:
    /// @param text  zero-terminated; its bytes have no terminator.
    explicit ISO7String(const char* text);
    explicit ISO7String(ByteView bytes);
    /// True unless the first byte is the terminator and others than zeros follow it: as an empty
    /// text they would be lost.
    static bool fits(ByteView bytes) noexcept;

    /// The text, zero-terminated.
    const char* value() const noexcept { return text_.c_str(); }

private:
    Templates::basic_string<char> text_;
};

} // namespace Corvid::Types
