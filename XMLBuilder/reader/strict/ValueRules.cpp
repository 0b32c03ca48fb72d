#include "XMLBuilder/reader/strict/ValueRules.h"

#include "XMLBuilder/format/CompoundFields.h"
#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/ValueForms.h"
#include "XMLBuilder/reader/strict/Mistakes.h"
#include "XMLBuilder/reader/strict/StrictText.h"
#include "host/base/Text.h"
#include "host/types/Types.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>

namespace Corvid::XMLBuilder {

namespace {

/// The range of an integer type.
struct Range {
    std::uint64_t least; ///< below zero by so much
    std::uint64_t greatest;

    template <class Number> static Range of() {
        using Limits = std::numeric_limits<Number>;
        return {std::is_signed_v<Number> ? static_cast<std::uint64_t>(Limits::max()) + 1 : 0,
                static_cast<std::uint64_t>(Limits::max())};
    }
    std::string describe() const {
        return "a whole number from " + (least == 0 ? "0" : "-" + std::to_string(least)) + " to " +
               std::to_string(greatest);
    }
};

/// Whether a text is a whole number in XML Schema's lexical form within a range.
bool isNumber(std::u16string_view text, const Range& range) {
    const bool isNegative = !text.empty() && text.front() == u'-';
    if (isNegative || (!text.empty() && text.front() == u'+')) {
        text.remove_prefix(1);
    }
    const std::uint64_t greatest = isNegative ? range.least : range.greatest;
    std::uint64_t magnitude = 0;
    for (const char16_t unit : text) {
        if (unit < u'0' || unit > u'9') {
            return false;
        }
        const auto digit = static_cast<std::uint64_t>(unit - u'0');
        if (digit > greatest || magnitude > (greatest - digit) / 10) {
            return false;
        }
        magnitude = magnitude * 10 + digit;
    }
    return !text.empty();
}

bool isHex(std::u16string_view text) {
    return text.size() % 2 == 0 && std::all_of(text.begin(), text.end(), isHexDigit);
}

/// Pairs of hexadecimal digits with full stops between them.
bool isDottedHex(std::u16string_view text, std::size_t bytes) {
    if (bytes == 0 || text.size() != 3 * bytes - 1) {
        return false;
    }
    for (std::size_t i = 0; i != text.size(); ++i) {
        if (i % 3 == 2 ? text[i] != u'.' : !isHexDigit(text[i])) {
            return false;
        }
    }
    return true;
}

bool isLeapYear(unsigned year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

class Rules : public ValueForms {
public:
    Rules(Types::Identifiers::Identifier type, const DocumentNode& node, EmptyParts empty,
          Mistakes& mistakes)
        : type_(type), node_(node), empty_(empty), mistakes_(mistakes) {}

    template <class T> bool check(As<T>, Integer) {
        return checkNumber(node_, Range::of<decltype(std::declval<const T&>().value())>());
    }
    /// Nothing but these digits: the parser takes any text but "0" for true.
    bool check(As<Types::Boolean>, Integer) {
        return checkText(
            node_, [](std::u16string_view text) { return text == u"0" || text == u"1"; }, "0 or 1");
    }
    bool check(As<Types::VersionType>, PackedVersion) { return checkNumber(node_, {0, 0xFFFF}); }
    template <class T> bool check(As<T>, Bytes) { return checkBytes(node_); }
    template <class T> bool check(As<T>, Text) { return holdsTextOnly(node_, mistakes_); }
    /// U+FFFD is what to-xml writes for a character that XML can't hold.
    bool check(As<Types::ISO7String>, Text) {
        return checkText(
            node_,
            [](std::u16string_view text) {
                return std::all_of(text.begin(), text.end(),
                                   [](char16_t unit) { return unit <= 0xFF || unit == 0xFFFD; });
            },
            "characters up to U+00FF, as the value has 8 bits for each", false);
    }

    bool check(As<Types::UTF16>, CodeUnit) {
        return checkText(
            node_, [](std::u16string_view text) { return text.size() <= 1; },
            "at most one character of 16 bits", false);
    }

    template <class T> bool check(As<T>, IdentifierText) { return checkIdentifier(); }
    bool check(As<Types::UUID>, AttributeIdentifier) { return checkIdentifier(); }

    /// A clip's identifier may be written as the basic UMID that it extends (SMPTE ST 330).
    bool check(As<Types::UMID64>, IdentifierText) {
        const bool mayBeBasic = node_.local == std::u16string_view(u"ExtendedClipID");
        return checkText(
            node_,
            [mayBeBasic](std::u16string_view text) {
                return isDottedHex(text, Types::UMID64::fixedSize) ||
                       (mayBeBasic && isDottedHex(text, Types::UMID32::fixedSize));
            },
            expectedIdentifier(Types::UMID64::fixedSize));
    }

    template <class T> bool check(As<T>, Compound) {
        using F = Fields<T>;
        const DocumentNode* around = &node_;
        if constexpr (F::wrapper.name != nullptr) {
            around = onlyChild(F::wrapper.name, F::names.uri);
            if (around == nullptr) {
                return false;
            }
        }
        return checkParts<T>(*around) && isSensible(As<T>{});
    }

    bool check(As<Types::RGBALayout>, Compound) {
        static constexpr const char16_t* component = u"types:RGBAComponent";
        bool isRight = true;
        std::size_t count = 0;
        refuseText(node_, mistakes_);
        for (const auto* child = firstElement(node_); child != nullptr;
             child = nextElement(*child)) {
            if (!hasName(*child, Names::localPart(component), Names::types.uri)) {
                mistakes_.add(*child, "expected types:RGBAComponent");
                isRight = false;
            } else {
                ++count;
                isRight = checkComponent(*child) && isRight;
            }
        }
        if (count != Types::RGBALayout::placesInXml) {
            mistakes_.add(node_, "has " + std::to_string(count) + " components, expected " +
                                     std::to_string(Types::RGBALayout::placesInXml));
            isRight = false;
        }
        return isRight;
    }

    template <class T> bool check(As<T>, ReferenceText) { return true; }
    template <class T> bool check(As<T>, Collection) { return true; }

private:
    /// @param trims  whether white space around the text does not count.
    template <class IsRight>
    bool checkText(const DocumentNode& node, IsRight isRight, const std::string& expected,
                   bool trims = true) {
        if (!holdsTextOnly(node, mistakes_)) {
            return false;
        }
        const std::u16string content = contentOf(node);
        const std::u16string_view text = trims ? trimmed(content) : std::u16string_view(content);
        if (isRight(text)) {
            return true;
        }
        mistakes_.add(node, (trimmed(text).empty() ? "is empty" : quoted(text)) + ", expected " +
                                expected);
        return false;
    }

    bool checkNumber(const DocumentNode& node, const Range& range) {
        return checkText(
            node, [&range](std::u16string_view text) { return isNumber(text, range); },
            range.describe());
    }

    bool checkBytes(const DocumentNode& node) {
        return checkText(node, isHex, "pairs of hexadecimal digits");
    }

    static std::string expectedIdentifier(std::size_t bytes) {
        return std::to_string(bytes) + " pairs of hexadecimal digits with full stops between them";
    }

    bool checkIdentifier() {
        const auto bytes = static_cast<std::size_t>(Types::Identifiers::typeSize(type_));
        return checkText(
            node_, [bytes](std::u16string_view text) { return isDottedHex(text, bytes); },
            expectedIdentifier(bytes));
    }

    static std::string nameOfPart(const char16_t* qualified) {
        return Platform::toUtf8(
            Utf16Text(qualified, qualified + std::u16string_view(qualified).size()));
    }

    const DocumentNode* onlyChild(const char16_t* qualified, const char16_t* uri) {
        refuseText(node_, mistakes_);
        const DocumentNode* const found = firstElement(node_);
        if (found == nullptr || !hasName(*found, Names::localPart(qualified), uri)) {
            mistakes_.add(found == nullptr ? node_ : *found, "expected " + nameOfPart(qualified));
            return nullptr;
        }
        if (const DocumentNode* const other = nextElement(*found)) {
            mistakes_.add(*other, "expected nothing after " + nameOfPart(qualified));
            return nullptr;
        }
        checkAttributes(*found, nullptr, {}, mistakes_);
        return found;
    }

    template <class T, class Get>
    bool checkPart(const DocumentNode& part, const Field<Get>& field) {
        if constexpr (std::is_base_of_v<Types::DataType, ContentOf<T, Get>>) {
            const bool mayBeEmpty = field.condition == nullptr || empty_ == EmptyParts::values;
            return checkText(
                part,
                [mayBeEmpty](std::u16string_view text) {
                    return isHex(text) && (mayBeEmpty || !text.empty());
                },
                "pairs of hexadecimal digits");
        } else {
            return checkNumber(part, Range::of<typename StoredContent<T, Get>::Type>());
        }
    }

    /// Each part once, and nothing else.
    template <class T> bool checkParts(const DocumentNode& around) {
        using F = Fields<T>;
        constexpr std::size_t count = std::tuple_size_v<decltype(F::list)>;
        std::array<bool, count> isThere{};
        bool isRight = true;
        refuseText(around, mistakes_);
        for (const auto* child = firstElement(around); child != nullptr;
             child = nextElement(*child)) {
            bool isKnown = false;
            std::size_t place = 0;
            const auto tryField = [&](const auto& field) {
                if (!isKnown && hasName(*child, Names::localPart(field.name), F::names.uri)) {
                    isKnown = true;
                    checkAttributes(*child, nullptr, {}, mistakes_);
                    if (isThere[place]) {
                        mistakes_.add(*child, "is there twice, expected once");
                        isRight = false;
                    } else {
                        isRight = checkPart<T>(*child, field) && isRight;
                    }
                    isThere[place] = true;
                }
                ++place;
            };
            std::apply([&](const auto&... field) { (tryField(field), ...); }, F::list);
            if (!isKnown) {
                mistakes_.add(*child, "is no part of this value");
                isRight = false;
            }
        }
        std::size_t place = 0;
        const auto require = [&](const auto& field) {
            if (!isThere[place++]) {
                mistakes_.add(around, "expected the part " + nameOfPart(field.name));
                isRight = false;
            }
        };
        std::apply([&](const auto&... field) { (require(field), ...); }, F::list);
        return isRight;
    }

    bool checkComponent(const DocumentNode& component) {
        static constexpr std::array<const char16_t*, 2> parts = {u"types:Code", u"types:Depth"};
        std::array<bool, 2> isThere{};
        bool isRight = true;
        refuseText(component, mistakes_);
        checkAttributes(component, nullptr, {}, mistakes_);
        for (const auto* child = firstElement(component); child != nullptr;
             child = nextElement(*child)) {
            const auto part = std::find_if(parts.begin(), parts.end(), [&](const char16_t* name) {
                return hasName(*child, Names::localPart(name), Names::types.uri);
            });
            const auto place = static_cast<std::size_t>(part - parts.begin());
            if (part == parts.end() || isThere[place]) {
                mistakes_.add(*child, "expected types:Code and types:Depth, once each");
                isRight = false;
            } else {
                isThere[place] = true;
                checkAttributes(*child, nullptr, {}, mistakes_);
                isRight = checkNumber(*child, {0, 0xFF}) && isRight;
            }
        }
        for (std::size_t place = 0; place != parts.size(); ++place) {
            if (!isThere[place]) {
                mistakes_.add(component, "expected the part " + nameOfPart(parts[place]));
                isRight = false;
            }
        }
        return isRight;
    }

    template <class T> bool isSensible(As<T>) { return true; }

    /// What is no time of a calendar may come from a file, so it is no mistake. All zeros mean that
    /// the time is not known (SMPTE ST 377-1).
    bool isSensible(As<Types::Timestamp>) {
        const auto part = [this](const char16_t* local) {
            const auto* child = firstElement(node_);
            while (child->local != std::u16string_view(local)) {
                child = nextElement(*child);
            }
            const std::u16string digits = contentOf(*child);
            unsigned number = 0;
            for (const char16_t unit : digits) {
                number = unit >= u'0' && unit <= u'9' ? 10 * number + (unit - u'0') : number;
            }
            return number;
        };
        const unsigned year = part(u"Year");
        const unsigned month = part(u"Month");
        const unsigned day = part(u"Day");
        const unsigned hour = part(u"Hour");
        const unsigned minute = part(u"Minute");
        const unsigned second = part(u"Second");
        const unsigned steps = part(u"mSec4");
        if (year + month + day + hour + minute + second + steps == 0) {
            return true;
        }
        static constexpr std::array<unsigned, 12> days = {31, 28, 31, 30, 31, 30,
                                                          31, 31, 30, 31, 30, 31};
        const auto refuse = [this](const char* what, unsigned number) {
            mistakes_.doubt(node_,
                            std::string("no calendar has ") + what + " " + std::to_string(number));
        };
        if (month < 1 || month > days.size()) {
            refuse("month", month);
        } else if (day < 1 || day > days[month - 1] + (month == 2 && isLeapYear(year) ? 1 : 0)) {
            refuse("day", day);
        } else if (hour > 23) {
            refuse("hour", hour);
        } else if (minute > 59) {
            refuse("minute", minute);
        } else if (second > 59) {
            refuse("second", second);
        } else if (steps > 249) {
            refuse("4 ms steps of a second:", steps);
        }
        return true;
    }

    Types::Identifiers::Identifier type_;
    const DocumentNode& node_;
    EmptyParts empty_;
    Mistakes& mistakes_;
};

} // namespace

bool hasRightForm(Types::Identifiers::Identifier type, const DocumentNode& node, EmptyParts empty,
                  Mistakes& mistakes) {
    Rules rules(type, node, empty, mistakes);
    switch (type) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    case Id:                                                                                       \
        return rules.check(As<Types::Class>{}, Rules::Form{});
#include "host/types/ValueTypes.def"
    }
    return true;
}

void checkAttributes(const DocumentNode& element, const char16_t* uri,
                     std::initializer_list<std::u16string_view> locals, Mistakes& mistakes) {
    static constexpr std::u16string_view xml = u"http://www.w3.org/XML/1998/namespace";
    static constexpr std::u16string_view xmlns = u"http://www.w3.org/2000/xmlns/";
    static constexpr std::u16string_view xsi = u"http://www.w3.org/2001/XMLSchema-instance";
    for (const auto* each = element.firstAttribute; each != nullptr; each = each->next) {
        const std::u16string_view own = each->uri == nullptr ? std::u16string_view() : each->uri;
        const bool isExpected =
            (uri == nullptr || own == uri) &&
            std::find(locals.begin(), locals.end(), each->local) != locals.end();
        if (!isExpected && own != xml && own != xmlns && own != xsi) {
            std::string expected;
            for (const auto local : locals) {
                expected += (expected.empty() ? ", expected " : " and ") + narrow(local);
            }
            mistakes.add(*each, "is no attribute of this element" +
                                    (expected.empty() ? ", expected none" : expected));
        }
    }
}

bool holdsTextOnly(const DocumentNode& node, Mistakes& mistakes) {
    const DocumentNode* const element = firstElement(node);
    if (element != nullptr) {
        mistakes.add(*element, "expected no element in this value");
    }
    return element == nullptr;
}

void refuseText(const DocumentNode& node, Mistakes& mistakes) {
    const std::u16string content = contentOf(node);
    if (const auto text = trimmed(content); !text.empty()) {
        mistakes.add(node, "has text " + quoted(text) + " between its elements, expected none");
    }
}

} // namespace Corvid::XMLBuilder
