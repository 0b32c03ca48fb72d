#include "Corvid/Version.h"

#include <gtest/gtest.h>

using namespace Corvid;

TEST(Version, ofTheLibraryIsThatOfItsHeaders) {
    EXPECT_STREQ(version(), CORVID_VERSION);
    EXPECT_EQ(std::string(version()), std::to_string(CORVID_VERSION_MAJOR) + "." +
                                          std::to_string(CORVID_VERSION_MINOR) + "." +
                                          std::to_string(CORVID_VERSION_PATCH));
}
