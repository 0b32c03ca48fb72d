#include "tests/tool/RunCommand.h"
#include "tools/corvid/page/HtmlText.h"
#include "tools/corvid/page/PageShell.h"

#include "host/dataio/Memory.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace Corvid;
using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

/// The data of a page.
nlohmann::json dataOf(const std::string& page) {
    const std::string begin = R"(<script type="application/json" id="data">)";
    const std::size_t from = page.find(begin) + begin.size();
    const std::size_t to = page.find("</script>", from);
    return nlohmann::json::parse(page.substr(from, to - from));
}

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

class Report : public ::testing::Test {
protected:
    Report() { shop.write("clip.mxf", smallClip()); }

    Workshop shop;
};

TEST_F(Report, isOnePageWithEverythingInIt) {
    const Outcome outcome = shop.run("corvid report clip.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, IsEmpty());
    EXPECT_THAT(outcome.out, StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(outcome.out, HasSubstr("default-src 'none'"));
    EXPECT_THAT(outcome.out, HasSubstr("<title>clip.mxf</title>"));
    EXPECT_THAT(outcome.out, HasSubstr("Operational pattern")) << "the summary without JavaScript";
    EXPECT_EQ(countOf(outcome.out, "<script"), 2U);
}

TEST_F(Report, holdsWhatInfoAndToJsonSay) {
    const auto data = dataOf(shop.run("corvid report clip.mxf").out);
    EXPECT_EQ(data["format"], "corvid-report");
    EXPECT_EQ(data["summary"], nlohmann::json::parse(shop.run("corvid info --json clip.mxf").out));
    const auto metadata = nlohmann::json::parse(shop.run("corvid to-json clip.mxf").out);
    ASSERT_EQ(data["metadata"]["sets"].size(), metadata["sets"].size());
    for (std::size_t i = 0; i != metadata["sets"].size(); ++i) {
        EXPECT_EQ(data["metadata"]["sets"][i]["id"], metadata["sets"][i]["id"]);
        EXPECT_EQ(data["metadata"]["sets"][i]["properties"], metadata["sets"][i]["properties"]);
    }
    EXPECT_EQ(data["regions"][0]["kind"], "pack");
    EXPECT_EQ(data["clip"]["size"], smallClip().size());
}

TEST_F(Report, writesTheSameToAFileAndFromPipes) {
    const std::string expected = shop.run("corvid report clip.mxf").out;
    for (const char* line :
         {"corvid report clip.mxf -o out.html", "corvid report clip.mxf --output out.html",
          "corvid report clip.mxf | cat >out.html"}) {
        shop.run("rm -f out.html");
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 0) << line << outcome.err;
        EXPECT_EQ(shop.read("out.html"), expected) << line;
    }
    const Outcome piped = shop.run("cat clip.mxf | corvid report -");
    EXPECT_EQ(dataOf(piped.out)["metadata"]["sets"], dataOf(expected)["metadata"]["sets"]);
}

TEST_F(Report, saysNothingOfTheFoldersThatTheClipIsIn) {
    shop.run("mkdir secret; cp clip.mxf secret");
    const std::string page = shop.run("corvid report \"$PWD/secret/clip.mxf\"").out;
    EXPECT_THAT(page, Not(HasSubstr("secret")));
    EXPECT_EQ(dataOf(page)["clip"]["name"], "clip.mxf");
}

TEST_F(Report, takesNothingForMarkup) {
    shop.write("odd.mxf", clipWithCompany(u"</script><b>\u202e&amp;"));
    const std::string page = shop.run("corvid report odd.mxf").out;
    EXPECT_EQ(countOf(page, "</script>"), 2U);
    EXPECT_EQ(countOf(page, "<b>"), 0U);
    EXPECT_THAT(page, Not(HasSubstr("\u202e")));
    EXPECT_THAT(page, HasSubstr("&lt;/script&gt;&lt;b&gt;\\u202e&amp;amp;"));
    EXPECT_THAT(dataOf(page).dump(), HasSubstr("</script><b>"));
}

TEST_F(Report, ofADamagedFileHoldsWhatIsThere) {
    const Bytes whole = MxfBuilder().add(headerPartition()).build();
    for (std::size_t cut = 1; cut < 36; cut += 7) {
        shop.write("cut.mxf", Bytes(whole.begin(), whole.end() - static_cast<std::ptrdiff_t>(cut)));
        const Outcome outcome = shop.run("corvid report cut.mxf");
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        const auto data = dataOf(outcome.out);
        EXPECT_FALSE(data["summary"]["warnings"].empty()) << cut;
        EXPECT_EQ(data["regions"].back()["end"], whole.size() - cut);
    }
}

TEST_F(Report, refusesWarningsWhereTheyAreErrors) {
    shop.write("nameless.mxf", clipWithANamelessSet());
    const Outcome outcome = shop.run("corvid report nameless.mxf --warnings-as-errors -o out.html");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_FALSE(shop.has("out.html"));
    EXPECT_EQ(shop.run("corvid report nameless.mxf -o out.html").status, 0);
}

TEST_F(Report, keepsAnyMxfFileButByForce) {
    shop.write("other.mxf", smallClip());
    EXPECT_EQ(shop.run("corvid report clip.mxf -o other.mxf").status, 2);
    EXPECT_EQ(shop.read("other.mxf"), asText(smallClip()));
    EXPECT_EQ(shop.run("corvid report clip.mxf -o other.mxf --force").status, 0);
    EXPECT_THAT(shop.read("other.mxf"), StartsWith("<!DOCTYPE html>"));
}

/// A file with one dark set of so many bytes.
Bytes clipWithDarkBytes(std::size_t count) {
    Bytes key = structuralKey(prefaceSet);
    key[12] = 0x7F;
    return MxfBuilder()
        .add(headerPartition(join({smallMetadata(), klv(key, repeat(0xAB, count), 5)})))
        .build();
}

TEST_F(Report, cutsLongBytesOfMuchMetadataUnlessAllAreWanted) {
    constexpr std::size_t much = 33 * 1024 * 1024;
    struct Case {
        std::size_t bytes;
        const char* options;
        std::size_t held;
    };
    for (const Case& each : {Case{1000, "", 1000}, Case{much, "", 64},
                             Case{much, " --raw auto", 64}, Case{much, " --raw all", much}}) {
        shop.write("dark.mxf", clipWithDarkBytes(each.bytes));
        const auto data =
            dataOf(shop.run("corvid report dark.mxf" + std::string(each.options)).out);
        const auto& dark = data["metadata"]["floating"][0];
        EXPECT_EQ(dark["hex"].get_ref<const std::string&>().size(), 2 * each.held)
            << each.bytes << each.options;
        EXPECT_EQ(data["rawLimit"].is_null(), each.held == each.bytes);
    }
}

struct Wrong {
    const char* name;
    const char* line;
    const char* message;
};
void PrintTo(const Wrong& each, std::ostream* out) { *out << each.name; }

class WrongReport : public Report, public ::testing::WithParamInterface<Wrong> {};

TEST_P(WrongReport, isRefused) {
    const Outcome outcome = shop.run(GetParam().line);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr(GetParam().message));
    EXPECT_THAT(outcome.out, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    , WrongReport,
    ::testing::Values(Wrong{"NoClip", "corvid report", "CLIP.mxf"},
                      Wrong{"OddRaw", "corvid report clip.mxf --raw some", "--raw"},
                      Wrong{"TheInput", "corvid report clip.mxf -o clip.mxf", "the input itself"}),
    [](const auto& each) { return each.param.name; });

TEST(PageShell, hasAPlaceForTitleSummaryAndData) {
    const Tool::PageShell& shell = Tool::pageShell();
    EXPECT_THAT(std::string(shell.beforeTitle), StartsWith("<!DOCTYPE html>"));
    EXPECT_EQ(shell.beforeSummary.substr(0, 8), "</title>");
    EXPECT_EQ(shell.beforeData.substr(0, 6), "</pre>");
    EXPECT_EQ(shell.end.substr(0, 9), "</script>");
}

TEST(HtmlText, keepsMarkupFromText) {
    EXPECT_EQ(Tool::htmlText("a<b>&amp;\""), "a&lt;b&gt;&amp;amp;\"");
}

TEST(HtmlJsonSink, escapesWhatBeginsMarkupWhereverWritesAreDivided) {
    const std::string text = R"(<["</script>","<!--","a"]<)";
    const std::string expected = R"(\u003c["\u003c/script>","\u003c!--","a"]\u003c)";
    for (std::size_t at = 0; at <= text.size(); ++at) {
        DataIO::Memory::MemoryDataSink target;
        Tool::HtmlJsonSink sink(target);
        const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
        sink.write(bytes, at);
        sink.write(bytes + at, text.size() - at);
        EXPECT_EQ(std::string(target.rawBuffer(), target.rawBuffer() + target.serializedSize()),
                  expected);
    }
}

TEST_F(Report, ofTwoClipsHoldsTheMetadataOfBothAndWhatDiffers) {
    std::filesystem::copy_file(sourceDir() / "examples" / "sample.mxf", shop.path() / "clip.mxf",
                               std::filesystem::copy_options::overwrite_existing);
    shop.run("corvid set clip.mxf MaterialPackage/PackageName=New --no-identification -o b.mxf");
    const Outcome outcome = shop.run("corvid report clip.mxf b.mxf");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("Compared with clip.mxf, from it to b.mxf:\nchanged "))
        << "the summary without JavaScript";
    const auto data = dataOf(outcome.out);
    EXPECT_EQ(data["clip"]["name"], "b.mxf");
    const auto& comparison = data["comparison"];
    EXPECT_EQ(comparison["before"]["clip"]["name"], "clip.mxf");
    EXPECT_EQ(comparison["before"]["metadata"],
              dataOf(shop.run("corvid report clip.mxf").out)["metadata"]);
    EXPECT_EQ(data["metadata"], dataOf(shop.run("corvid report b.mxf").out)["metadata"]);
    const auto& sets = data["metadata"]["sets"];
    ASSERT_EQ(comparison["pairs"].size(), sets.size() + data["metadata"]["floating"].size());
    for (std::size_t i = 0; i != sets.size(); ++i) {
        ASSERT_TRUE(comparison["pairs"][i].is_number()) << i;
        const std::size_t old = comparison["pairs"][i];
        EXPECT_EQ(comparison["before"]["metadata"]["sets"][old]["id"], sets[i]["id"]);
    }
    ASSERT_EQ(comparison["changed"].size(), 1U);
    EXPECT_EQ(sets[comparison["changed"][0][0].get<std::size_t>()]["class"], "MaterialPackage");
    EXPECT_EQ(comparison["changed"][0][1],
              nlohmann::json({"06.0e.2b.34.01.01.01.01.01.03.03.02.01.00.00.00"}));
}

TEST_F(Report, ofAClipAndItselfHasNoDifference) {
    shop.write("same.mxf", smallClip());
    const Outcome outcome = shop.run("corvid report clip.mxf same.mxf");
    EXPECT_THAT(outcome.out, HasSubstr("no difference"));
    EXPECT_THAT(dataOf(outcome.out)["comparison"]["changed"], IsEmpty());
}

TEST_F(Report, ofTwoClipsReplacesNeitherOfThem) {
    shop.write("b.mxf", smallClip());
    for (const char* which : {"clip.mxf", "b.mxf"}) {
        const Outcome outcome =
            shop.run("corvid report --force clip.mxf b.mxf -o " + std::string(which));
        EXPECT_EQ(outcome.status, 2);
        EXPECT_THAT(outcome.err, HasSubstr("the output is the input itself"));
    }
    EXPECT_EQ(shop.run("corvid report - b.mxf < clip.mxf").status, 2);
    EXPECT_EQ(shop.run("corvid report clip.mxf - < b.mxf").status, 2);
}

} // namespace
