#include "host/xmlutils/Utf16Form.h"

#include <gtest/gtest.h>

#include <string>

namespace Corvid::Testing {
namespace {

using XMLUtils::Utf16Form;
using Order = Utf16Form::Order;
using namespace std::string_literals;

struct Case {
    const char* name;
    std::string bytes;
    Order order;
    std::size_t markSize;
};

void PrintTo(const Case& c, std::ostream* to) { *to << c.name; }
std::string nameOfCase(const testing::TestParamInfo<Case>& info) { return info.param.name; }

class RecognisesUtf16 : public testing::TestWithParam<Case> {};

TEST_P(RecognisesUtf16, byItsFirstBytes) {
    const std::string& bytes = GetParam().bytes;
    const Utf16Form form = XMLUtils::recogniseUtf16(
        reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    EXPECT_EQ(form.order, GetParam().order);
    EXPECT_EQ(form.markSize, GetParam().markSize);
}

INSTANTIATE_TEST_SUITE_P(
    , RecognisesUtf16,
    testing::Values(Case{"LowFirstWithMark", "\xFF\xFE<\0"s, Order::lowFirst, 2},
                    Case{"HighFirstWithMark", "\xFE\xFF\0<"s, Order::highFirst, 2},
                    Case{"LowFirstWithoutMark", "<\0r\0"s, Order::lowFirst, 0},
                    Case{"HighFirstWithoutMark", "\0<\0r"s, Order::highFirst, 0},
                    Case{"LowFirstAfterWhiteSpace", "\n\0<\0"s, Order::lowFirst, 0},
                    Case{"HighFirstAfterWhiteSpace", "\0 \0<"s, Order::highFirst, 0},
                    Case{"TwoBytes", "<\0"s, Order::lowFirst, 0},
                    Case{"Utf32WithMark", "\xFF\xFE\0\0"s, Order::none, 0},
                    Case{"Utf32WithoutMark", "<\0\0\0"s, Order::none, 0},
                    Case{"Utf8", "<r/>", Order::none, 0},
                    Case{"Utf8WithMark", "\xEF\xBB\xBF<", Order::none, 0},
                    Case{"OneByte", "<", Order::none, 0}, Case{"Nothing", "", Order::none, 0}),
    nameOfCase);

} // namespace
} // namespace Corvid::Testing
