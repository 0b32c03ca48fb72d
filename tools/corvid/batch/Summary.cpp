#include "tools/corvid/batch/Summary.h"

#include "tools/corvid/ExitStatus.h"

#include <numeric>

namespace Corvid::Tool {

namespace {

std::string filesText(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " file" : " files");
}

} // namespace

void Summary::add(const std::string& path, const FileResult& result) {
    const FileStatus status = result.facts.status;
    ++counts_[static_cast<std::size_t>(status)];
    if (status != FileStatus::ok && listed_.size() < mostFailures) {
        listed_.push_back(path + ": " + nameOf(status));
    }
}

std::size_t Summary::files() const noexcept {
    return std::accumulate(counts_.begin(), counts_.end(), std::size_t{0});
}

std::vector<std::string> Summary::lines() const {
    std::string first = filesText(files());
    const char* between = ": ";
    for (std::size_t i = 0; i != fileStatusCount; ++i) {
        if (counts_[i] != 0) {
            first += between + std::to_string(counts_[i]) + " " + fileStatusNames[i];
            between = ", ";
        }
    }
    if (skipped_ != 0) {
        first += "; " + std::to_string(skipped_) + " done before";
        first += skippedNotOk_ == 0 ? "" : ", " + std::to_string(skippedNotOk_) + " of them not ok";
    }
    std::vector<std::string> lines{first};
    for (const std::string& each : listed_) {
        lines.push_back("  " + each);
    }
    if (const std::size_t bad = files() - count(FileStatus::ok); bad > listed_.size()) {
        lines.push_back("  and " + std::to_string(bad - listed_.size()) + " more");
    }
    return lines;
}

int Summary::exitStatus() const noexcept {
    if (count(FileStatus::unreadable) + count(FileStatus::crashed) != 0) {
        return exitNoFile;
    }
    return areAllOk() && skippedNotOk_ == 0 ? exitDone : exitRefused;
}

} // namespace Corvid::Tool
