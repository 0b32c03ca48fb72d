#include "host/mxf/rewrite/disk/JournalFile.h"

#include "host/base/Exceptions.h"

#include <algorithm>

namespace Corvid::mxf {

namespace {

using Access = FileSystem::Access;

/// What a pointer begins with; the path of the journal and the end of a line follow.
constexpr std::string_view pointerHead = "Corvid recovery file: ";

std::string unfinished(const std::string& path) { return path + ".new"; }

std::string textOf(FileSystem& system, const std::string& path) {
    const OpenFile file(system, path, Access::read);
    const Bytes bytes = file.read(0, file.status().size);
    return {bytes.begin(), bytes.end()};
}

Types::ByteView viewOf(const std::string& text) {
    return {reinterpret_cast<const Types::u8*>(text.data()), text.size()};
}

} // namespace

JournalFile::JournalFile(FileSystem& system, const std::string& path, std::uint64_t inode,
                         const std::string& folder)
    : system_(system), path_(Journal::pathFor(path)) {
    if (!folder.empty()) {
        // Files of one name in several folders may have their journals in one.
        const std::string name = path.substr(path.rfind('/') + 1) + "-" + std::to_string(inode);
        pointer_ = path_;
        path_ = Journal::pathFor(folder + "/" + name);
    }
}

bool JournalFile::isThere(FileSystem& system, const std::string& path) {
    return system.find(Journal::pathFor(path)).has_value();
}

JournalFile JournalFile::find(FileSystem& system, const std::string& path) {
    const std::string beside = Journal::pathFor(path);
    std::string text = textOf(system, beside);
    if (text.compare(0, pointerHead.size(), pointerHead) != 0) {
        return {system, beside, ""};
    }
    if (text.back() != '\n') {
        throw Exceptions::InvalidFormat(beside + " is damaged: it does not end with a line",
                                        CORVID_HERE);
    }
    text = text.substr(pointerHead.size(), text.size() - pointerHead.size() - 1);
    if (!system.find(text)) {
        throw Exceptions::InvalidFormat("the recovery file " + text + ", to which " + beside +
                                            " points, is not there",
                                        CORVID_HERE);
    }
    return {system, text, beside};
}

void JournalFile::write(const std::string& path, Types::ByteView bytes) const {
    removeIfThere(system_, path);
    const OpenFile file(system_, path, Access::create);
    system_.writeAt(file.number(), 0, bytes);
    file.sync();
}

void JournalFile::appear(const std::string& path, Types::ByteView bytes) const {
    write(unfinished(path), bytes);
    system_.renameToNew(unfinished(path), path);
}

void JournalFile::removeUnused(const FileStatus& now) const {
    if (pointer_.empty() || !system_.find(path_)) {
        return;
    }
    if (read().status != now) {
        throw Exceptions::InvalidFormat(path_ +
                                            " is there already, the recovery file of an earlier "
                                            "change to which nothing beside the file points",
                                        CORVID_HERE);
    }
    system_.remove(path_);
}

void JournalFile::make(const Journal& journal) {
    removeUnused(journal.status);
    appear(path_, mxf::viewOf(journal.coded()));
    isMade_ = true;
    system_.syncFolderOf(path_);
    if (!pointer_.empty()) {
        appear(pointer_, viewOf(std::string(pointerHead) + path_ + "\n"));
        isPointedTo_ = true;
        system_.syncFolderOf(pointer_);
    }
}

void JournalFile::replace(const Journal& journal) const {
    write(unfinished(path_), mxf::viewOf(journal.coded()));
    system_.renameOver(unfinished(path_), path_);
    system_.syncFolderOf(path_);
}

void JournalFile::enter(const Journal& journal) const {
    const OpenFile file(system_, path_, Access::write);
    file.write({journal.codedPhase()});
    file.sync();
}

Journal JournalFile::read() const {
    const OpenFile file(system_, path_, Access::read);
    return Journal::parse(file.read(0, file.status().size));
}

void JournalFile::remove() const {
    // The pointer first: one that points to nothing would say that the file can't be brought back.
    if (!pointer_.empty()) {
        system_.remove(pointer_);
        system_.syncFolderOf(pointer_);
    }
    system_.remove(path_);
    system_.syncFolderOf(path_);
}

void JournalFile::forget() const {
    try {
        if (isMade_ && !pointer_.empty()) {
            removeIfThere(system_, isPointedTo_ ? pointer_ : unfinished(pointer_));
        }
        removeIfThere(system_, isMade_ ? path_ : unfinished(path_));
    } catch (const Exceptions::IOError&) {
        return;
    }
}

} // namespace Corvid::mxf
