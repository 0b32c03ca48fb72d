#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Corvid::Tool {

/// The most processes that --jobs takes.
constexpr std::uint32_t mostJobs = 1024;

/// The options that all verbs have which read many files.
struct BatchOptions {
    /// A part of all files: those of which the hash of the path leaves `number - 1` when it is
    /// divided by `count`.
    struct Shard {
        std::uint64_t number = 1; ///< from 1
        std::uint64_t count = 0;  ///< 0 where all files are wanted
    };

    std::vector<std::string> files; ///< files and folders; "-" is standard input
    bool recursive = false;         ///< of folders, the MXF files in them and in folders in them
    std::string list;               ///< file with more of them, "-" for standard input; or empty
    bool listHasZeros = false;      ///< after each name, and not a line break
    Shard shard;

    std::uint32_t jobs = 0;         ///< processes at once; 0 where nobody asked, which is one
    std::uint64_t memoryPerJob = 0; ///< MiB; 0 for no limit
    std::string outputFolder;       ///< empty for standard output
    std::string log;                ///< empty for none
    bool resumes = false;           ///< leaves out what the log says is done

    bool isAlwaysMany = false; ///< one file without any option is treated as many are
    std::string verb;
    std::string fingerprint; ///< of version, verb and all options that change a result

    /// Whether any of these options is there, however many files are named.
    bool isAskedFor() const noexcept {
        return recursive || !list.empty() || shard.count != 0 || jobs != 0 || memoryPerJob != 0 ||
               !outputFolder.empty() || !log.empty() || resumes;
    }
};

/// False for one file without any of these options: a verb then does all by itself.
inline bool isBatch(const BatchOptions& options) {
    return options.files.size() != 1 || options.isAskedFor() || options.isAlwaysMany;
}

} // namespace Corvid::Tool
