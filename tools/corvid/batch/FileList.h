#pragma once

#include "host/base/TextHash.h"
#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/batch/FolderWalk.h"
#include "tools/corvid/batch/NameList.h"

#include <deque>
#include <unordered_set>

namespace Corvid::Tool {

/// All files that a verb is to read, in order: those of the command line, then those of a list, the
/// clips of a folder in its place. A path that comes again is left out, also with "./" in front.
class FileList {
public:
    /// @throws UsageError  a file of the command line can't be meant.
    /// @throws IOError     the list can't be opened.
    explicit FileList(const BatchOptions& options);

    /// Finds all files, unless a pipe gives them.
    /// @throws UsageError, IOError, LimitExceeded  of the list.
    void collect();
    /// The next file; nothing at the end, or where a pipe has to be waited for.
    /// @throws UsageError, LimitExceeded  of the list.
    std::optional<ListedFile> next();
    bool isEnded() const;
    /// What collect() has found and next() has not given.
    const std::deque<ListedFile>& collected() const noexcept { return collected_; }

    /// The pipe that has to be waited for; nothing where there is none.
    std::optional<int> awaited() const;
    /// @throws IOError  it can't be read.
    void readMore() { list_->readMore(); }

    /// How many files there are; nothing as long as nobody knows.
    std::optional<std::size_t> total() const;

private:
    std::optional<ListedFile> find();
    std::optional<ListedFile> take(const std::string& path);
    void takeOffReturn(std::string& name) const;
    bool isWanted(ListedFile& file);
    /// Why a name can't be meant; empty where it can.
    std::string problemOf(const std::string& path, bool isListed) const;

    const BatchOptions& options_;
    std::optional<FileIdentity> outputFolder_;
    std::size_t nextArgument_ = 0;
    std::optional<NameList> list_;
    std::optional<FolderWalk> walk_;
    std::unordered_set<std::string, TextHash> known_; ///< what all files so far are known by
    std::deque<ListedFile> collected_;
    std::size_t count_ = 0;
};

/// FNV-1a with 64 bits, which every tool can repeat.
std::uint64_t shardHash(const std::string& path) noexcept;

} // namespace Corvid::Tool
