#include "tests/support/ExportedNames.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <sstream>

namespace Corvid::Testing {

namespace {

std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    std::array<char, 4096> buffer;
    while (const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) {
        output.append(buffer.data(), got);
    }
    return output;
}

std::string demangled(const std::string& symbol) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> text(
        abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), std::free);
    return text ? text.get() : symbol;
}

} // namespace

std::vector<std::string> exportedNames(const std::string& library) {
    std::istringstream lines(outputOf(CORVID_TEST_NM " -D --defined-only '" + library + "'"));
    std::vector<std::string> names;
    std::string address;
    std::string kind;
    std::string symbol;
    while (lines >> address >> kind >> symbol) {
        if (kind != "A" && kind != "W") { // A is the name of the version itself
            const std::string name = demangled(symbol.substr(0, symbol.find('@')));
            names.push_back(name.substr(0, name.find_first_of("([")));
        }
    }
    return names;
}

} // namespace Corvid::Testing
