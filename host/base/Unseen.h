#pragma once

#include "Corvid/Export.h"

namespace Corvid::Platform {

/// Whether people can't see a character: what Unicode calls default ignorable, all that turns the
/// direction of text among it, but for the variation selectors, which symbols need; and the ends of
/// lines and paragraphs, and the marks of interlinear annotation.
CORVID_EXPORT bool isUnseen(char32_t point) noexcept;

/// Whether a character is a control character of ISO/IEC 6429.
constexpr bool isControl(char32_t point) noexcept {
    return point < 0x20 || (point >= 0x7F && point < 0xA0);
}

} // namespace Corvid::Platform
