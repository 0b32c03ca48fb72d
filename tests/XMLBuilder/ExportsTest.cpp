#include "tests/support/Paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
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

/// The names, without arguments, of what the library defines for others.
std::vector<std::string> exportedNames() {
    std::istringstream lines(
        outputOf(CORVID_TEST_NM " -DC --defined-only " CORVID_TEST_XMLBUILDER_LIBRARY));
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream columns(line);
        std::string address;
        std::string kind;
        std::string name;
        columns >> address >> kind;
        std::getline(columns >> std::ws, name);
        if (kind != "A") { // the name of the version itself
            names.push_back(name.substr(0, name.find_first_of("(@")));
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
