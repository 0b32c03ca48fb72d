#include "host/xmlutils/TextEncoder.h"

#include "host/dataio/DataSink.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace Corvid::XMLUtils {

namespace {

constexpr std::size_t bufferSize = 64 * 1024;
constexpr std::size_t longestUnit = 4;
constexpr std::size_t blockSize = 8;

bool machineIsBigEndian() noexcept {
    const unsigned short probe = 1;
    unsigned char first = 0;
    std::memcpy(&first, &probe, 1);
    return first == 0;
}

/// Encodes eight units at once where all of them are ASCII, which nearly all text is.
bool encodeAscii(const char16_t* text, unsigned char* to) noexcept {
    std::array<char16_t, blockSize> units;
    std::memcpy(units.data(), text, sizeof units);
    unsigned all = 0;
    for (const char16_t unit : units) {
        all |= unit;
    }
    if (all >= 0x80) {
        return false;
    }
    std::array<unsigned char, blockSize> bytes;
    for (std::size_t i = 0; i != blockSize; ++i) {
        bytes[i] = static_cast<unsigned char>(units[i]);
    }
    std::memcpy(to, bytes.data(), sizeof bytes);
    return true;
}

} // namespace

TextEncoder::TextEncoder(EncodingType encoding, DataIO::DataSink& sink)
    : form_(encoding == EncodingType::utf8      ? Form::utf8
            : encoding == EncodingType::utf16LE ? Form::utf16LE
            : encoding == EncodingType::utf16BE ? Form::utf16BE
            : machineIsBigEndian()              ? Form::utf16BE
                                                : Form::utf16LE),
      hasByteOrderMark_(encoding == EncodingType::utf16), sink_(sink), buffer_(bufferSize) {}

void TextEncoder::byteOrderMark() {
    if (hasByteOrderMark_) {
        constexpr char16_t mark = 0xFEFF;
        units(&mark, 1);
    }
}

void TextEncoder::asciiAsUnits(std::string_view text) {
    char16_t wide[64];
    while (!text.empty()) {
        const std::size_t count = std::min(text.size(), std::size(wide));
        std::copy_n(text.begin(), count, wide);
        units(wide, count);
        text.remove_prefix(count);
    }
}

void TextEncoder::units(const char16_t* text, std::size_t count) {
    if (form_ == Form::utf8) {
        toUtf8(text, count);
    } else {
        toUtf16(text, count);
    }
}

void TextEncoder::flush() {
    if (used_ != 0) {
        sink_.write(buffer_.data(), used_);
        used_ = 0;
    }
}

/// How many code units fit, whatever they are; never 0.
std::size_t TextEncoder::room() {
    if (buffer_.size() - used_ < 2 * longestUnit) {
        flush();
    }
    return (buffer_.size() - used_) / longestUnit;
}

void TextEncoder::toUtf8(const char16_t* text, std::size_t count) {
    const char16_t* const end = text + count;
    while (text != end) {
        const char16_t* const stop = text + std::min(room(), static_cast<std::size_t>(end - text));
        unsigned char* to = buffer_.data() + used_;
        while (stop - text >= std::ptrdiff_t{blockSize} && encodeAscii(text, to)) {
            text += blockSize;
            to += blockSize;
        }
        // The second unit of a pair may be after `stop`: the first one's four bytes pay for both.
        while (text < stop) {
            const unsigned long unit = *text++;
            if (unit < 0x80) {
                *to++ = static_cast<unsigned char>(unit);
            } else if (unit < 0x800) {
                *to++ = static_cast<unsigned char>(0xC0 | unit >> 6);
                *to++ = static_cast<unsigned char>(0x80 | (unit & 0x3F));
            } else if (unit < 0xD800 || unit > 0xDFFF) {
                *to++ = static_cast<unsigned char>(0xE0 | unit >> 12);
                *to++ = static_cast<unsigned char>(0x80 | (unit >> 6 & 0x3F));
                *to++ = static_cast<unsigned char>(0x80 | (unit & 0x3F));
            } else {
                const unsigned long point = 0x10000 + ((unit & 0x3FF) << 10) + (*text++ & 0x3FF);
                *to++ = static_cast<unsigned char>(0xF0 | point >> 18);
                *to++ = static_cast<unsigned char>(0x80 | (point >> 12 & 0x3F));
                *to++ = static_cast<unsigned char>(0x80 | (point >> 6 & 0x3F));
                *to++ = static_cast<unsigned char>(0x80 | (point & 0x3F));
            }
        }
        used_ = static_cast<std::size_t>(to - buffer_.data());
    }
}

void TextEncoder::toUtf16(const char16_t* text, std::size_t count) {
    const std::size_t high = form_ == Form::utf16BE ? 0 : 1;
    const char16_t* const end = text + count;
    while (text != end) {
        const char16_t* const stop = text + std::min(room(), static_cast<std::size_t>(end - text));
        unsigned char* to = buffer_.data() + used_;
        for (; text != stop; ++text, to += 2) {
            to[high] = static_cast<unsigned char>(*text >> 8);
            to[1 - high] = static_cast<unsigned char>(*text & 0xFF);
        }
        used_ = static_cast<std::size_t>(to - buffer_.data());
    }
}

} // namespace Corvid::XMLUtils
