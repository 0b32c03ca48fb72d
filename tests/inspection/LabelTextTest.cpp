#include "inspection/LabelText.h"
#include "inspection/RegisteredName.h"

#include "host/base/Text.h"

#include <gtest/gtest.h>

using namespace Corvid::Inspection;

namespace {

std::string dotted(const char* text) {
    const auto label = parseLabel(text);
    return label ? Corvid::Platform::toUtf8(label->toString()) : "none";
}

TEST(LabelText, readsEveryFormOfALabel) {
    const std::string label = "06.0e.2b.34.04.01.01.0a.0d.01.03.01.02.10.60.01";
    for (const char* form :
         {"06.0e.2b.34.04.01.01.0a.0d.01.03.01.02.10.60.01",
          "06.0E.2B.34.04.01.01.0A.0D.01.03.01.02.10.60.01",
          "urn:smpte:ul:060e2b34.0401010a.0d010301.02106001",
          "URN:SMPTE:UL:060E2B34.0401010A.0D010301.02106001", "060e2b340401010a0d01030102106001",
          "0x060e2b340401010a0d01030102106001", "0X060E2B340401010A0D01030102106001",
          "06 0e 2b 34 04 01 01 0a 0d 01 03 01 02 10 60 01",
          "06-0e-2b-34-04-01-01-0a-0d-01-03-01-02-10-60-01",
          "06:0e:2b:34:04:01:01:0a:0d:01:03:01:02:10:60:01",
          "060e2b34-0401010a-0d010301-02106001"}) {
        EXPECT_EQ(dotted(form), label) << form;
    }
}

TEST(LabelText, takesNothingElseForALabel) {
    for (const char* text : {"", "0x", "urn:smpte:ul:", "Preface", "3c0a",
                             "06.0e.2b.34.04.01.01.0a.0d.01.03.01.02.10.60",
                             "06.0e.2b.34.04.01.01.0a.0d.01.03.01.02.10.60.01.00",
                             "06.0e.2b.34.04.01.01.0a.0d.01.03.01.02.10.60.0",
                             "06.0e.2b.34.04.01.01.0a.0d.01.03.01.02.10.60.0g",
                             "0.60e.2b.34.04.01.01.0a.0d.01.03.01.02.10.60.01",
                             "urn:smpte:umid:060e2b34.0401010a.0d010301.02106001"}) {
        EXPECT_EQ(dotted(text), "none") << text;
    }
}

TEST(LabelText, readsLocalTags) {
    for (const char* form : {"3c0a", "3C0A", "3c.0a", "3C.0A", "0x3c0a", "0X3C0A", "0x3c.0a"}) {
        EXPECT_EQ(parseLocalTag(form), 0x3C0A) << form;
    }
    EXPECT_EQ(parseLocalTag("0000"), 0);
    EXPECT_EQ(parseLocalTag("ffff"), 0xFFFF);
    for (const char* text : {"", "3c0", "3c0a0", "3c-0a", "0x", "3.c0a", "name", "c0ag"}) {
        EXPECT_FALSE(parseLocalTag(text)) << text;
    }
}

TEST(RegisteredName, knowsLabelsPropertiesAndKeys) {
    EXPECT_EQ(registeredName(std::string("06.0e.2b.34.04.01.01.7f.04.01.01.01.01.02.00.00")),
              "ITU-R BT.709 Transfer Characteristic");
    EXPECT_EQ(registeredName(std::string("06.0e.2b.34.01.01.01.7f.05.30.04.05.00.00.00.00")),
              "Timeline Edit Rate");
    EXPECT_EQ(registeredName(std::string("06.0e.2b.34.02.05.01.7f.0d.01.02.01.01.05.01.00")),
              "PrimerPack");
    EXPECT_EQ(registeredName(std::string("06.0e.2b.34.04.01.01.01.0e.7f.00.00.00.00.00.00")), "");
    EXPECT_EQ(registeredName(std::string("tag 81.23")), "");
}

} // namespace
