#include "host/mxf/rewrite/disk/InPlace.h"

#include "host/base/Exceptions.h"
#include "host/mxf/rewrite/disk/Journal.h"

namespace Corvid::mxf {

namespace {

using Access = FileSystem::Access;

void requireAsPlanned(const OpenFile& file, const std::string& path, const FileStatus& planned) {
    if (file.status() != planned) {
        throw Exceptions::InvalidArgument(
            path + " has changed since it was read, so nothing was written", CORVID_HERE);
    }
}

std::string unfinishedName(const std::string& path) { return path + ".new"; }

/// Makes the journal appear on the disk as a whole.
void store(FileSystem& system, const Bytes& journal, const std::string& path) {
    const std::string unfinished = unfinishedName(path);
    {
        const OpenFile file(system, unfinished, Access::create);
        system.writeAt(file.number(), 0, viewOf(journal));
        file.sync();
    }
    system.renameToNew(unfinished, path);
    system.syncFolderOf(path);
}

void drop(FileSystem& system, const std::string& path) {
    system.remove(path);
    system.syncFolderOf(path);
}

/// Removes what is left of a journal that was not needed. That it stays is no harm: the file is as
/// it was.
void forget(FileSystem& system, const std::string& path) {
    for (const std::string& name : {path, unfinishedName(path)}) {
        try {
            if (system.find(name)) {
                system.remove(name);
            }
        } catch (const Exceptions::IOError&) {
            return;
        }
    }
}

void bring(const OpenFile& file, const Journal& journal, RecoveryGoal goal) {
    if (goal == RecoveryGoal::before) {
        file.write(journal.before);
        file.resize(journal.status.size);
    } else {
        file.resize(journal.newSize);
        file.write(journal.after);
    }
    file.sync();
}

} // namespace

void rewriteInPlace(FileSystem& system, const std::string& path, const Rewrite& rewrite,
                    const FileStatus& planned) {
    if (rewrite.isEmpty()) {
        return;
    }
    const std::string target = system.resolve(path);
    const std::string journalPath = Journal::pathFor(target);
    requireFinished(system, path);
    const OpenFile file(system, target, Access::write);
    requireAsPlanned(file, path, planned);
    const Journal journal = Journal::of(file, rewrite);
    try {
        store(system, journal.coded(), journalPath);
        requireAsPlanned(file, path, planned);
    } catch (const Exceptions::BaseException&) {
        forget(system, journalPath);
        throw;
    }
    try {
        bring(file, journal, RecoveryGoal::after);
    } catch (const Exceptions::IOError& error) {
        const std::string reason = Platform::toUtf8(error.message());
        try {
            bring(file, journal, RecoveryGoal::before);
            drop(system, journalPath);
        } catch (const Exceptions::IOError&) {
            throw Exceptions::IOError(
                reason + "; " + path + " is changed in part, run corvid recover", CORVID_HERE);
        }
        throw;
    }
    drop(system, journalPath);
}

bool needsRecovery(FileSystem& system, const std::string& path) {
    return system.find(Journal::pathFor(system.resolve(path))).has_value();
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
    const std::string journalPath = Journal::pathFor(target);
    const auto found = system.find(journalPath);
    if (!found) {
        return false;
    }
    const Journal journal =
        Journal::parse(OpenFile(system, journalPath, Access::read).read(0, found->size));
    const OpenFile file(system, target, Access::write);
    if (!journal.isOf(file)) {
        throw Exceptions::InvalidFormat(
            journalPath + " is not of " + path +
                " as it is, so nothing was changed: the file has been replaced or changed since",
            CORVID_HERE);
    }
    bring(file, journal, goal);
    drop(system, journalPath);
    return true;
}

} // namespace Corvid::mxf
