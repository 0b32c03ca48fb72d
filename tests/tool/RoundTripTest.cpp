#include "editing/RoundTrip.h"

#include "host/xmlutils/LoadDocument.h"
#include "tests/editing/CopyPartition.h"
#include "tests/editing/Differences.h"

#include <cstdio>
#include <gmock/gmock.h>

using namespace Corvid;
using namespace Corvid::Testing;
using ::testing::IsEmpty;

namespace {

TEST(RoundTrip, ofEveryTypeIsLossless) {
    for (const char* name : {"lowest", "highest", "typical", "empty"}) {
        const auto things = everyType(name);
        const auto comparison = Editing::compareWithRoundTrip(things->partition());
        EXPECT_THAT(comparison.differences, IsEmpty()) << name << "\n"
                                                       << linesOf(comparison.differences);
        EXPECT_GT(comparison.properties, 3U) << name;
    }
}

TEST(RoundTrip, keepsTheLabelOfAPropertyThatATagOfADarkSetHasInAnotherVersion) {
    ThingPartition things;
    auto& tags = things.partition().partitionDictionary();
    const auto& element = things.model.element(*things.thing, "UInt8");
    const auto label = element.definition()->label();
    auto other = label;
    other[7] = 0x7F;
    tags.add(Types::LocalTag(0x8001), other);
    tags.add(Types::LocalTag(0x8002), label);
    things.model.unknown(things.model.darkGroup(7), 0x8001, "x");
    things.model.set("Thing", 3)
        .createElement(label, element.metaAttribute(), 0x8002)
        .parse(Model::view("x"));
    const auto comparison = Editing::compareWithRoundTrip(things.partition());
    EXPECT_THAT(comparison.differences, IsEmpty()) << linesOf(comparison.differences);
}

TEST(RoundTrip, ofAPartitionWithoutPrefaceIsRefused) {
    Model model;
    model.set("ContentStorage", 1);
    EXPECT_THROW(Editing::compareWithRoundTrip(model.partition), Exceptions::InvalidFormat);
}

TEST(RoundTrip, ofMoreNamesThanTheParserOfTheLibraryTakesIsLossless) {
    constexpr unsigned int setCount = 33;
    constexpr unsigned int properties = 500;
    static_assert(setCount * properties > XMLUtils::maximumNames);
    std::string dictionary = "namespace s377m urn:SMPTE:S377M\nnamespace t urn:test\n";
    char row[128];
    for (unsigned int set = 0; set != setCount; ++set) {
        std::snprintf(row, sizeof row,
                      "set t:Set%u 06.0e.2b.34.02.53.01.01.0e.7f.%02x.00.00.00.00.00 "
                      "s377m:InterchangeObject concrete\n",
                      set, set);
        dictionary += row;
        for (unsigned int i = 0; i != properties; ++i) {
            std::snprintf(row, sizeof row,
                          "property t:P%u_%u 06.0e.2b.34.01.01.01.01.0e.7f.%02x.%02x.%02x.00.00.00 "
                          "- UInt8 optional -\n",
                          set, i, set, i >> 8U, i & 0xFFU);
            dictionary += row;
        }
    }
    Model model = Model::extendedBy(dictionary);
    model.set("Preface", 1);
    for (unsigned int set = 0; set != setCount; ++set) {
        auto& made = model.set("Set" + std::to_string(set), static_cast<Types::u8>(2 + set));
        for (unsigned int i = 0; i != properties; ++i) {
            model.value(made, "P" + std::to_string(set) + "_" + std::to_string(i), Types::UInt8(1));
        }
    }
    const auto comparison = Editing::compareWithRoundTrip(model.partition);
    EXPECT_THAT(comparison.differences, IsEmpty()) << linesOf(comparison.differences);
}

TEST(RoundTrip, refusesWhatCannotBeWrittenToAFile) {
    ThingPartition things;
    constexpr std::array<unsigned char, 16> primerKey = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05,
                                                         0x01, 0x01, 0x0d, 0x01, 0x02, 0x01,
                                                         0x01, 0x05, 0x01, 0x00};
    things.model.darkSet(primerKey, 4, "x");
    EXPECT_THROW(Editing::compareWithRoundTrip(things.partition()), Exceptions::InvalidFormat);
}

TEST(RoundTrip, keepsReferencesToDarkSetsWithNewIdentifiersToo) {
    ThingPartition things;
    things.model.reference(*things.thing, "StrongReference", 7);
    things.model.darkGroup(7);
    EXPECT_THAT(Editing::compareWithRoundTrip(things.partition()).differences, IsEmpty());
}

} // namespace
