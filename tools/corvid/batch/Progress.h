#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

namespace Corvid::Tool {

class Messages;

/// Shows on a terminal how far the work on many files is.
class Progress {
public:
    explicit Progress(Messages& messages) : messages_(messages) {}

    /// @param total  of files, where it is known.
    /// @param file   at work.
    void show(std::size_t done, std::optional<std::size_t> total, const std::string& file);

private:
    using Clock = std::chrono::steady_clock;

    Messages& messages_;
    Clock::time_point begin_ = Clock::now();
    Clock::time_point shown_ = begin_ - std::chrono::hours(1);
};

} // namespace Corvid::Tool
