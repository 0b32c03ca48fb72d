#include "tests/tool/RunCommand.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <regex>

using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

TEST(Info, tellsOfAFileFromEverySource) {
    const Workshop shop;
    shop.write("clip.mxf", smallClip());
    const Outcome file = shop.run("corvid info --all clip.mxf");
    EXPECT_EQ(file.status, 0);
    EXPECT_THAT(file.out, HasSubstr("OP1a (single item, single package"));
    EXPECT_THAT(file.out, HasSubstr("2 sets\n  1 ContentStorage, 1 Preface\n"));
    EXPECT_THAT(file.out, Not(HasSubstr("\033")));
    EXPECT_THAT(file.err, IsEmpty());
    const Outcome pipe = shop.run("cat clip.mxf | corvid info --all -");
    EXPECT_EQ(pipe.status, 0);
    EXPECT_THAT(pipe.out, HasSubstr("2 sets"));
}

/// The tag and label of a property whose label without version byte ends in these eight bytes.
std::pair<unsigned, Bytes> primerEntry(unsigned tag, const char* back) {
    return {tag, join({hex("060e2b34 01010101"), hex(back)})};
}

/// A file source package whose descriptor holds labels, registered ones and others.
Bytes clipWithLabels() {
    auto entries = standardLabels();
    entries.push_back(primerEntry(0x1901, "06010104 05010000")); // packages
    entries.push_back(primerEntry(0x4701, "06010104 02030000")); // descriptor
    entries.push_back(primerEntry(0x3004, "06010104 01020000")); // container format
    entries.push_back(primerEntry(0x3201, "04010601 00000000")); // picture compression
    entries.push_back(primerEntry(0x3210, "04010201 01010200")); // transfer characteristic
    entries.push_back(primerEntry(0x3b0b, "01020210 02020000")); // descriptive schemes
    entries.push_back(primerEntry(0x3b0a, "01020210 02010000")); // essence containers
    entries.push_back(primerEntry(0x8001, "06010104 06100000")); // sub-descriptors
    entries.push_back(primerEntry(0x8002, "01030701 01000000")); // MCA label dictionary ID
    const Bytes channel = hex("060e2b34 04010101 03020101 00000000");
    const auto sub = [&](unsigned instance) {
        return set(hex("060e2b34 02530101 0d010101 01016b00"), instance,
                   {property(0x8002, channel)});
    };
    const Bytes metadata =
        join({primer(entries),
              set(structuralKey(prefaceSet), 1,
                  {property(0x3b03, uuid(2)),
                   property(0x3b0a, batch({hex("060e2b34 04010101 0e050000 00000000"),
                                           hex("060e2b34 04010102 0d010301 02046001")},
                                          16)),
                   property(0x3b0b, batch({hex("060e2b34 0401017f 0d010401 04010100")}, 16))}),
              set(structuralKey(contentStorageSet), 2, {property(0x1901, batch({uuid(3)}, 16))}),
              set(structuralKey(0x37), 3, {property(0x4701, uuid(4))}),
              set(structuralKey(0x28), 4,
                  {property(0x3201, hex("060e2b34 0401017f 04010202 01040300")),
                   property(0x3210, hex("060e2b34 04010101 0e050000 00000000")),
                   property(0x3004, hex("060e2b34 04010102 0d010301 02046001")),
                   property(0x8001, batch({uuid(5), uuid(6)}, 16))}),
              sub(5), sub(6)});
    return MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build();
}

TEST(Info, namesLabelsAsTheRegistersDo) {
    const Workshop shop;
    shop.write("clip.mxf", clipWithLabels());
    // The widths of columns do not matter here.
    const std::string text =
        std::regex_replace(shop.run("corvid info --all clip.mxf").out, std::regex(" +"), " ");
    EXPECT_THAT(text, HasSubstr("OP1a (single item, single package, one track)\n "
                                "06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00 MXF OP1a "
                                "SingleItem SinglePackage UniTrack Stream Internal\n"));
    EXPECT_THAT(text, HasSubstr("\n Essence containers "
                                "06.0e.2b.34.04.01.01.01.0e.05.00.00.00.00.00.00\n "
                                "06.0e.2b.34.04.01.01.02.0d.01.03.01.02.04.60.01 MXF-GC "
                                "Frame-wrapped MPEG-ES VideoStream-0 SID\n"));
    EXPECT_THAT(text, HasSubstr("\n Descriptive schemes "
                                "06.0e.2b.34.04.01.01.7f.0d.01.04.01.04.01.01.00 MXF Text-Based "
                                "Framework\n"));
    EXPECT_THAT(text,
                HasSubstr("\n Labels of Property Label Name Times"
                          "\n CDCIDescriptor ContainerFormat "
                          "06.0e.2b.34.04.01.01.02.0d.01.03.01.02.04.60.01 MXF-GC "
                          "Frame-wrapped MPEG-ES VideoStream-0 SID"
                          "\n TransferCharacteristic "
                          "06.0e.2b.34.04.01.01.01.0e.05.00.00.00.00.00.00"
                          "\n PictureCompression "
                          "06.0e.2b.34.04.01.01.7f.04.01.02.02.01.04.03.00 MPEG-2 422P-HL "
                          "Long GOP"
                          "\n AudioChannelLabelSubDescriptor MCALabelDictionaryID "
                          "06.0e.2b.34.04.01.01.01.03.02.01.01.00.00.00.00 Left Audio Channel "
                          "2\n"));
}

/// Many tracks, all of which share a segment whose data definition has a name as long as a property
/// can be.
Bytes clipWithALongName(unsigned tracks) {
    const Bytes definition = hex("060e2b34 04010101 0e7f0000 00000000");
    auto entries = standardLabels();
    entries.push_back(primerEntry(0x1901, "06010104 05010000")); // packages
    entries.push_back(primerEntry(0x4403, "06010104 06050000")); // tracks
    entries.push_back(primerEntry(0x4803, "06010104 02040000")); // segment
    entries.push_back(primerEntry(0x0201, "04070100 00000000")); // data definition
    entries.push_back(primerEntry(0x1b01, "01011503 00000000")); // what a definition defines
    entries.push_back(primerEntry(0x1b02, "01070102 03010000")); // its name
    std::vector<Bytes> references;
    std::vector<Bytes> sets;
    for (unsigned i = 0; i != tracks; ++i) {
        references.push_back(uuid(100 + i));
        sets.push_back(set(structuralKey(timelineTrackSet), 100 + i, {property(0x4803, uuid(5))}));
    }
    const Bytes metadata =
        join({primer(entries), set(structuralKey(prefaceSet), 1, {property(0x3b03, uuid(2))}),
              set(structuralKey(contentStorageSet), 2, {property(0x1901, batch({uuid(3)}, 16))}),
              set(structuralKey(0x36), 3, {property(0x4403, batch(references, 16))}), join(sets),
              set(structuralKey(0x0f), 5, {property(0x0201, definition)}),
              set(structuralKey(0x1b), 6,
                  {property(0x1b01, definition),
                   property(0x1b02, join(std::vector<Bytes>(32000, hex("0041"))))})});
    return MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build();
}

TEST(Info, isNoLongerThanTheFileWhereManyTracksShareALongName) {
    const Workshop shop;
    const Bytes clip = clipWithALongName(200);
    shop.write("clip.mxf", clip);
    const std::string text = shop.run("corvid info --all clip.mxf").out;
    const std::string kind = std::string(100, 'A') + "...";
    EXPECT_THAT(text, HasSubstr("\n  ?      " + kind + "\n"));
    EXPECT_LT(text.size(), clip.size());
    const std::string json = shop.run("corvid info --json clip.mxf").out;
    EXPECT_THAT(json, HasSubstr("\"kind\": \"" + kind + "\""));
    EXPECT_LT(json.size(), 2 * clip.size());
}

TEST(Info, namesLabelsInJson) {
    if (python().empty()) {
        GTEST_SKIP() << "no Python";
    }
    const Workshop shop;
    shop.write("clip.mxf", clipWithLabels());
    shop.write("check.py", std::string(R"(
import json, sys
info = json.load(sys.stdin)
print(info["operationalPattern"]["registeredName"])
print(info["essenceContainers"], info["essenceContainerNames"])
print(info["descriptiveSchemes"], info["conformsTo"])
for each in info["packages"][0]["descriptor"]["labels"]:
    print(each["class"], each["property"], each["label"][-5:], each["name"])
)"));
    const Outcome outcome = shop.run("corvid info --json clip.mxf | '" + python() + "' check.py");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(
        outcome.out,
        "MXF OP1a SingleItem SinglePackage UniTrack Stream Internal\n"
        "['06.0e.2b.34.04.01.01.01.0e.05.00.00.00.00.00.00', "
        "'06.0e.2b.34.04.01.01.02.0d.01.03.01.02.04.60.01'] "
        "[None, 'MXF-GC Frame-wrapped MPEG-ES VideoStream-0 SID']\n"
        "[{'label': '06.0e.2b.34.04.01.01.7f.0d.01.04.01.04.01.01.00', "
        "'name': 'MXF Text-Based Framework'}] []\n"
        "CDCIDescriptor ContainerFormat 60.01 MXF-GC Frame-wrapped MPEG-ES VideoStream-0 SID\n"
        "CDCIDescriptor TransferCharacteristic 00.00 None\n"
        "CDCIDescriptor PictureCompression 03.00 MPEG-2 422P-HL Long GOP\n"
        "AudioChannelLabelSubDescriptor MCALabelDictionaryID 00.00 Left Audio Channel\n"
        "AudioChannelLabelSubDescriptor MCALabelDictionaryID 00.00 Left Audio Channel\n");
}

TEST(Info, setsThatDefineOthersStandApart) {
    const Workshop shop;
    auto entries = standardLabels();
    const Bytes metadata = join(
        {primer(entries), smallSets(), klv(hex("060e2b34 02530101 0d010101 02020000"), Bytes()),
         klv(hex("060e2b34 02530101 0d010101 02020000"), Bytes()), set(structuralKey(0x1b), 7)});
    shop.write("clip.mxf",
               MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build());
    EXPECT_THAT(shop.run("corvid info --all clip.mxf").out,
                HasSubstr("5 sets\n  1 ContentStorage, 1 Preface\n3 of them define others\n"
                          "  2 PropertyDefinition, 1 DataDefinition\n"));
}

TEST(Info, namesUnknownThingsThatTheRegistersKnow) {
    const Workshop shop;
    auto entries = standardLabels();
    entries.push_back(primerEntry(0x8123, "01100201 00000000")); // listed by no group
    const Bytes metadata =
        join({primer(entries), set(structuralKey(prefaceSet), 1, {property(0x8123, Bytes(4, 7))}),
              klv(hex("060e2b34 02530101 05310201 00000000"), Bytes(5, 1))});
    shop.write("odd.mxf",
               MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build());
    const std::string text = shop.run("corvid info --all odd.mxf").out;
    EXPECT_THAT(text, HasSubstr("05.31.02.01.00.00.00.00 (DMCVT App1 Set), 25 bytes\n"));
    EXPECT_THAT(
        text,
        HasSubstr(
            "Unknown properties\n  06.0e.2b.34.01.01.01.01.01.10.02.01.00.00.00.00 (AGICOA ID)\n"));
}

TEST(Info, countsWhatTheDictionaryDoesNotKnow) {
    const Workshop shop;
    const Bytes metadata =
        join({standardPrimer(), set(structuralKey(prefaceSet), 1, {property(0x8123, Bytes(4, 7))}),
              klv(hex("06.0e.2b.34.02.53.01.01.0e.7f.7f.01.01.01.01.00"), Bytes(5, 1))});
    shop.write("odd.mxf",
               MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build());
    const Outcome outcome = shop.run("corvid info --all odd.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(
        outcome.out,
        HasSubstr("Dark sets\n  06.0e.2b.34.02.53.01.01.0e.7f.7f.01.01.01.01.00, 25 bytes"));
    EXPECT_THAT(outcome.out, HasSubstr("Unknown properties\n  tag 81.23\n"));
}

TEST(Info, tellsOfASetOnceHoweverOftenItIsReferredTo) {
    constexpr unsigned char sourcePackage = 0x37;
    constexpr unsigned char multipleDescriptor = 0x44;
    // Packages, tracks, descriptor, segment, components, and the descriptors of a multiple one.
    constexpr unsigned packages = 0x1901;
    constexpr unsigned tracks = 0x4403;
    constexpr unsigned descriptor = 0x4701;
    constexpr unsigned segment = 0x4803;
    constexpr unsigned descriptors = 0x3F01;
    const auto times = [](unsigned count, unsigned target) {
        return batch(std::vector<Bytes>(count, uuid(target)), 16);
    };
    const Workshop shop;
    const Bytes metadata =
        join({standardPrimer(), set(structuralKey(prefaceSet), 1, {property(0x3B03, uuid(2))}),
              set(structuralKey(contentStorageSet), 2, {property(packages, times(100, 3))}),
              set(structuralKey(sourcePackage), 3,
                  {property(tracks, times(100, 4)), property(descriptor, uuid(5))}),
              set(structuralKey(timelineTrackSet), 4, {property(segment, uuid(4))}),
              set(structuralKey(multipleDescriptor), 5, {property(descriptors, times(6, 5))})});
    const Bytes file = MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build();
    shop.write("shared.mxf", file);
    for (const char* line : {"corvid info --all shared.mxf", "corvid info --json shared.mxf"}) {
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_LT(outcome.out.size(), file.size()) << line;
        EXPECT_THAT(outcome.out, HasSubstr("MultipleDescriptor"));
    }
}

TEST(Info, keepsControlCharactersOfTheFileFromTheTerminal) {
    const Workshop shop;
    shop.write("clip.mxf", clipWithCompany(u"a\u001b[31mb\nc\u009bd"));
    EXPECT_THAT(shop.run("corvid info --all clip.mxf").out, HasSubstr("a\\x1b[31mb\\x0ac\\x9bd"));
    EXPECT_THAT(shop.run("corvid info --json clip.mxf").out, HasSubstr("a\\u001b[31mb\\nc"));
}

TEST(Info, coloursOnlyOnATerminal) {
    const Workshop shop;
    shop.write("clip.mxf", smallClip());
    if (shop.run("command -v script").status != 0) {
        GTEST_SKIP() << "no script(1) to make a terminal";
    }
    const std::string onTerminal =
        "TERM=xterm script -qec 'corvid info --all clip.mxf' /dev/null </dev/null";
    EXPECT_THAT(shop.run(onTerminal).out, HasSubstr("\033[1m"));
    EXPECT_THAT(shop.run("NO_COLOR=1 " + onTerminal).out, Not(HasSubstr("\033[1m")));
}

TEST(Info, jsonOfEverySampleIsJson) {
    const auto samples = samplesDir();
    if (samples.empty() || python().empty()) {
        GTEST_SKIP() << "no folder of samples, or no Python";
    }
    const Workshop shop;
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(samples)) {
        if (entry.path().extension() != ".mxf") {
            continue;
        }
        ++count;
        const std::string clip = "'" + entry.path().string() + "'";
        const Outcome json = shop.run("corvid info --json " + clip + " | '" + python() +
                                      "' -c 'import json,sys; d=json.load(sys.stdin); "
                                      "assert d[\"packages\"] and d[\"identifications\"] and "
                                      "d[\"operationalPattern\"][\"name\"], d'");
        EXPECT_EQ(json.status, 0) << clip << json.err;
        const Outcome text = shop.run("corvid info --all " + clip);
        EXPECT_EQ(text.status, 0) << clip;
        EXPECT_THAT(text.out, HasSubstr("Material package")) << clip;
    }
    EXPECT_GT(count, 0U);
}

TEST(Info, showsSeveralFilesAndGoesOnAfterABadOne) {
    const Workshop shop;
    shop.write("a.mxf", smallClip());
    shop.write("b.mxf", smallClip());
    shop.write("bad.mxf", std::string("no MXF file"));
    const Outcome good = shop.run("corvid info a.mxf b.mxf");
    EXPECT_EQ(good.status, 0);
    EXPECT_EQ(good.out, "a.mxf  MXF OP1a\n\nb.mxf  MXF OP1a\n");
    const Outcome bad = shop.run("corvid info bad.mxf a.mxf gone.mxf b.mxf");
    EXPECT_EQ(bad.status, 3) << "the worst";
    EXPECT_EQ(bad.out, good.out);
    EXPECT_THAT(bad.err, HasSubstr("corvid: bad.mxf: "));
    EXPECT_THAT(bad.err, HasSubstr("corvid: gone.mxf: "));
    EXPECT_EQ(shop.run("corvid info bad.mxf a.mxf").status, 1);
}

TEST(Info, printsJsonOfSeveralFilesOnALineEach) {
    const Workshop shop;
    shop.write("a.mxf", smallClip());
    shop.write("b.mxf", smallClip());
    const std::string text = shop.run("corvid info --json a.mxf gone.mxf b.mxf").out;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
    EXPECT_EQ(text.find("{\"file\":\"a.mxf\""), 0U);
    EXPECT_THAT(text, HasSubstr("\n{\"file\":\"gone.mxf\""));
}

TEST(Info, stopsWhereItsOutputIsLost) {
    const Workshop shop;
    shop.write("a.mxf", smallClip());
    const Outcome outcome = shop.run("corvid info a.mxf a.mxf a.mxf >/dev/full");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
}

TEST(Info, countsWarningsAndListsThemWhereThatIsWanted) {
    const Workshop shop;
    PartitionSpec spec = headerPartition();
    spec.headerByteCount = 0;
    shop.write("count.mxf", MxfBuilder().add(spec).build());
    const Outcome counted = shop.run("corvid info count.mxf");
    EXPECT_EQ(counted.err, "");
    EXPECT_THAT(counted.out, HasSubstr("\n  ! 1 warning: "));
    EXPECT_THAT(counted.out, HasSubstr(" [header-byte-count]\n"));
    const Outcome listed = shop.run("corvid info --warnings count.mxf");
    EXPECT_EQ(listed.err, "");
    EXPECT_THAT(listed.out, HasSubstr("\n  ! 1 warning\n    "));
    EXPECT_THAT(listed.out, HasSubstr(" [header-byte-count]\n"));
}

} // namespace
