#include "host/mxf/rewrite/disk/SystemFiles.h"

#include "host/base/Exceptions.h"
#include "host/dataio/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <linux/falloc.h>
#include <linux/magic.h>
#include <memory>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace Corvid::mxf {

namespace {

using DataIO::throwSystemError;

constexpr unsigned long xfsMagic = 0x58465342; ///< which linux/magic.h lacks

/// Calls until no signal interrupts.
template <class Call> auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1000000000 + time.tv_nsec;
}

FileStatus statusOf(const struct stat& found) {
    FileStatus status;
    status.size = static_cast<std::uint64_t>(found.st_size);
    status.inode = found.st_ino;
    status.links = found.st_nlink;
    status.modified = nanoseconds(found.st_mtim);
    status.changed = nanoseconds(found.st_ctim);
    return status;
}

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

off_t offsetOf(std::uint64_t offset) { return static_cast<off_t>(offset); }

/// Asks for a lease on an open file; a signal that nobody minds says that another program waits for
/// it.
/// @return 0, or the reason why the system grants none.
int setLease(int file, int type) {
    ::fcntl(file, F_SETSIG, SIGURG);
    return ::fcntl(file, F_SETLEASE, type) == 0 ? 0 : errno;
}

/// Whether a program has a file open to write it, as far as the system says so: then it grants no
/// lease to a reader.
bool isOpenToWrite(const std::string& path) {
    const auto file = DataIO::FileDescriptor::owning(
        uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
    return file.isOpen() && setLease(file.number(), F_RDLCK) == EAGAIN;
}

mode_t newFileMode(FileSystem::Access access) {
    return access == FileSystem::Access::share ? 0666 : 0600;
}

/// Makes a file without a name in the folder of a path, where the file system can.
/// @return its number; negative where it can't.
int nameless(const std::string& path, mode_t mode) {
    const std::string folder = folderOf(path);
    return uninterrupted(
        [&] { return ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode); });
}

bool link(int file, const std::string& path) {
    const std::string open = "/proc/self/fd/" + std::to_string(file);
    return ::linkat(AT_FDCWD, open.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

/// The names of the extended attributes of a file, each with a zero at its end.
std::string attributeNames(int file, const std::string& name) {
    std::string names;
    ssize_t size = 0;
    do {
        size = ::flistxattr(file, nullptr, 0);
        if (size <= 0) {
            break;
        }
        names.resize(static_cast<std::size_t>(size));
        size = ::flistxattr(file, names.data(), names.size());
    } while (size < 0 && errno == ERANGE);
    if (size < 0 && errno != ENOTSUP) {
        throwSystemError("can't read the extended attributes of " + name, errno);
    }
    names.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return names;
}

} // namespace

const std::string& SystemFiles::nameOf(int file) const { return open_.at(file).name; }

std::string SystemFiles::resolve(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path.c_str(), nullptr),
                                                          &std::free);
    if (!resolved) {
        throwSystemError("can't open " + path, errno);
    }
    return resolved.get();
}

std::optional<FileStatus> SystemFiles::find(const std::string& path) {
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) {
        if (errno == ENOENT || errno == ENAMETOOLONG) {
            return std::nullopt;
        }
        throwSystemError("can't look for " + path, errno);
    }
    return statusOf(found);
}

int SystemFiles::open(const std::string& path, Access access) {
    const bool creates = access == Access::create || access == Access::share;
    const int flags = access == Access::read ? O_RDONLY
                      : creates              ? O_RDWR | O_CREAT | O_EXCL
                                             : O_RDWR;
    const bool isWrittenByOther = access == Access::write && isOpenToWrite(path);
    const int file =
        uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, newFileMode(access)); });
    if (file < 0) {
        throwSystemError((creates ? "can't make " : "can't open ") + path, errno);
    }
    open_[file] = {path, isWrittenByOther, false};
    return file;
}

int SystemFiles::openNameless(const std::string& path, Access access) {
    {
        // File systems, systems without /proc and sandboxes refuse one step or the other: only
        // trying shows it, with a file of its own, because one that had a name gets no other.
        const auto trial =
            DataIO::FileDescriptor::owning(nameless(path, newFileMode(Access::create)));
        if (!trial.isOpen() || !link(trial.number(), path)) {
            return open(path, access);
        }
        remove(path);
    }
    const int file = nameless(path, newFileMode(access));
    if (file < 0) {
        throwSystemError("can't make " + path, errno);
    }
    open_[file] = {path, false, true};
    return file;
}

void SystemFiles::giveName(int file, const std::string& path) {
    bool& isNameless = open_.at(file).isNameless;
    if (isNameless && !link(file, path)) {
        throwSystemError("can't make " + path, errno);
    }
    isNameless = false;
}

void SystemFiles::close(int file) noexcept {
    ::close(file);
    open_.erase(file);
}

void SystemFiles::lock(int file) {
    // Of the open file, not of the process: it goes with it, and no other close() ends it.
    struct flock whole {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    if (uninterrupted([&] { return ::fcntl(file, F_OFD_SETLK, &whole); }) != 0) {
        if (errno == EAGAIN || errno == EACCES) {
            throw Exceptions::IOError("another program has locked " + nameOf(file) +
                                          ", perhaps to change it too; nothing was written",
                                      CORVID_HERE);
        }
        lacksLocks_ = true;
    }
    if (open_.at(file).isWrittenByOther) {
        throw Exceptions::IOError(
            "another program has " + nameOf(file) +
                " open to write it, perhaps to record it; nothing was written",
            CORVID_HERE);
    }
}

void SystemFiles::lease(int file) {
    const int error = setLease(file, F_WRLCK);
    lastLease_ = error == 0        ? Lease::granted
                 : error == EAGAIN ? Lease::openElsewhere
                                   : Lease::unknown;
}

FileStatus SystemFiles::status(int file) {
    struct stat found {};
    if (::fstat(file, &found) != 0) {
        throwSystemError("can't look at " + nameOf(file), errno);
    }
    return statusOf(found);
}

std::size_t SystemFiles::readAt(int file, std::uint64_t offset, Types::u8* to, std::size_t count) {
    std::size_t got = 0;
    while (got != count) {
        const ssize_t n = uninterrupted(
            [&] { return ::pread(file, to + got, count - got, offsetOf(offset + got)); });
        if (n < 0) {
            throwSystemError("can't read " + nameOf(file), errno);
        }
        if (n == 0) {
            break;
        }
        got += static_cast<std::size_t>(n);
    }
    return got;
}

void SystemFiles::writeAt(int file, std::uint64_t offset, Types::ByteView bytes) {
    std::size_t done = 0;
    while (done != bytes.size) {
        const ssize_t n = uninterrupted([&] {
            return ::pwrite(file, bytes.data + done, bytes.size - done, offsetOf(offset + done));
        });
        if (n < 0) {
            throwSystemError("can't write " + nameOf(file), errno);
        }
        done += static_cast<std::size_t>(n);
    }
}

void SystemFiles::resize(int file, std::uint64_t size) {
    if (uninterrupted([&] { return ::ftruncate(file, offsetOf(size)); }) != 0) {
        throwSystemError("can't set the size of " + nameOf(file), errno);
    }
}

void SystemFiles::sync(int file) {
    if (uninterrupted([&] { return ::fsync(file); }) != 0) {
        throwSystemError("can't write " + nameOf(file) + " to the disk", errno);
    }
}

std::uint64_t SystemFiles::insertionBlock(int file) {
    struct statfs found {};
    if (::fstatfs(file, &found) != 0) {
        throwSystemError("can't look at the file system of " + nameOf(file), errno);
    }
    const bool inserts =
        found.f_type == EXT4_SUPER_MAGIC || static_cast<unsigned long>(found.f_type) == xfsMagic;
    return inserts ? static_cast<std::uint64_t>(found.f_bsize) : 0;
}

bool SystemFiles::insert(int file, std::uint64_t offset, std::uint64_t size) {
    if (uninterrupted([&] {
            return ::fallocate(file, FALLOC_FL_INSERT_RANGE, offsetOf(offset), offsetOf(size));
        }) == 0) {
        return true;
    }
    if (errno == EOPNOTSUPP || errno == EINVAL) {
        return false;
    }
    throwSystemError("can't insert blocks into " + nameOf(file), errno);
}

void SystemFiles::collapse(int file, std::uint64_t offset, std::uint64_t size) {
    if (uninterrupted([&] {
            return ::fallocate(file, FALLOC_FL_COLLAPSE_RANGE, offsetOf(offset), offsetOf(size));
        }) != 0) {
        throwSystemError("can't take blocks out of " + nameOf(file), errno);
    }
}

void SystemFiles::clear(int file, std::uint64_t offset, std::uint64_t size) {
    if (uninterrupted([&] {
            return ::fallocate(file, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, offsetOf(offset),
                               offsetOf(size));
        }) != 0) {
        throwSystemError("can't clear blocks of " + nameOf(file), errno);
    }
}

std::optional<DataRun> SystemFiles::nextData(int file, std::uint64_t offset) {
    const off_t data = ::lseek(file, offsetOf(offset), SEEK_DATA);
    if (data < 0 && errno == ENXIO) {
        return std::nullopt;
    }
    // Where a file system does not know its holes, all is data.
    const off_t hole = data < 0 ? ::lseek(file, 0, SEEK_END) : ::lseek(file, data, SEEK_HOLE);
    if (hole < 0) {
        throwSystemError("can't look for the data of " + nameOf(file), errno);
    }
    const DataRun run{data < 0 ? offset : static_cast<std::uint64_t>(data),
                      static_cast<std::uint64_t>(hole)};
    return run.begin < run.end ? std::optional(run) : std::nullopt;
}

void SystemFiles::copyRange(int from, std::uint64_t offset, int to, std::uint64_t toOffset,
                            std::uint64_t size) {
    constexpr std::size_t bufferSize = 1024 * 1024;
    std::uint64_t done = 0;
    while (done != size) {
        loff_t in = offsetOf(offset + done);
        loff_t out = offsetOf(toOffset + done);
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size - done, INT_MAX));
        const ssize_t n =
            uninterrupted([&] { return ::copy_file_range(from, &in, to, &out, wanted, 0); });
        if (n < 0 && (errno == ENOSPC || errno == EIO || errno == EDQUOT || errno == EFBIG)) {
            throwSystemError("can't write " + nameOf(to), errno);
        }
        if (n <= 0) {
            break; // not between these files
        }
        done += static_cast<std::uint64_t>(n);
    }
    Bytes buffer(static_cast<std::size_t>(std::min<std::uint64_t>(size - done, bufferSize)));
    while (done != size) {
        const std::size_t got =
            readAt(from, offset + done, buffer.data(),
                   static_cast<std::size_t>(std::min<std::uint64_t>(size - done, buffer.size())));
        if (got == 0) {
            throw Exceptions::IOError(nameOf(from) + " has become shorter", CORVID_HERE);
        }
        writeAt(to, toOffset + done, {buffer.data(), got});
        done += got;
    }
}

void SystemFiles::copyAttributes(int from, int to) {
    struct stat found {};
    struct stat own {};
    if (::fstat(from, &found) != 0 || ::fstat(to, &own) != 0) {
        throwSystemError("can't look at " + nameOf(from), errno);
    }
    if ((found.st_uid != own.st_uid || found.st_gid != own.st_gid) &&
        ::fchown(to, found.st_uid, found.st_gid) != 0) {
        throwSystemError("can't give " + nameOf(to) + " the owner of " + nameOf(from), errno);
    }
    if (::fchmod(to, found.st_mode & 07777) != 0) {
        throwSystemError("can't give " + nameOf(to) + " the mode of " + nameOf(from), errno);
    }
    const std::string names = attributeNames(from, nameOf(from));
    for (std::size_t at = 0; at < names.size();) {
        const std::string name = names.c_str() + at;
        at += name.size() + 1;
        constexpr std::size_t greatestAttribute = 65536;
        Bytes value(greatestAttribute);
        const ssize_t size = ::fgetxattr(from, name.c_str(), value.data(), value.size());
        if (size < 0 ||
            ::fsetxattr(to, name.c_str(), value.data(), static_cast<std::size_t>(size), 0) != 0) {
            throwSystemError("can't give " + nameOf(to) + " the attribute " + name + " of " +
                                 nameOf(from),
                             errno);
        }
    }
}

void SystemFiles::renameToNew(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return;
    }
    if (errno == EINVAL || errno == ENOSYS) { // the file system can't
        if (::link(from.c_str(), to.c_str()) == 0) {
            remove(from);
            return;
        }
    }
    throwSystemError("can't rename " + from + " to " + to, errno);
}

void SystemFiles::renameOver(const std::string& from, const std::string& to) {
    if (::rename(from.c_str(), to.c_str()) != 0) {
        throwSystemError("can't rename " + from + " to " + to, errno);
    }
}

void SystemFiles::remove(const std::string& path) {
    if (::unlink(path.c_str()) != 0) {
        throwSystemError("can't remove " + path, errno);
    }
}

void SystemFiles::syncFolderOf(const std::string& path) {
    const std::string folder = folderOf(path);
    const auto file = DataIO::FileDescriptor::owning(
        uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    // Some file systems have no sync of folders; their names are as safe as they can be.
    if (!file.isOpen() || (::fsync(file.number()) != 0 && errno != EINVAL)) {
        throwSystemError("can't write the folder " + folder + " to the disk", errno);
    }
}

} // namespace Corvid::mxf
