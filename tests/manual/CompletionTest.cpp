#include "tests/tool/RunCommand.h"

#include <gtest/gtest.h>

using namespace Corvid::Testing;

namespace {

std::string completion(const char* path) {
    return "'" + (sourceDir() / "tools" / "manual" / "share" / path).string() + "'";
}
std::string ofBash() { return completion("bash-completion/completions/corvid"); }
std::string ofZsh() { return completion("zsh/vendor-completions/_corvid"); }
std::string ofFish() { return completion("fish/vendor_completions.d/corvid.fish"); }

std::string folderOf(const std::string& file) { return file.substr(0, file.rfind('/')) + "'"; }

/// A folder with files of several kinds.
class Completion : public testing::Test {
protected:
    Completion() {
        for (const char* name : {"a clip.mxf", "CLIP.MXF", "doc.xml", "notes.txt"}) {
            shop.write(name, std::string());
        }
        std::filesystem::create_directory(shop.path() / "folder");
    }

    const Workshop shop;
};

TEST_F(Completion, isReadByItsShell) {
    EXPECT_EQ(shop.run("bash -n " + ofBash()).status, 0);
    for (const auto& [shell, file] : {std::pair("zsh", ofZsh()), {"fish", ofFish()}}) {
        if (shop.run(std::string("command -v ") + shell).status == 0) {
            const Outcome outcome = shop.run(std::string(shell) + " -n " + file);
            EXPECT_EQ(outcome.status, 0) << outcome.err;
            EXPECT_EQ(outcome.err, "");
        }
    }
}

struct Case {
    const char* name;
    const char* line; ///< the words so far; the last one is to be completed
    const char* completed;
};

class CompletionOfBash : public Completion, public testing::WithParamInterface<Case> {};

/// What the function of bash makes of a line, one word on a line.
TEST_P(CompletionOfBash, offersWhatFits) {
    const Outcome outcome =
        shop.run("bash --norc -c 'source " + ofBash().substr(1, ofBash().size() - 2) +
                 "\nCOMP_WORDS=(" + GetParam().line +
                 ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_corvid\nprintf \"%s\\n\" "
                 "\"${COMPREPLY[@]}\" | LC_ALL=C sort'");
    EXPECT_EQ(outcome.out, GetParam().completed) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(
    , CompletionOfBash,
    testing::Values(
        Case{"Verb", "corvid to-", "to-json\nto-xml\n"},
        Case{"VerbOfHelp", "corvid help to-", "to-json\nto-xml\n"},
        Case{"Option", "corvid to-xml --re",
             "--recursive\n--references\n--replace-invalid\n--resume\n"},
        Case{"OptionOfTheCommand", "corvid --v", "--version\n"},
        Case{"Choice", "corvid to-xml --references v", "values\n"},
        Case{"ChoiceAfterEquals", "corvid to-xml --references = v", "values\n"},
        Case{"AllChoicesAfterEquals", "corvid to-xml --references =", "links\nvalues\n"},
        Case{"Clip", "corvid info \"\"", "CLIP.MXF\na clip.mxf\nfolder\n"},
        Case{"ClipAndDocument", "corvid apply \"\"", "CLIP.MXF\na clip.mxf\ndoc.xml\nfolder\n"},
        Case{"FileOfAnotherKind", "corvid info no", "notes.txt\n"},
        Case{"AnyFile", "corvid diff \"\"",
             "CLIP.MXF\na clip.mxf\ndoc.xml\nfolder\nfolder\nnotes.txt\n"},
        Case{"Folder", "corvid schema -o \"\"", "folder\n"},
        Case{"Number", "corvid from-xml --kag \"\"", "\n"}),
    [](const auto& each) { return each.param.name; });

/// Types a line into an interactive shell and presses the tabulator, then return.
const char* const typing = R"(
import os, pty, select, sys, time
setup, line, shell = sys.argv[1], sys.argv[2], sys.argv[3:]
pid, terminal = pty.fork()
if pid == 0:
    os.environ.update(TERM="dumb", PS1="$ ", INPUTRC="/dev/null", HOME=".")
    os.execvp(shell[0], shell)
def read(until, seconds=20):
    text, end = b"", time.time() + seconds
    while until not in text and time.time() < end:
        if select.select([terminal], [], [], 0.1)[0]:
            text += os.read(terminal, 4096)
    return text
os.write(terminal, setup.encode() + b"; corvid() { echo GOT \"$@\" END; }\n")
os.write(terminal, b"echo RE''ADY\n")
read(b"READY")
os.write(terminal, line.encode() + b"\t")
while select.select([terminal], [], [], 0.5)[0]:
    os.read(terminal, 4096)
os.write(terminal, b"\n")
print(read(b"END").decode().split("GOT ")[-1].split(" END")[0])
)";

struct Shell {
    const char* name;
    std::string setup;
    const char* start;
};

void PrintTo(const Shell& shell, std::ostream* out) { *out << shell.name; }

class CompletionAtTheKeyboard : public Completion, public testing::WithParamInterface<Shell> {};

TEST_P(CompletionAtTheKeyboard, endsWords) {
    const Shell& shell = GetParam();
    if (shop.run(std::string("command -v ") + shell.name).status != 0) {
        GTEST_SKIP() << "no " << shell.name;
    }
    shop.write("type.py", std::string(typing));
    const auto typed = [&](const std::string& line) {
        return shop.run("python3 type.py \"" + shell.setup + "\" '" + line + "' " + shell.start)
            .out;
    };
    EXPECT_EQ(typed("corvid to-x"), "to-xml\n");
    EXPECT_EQ(typed("corvid from-xml --kag 1 d"), "from-xml --kag 1 doc.xml\n");
    EXPECT_EQ(typed("corvid info a"), "info a clip.mxf\n");
    EXPECT_EQ(typed("corvid to-xml --references=v"), "to-xml --references=values\n");
    EXPECT_EQ(typed("corvid schema --forc"), "schema --force\n");
}

INSTANTIATE_TEST_SUITE_P(
    , CompletionAtTheKeyboard,
    testing::Values(Shell{"bash", "source " + ofBash(), "bash --norc --noprofile -i"},
                    Shell{"zsh",
                          "fpath=(" + folderOf(ofZsh()) +
                              " \\$fpath); autoload -Uz compinit; compinit -u -D",
                          "zsh -f -i"}),
    [](const auto& each) { return each.param.name; });

TEST_F(Completion, offersWhatFitsInFish) {
    if (shop.run("command -v fish").status != 0) {
        GTEST_SKIP() << "no fish";
    }
    const auto complete = [&](const std::string& line) {
        return shop
            .run("HOME=. fish --no-config -c 'source " + ofFish().substr(1, ofFish().size() - 2) +
                 "; complete -C \"" + line + "\"' | cut -f1 | LC_ALL=C sort")
            .out;
    };
    EXPECT_EQ(complete("corvid to-"), "to-json\nto-xml\n");
    EXPECT_EQ(complete("corvid to-xml --references "), "links\nvalues\n");
    EXPECT_EQ(complete("corvid from-xml d"), "doc.xml\n");
    EXPECT_EQ(complete("corvid help to-"), "to-json\nto-xml\n");
}

} // namespace
