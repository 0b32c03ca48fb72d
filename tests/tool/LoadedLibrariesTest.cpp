#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

using namespace Corvid::Testing;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// What a run of the command may load: the loader says so on standard error, among the messages.
struct Run {
    const char* name;
    const char* line;
    bool loadsXerces = false;
    int status = 0;
};
class LoadedLibraries : public ::testing::TestWithParam<Run> {
protected:
    LoadedLibraries() {
        shop.write("clip.mxf", smallClip());
        shop.write("odd.mxf", clipWithCompany(u"a\u0001b"));
        shop.run("corvid to-xml clip.mxf -o doc.xml");
        shop.write("own.dict", "namespace t urn:test\n");
    }

    const Workshop shop;
};

TEST_P(LoadedLibraries, haveXercesAmongThemOnlyWhereItIsNeeded) {
    const Outcome outcome = shop.run(std::string("export LD_DEBUG=files\n") + GetParam().line);
    if (outcome.err.find("calling init: ") == std::string::npos) {
        GTEST_SKIP() << "the loader does not say what it loads";
    }
    EXPECT_EQ(outcome.status, GetParam().status);
    EXPECT_THAT(outcome.err, HasSubstr("libCorvid.so"));
    const auto loaded = AllOf(HasSubstr("corvid-xml.so"), HasSubstr("libxerces-c"),
                              HasSubstr("libCorvid_XMLUtils.so"));
    // By their files: folders may be called anything.
    const auto notLoaded = AllOf(Not(HasSubstr("corvid-xml.so")), Not(HasSubstr("libxerces-c")),
                                 Not(HasSubstr("libxqilla")), Not(HasSubstr("libicuuc")),
                                 Not(HasSubstr("libCorvid_XMLUtils.so")));
    if (GetParam().loadsXerces) {
        EXPECT_THAT(outcome.err, loaded);
    } else {
        EXPECT_THAT(outcome.err, notLoaded);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , LoadedLibraries,
    ::testing::Values(
        Run{"Version", "corvid --version"}, Run{"Info", "corvid info clip.mxf"},
        Run{"Dictionary", "corvid dictionary Preface"}, Run{"ToXml", "corvid to-xml clip.mxf"},
        Run{"Apply", "corvid apply doc.xml clip.mxf --in-place"},
        Run{"Recover", "corvid recover clip.mxf"},
        Run{"Get", "corvid get clip.mxf Preface/ContentStorageObject"},
        Run{"Set", "corvid set clip.mxf Preface/FormatVersion=259 -o out.mxf"},
        Run{"Diff", "corvid diff doc.xml clip.mxf"},
        Run{"ToXmlIntoAFile", "corvid to-xml clip.mxf -o out.xml"},
        Run{"ToXmlFromAPipe", "corvid to-xml - <clip.mxf"},
        Run{"ToXmlInUtf16", "corvid to-xml clip.mxf --encoding utf-16"},
        Run{"ToXmlWithValues", "corvid to-xml clip.mxf --references values"},
        Run{"ToXmlReplacing", "corvid to-xml odd.mxf --replace-invalid"},
        Run{"ToXmlRefusing", "corvid to-xml odd.mxf", false, 1},
        Run{"ToXmlOfNoFile", "corvid to-xml gone.mxf", false, 3},
        Run{"ToXmlWithStructuralSets", "corvid to-xml clip.mxf --structural-only --compact"},
        Run{"ToXmlWithADictionary", "corvid to-xml clip.mxf --dictionary own.dict"},
        Run{"ToXmlValidating", "corvid to-xml clip.mxf --validate", true},
        Run{"ToXmlRefusingWhatItWouldValidate", "corvid to-xml odd.mxf --validate", false, 1},
        Run{"ToJson", "corvid to-json clip.mxf"},
        Run{"ToJsonOfNoFile", "corvid to-json gone.mxf", false, 3},
        Run{"JsonSchema", "corvid schema --json"},
        Run{"FromXml", "corvid from-xml doc.xml -o out.mxf"},
        Run{"FromXmlFromAPipe", "corvid from-xml - -o out.mxf <doc.xml"},
        Run{"FromXmlRefusing", "echo '<a/>' | corvid from-xml - -o out.mxf", false, 1},
        Run{"FromXmlWithNewIdentifiers", "corvid from-xml --new-identifiers doc.xml -o out.mxf"},
        Run{"FromXmlLeniently", "corvid from-xml --lenient doc.xml -o out.mxf", true},
        Run{"Check", "corvid check clip.mxf"}, Run{"CheckInJson", "corvid check --json clip.mxf"},
        Run{"Schema", "corvid schema -o schemas", true}),
    [](const auto& each) { return each.param.name; });

} // namespace
