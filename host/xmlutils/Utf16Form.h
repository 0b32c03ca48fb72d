#pragma once

#include <cstddef>

namespace Corvid::XMLUtils {

/// What the first bytes of a document say about its encoding.
struct Utf16Form {
    enum class Order : unsigned char {
        none,      ///< the bytes are no UTF-16
        lowFirst,  ///< UTF-16LE
        highFirst, ///< UTF-16BE
    };

    Order order = Order::none;
    /// The size of the byte order mark, which is no part of the text.
    std::size_t markSize = 0;
};

/// Recognises UTF-16 by its first bytes: a byte order mark, or a character with which a document
/// can start, `<` or white space, in two bytes.
/// @param first  the first bytes, four if there are as many.
Utf16Form recogniseUtf16(const unsigned char* first, std::size_t count) noexcept;

} // namespace Corvid::XMLUtils
