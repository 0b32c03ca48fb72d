#include "host/base/ExceptionText.h"

#include "host/base/Exceptions.h"

#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>

using namespace Corvid;

namespace {

struct Case {
    const char* name;
    std::function<void()> work;
    const char* text;
};

class CurrentMessage : public testing::TestWithParam<Case> {};

TEST_P(CurrentMessage, isWhatTheExceptionSays) {
    try {
        GetParam().work();
        FAIL() << "nothing is thrown";
    } catch (...) {
        EXPECT_EQ(Exceptions::currentMessage(), GetParam().text);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , CurrentMessage,
    testing::Values(
        Case{"OfTheFamily",
             [] { throw Exceptions::InvalidFormat(std::string("größer"), CORVID_HERE); }, "größer"},
        Case{"OfTheFamilyByItsOwn8BitText",
             [] { throw Exceptions::ParseError("plain", CORVID_HERE); }, "plain"},
        Case{"OfTheStandardLibrary", [] { throw std::runtime_error("no"); }, "no"},
        Case{"OutOfMemory", [] { throw std::bad_alloc(); }, "not enough memory"},
        Case{"Another", [] { throw 1; }, "unknown exception"}),
    [](const auto& each) { return each.param.name; });

} // namespace
