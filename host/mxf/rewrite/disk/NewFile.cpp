#include "host/mxf/rewrite/disk/NewFile.h"

#include "host/base/Exceptions.h"
#include "host/mxf/rewrite/disk/InPlace.h"

#include <algorithm>

namespace Corvid::mxf {

namespace {

using Access = FileSystem::Access;

/// The bytes that are copied between two reports of the progress.
constexpr std::uint64_t pieceSize = 64 * 1024 * 1024;

/// A name beside a file for what will take its place.
std::string temporaryName(const std::string& path) {
    const auto slash = path.rfind('/');
    const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
    return path.substr(0, name) + "." + path.substr(name) + ".corvid-new";
}

class Copy {
public:
    Copy(FileSystem& system, const OpenFile& from, const OpenFile& to, const Rewrite& rewrite,
         const CopyProgress& progress)
        : system_(system), from_(from), to_(to), rewrite_(rewrite), progress_(progress) {}

    void run() {
        to_.resize(rewrite_.newSize());
        std::uint64_t position = 0;
        std::uint64_t shift = 0;
        for (const Insertion& insertion : rewrite_.insertions) {
            copy(position, insertion.offset, shift);
            position = insertion.offset;
            shift += insertion.size;
        }
        copy(position, rewrite_.oldSize, shift);
        to_.write(rewrite_.writes);
        to_.sync();
    }

private:
    void copy(std::uint64_t begin, std::uint64_t end, std::uint64_t shift) {
        while (begin != end) {
            if (begin >= data_.end) {
                data_ = system_.nextData(from_.number(), begin)
                            .value_or(DataRun{rewrite_.oldSize, rewrite_.oldSize});
            }
            if (begin < data_.begin) {
                begin = std::min(end, data_.begin); // a hole stays one
            } else {
                const std::uint64_t size = std::min({end - begin, data_.end - begin, pieceSize});
                system_.copyRange(from_.number(), begin, to_.number(), begin + shift, size);
                begin += size;
            }
            if (progress_) {
                progress_(begin, rewrite_.oldSize);
            }
        }
    }

    FileSystem& system_;
    const OpenFile& from_;
    const OpenFile& to_;
    const Rewrite& rewrite_;
    const CopyProgress& progress_;
    DataRun data_; ///< the last that was looked for: to look takes time that grows with the run
};

void removeQuietly(FileSystem& system, const std::string& path) {
    try {
        removeIfThere(system, path);
    } catch (const Exceptions::IOError&) {
        return;
    }
}

/// Whether a name is still that of a file that was made with it.
bool isOwn(const OpenFile& file, const std::string& path) {
    const auto named = file.system().find(path);
    return named && named->inode == file.status().inode;
}

/// @param takesPlace  whether the new file takes the place of the old one, with its attributes.
void write(FileSystem& system, const std::string& from, const std::string& to,
           const Rewrite& rewrite, const FileStatus& planned, bool takesPlace,
           const CopyProgress& progress) {
    const std::string temporary = temporaryName(to);
    // What may not be written is not replaced either.
    const OpenFile old(system, from, takesPlace ? Access::write : Access::read);
    if (takesPlace) {
        old.lock();
    }
    for (const std::string& name : {from, to}) {
        if (system.find(name)) {
            requireFinished(system, name);
        }
    }
    requireAsPlanned(old, from, planned);
    removeIfThere(system, temporary);
    // It may be as long as a clip is: nobody wants to find what is left of it.
    const OpenFile file =
        OpenFile::nameless(system, temporary, takesPlace ? Access::create : Access::share);
    try {
        if (takesPlace) {
            system.copyAttributes(old.number(), file.number());
        }
        Copy(system, old, file, rewrite, progress).run();
        requireAsPlanned(old, from, planned);
        file.giveName(temporary);
        if (!isOwn(file, temporary)) {
            throw Exceptions::IOError("another program writes " + to + " too", CORVID_HERE);
        }
        system.renameOver(temporary, to);
    } catch (...) {
        if (isOwn(file, temporary)) {
            removeQuietly(system, temporary);
        }
        throw;
    }
    system.syncFolderOf(to);
}

} // namespace

void writeNewFile(FileSystem& system, const std::string& from, const std::string& to,
                  const Rewrite& rewrite, const FileStatus& planned, const CopyProgress& progress) {
    write(system, system.resolve(from), to, rewrite, planned, false, progress);
}

void replaceFile(FileSystem& system, const std::string& path, const Rewrite& rewrite,
                 const FileStatus& planned, bool breakLinks, const CopyProgress& progress) {
    if (planned.links > 1 && !breakLinks) {
        throw Exceptions::InvalidArgument(
            path + " has " + std::to_string(planned.links) +
                " hard links, and the others would keep the old file, so nothing was written",
            CORVID_HERE);
    }
    const std::string target = system.resolve(path);
    write(system, target, target, rewrite, planned, true, progress);
}

} // namespace Corvid::mxf
