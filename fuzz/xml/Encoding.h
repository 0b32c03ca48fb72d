#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Corvid::Fuzzing {

/// How the characters of a document are stored.
enum class Encoding : unsigned char {
    bytes, ///< UTF-8, or whatever it is: the bytes as they are
    latin1,
    bytesWithMark, ///< UTF-8 with a byte order mark
    bigEndian,     ///< UTF-16
    bigEndianWithMark,
    littleEndian,
    littleEndianWithMark,
};
constexpr std::size_t encodingCount = 7;

struct DecodedText {
    Encoding encoding = Encoding::bytes;
    /// UTF-8 in general; a surrogate without its partner has three bytes, as other code points of
    /// its size have. What is no UTF-8 in bytes stays as it is.
    std::string text;
};

/// Takes any bytes. An odd byte at the end of UTF-16 is dropped.
DecodedText decode(const std::uint8_t* bytes, std::size_t size);

/// Gives the bytes back that decode() took; to another encoding a byte that is no UTF-8 goes as the
/// character with its number, and what Latin-1 lacks as a character reference.
std::string encode(const DecodedText& decoded);

/// The UTF-8 of a code point, also of one that may not be.
/// @param codePoint  at most 10FFFF.
std::string utf8Of(std::uint32_t codePoint);

} // namespace Corvid::Fuzzing
