#pragma once

#include "host/mxf/Warnings.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Corvid::Tool {

/// The warnings about one file: each fact once, with the number of its repeats. It stays small,
/// whatever is wrong with the file.
class WarningLog {
public:
    /// The most facts of a kind that are kept apart; the last one counts all others.
    static constexpr std::size_t mostOfAKind = 20;
    /// The most bytes of a text, which may quote what a file or document holds, and of a name.
    static constexpr std::size_t longestText = 1024;
    static constexpr std::size_t longestName = 256;

    struct Entry {
        mxf::Warning first;
        std::size_t count = 1;
    };

    void add(const mxf::Warning& warning);

    /// In the order of their first warnings.
    const std::vector<Entry>& entries() const noexcept { return entries_; }

private:
    struct Kind {
        std::map<std::string, std::size_t> facts; ///< to entries, by what the scope distinguishes
        std::size_t last = 0;                     ///< the entry that was added last
    };

    std::vector<Entry> entries_;
    std::map<std::string_view, Kind> kinds_; ///< by code
};

} // namespace Corvid::Tool
