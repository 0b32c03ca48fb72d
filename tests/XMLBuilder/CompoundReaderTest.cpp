#include "tests/XMLBuilder/Things.h"

namespace Corvid::Testing {
namespace {

using testing::StartsWith;

/// An element of the namespace of parts.
std::string part(const std::string& name, const std::string& text) {
    return "<types:" + name + ">" + text + "</types:" + name + ">";
}

std::string j2kPart(const std::string& name, const std::string& text) {
    return "<s422mTypes:" + name + ">" + text + "</s422mTypes:" + name + ">";
}

using Part = std::pair<std::string, std::string>;

class CompoundReader : public Things {
protected:
    /// Every part in turn is missing, then empty: the failure is that of the part.
    void expectEachRequired(const std::string& type, const std::vector<Part>& parts,
                            const std::vector<std::string>& conditions,
                            std::string (*write)(const std::string&, const std::string&),
                            const std::string& wrapper = "") {
        for (const bool empty : {false, true}) {
            for (std::size_t gone = 0; gone != parts.size(); ++gone) {
                std::string content;
                for (std::size_t i = 0; i != parts.size(); ++i) {
                    content += i != gone ? write(parts[i].first, parts[i].second)
                               : empty   ? write(parts[i].first, "")
                                         : "";
                }
                const Failure failure =
                    failureOfReading(type, wrapper.empty() ? content : j2kPart(wrapper, content));
                EXPECT_EQ(failure.message, "!" + conditions[gone] + ".empty (): No '" +
                                               parts[gone].first + "' element in XML metadata");
                EXPECT_EQ(failure.file, "Corvid/XMLBuilder/FromXMLElementVisitor");
            }
        }
    }

    const std::vector<Part> time_{{"Year", "2026"}, {"Month", "13"},   {"Day", "31"},
                                  {"Hour", "99"},   {"Minute", "300"}, {"Second", "59"},
                                  {"mSec4", "5"}};
};

TEST_F(CompoundReader, readsRationals) {
    EXPECT_EQ(bytesRead("Rational", part("Numerator", "-1") + part("Denominator", "0")),
              "ffffffff00000000");
    EXPECT_EQ(bytesRead("Rational", part("Denominator", "2") + "text" + part("Numerator", "1")),
              "0000000100000002");
}

TEST_F(CompoundReader, readsMissingPartsOfRationalsAndProductVersionsAsZero) {
    EXPECT_EQ(bytesRead("Rational", part("Numerator", "7")), "0000000700000000");
    EXPECT_EQ(bytesRead("Rational", "<e:other/>"), "0000000000000000");
    EXPECT_EQ(bytesRead("ProductVersion", part("Patch", "3")), "00000000000300000000");
}

TEST_F(CompoundReader, readsProductVersionsAndKeepsLowBits) {
    EXPECT_EQ(bytesRead("ProductVersion", part("Major", "1") + part("Minor", "65538") +
                                              part("Patch", "3") + part("Build", "4") +
                                              part("Release", "77")),
              "0001000200030004004d");
}

TEST_F(CompoundReader, readsTimestampsWithoutLookingAtACalendar) {
    std::string content;
    for (auto i = time_.rbegin(); i != time_.rend(); ++i) {
        content += part(i->first, i->second);
    }
    EXPECT_EQ(bytesRead("Timestamp", content), "07ea0d1f632c3b05");
}

TEST_F(CompoundReader, readsMillisecondsInStepsOfFourAndKeepsLowBits) {
    for (const auto& [text, expected] : {std::pair{"250", 1000}, std::pair{"20000", 14464}}) {
        std::string content = part("mSec4", text);
        for (std::size_t i = 0; i != 6; ++i) {
            content += part(time_[i].first, time_[i].second);
        }
        const auto& set = readThing("<e:Timestamp>" + content + "</e:Timestamp>");
        const auto* value =
            dynamic_cast<const Types::Timestamp*>(elementOf(set, "Timestamp").value());
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(value->milliSecond(), expected);
    }
}

TEST_F(CompoundReader, requiresEveryPartOfATimestamp) {
    expectEachRequired("Timestamp", time_,
                       {"yearValue", "monthValue", "dayValue", "hourValue", "minutesValue",
                        "secondsValue", "milliValue"},
                       part);
}

TEST_F(CompoundReader, checksTheSecondFirstThenTheMilliseconds) {
    const auto first = [&](const std::string& content) {
        return failureOfReading("Timestamp", "<e:other/>" + content).message;
    };
    std::string content;
    for (const char* name : {"Second", "mSec4", "Year", "Month", "Day", "Hour", "Minute"}) {
        EXPECT_THAT(first(content), testing::HasSubstr(std::string("No '") + name + "' element"));
        content += part(name, "1");
    }
}

TEST_F(CompoundReader, looksForPartsByExpandedNameAndTakesTheFirst) {
    EXPECT_EQ(
        bytesRead("Rational", "<Numerator>9</Numerator><z:Numerator xmlns:z='urn:SMPTE:Types:MXF'>1"
                              "</z:Numerator>" +
                                  part("Numerator", "2")),
        "0000000100000000");
}

TEST_F(CompoundReader, readsLayoutsOfAnyLength) {
    const auto component = [](const char* code, const char* depth) {
        return part("RGBAComponent", part("Code", code) + part("Depth", depth));
    };
    const std::string three = component("82", "8") + "<!-- -->" + component("71", "264") +
                              part("RGBAComponent", part("Code", "66"));
    EXPECT_EQ(bytesRead("RGBALayout", three), "52084708420000000000000000000000");
    std::string nine;
    for (int i = 0; i != 9; ++i) {
        nine += component("65", "1");
    }
    EXPECT_EQ(bytesRead("RGBALayout", nine), "41014101410141014101410141014101");
    EXPECT_EQ(bytesRead("RGBALayout", "<e:other/>"), "00000000000000000000000000000000");
}

TEST_F(CompoundReader, readsThePartsOfJpeg2000) {
    EXPECT_EQ(
        bytesRead("J2KPictureComponent",
                  j2kPart("J2KPictureComponent", j2kPart("Ssizi", "263") + j2kPart("XRSizi", "1") +
                                                     j2kPart("YRSizi", "2"))),
        "070102");
    EXPECT_EQ(bytesRead("J2KCodingStyleDefault",
                        j2kPart("J2KCodingStyleDefault", j2kPart("Scod", "1") +
                                                             j2kPart("SGcod", "4294967295") +
                                                             j2kPart("Spcod", "00aB"))),
              "01ffffffff00ab");
    EXPECT_EQ(bytesRead("J2KQuantisationDefault",
                        j2kPart("J2KQuantisationDefault",
                                j2kPart("Sqcd", "34") + j2kPart("SPgcd", "00aB"))),
              "2200ab");
}

TEST_F(CompoundReader, requiresEveryPartOfJpeg2000) {
    expectEachRequired("J2KPictureComponent", {{"Ssizi", "1"}, {"XRSizi", "1"}, {"YRSizi", "1"}},
                       {"sSiziValue", "xRSiziValue", "yRSiziValue"}, j2kPart,
                       "J2KPictureComponent");
    expectEachRequired("J2KCodingStyleDefault", {{"Scod", "1"}, {"SGcod", "1"}, {"Spcod", "00"}},
                       {"scodValue", "sGcodValue", "spcodValue"}, j2kPart, "J2KCodingStyleDefault");
    expectEachRequired("J2KQuantisationDefault", {{"Sqcd", "1"}, {"SPgcd", "00"}},
                       {"sqcdValue", "sPgcdValue"}, j2kPart, "J2KQuantisationDefault");
}

TEST_F(CompoundReader, refusesTheCodingStyleWithoutBytesThatTheWriterWrites) {
    model_.value(model_.set("Preface", 1), "FormatVersion", Types::VersionType(1, 3));
    model_.reference(**model_.partition.begin(), "ContentStorageObject", 2);
    model_.value(model_.set("Thing", 2), "J2KCodingStyleDefault",
                 Types::J2KCodingStyleDefault(1, 2, nullptr, 0));
    const std::string document = compactXmlOf(model_);
    EXPECT_THAT(document, testing::HasSubstr("<s422mTypes:Spcod></s422mTypes:Spcod>"));
    Model other = Model::extendedBy(dictionary());
    EXPECT_EQ(failureOf<Exceptions::InvalidFormat>([&] { readXml(other, document); }).message,
              "!spcodValue.empty (): No 'Spcod' element in XML metadata");
}

TEST_F(CompoundReader, requiresTheElementAroundThePartsOfJpeg2000) {
    const std::pair<const char*, const char*> properties[] = {
        {"J2KPictureComponent", "PictureComponentSizing"},
        {"J2KCodingStyleDefault", "CodingStyleDefault"},
        {"J2KQuantisationDefault", "QuantisationDefault"}};
    for (const auto& [type, property] : properties) {
        const Failure failure = failureOfReading(type, j2kPart("Ssizi", "1"));
        EXPECT_EQ(failure.message, "domComponentElement != 0: No '" + std::string(type) +
                                       "' element from '" + property + "' in XML metadata");
        EXPECT_EQ(failure.file, "Corvid/XMLBuilder/FromXMLElementVisitor");
    }
}

TEST_F(CompoundReader, refusesBadHexadecimalInParts) {
    const auto coding = [&](const char* spcod) {
        return failureOfReading(
                   "J2KCodingStyleDefault",
                   j2kPart("J2KCodingStyleDefault",
                           j2kPart("Scod", "1") + j2kPart("SGcod", "1") + j2kPart("Spcod", spcod)))
            .message;
    };
    EXPECT_EQ(coding("0a1"), "Value has invalid Length");
    EXPECT_EQ(coding("0g"), "Value contains non Hexadecimal characters");
}

TEST_F(CompoundReader, failsWhereTheRootDoesNotDeclareThePrefixOfParts) {
    const auto failure = failureOf<Exceptions::ParseError>([&] {
        readXml(model_, "<r xmlns:e='urn:test:elements'><Thing xmlns:types='urn:SMPTE:Types:MXF'>"
                        "<e:Rational>" +
                            part("Numerator", "1") + "</e:Rational></Thing></r>");
    });
#ifdef CORVID_WITH_XQILLA
    EXPECT_THAT(failure.message, StartsWith("XQillaException:: "));
#else
    EXPECT_THAT(failure.message, StartsWith("DOMException:: "));
#endif
}

} // namespace
} // namespace Corvid::Testing
