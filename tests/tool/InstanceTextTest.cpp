#include "tools/corvid/input/InstanceText.h"

#include <gtest/gtest.h>

using Corvid::Tool::parseInstanceUID;

namespace {

TEST(InstanceText, readsEveryForm) {
    for (const char* text :
         {"00.11.22.33.44.55.66.77.88.99.aa.bb.cc.dd.ee.ff",
          "00.11.22.33.44.55.66.77.88.99.AA.BB.CC.DD.EE.FF", "00112233445566778899aabbccddeeff",
          "00112233-4455-6677-8899-aabbccddeeff", "{00112233-4455-6677-8899-AABBCCDDEEFF}",
          "urn:uuid:00112233-4455-6677-8899-aabbccddeeff"}) {
        const auto uid = parseInstanceUID(text);
        ASSERT_TRUE(uid) << text;
        for (int i = 0; i != 16; ++i) {
            EXPECT_EQ((*uid)[i], i * 0x11) << text;
        }
    }
}

TEST(InstanceText, refusesOtherText) {
    for (const char* text :
         {"", "0011", "00112233445566778899aabbccddeef", "00112233445566778899aabbccddeeff0",
          "0011.2233.4455.6677.8899.aabb.ccdd.eeff", "g0112233445566778899aabbccddeeff",
          "00.11.22.33.44.55.66.77.88.99.aa.bb.cc.dd.ee.ff.",
          "001122334455-6677-8899-aabbccddeeff-"}) {
        EXPECT_FALSE(parseInstanceUID(text)) << text;
    }
}

} // namespace
