#include "tests/growth/GrowthTable.h"
#include "tests/growth/Instructions.h"
#include "tests/growth/KnownGrowth.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

using namespace Corvid::Testing;

namespace {

struct Arguments {
    unsigned processes = 1;
    std::size_t multiple = 1;
    std::size_t first = 0;
    std::vector<Dimension> wanted;
};

std::vector<Dimension> dimensionsWith(const std::string& part) {
    std::vector<Dimension> found;
    for (const Dimension& each : dimensions()) {
        if (each.name.find(part) != std::string::npos) {
            found.push_back(each);
        }
    }
    return found;
}

/// growth [--processes N] [--multiple N] [--first N] [--folder FOLDER] [PART-OF-A-NAME...]
/// Where the time does not suffice for all rows, --first lets others come first: it counts them
/// round and round.
Arguments argumentsOf(int argc, char** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const bool hasValue = std::strncmp(argv[i], "--", 2) == 0 && i + 1 < argc;
        const std::string option = argv[i];
        if (!hasValue) {
            const auto found = dimensionsWith(option);
            arguments.wanted.insert(arguments.wanted.end(), found.begin(), found.end());
        } else if (option == "--processes") {
            arguments.processes = static_cast<unsigned>(std::strtoul(argv[++i], nullptr, 10));
        } else if (option == "--multiple") {
            arguments.multiple = std::strtoul(argv[++i], nullptr, 10);
        } else if (option == "--first") {
            arguments.first = std::strtoul(argv[++i], nullptr, 10);
        } else {
            Instructions::useFolder(argv[++i]);
        }
    }
    if (arguments.wanted.empty()) {
        arguments.wanted = dimensions();
    }
    const auto first = arguments.first % arguments.wanted.size();
    std::rotate(arguments.wanted.begin(),
                arguments.wanted.begin() + static_cast<std::ptrdiff_t>(first),
                arguments.wanted.end());
    return arguments;
}

} // namespace

/// Prints the table on standard output and what is wrong on standard error, row by row.
int main(int argc, char** argv) {
    const Arguments arguments = argumentsOf(argc, argv);
    const bool isComplete = Instructions::areCounted() && arguments.multiple == 1;
    std::optional<InputKind> kind;
    bool isSound = true;
    for (const Dimension& dimension : arguments.wanted) {
        if (kind != dimension.kind) {
            std::printf("%s%s", kind ? "\n" : "", tableHead(dimension.kind).c_str());
            kind = dimension.kind;
        }
        const auto growths =
            measureGrowth(dimension, Extent::all, arguments.multiple, arguments.processes);
        std::printf("%s", tableRow(growths).c_str());
        std::fflush(stdout);
        for (const std::string& mistake : mistakesIn(growths, isComplete)) {
            std::fprintf(stderr, "growth: %s\n", mistake.c_str());
            isSound = false;
        }
    }
    return isSound ? 0 : 1;
}
