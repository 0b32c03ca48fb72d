#include "host/mxf/rewrite/disk/FileSystem.h"

#include "host/base/Exceptions.h"

namespace Corvid::mxf {

FileSystem::~FileSystem() = default;

int FileSystem::openNameless(const std::string& path, Access access) { return open(path, access); }

void FileSystem::giveName(int, const std::string&) {}

void removeIfThere(FileSystem& system, const std::string& path) {
    if (system.find(path)) {
        system.remove(path);
    }
}

Bytes OpenFile::read(std::uint64_t offset, std::uint64_t size) const {
    const std::uint64_t there = status().size;
    if (offset > there || size > there - offset) {
        throw Exceptions::IOError("the file ends at byte " + std::to_string(there) + ", expected " +
                                      std::to_string(size) + " bytes from byte " +
                                      std::to_string(offset),
                                  CORVID_HERE);
    }
    Bytes bytes(static_cast<std::size_t>(size));
    if (system_.readAt(number_, offset, bytes.data(), bytes.size()) != bytes.size()) {
        throw Exceptions::IOError("the file has become shorter", CORVID_HERE);
    }
    return bytes;
}

void OpenFile::write(const ByteRanges& ranges) const {
    for (const ByteRange& range : ranges) {
        system_.writeAt(number_, range.offset, viewOf(range.bytes));
    }
}

} // namespace Corvid::mxf
