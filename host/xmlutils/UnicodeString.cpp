#include "host/xmlutils/UnicodeString.h"

namespace Corvid::XMLUtils {

UnicodeString::UnicodeString(const char* text)
    : text_(Platform::widen(text == nullptr ? std::string_view() : std::string_view(text))) {}

UnicodeString::UnicodeString(const Utf16Unit* text) { utf16ToWstring(text, text_); }

UnicodeString::UnicodeString(const Utf16Text& text) : UnicodeString(text.c_str()) {}

void utf16ToWstring(const Utf16Unit* text, Utf16Text& out) {
    if (text == nullptr) {
        out.clear();
    } else {
        out.assign(text);
    }
}

} // namespace Corvid::XMLUtils
