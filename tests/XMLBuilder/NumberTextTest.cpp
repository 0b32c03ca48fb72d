#include "XMLBuilder/format/NumberText.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <random>
#include <sstream>

namespace Corvid::Testing {
namespace {

template <class Number> void agreesWithStream(Number number) {
    std::wostringstream stream;
    stream.imbue(std::locale::classic());
    stream << number;
    const XMLBuilder::DecimalText text(number);
    const std::u16string units = text.c_str();
    EXPECT_EQ(std::wstring(units.begin(), units.end()), stream.str());
    EXPECT_EQ(text.size(), units.size());
}

template <class Number> class NumberText : public testing::Test {};
using Numbers = testing::Types<int, unsigned, long long, unsigned long long>;
TYPED_TEST_SUITE(NumberText, Numbers, );

TYPED_TEST(NumberText, isWhatAStreamWritesInTheClassicLocale) {
    using Limits = std::numeric_limits<TypeParam>;
    for (const TypeParam number : {Limits::min(), Limits::max(), TypeParam{0}, TypeParam{1}}) {
        agreesWithStream(number);
    }
    std::mt19937_64 random(377);
    for (int i = 0; i != 20000; ++i) {
        agreesWithStream(static_cast<TypeParam>(random() >> (random() % 64)));
    }
}

/// A locale in which numbers are written as people write them, with points between thousands.
struct Grouped : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(NumberTextInAnyLocale, doesNotGroup) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new Grouped));
    const std::u16string text = XMLBuilder::DecimalText(1234567).c_str();
    std::locale::global(before);
    EXPECT_EQ(text, u"1234567");
}

} // namespace
} // namespace Corvid::Testing
