#include "tests/support/Paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

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

/// The names, without arguments, of what the library defines for others.
std::vector<std::string> exportedNames() {
    std::istringstream lines(
        outputOf(CORVID_TEST_NM " -D --defined-only " CORVID_TEST_XMLBUILDER_LIBRARY));
    std::vector<std::string> names;
    std::string address;
    std::string kind;
    std::string symbol;
    while (lines >> address >> kind >> symbol) {
        if (kind != "A") { // the name of the version itself
            const std::string name = demangled(symbol.substr(0, symbol.find('@')));
            names.push_back(name.substr(0, name.find('(')));
        }
    }
    return names;
}

TEST(Exports, areTheInterfaceAndNothingElse) {
    const std::string writer = "Corvid::XMLBuilder::";
    const std::string reader = "Corvid::XML2Partition::getPartitionMetadataFrom";
    std::vector<std::string> expected{
        writer + "getNamespaceURI", writer + "getPrefix",     writer + "partition2XML",
        writer + "partition2XML",   writer + "partition2XML", writer + "partition2XML",
        reader + "Buffer",          reader + "String",        reader + "File"};
    for (const char* caught : {"InvalidFormat", "ParseError"}) {
        for (const char* part : {"typeinfo for ", "typeinfo name for ", "vtable for "}) {
            expected.push_back(std::string(part) + "Corvid::Exceptions::" + caught);
        }
    }
    EXPECT_THAT(exportedNames(), testing::UnorderedElementsAreArray(expected));
}

} // namespace
} // namespace Corvid::Testing
