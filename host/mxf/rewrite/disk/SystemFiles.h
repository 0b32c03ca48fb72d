#pragma once

#include "host/mxf/rewrite/disk/FileSystem.h"

namespace Corvid::mxf {

/// The files of the operating system.
class CORVID_EXPORT SystemFiles : public FileSystem {
public:
    std::string resolve(const std::string& path) override;
    std::optional<FileStatus> find(const std::string& path) override;
    int open(const std::string& path, Access access) override;
    int openNameless(const std::string& path, Access access) override;
    void giveName(int file, const std::string& path) override;
    void close(int file) noexcept override;
    void lock(int file) override;
    /// Whether a file system had no locks for a file that was to be locked.
    bool lacksLocks() const noexcept { return lacksLocks_; }
    /// Programs that open the file wait for at most the seconds in /proc/sys/fs/lease-break-time.
    void lease(int file) override;

    /// What the system said when a file was to be leased.
    enum class Lease : unsigned char {
        granted,       ///< or never asked for
        openElsewhere, ///< another program has the file open
        unknown,       ///< the file system has none, or the file is another user's
    };
    Lease lastLease() const noexcept { return lastLease_; }
    FileStatus status(int file) override;
    std::size_t readAt(int file, std::uint64_t offset, Types::u8* to, std::size_t count) override;
    void writeAt(int file, std::uint64_t offset, Types::ByteView bytes) override;
    void resize(int file, std::uint64_t size) override;
    void sync(int file) override;
    /// Only of file systems that insert blocks by changing their own tables: others offer the call
    /// but copy.
    std::uint64_t insertionBlock(int file) override;
    bool insert(int file, std::uint64_t offset, std::uint64_t size) override;
    void collapse(int file, std::uint64_t offset, std::uint64_t size) override;
    void clear(int file, std::uint64_t offset, std::uint64_t size) override;
    std::optional<DataRun> nextData(int file, std::uint64_t offset) override;
    /// Blocks are shared where the file system can.
    void copyRange(int from, std::uint64_t offset, int to, std::uint64_t toOffset,
                   std::uint64_t size) override;
    void copyAttributes(int from, int to) override;
    void renameToNew(const std::string& from, const std::string& to) override;
    void renameOver(const std::string& from, const std::string& to) override;
    void remove(const std::string& path) override;
    void syncFolderOf(const std::string& path) override;

private:
    struct Open {
        std::string name;              ///< for messages
        bool isWrittenByOther = false; ///< when it was opened to write
        bool isNameless = false;       ///< the name is the one that it will have
    };

    const std::string& nameOf(int file) const;

    Templates::map<int, Open> open_; ///< by their numbers
    bool lacksLocks_ = false;
    Lease lastLease_ = Lease::granted;
};

} // namespace Corvid::mxf
