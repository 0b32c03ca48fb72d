#include "tools/corvid/FromXml.h"

#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "tests/support/DocumentText.h"
#include "tests/tool/RunCommand.h"
#include "tools/corvid/terminal/Messages.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace Corvid;
using namespace Corvid::Testing;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

const std::string root =
    "<?corvid format='1'?>"
    "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:rp210='urn:SMPTE:RP210' "
    "xmlns:groups='urn:SMPTE:Groups:MXF'>";
const std::string identified =
    " rp210:InstanceUID='0f.0e.0d.0c.0b.0a.09.08.07.06.05.04.03.02.01.00'";
const std::string preface = "<s377m:Preface" + identified +
                            "><rp210:OperationalPattern>"
                            "06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00"
                            "</rp210:OperationalPattern></s377m:Preface>";

std::string documentOf(const std::string& inside) {
    return root + inside + "</s377m:MetadataSets>";
}

class FromXml : public ::testing::Test {
protected:
    FromXml() {
        std::filesystem::copy_file(sourceDir() / "examples" / "sample.mxf",
                                   shop.path() / "sample.mxf");
        shop.run("corvid to-xml sample.mxf -o sample.xml");
    }

    /// Writes, and expects that nothing is said of it.
    void write(const std::string& options) {
        const Outcome outcome = shop.run("corvid from-xml " + options);
        EXPECT_EQ(outcome.status, 0) << options;
        EXPECT_THAT(outcome.out, IsEmpty());
        EXPECT_THAT(outcome.err, IsEmpty()) << options;
    }

    Workshop shop;
};

struct LeftOut {
    const char* name;
    std::string inside; ///< the root, besides the Preface
    const char* says;
};
void PrintTo(const LeftOut& c, std::ostream* out) { *out << c.name; }

class LeavesOutWithAWarning : public ::testing::TestWithParam<LeftOut> {};

TEST_P(LeavesOutWithAWarning, whatHasNoMeaningAtItsPlace) {
    const Workshop shop;
    shop.write("in.xml", documentOf(preface + GetParam().inside));
    const Outcome outcome = shop.run("corvid from-xml --lenient in.xml -o out.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err,
              std::string("corvid: in.xml: warning: ") + GetParam().says + " [left-out-element]\n");
    EXPECT_EQ(shop.run("corvid from-xml --lenient in.xml -o none.mxf --warnings-as-errors").status,
              1);
    EXPECT_FALSE(shop.has("none.mxf"));
}

INSTANTIATE_TEST_SUITE_P(
    , LeavesOutWithAWarning,
    ::testing::Values(
        LeftOut{"Set", "<s377m:Prefaec/>",
                "element s377m:Prefaec is not expected here, so it is left out"},
        LeftOut{"SetsOfOneName", "<s377m:X/><s377m:X/><s377m:X/>",
                "element s377m:X is not expected here, so it is left out; so it is with 2 more of "
                "that name"},
        LeftOut{"Property", "<s377m:Sequence><rp210:Duratoin>1</rp210:Duratoin></s377m:Sequence>",
                "set Sequence: element rp210:Duratoin is not expected here, so it is left out"},
        LeftOut{"PropertyOfAnotherSet", "<s377m:Sequence><rp210:SampleRate/></s377m:Sequence>",
                "set Sequence: element rp210:SampleRate is not expected here, so it is left out"},
        LeftOut{"PropertyThatIsThereAlready",
                "<s377m:TimelineTrack><rp210:TrackID>1</rp210:TrackID>"
                "<rp210:TrackID>2</rp210:TrackID></s377m:TimelineTrack>",
                "set TimelineTrack: element rp210:TrackID is not expected here, so it is left out"},
        LeftOut{"SetInAReference",
                "<s377m:Sequence><rp210:ComponentObjects><s377m:X/></rp210:ComponentObjects>"
                "</s377m:Sequence>",
                "set Sequence: rp210:ComponentObjects: element s377m:X is not expected here, so it "
                "is left out"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(FromXml, warnsOfSetsThatOnlyAnotherDictionaryKnows) {
    shop.write("in.xml", documentOf(preface + "<s:ADM_CHNASubDescriptor "
                                              "rp210:InstanceUID='00.01.02.03.04.05.06.07.08.09."
                                              "0a.0b.0c.0d.0e.0f' "
                                              "xmlns:s='urn:SMPTE:ST2131:Groups'/>"));
    EXPECT_THAT(shop.run("corvid from-xml in.xml -o out.mxf").err, IsEmpty());
    EXPECT_THAT(shop.run("corvid from-xml --no-vendor-dictionaries in.xml -o out.mxf").err,
                HasSubstr("/s:ADM_CHNASubDescriptor: is no set that the dictionary knows"));
    EXPECT_THAT(
        shop.run("corvid from-xml --lenient --no-vendor-dictionaries in.xml -o out.mxf").err,
        HasSubstr("element s:ADM_CHNASubDescriptor is not expected here"));
}

TEST_F(FromXml, writesWhatToXmlMakesTheSameDocumentOf) {
    for (const char* options : {"", "--compact", "--encoding utf-16", "--references values",
                                "--compact --encoding utf-16 --references values"}) {
        const std::string toXml = std::string("corvid to-xml ") + options;
        EXPECT_EQ(shop.run(toXml + " sample.mxf -o there.xml").status, 0);
        write("there.xml -o header.mxf");
        const Outcome back = shop.run(toXml + " header.mxf -o back.xml");
        EXPECT_THAT(back.err, IsEmpty());
        EXPECT_TRUE(shop.read("there.xml") == shop.read("back.xml")) << options;
    }
}

TEST_F(FromXml, keepsTheMetadataOfRealFiles) {
    const auto folder = samplesDir();
    if (folder.empty()) {
        GTEST_SKIP() << "no folder of sample files";
    }
    const auto withoutInstructions = [](const std::string& text) {
        return std::regex_replace(text, std::regex("\n<\\?corvid [^>]*>"), "");
    };
    // Where the container of unknown properties goes, so does its namespace.
    const std::string groups = " xmlns:groups=\"urn:SMPTE:Groups:MXF\"";
    const auto comparable = [&](const std::string& name) {
        std::string text = withoutEmptyElements(withoutInstructions(shop.read(name)));
        for (std::size_t at; (at = text.find(groups)) != std::string::npos;) {
            text.erase(at, groups.size());
        }
        return text;
    };
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".mxf") {
            continue;
        }
        SCOPED_TRACE(entry.path().filename());
        for (const char* references : {"links", "values"}) {
            const std::string toXml =
                std::string("corvid to-xml --compact --replace-invalid --references ") + references;
            ASSERT_EQ(shop.run(toXml + " '" + entry.path().string() + "' -o there.xml").status, 0);
            const Outcome outcome = shop.run("corvid from-xml there.xml -o header.mxf");
            EXPECT_EQ(outcome.status, 0) << outcome.err;
            EXPECT_THAT(outcome.err, Not(HasSubstr("warning"))) << outcome.err;
            ASSERT_EQ(shop.run(toXml + " header.mxf -o back.xml").status, 0);
            // Nested sets leave out what refers to one a second time.
            const bool isWhole = std::string(references) == "links";
            const std::string there = isWhole ? shop.read("there.xml") : comparable("there.xml");
            const std::string back = isWhole ? shop.read("back.xml") : comparable("back.xml");
            EXPECT_TRUE(there == back) << difference(there, back);
        }
    }
}

TEST_F(FromXml, readsAndWritesPipes) {
    write("sample.xml -o header.mxf");
    const std::string expected = shop.read("header.mxf");
    EXPECT_THAT(expected, StartsWith("\x06\x0e\x2b\x34"));
    for (const char* line : {"corvid from-xml - -o out.mxf <sample.xml",
                             "cat sample.xml | corvid from-xml - -o out.mxf",
                             "corvid from-xml sample.xml -o - >out.mxf",
                             "corvid from-xml sample.xml --output - | cat >out.mxf",
                             "corvid to-xml sample.mxf | corvid from-xml - -o - | cat >out.mxf",
                             "corvid from-xml sample.xml -o /dev/stdout | cat >out.mxf"}) {
        shop.run("rm -f out.mxf");
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 0) << line << outcome.err;
        EXPECT_TRUE(shop.read("out.mxf") == expected) << line;
    }
}

TEST_F(FromXml, renamesSetsOneToOneWhenAskedTo) {
    write("sample.xml --new-identifiers -o header.mxf");
    shop.run("corvid to-xml header.mxf -o back.xml");
    const std::string there = shop.read("sample.xml");
    const std::string back = shop.read("back.xml");
    EXPECT_EQ(withoutIdentifiers(there), withoutIdentifiers(back));
    const std::regex identifier("InstanceUID=\"([^\"]*)\"");
    for (std::sregex_iterator i(there.begin(), there.end(), identifier), end; i != end; ++i) {
        EXPECT_THAT(back, Not(HasSubstr((*i)[1].str())));
    }
    write("sample.xml --new-identifiers -o other.mxf");
    EXPECT_NE(shop.read("other.mxf"), shop.read("header.mxf"));
}

TEST_F(FromXml, writesAClosedAndCompletePartitionOnTheKag) {
    const std::string pack("\x06\x0e\x2b\x34\x02\x05\x01\x01\x0d\x01\x02\x01\x01\x02\x04", 15);
    for (const unsigned kag : {1U, 256U, 512U, 1U << 20}) {
        write("sample.xml -o header.mxf --kag " + std::to_string(kag));
        EXPECT_THAT(shop.read("header.mxf"), StartsWith(pack));
        EXPECT_EQ(shop.read("header.mxf").size() % kag, 0U);
        const Outcome info = shop.run("corvid info --all header.mxf");
        EXPECT_THAT(info.err, IsEmpty());
        EXPECT_THAT(info.out, HasSubstr("OP1a"));
        EXPECT_THAT(info.out, HasSubstr("closed and complete"));
        EXPECT_THAT(info.out, HasSubstr("06.0e.2b.34.04.01.01.02.0d.01.03.01.02.04.60.01"));
    }
    for (const char* kag : {"0", "1048577", "-1", "x", ""}) {
        const Outcome outcome =
            shop.run("corvid from-xml sample.xml -o none.mxf --kag '" + std::string(kag) + "'");
        EXPECT_EQ(outcome.status, 2) << kag;
        EXPECT_THAT(outcome.err, HasSubstr("--kag"));
    }
    EXPECT_FALSE(shop.has("none.mxf"));
}

TEST_F(FromXml, mergesEqualSetsAndSaysSo) {
    const std::string once = "<s377m:ContentStorage rp210:InstanceUID='00.01.02.03.04.05.06.07.08."
                             "09.0a.0b.0c.0d.0e.0f'/>";
    shop.write("doc.xml", documentOf(preface + once + once + once));
    const Outcome outcome = shop.run("corvid from-xml doc.xml -o header.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "corvid: doc.xml: note: 2 sets that the document repeats without a "
                           "difference were left out\n");
    EXPECT_THAT(shop.run("corvid info --all header.mxf").out, HasSubstr("2 sets"));
}

TEST_F(FromXml, refusesUnequalSetsOrKeepsThemLeniently) {
    const std::string front = "<s377m:TimelineTrack rp210:InstanceUID='00.01.02.03.04.05.06.07.08."
                              "09.0a.0b.0c.0d.0e.0f'><rp210:TrackName>";
    const std::string back = "</rp210:TrackName></s377m:TimelineTrack>";
    shop.write("doc.xml", documentOf(preface + front + "a" + back + front + "b" + back));
    const Outcome refused = shop.run("corvid from-xml doc.xml -o header.mxf");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err,
                ::testing::MatchesRegex("corvid: doc.xml: line 1, column [0-9]+: set "
                                        "TimelineTrack 00.01.*: another set has this identifier "
                                        "and differs\n"));
    const Outcome outcome = shop.run("corvid from-xml --lenient doc.xml -o header.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "corvid: doc.xml: warning: set TimelineTrack: 00.01.02.03.04.05.06.07."
                           "08.09.0a.0b.0c.0d.0e.0f is in the document more than once, with "
                           "differences; all are kept [unequal-copies]\n");
    const std::string again = shop.run("corvid to-xml header.mxf").out;
    EXPECT_THAT(again, HasSubstr(">a<"));
    EXPECT_THAT(again, HasSubstr(">b<"));
}

TEST_F(FromXml, needsAPrefaceAndWantsOne) {
    shop.write("none.xml", documentOf("<s377m:ContentStorage" + identified + "/>"));
    const Outcome none = shop.run("corvid from-xml none.xml -o header.mxf");
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "corvid: none.xml: the document has no Preface\n");
    EXPECT_FALSE(shop.has("header.mxf"));
    shop.write("two.xml", documentOf(preface + "<s377m:Preface rp210:InstanceUID='00.01.02.03.04."
                                               "05.06.07.08.09.0a.0b.0c.0d.0e.0f'/>"));
    const Outcome two = shop.run("corvid from-xml two.xml -o header.mxf");
    EXPECT_EQ(two.status, 0);
    EXPECT_THAT(two.err, HasSubstr("warning: there are 2 Prefaces, expected one; the first is that "
                                   "of the file [several-prefaces]"));
    shop.write("bare.xml", documentOf("<s377m:Preface" + identified + "/>"));
    const Outcome bare = shop.run("corvid from-xml bare.xml -o header.mxf");
    EXPECT_EQ(bare.status, 0);
    EXPECT_THAT(bare.err, HasSubstr("warning: the Preface has no operational pattern, so that of "
                                    "the partition is zeros [no-operational-pattern]"));
}

struct Refused {
    const char* name;
    std::string text;
    const char* message;
};
void PrintTo(const Refused& c, std::ostream* out) { *out << c.name; }

class FromXmlRefuses : public FromXml, public ::testing::WithParamInterface<Refused> {};

TEST_P(FromXmlRefuses, andLeavesNothingBehind) {
    shop.write("doc.xml", GetParam().text);
    shop.write("old.mxf", std::string("old"));
    const std::size_t files = shop.count();
    for (const char* target : {"new.mxf", "old.mxf", "-"}) {
        const Outcome outcome = shop.run(std::string("corvid from-xml doc.xml -o ") + target);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.out, IsEmpty());
        EXPECT_THAT(outcome.err, StartsWith(std::string("corvid: doc.xml: ") + GetParam().message));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_EQ(shop.read("old.mxf"), "old");
    EXPECT_EQ(shop.count(), files);
}

const std::string longName =
    "<s377m:TimelineTrack rp210:InstanceUID='00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f'>"
    "<rp210:TrackName>" +
    std::string(32768, 'x') + "</rp210:TrackName></s377m:TimelineTrack>";
const std::string packAsDarkSet =
    "<groups:FloatingDarkMetadata><groups:DarkMetadata groups:BEROctetCount='4' "
    "groups:Key='06.0e.2b.34.02.05.01.01.0d.01.02.01.01.03.04.00'>00</groups:DarkMetadata>"
    "</groups:FloatingDarkMetadata>";

INSTANTIATE_TEST_SUITE_P(
    , FromXmlRefuses,
    ::testing::Values(
        Refused{"AnEmptyFile", "", "the file is empty, expected an XML document"},
        Refused{"NoXml", "metadata\n", "line 1, column 1: "},
        Refused{"ATruncatedDocument", documentOf(preface).substr(0, 200), "line 1, column "},
        Refused{"ABadLine", "<a>\n  <b>\n</a>", "line 3, column "},
        Refused{"ADocumentType", "<!DOCTYPE a [<!ENTITY b 'c'>]>\n" + documentOf(preface),
                "line 1, column "},
        Refused{"AnMxfFile", asText(smallClip()), "this is an MXF file, expected an XML document"},
        Refused{"AnMxfFileWithRunIn", std::string(65535, 'x') + asText(smallClip()),
                "this is an MXF file, expected an XML document"},
        Refused{"AnotherRoot", "<html/>",
                "line 1, column 1: /html: is no root of a document of metadata, expected "},
        Refused{"AValueThatNoSetHolds", documentOf(preface + longName),
                "line 1, column 426: /s377m:MetadataSets/s377m:TimelineTrack/rp210:TrackName: "
                "value of 65536 bytes"},
        Refused{"AValueOfAnotherForm",
                documentOf("<s377m:Preface rp210:GenerationUID='x'" + identified + "/>"),
                "line 1, column 138: /s377m:MetadataSets/s377m:Preface/@rp210:GenerationUID: 'x', "
                "expected 16 pairs of hexadecimal digits"},
        Refused{"APartitionPackAsDarkSet", documentOf(preface + packAsDarkSet),
                "the dark set has the key 06.0e.2b.34.02.05.01.01.0d.01.02.01.01.03.04.00"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(FromXml, tellsFilesThatCantBeRead) {
    shop.run("mkdir folder");
    for (const char* path : {"none.xml", "folder", "sample.xml/none"}) {
        const Outcome outcome = shop.run(std::string("corvid from-xml ") + path + " -o header.mxf");
        EXPECT_EQ(outcome.status, 3) << path;
        EXPECT_THAT(outcome.err, StartsWith(std::string("corvid: ") + path + ": "));
    }
    for (const char* target : {"folder", "missing/header.mxf"}) {
        const Outcome outcome = shop.run(std::string("corvid from-xml sample.xml -o ") + target);
        EXPECT_EQ(outcome.status, 3) << target;
        EXPECT_THAT(outcome.err, StartsWith(std::string("corvid: ") + target + ": can't write"));
    }
    EXPECT_FALSE(shop.has("header.mxf"));
}

TEST_F(FromXml, needsAnOutputThatIsNotItsInput) {
    EXPECT_EQ(shop.run("corvid from-xml sample.xml").status, 2);
    EXPECT_EQ(shop.run("corvid from-xml -o header.mxf").status, 2);
    const Outcome outcome = shop.run("corvid from-xml sample.xml -o sample.xml");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("the output is the input itself"));
    EXPECT_THAT(shop.read("sample.xml"), StartsWith("<?xml"));
}

TEST_F(FromXml, writesNoBytesToATerminal) {
    if (python().empty()) {
        GTEST_SKIP() << "no Python";
    }
    const Outcome outcome =
        shop.run(python() + " -c \"import os, pty, sys; status = pty.spawn(['corvid', 'from-xml', "
                            "'sample.xml', '-o', '-']); sys.exit(os.waitstatus_to_exitcode("
                            "status))\" </dev/null");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.out,
                HasSubstr("can't be shown on a terminal; -o FILE writes it to a file"));
}

TEST_F(FromXml, aFullDeviceIsAnError) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "no /dev/full";
    }
    const Outcome outcome = shop.run("corvid from-xml sample.xml -o /dev/full");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("No space left"));
}

TEST_F(FromXml, knowsSetsOfAnotherDictionary) {
    shop.write("house.dict",
               std::string("namespace s377m urn:SMPTE:S377M\nnamespace house urn:example:house\n"
                           "set house:Room 06.0e.2b.34.02.53.01.01.0e.7f.7f.01.01.01.01.00 "
                           "s377m:InterchangeObject concrete\n"));
    shop.write("doc.xml",
               documentOf(preface + "<Room xmlns='urn:example:house' "
                                    "rp210:InstanceUID='00.01.02.03.04.05.06.07.08.09.0a."
                                    "0b.0c.0d.0e.0f'/>"));
    write("doc.xml -o header.mxf --dictionary house.dict");
    EXPECT_THAT(shop.run("corvid to-xml header.mxf --dictionary house.dict").out,
                HasSubstr("<house:Room "));
    EXPECT_EQ(shop.run("corvid from-xml doc.xml -o header.mxf").status, 1);
    const Outcome without = shop.run("corvid from-xml --lenient doc.xml -o header.mxf");
    EXPECT_EQ(without.status, 0);
    EXPECT_EQ(without.err, "corvid: doc.xml: warning: element Room is not expected here, so it is "
                           "left out [left-out-element]\n");
    EXPECT_THAT(shop.run("corvid to-xml header.mxf").out, Not(HasSubstr("FloatingDarkMetadata")));
}

TEST_F(FromXml, canBeCalledWithoutTheCommandLine) {
    DataIO::Memory::MemoryDataSink said;
    Tool::Messages messages(said, false);
    Tool::FromXmlOptions options;
    options.path = (shop.path() / "sample.xml").string();
    options.output = (shop.path() / "header.mxf").string();
    Tool::fromXml(options, messages);
    EXPECT_EQ(shop.read("header.mxf").size() % 512, 0U);
    EXPECT_EQ(said.serializedSize(), 0U);
    options.path = (shop.path() / "gone.xml").string();
    EXPECT_THROW(Tool::fromXml(options, messages), Exceptions::IOError);
}

} // namespace
