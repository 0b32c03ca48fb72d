#include "editing/RoundTrip.h"

#include "editing/WrittenDocument.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "tests/editing/CopyPartition.h"
#include "tests/editing/Differences.h"
#include "tools/corvid/xml/LenientDocument.h"

#include <algorithm>
#include <cctype>
#include <gmock/gmock.h>
#include <regex>

using namespace Corvid;
using namespace Corvid::Testing;
using Metadata::Element;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

std::string units(std::u16string_view text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<char>(unit >> 8));
        bytes.push_back(static_cast<char>(unit & 0xFF));
    }
    return bytes;
}

/// A partition whose elements do not say everything in a document, and the kind of the instruction
/// that says the rest.
struct Carried {
    const char* name;
    const char* instruction;
    std::function<void(ThingPartition&)> make;
};

void PrintTo(const Carried& each, std::ostream* out) { *out << each.name; }

const Types::UniversalLabel unknownLabel(Model::darkKey());

/// A property of the thing whose label has another version in its file than in the dictionary.
void addWithVersion(ThingPartition& things, bool isMisplaced) {
    auto& tags = things.partition().partitionDictionary();
    auto& model = things.model;
    const auto& element = isMisplaced
                              ? static_cast<Element&>(model.misplaced(*things.thing, "OtherNumber"))
                              : model.element(*things.thing, "UInt8");
    const auto* const definition = element.definition();
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

/// Gives the thing an array of bytes and, beside it, repetitions of which some are empty.
void addWithEmptyArrays(ThingPartition& things, const char* tag) {
    const auto array = [](std::string_view items) {
        const std::string head{0, 0, 0, static_cast<char>(items.size()), 0, 0, 0, 1};
        return head + std::string(items);
    };
    things.add(tag, array("a"));
    for (const char* items : {"", "b", "", "", "c", ""}) {
        things.model.misplaced(*things.thing, tag).parse(Model::view(array(items)));
    }
}

const std::vector<Carried> carriedCases = {
    {"EmptyText", "bytes", [](ThingPartition& t) { t.add("UTF16String", ""); }},
    {"TextOfZeros", "bytes", [](ThingPartition& t) { t.add("UTF16String", std::string(4, '\0')); }},
    {"EmptyIso7Text", "bytes", [](ThingPartition& t) { t.add("ISO7String", ""); }},
    {"EmptyCodeUnit", "bytes", [](ThingPartition& t) { t.add("UTF16", std::string(2, '\0')); }},
    {"EmptyBytes", "bytes", [](ThingPartition& t) { t.add("DataStream", ""); }},
    {"EmptyUnknownBytes", "bytes", [](ThingPartition& t) { t.add("Unknown", ""); }},
    {"EmptyUnknownProperty", "bytes",
     [](ThingPartition& t) { t.model.unknown(*t.thing, 0x7F01, ""); }},
    {"EmptyMisplacedProperty", "bytes",
     [](ThingPartition& t) {
         t.model.misplaced(t.model.set("Other", 3), "UTF16String").parse(Model::view(""));
     }},
    {"BlankText", "bytes", [](ThingPartition& t) { t.add("UTF16String", units(u" \t\r\n")); }},
    {"BlankIso7Text", "bytes",
     [](ThingPartition& t) { t.add("ISO7String", std::string(" \0", 2)); }},
    {"BlankCodeUnit", "bytes", [](ThingPartition& t) { t.add("UTF16", units(u"\n")); }},
    {"BlankItem", "bytes",
     [](ThingPartition& t) {
         t.addItems("UTF16StringArray", {units(u" "), units(u"a")});
     }},
    {"BlankItemsOnly", "bytes",
     [](ThingPartition& t) {
         t.addItems("ISO7StringBatch", {" ", "\n"});
     }},
    {"EmptyArray", "bytes", [](ThingPartition& t) { t.addItems("UInt8Array", {}); }},
    {"EmptyBatchOfReferences", "bytes",
     [](ThingPartition& t) { t.addItems("WeakReferenceBatch", {}); }},
    {"EmptyMisplacedBatch", "bytes",
     [](ThingPartition& t) {
         t.model.misplaced(t.model.set("Other", 3), "UInt8Batch")
             .parse(Model::view(std::string(8, '\0')));
     }},
    {"BehindTerminator", "bytes",
     [](ThingPartition& t) {
         t.add("UTF16String", units({u"a\0b", 3}));
     }},
    {"BehindIso7Terminator", "bytes",
     [](ThingPartition& t) { t.add("ISO7String", std::string("a\0\0b\0", 5)); }},
    {"BehindTerminatorOfAnItem", "bytes",
     [](ThingPartition& t) {
         t.addItems("ISO7StringArray", {std::string("a\0b", 3), std::string("c\0\0", 3)});
     }},
    {"ControlCharacter", "bytes",
     [](ThingPartition& t) { t.add("UTF16String", units(u"a\u0001\u0002")); }},
    {"Iso7ControlCharacter", "bytes", [](ThingPartition& t) { t.add("ISO7String", "\x1F?"); }},
    {"LoneSurrogates", "bytes",
     [](ThingPartition& t) {
         t.add("UTF16String", std::string("\xD8\x34\x00\x61\xDD\x1E\xD8\x34\xDD\x1E\xD8\x34", 12));
     }},
    {"NoCharacter", "bytes",
     [](ThingPartition& t) { t.add("UTF16String", "\xFF\xFE\xFF\xFF\xFF\xFD"); }},
    {"InvalidCodeUnit", "bytes", [](ThingPartition& t) { t.add("UTF16", units(u"\u000B")); }},
    {"TypeWithoutReader", "bytes", [](ThingPartition& t) { t.add("LocalTag", "ab"); }},
    {"ItemsOfATypeWithoutReader", "bytes",
     [](ThingPartition& t) {
         t.addItems("LocalTagBatch", {"ab", "cd"});
     }},
    {"LabelOfAStaticTag", "primer",
     [](ThingPartition& t) {
         t.partition().partitionDictionary().add(Types::LocalTag(0x7F01), unknownLabel);
         t.model.unknown(*t.thing, 0x7F01, "x");
     }},
    {"VersionOfALabel", "primer", [](ThingPartition& t) { addWithVersion(t, false); }},
    {"VersionOfAMisplacedLabel", "primer", [](ThingPartition& t) { addWithVersion(t, true); }},
    {"VersionOfAKey", "key",
     [](ThingPartition& t) {
         auto key = t.thing->key().bytes();
         key[7] = 0x7F;
         auto& set =
             t.partition().createEmptyMetadataSet(KLV::Key(key), *t.thing->metaMetadataSet());
         t.model.value(set, "InstanceUID", uuid(3));
     }},
    {"CopyOfASet", "copies",
     [](ThingPartition& t) {
         for (int i = 0; i != 2; ++i) {
             t.model.value(t.model.set("Other", 3), "OtherNumber", Types::UInt8(1));
         }
     }},
    {"CopyOfADarkSet", "copies",
     [](ThingPartition& t) {
         t.model.darkGroup(3);
         t.model.darkGroup(3);
     }},
    {"NoInstanceUID", "unidentified",
     [](ThingPartition& t) {
         t.partition().createEmptyMetadataSet(t.thing->key(), *t.thing->metaMetadataSet());
     }},
    {"UnequalItems", "form",
     [](ThingPartition& t) {
         t.addItems("UTF16StringArray", {units(u"ab"), units({u"c\0", 2})});
     }},
    {"UnequalItemsOneOfThemBlank", "bytes",
     [](ThingPartition& t) {
         t.addItems("ISO7StringBatch", {"ab", "  "});
     }},
    {"EmptyCodingStyle", "bytes",
     [](ThingPartition& t) {
         t.model.value(*t.thing, "J2KCodingStyleDefault",
                       Types::J2KCodingStyleDefault(1, 2, nullptr, 0));
     }},
    {"EmptyQuantisation", "bytes",
     [](ThingPartition& t) {
         t.model.value(*t.thing, "J2KQuantisationDefault",
                       Types::J2KQuantisationDefault(1, nullptr, 0));
     }},
};

/// More that files hold and elements do not say.
const std::vector<Carried> formCases = {
    {"TerminatedText", "form",
     [](ThingPartition& t) {
         t.add("UTF16String", units({u"a\0", 2}));
     }},
    {"TerminatedIso7Text", "form",
     [](ThingPartition& t) { t.add("ISO7String", std::string("a\0", 2)); }},
    {"PaddedText", "form",
     [](ThingPartition& t) { t.add("UTF16String", units(u"a") + std::string(30, '\0')); }},
    {"BareTextAmongTerminatedOnes", "form",
     [](ThingPartition& t) {
         t.add("UTF16String", units(u"a"));
         t.add("ISO7String", std::string("a\0", 2));
         t.model.misplaced(t.model.set("Other", 3), "UTF16String")
             .parse(Model::view(units({u"b\0", 2})));
     }},
    {"TextPaddedWithMoreThanAnInstructionMayAskFor", "bytes",
     [](ThingPartition& t) { t.add("ISO7String", "a" + std::string(1025, '\0')); }},
    {"PaddedItems", "form",
     [](ThingPartition& t) {
         t.addItems("ISO7StringArray", {std::string("a\0\0", 3), std::string("bc\0", 3)});
     }},
    {"EmptyItemAmongOthers", "form",
     [](ThingPartition& t) {
         t.addItems("UTF16StringBatch", {units(u"ab"), std::string(4, '\0')});
     }},
    {"ItemSizeOfAnEmptyCollection", "form",
     [](ThingPartition& t) {
         t.model.element(t.model.set("Preface", 3), "EssenceContainers")
             .parse(Model::view(std::string(8, '\0')));
     }},
    {"ItemSizeOfAnEmptyCollectionThatNoItemCanHave", "bytes",
     [](ThingPartition& t) {
         t.model.element(t.model.set("Preface", 3), "EssenceContainers")
             .parse(Model::view(std::string("\0\0\0\0\0\1\0\0", 8)));
     }},
    {"SecondEmptyPropertyOfOneLabel", "bytes",
     [](ThingPartition& t) {
         t.add("UTF16String", units(u"a"));
         t.model.misplaced(*t.thing, "UTF16String").parse(Model::view(""));
         t.model.misplaced(*t.thing, "UTF16String").parse(Model::view(units(u"b")));
     }},
    {"EmptyArrayBetweenOthersOfOneLabel", "bytes",
     [](ThingPartition& t) { addWithEmptyArrays(t, "UInt8Array"); }},
    {"EmptyArraysBetweenOthersOfTwoLabels", "bytes",
     [](ThingPartition& t) {
         addWithEmptyArrays(t, "UInt8Array");
         addWithEmptyArrays(t, "Int8Array");
     }},
    {"EmptyArrayAfterAValueThatDoesNotFit", "bytes",
     [](ThingPartition& t) {
         const auto& array = t.model.misplaced(*t.thing, "UInt8Array");
         t.partition().partitionDictionary().add(Types::LocalTag(0x8001),
                                                 array.definition()->label());
         t.model.unknown(*t.thing, 0x8001, "x");
         t.model.misplaced(*t.thing, "UInt8Array").parse(Model::view(std::string(8, '\0')));
     }},
    {"ShortProductVersion", "form",
     [](ThingPartition& t) { t.add("ProductVersion", std::string("\0\1\0\2\0\3\0\4\5", 9)); }},
    {"ValueOfASetWithoutInstanceUID", "bytes",
     [](ThingPartition& t) {
         for (const char* bytes : {"", "x"}) {
             auto& set =
                 t.partition().createEmptyMetadataSet(t.thing->key(), *t.thing->metaMetadataSet());
             t.model.element(set, "DataStream").parse(Model::view(bytes));
         }
     }},
    {"ValueOfOneOfTwoSetsWithOneInstanceUID", "bytes",
     [](ThingPartition& t) {
         t.model.value(t.model.set("Other", 3), "OtherNumber", Types::UInt8(1));
         auto& second = t.model.set("Other", 3);
         t.model.value(second, "OtherNumber", Types::UInt8(2));
         t.model.misplaced(second, "DataStream").parse(Model::view(""));
     }},
    {"ValueOfASetThatTheDocumentHoldsTwice", "bytes",
     [](ThingPartition& t) {
         t.model.reference(*t.thing, "StrongReference", 3);
         t.model.misplaced(t.model.set("Other", 3), "DataStream").parse(Model::view(""));
         t.model.value(t.model.set("Other", 3), "OtherNumber", Types::UInt8(2));
         t.model.reference(t.model.set("Thing", 4), "StrongReference", 3);
     }},
    {"ValueOfTheLastSetAfterOneThatTheDocumentHoldsTwice", "bytes",
     [](ThingPartition& t) {
         t.model.reference(*t.thing, "StrongReference", 3);
         t.model.value(t.model.set("Other", 3), "OtherNumber", Types::UInt8(2));
         t.model.reference(t.model.set("Thing", 4), "StrongReference", 3);
         t.model.misplaced(t.model.set("Other", 3), "DataStream").parse(Model::view(""));
     }},
    {"CopiesBesideASetThatTheDocumentHoldsTwice", "copies",
     [](ThingPartition& t) {
         t.model.reference(*t.thing, "StrongReference", 3);
         for (const int number : {1, 2, 2, 3}) {
             t.model.value(t.model.set("Other", 3), "OtherNumber",
                           Types::UInt8(static_cast<Types::u8>(number)));
         }
         t.model.reference(t.model.set("Thing", 4), "StrongReference", 3);
     }},
    {"CopiesBesideADarkSetThatTheDocumentHoldsTwice", "copies",
     [](ThingPartition& t) {
         t.model.reference(*t.thing, "StrongReference", 3);
         for (const char* bytes : {"a", "b", "b", "c"}) {
             t.model.unknown(t.model.darkGroup(3), 0x7F01, bytes);
         }
         t.model.reference(t.model.set("Thing", 4), "StrongReference", 3);
     }},
    {"KeyOfOneSetOfItsClass", "key",
     [](ThingPartition& t) {
         t.model.set("Thing", 3);
         t.model.set("Thing", 4);
         auto key = t.thing->key().bytes();
         key[7] = 0x7F;
         t.thing->setKey(KLV::Key(key));
     }},
    {"TagsOfADarkSet", "primer",
     [](ThingPartition& t) {
         t.partition().partitionDictionary().add(Types::LocalTag(0x8001), unknownLabel);
         t.model.unknown(t.model.darkGroup(7), 0x8001, "x");
     }},
    {"TagOfADarkSetWithTheLabelOfAnUnknownProperty", "primer",
     [](ThingPartition& t) {
         auto& tags = t.partition().partitionDictionary();
         auto other = unknownLabel;
         other[7] = 0x7F;
         tags.add(Types::LocalTag(0x8001), other);
         tags.add(Types::LocalTag(0x8002), unknownLabel);
         t.model.unknown(t.model.darkGroup(7), 0x8001, "x");
         t.model.unknown(*t.thing, 0x8002, "x");
     }},
    {"VersionOfTheLabelOfInstanceUIDs", "primer",
     [](ThingPartition& t) {
         const auto label = Metadata::Structural::StructuralMetadataULs::instanceUID();
         auto other = label;
         other[7] = 0x7F;
         t.partition().partitionDictionary().add(Types::LocalTag(0x3C0A), other);
         auto& set =
             t.partition().createEmptyMetadataSet(t.thing->key(), *t.thing->metaMetadataSet());
         set.createElement(label, t.thing->find(label)->metaAttribute(), 0x3C0A)
             .parse({uuid(3).rawBuffer(), 16});
     }},
    {"DarkElementThatWouldTakeTheTagOfADarkSet", "primer",
     [](ThingPartition& t) {
         auto label = Model::darkKey();
         t.partition().partitionDictionary().add(Types::LocalTag(0x8001),
                                                 Types::UniversalLabel(label));
         label[15] = 0x7F;
         t.partition().partitionDictionary().add(Types::LocalTag(0xFFFF),
                                                 Types::UniversalLabel(label));
         t.model.unknown(*t.thing, 0x8001, "x");
         t.model.unknown(t.model.darkGroup(7), 0xFFFF, "y");
     }},
    {"StaticTagWithAnotherLabel", "primer",
     [](ThingPartition& t) {
         t.partition().partitionDictionary().add(Types::LocalTag(0x3C02), unknownLabel);
         t.model.unknown(*t.thing, 0x3C02, "x");
     }},
};

std::vector<Carried> allCases() {
    std::vector<Carried> all = carriedCases;
    all.insert(all.end(), formCases.begin(), formCases.end());
    return all;
}

std::string documentOf(PartitionMetadata& partition) {
    DataIO::Memory::MemoryDataSink sink;
    XMLUtils::ReplaceInvalidCharacters invalid(0);
    Editing::WrittenDocument(partition, {})
        .serialise(XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented, invalid, sink);
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

/// Whether somebody who reads a document with from-xml and compares would see that something is
/// wrong: it is refused, there is a note, or there are differences.
template <class Read> bool isNoticedBy(PartitionMetadata& before, Read read) {
    try {
        const auto after = read();
        return after.supplement.overruled != 0 || after.supplement.missingSets != 0 ||
               !differencesOf(before, *after.metadata).empty();
    } catch (const Exceptions::BaseException&) {
        return true;
    }
}

/// The same in one of the two ways of reading. Strictly, an empty element is text of no length
/// without an instruction that says so.
bool isNoticed(PartitionMetadata& before, const std::string& document) {
    const auto dictionary = before.partitionDictionary().dictionary();
    const auto* const bytes = reinterpret_cast<const unsigned char*>(document.data());
    constexpr auto identifiers = Editing::DocumentIdentifiers::written;
    return isNoticedBy(before,
                       [&] {
                           return Tool::readLeniently(bytes, document.size(), dictionary,
                                                      identifiers);
                       }) ||
           isNoticedBy(before, [&] {
               DataIO::Memory::MemoryDataSource source(bytes, document.size());
               return Editing::readDocument(source, dictionary, identifiers);
           });
}

class WhatElementsDoNotSay : public ::testing::TestWithParam<Carried> {
protected:
    WhatElementsDoNotSay() { GetParam().make(things); }
    PartitionMetadata& before() { return things.partition(); }

    ThingPartition things;
};

TEST_P(WhatElementsDoNotSay, comesBack) {
    const auto comparison = Editing::compareWithRoundTrip(before());
    EXPECT_THAT(comparison.differences, IsEmpty()) << linesOf(comparison.differences);
}

TEST_P(WhatElementsDoNotSay, isSaidByAnInstruction) {
    EXPECT_THAT(documentOf(before()),
                HasSubstr("<?corvid " + std::string(GetParam().instruction) + " "));
}

TEST_P(WhatElementsDoNotSay, isMissedWithoutTheInstruction) {
    const std::string document = documentOf(before());
    const std::regex instruction("<\\?corvid " + std::string(GetParam().instruction) + " [^>]*>\n");
    EXPECT_TRUE(isNoticed(before(), std::regex_replace(document, instruction, ""))) << document;
}

/// Every changed digit of what an instruction says, and of what it is about, is noticed: the
/// document is refused, the instruction is passed over with a note, or what comes back is
/// different.
TEST_P(WhatElementsDoNotSay, isMissedWithADamagedInstruction) {
    const std::string document = documentOf(before());
    const std::string front = document.substr(0, document.find("<s377m:"));
    const std::regex told("(hex|label|key|set|class|property)=\"([0-9A-Fa-f.]+)\"");
    const std::size_t labelVersion = std::string("06.0e.2b.34.01.01.01.").size();
    const std::size_t keyCoding = std::string("06.0e.2b.34.02.").size();
    std::size_t changes = 0;
    for (std::sregex_iterator each(front.begin(), front.end(), told), end; each != end; ++each) {
        for (std::size_t i = 0; i != static_cast<std::size_t>(each->length(2)); ++i) {
            const std::size_t at = static_cast<std::size_t>(each->position(2)) + i;
            // Labels and keys are matched without their version, keys without their coding.
            const bool isKey = each->str(1) == "class";
            const bool isVersion = (isKey && (i == keyCoding || i == keyCoding + 1)) ||
                                   ((isKey || each->str(1) == "property") &&
                                    (i == labelVersion || i == labelVersion + 1));
            if (front[at] == '.' || isVersion) {
                continue;
            }
            std::string damaged = document;
            damaged[at] = front[at] == '1' ? '2' : '1';
            EXPECT_TRUE(isNoticed(before(), damaged)) << damaged.substr(0, front.size()) << at;
            ++changes;
        }
    }
    EXPECT_TRUE(changes != 0 || front.find("text=") != std::string::npos);
}

TEST_P(WhatElementsDoNotSay, leavesThePartitionAsItWas) {
    const auto values = [&] {
        std::vector<std::string> list;
        forEachValue(before(), [&](const MetadataSet&, const Element& element) {
            list.push_back(valueOf(element));
        });
        return list;
    };
    const auto expected = values();
    Editing::compareWithRoundTrip(before());
    EXPECT_EQ(values(), expected);
}

INSTANTIATE_TEST_SUITE_P(, WhatElementsDoNotSay, ::testing::ValuesIn(allCases()),
                         [](const auto& each) { return std::string(each.param.name); });

} // namespace
