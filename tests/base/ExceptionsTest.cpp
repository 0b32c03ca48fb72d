#include "host/base/Exceptions.h"

#include <gtest/gtest.h>

#include <exception>
#include <set>
#include <string>
#include <type_traits>

namespace Corvid::Exceptions {
namespace {

static_assert(!std::is_base_of_v<std::exception, BaseException>);
static_assert(std::is_abstract_v<BaseException>);
static_assert(!std::is_copy_assignable_v<InvalidFormat>);

/// Catches what is thrown as its root class, and gives its number and its text.
template <class Throw> std::pair<unsigned int, std::string> caughtFrom(Throw doThrow) {
    try {
        doThrow();
    } catch (const BaseException& e) {
        EXPECT_STREQ(Platform::toUtf8(e.message()).c_str(), Platform::toUtf8(e.what()).c_str());
        return {e.code(), Platform::toUtf8(e.message())};
    }
    return {0, "nothing was thrown"};
}

TEST(Exceptions, tellCodeAndMessageThroughTheirRoot) {
    using Result = std::pair<unsigned int, std::string>;
    EXPECT_EQ(caughtFrom([] { throw InvalidFormat("bad colour", CORVID_HERE); }),
              Result(8, "bad colour"));
    EXPECT_EQ(caughtFrom([] { throw ParseError("no root", CORVID_HERE); }), Result(33, "no root"));
}

TEST(Exceptions, haveACodeOfTheirOwnEach) {
    std::set<unsigned int> codes;
    std::size_t classes = 0;
#define CORVID_EXCEPTION(Class, Code)                                                              \
    codes.insert(caughtFrom([] { throw Class("x", CORVID_HERE); }).first);                         \
    ++classes;
    CORVID_EXCEPTION_FAMILY(CORVID_EXCEPTION)
#undef CORVID_EXCEPTION
    EXPECT_EQ(codes.size(), classes);
    EXPECT_EQ(codes.count(0), 0U);
}

TEST(Exceptions, copyTheirMessage) {
    Utf16Text text = Platform::widen("set at byte 12");
    const InvalidFormat thrown(text.c_str(), "File.cpp", 7);
    text[0] = 'X';
    const InvalidFormat copy = thrown;
    EXPECT_EQ(Platform::toUtf8(thrown.message()), "set at byte 12");
    EXPECT_EQ(Platform::toUtf8(copy.message()), "set at byte 12");
    EXPECT_NE(thrown.message(), copy.message());
}

TEST(Exceptions, widenNarrowTextByteByByteAndReadStringsAsUtf8) {
    const InvalidFormat narrow("\xC3\xA9", "", 0);
    EXPECT_EQ(Utf16Text(narrow.message()), (Utf16Text{0xC3, 0xA9}));
    const InvalidFormat utf8(std::string("\xC3\xA9"), "", 0);
    EXPECT_EQ(Utf16Text(utf8.message()), (Utf16Text{0xE9}));
}

TEST(Exceptions, knowTheirPlace) {
    const InvalidFormat e("x", "Some.cpp", 42);
    EXPECT_STREQ(e.file(), "Some.cpp");
    EXPECT_EQ(e.line(), 42);
}

} // namespace
} // namespace Corvid::Exceptions
