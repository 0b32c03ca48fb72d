#pragma once

#include "tests/support/Paths.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace Corvid::Testing {

/// The documents that a search begins with, by their file names.
inline std::map<std::string, std::string> seedDocuments() {
    std::map<std::string, std::string> seeds;
    const auto folder = sourceDir() / "fuzz" / "corpus" / "Xml";
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        seeds[entry.path().filename().string()] =
            std::string(std::istreambuf_iterator<char>(file), {});
    }
    return seeds;
}

} // namespace Corvid::Testing
