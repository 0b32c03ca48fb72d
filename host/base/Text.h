#pragma once

#include "Corvid/Export.h"
#include "host/base/Templates.h"

#include <string>
#include <string_view>

namespace Corvid {

/// UTF-16 text as it crosses the interface: code units in the machine's byte order.
using Utf16Unit = unsigned short;
using Utf16Text =
    Templates::basic_string<Utf16Unit, Templates::char_traits<Utf16Unit>, Platform::malloc_alloc>;

namespace Platform {

/// Widens 8-bit text: each byte becomes the code unit of the same number (ISO 8859-1).
CORVID_EXPORT Utf16Text widen(std::string_view text);

/// Whether a text is decimal digits only, and not empty.
CORVID_EXPORT bool isDigits(std::string_view text) noexcept;

/// UTF-16 text as UTF-8, for messages and for people. A lone surrogate becomes U+FFFD.
CORVID_EXPORT std::string toUtf8(const Utf16Unit* text, std::size_t length);
CORVID_EXPORT std::string toUtf8(const Utf16Unit* text);
CORVID_EXPORT std::string toUtf8(const Utf16Text& text);

/// UTF-8 as UTF-16 text. A malformed sequence becomes one U+FFFD for each of its bytes.
CORVID_EXPORT Utf16Text fromUtf8(std::string_view text);

/// UTF-16 text as 8-bit text (ISO 8859-1); a code unit that does not fit becomes '?'.
CORVID_EXPORT std::string wstringToString(const Utf16Text& text);

} // namespace Platform

} // namespace Corvid
