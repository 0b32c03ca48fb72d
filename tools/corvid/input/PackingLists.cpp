#include "tools/corvid/input/PackingLists.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace Corvid::Tool {

namespace {

/// Whether the front of a file has the root element of a packing list.
bool isPackingList(const std::filesystem::path& path) {
    std::array<char, 2048> front{};
    std::ifstream file(path, std::ios::binary);
    file.read(front.data(), front.size());
    const std::string_view text(front.data(), static_cast<std::size_t>(file.gcount()));
    const auto name = text.find("PackingList");
    return name != std::string_view::npos && name != 0 &&
           (text[name - 1] == '<' || text[name - 1] == ':');
}

} // namespace

std::vector<std::string> packingListsBeside(const std::string& clip) {
    constexpr std::size_t mostFiles = 1000;
    std::vector<std::string> names;
    std::error_code error;
    const auto folder = std::filesystem::canonical(clip, error).parent_path();
    std::filesystem::directory_iterator entry(folder, error);
    for (std::size_t count = 0;
         !error && entry != std::filesystem::directory_iterator() && count != mostFiles;
         entry.increment(error)) {
        std::error_code nothing;
        if (entry->path().extension() == ".xml" && entry->is_regular_file(nothing)) {
            ++count;
            if (isPackingList(entry->path())) {
                names.push_back(entry->path().filename().string());
            }
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace Corvid::Tool
