#pragma once

#include "host/mxf/rewrite/Bytes.h"

#include <optional>
#include <string>

namespace Corvid::mxf {

/// What a file system says of a file.
struct FileStatus {
    std::uint64_t size = 0; ///< in bytes
    std::uint64_t inode = 0;
    std::uint64_t links = 1;
    std::int64_t modified = 0; ///< in nanoseconds since 1970
    std::int64_t changed = 0;  ///< of content or attributes, likewise

    friend bool operator==(const FileStatus& a, const FileStatus& b) noexcept {
        return a.size == b.size && a.inode == b.inode && a.modified == b.modified &&
               a.changed == b.changed;
    }
    friend bool operator!=(const FileStatus& a, const FileStatus& b) noexcept { return !(a == b); }
};

/// Bytes of a file that are there, between holes.
struct DataRun {
    std::uint64_t begin = 0; ///< in bytes from the front of the file
    std::uint64_t end = 0;   ///< after the last one

    friend bool operator==(const DataRun& a, const DataRun& b) noexcept {
        return a.begin == b.begin && a.end == b.end;
    }
};

using DataRuns = Templates::vector<DataRun>;

/// The calls by which files are changed. What they do is on the disk only after sync() and
/// syncFolderOf().
///
/// All throw IOError where the system refuses, with the path and the system's reason.
class CORVID_EXPORT FileSystem {
public:
    /// What a file is opened for.
    enum class Access : unsigned char {
        read,
        write,  ///< of a file that is there; also reads
        create, ///< of a new file that only its owner may read; no file has the name before
        share,  ///< the same that others may read as the process lets them
    };

    virtual ~FileSystem();

    /// The path without symbolic links, which names what is changed.
    virtual std::string resolve(const std::string& path) = 0;
    /// Nothing where there is no such file.
    virtual std::optional<FileStatus> find(const std::string& path) = 0;

    /// @return a number for the calls below, until close().
    virtual int open(const std::string& path, Access access) = 0;
    /// Makes a new file that gets its name with giveName(), so that it goes with the process that
    /// dies before. Where the system can't do that, it has the name at once.
    /// @param access  create or share.
    virtual int openNameless(const std::string& path, Access access);
    /// Gives a file of openNameless() its name, which no other has.
    virtual void giveName(int file, const std::string& path);
    virtual void close(int file) noexcept = 0;
    /// Keeps all who ask for this from changing a file that is open to write, until it is closed.
    /// Where a file system has no locks, nothing is kept from it.
    /// @throws IOError  another one has the lock, or has the file open to write.
    virtual void lock(int file) = 0;
    /// Lets all who open a file wait until it is closed here, where the system can.
    virtual void lease(int file) = 0;
    virtual FileStatus status(int file) = 0;
    /// @return how many bytes were read; fewer than count only at the end of the file.
    virtual std::size_t readAt(int file, std::uint64_t offset, Types::u8* to,
                               std::size_t count) = 0;
    virtual void writeAt(int file, std::uint64_t offset, Types::ByteView bytes) = 0;
    virtual void resize(int file, std::uint64_t size) = 0;
    /// Returns when content and size of the file are on the disk.
    virtual void sync(int file) = 0;

    /// The size of the blocks that can be inserted into a file, in bytes; 0 where none can.
    virtual std::uint64_t insertionBlock(int file) = 0;
    /// Inserts a hole; what follows moves towards the end. Offset and size are whole blocks.
    /// @return false where the file system refuses; then nothing has changed.
    virtual bool insert(int file, std::uint64_t offset, std::uint64_t size) = 0;
    /// Takes out blocks; what follows moves towards the front.
    virtual void collapse(int file, std::uint64_t offset, std::uint64_t size) = 0;
    /// Makes a hole of blocks.
    virtual void clear(int file, std::uint64_t offset, std::uint64_t size) = 0;
    /// The first run of data that ends after an offset, as far as it is after it; nothing where
    /// only a hole follows.
    virtual std::optional<DataRun> nextData(int file, std::uint64_t offset) = 0;

    /// Copies bytes from one file to another.
    virtual void copyRange(int from, std::uint64_t offset, int to, std::uint64_t toOffset,
                           std::uint64_t size) = 0;
    /// Gives a file the owner, mode, access lists and extended attributes of another.
    virtual void copyAttributes(int from, int to) = 0;

    /// Renames a file to a name that is not in use.
    virtual void renameToNew(const std::string& from, const std::string& to) = 0;
    /// Renames a file; what had the name goes.
    virtual void renameOver(const std::string& from, const std::string& to) = 0;
    virtual void remove(const std::string& path) = 0;
    /// Returns when the names in the folder of the path are on the disk.
    virtual void syncFolderOf(const std::string& path) = 0;
};

/// Removes a file, if it is there.
void removeIfThere(FileSystem& system, const std::string& path);

/// An open file that closes itself.
class CORVID_EXPORT OpenFile {
public:
    OpenFile(FileSystem& system, const std::string& path, FileSystem::Access access)
        : OpenFile(system, system.open(path, access)) {}
    /// Makes a file that has no name until giveName().
    static OpenFile nameless(FileSystem& system, const std::string& path,
                             FileSystem::Access access) {
        return {system, system.openNameless(path, access)};
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() { system_.close(number_); }

    int number() const noexcept { return number_; }
    void giveName(const std::string& path) const { system_.giveName(number_, path); }
    void lock() const { system_.lock(number_); }
    void lease() const { system_.lease(number_); }
    FileStatus status() const { return system_.status(number_); }
    /// Reads exactly so many bytes.
    /// @throws IOError  the file is shorter.
    Bytes read(std::uint64_t offset, std::uint64_t size) const;
    void write(const ByteRanges& ranges) const;
    void resize(std::uint64_t size) const { system_.resize(number_, size); }
    void sync() const { system_.sync(number_); }
    FileSystem& system() const noexcept { return system_; }

private:
    OpenFile(FileSystem& system, int number) : system_(system), number_(number) {}

    FileSystem& system_;
    int number_;
};

} // namespace Corvid::mxf
