#include "editing/change/FindChanges.h"
#include "tests/editing/EditedClip.h"
#include "tests/support/Paths.h"

#include <fstream>
#include <regex>

namespace Corvid::Testing {
namespace {

/// An edit that people ask for: the first place in the document of a clip that matches becomes
/// another text.
struct AskedEdit {
    const char* name;
    const char* clip; ///< a sample; without, the one that comes with the project
    const char* what; ///< a regular expression
    const char* by;
    const char* changes; ///< as linesOf() gives them
};

void PrintTo(const AskedEdit& each, std::ostream* out) { *out << each.name; }

class AskedEdits : public ::testing::TestWithParam<AskedEdit> {
protected:
    void SetUp() override {
        const std::string sample = GetParam().clip;
        if (!sample.empty() && samplesDir().empty()) {
            GTEST_SKIP() << "there are no samples";
        }
        const auto path = sample.empty() ? sourceDir() / "examples" / "sample.mxf"
                                         : samplesDir() / (sample + ".mxf");
        std::ifstream file(path, std::ios::binary);
        before = {std::istreambuf_iterator<char>(file), {}};
        const std::string text = documentOf(before);
        document = std::regex_replace(text, std::regex(GetParam().what), GetParam().by,
                                      std::regex_constants::format_first_only);
        ASSERT_NE(document, text) << GetParam().what;
    }

    Bytes before;
    std::string document;
};

TEST_P(AskedEdits, changeThatAndNothingElse) {
    EditedClip clip(before);
    const auto plan = clip.plan(document);
    EXPECT_EQ(linesOf(plan.changes), GetParam().changes);
    EXPECT_TRUE(plan.rewrite.insertions.empty()) << "it fits its room";
    const Bytes after = clip.after(plan);
    EXPECT_EQ(after.size(), before.size());
    Rewritable was(before);
    Rewritable is(after);
    for (const std::size_t partition : plan.copies) {
        EXPECT_EQ(
            linesOf(Editing::findChanges(was.file.layout(partition), is.file.layout(partition),
                                         *MetaMetadata::Dictionary::builtIn())),
            GetParam().changes);
    }
    EXPECT_TRUE(EditedClip(after).plan(document).isEmpty()) << "the clip says what it was to say";
}

INSTANTIATE_TEST_SUITE_P(
    , AskedEdits,
    ::testing::Values(
        AskedEdit{"SpokenLanguage", "bbc__audio.null-terminated-strings",
                  "(RFC5646SpokenLanguage>)[^<]*", "$1fr-CA",
                  "changed SoundfieldGroupLabelSubDescriptor RFC5646SpokenLanguage\n"},
        AskedEdit{"McaTagSymbol", "ebu__bmx-imf-audio-mca", "(MCATagSymbol>)[^<]*", "$1chX",
                  "changed SoundfieldGroupLabelSubDescriptor MCATagSymbol\n"},
        AskedEdit{"McaLabel", "ebu__bmx-imf-audio-mca", "(MCALabelDictionaryID>)[^<]*",
                  "$0106.0e.2b.34.04.01.01.0d.03.02.01.02.00.00.00.00",
                  "changed SoundfieldGroupLabelSubDescriptor MCALabelDictionaryID\n"},
        AskedEdit{"AspectRatio", "ebu__bmx-op1a-dv50",
                  "(ImageAspectRatio>\\s*<types:Numerator>)16(<[^>]*>\\s*<[^>]*>)9", "$014$023",
                  "changed CDCIDescriptor ImageAspectRatio\n"},
        AskedEdit{"PrimariesAndTransfer", "ebu__bmx-op1a-dv50", "(</rp210:ImageAspectRatio>)",
                  "$1<rp210:ColorPrimaries>06.0e.2b.34.04.01.01.0d.04.01.01.01.03.04.00.00"
                  "</rp210:ColorPrimaries><rp210:TransferCharacteristic>"
                  "06.0e.2b.34.04.01.01.01.04.01.01.01.01.02.00.00"
                  "</rp210:TransferCharacteristic>",
                  "changed CDCIDescriptor TransferCharacteristic ColorPrimaries\n"},
        AskedEdit{"StartTimecode", "", "(StartTimecode>)[^<]*", "$0190000",
                  "changed Timecode StartTimecode\n"},
        AskedEdit{"TapeName", "bbc__bbc-archive-sd",
                  "(<s377m:SourcePackage (?:(?!</s377m:SourcePackage)[^])*?PackageName>)[^<]*",
                  "$1Tape 17", "changed SourcePackage PackageName\n"},
        AskedEdit{"TrackName", "ebu__bmx-op1a-dv50", "(TrackName>)[^<]*", "$1Clean feed",
                  "changed TimelineTrack TrackName\n"},
        AskedEdit{"OperationalPattern", "", "(OperationalPattern>[0-9a-f.]*)01\\.09\\.00",
                  "$0101.01.00", "changed Preface OperationalPattern\n"},
        AskedEdit{"As11Title", "ebu__bmx-as11-ukdpp-avci100-smallfill",
                  "(AS_11_Programme_Title>)[^<]*", "$1Another title",
                  "changed DM_AS_11_Core_Framework AS_11_Programme_Title\n"},
        AskedEdit{"As11Identifier", "ebu__bmx-as11-ukdpp-avci100-smallfill",
                  "(UKDPP_Production_Number>)[^<]*", "$1ABC/123",
                  "changed DM_AS_11_UKDPP_Framework UKDPP_Production_Number\n"},
        AskedEdit{"VideoLineMap", "ebu__bmx-as11-ukdpp-avci100-smallfill",
                  "(VideoLineMap>\\s*<rp210:Element>)21", "$0120",
                  "changed MPEGVideoDescriptor VideoLineMap\n"},
        AskedEdit{"ActiveFormat", "ebu__bmx-as11-ukdpp-avci100-smallfill",
                  "(ActiveFormatDescriptor>)84", "$0180",
                  "changed MPEGVideoDescriptor ActiveFormatDescriptor\n"},
        AskedEdit{"PackageName", "", "(PackageName>)[^<]*", "$1A short name",
                  "changed MaterialPackage PackageName\n"},
        AskedEdit{"CompanyAndProduct", "",
                  "(ApplicationSupplierName>)[^<]*(<[^>]*>\\s*<[^>]*>)[^<]*", "$1Company$2Product",
                  "changed Identification ApplicationSupplierName ApplicationName\n"}),
    [](const auto& each) { return each.param.name; });

TEST(AskedEdit, ofTheNumberOfEssenceContainersGoesIntoThePacks) {
    std::ifstream file(sourceDir() / "examples" / "sample.mxf", std::ios::binary);
    EditedClip clip(Bytes(std::istreambuf_iterator<char>(file), {}));
    const std::string text = documentOf(clip.bytes);
    const std::string list = "<rp210:EssenceContainers>";
    const std::string element =
        "<rp210:Element>06.0e.2b.34.04.01.01.07.0d.01.03.01.02.0c.01.00</rp210:Element>";
    Editing::EditOptions options;
    options.allowsTechnical = true;
    const Bytes longer = clip.after(replaced(text, list, list + element), options);
    EXPECT_EQ(longer.size(), clip.bytes.size());
    EXPECT_EQ(Rewritable(longer).file.partitions()[0].pack.essenceContainers.size(), 4U);
    EXPECT_EQ(EditedClip(longer).after(text, options), clip.bytes);
}

TEST(AskedEdit, ofTheOperationalPatternGoesIntoThePacks) {
    std::ifstream file(sourceDir() / "examples" / "sample.mxf", std::ios::binary);
    EditedClip clip(Bytes(std::istreambuf_iterator<char>(file), {}));
    const auto document = std::regex_replace(
        documentOf(clip.bytes), std::regex("(OperationalPattern>[0-9a-f.]*)01\\.09\\.00"),
        "$0101.01.00");
    Rewritable after(clip.after(document));
    for (const auto& partition : after.file.partitions()) {
        EXPECT_EQ(Platform::toUtf8(partition.pack.operationalPattern.toString()),
                  "06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00");
    }
}

} // namespace
} // namespace Corvid::Testing
