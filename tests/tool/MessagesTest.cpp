#include "tools/corvid/terminal/Messages.h"

#include "host/dataio/Memory.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/terminal/ProgressBar.h"
#include "tools/corvid/terminal/Table.h"
#include "tools/corvid/terminal/UsageError.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>

using namespace Corvid;
using namespace Corvid::Tool;

namespace {

class MessagesOfTheCommand : public ::testing::Test {
protected:
    std::string said() const {
        return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
    }

    DataIO::Memory::MemoryDataSink sink;
    Messages messages{sink, false};
};

TEST_F(MessagesOfTheCommand, nameAllThatAWarningKnows) {
    messages.setFile("in.mxf");
    mxf::Warning warning(mxf::WarningKinds::unfitValue, "too short");
    warning.offset = 4132;
    warning.set = "Preface";
    warning.localTag = Types::u16{0x3B02};
    warning.property = "FileLastModified";
    messages.warn(warning);
    messages.flush();
    EXPECT_EQ(said(), "corvid: in.mxf: warning: byte 4132: set Preface: property 3b.02 "
                      "FileLastModified: too short [unfit-value]\n");
    EXPECT_EQ(messages.warningCount(), 1U);
}

TEST_F(MessagesOfTheCommand, countRepeatsOfAWarning) {
    messages.setFile("in.mxf");
    for (int i = 0; i != 3; ++i) {
        messages.warn({mxf::WarningKinds::headerByteCount, "x" + std::to_string(i)});
        messages.warn({mxf::WarningKinds::noPreface, "y"});
    }
    EXPECT_EQ(said(), "");
    messages.flush();
    const std::string lines = "corvid: in.mxf: warning: x0, and 2 more [header-byte-count]\n"
                              "corvid: in.mxf: warning: y, and 2 more [no-preface]\n";
    EXPECT_EQ(said(), lines);
    messages.flush();
    EXPECT_EQ(said(), lines);
    EXPECT_EQ(messages.warningCount(), 6U);
}

TEST_F(MessagesOfTheCommand, haveWarningsBeforeTheErrorAndBeforeTheNextFile) {
    messages.setFile("a");
    messages.warn({mxf::WarningKinds::noPreface, "x"});
    messages.error("the end");
    messages.warn({mxf::WarningKinds::noPrimerPack, "y"});
    messages.setFile("b");
    EXPECT_EQ(said(), "corvid: a: warning: x [no-preface]\ncorvid: a: the end\n"
                      "corvid: a: warning: y [no-primer-pack]\n");
    EXPECT_TRUE(messages.warnings().entries().empty());
    EXPECT_EQ(guard([&] { messages.warn({mxf::WarningKinds::noPreface, "z"}); }, messages), 0);
    EXPECT_NE(said().find("corvid: b: warning: z [no-preface]\n"), std::string::npos);
}

TEST_F(MessagesOfTheCommand, endTheWorkWhereWarningsAreErrors) {
    EXPECT_NO_THROW(refuseWarnings(true, messages));
    messages.warn({mxf::WarningKinds::noPreface, "x"});
    EXPECT_NO_THROW(refuseWarnings(false, messages));
    EXPECT_EQ(guard([&] { refuseWarnings(true, messages); }, messages), exitRefused);
    EXPECT_EQ(messages.lastError(), "1 warning, and --warnings-as-errors");
    messages.warn({mxf::WarningKinds::noPreface, "x"});
    guard([&] { refuseWarnings(true, messages); }, messages);
    EXPECT_EQ(messages.lastError(), "2 warnings, and --warnings-as-errors");
}

TEST_F(MessagesOfTheCommand, nameTheFileOnce) {
    messages.setFile("in.mxf");
    messages.error("can't open in.mxf: No such file or directory");
    EXPECT_EQ(said(), "corvid: in.mxf: can't open: No such file or directory\n");
}

TEST_F(MessagesOfTheCommand, nameAFileOnceWhoseNameIsNotUtf8) {
    const std::string name = "a\xFF";
    messages.setFile(name);
    guard([&] { throw Exceptions::IOError("can't open " + name + ": x", CORVID_HERE); }, messages);
    EXPECT_EQ(said(), "corvid: a\\xff: can't open: x\n");
}

TEST_F(MessagesOfTheCommand, keepWordsThatAreTheNameOfTheFileByChance) {
    messages.setFile("in");
    messages.error("no header metadata in partition 0");
    EXPECT_EQ(said(), "corvid: in: no header metadata in partition 0\n");
}

TEST_F(MessagesOfTheCommand, exceptionsHaveTheirExitStatus) {
    const auto statusOf = [&](auto exception) { return guard([&] { throw exception; }, messages); };
    EXPECT_EQ(guard([] {}, messages), exitDone);
    EXPECT_EQ(statusOf(Exceptions::InvalidFormat("x", CORVID_HERE)), exitRefused);
    EXPECT_EQ(statusOf(Exceptions::LimitExceeded("x", CORVID_HERE)), exitRefused);
    EXPECT_EQ(statusOf(Exceptions::InvalidDictionary("x", CORVID_HERE)), exitRefused);
    EXPECT_EQ(statusOf(Exceptions::IOError("x", CORVID_HERE)), exitNoFile);
    EXPECT_EQ(statusOf(OutputError("out", "can't write", ENOSPC)), exitNoFile);
    EXPECT_EQ(statusOf(std::bad_alloc()), exitRefused);
    EXPECT_EQ(statusOf(std::runtime_error("x")), exitRefused);
    EXPECT_EQ(statusOf(UsageError{"x"}), exitUsage);
    EXPECT_EQ(messages.lastError(), "x");
}

TEST_F(MessagesOfTheCommand, workThatHasToldItsOutcomeSaysNoMore) {
    EXPECT_EQ(guard([] { throw EndedWith{exitRefused}; }, messages), exitRefused);
    EXPECT_EQ(guard([] { throw EndedWith{exitNoFile}; }, messages), exitNoFile);
    EXPECT_EQ(said(), "");
    EXPECT_EQ(messages.lastError(), "");
}

TEST_F(MessagesOfTheCommand, takeThePlaceOfProgress) {
    Messages terminal(sink, false, true);
    terminal.showProgress("");
    EXPECT_EQ(said(), "");
    terminal.showProgress("1 of 2");
    terminal.showProgress("2 of 2");
    terminal.note("x");
    terminal.note("y");
    terminal.showProgress("");
    EXPECT_EQ(said(), "\r\033[K1 of 2\r\033[K2 of 2\r\033[Kcorvid: note: x\ncorvid: note: y\n");
}

TEST_F(MessagesOfTheCommand, showProgressOnATerminalOnly) {
    messages.showProgress("1 of 2");
    EXPECT_EQ(said(), "");
    EXPECT_FALSE(messages.showsProgress());
}

TEST_F(MessagesOfTheCommand, sayNothingOfAClosedPipe) {
    EXPECT_EQ(guard([] { throw OutputError("standard output", "can't write", EPIPE); }, messages),
              exitNoFile);
    EXPECT_EQ(said(), "");
}

TEST(ProgressBar, fillsAsTheWorkGoesOn) {
    EXPECT_EQ(progressBar(0, 4, "", "a", 80), "[....................] 0 of 4  a");
    EXPECT_EQ(progressBar(1, 4, "", "a", 80), "[#####...............] 1 of 4  a");
    EXPECT_EQ(progressBar(4, 4, "", "a", 80), "[####################] 4 of 4  a");
    EXPECT_EQ(progressBar(0, 0, "", "", 80), "[####################] 0 of 0  ");
}

TEST(ProgressBar, fitsTheLineAndEscapesNames) {
    const std::string bar = "[....................] 0 of 4  ";
    EXPECT_EQ(progressBar(0, 4, "", "folder/clip.mxf", 40), bar + "clip.mxf");
    EXPECT_EQ(progressBar(0, 4, "",
                          "\xC3\xBC"
                          "12345678",
                          40),
              bar + "12345678");
    EXPECT_EQ(progressBar(0, 4, "",
                          "\xC3\xBC"
                          "1234567",
                          40),
              bar + "1234567");
    EXPECT_EQ(progressBar(0, 4, "", "clip.mxf", 12), "[..........");
    EXPECT_EQ(progressBar(0, 4, "", "clip.mxf", 0), "");
    EXPECT_EQ(progressBar(0, 4, "", "\x1B[2J\u202E\xFF", 80), bar + "\\x1b[2J\\u202e\\xff");
}

TEST(Table, escapesWhatATerminalShouldNotShow) {
    Table table(0);
    table.add({"Name", "Number"});
    table.add({"a\u202E", "1"});
    EXPECT_EQ(table.toString("", ""), "Name     Number\na\\u202e  1\n");
}

TEST(Table, alignsColumnsAndLeavesOutEmptyOnes) {
    Table table(1);
    table.add({"Name", "Nothing", "Number"});
    table.add({"\xC3\xBC", "", "10"});
    table.add({"longer name", "", ""});
    EXPECT_EQ(table.toString("<", ">"), "< Name         Number>\n"
                                        " \xC3\xBC            10\n"
                                        " longer name\n");
}

} // namespace
