#include "XMLBuilder/format/NumberInput.h"

#include <gtest/gtest.h>

#include <locale>
#include <random>
#include <sstream>
#include <string>

namespace Corvid::Testing {
namespace {

/// A text that looks like a number more often than not.
std::u16string randomText(std::mt19937_64& random) {
    static const std::u16string mixed =
        u"0123456789+-. ,xaeE_\t\n\v\f\r\u0085\u00A0\u2003\u3000\u0665\uFF15";
    const auto upTo = [&random](std::size_t count) { return random() % count; };
    std::u16string text;
    for (std::size_t blanks = upTo(4); blanks > 1; --blanks) {
        text += u" \t\n\v\f\r"[upTo(6)];
    }
    if (upTo(3) == 0) {
        text += u"+-"[upTo(2)];
    }
    for (std::size_t zeros = upTo(8); zeros > 5; --zeros) {
        text += u'0';
    }
    for (std::size_t digits = upTo(24); digits != 0; --digits) {
        text += static_cast<char16_t>(u'0' + upTo(10));
    }
    for (std::size_t rest = upTo(6); rest != 0; --rest) {
        text += mixed[upTo(mixed.size())];
    }
    return text;
}

template <class Number> Number streamed(const std::u16string& text) {
    std::wistringstream stream(std::wstring(text.begin(), text.end()));
    stream.imbue(std::locale::classic());
    Number number = 0;
    stream >> number;
    return number;
}

template <class Number> void expectAgreement(const std::u16string& text) {
    EXPECT_EQ(XMLBuilder::readNumber<Number>(text.c_str()), streamed<Number>(text))
        << testing::PrintToString(text);
}

/// Numbers with points between thousands.
struct Grouped : std::numpunct<wchar_t> {
    wchar_t do_thousands_sep() const override { return L'.'; }
    std::string do_grouping() const override { return "\3"; }
};

class GlobalLocale {
public:
    explicit GlobalLocale(const std::locale& locale) : before_(std::locale::global(locale)) {}
    ~GlobalLocale() { std::locale::global(before_); }

private:
    std::locale before_;
};

template <class Number> class NumberInput : public testing::Test {
protected:
    static void compareOften() {
        for (const char16_t* text : {u"",
                                     u" ",
                                     u"+",
                                     u"-",
                                     u"-0",
                                     u"0x1F",
                                     u"12abc",
                                     u"- 5",
                                     u"+-5",
                                     u"2147483647",
                                     u"2147483648",
                                     u"-2147483648",
                                     u"-2147483649",
                                     u"4294967295",
                                     u"4294967296",
                                     u"-4294967295",
                                     u"-4294967296",
                                     u"9223372036854775807",
                                     u"9223372036854775808",
                                     u"-9223372036854775808",
                                     u"-9223372036854775809",
                                     u"18446744073709551615",
                                     u"18446744073709551616",
                                     u"-18446744073709551615",
                                     u"1.234.567"}) {
            expectAgreement<Number>(text);
        }
        std::mt19937_64 random(2001);
        for (int i = 0; i != 40000; ++i) {
            expectAgreement<Number>(randomText(random));
        }
    }
};
using Numbers = testing::Types<int, unsigned, std::int64_t, std::uint64_t>;
TYPED_TEST_SUITE(NumberInput, Numbers, );

TYPED_TEST(NumberInput, readsWhatAStreamInTheClassicLocaleReads) { this->compareOften(); }

TYPED_TEST(NumberInput, doesNotMindTheGlobalLocale) {
    const GlobalLocale hostile(std::locale(std::locale::classic(), new Grouped));
    this->compareOften();
    EXPECT_EQ(XMLBuilder::readNumber<TypeParam>(u"1.234"), static_cast<TypeParam>(1));
}

TEST(StreamSpace, isWhatAStreamSkips) {
    const auto& kinds = std::use_facet<std::ctype<wchar_t>>(std::locale::classic());
    for (unsigned unit = 1; unit != 0x10000; ++unit) {
        EXPECT_EQ(XMLBuilder::isStreamSpace(static_cast<char16_t>(unit)),
                  kinds.is(std::ctype_base::space, static_cast<wchar_t>(unit)))
            << unit;
    }
}

} // namespace
} // namespace Corvid::Testing
