#pragma once

#include "host/base/Text.h"

#include <type_traits>

/// Where the interface's UTF-16 (unsigned short) and Xerces-C's (XMLCh, which is char16_t) meet,
/// and nowhere else. What handles XML without Xerces-C uses char16_t too.
///
/// Both types are 16-bit unsigned code units in the machine's byte order, but to the compiler they
/// are different types, so reading an object of one through a pointer to the other is not
/// guaranteed to work. Two things keep it safe: the pointers that are made here go to and come from
/// Xerces-C, which is compiled separately; and every target with a source that includes this header
/// is compiled with -fno-strict-aliasing, because such a source may also read through the pointer.
/// The CMake function corvid_use_xml_text(<target>) gives a target that option, privately.
#ifndef CORVID_USES_XML_TEXT
#error "call corvid_use_xml_text(<target>) for the target that includes host/xmlutils/XmlText.h"
#endif

namespace Corvid::XMLUtils {

static_assert(sizeof(char16_t) == sizeof(Utf16Unit), "a code unit has 16 bits on either side");
static_assert(alignof(char16_t) == alignof(Utf16Unit), "an array of one is aligned as the other");
static_assert(std::is_unsigned_v<char16_t> && std::is_unsigned_v<Utf16Unit>,
              "code units compare alike on either side");

/// The same text for Xerces-C. A null pointer stays one.
inline const char16_t* toXml(const Utf16Unit* text) noexcept {
    return reinterpret_cast<const char16_t*>(text);
}

/// The text as Xerces-C takes it; borrowed from `text`.
inline const char16_t* toXml(const Utf16Text& text) noexcept { return toXml(text.c_str()); }

/// The same text for the interface. A null pointer stays one.
inline const Utf16Unit* fromXml(const char16_t* text) noexcept {
    return reinterpret_cast<const Utf16Unit*>(text);
}

} // namespace Corvid::XMLUtils
