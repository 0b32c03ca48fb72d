#include "tools/corvid/ToXml.h"
#include "host/base/Exceptions.h"
#include "tests/tool/RunCommand.h"
#include "tools/corvid/terminal/Messages.h"

#include "host/dataio/Memory.h"

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

const std::string preface = "<s377m:Preface rp210:InstanceUID=";

class ToXml : public ::testing::Test {
protected:
    ToXml() { shop.write("clip.mxf", smallClip()); }

    Workshop shop;
};

TEST_F(ToXml, writesToStandardOutput) {
    const Outcome outcome = shop.run("corvid to-xml clip.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, IsEmpty());
    EXPECT_THAT(outcome.out, StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
    EXPECT_THAT(outcome.out, HasSubstr(preface));
    EXPECT_THAT(outcome.out, HasSubstr("</s377m:MetadataSets>"));
    EXPECT_EQ(shop.run("corvid to-xml clip.mxf -o -").out, outcome.out);
}

TEST_F(ToXml, writesTheSameToAFileAndFromPipes) {
    const std::string expected = shop.run("corvid to-xml clip.mxf").out;
    for (const char* line :
         {"corvid to-xml clip.mxf -o out.xml", "corvid to-xml - -o out.xml <clip.mxf",
          "cat clip.mxf | corvid to-xml --output out.xml -",
          "cat clip.mxf | corvid to-xml - | cat >out.xml",
          "corvid to-xml clip.mxf -o /dev/stdout | cat >out.xml"}) {
        shop.run("rm -f out.xml");
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 0) << line << outcome.err;
        EXPECT_EQ(shop.read("out.xml"), expected) << line;
        EXPECT_THAT(outcome.out, IsEmpty());
    }
    EXPECT_EQ(shop.count(), 2U) << "nothing but clip and document";
}

TEST_F(ToXml, replacesAFileAndKeepsItsPermissionsAndLinks) {
    shop.write("out.xml", std::string("old"));
    shop.run("chmod 640 out.xml; ln -s out.xml link.xml");
    EXPECT_EQ(shop.run("corvid to-xml clip.mxf -o link.xml").status, 0);
    EXPECT_THAT(shop.read("out.xml"), HasSubstr(preface));
    EXPECT_TRUE(std::filesystem::is_symlink(shop.path() / "link.xml"));
    struct stat status {};
    ASSERT_EQ(::stat((shop.path() / "out.xml").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(ToXml, newFilesHaveTheUsualPermissions) {
    EXPECT_EQ(shop.run("umask 027; corvid to-xml clip.mxf -o out.xml").status, 0);
    struct stat status {};
    ASSERT_EQ(::stat((shop.path() / "out.xml").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(ToXml, leavesNoFileBehindWhenDataIsRefused) {
    shop.write("bad.mxf", clipWithCompany(u"a\u0001b"));
    shop.write("old.xml", std::string("old"));
    for (const char* name : {"new.xml", "old.xml"}) {
        const Outcome outcome = shop.run(std::string("corvid to-xml bad.mxf -o ") + name);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr("U+0001"));
        EXPECT_THAT(outcome.err, HasSubstr("Identification"));
        EXPECT_THAT(outcome.err, HasSubstr("--replace-invalid"));
    }
    EXPECT_EQ(shop.read("old.xml"), "old");
    EXPECT_EQ(shop.count(), 3U);
}

TEST_F(ToXml, writesNothingToStandardOutputWhenDataIsRefused) {
    shop.write("bad.mxf", clipWithCompany(u"a\u0001b"));
    const Outcome outcome = shop.run("corvid to-xml bad.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, IsEmpty());
}

TEST_F(ToXml, replacesInvalidCharactersWhenAskedTo) {
    shop.write("bad.mxf", clipWithCompany(u"a\u0001b\u0002"));
    const Outcome outcome = shop.run("corvid to-xml --replace-invalid bad.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("a\xEF\xBF\xBD"
                                       "b\xEF\xBF\xBD"));
    EXPECT_THAT(outcome.err, HasSubstr("U+0001"));
    EXPECT_THAT(outcome.err, HasSubstr("U+0002"));
    EXPECT_THAT(outcome.err, HasSubstr("note: 2 code units"));
}

TEST_F(ToXml, saysThatATargetCantBeWritten) {
    shop.run("mkdir folder");
    for (const char* target : {"folder", "missing/out.xml", "clip.mxf/out.xml"}) {
        const Outcome outcome = shop.run(std::string("corvid to-xml clip.mxf -o ") + target);
        EXPECT_EQ(outcome.status, 3) << target;
        EXPECT_THAT(outcome.err, StartsWith(std::string("corvid: ") + target + ": can't write: "));
    }
    EXPECT_EQ(shop.count(), 2U);
}

TEST_F(ToXml, aFullDeviceIsAnError) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "no /dev/full";
    }
    for (const char* line :
         {"corvid to-xml clip.mxf >/dev/full", "corvid to-xml clip.mxf -o /dev/full",
          "corvid info clip.mxf >/dev/full", "corvid --help >/dev/full"}) {
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 3) << line;
        EXPECT_THAT(outcome.err, HasSubstr("No space left"));
    }
}

TEST_F(ToXml, aClosedPipeEndsQuietly) {
    const Outcome outcome = shop.run(
        "{ sleep 0.2; corvid to-xml clip.mxf; echo $? >status; } | true; sleep 0.5; cat status");
    EXPECT_EQ(outcome.out, "3\n");
    EXPECT_THAT(outcome.err, IsEmpty());
}

TEST_F(ToXml, aSignalLeavesNoFileBehind) {
    // The clip never comes, so that the command waits with its output begun.
    for (const auto& [signal, status] : {std::pair("TERM", "143"), std::pair("USR1", "138")}) {
        const Outcome outcome = shop.run(
            "rm -f never; mkfifo never; corvid to-xml never -o out.xml & command=$!; "
            "for i in $(seq 500); do ls -l /proc/$command/fd | grep -q \"$PWD/\" && break; "
            "sleep 0.02; done; kill -" +
            std::string(signal) +
            " $command; wait $command; echo $?; ls -A | grep -c -e '^.corvid-' -e out.xml; true");
        EXPECT_EQ(outcome.out, std::string(status) + "\n0\n") << outcome.err;
    }
}

TEST_F(ToXml, writesUtf16) {
    const Outcome outcome = shop.run("corvid to-xml --encoding utf-16 clip.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, StartsWith("\xFF\xFE<"));
    EXPECT_EQ(outcome.out.size() % 2, 0U);
}

TEST_F(ToXml, compactHasNoLineBreaks) {
    const std::string text = shop.run("corvid to-xml --compact clip.mxf").out;
    EXPECT_THAT(text, HasSubstr(preface));
    EXPECT_LE(std::count(text.begin(), text.end(), '\n'), 2);
}

TEST_F(ToXml, referencesAreLinksOrValues) {
    EXPECT_THAT(shop.run("corvid to-xml clip.mxf").out, HasSubstr("types:TargetInstance"));
    EXPECT_EQ(shop.run("corvid to-xml --references links clip.mxf").out,
              shop.run("corvid to-xml clip.mxf").out);
    const std::string nested = shop.run("corvid to-xml --references values clip.mxf").out;
    EXPECT_THAT(nested, Not(HasSubstr("types:TargetInstance")));
    EXPECT_THAT(nested, HasSubstr("ContentStorage"));
}

TEST_F(ToXml, writesSetsWithBerLengthsAsOthers) {
    const Bytes identification =
        set(structuralKey(identificationSet), 3, {property(0x3C01, utf16(u"Corvid"))});
    const Bytes sets = join({smallSets(), identification});
    const auto fileOf = [](const Bytes& coded) {
        return MxfBuilder().add(headerPartition(join({standardPrimer(), coded}))).build();
    };
    shop.write("plain.mxf", fileOf(sets));
    shop.write("ber.mxf", fileOf(withBerLengths(sets)));
    const Outcome outcome = shop.run("corvid to-xml ber.mxf");
    EXPECT_EQ(outcome.out.substr(outcome.out.find("<s377m:MetadataSets")),
              shop.run("corvid to-xml plain.mxf | tail -n +3").out);
    EXPECT_THAT(outcome.out, HasSubstr("<?corvid key "));
    EXPECT_THAT(outcome.out, HasSubstr(">Corvid<"));
    EXPECT_THAT(outcome.err, IsEmpty());
    EXPECT_THAT(shop.run("corvid info --all ber.mxf").out, HasSubstr("3 sets"));
    EXPECT_THAT(shop.run("corvid check ber.mxf").out, HasSubstr("ber.mxf: lossless"));
}

TEST_F(ToXml, writesTextThatItsTerminatorHidesAsBytes) {
    shop.write("hidden.mxf", clipWithCompany(std::u16string_view(u"\0\5en", 4)));
    const Outcome outcome = shop.run("corvid to-xml hidden.mxf -o hidden.xml");
    EXPECT_THAT(shop.read("hidden.xml"), HasSubstr(">000000050065006E</groups:DarkElement>"));
    EXPECT_THAT(
        outcome.err,
        HasSubstr("property 3c.01 ApplicationSupplierName: the value has 8 bytes, expected a valid "
                  "UTF16String"));
    EXPECT_EQ(shop.run("corvid check hidden.mxf").status, 0);
}

TEST_F(ToXml, advisesAnotherStartWhereThereIsNoPreface) {
    const Bytes metadata = join({standardPrimer(), set(structuralKey(contentStorageSet), 2)});
    shop.write("bare.mxf",
               MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build());
    const Outcome outcome = shop.run("corvid to-xml bare.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("corvid: bare.mxf: the partition has no Preface; "
                                       "--start INSTANCEUID begins with another set\n"));
}

TEST_F(ToXml, startsWithAnySetInAnyForm) {
    const Bytes bytes = uuid(2);
    std::string dotted;
    std::string plain;
    char pair[3];
    for (const unsigned char byte : bytes) {
        std::snprintf(pair, sizeof pair, "%02x", byte);
        dotted += (dotted.empty() ? "" : ".") + std::string(pair);
        plain += pair;
    }
    std::string dashed = plain;
    for (const std::size_t at : {20U, 16U, 12U, 8U}) {
        dashed.insert(at, "-");
    }
    for (const std::string& form : {dotted, plain, dashed, "urn:uuid:" + dashed}) {
        const Outcome outcome = shop.run("corvid to-xml clip.mxf --start " + form);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_LT(outcome.out.find("<s377m:ContentStorage "), outcome.out.find(preface));
    }
    const Outcome outcome =
        shop.run("corvid to-xml clip.mxf --start 00000000-0000-0000-0000-000000000000");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("00000000-0000-0000-0000-000000000000"));
}

TEST_F(ToXml, saysWhichPartitionItTookIfNotTheFirst) {
    shop.write("clip.mxf", MxfBuilder()
                               .add(headerPartition())
                               .add(footerPartition(smallMetadata()))
                               .withRandomIndexPack()
                               .build());
    EXPECT_THAT(shop.run("corvid to-xml clip.mxf").err,
                HasSubstr("corvid: clip.mxf: note: metadata is from partition 1 (footer"));
    EXPECT_THAT(shop.run("corvid to-xml clip.mxf --partition footer").err, IsEmpty());
}

TEST_F(ToXml, findsTheFooterOfARecordingThatWasNotEnded) {
    PartitionSpec header = headerPartition(standardPrimer());
    header.status = 1;
    header.footerPartition = 0;
    header.behindMetadata = klv(essenceKey(), repeat(0xEE, 5000));
    shop.write("open.mxf", MxfBuilder().add(header).add(footerPartition(smallMetadata())).build());
    for (const char* line : {"corvid to-xml open.mxf", "cat open.mxf | corvid to-xml -"}) {
        const Outcome outcome = shop.run(line);
        EXPECT_THAT(outcome.out, HasSubstr(preface));
        EXPECT_THAT(outcome.err, HasSubstr("nothing in the file says where its partitions are; 1 "
                                           "found after the header partition"));
        EXPECT_THAT(outcome.err, HasSubstr("metadata is from partition 1 (footer, "));
    }
}

TEST_F(ToXml, warningsNameFileByteSetAndProperty) {
    // 3b02 is a timestamp of 8 bytes.
    const Bytes metadata = join(
        {standardPrimer(), set(structuralKey(prefaceSet), 1, {property(0x3B02, Bytes(3, 1))})});
    shop.write("odd.mxf",
               MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build());
    const Outcome outcome = shop.run("corvid to-xml odd.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, StartsWith("corvid: odd.mxf: warning: byte "));
    EXPECT_THAT(outcome.err, HasSubstr(": set Preface: property 3b.02 FileLastModified: "));
    EXPECT_THAT(outcome.out, HasSubstr("010101"));
}

TEST_F(ToXml, metadataWithoutPrefaceNeedsAStart) {
    const Bytes metadata = join({standardPrimer(), set(structuralKey(contentStorageSet), 2)});
    shop.write("odd.mxf",
               MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build());
    const Outcome outcome = shop.run("corvid to-xml odd.mxf -o out.xml");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("no Preface"));
    EXPECT_FALSE(shop.has("out.xml"));
}

TEST_F(ToXml, setsOfAnotherDictionaryGetTheirNames) {
    const Bytes key = hex("06.0e.2b.34.02.53.01.01.0e.7f.7f.01.01.01.01.00");
    shop.write("house.mxf", MxfBuilder()
                                .add(headerPartition(join({smallMetadata(), set(key, 9)})))
                                .withRandomIndexPack()
                                .build());
    shop.write("house.dict",
               std::string("namespace s377m urn:SMPTE:S377M\nnamespace house urn:example:house\n"
                           "set house:Room 06.0e.2b.34.02.53.01.01.0e.7f.7f.01.01.01.01.00 "
                           "s377m:InterchangeObject concrete\n"));
    EXPECT_THAT(shop.run("corvid to-xml house.mxf").out, Not(HasSubstr("Room")));
    const Outcome outcome = shop.run("corvid to-xml house.mxf --dictionary house.dict");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("<house:Room "));
}

TEST_F(ToXml, longDocumentsGoToStandardOutputWholeOrNotAtAll) {
    // 120 names of 40,000 code units make more text than the command keeps.
    const auto clip = [](char16_t last) {
        Bytes metadata = join({standardPrimer(), set(structuralKey(prefaceSet), 1)});
        for (unsigned i = 0; i != 120; ++i) {
            std::u16string name(30000, u'x');
            name.back() = i == 119 ? last : u'x';
            const Bytes added =
                set(structuralKey(identificationSet), 10 + i, {property(0x3C01, utf16(name))});
            metadata.insert(metadata.end(), added.begin(), added.end());
        }
        Bytes whole = std::move(metadata);
        return MxfBuilder().add(headerPartition(std::move(whole))).withRandomIndexPack().build();
    };
    shop.write("good.mxf", clip(u'y'));
    shop.write("bad.mxf", clip(u'\u0001'));
    const Outcome good = shop.run("corvid to-xml good.mxf");
    EXPECT_EQ(good.status, 0);
    EXPECT_THAT(good.out, HasSubstr("</s377m:MetadataSets>"));
    EXPECT_EQ(shop.run("corvid to-xml good.mxf -o out.xml").status, 0);
    EXPECT_TRUE(shop.read("out.xml") == good.out);
    const Outcome bad = shop.run("corvid to-xml bad.mxf");
    EXPECT_EQ(bad.status, 1);
    EXPECT_TRUE(bad.out.empty());
}

TEST_F(ToXml, canBeCalledWithoutTheCommandLine) {
    DataIO::Memory::MemoryDataSink said;
    Tool::Messages messages(said, false);
    Tool::ToXmlOptions options;
    options.batch.files = {(shop.path() / "clip.mxf").string()};
    options.output = (shop.path() / "out.xml").string();
    Tool::toXml(options, messages);
    EXPECT_THAT(shop.read("out.xml"), HasSubstr(preface));
    EXPECT_EQ(said.serializedSize(), 0U);
    options.batch.files = {(shop.path() / "gone.mxf").string()};
    EXPECT_THROW(Tool::toXml(options, messages), Exceptions::IOError);
}

} // namespace
