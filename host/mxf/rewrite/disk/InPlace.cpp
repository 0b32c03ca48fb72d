#include "host/mxf/rewrite/disk/InPlace.h"

#include "host/base/Exceptions.h"
#include "host/mxf/rewrite/Segments.h"
#include "host/mxf/rewrite/disk/Blocks.h"
#include "host/mxf/rewrite/disk/JournalFile.h"

#include <algorithm>

namespace Corvid::mxf {

namespace {

using Access = FileSystem::Access;
using Phase = Journal::Phase;

/// A file and its journal.
class Change {
public:
    Change(const OpenFile& file, Journal journal, JournalFile journalFile)
        : system_(file.system()), file_(file), journal_(std::move(journal)),
          journalFile_(std::move(journalFile)) {}

    /// Makes the journal appear on the disk as a whole.
    void begin() { journalFile_.make(journal_); }

    /// Makes the file what it is to be.
    /// @return false where the file system inserts no blocks; then nothing has changed.
    bool forward() {
        const Insertion& insertion = journal_.insertion;
        if (insertion.size != 0) {
            if (!system_.insert(file_.number(), insertion.offset, insertion.size)) {
                return false;
            }
            // What is written next counts on the blocks.
            file_.sync();
            enter(Phase::writing);
        }
        file_.resize(journal_.newSize);
        file_.write(journal_.after);
        file_.sync();
        return true;
    }

    /// Makes the file what it was.
    void back() {
        if (journal_.insertion.size != 0) {
            takeOut();
        }
        // Where the file has a hole still, nothing is written: on a full disk nothing could be.
        for (const ByteRange& range : journal_.before) {
            const Bytes found = file_.read(range.offset, range.bytes.size());
            file_.write(differences({{range.offset, viewOf(found)}},
                                    {{range.offset, viewOf(range.bytes)}}));
        }
        file_.resize(journal_.status.size);
        file_.sync();
    }

    /// Lets forward() begin again, after back().
    void beginAgain() {
        if (journal_.insertion.size != 0) {
            journal_.data = dataFrom(file_, journal_.insertion.offset);
            journal_.phase = Phase::inserting;
            journal_.mostRuns = std::max<std::uint64_t>(journal_.mostRuns, journal_.data.size());
            journalFile_.replace(journal_);
        }
    }

    void end() { journalFile_.remove(); }
    void forget() { journalFile_.forget(); }

private:
    void enter(Phase phase) {
        journal_.phase = phase;
        journalFile_.enter(journal_);
    }

    /// Takes the inserted blocks out, however many of them are there.
    void takeOut() {
        const Insertion& insertion = journal_.insertion;
        if (journal_.phase == Phase::writing) {
            // A hole again, as it was inserted: so it can be found when it is taken out in part.
            file_.resize(journal_.status.size + insertion.size);
            system_.clear(file_.number(), insertion.offset, insertion.size);
            file_.sync();
            journal_.data =
                withoutHole(dataFrom(file_, insertion.offset), insertion.offset, insertion.size);
            enter(Phase::removing);
        }
        // The file is longer from the beginning of an insertion to the end of its removal.
        if (file_.status().size != journal_.status.size) {
            const auto hole =
                findHole(journal_.data, dataFrom(file_, insertion.offset), insertion.size);
            if (hole) {
                system_.collapse(file_.number(), *hole, insertion.size);
            }
            file_.resize(journal_.status.size);
            file_.sync();
        }
    }

    FileSystem& system_;
    const OpenFile& file_;
    Journal journal_;
    JournalFile journalFile_;
};

} // namespace

std::optional<FileStatus> rewriteInPlace(FileSystem& system, const std::string& path,
                                         const Rewrite& rewrite, const FileStatus& planned,
                                         const std::string& recoveryFolder) {
    if (rewrite.isEmpty()) {
        return std::nullopt;
    }
    const std::string target = system.resolve(path);
    const OpenFile file(system, target, Access::write);
    file.lock();
    file.lease();
    requireFinished(system, path);
    requireAsPlanned(file, path, planned);
    Change change(file, Journal::of(file, rewrite),
                  JournalFile(system, target, planned.inode, recoveryFolder));
    try {
        change.begin();
        requireAsPlanned(file, path, planned);
    } catch (const Exceptions::BaseException&) {
        change.forget();
        throw;
    }
    bool isDone = false;
    try {
        isDone = change.forward();
    } catch (const Exceptions::BaseException& error) {
        const std::string reason = Platform::toUtf8(error.message());
        try {
            change.back();
            change.end();
        } catch (const Exceptions::BaseException&) {
            throw Exceptions::IOError(
                reason + "; " + path + " is changed in part, run corvid recover", CORVID_HERE);
        }
        throw;
    }
    change.end();
    return isDone ? std::nullopt : std::optional(file.status());
}

void requireAsPlanned(const OpenFile& file, const std::string& path, const FileStatus& planned) {
    const auto named = file.system().find(path);
    if (file.status() != planned || !named || *named != planned) {
        throw Exceptions::InvalidArgument(
            path + " has changed since it was read, so nothing was written", CORVID_HERE);
    }
}

bool needsRecovery(FileSystem& system, const std::string& path) {
    return JournalFile::isThere(system, system.resolve(path));
}

void requireFinished(FileSystem& system, const std::string& path) {
    if (needsRecovery(system, path)) {
        throw Exceptions::InvalidFormat("an earlier change of " + path +
                                            " was not finished; run corvid recover first",
                                        CORVID_HERE);
    }
}

bool recover(FileSystem& system, const std::string& path, RecoveryGoal goal) {
    const std::string target = system.resolve(path);
    if (!JournalFile::isThere(system, target)) {
        return false;
    }
    const OpenFile file(system, target, Access::write);
    file.lock();
    file.lease();
    if (!JournalFile::isThere(system, target)) {
        return false; // the change ended meanwhile
    }
    JournalFile journalFile = JournalFile::find(system, target);
    Journal journal = journalFile.read();
    if (!journal.isOf(file)) {
        throw Exceptions::InvalidFormat(
            journalFile.path() + " is not of " + path +
                " as it is, so nothing was changed: the file has been replaced or changed since",
            CORVID_HERE);
    }
    const bool inserts = journal.insertion.size != 0;
    Change change(file, std::move(journal), std::move(journalFile));
    if (goal == RecoveryGoal::before || inserts) {
        change.back();
    }
    if (goal == RecoveryGoal::after) {
        change.beginAgain();
        if (!change.forward()) {
            throw Exceptions::IOError("the file system does not insert blocks into " + path +
                                          ", so it is as it was before the change",
                                      CORVID_HERE);
        }
    }
    change.end();
    return true;
}

} // namespace Corvid::mxf
