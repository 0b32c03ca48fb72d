#include "tests/growth/Instructions.h"

#include <fstream>
#include <string>
#include <unistd.h>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define RUNNING_ON_VALGRIND 0
#define CALLGRIND_ZERO_STATS
#define CALLGRIND_DUMP_STATS
#endif

namespace Corvid::Testing::Instructions {

namespace {

std::filesystem::path dumps;

std::uint64_t totalOf(const std::filesystem::path& dump) {
    std::ifstream file(dump);
    const std::string key = "totals: ";
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, key.size(), key) == 0) {
            return std::stoull(line.substr(key.size()));
        }
    }
    return 0;
}

} // namespace

void useFolder(const std::filesystem::path& folder) { dumps = folder; }

bool areCounted() { return RUNNING_ON_VALGRIND != 0 && !dumps.empty(); }

void start() { CALLGRIND_ZERO_STATS; }

std::uint64_t stop() {
    if (!areCounted()) {
        return 0;
    }
    CALLGRIND_DUMP_STATS;
    const auto dump = dumps / (std::to_string(::getpid()) + ".1");
    const std::uint64_t total = totalOf(dump);
    std::filesystem::remove(dump);
    return total;
}

void removeDumpOf(pid_t process) {
    if (areCounted()) {
        std::filesystem::remove(dumps / std::to_string(process));
    }
}

} // namespace Corvid::Testing::Instructions
