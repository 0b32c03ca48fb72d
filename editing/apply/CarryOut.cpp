#include "editing/apply/CarryOut.h"

#include "host/base/Exceptions.h"
#include "host/mxf/rewrite/InPlaceForm.h"
#include "host/mxf/rewrite/disk/InPlace.h"
#include "host/mxf/rewrite/disk/Journal.h"

#include <algorithm>
#include <filesystem>
#include <optional>

namespace Corvid::Editing {

namespace {

using mxf::FileSystem;
using mxf::OpenFile;

/// Gives a file back the time of modification that it has, unless nothing is to be kept.
class KeptTime {
public:
    KeptTime(const std::string& path, bool isKept) : path_(path) {
        if (isKept) {
            time_ = std::filesystem::last_write_time(path);
        }
    }
    void restore() const {
        std::error_code error;
        if (time_) {
            std::filesystem::last_write_time(path_, *time_, error);
        }
        if (error) {
            throw Exceptions::IOError("the edit is done, but " + path_ +
                                          " can't get its time back: " + error.message(),
                                      CORVID_HERE);
        }
    }

private:
    const std::string& path_;
    std::optional<std::filesystem::file_time_type> time_;
};

/// A file that goes away unless the edit succeeds.
class UndoFile {
public:
    UndoFile(FileSystem& system, const std::string& clip, const std::string& path,
             const mxf::Rewrite& rewrite)
        : system_(system), path_(path) {
        if (path.empty()) {
            return;
        }
        if (system.find(path)) {
            throw Exceptions::IOError(path + ": is there already, and is not replaced",
                                      CORVID_HERE);
        }
        const auto journal = mxf::Journal::of(
            OpenFile(system, system.resolve(clip), FileSystem::Access::read), rewrite);
        const OpenFile file(system, path, FileSystem::Access::create);
        isMade_ = true;
        file.write({{0, journal.coded()}});
        file.sync();
        system.syncFolderOf(path);
    }
    UndoFile(const UndoFile&) = delete;
    UndoFile& operator=(const UndoFile&) = delete;
    ~UndoFile() {
        if (isMade_) {
            try {
                system_.remove(path_);
            } catch (const Exceptions::BaseException&) {
                // It is in nobody's way, and what made the edit fail matters more.
            }
        }
    }

    void keep() noexcept { isMade_ = false; }

private:
    FileSystem& system_;
    const std::string& path_;
    bool isMade_ = false;
};

mxf::Journal readJournal(FileSystem& system, const std::string& path) {
    const OpenFile file(system, path, FileSystem::Access::read);
    return mxf::Journal::parse(file.read(0, file.status().size));
}

/// The status of a clip that has all changes of a journal, and no others.
mxf::FileStatus requireEdited(FileSystem& system, const std::string& clip, const std::string& undo,
                              const mxf::Journal& journal) {
    const OpenFile file(system, system.resolve(clip), FileSystem::Access::read);
    const mxf::FileStatus status = file.status();
    const bool isEdited =
        status.size == journal.newSize && journal.isOf(file) &&
        std::all_of(journal.after.begin(), journal.after.end(), [&](const mxf::ByteRange& range) {
            return file.read(range.offset, range.bytes.size()) == range.bytes;
        });
    if (!isEdited) {
        throw Exceptions::InvalidFormat(
            undo + " does not fit the clip, which is another one or has changed since the edit",
            CORVID_HERE);
    }
    return status;
}

/// The rewrite for a clip that is changed where it is; nothing where that can't be.
std::optional<mxf::Rewrite> inPlaceOf(FileSystem& system, const std::string& clip,
                                      DataIO::RandomAccessSource& source,
                                      const mxf::Rewrite& rewrite) {
    if (rewrite.insertions.empty()) {
        return rewrite;
    }
    const OpenFile file(system, system.resolve(clip), FileSystem::Access::read);
    return mxf::inPlaceForm(rewrite, source, system.insertionBlock(file.number()));
}

} // namespace

std::uint64_t blockSizeOf(FileSystem& system, const std::string& clip) {
    const OpenFile file(system, system.resolve(clip), FileSystem::Access::read);
    return std::max<std::uint64_t>(system.insertionBlock(file.number()), 1);
}

EditWay wayOf(FileSystem& system, const std::string& clip, DataIO::RandomAccessSource& source,
              const EditPlan& plan, const EditTarget& target) {
    if (!target.newFile.empty()) {
        return EditWay::newFile;
    }
    if (plan.rewrite.isEmpty()) {
        return EditWay::nothing;
    }
    return inPlaceOf(system, clip, source, plan.rewrite) ? EditWay::inPlace : EditWay::replace;
}

EditWay carryOut(FileSystem& system, const std::string& clip,
                 Templates::auto_ptr<DataIO::RandomAccessSource> source, const EditPlan& plan,
                 const mxf::FileStatus& planned, const EditTarget& target,
                 const mxf::CopyProgress& progress) {
    if (!target.undo.empty() &&
        (!target.newFile.empty() || plan.rewrite.newSize() != plan.rewrite.oldSize)) {
        throw Exceptions::InvalidArgument("only an edit in place can be undone: this one makes the "
                                          "file longer or writes another",
                                          CORVID_HERE);
    }
    if (!target.newFile.empty()) {
        writeNewFile(system, clip, target.newFile, plan.rewrite, planned, progress);
        return EditWay::newFile;
    }
    if (plan.rewrite.isEmpty()) {
        return EditWay::nothing;
    }
    const KeptTime time(clip, target.preservesTimes);
    EditWay way = EditWay::inPlace;
    UndoFile undo(system, clip, target.undo, plan.rewrite);
    const auto form = inPlaceOf(system, clip, *source, plan.rewrite);
    source.reset();
    // The status with which the clip is replaced, if it must be.
    const auto replaced = form ? mxf::rewriteInPlace(system, clip, *form, planned,
                                                     target.recoveryFolder.empty()
                                                         ? std::string()
                                                         : system.resolve(target.recoveryFolder))
                               : planned;
    if (replaced) {
        way = EditWay::replace;
        replaceFile(system, clip, plan.rewrite, *replaced, target.breaksLinks, progress);
    }
    undo.keep();
    time.restore();
    return way;
}

void undoEdit(FileSystem& system, const std::string& clip, const std::string& undo) {
    const mxf::Journal journal = readJournal(system, undo);
    // The recovery file of an interrupted edit has the same form.
    if (journal.newSize != journal.status.size) {
        throw Exceptions::InvalidFormat(
            undo + " is of an edit that made the clip longer, which can't be undone with it",
            CORVID_HERE);
    }
    mxf::Rewrite rewrite;
    rewrite.writes = journal.before;
    const mxf::FileStatus status = requireEdited(system, clip, undo, journal);
    rewrite.oldSize = status.size;
    rewriteInPlace(system, clip, rewrite, status);
}

} // namespace Corvid::Editing
