#include "tools/corvid/output/OpenOutput.h"

#include "tests/tool/RunCommand.h"
#include "tools/corvid/terminal/UsageError.h"

#include <gmock/gmock.h>
#include <unistd.h>

using namespace Corvid::Testing;
using Corvid::Tool::MayReplace;
using Corvid::Tool::refuseToDestroy;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

/// Why a file may not be replaced; empty where it may.
std::string refusal(const std::string& path, MayReplace mayReplace) {
    try {
        refuseToDestroy(path, mayReplace);
    } catch (const Corvid::Tool::UsageError& error) {
        return error.text;
    }
    return "";
}

const Bytes essence = klv(essenceKey(), repeat(0xEE, 100));

Bytes onePartition(const Bytes& behind) {
    PartitionSpec header = headerPartition();
    header.behindMetadata = behind;
    return MxfBuilder().add(header).build();
}

/// An MXF file as recorders write it.
Bytes wholeClip() {
    PartitionSpec body = bodyPartition();
    body.bodySid = 1;
    body.behindMetadata = essence;
    return MxfBuilder()
        .add(headerPartition())
        .add(body)
        .add(footerPartition())
        .withRandomIndexPack()
        .build();
}

Bytes withLyingByteCount() {
    PartitionSpec header = headerPartition();
    header.behindMetadata = essence;
    header.headerByteCount = header.metadata.size() + essence.size();
    return MxfBuilder().add(header).build();
}

Bytes cut(Bytes bytes, std::size_t left) {
    bytes.resize(left);
    return bytes;
}

/// What is left of a clip whose copy ended with its header partition.
Bytes cutClip() {
    PartitionSpec header = headerPartition();
    header.footerPartition = 1000000;
    return MxfBuilder().add(header).build();
}

/// What a recorder has written before the first frame.
Bytes withoutItsEssence() {
    PartitionSpec header = headerPartition();
    header.status = 1;
    header.bodySid = 1;
    return MxfBuilder().add(header).build();
}

struct Found {
    const char* name;
    Bytes bytes;
    bool isHeaderPartition; ///< and nothing else
    const char* what;       ///< part of the refusal; empty where there is none
};
void PrintTo(const Found& c, std::ostream* out) { *out << c.name; }

class WhereAFileIs : public ::testing::TestWithParam<Found> {};

TEST_P(WhereAFileIs, onlyWhatIsNotAClipIsReplaced) {
    const Workshop shop;
    shop.write("there", GetParam().bytes);
    const std::string path = (shop.path() / "there").string();
    const bool isMxf = *GetParam().what != '\0';
    const auto expect = [&](MayReplace mayReplace, bool refused) {
        const std::string text = refusal(path, mayReplace);
        EXPECT_EQ(!text.empty(), refused) << text;
        EXPECT_TRUE(!refused || text.rfind(path + ": ", 0) == 0) << text;
        EXPECT_THAT(text, HasSubstr(refused ? GetParam().what : ""));
        EXPECT_THAT(text, HasSubstr(refused ? "lost; --force replaces it" : ""));
    };
    expect(MayReplace::headerPartition, isMxf && !GetParam().isHeaderPartition);
    expect(MayReplace::noMxfFile, isMxf);
    EXPECT_THAT(refusal(path, MayReplace::everything), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    , WhereAFileIs,
    ::testing::Values(
        Found{"Nothing", {}, false, ""}, Found{"Text", {'t', 'e', 'x', 't'}, false, ""},
        Found{"HeaderPartition", onePartition({}), true, "an MXF file (1 partition, "},
        Found{"HeaderPartitionAndFill", onePartition(fill(700)), true, "an MXF file (1 partition"},
        Found{"Clip", wholeClip(), false, "an MXF file with essence (3 partitions, "},
        Found{"EssenceInTheHeaderPartition", onePartition(essence), false, "(1 partition, "},
        Found{"EssenceThatTheByteCountTakesIn", withLyingByteCount(), false, "(1 partition, "},
        Found{"IndexTable", onePartition(klv(indexSegmentKey(), {1})), false, "(1 partition, "},
        Found{"Zeros", onePartition(Bytes(100)), false, "(1 partition, "},
        Found{"RandomIndexPack", MxfBuilder().add(headerPartition()).withRandomIndexPack().build(),
              false, "(1 partition, "},
        Found{"FooterPartition", MxfBuilder().add(headerPartition()).add(footerPartition()).build(),
              false, "(2 partitions, "},
        Found{"FooterPartitionOnly", MxfBuilder().add(footerPartition(smallMetadata())).build(),
              false, "(1 partition, "},
        Found{"RunIn", MxfBuilder().runIn({1, 2, 3}).add(headerPartition()).build(), false,
              "(1 partition, "},
        Found{"CutInASet", cut(onePartition({}), onePartition({}).size() - 3), false,
              "(1 partition, "},
        Found{"CutBehindItsMetadata", cutClip(), false, "(1 partition, "},
        Found{"WithoutItsEssence", withoutItsEssence(), false, "with essence (1 partition, "},
        Found{"CutInItsPack", cut(onePartition({}), 50), false, "a damaged MXF file"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(RefuseToDestroy, takesNothingForAFileThatIsNotThere) {
    const Workshop shop;
    EXPECT_EQ(refusal((shop.path() / "new.mxf").string(), MayReplace::noMxfFile), "");
    EXPECT_EQ(refusal("-", MayReplace::noMxfFile), "");
    EXPECT_EQ(refusal("/dev/null", MayReplace::noMxfFile), "");
}

TEST(RefuseToDestroy, protectsAFileThatCantBeRead) {
    const Workshop shop;
    shop.write("there", smallClip());
    std::string path = (shop.path() / "there").string();
    std::filesystem::permissions(path, std::filesystem::perms::owner_write);
    if (::geteuid() == 0) {
        path = "/proc/self/mem"; // root reads all files but this one
        if (!std::filesystem::is_regular_file(path)) {
            GTEST_SKIP() << "no file that root can't read";
        }
    }
    EXPECT_THAT(refusal(path, MayReplace::headerPartition),
                HasSubstr("so it may be an MXF file, which would be lost; --force replaces it"));
    EXPECT_EQ(refusal(path, MayReplace::everything), "");
}

class Replacing : public ::testing::Test {
protected:
    Replacing() {
        shop.write("clip.mxf", wholeClip());
        shop.write("there.mxf", wholeClip());
        shop.run("corvid to-xml clip.mxf -o clip.xml");
    }

    Workshop shop;
};

TEST_F(Replacing, fromXmlKeepsTheClipThatItsDocumentIsFrom) {
    for (const char* line :
         {"corvid to-xml clip.mxf | corvid from-xml - -o clip.mxf",
          "corvid from-xml clip.xml -o clip.mxf", "corvid from-xml missing.xml -o clip.mxf"}) {
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 2) << line;
        EXPECT_THAT(outcome.err, StartsWith("corvid: clip.mxf: an MXF file with essence (3 "));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        EXPECT_EQ(shop.read("clip.mxf"), asText(wholeClip()));
    }
}

TEST_F(Replacing, fromXmlReplacesAClipByForce) {
    EXPECT_EQ(shop.run("corvid from-xml clip.xml -o clip.mxf --force").status, 0);
    EXPECT_THAT(shop.run("corvid info --all clip.mxf").out, HasSubstr("closed and complete"));
    EXPECT_NE(shop.read("clip.mxf"), asText(wholeClip()));
    // What it writes itself needs no force.
    EXPECT_EQ(shop.run("corvid from-xml clip.xml -o clip.mxf").status, 0);
}

TEST_F(Replacing, toXmlKeepsAnyMxfFile) {
    shop.write("there.mxf", smallClip());
    const Outcome outcome = shop.run("corvid to-xml clip.mxf -o there.mxf");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, StartsWith("corvid: there.mxf: an MXF file (1 partition, "));
    EXPECT_EQ(shop.read("there.mxf"), asText(smallClip()));
    EXPECT_EQ(shop.run("corvid to-xml clip.mxf -o there.mxf --force").status, 0);
    EXPECT_THAT(shop.read("there.mxf"), StartsWith("<?xml"));
}

TEST_F(Replacing, theInputIsNotReplacedByForce) {
    const Outcome outcome = shop.run("corvid to-xml clip.mxf -o ./clip.mxf --force");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("the output is the input itself"));
    EXPECT_EQ(shop.read("clip.mxf"), asText(wholeClip()));
}

struct IntoAnInput {
    const char* name;
    const char* line;
    const char* input;
};
void PrintTo(const IntoAnInput& c, std::ostream* out) { *out << c.name; }

class OutputIntoAnInput : public Replacing, public ::testing::WithParamInterface<IntoAnInput> {};

TEST_P(OutputIntoAnInput, isRefused) {
    shop.write("my.dict", std::string("namespace my urn:example:My\n"));
    for (const char* schema : {"rp210.xsd", "corvid-metadata.schema.json"}) {
        shop.write(schema, std::string("namespace my urn:example:My\n"));
    }
    const std::string before = shop.run("md5sum *").out;
    const Outcome outcome = shop.run(GetParam().line);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err,
              std::string("corvid: ") + GetParam().input + ": the output is the input itself\n");
    EXPECT_EQ(shop.run("md5sum *").out, before);
}

INSTANTIATE_TEST_SUITE_P(
    , OutputIntoAnInput,
    ::testing::Values(
        IntoAnInput{"ToXmlAppends", "corvid to-xml clip.mxf >>clip.mxf", "clip.mxf"},
        IntoAnInput{"ToXmlOverwrites", "corvid to-xml clip.mxf 1<>clip.mxf", "clip.mxf"},
        IntoAnInput{"ByForce", "corvid to-xml clip.mxf --force >>clip.mxf", "clip.mxf"},
        IntoAnInput{"DevStdout", "corvid to-xml clip.mxf -o /dev/stdout >>clip.mxf", "clip.mxf"},
        IntoAnInput{"DevFd", "corvid to-xml clip.mxf -o /dev/fd/3 3>>clip.mxf", "clip.mxf"},
        IntoAnInput{"StandardInput", "corvid to-xml - <clip.mxf >>clip.mxf", "standard input"},
        IntoAnInput{"Dictionary", "corvid to-xml clip.mxf --dictionary my.dict -o my.dict",
                    "my.dict"},
        IntoAnInput{"DictionaryAppended", "corvid to-xml clip.mxf --dictionary my.dict >>my.dict",
                    "my.dict"},
        IntoAnInput{"ToJson", "corvid to-json clip.mxf >>clip.mxf", "clip.mxf"},
        IntoAnInput{"ToJsonDictionary", "corvid to-json clip.mxf --dictionary my.dict -o my.dict",
                    "my.dict"},
        IntoAnInput{"JsonSchemaDictionary",
                    "corvid schema --json --dictionary corvid-metadata.schema.json",
                    "corvid-metadata.schema.json"},
        IntoAnInput{"FromXml", "corvid from-xml clip.xml -o - >>clip.xml", "clip.xml"},
        IntoAnInput{"FromXmlDictionary",
                    "corvid from-xml clip.xml --dictionary my.dict -o ./my.dict", "my.dict"},
        IntoAnInput{"Info", "corvid info clip.mxf >>clip.mxf", "clip.mxf"},
        IntoAnInput{"InfoInJson", "corvid info --json - <clip.mxf >>clip.mxf", "standard input"},
        IntoAnInput{"InfoDictionary", "corvid info clip.mxf --dictionary my.dict >>my.dict",
                    "my.dict"},
        IntoAnInput{"Check", "corvid check clip.mxf there.mxf >>there.mxf", "there.mxf"},
        IntoAnInput{"CheckInJson", "corvid check clip.mxf there.mxf --json 1<>there.mxf",
                    "there.mxf"},
        IntoAnInput{"CheckDictionary", "corvid check clip.mxf --dictionary my.dict >>my.dict",
                    "my.dict"},
        IntoAnInput{"DictionaryVerb", "corvid dictionary Preface --dictionary my.dict >>my.dict",
                    "my.dict"},
        IntoAnInput{"Schema", "corvid schema --dictionary rp210.xsd", "rp210.xsd"}),
    [](const auto& each) { return each.param.name; });

TEST_F(Replacing, aFileThatTheShellHasEmptiedIsNotCalledEmpty) {
    for (const char* verb : {"info", "check", "to-xml"}) {
        const Outcome outcome = shop.run(std::string("corvid ") + verb + " clip.mxf >clip.mxf");
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.err, "corvid: clip.mxf: the output is the input itself\n");
    }
}

TEST_F(Replacing, noMessageGoesIntoTheInput) {
    for (const char* line :
         {"corvid info clip.mxf 2>>clip.mxf", "corvid to-xml clip.mxf 2>>clip.mxf",
          "corvid check there.mxf clip.mxf 2>>clip.mxf",
          "corvid check there.mxf clip.mxf >>there.mxf 2>>clip.mxf"}) {
        EXPECT_EQ(shop.run(line).status, 2);
        EXPECT_EQ(shop.read("clip.mxf"), asText(wholeClip())) << line;
        EXPECT_EQ(shop.read("there.mxf"), asText(wholeClip())) << line;
    }
}

TEST_F(Replacing, aDeviceMayBeReadAndWritten) {
    EXPECT_EQ(shop.run("corvid to-xml - </dev/null >/dev/null").status, 1);
}

TEST_F(Replacing, schemaKeepsAClipWithTheNameOfASchema) {
    shop.run("mkdir schema; cp clip.mxf schema/types.xsd");
    const Outcome outcome = shop.run("corvid schema -o schema");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("schema/types.xsd: an MXF file"));
    EXPECT_EQ(shop.run("ls schema").out, "types.xsd\n");
    EXPECT_EQ(shop.run("corvid schema -o schema --force").status, 0);
    EXPECT_THAT(shop.read("schema/types.xsd"), HasSubstr("<xs:schema"));
}

TEST_F(Replacing, everyVerbThatWritesFilesCanBeForced) {
    for (const char* verb : {"to-xml", "to-json", "from-xml", "schema"}) {
        EXPECT_THAT(shop.run(std::string("corvid ") + verb + " --help").out, HasSubstr("--force"));
    }
}

TEST_F(Replacing, aClipBehindALinkIsKeptToo) {
    shop.run("ln -s clip.mxf link.mxf");
    const Outcome outcome = shop.run("corvid from-xml clip.xml -o link.mxf");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("link.mxf: an MXF file with essence"));
}

} // namespace
