#include "tests/tool/RunCommand.h"

#include <gtest/gtest.h>

using namespace Corvid::Testing;

namespace {

std::string script() { return (sourceDir() / "tools" / "manual" / "make_manual.py").string(); }

std::filesystem::path pages() {
    return sourceDir() / "tools" / "manual" / "share" / "man" / "man1";
}

TEST(Manual, isWhatTheScriptMakesOfTheCommandLine) {
    const Outcome outcome =
        Workshop().run("python3 -B '" + script() + "' --check \"$(command -v corvid)\"");
    EXPECT_EQ(outcome.status, 0) << outcome.err << "to mend it: python3 " << script()
                                 << " build/dev/tools/corvid/corvid";
}

TEST(Manual, hasAPageForEachVerb) {
    const Workshop shop;
    for (const char* page : {"corvid", "corvid-to-xml", "corvid-dictionary"}) {
        EXPECT_TRUE(std::filesystem::exists(pages() / (page + std::string(".1")))) << page;
    }
}

TEST(Manual, isReadByManWithoutWarnings) {
    const Workshop shop;
    if (shop.run("command -v man && command -v groff").status != 0) {
        GTEST_SKIP() << "no man or groff";
    }
    std::size_t count = 0;
    for (const auto& page : std::filesystem::directory_iterator(pages())) {
        const Outcome outcome = shop.run("LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings "
                                         "-E UTF-8 -l -Tutf8 -Z '" +
                                         page.path().string() + "' >/dev/null");
        EXPECT_EQ(outcome.status, 0) << page.path() << outcome.err;
        EXPECT_EQ(outcome.err, "") << page.path();
        ++count;
    }
    EXPECT_GT(count, 10U);
}

TEST(Manual, showsWhatAVerbTakes) {
    const Workshop shop;
    if (shop.run("command -v man && command -v groff").status != 0) {
        GTEST_SKIP() << "no man or groff";
    }
    const std::string text = shop.run("MANWIDTH=100 LC_ALL=C.UTF-8 man -l '" +
                                      (pages() / "corvid-get.1").string() + "' | col -b")
                                 .out;
    for (const char* part : {"corvid-get - print single values of an MXF file",
                             "corvid get [OPTION]... [CLIP.mxf] [QUERY]...", "-q, --query QUERY",
                             "The default is auto.", "EXIT STATUS", "corvid-to-xml(1)"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
    }
}

} // namespace
