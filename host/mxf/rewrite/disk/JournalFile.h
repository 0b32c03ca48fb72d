#pragma once

#include "host/mxf/rewrite/disk/Journal.h"

namespace Corvid::mxf {

/// The file of a journal: beside the file that changes, or in another folder; then a pointer to it
/// is beside that file.
class JournalFile {
public:
    /// One that is to be made.
    /// @param path    of the file that changes, without symbolic links.
    /// @param inode   of that file.
    /// @param folder  for the journal; empty for beside the file.
    JournalFile(FileSystem& system, const std::string& path, std::uint64_t inode,
                const std::string& folder);

    /// Whether there is one, of a change that was not finished.
    static bool isThere(FileSystem& system, const std::string& path);
    /// That one.
    /// @throws InvalidFormat  what is beside the file is damaged, or points to nothing.
    static JournalFile find(FileSystem& system, const std::string& path);

    /// Makes the journal appear on the disk as a whole, and the pointer after it.
    void make(const Journal& journal);
    /// Puts another journal in its place.
    void replace(const Journal& journal) const;
    /// Writes how far the change is. It needs no room on the disk.
    void enter(const Journal& journal) const;
    Journal read() const;
    void remove() const;
    /// Removes what make() has made, as far as it has come. That something stays is no harm: the
    /// file is as it was. What is of another change stays.
    void forget() const;

    const std::string& path() const noexcept { return path_; }

private:
    JournalFile(FileSystem& system, std::string path, std::string pointer)
        : system_(system), path_(std::move(path)), pointer_(std::move(pointer)) {}

    /// Removes a journal whose change died before the pointer to it was there.
    /// @param now  the status of the file, which that change has not touched.
    /// @throws InvalidFormat  the file has changed since, so the journal may still be needed.
    void removeUnused(const FileStatus& now) const;
    void write(const std::string& path, Types::ByteView bytes) const;
    void appear(const std::string& path, Types::ByteView bytes) const;

    FileSystem& system_;
    std::string path_;
    std::string pointer_; ///< the name of the pointer; empty for none
    bool isMade_ = false; ///< the journal has its name
    bool isPointedTo_ = false;
};

} // namespace Corvid::mxf
