#include "XMLBuilder/reader/nodes/NodeText.h"

#include "host/base/Text.h"

#include <cstdint>
#include <cstring>

namespace Corvid::XMLBuilder {

namespace {

const DocumentNode* textFrom(const DocumentNode* node) {
    while (node != nullptr && node->kind != DocumentNode::Kind::text) {
        node = node->next;
    }
    return node;
}

/// The bytes at the start that are ASCII, eight at a time, widened.
/// @return how many.
std::size_t widenAscii(std::string_view utf8, char16_t* to) {
    std::size_t done = 0;
    for (std::uint64_t eight = 0; utf8.size() - done >= sizeof eight; done += sizeof eight) {
        std::memcpy(&eight, utf8.data() + done, sizeof eight);
        if ((eight & 0x8080808080808080U) != 0) {
            break;
        }
        // A copy, which is known not to change with what is written.
        unsigned char bytes[sizeof eight];
        std::memcpy(bytes, &eight, sizeof eight);
        for (std::size_t k = 0; k != sizeof eight; ++k) {
            to[done + k] = bytes[k];
        }
    }
    return done;
}

/// @param to  has room for as many units as there are bytes.
/// @return the end.
char16_t* toUtf16(std::string_view utf8, char16_t* to) {
    const std::size_t ascii = widenAscii(utf8, to);
    to += ascii;
    auto at = utf8.begin() + ascii;
    while (at != utf8.end()) {
        const auto first = static_cast<unsigned char>(*at++);
        if (first < 0x80) {
            *to++ = static_cast<char16_t>(first);
            continue;
        }
        const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
        char32_t code = first & (0x3FU >> more);
        for (int k = 0; k != more; ++k) {
            code = code << 6 | (static_cast<unsigned char>(*at++) & 0x3FU);
        }
        if (code > 0xFFFF) {
            *to++ = static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            *to++ = static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            *to++ = static_cast<char16_t>(code);
        }
    }
    return to;
}

} // namespace

Content::Content(const DocumentNode& node) {
    if (node.kind == DocumentNode::Kind::attribute) {
        text_ = node.value;
        return;
    }
    const DocumentNode* const first = textFrom(node.firstChild);
    if (first == nullptr) {
        return;
    }
    text_ = first->value;
    const DocumentNode* next = textFrom(first->next);
    if (next == nullptr) {
        return;
    }
    joined_ = text_;
    for (; next != nullptr; next = textFrom(next->next)) {
        joined_ += next->value;
    }
    text_ = joined_;
}

std::u16string_view addUtf8(NodePool& pool, std::string_view utf8) {
    char16_t* const text = pool.addText(utf8.size());
    char16_t* const end = toUtf16(utf8, text);
    *end = 0;
    return {text, static_cast<std::size_t>(end - text)};
}

std::string narrow(std::u16string_view text) {
    return Platform::toUtf8(Utf16Text(text.begin(), text.end()));
}

std::u16string_view trimmed(std::u16string_view text) noexcept {
    while (!text.empty() && isXmlSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isXmlSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace Corvid::XMLBuilder
