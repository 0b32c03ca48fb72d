#include "tests/tool/RunCommand.h"

#include <fstream>
#include <gmock/gmock.h>
#include <regex>

using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

/// What the command prints, with one blank for any number of them.
std::string explained(const std::string& arguments) {
    const Outcome outcome = Workshop().run("corvid dictionary " + arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.err, IsEmpty());
    return std::regex_replace(outcome.out, std::regex(" +"), " ");
}

TEST(DictionaryCommand, explainsASet) {
    const std::string text = explained("s377m:SourceClip");
    EXPECT_THAT(text, StartsWith("SourceClip, set\n Qualified name s377m:SourceClip\n"
                                 " Namespace urn:SMPTE:S377M\n"));
    EXPECT_THAT(text, HasSubstr("\n Key 06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.11.00\n"));
    EXPECT_THAT(text,
                HasSubstr("\n Inherits SourceReference, Segment, Component, InterchangeObject\n"));
    EXPECT_THAT(text,
                HasSubstr("\n InstanceUID 3c.0a UUID required InterchangeObject 06.0e.2b.34."));
    EXPECT_THAT(text, HasSubstr("\n SourcePackageID 11.01 UMID32 required SourceReference "));
    EXPECT_THAT(text, HasSubstr("\n StartPosition 12.01 Position required SourceClip "));
    EXPECT_LT(text.find("ComponentLength"), text.find("StartPosition")) << "ancestors first";
}

TEST(DictionaryCommand, explainsAProperty) {
    const std::string text = explained("0x3203");
    EXPECT_THAT(text, StartsWith("StoredWidth, property\n Qualified name rp210:StoredWidth\n"));
    EXPECT_THAT(text, HasSubstr("\n Local tag 32.03\n Type UInt32\n Registered type UInt32\n"));
    EXPECT_THAT(text, HasSubstr("\n PictureDescriptor best-effort "));
}

TEST(DictionaryCommand, explainsTheValuesOfAProperty) {
    const std::string text = explained("FrameLayout");
    EXPECT_THAT(text, HasSubstr("\n Registered type LayoutType\n"));
    EXPECT_THAT(text, HasSubstr("\n SeparateFields 1\n"));
}

TEST(DictionaryCommand, explainsATypeALabelAMemberAndAPack) {
    EXPECT_THAT(explained("Rational"), HasSubstr("\n Type kind record\n Value type Rational\n"));
    EXPECT_THAT(explained("Rational"), HasSubstr("\nMembers\n Member Type\n Numerator Int32\n"));
    EXPECT_THAT(
        explained("DataDefinitionWeakReference"),
        HasSubstr("\n Target DataDefinition\n Target path Preface/Dictionary/DataDefinitions\n"));
    EXPECT_THAT(explained("060e2b34-0401017f-04010101-01020000"),
                HasSubstr("\n Register Parameters > Picture essence > Transfer characteristics\n"));
    EXPECT_THAT(explained("TransferCharacteristic_274M_296M"), HasSubstr("\n Deprecated yes\n"));
    EXPECT_THAT(explained("SegmentedFrame"), HasSubstr("\n Of LayoutType\n"));
    const std::string pack = explained("PartitionPack");
    EXPECT_THAT(pack, StartsWith("PartitionPack, group\n"));
    EXPECT_THAT(pack, HasSubstr("\n Header metadata no\n Reason Packs that frame partitions"));
    EXPECT_THAT(pack, HasSubstr("\n KAGSize "));
    EXPECT_THAT(explained("AGICOAID"), HasSubstr("\n Reason No group of the registers has it\n"));
}

TEST(DictionaryCommand, listsSeveral) {
    const std::string text = explained("DataDefinition");
    EXPECT_THAT(text, StartsWith("Kind Label, or type and value Name Other names\nset "));
    EXPECT_THAT(text, HasSubstr("\nproperty "));
    EXPECT_THAT(text, HasSubstr(" ComponentDataDefinition ")) << "ST 377-1 calls it so";
}

TEST(DictionaryCommand, saysWhatElseHasTheName) {
    const std::string text = explained("Sequence");
    EXPECT_THAT(text, StartsWith("Sequence, set\n"));
    EXPECT_THAT(text, HasSubstr("\nOthers of that name\nKind "));
    EXPECT_THAT(text, HasSubstr(" TrackSegment "));
}

TEST(DictionaryCommand, suggestsWhatIsNear) {
    const Workshop shop;
    const Outcome name = shop.run("corvid dictionary Prefase");
    EXPECT_EQ(name.status, 1);
    EXPECT_THAT(name.out, IsEmpty());
    EXPECT_EQ(name.err, "corvid: neither the dictionary nor the registers have a label, local tag "
                        "or name 'Prefase'; near: Preface\n");
    const Outcome label =
        shop.run("corvid dictionary 06.0e.2b.34.04.01.01.01.04.01.01.01.01.7f.00.00");
    EXPECT_EQ(label.status, 1);
    EXPECT_THAT(label.err, HasSubstr("; it would be in: Parameters > Picture essence > Transfer "
                                     "characteristics; near: 06.0e.2b.34.04.01.01."));
    const Outcome tag = shop.run("corvid dictionary 8001");
    EXPECT_EQ(tag.status, 1);
    EXPECT_THAT(tag.err, HasSubstr("tags from 80.00 on have a meaning of their own in each file"));
    EXPECT_EQ(shop.run("corvid dictionary ''").status, 1);
    EXPECT_THAT(shop.run("corvid dictionary \"$(printf 'a\\033[31mz')\"").err,
                HasSubstr("'a\\x1b[31mz'"));
}

TEST(DictionaryCommand, showsWhatExtensionsAdd) {
    const Workshop shop;
    shop.write("a.dict", std::string("namespace s377m urn:SMPTE:S377M\n"
                                     "namespace a urn:example:A\n"
                                     "extend s377m:SourcePackage\n"
                                     "property a:Celsius 06.0e.2b.34.01.01.01.01.0f.7e.01.00.00.00."
                                     "03.01 - Int16 optional -\n"));
    EXPECT_EQ(shop.run("corvid dictionary Celsius").status, 1);
    const Outcome property = shop.run("corvid dictionary --dictionary a.dict Celsius");
    EXPECT_EQ(property.status, 0);
    EXPECT_THAT(property.out, HasSubstr("a:Celsius"));
    EXPECT_THAT(property.out, HasSubstr("SourcePackage"));
    EXPECT_THAT(shop.run("corvid dictionary SourcePackage --dictionary a.dict").out,
                HasSubstr("Celsius"));
    shop.write("bad.dict", std::string("nonsense\n"));
    EXPECT_EQ(shop.run("corvid dictionary Preface --dictionary bad.dict").status, 1);
    EXPECT_EQ(shop.run("corvid dictionary Preface --dictionary gone.dict").status, 3);
}

TEST(DictionaryCommand, refusesWrongCommandLines) {
    const Workshop shop;
    EXPECT_EQ(shop.run("corvid dictionary").status, 2);
    EXPECT_EQ(shop.run("corvid dictionary Preface Track").status, 2);
    EXPECT_EQ(shop.run("corvid dictionary --no-such-option Preface").status, 2);
    EXPECT_THAT(shop.run("corvid dictionary --help").out, HasSubstr("LABEL-OR-NAME"));
}

/// The keys of every kind are those that the page names, and all of them.
TEST(DictionaryCommand, jsonHasTheKeysThatThePageNames) {
    if (python().empty()) {
        GTEST_SKIP() << "no Python";
    }
    const Workshop shop;
    shop.write("check.py", std::string(R"(
import json, re, sys
page = open(sys.argv[1]).read()
rows = dict(re.findall(r"^\| `(\w+)` \| (.*) \|$", page, re.M))
del rows["kind"]
def keys(value):
    if isinstance(value, dict):
        return set(value) | {key for each in value.values() for key in keys(each)}
    return {key for each in value for key in keys(each)} if isinstance(value, list) else set()
seen = {}
for line in open(sys.argv[2]):
    found = json.loads(line)
    assert list(found) == ["query", "match", "entries", "namesakes", "near"], found
    for entry in found["entries"]:
        entry["alsoCalled"] = []
        seen.setdefault(entry["kind"], set()).update(keys(entry) - {"kind", "name", "alsoCalled"})
assert set(seen) == set(rows), (seen.keys(), rows.keys())
for kind, found in seen.items():
    told = set(re.findall(r"`(\w+)`", rows[kind])) - {"name", "alsoCalled"}
    assert found == told, (kind, found - told, told - found)
)"));
    // One line of JSON each; between them they have every key.
    const std::string one = "\"$(corvid dictionary --json '";
    const std::string two = "' | tr -d '\\n')\" ";
    std::string line = "printf '%s\\n' ";
    for (const char* query : {"Preface", "FrameLayout", "EssenceStreamID", "TransferCharacteristic",
                              "AGICOAID", "IndexEditRate", "DataDefinitionWeakReference", "UUID",
                              "UInt8", "Rational", "TransferCharacteristicType", "FullFrame",
                              "Numerator", "TransferCharacteristic_274M_296M", "PartitionPack",
                              "CFALayout", "ContainerAvidHD_8_7_1_1080p", "a b", "zzz"}) {
        line += one + query + two;
    }
    EXPECT_EQ(shop.run(line + "> all.json").status, 0);
    const Outcome outcome =
        shop.run("'" + python() + "' check.py '" +
                 (sourceDir() / "docs" / "dictionary-command.md").string() + "' all.json");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
}

TEST(DictionaryCommand, jsonSaysWhenNothingIsFound) {
    const Outcome outcome = Workshop().run("corvid dictionary --json Prefase");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("\"match\": null,\n  \"entries\": [],\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\"near\": [\n    \"Preface\"\n  ]"));
    EXPECT_THAT(outcome.err, HasSubstr("near: Preface"));
}

TEST(DictionaryCommand, coloursOnlyOnATerminal) {
    EXPECT_THAT(explained("Preface"), Not(HasSubstr("\033")));
    const Workshop shop;
    if (shop.run("command -v script").status != 0) {
        GTEST_SKIP() << "no script(1) to make a terminal";
    }
    const std::string line =
        "TERM=xterm script -qec 'corvid dictionary Preface' /dev/null </dev/null";
    EXPECT_THAT(shop.run(line).out, StartsWith("\033[1mPreface\033[0m, set"));
    EXPECT_THAT(shop.run("NO_COLOR=1 " + line).out, Not(HasSubstr("\033[1m")));
}

} // namespace
