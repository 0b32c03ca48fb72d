#include "host/mxf/Warnings.h"

#include <gtest/gtest.h>

namespace Corvid::mxf {
namespace {

TEST(Warning, namesItsPlaceItsTextAndItsCode) {
    Warning warning(WarningKinds::unfitValue, "the value is empty");
    EXPECT_EQ(warning.message(), "the value is empty [unfit-value]");
    warning.localTag = Types::u16{0x3B02};
    EXPECT_EQ(warning.message(), "property 3b.02: the value is empty [unfit-value]");
    warning.offset = 4132;
    warning.set = "Preface";
    warning.property = "FileLastModified";
    EXPECT_EQ(warning.message(), "byte 4132: set Preface: property 3b.02 FileLastModified: the "
                                 "value is empty [unfit-value]");
}

TEST(Warning, saysHowManyMoreItIsAbout) {
    EXPECT_EQ(Warning(WarningKinds::noPreface, "x").message(16), "x, and 16 more [no-preface]");
}

} // namespace
} // namespace Corvid::mxf
