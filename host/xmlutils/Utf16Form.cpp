#include "host/xmlutils/Utf16Form.h"

namespace Corvid::XMLUtils {

namespace {

bool startsDocument(unsigned char byte) {
    return byte == '<' || byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

} // namespace

Utf16Form recogniseUtf16(const unsigned char* first, std::size_t count) noexcept {
    using Order = Utf16Form::Order;
    // Zeros after what looks like one code unit make it one of UTF-32, which parsers know.
    const bool isWider = count >= 4 && first[2] == 0 && first[3] == 0;
    if (count < 2 || isWider) {
        return {};
    }
    if (first[0] == 0xFF && first[1] == 0xFE) {
        return {Order::lowFirst, 2};
    }
    if (first[0] == 0xFE && first[1] == 0xFF) {
        return {Order::highFirst, 2};
    }
    if (startsDocument(first[0]) && first[1] == 0) {
        return {Order::lowFirst, 0};
    }
    if (first[0] == 0 && startsDocument(first[1])) {
        return {Order::highFirst, 0};
    }
    return {};
}

} // namespace Corvid::XMLUtils
