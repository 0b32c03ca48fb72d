// Replaces libFuzzer: runs a target on files, one after the other.

#include "fuzz/FuzzInput.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& path) {
    std::vector<std::filesystem::path> files;
    if (!std::filesystem::is_directory(path)) {
        return {path};
    }
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool run(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    if (!file) {
        std::fprintf(stderr, "%s: can't be read\n", path.c_str());
        return false;
    }
    std::printf("%s: %zu bytes\n", path.c_str(), bytes.size());
    std::fflush(stdout); // so that the last line names the file that a crash is about
    // A copy of just the right size, so that a sanitizer sees what reads past it.
    const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
    return true;
}

} // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i != argc; ++i) {
        for (const auto& path : filesOf(argv[i])) {
            if (!run(path)) {
                return 2;
            }
            ++count;
        }
    }
    if (count == 0) {
        std::fprintf(stderr, "usage: %s FILE|FOLDER...\n", argv[0]);
        return 2;
    }
    return 0;
}
