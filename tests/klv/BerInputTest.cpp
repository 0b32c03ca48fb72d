#include "host/klv/BerInput.h"

#include "host/base/Exceptions.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

namespace Corvid::KLV {
namespace {

using Bytes = std::vector<unsigned char>;

struct Form {
    const char* name;
    Bytes bytes;
    std::uint64_t value;
};
void PrintTo(const Form& form, std::ostream* out) { *out << form.name; }
template <class Case> std::string nameOfCase(const ::testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

class ReadsBer : public ::testing::TestWithParam<Form> {};

TEST_P(ReadsBer, tellsValueAndOctets) {
    Bytes bytes = GetParam().bytes;
    const std::size_t octets = bytes.size();
    bytes.push_back(0xEE); // what follows takes no part
    const BerLength length = readBer(bytes.data(), bytes.size());
    EXPECT_EQ(length.value, GetParam().value);
    EXPECT_EQ(length.octets, octets);
    EXPECT_EQ(berOctetsFromFirst(bytes[0]), octets);
}

TEST_P(ReadsBer, refusesEveryPrefix) {
    for (std::size_t size = 0; size != GetParam().bytes.size(); ++size) {
        EXPECT_THROW(readBer(GetParam().bytes.data(), size), Exceptions::InvalidLength) << size;
    }
}

INSTANTIATE_TEST_SUITE_P(
    , ReadsBer,
    ::testing::Values(Form{"Zero", {0}, 0}, Form{"LongestShortForm", {0x7F}, 127},
                      Form{"TwoOctets", {0x81, 0x80}, 128},
                      Form{"TwoOctetsOfASmallValue", {0x81, 5}, 5},
                      Form{"ThreeOctets", {0x82, 1, 0}, 256},
                      Form{"FourOctets", {0x83, 0, 0, 20}, 20},
                      Form{"FiveOctets", {0x84, 1, 2, 3, 4}, 0x01020304},
                      Form{"SixOctets", {0x85, 1, 0, 0, 0, 0}, 0x100000000},
                      Form{"SevenOctets", {0x86, 0, 0, 0, 0, 0, 7}, 7},
                      Form{"EightOctets", {0x87, 1, 0, 0, 0, 0, 0, 0}, 0x1000000000000},
                      Form{"NineOctets", {0x88, 0, 0, 0, 0, 0, 0, 0, 9}, 9},
                      Form{"Greatest",
                           {0x88, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF},
                           0xFFFFFFFFFFFFFFFF}),
    nameOfCase<Form>);

TEST(BerInput, refusesTheIndefiniteForm) {
    const Bytes bytes(20, 0x80);
    EXPECT_THROW(readBer(bytes.data(), bytes.size()), Exceptions::InvalidLength);
}

TEST(BerInput, refusesMoreThanNineOctets) {
    for (unsigned first = 0x89; first <= 0xFF; ++first) {
        const Bytes bytes(200, static_cast<unsigned char>(first));
        EXPECT_THROW(readBer(bytes.data(), bytes.size()), Exceptions::InvalidLength) << first;
    }
}

} // namespace
} // namespace Corvid::KLV
