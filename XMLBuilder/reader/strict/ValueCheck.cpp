#include "XMLBuilder/reader/strict/ValueCheck.h"

#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/strict/ValueRules.h"

namespace Corvid::XMLBuilder {

bool ValueCheck::refuse(const DocumentNode& node, std::u16string_view text,
                        const std::string& expected) {
    mistakes_.add(node,
                  (trimmed(text).empty() ? "is empty" : quoted(text)) + ", expected " + expected);
    return false;
}

bool ValueCheck::textOnly(const DocumentNode& node) { return holdsTextOnly(node, mistakes_); }

bool ValueCheck::number(const DocumentNode& node, const IntegerRange& range) {
    return text(
        node, [&range](std::u16string_view number) { return range.holds(number); },
        [&range] { return range.describe(); });
}

bool ValueCheck::bytes(const DocumentNode& node, bool mayBeEmpty) {
    return text(
        node,
        [mayBeEmpty](std::u16string_view digits) {
            return isHex(digits) && (mayBeEmpty || !digits.empty());
        },
        "pairs of hexadecimal digits");
}

bool ValueCheck::identifier(std::size_t bytes, std::size_t orSo) {
    return text(
        node_,
        [=](std::u16string_view digits) {
            return isDottedHex(digits, bytes) || isDottedHex(digits, orSo);
        },
        [=] {
            return std::to_string(bytes) +
                   " pairs of hexadecimal digits with full stops between them";
        });
}

const DocumentNode* ValueCheck::onlyChild(const char16_t* qualified, const char16_t* uri) {
    refuseText(node_, mistakes_);
    const DocumentNode* const found = firstElement(node_);
    if (found == nullptr || !hasName(*found, Names::localPart(qualified), uri)) {
        mistakes_.add(found == nullptr ? node_ : *found, "expected " + narrow(qualified));
        return nullptr;
    }
    if (const DocumentNode* const other = nextElement(*found)) {
        mistakes_.add(*other, "expected nothing after " + narrow(qualified));
        return nullptr;
    }
    checkAttributes(*found, nullptr, {}, mistakes_);
    return found;
}

} // namespace Corvid::XMLBuilder
