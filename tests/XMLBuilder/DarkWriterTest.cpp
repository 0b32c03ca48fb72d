#include "tests/XMLBuilder/XmlOf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

using testing::HasSubstr;

const std::array<unsigned char, 16> privateKey{0x80, 1, 2,  3,  4,  5,  6,  7,
                                               8,    9, 10, 11, 12, 13, 14, 0xFF};
const std::string privateKeyText = "80.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.ff";
const std::string darkKeyText = "06.0e.2b.34.02.53.01.01.0e.7f.7f.7f.01.02.03.00";

std::string darkElement(const std::string& key, const std::string& octets, const std::string& hex) {
    return "<groups:DarkMetadata groups:BEROctetCount=\"" + octets + "\" groups:Key=\"" + key +
           "\">" + hex + "</groups:DarkMetadata>";
}

TEST(DarkWriter, writesKeyLengthSizeAndBytesOfADarkSet) {
    Model model;
    model.set("Preface", 1);
    model.darkSet(privateKey, 4, std::string_view("\x01\xAB", 2));
    model.darkSet(privateKey, 9, "");
    EXPECT_THAT(compactXmlOf(model),
                HasSubstr("<groups:FloatingDarkMetadata>" +
                          darkElement(privateKeyText, "4", "01AB") +
                          darkElement(privateKeyText, "9", "") +
                          "</groups:FloatingDarkMetadata></s377m:MetadataSets>"));
}

TEST(DarkWriter, usesTheUriThatHoldsThePrefix) {
    Model model = Model::extendedBy("namespace s377m urn:SMPTE:S377M\nnamespace t urn:test\n"
                                    "set t:Thing 06.0e.2b.34.02.53.01.01.0e.7f.02.00.00.00.00.00"
                                    " s377m:InterchangeObject concrete\n");
    model.set("Preface", 1);
    model.darkSet(privateKey, 4, "");
    EXPECT_THAT(compactXmlOf(model), HasSubstr("xmlns:groups=\"urn:SMPTE:Groups:MXF\""));
}

class WritesDarkGroup : public testing::TestWithParam<int> {};

TEST_P(WritesDarkGroup, asTheBytesItWasReadFromWhateverItsLengthField) {
    Model model;
    model.set("Preface", 1);
    auto& group = model.darkGroup(0x42);
    group.setBerLength(static_cast<unsigned char>(GetParam()));
    model.unknown(group, 0x8001, std::string_view("\xFF\x00", 2));
    model.unknown(group, 0x0042, "");
    model.unknown(group, 0x8001, "again");
    EXPECT_THAT(compactXmlOf(model),
                HasSubstr(darkElement(darkKeyText, std::to_string(GetParam()),
                                      "3C0A001000000000000000000000000000000042"
                                      "80010002FF00"
                                      "00420000"
                                      "80010005616761696E")));
}

INSTANTIATE_TEST_SUITE_P(, WritesDarkGroup, testing::Values(1, 2, 3, 4, 5, 8, 9));

/// Values whose size is the last that a length field of one octet holds, and those around it.
class WritesDarkGroupOfSize : public testing::TestWithParam<std::size_t> {};

TEST_P(WritesDarkGroupOfSize, withAllOfItsBytesAndNoOther) {
    Model model;
    model.set("Preface", 1);
    auto& group = model.partition.createDarkParsedGroup(KLV::Key(Model::darkKey()));
    group.setBerLength(1);
    model.unknown(group, 0x8001, std::string(GetParam() - 4, '\xEE'));
    std::string hex = "800100";
    constexpr char digits[] = "0123456789ABCDEF";
    hex += {digits[(GetParam() - 4) >> 4], digits[(GetParam() - 4) & 15]};
    for (std::size_t i = 4; i != GetParam(); ++i) {
        hex += "EE";
    }
    EXPECT_THAT(compactXmlOf(model), HasSubstr(">" + hex + "</groups:DarkMetadata>"));
}

INSTANTIATE_TEST_SUITE_P(, WritesDarkGroupOfSize, testing::Values(126, 127, 128, 129));

TEST(DarkWriter, writesAGroupOfKeyAndLengthOnlyWithAnEmptyText) {
    Model model;
    model.set("Preface", 1);
    model.partition.createDarkParsedGroup(KLV::Key(Model::darkKey()));
    EXPECT_THAT(compactXmlOf(model), HasSubstr(darkElement(darkKeyText, "4", "")));
}

} // namespace
} // namespace Corvid::Testing
