#include "tests/support/Paths.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace Corvid::Testing {
namespace {

using Folders = std::vector<std::string>;

struct Layer {
    const char* name;
    std::string folder;
    Folders mayInclude;
};
void PrintTo(const Layer& layer, std::ostream* out) { *out << layer.name; }

class Layers : public ::testing::TestWithParam<Layer> {};

bool isIn(const std::string& path, const Folders& folders) {
    return std::any_of(folders.begin(), folders.end(), [&path](const std::string& folder) {
        return path.compare(0, folder.size(), folder) == 0;
    });
}

/// The headers of the project that a source includes, but for generated ones: these are in folders
/// with the names of the libraries.
std::set<std::string> includesOf(const std::filesystem::path& source) {
    static const std::regex include(R"~(#include "([^"]+)")~");
    std::ifstream file(source);
    std::set<std::string> headers;
    for (std::string line; std::getline(file, line);) {
        std::smatch found;
        if (std::regex_search(line, found, include) && found[1].str().rfind("Corvid", 0) != 0) {
            headers.insert(found[1]);
        }
    }
    return headers;
}

TEST_P(Layers, includeWhatIsBelowThem) {
    std::size_t sources = 0;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(sourceDir() / GetParam().folder)) {
        const std::string path =
            std::filesystem::relative(entry.path(), sourceDir()).generic_string();
        const auto extension = entry.path().extension();
        if (extension != ".h" && extension != ".cpp") {
            continue;
        }
        ++sources;
        for (const std::string& header : includesOf(entry.path())) {
            EXPECT_TRUE(isIn(header, {GetParam().folder}) || isIn(header, GetParam().mayInclude))
                << path << " includes " << header;
        }
    }
    EXPECT_GT(sources, 1U);
}

const std::string command = "tools/corvid/";

INSTANTIATE_TEST_SUITE_P(
    , Layers,
    ::testing::Values(
        Layer{"Host", "host/", {}},
        Layer{"XmlUtils", "host/xmlutils/", {"host/base/", "host/dataio/"}},
        Layer{"XmlBuilder", "XMLBuilder/", {"host/"}},
        Layer{"Inspection",
              "inspection/",
              {"host/base/", "host/klv/", "host/dictionary/", "host/metadata/", "host/mxf/",
               "host/types/"}},
        Layer{"Editing", "editing/", {"XMLBuilder/", "host/"}},
        Layer{"Remote", command + "remote/", {"host/"}},
        Layer{"Terminal", command + "terminal/", {command + "remote/Address.", "host/"}},
        Layer{"Output", command + "output/", {command + "terminal/", "host/"}},
        Layer{"Input",
              command + "input/",
              {command + "terminal/", command + "remote/", command + "CommandWarnings.",
               "inspection/", "host/"}},
        Layer{"Reports",
              command + "reports/",
              {command + "terminal/", command + "CommandWarnings.", "editing/", "inspection/",
               "host/"}},
        Layer{"Schema", command + "schema/", {"XMLBuilder/json/", "XMLBuilder/format/", "host/"}},
        Layer{"Page",
              command + "page/",
              {command + "terminal/", command + "reports/", "XMLBuilder/", "editing/",
               "inspection/", "host/"}},
        Layer{"Dictionary",
              command + "dictionary/",
              {command + "terminal/", "inspection/", "host/"}}),
    [](const auto& layer) { return std::string(layer.param.name); });

} // namespace
} // namespace Corvid::Testing
