#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

/// A clip with a set, a property and two private tables that no register lists.
class VendorDictionaries : public ::testing::Test {
protected:
    VendorDictionaries() {
        auto labels = standardLabels();
        labels.emplace_back(0x8001, hex("06.0e.2b.34.01.01.01.0e.04.02.03.08.01.00.00.00"));
        labels.emplace_back(0x8002, hex("a5.fb.7b.25.f6.15.94.b9.62.fc.37.17.49.2d.42.bf"));
        const Bytes metadata =
            join({primer(labels),
                  set(structuralKey(prefaceSet), 1, {property(0x8002, utf16(u"My project"))}),
                  set(hex("06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.81.0d"), 2,
                      {property(0x8001, number(7, 4))}),
                  klv(hex("80.53.08.00.36.21.08.04.b3.b3.98.a5.1c.90.11.d4"), Bytes(5, 1)),
                  klv(hex("96.13.b3.8a.87.34.87.46.f1.02.96.f0.56.e0.4d.2a"), Bytes(6, 1))});
        shop.write("clip.mxf",
                   MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build());
    }

    std::string outputOf(const std::string& line) const {
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 0) << line << "\n" << outcome.err;
        return outcome.out;
    }

    Workshop shop;
};

const std::string without = " --no-vendor-dictionaries";
const std::string project = "<avidEl:ProjectName>My project</avidEl:ProjectName>";
const std::string chunk = "<st2131El:RIFFChunkStreamID>7</st2131El:RIFFChunkStreamID>";

TEST_F(VendorDictionaries, nameInDocumentsWhatIsNotRegistered) {
    const std::string document = outputOf("corvid to-xml --validate clip.mxf");
    EXPECT_THAT(document, HasSubstr(project));
    EXPECT_THAT(document, HasSubstr("<st2131:RIFFChunkDefinitionSubDescriptor "));
    EXPECT_THAT(document, HasSubstr(chunk));
    EXPECT_THAT(document, HasSubstr("xmlns:st2131=\"urn:SMPTE:ST2131:Groups\""));
    const std::string plain = outputOf("corvid to-xml --validate clip.mxf" + without);
    EXPECT_THAT(plain, Not(HasSubstr("avid")));
    EXPECT_THAT(plain, Not(HasSubstr("st2131")));
    EXPECT_THAT(plain, HasSubstr("groups:Key=\"06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.81.0d\""));
}

TEST_F(VendorDictionaries, canBeLeftOutOfReading) {
    outputOf("corvid to-xml clip.mxf -o clip.xml");
    outputOf("corvid from-xml clip.xml -o back.mxf");
    EXPECT_THAT(outputOf("corvid to-xml back.mxf"), HasSubstr(chunk));
    const Outcome refused = shop.run("corvid from-xml clip.xml -o plain.mxf" + without);
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(
        refused.err,
        HasSubstr("st2131:RIFFChunkDefinitionSubDescriptor: is no set that the dictionary knows"));
    outputOf("corvid to-xml clip.mxf -o plain.xml" + without);
    outputOf("corvid from-xml plain.xml -o plain.mxf" + without);
    EXPECT_THAT(outputOf("corvid to-xml plain.mxf" + without),
                HasSubstr("groups:Key=\"06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.81.0d\""));
}

TEST_F(VendorDictionaries, canBeLeftOutOfChecks) {
    EXPECT_EQ(outputOf("corvid check clip.mxf"), "clip.mxf: lossless (4 sets, 4 properties)\n");
    EXPECT_EQ(outputOf("corvid check clip.mxf" + without),
              "clip.mxf: lossless (4 sets, 2 properties)\n");
}

TEST_F(VendorDictionaries, leavePrivateTablesDarkAndInfoNamesThem) {
    for (const std::string& option : {std::string(), without}) {
        const std::string text = outputOf("corvid info --all clip.mxf" + option);
        EXPECT_THAT(text, HasSubstr("  80.53.08.00.36.21.08.04.b3.b3.98.a5.1c.90.11.d4 (Avid "
                                    "metadata root), 25 bytes\n"));
        EXPECT_THAT(text, HasSubstr("  96.13.b3.8a.87.34.87.46.f1.02.96.f0.56.e0.4d.2a (Avid "
                                    "object directory), 26 bytes\n"));
        const bool isKnown = option.empty();
        EXPECT_EQ(text.find("RIFFChunkDefinitionSubDescriptor") != std::string::npos, isKnown);
        EXPECT_EQ(text.find("Unknown properties") == std::string::npos, isKnown);
        const std::string document = outputOf("corvid to-xml clip.mxf" + option);
        EXPECT_THAT(document, HasSubstr("groups:Key=\"80.53.08.00.36.21.08.04."));
        EXPECT_THAT(document, HasSubstr("groups:Key=\"96.13.b3.8a.87.34.87.46."));
    }
}

TEST_F(VendorDictionaries, haveSchemas) {
    outputOf("corvid schema -o all");
    EXPECT_TRUE(shop.has("all/st2131.xsd"));
    EXPECT_TRUE(shop.has("all/avidEl.xsd"));
    outputOf("corvid schema -o registered" + without);
    EXPECT_FALSE(shop.has("registered/st2131.xsd"));
    EXPECT_TRUE(shop.has("registered/s377m.xsd"));
}

TEST_F(VendorDictionaries, areExplained) {
    EXPECT_THAT(outputOf("corvid dictionary st2131:ADMChannelMapping"),
                HasSubstr("urn:SMPTE:ST2131:Groups"));
    EXPECT_EQ(shop.run("corvid dictionary st2131:ADMChannelMapping" + without).status, 1);
    const std::string label = outputOf("corvid dictionary ContainerAvidHD_8_7_1_1080p");
    EXPECT_THAT(label, HasSubstr("Not registered  Avid\n"));
    EXPECT_THAT(outputOf("corvid dictionary --json FullFrame"), Not(HasSubstr("notRegistered")));
}

TEST_F(VendorDictionaries, makeRoomForOnesOwnDefinitionsOfTheSameSets) {
    shop.write("own.dict",
               std::string("namespace s377m urn:SMPTE:S377M\nnamespace own urn:example:own\n"
                           "set own:Chunk 06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.81.0d "
                           "s377m:SubDescriptor concrete\n"));
    const Outcome both = shop.run("corvid to-xml clip.mxf --dictionary own.dict");
    EXPECT_EQ(both.status, 1);
    EXPECT_THAT(both.err, HasSubstr("st2131:RIFFChunkDefinitionSubDescriptor"));
    EXPECT_THAT(both.out, IsEmpty());
    EXPECT_THAT(outputOf("corvid to-xml clip.mxf --dictionary own.dict" + without),
                HasSubstr("<own:Chunk "));
}

TEST_F(VendorDictionaries, helpOfEveryVerbNamesTheOption) {
    for (const char* verb : {"to-xml", "from-xml", "info", "check", "schema", "dictionary"}) {
        EXPECT_THAT(outputOf("corvid " + std::string(verb) + " --help"),
                    HasSubstr("--no-vendor-dictionaries"));
    }
}

} // namespace
