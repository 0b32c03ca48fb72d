#pragma once

#include "tools/corvid/batch/FileTask.h"

#include <array>
#include <vector>

namespace Corvid::Tool {

/// Counts what became of many files.
class Summary {
public:
    /// The most files that are listed because something went wrong with them.
    static constexpr std::size_t mostFailures = 20;

    void add(const std::string& path, const FileResult& result);
    /// A file that an earlier command has done.
    void skip(FileStatus status) noexcept {
        ++skipped_;
        skippedNotOk_ += status == FileStatus::ok ? 0 : 1;
    }

    std::size_t count(FileStatus status) const noexcept {
        return counts_[static_cast<std::size_t>(status)];
    }
    std::size_t files() const noexcept;
    std::size_t skipped() const noexcept { return skipped_; }
    bool areAllOk() const noexcept { return files() == count(FileStatus::ok); }

    /// "5 files: 3 ok, 1 refused, 1 crashed; 2 done before, 1 of them not ok", then the first ones
    /// that are not ok.
    std::vector<std::string> lines() const;

    /// Of the whole: a file that can't be read counts more than data that can't be used.
    int exitStatus() const noexcept;

private:
    std::array<std::size_t, fileStatusCount> counts_{};
    std::size_t skipped_ = 0;
    std::size_t skippedNotOk_ = 0; ///< of these
    std::vector<std::string> listed_;
};

} // namespace Corvid::Tool
