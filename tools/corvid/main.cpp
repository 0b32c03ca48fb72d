#include "tools/corvid/CommandLine.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/terminal/Messages.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

bool isTerminal(int file) {
    const char* const terminal = std::getenv("TERM");
    return ::isatty(file) != 0 && !(terminal != nullptr && std::string(terminal) == "dumb");
}

bool wantsColours(int file) {
    const char* const no = std::getenv("NO_COLOR");
    return isTerminal(file) && (no == nullptr || *no == '\0');
}

/// Takes the descriptors of standard input, output and error where they are closed: else a file
/// that is opened would get one, and messages would go into it. Reading and writing still fail.
void takeStandardDescriptors() {
    for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(file, F_GETFD) == -1) {
            ::open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    using namespace Corvid::Tool;
    takeStandardDescriptors();
    // A pipe that nobody reads any more, and a file that reaches the limit of the shell, are errors
    // like others, not the end of the process.
    for (const int number : {SIGPIPE, SIGXFSZ}) {
        std::signal(number, SIG_IGN);
    }
    DescriptorOutput errors(STDERR_FILENO, "standard error");
    Messages messages(errors, wantsColours(STDERR_FILENO), isTerminal(STDERR_FILENO));
    const int status = guard(
        [&] {
            const Command command = parseCommandLine(argc, argv, wantsColours(STDOUT_FILENO));
            printText(command.text);
            if (command.run) {
                command.run(messages);
            }
        },
        messages);
    // Everything is written and checked; what is still in memory goes with the process.
    std::_Exit(status);
}
