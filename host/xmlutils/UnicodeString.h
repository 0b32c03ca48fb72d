#pragma once

#include "Corvid_XMLUtils/Export.h"
#include "host/base/Text.h"

#include <cstddef>

namespace Corvid::XMLUtils {

/// UTF-16 text that is made once and handed to the DOM many times.
class CORVID_XMLUTILS_EXPORT UnicodeString {
public:
    UnicodeString() = default;

    /// Widens 8-bit text code by code (ISO 8859-1).
    /// @param text  zero-terminated; null is empty text.
    UnicodeString(const char* text);

    /// @param text  zero-terminated; null is empty text.
    UnicodeString(const Utf16Unit* text);

    /// The text up to its first zero, as any zero-terminated text.
    UnicodeString(const Utf16Text& text);

    /// Zero-terminated; lives as long as this object.
    const Utf16Unit* utf16() const noexcept { return text_.c_str(); }

    /// The size of the text in bytes, without the zero at its end.
    std::size_t utf16Size() const noexcept { return text_.size() * sizeof(Utf16Unit); }

    /// The number of code units, without the zero at the end.
    std::size_t size() const noexcept { return text_.size(); }

    const Utf16Text& text() const noexcept { return text_; }

    friend bool operator==(const UnicodeString& a, const UnicodeString& b) {
        return a.text_ == b.text_;
    }
    friend bool operator!=(const UnicodeString& a, const UnicodeString& b) { return !(a == b); }

private:
    Utf16Text text_;
};

/// Makes a string of zero-terminated UTF-16 text.
/// @param text  null is empty text.
/// @param out   replaced.
CORVID_XMLUTILS_EXPORT void utf16ToWstring(const Utf16Unit* text, Utf16Text& out);

} // namespace Corvid::XMLUtils
