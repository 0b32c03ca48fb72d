#pragma once

#include "XMLBuilder/reader/nodes/NodePool.h"

#include <cstdint>
#include <string>

namespace Corvid::XMLBuilder {

/// All text right inside an element, CDATA sections included, or the value of an attribute.
class Content {
public:
    /// @param node  must outlive the object.
    explicit Content(const DocumentNode& node);
    Content(const Content&) = delete;
    Content& operator=(const Content&) = delete;

    std::u16string_view text() const noexcept { return text_; }
    /// Whether the text is that of one node as it is, so that a zero follows it.
    bool isOfOneNode() const noexcept { return joined_.empty(); }

private:
    std::u16string joined_; ///< where it is the text of several nodes
    std::u16string_view text_ = u"";
};

/// Text that is well-formed UTF-8, as UTF-16 with a terminator.
std::u16string_view addUtf8(NodePool& pool, std::string_view utf8);

/// The text as UTF-8, for messages.
std::string narrow(std::u16string_view text);

/// White space as XML has it.
constexpr bool isXmlSpace(char16_t unit) noexcept {
    constexpr std::uint64_t all = 1ULL << u' ' | 1ULL << u'\t' | 1ULL << u'\n' | 1ULL << u'\r';
    return unit <= u' ' && (all >> unit & 1) != 0;
}

/// Whether no character of XML 1.0 has such a code unit. Surrogates are halves of one.
constexpr bool isNoXmlUnit(char16_t unit) noexcept {
    return (unit < 0x20 && !isXmlSpace(unit)) || unit >= 0xFFFE;
}

/// A text without white space at its ends.
std::u16string_view trimmed(std::u16string_view text) noexcept;

} // namespace Corvid::XMLBuilder
