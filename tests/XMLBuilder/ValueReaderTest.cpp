#include "XMLBuilder/reader/values/ValueParser.h"

#include "tests/XMLBuilder/ParsedDocument.h"
#include "tests/XMLBuilder/Things.h"

namespace Corvid::Testing {
namespace {

struct Case {
    const char* name;
    const char* type;
    const char* text;
    const char* bytes;
};

void PrintTo(const Case& c, std::ostream* to) { *to << c.name; }
std::string nameOfCase(const testing::TestParamInfo<Case>& info) { return info.param.name; }

class ReadsValue : public Things, public testing::WithParamInterface<Case> {};

TEST_P(ReadsValue, fromContent) {
    EXPECT_EQ(bytesRead(GetParam().type, GetParam().text), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, ReadsValue,
    testing::Values(
        Case{"Int8KeepsLowBits", "Int8", "200", "c8"}, Case{"Int8Negative", "Int8", "-5", "fb"},
        Case{"Int16", "Int16", "-32768", "8000"},
        Case{"Int16KeepsLowBits", "Int16", "65537", "0001"},
        Case{"Int32", "Int32", "-1", "ffffffff"},
        Case{"Int32TooLarge", "Int32", "99999999999", "7fffffff"},
        Case{"Int64", "Int64", "-9223372036854775808", "8000000000000000"},
        Case{"Position", "Position", "-1", "ffffffffffffffff"},
        Case{"Length", "Length", "1500", "00000000000005dc"},
        Case{"UInt8KeepsLowBits", "UInt8", "300", "2c"},
        Case{"UInt16OfMinusOne", "UInt16", "-1", "ffff"},
        Case{"UInt32StopsAtLetters", "UInt32", "12abc", "0000000c"},
        Case{"UInt64", "UInt64", "18446744073709551615", "ffffffffffffffff"},
        Case{"NoNumber", "UInt32", "abc", "00000000"}, Case{"NoNumber8", "Int8", "x", "00"},
        Case{"SpaceBefore", "UInt16", "\t 7", "0007"}, Case{"PlusSign", "Int16", "+7", "0007"},
        Case{"Orientation", "Orientation", "260", "04"},
        Case{"SignalStandard", "SignalStandard", "3", "03"},
        Case{"VersionPacked", "VersionType", "258", "0102"},
        Case{"VersionKeepsLowBits", "VersionType", "65539", "0003"},
        Case{"BooleanZero", "Boolean", "0", "00"}, Case{"BooleanOne", "Boolean", "1", "01"},
        Case{"BooleanFalseIsTrue", "Boolean", "false", "01"},
        Case{"BooleanTrue", "Boolean", "true", "01"},
        Case{"BooleanBlankZero", "Boolean", " 0", "01"},
        Case{"BooleanZeroBlank", "Boolean", "0 ", "01"},
        Case{"BooleanTwoZeros", "Boolean", "00", "01"}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    Texts, ReadsValue,
    testing::Values(Case{"CodeUnit", "UTF16", "A", "0041"},
                    Case{"CodeUnitOfFirstWord", "UTF16", " \tBc d", "0042"},
                    Case{"CodeUnitOfBlanks", "UTF16", "&#32;<!-- -->", "0000"},
                    Case{"Utf16NotTrimmed", "UTF16String", " a\xC3\xA9 ", "0020006100e90020"},
                    Case{"Utf16Cdata", "UTF16String", "<![CDATA[<]]>", "003c"},
                    Case{"FirstChildOnly", "UTF16String", "ab<!-- c -->d", "00610062"},
                    Case{"TextOfFirstElement", "UTF16String", "<x>a<y>b</y></x>c", "00610062"},
                    Case{"TextBelowFirstElement", "UTF16String",
                         "<x><y/>a<y><!-- c --><z><![CDATA[b]]><?p i?></z>c</y><y/>d</x>e",
                         "0061006200630064"},
                    Case{"NoTextBelowFirstElement", "UTF16String", "<x><y/></x>c", ""},
                    Case{"TextOfAComment", "UTF16String", "<!--a-->b", "0061"},
                    Case{"TextOfAnInstruction", "UTF16String", "<?p a?>b", "0061"},
                    Case{"Iso7", "ISO7String", "abc", "616263"},
                    Case{"Iso7Latin", "ISO7String", "\xC3\xA9", "e9"},
                    Case{"Iso7TooWide", "ISO7String", "\xE2\x82\xAC", "3f"}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(Bytes, ReadsValue,
                         testing::Values(Case{"Stream", "DataStream", "0a1B", "0a1b"},
                                         Case{"StreamOfNothing", "DataStream", "<![CDATA[]]>", ""},
                                         Case{"Unknown", "Unknown", "00FFab", "00ffab"},
                                         Case{"Uuid", "UUID",
                                              "00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0F",
                                              "000102030405060708090a0b0c0d0e0f"},
                                         Case{"Label", "UniversalLabel",
                                              "00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f",
                                              "000102030405060708090a0b0c0d0e0f"}),
                         nameOfCase);

class ValueReader : public Things {
protected:
    static std::string umidText(int bytes) {
        std::string text;
        for (int i = 0; i != bytes; ++i) {
            char digits[12];
            std::snprintf(digits, sizeof digits, "%02x.", 0x40 + i);
            text += digits;
        }
        text.pop_back();
        return text;
    }
    static std::string withoutStops(std::string text) {
        text.erase(std::remove(text.begin(), text.end(), '.'), text.end());
        return text;
    }
};

TEST_F(ValueReader, readsUmids) {
    EXPECT_EQ(bytesRead("UMID32", umidText(32)), withoutStops(umidText(32)));
    EXPECT_EQ(bytesRead("UMID64", umidText(64)), withoutStops(umidText(64)));
}

TEST_F(ValueReader, extendsABasicUmidOfAnExtendedClipOnly) {
    EXPECT_EQ(bytesRead("ExtendedClipID", umidText(32)),
              withoutStops(umidText(32)) + std::string(64, '0'));
    EXPECT_EQ(bytesRead("ExtendedClipID", umidText(64)), withoutStops(umidText(64)));
    failureOfReading("ExtendedClipID", umidText(31));
    failureOfReading("UMID64", umidText(32));
}

TEST_F(ValueReader, leavesTheElementWithoutValueWhereNothingIsInside) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    if (std::is_base_of_v<Types::SimpleDataType, Types::Class> &&                                  \
        !std::is_base_of_v<Types::Reference, Types::Class> &&                                      \
        Id != Types::Identifiers::DataValue) {                                                     \
        EXPECT_EQ(bytesRead(#Class, ""), "none") << #Class;                                        \
    }
#include "host/types/ValueTypes.def"
}

TEST_F(ValueReader, makesNothingForTypesThatHaveNoTextOfTheirOwn) {
    ParsedDocument document("<v>00</v>");
    XMLBuilder::InstanceNameTable names;
    XMLBuilder::Reading reading(document.tree(), &document.nodes(), model_.partition, &names);
    const auto makes = [&](Types::Identifiers::Identifier type) {
        return static_cast<bool>(XMLBuilder::parseValue(reading, type, document.tree()));
    };
    using namespace Types::Identifiers;
    for (const auto type : {DataValue, LocalTag, StrongReference, WeakReference, Array, Batch,
                            static_cast<Identifier>(0), static_cast<Identifier>(12)}) {
        EXPECT_FALSE(makes(type)) << type;
    }
    EXPECT_TRUE(makes(DataStream));
}

TEST_F(ValueReader, refusesAnOddNumberOfHexadecimalDigits) {
    for (const char* type : {"DataStream", "Unknown"}) {
        const Failure failure = failureOfReading(type, "0a1");
        EXPECT_EQ(failure.message, "Value has invalid Length");
        EXPECT_EQ(failure.file, "Corvid/XMLBuilder/FromXMLElementVisitor");
        EXPECT_EQ(failure.code, 8U);
    }
    EXPECT_EQ(failureOfReading("DataStream", "0g1").message, "Value has invalid Length");
}

TEST_F(ValueReader, refusesWhatIsNoHexadecimalDigit) {
    for (const char* text : {"0a 1b ", "0a.1b.", "0g", "0a\n\n", "@0", "G0", "`0", "/0", ":0"}) {
        const Failure failure = failureOfReading("DataStream", text);
        EXPECT_EQ(failure.message, "Value contains non Hexadecimal characters") << text;
        EXPECT_EQ(failure.file, "Corvid/XMLBuilder/FromXMLElementVisitor");
    }
}

TEST_F(ValueReader, refusesValuesOfMoreBytesThanAPropertyCanHold) {
    const auto repeat = [](const std::string& text, std::size_t count) {
        std::string result;
        for (std::size_t i = 0; i != count; ++i) {
            result += text;
        }
        return result;
    };
    const struct {
        const char* type;
        std::string most;
        std::string more;
        std::string bytes;
    } cases[] = {{"DataStream", repeat("0a", 65535), "0a", "65536"},
                 {"Unknown", repeat("0a", 65535), "0a", "65536"},
                 {"ISO7String", repeat("x", 65535), "x", "65536"},
                 {"UTF16String", repeat("\xE2\x82\xAC", 32767), "x", "65536"}};
    for (const auto& [type, most, more, bytes] : cases) {
        EXPECT_NE(bytesRead(type, most), "none");
        EXPECT_EQ(failureOfReading<Exceptions::LimitExceeded>(type, most + more).message,
                  std::string("e:") + type + ": value of " + bytes +
                      " bytes, expected at most 65535, which is what a property can hold");
    }
    const auto coding = [&](std::size_t count) {
        return "<s422mTypes:J2KQuantisationDefault><s422mTypes:Sqcd>1</s422mTypes:Sqcd>"
               "<s422mTypes:SPgcd>" +
               repeat("0a", count) + "</s422mTypes:SPgcd></s422mTypes:J2KQuantisationDefault>";
    };
    EXPECT_NE(bytesRead("J2KQuantisationDefault", coding(65534)), "none");
    failureOfReading<Exceptions::LimitExceeded>("J2KQuantisationDefault", coding(65535));
}

TEST_F(ValueReader, refusesMalformedIdentifiers) {
    failureOfReading("UUID", "00.01");
    failureOfReading("UniversalLabel", " 00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f");
    failureOfReading("UMID32", "x");
}

} // namespace
} // namespace Corvid::Testing
