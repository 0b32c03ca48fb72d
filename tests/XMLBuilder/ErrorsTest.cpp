#include "XMLBuilder/Errors.h"

#include "tests/XMLBuilder/Things.h"

#include <exception>

namespace Corvid::Testing {
namespace {

TEST(Errors, joinConditionAndExplanationAndTellThePlace) {
    const Failure failure = failureOf<Exceptions::InvalidFormat>([] {
        XMLBuilder::throwInvalidFormat("!yearValue.empty ()", "No 'Year' element in XML metadata",
                                       "some/file", 42);
    });
    EXPECT_EQ(failure.message, "!yearValue.empty (): No 'Year' element in XML metadata");
    EXPECT_EQ(failure.file, "some/file");
    EXPECT_EQ(failure.line, 42);
}

TEST(Errors, areCaughtByTheirOwnBaseOnly) {
    EXPECT_TRUE((std::is_base_of_v<Exceptions::BaseException, Exceptions::InvalidFormat>));
    EXPECT_FALSE((std::is_base_of_v<std::exception, Exceptions::BaseException>));
    EXPECT_FALSE((std::is_base_of_v<Exceptions::InvalidFormat, Exceptions::InvalidLength>));
}

TEST(Errors, tellLengthsByTheirOwnClass) {
    const Failure failure = failureOf<Exceptions::InvalidLength>(
        [] { XMLBuilder::throwInvalidLength("a == b", "differ", "some/file", 7); });
    EXPECT_EQ(failure.message, "a == b: differ");
    EXPECT_EQ(failure.file, "some/file");
    EXPECT_EQ(failure.line, 7);
    try {
        XMLBuilder::throwInvalidLength("a == b", "differ", "some/file", 7);
    } catch (const Exceptions::InvalidFormat&) {
        ADD_FAILURE() << "caught as InvalidFormat";
    } catch (const Exceptions::BaseException&) {
    }
}

TEST(Errors, haveTheirKindNumbersThroughTheBase) {
    const auto format =
        failureOf<Exceptions::BaseException>([] { throw Exceptions::InvalidFormat("m", "f", 1); });
    EXPECT_EQ(format.code, 8U);
    const auto parse =
        failureOf<Exceptions::BaseException>([] { throw Exceptions::ParseError("m", "f", 1); });
    EXPECT_EQ(parse.code, 33U);
}

} // namespace
} // namespace Corvid::Testing
