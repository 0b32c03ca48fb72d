#pragma once

#include "host/dataio/FileDescriptor.h"

#include <cstddef>
#include <optional>
#include <string>

namespace Corvid::Tool {

/// The names in a file or pipe, one a line or with a zero after each.
class NameList {
public:
    /// The most bytes of a name: a system has none so long, and a device that never ends is not
    /// read forever.
    static constexpr std::size_t longestPath = 65'536;

    /// @param path  "-" is standard input.
    /// @throws IOError  it can't be opened.
    NameList(const std::string& path, bool hasZeros);

    /// What people call it.
    const std::string& name() const noexcept { return name_; }
    /// True for a pipe or terminal, of which nobody knows when more comes.
    bool isLive() const;
    /// To be polled before readMore().
    int number() const noexcept { return file_.number(); }

    /// Reads what is there, and waits where that is nothing.
    /// @throws IOError        it can't be read.
    /// @throws LimitExceeded  a name is too long.
    void readMore();
    /// The next name that has been read: nothing where more has to be read, or at the end.
    std::optional<std::string> next();
    bool isEnded() const noexcept { return atEnd_ && begin_ == bytes_.size(); }

private:
    std::string name_;
    DataIO::FileDescriptor file_;
    char end_;
    std::string bytes_;     ///< read but not given
    std::size_t begin_ = 0; ///< of what is not given
    std::size_t seen_ = 0;  ///< up to where no name ends
    bool atEnd_ = false;
};

} // namespace Corvid::Tool
