#include "tests/XMLBuilder/Things.h"

namespace Corvid::Testing {
namespace {

using testing::HasSubstr;

class DarkReader : public Things {
protected:
    static std::string keyText() { return Platform::toUtf8(KLV::Key(Model::darkKey()).toString()); }

    static std::string darkSet(const std::string& value, const std::string& berLength = "4",
                               const std::string& key = keyText()) {
        return "<groups:DarkMetadata groups:Key='" + key + "' groups:BEROctetCount='" + berLength +
               "'>" + value + "</groups:DarkMetadata>";
    }

    XML2Partition::SetList readContainer(const std::string& inside) {
        return readSets("<groups:FloatingDarkMetadata>" + inside +
                        "</groups:FloatingDarkMetadata>");
    }

    const Metadata::DarkMetadataSet& readDark(const std::string& xml) {
        EXPECT_TRUE(readContainer(xml).empty());
        return **std::prev(model_.partition.darkEnd());
    }

    static std::string valueOf(const Metadata::DarkMetadataSet& set) {
        return {set.value()->begin(), set.value()->begin() + set.value()->size()};
    }

    Failure failureOfReadingDark(const std::string& xml) {
        return failureOf<Exceptions::InvalidFormat>([&] { readContainer(xml); });
    }
};

TEST_F(DarkReader, readsKeyLengthAndBytes) {
    const auto& set = readDark(darkSet("0001ab"));
    EXPECT_EQ(set.key(), KLV::Key(Model::darkKey()));
    EXPECT_EQ(set.berLength(), 4);
    EXPECT_EQ(valueOf(set), std::string("\0\1\xAB", 3));
}

TEST_F(DarkReader, readsDigitsOfEitherCaseAndAnyName) {
    EXPECT_EQ(valueOf(readDark(darkSet("0a"))), "\n");
    EXPECT_EQ(valueOf(readDark(darkSet("0A"))), "\n");
    EXPECT_EQ(
        valueOf(readDark("<x groups:Key='" + keyText() + "' groups:BEROctetCount='1'>41</x>")),
        "A");
}

TEST_F(DarkReader, readsNoTextAsNoBytes) { EXPECT_EQ(valueOf(readDark(darkSet(""))), ""); }

TEST_F(DarkReader, takesTheLengthAsAStreamDoesAndKeepsItsLowBits) {
    EXPECT_EQ(readDark(darkSet("", "260")).berLength(), 4);
    EXPECT_EQ(readDark(darkSet("", " 9 octets")).berLength(), 9);
    EXPECT_EQ(readDark(darkSet("", "none")).berLength(), 0);
}

TEST_F(DarkReader, refusesAnOddNumberOfDigits) {
    const Failure failure = failureOfReadingDark(darkSet("0a1"));
    EXPECT_EQ(failure.message,
              "DarkMetadataSet with key='" + keyText() + "' value has invalid Length");
    EXPECT_EQ(failure.file, "Corvid/XMLBuilder/XML2Partition");
    EXPECT_EQ(failure.line, 89);
}

TEST_F(DarkReader, refusesWhatIsNoDigit) {
    for (const char* text : {"0g", "0a 0b ", "0a\n\n", "0\xC3\xA9"}) {
        const Failure failure = failureOfReadingDark(darkSet(text));
        EXPECT_EQ(failure.message, "DarkMetadataSet with key='" + keyText() +
                                       "' value contains non Hexadecimal characters");
        EXPECT_EQ(failure.file, "Corvid/XMLBuilder/XML2Partition");
        EXPECT_EQ(failure.line, 99);
    }
}

TEST_F(DarkReader, refusesAMalformedKeyBeforeAnythingElse) {
    EXPECT_THAT(failureOfReadingDark(darkSet("0", "4", "06.0e")).message, HasSubstr("06.0e"));
}

TEST_F(DarkReader, namesTheAttributeThatIsMissing) {
    EXPECT_THAT(failureOfReadingDark("<groups:DarkMetadata groups:BEROctetCount='4'/>").message,
                HasSubstr("no attribute 'groups:Key'"));
    EXPECT_THAT(
        failureOfReadingDark("<groups:DarkMetadata groups:Key='" + keyText() + "'/>").message,
        HasSubstr("no attribute 'groups:BEROctetCount'"));
}

TEST_F(DarkReader, makesSetsOfKnownNames) {
    const auto sets = readContainer(darkSet("00") + "<t:Thing/>" + darkSet("01"));
    ASSERT_EQ(sets.size(), 1U);
    EXPECT_EQ(std::distance(model_.partition.darkBegin(), model_.partition.darkEnd()), 2);
}

TEST_F(DarkReader, keepsTheLocalTagsOfDarkSetsFromOtherProperties) {
    // The highest dynamic tag is the first that would be taken.
    readSets("<t:Thing><groups:ExtensionElements><groups:DarkElement groups:UniversalLabel='" +
             keyText() + "'>01</groups:DarkElement></groups:ExtensionElements></t:Thing>" +
             "<groups:FloatingDarkMetadata>" +
             darkSet("FFFF0001AA"
                     "FFFE0001BB") +
             "</groups:FloatingDarkMetadata>");
    const auto& primer = model_.partition.partitionDictionary();
    EXPECT_EQ(primer.find(Types::LocalTag(0xFFFF), false), nullptr);
    EXPECT_EQ(primer.find(Types::LocalTag(0xFFFE), false), nullptr);
    ASSERT_NE(primer.find(Types::LocalTag(0xFFFD), false), nullptr);
}

TEST_F(DarkReader, isNotAskedForADarkSetBesideTheContainer) {
    EXPECT_TRUE(readSets(darkSet("00")).empty());
    EXPECT_EQ(model_.partition.darkBegin(), model_.partition.darkEnd());
}

TEST_F(DarkReader, keepsWhatCameBeforeAFailure) {
    failureOfReadingDark("<t:Thing/>" + darkSet("00") + darkSet("0"));
    EXPECT_EQ(model_.partition.size(), 1U);
    EXPECT_EQ(std::distance(model_.partition.darkBegin(), model_.partition.darkEnd()), 1);
}

} // namespace
} // namespace Corvid::Testing
