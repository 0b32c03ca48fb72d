#include "tools/corvid/RoundTrip.h"

#include "host/dataio/Memory.h"
#include "tests/support/Paths.h"
#include "tests/tool/CopyPartition.h"
#include "tests/tool/Differences.h"
#include "tools/corvid/DocumentMetadata.h"
#include "tools/corvid/SetValues.h"

#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>

using namespace Corvid;
using namespace Corvid::Testing;
using ::testing::IsEmpty;
using Kind = Tool::DifferenceKind;
using Metadata::Element;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;

namespace {

std::string units(std::u16string_view text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<char>(unit >> 8));
        bytes.push_back(static_cast<char>(unit & 0xFF));
    }
    return bytes;
}

/// A partition of which not everything comes back, and what of it does not.
struct Implied {
    const char* name;
    std::vector<Kind> kinds;
    std::function<void(ThingPartition&)> make;
};

void PrintTo(const Implied& each, std::ostream* out) { *out << each.name; }

const Types::UniversalLabel unknownLabel(Model::darkKey());

/// A property of the thing whose label has another version in its file than in the dictionary.
void addWithVersion(ThingPartition& things, bool isMisplaced) {
    auto& tags = things.partition().partitionDictionary();
    auto& model = things.model;
    const auto& element = isMisplaced
                              ? static_cast<Element&>(model.misplaced(*things.thing, "OtherNumber"))
                              : model.element(*things.thing, "UInt8");
    const auto* const definition = Metadata::definitionOf(*element.metaAttribute());
    Types::UniversalLabel label = definition->label();
    label[7] = 0x7F;
    tags.add(Types::LocalTag(0x8001), label);
    // Made a second time: the tag of an element is given when it is made.
    auto& set = model.set("Thing", 3);
    auto& made = isMisplaced
                     ? set.createInvalidElement(element.metaAttribute(), 0x8001)
                     : set.createElement(definition->label(), element.metaAttribute(), 0x8001);
    made.parse(Model::view("x"));
}

const std::vector<Implied> impliedCases = {
    {"EmptyText", {Kind::emptyValue}, [](ThingPartition& t) { t.add("UTF16String", ""); }},
    {"TextOfZeros",
     {Kind::emptyValue},
     [](ThingPartition& t) { t.add("UTF16String", std::string(4, '\0')); }},
    {"EmptyIso7Text", {Kind::emptyValue}, [](ThingPartition& t) { t.add("ISO7String", ""); }},
    {"EmptyCodeUnit",
     {Kind::emptyValue},
     [](ThingPartition& t) { t.add("UTF16", std::string(2, '\0')); }},
    {"EmptyBytes", {Kind::emptyValue}, [](ThingPartition& t) { t.add("DataStream", ""); }},
    {"EmptyUnknownBytes", {Kind::emptyValue}, [](ThingPartition& t) { t.add("Unknown", ""); }},
    {"EmptyUnknownProperty",
     {Kind::emptyValue},
     [](ThingPartition& t) { t.model.unknown(*t.thing, 0x7F01, ""); }},
    {"EmptyMisplacedProperty",
     {Kind::emptyValue},
     [](ThingPartition& t) {
         t.model.misplaced(t.model.set("Other", 3), "UTF16String").parse(Model::view(""));
     }},
    {"BlankText",
     {Kind::blankText},
     [](ThingPartition& t) { t.add("UTF16String", units(u" \t\r\n")); }},
    {"BlankIso7Text",
     {Kind::blankText},
     [](ThingPartition& t) { t.add("ISO7String", std::string(" \0", 2)); }},
    {"BlankCodeUnit", {Kind::blankText}, [](ThingPartition& t) { t.add("UTF16", units(u"\n")); }},
    {"BlankItem",
     {Kind::blankText},
     [](ThingPartition& t) {
         t.addItems("UTF16StringArray", {units(u" "), units(u"a")});
     }},
    {"BlankItemsOnly",
     {Kind::blankText},
     [](ThingPartition& t) {
         t.addItems("ISO7StringBatch", {" ", "\n"});
     }},
    {"EmptyArray",
     {Kind::emptyCollection},
     [](ThingPartition& t) { t.addItems("UInt8Array", {}); }},
    {"EmptyBatchOfReferences",
     {Kind::emptyCollection},
     [](ThingPartition& t) { t.addItems("WeakReferenceBatch", {}); }},
    {"EmptyMisplacedBatch",
     {Kind::emptyCollection},
     [](ThingPartition& t) {
         t.model.misplaced(t.model.set("Other", 3), "UInt8Batch")
             .parse(Model::view(std::string(8, '\0')));
     }},
    {"BehindTerminator",
     {Kind::behindTerminator},
     [](ThingPartition& t) {
         t.add("UTF16String", units({u"a\0b", 3}));
     }},
    {"BehindIso7Terminator",
     {Kind::behindTerminator},
     [](ThingPartition& t) { t.add("ISO7String", std::string("a\0\0b\0", 5)); }},
    {"BehindTerminatorOfAnItem",
     {Kind::behindTerminator},
     [](ThingPartition& t) {
         t.addItems("ISO7StringArray", {std::string("a\0b", 3), std::string("c\0\0", 3)});
     }},
    {"ControlCharacter",
     {Kind::invalidCharacter},
     [](ThingPartition& t) { t.add("UTF16String", units(u"a\u0001\u0002")); }},
    {"Iso7ControlCharacter",
     {Kind::invalidCharacter},
     [](ThingPartition& t) { t.add("ISO7String", "\x1F?"); }},
    {"LoneSurrogates",
     {Kind::invalidCharacter},
     [](ThingPartition& t) {
         t.add("UTF16String", std::string("\xD8\x34\x00\x61\xDD\x1E\xD8\x34\xDD\x1E\xD8\x34", 12));
     }},
    {"NoCharacter",
     {Kind::invalidCharacter},
     [](ThingPartition& t) { t.add("UTF16String", "\xFF\xFE\xFF\xFF\xFF\xFD"); }},
    {"InvalidCodeUnit",
     {Kind::invalidCharacter},
     [](ThingPartition& t) { t.add("UTF16", units(u"\u000B")); }},
    {"OddMilliseconds",
     {Kind::oddMilliseconds},
     [](ThingPartition& t) {
         t.model.value(*t.thing, "Timestamp", Types::Timestamp(2024, 2, 29, 1, 2, 3, 7));
     }},
    {"TypeWithoutReader",
     {Kind::typeWithoutReader},
     [](ThingPartition& t) { t.add("LocalTag", "ab"); }},
    {"ItemsOfATypeWithoutReader",
     {Kind::typeWithoutReader},
     [](ThingPartition& t) {
         t.addItems("LocalTagBatch", {"ab", "cd"});
     }},
    {"LabelOfAStaticTag",
     {Kind::unknownLabel},
     [](ThingPartition& t) {
         t.partition().partitionDictionary().add(Types::LocalTag(0x7F01), unknownLabel);
         t.model.unknown(*t.thing, 0x7F01, "x");
     }},
    {"VersionOfALabel", {Kind::labelVersion}, [](ThingPartition& t) { addWithVersion(t, false); }},
    {"VersionOfAMisplacedLabel",
     {Kind::labelVersion},
     [](ThingPartition& t) { addWithVersion(t, true); }},
    {"VersionOfAKey",
     {Kind::keyVersion},
     [](ThingPartition& t) {
         auto key = t.thing->key().bytes();
         key[7] = 0x7F;
         auto& set =
             t.partition().createEmptyMetadataSet(KLV::Key(key), *t.thing->metaMetadataSet());
         t.model.value(set, "InstanceUID", uuid(3));
     }},
    {"CopyOfASet",
     {Kind::mergedCopy},
     [](ThingPartition& t) {
         for (int i = 0; i != 2; ++i) {
             t.model.value(t.model.set("Other", 3), "OtherNumber", Types::UInt8(1));
         }
     }},
    {"CopyOfADarkSet",
     {Kind::mergedCopy},
     [](ThingPartition& t) {
         t.model.darkGroup(3);
         t.model.darkGroup(3);
     }},
    {"NoInstanceUID",
     {Kind::newInstanceUID},
     [](ThingPartition& t) {
         t.partition().createEmptyMetadataSet(t.thing->key(), *t.thing->metaMetadataSet());
     }},
    {"UnequalItems",
     {Kind::unequalItems},
     [](ThingPartition& t) {
         t.addItems("UTF16StringArray", {units(u"ab"), units({u"c\0", 2})});
     }},
    {"UnequalItemsOneOfThemBlank",
     {Kind::unequalItems},
     [](ThingPartition& t) {
         t.addItems("ISO7StringBatch", {"ab", "  "});
     }},
    {"EmptyCodingStyle",
     {Kind::emptyCodestreamPart},
     [](ThingPartition& t) {
         t.model.value(*t.thing, "J2KCodingStyleDefault",
                       Types::J2KCodingStyleDefault(1, 2, nullptr, 0));
     }},
    {"EmptyQuantisation",
     {Kind::emptyCodestreamPart},
     [](ThingPartition& t) {
         t.model.value(*t.thing, "J2KQuantisationDefault",
                       Types::J2KQuantisationDefault(1, nullptr, 0));
     }},
};

/// What comes back of a partition by way of XML.
Tool::DocumentMetadata throughXml(PartitionMetadata& partition) {
    DataIO::Memory::MemoryDataSink sink;
    Tool::writeForComparison(partition, sink);
    return Tool::readDocument(sink.rawBuffer(), sink.serializedSize(),
                              partition.partitionDictionary().dictionary(),
                              Tool::DocumentIdentifiers::written);
}

class WhatTheFormatImplies : public ::testing::TestWithParam<Implied> {
protected:
    WhatTheFormatImplies() { GetParam().make(things); }
    PartitionMetadata& before() { return things.partition(); }

    ThingPartition things;
};

TEST_P(WhatTheFormatImplies, isWhatTheWayThroughXmlDoes) {
    const auto comparison = Tool::compareWithRoundTrip(before());
    EXPECT_EQ(kindsOf(comparison.differences), GetParam().kinds) << linesOf(comparison.differences);
    for (const auto& each : comparison.differences) {
        EXPECT_EQ(each.identifiers, Tool::DifferenceIdentifiers::both);
    }
}

TEST_P(WhatTheFormatImplies, isNoDifferenceWhereAllIsKept) {
    const auto copy = copyOf(before());
    if (!copy) {
        return; // No file holds the value.
    }
    for (const auto kind : kindsBetween(before(), *copy)) {
        // The bytes of a value don't hold all milliseconds.
        EXPECT_EQ(kind, Kind::oddMilliseconds);
    }
}

/// Nothing else is excused by it.
TEST_P(WhatTheFormatImplies, hidesNoOtherChange) {
    const auto after = throughXml(before());
    ASSERT_FALSE(anyReal(kindsBetween(before(), *after.metadata)));
    if (after.metadata->darkBegin() != after.metadata->darkEnd()) {
        return; // Dark sets stay out of the copies that are made here.
    }
    std::size_t changes = 0;
    const auto expectReal = [&](const MetadataSet& set, const Element& element,
                                PartitionMetadata& copy) {
        if (!holdsNothing(element) && !isInstanceUID(set, element)) {
            EXPECT_TRUE(anyReal(kindsBetween(before(), copy)))
                << Tool::propertyName(after.metadata->partitionDictionary(), element);
            ++changes;
        }
    };
    forEachChangedByte(*after.metadata, expectReal);
    forEachMissingValue(*after.metadata, expectReal);
    EXPECT_GT(changes, 0U);
}

/// Where a value is not told, another one in its place is no less an error.
TEST_P(WhatTheFormatImplies, excusesNoOtherValueInItsPlace) {
    forEachChangedByte(
        before(), [&](const MetadataSet& set, const Element& element, PartitionMetadata& copy) {
            if (!holdsNothing(element) && !isInstanceUID(set, element) &&
                set.metaMetadataSet() != nullptr) {
                EXPECT_TRUE(anyReal(kindsBetween(before(), copy)))
                    << Tool::propertyName(before().partitionDictionary(), element);
            }
        });
}

TEST_P(WhatTheFormatImplies, leavesThePartitionAsItWas) {
    const auto values = [&] {
        std::vector<std::string> list;
        forEachValue(before(), [&](const MetadataSet&, const Element& element) {
            list.push_back(valueOf(element));
        });
        return list;
    };
    const auto expected = values();
    Tool::compareWithRoundTrip(before());
    EXPECT_EQ(values(), expected);
}

INSTANTIATE_TEST_SUITE_P(, WhatTheFormatImplies, ::testing::ValuesIn(impliedCases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(DifferenceKinds, thatAreImpliedHaveACaseEach) {
    for (const auto& described : Tool::differenceKinds) {
        const bool has =
            std::any_of(impliedCases.begin(), impliedCases.end(), [&](const Implied& each) {
                return std::count(each.kinds.begin(), each.kinds.end(), described.kind) != 0;
            });
        EXPECT_EQ(has, !Tool::isReal(described.kind)) << described.name;
    }
}

TEST(DifferenceKinds, thatAreImpliedAreDescribedInTheFormat) {
    std::ifstream page(sourceDir() / "docs" / "format.md");
    std::vector<std::string> described;
    bool isInside = false;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind("## ", 0) == 0) {
            isInside = line == "## What comes back, and what does not";
        } else if (isInside && line.rfind("| `", 0) == 0) {
            described.push_back(line.substr(3, line.find('`', 3) - 3));
        }
    }
    std::vector<std::string> names;
    for (const auto& each : Tool::differenceKinds) {
        if (!Tool::isReal(each.kind)) {
            names.emplace_back(each.name);
        }
    }
    EXPECT_EQ(described, names);
}

TEST(RoundTrip, ofEveryTypeDamagesNothing) {
    for (const char* name : {"lowest", "highest", "typical", "empty"}) {
        const auto things = everyType(name);
        const auto comparison = Tool::compareWithRoundTrip(things->partition());
        EXPECT_FALSE(anyReal(kindsOf(comparison.differences))) << name << "\n"
                                                               << linesOf(comparison.differences);
        EXPECT_GT(comparison.properties, 3U) << name;
    }
}

TEST(RoundTrip, ofAPartitionWithoutPrefaceIsRefused) {
    Model model;
    model.set("ContentStorage", 1);
    EXPECT_THROW(Tool::compareWithRoundTrip(model.partition), Exceptions::InvalidFormat);
}

TEST(RoundTrip, keepsReferencesToDarkSetsWithNewIdentifiersToo) {
    ThingPartition things;
    things.model.reference(*things.thing, "StrongReference", 7);
    things.model.darkGroup(7);
    EXPECT_THAT(Tool::compareWithRoundTrip(things.partition()).differences, IsEmpty());
}

} // namespace
