#pragma once

#include "host/mxf/rewrite/disk/InPlace.h"
#include "tests/mxf/rewrite/disk/ModelFiles.h"

namespace Corvid::Testing {

/// The only file on a disk, and what brings it back.
inline const std::string clip = "clip.mxf";
inline const std::string journalName = ".clip.mxf.corvid-recovery";
inline const mxf::Bytes oldBytes = pattern(300);

inline Disk diskWithClip() {
    Disk disk;
    disk.names[clip] = 1;
    disk.files[1] = oldBytes;
    return disk;
}

/// What a rewrite makes of bytes.
inline mxf::Bytes after(mxf::Bytes bytes, const mxf::Rewrite& rewrite) {
    for (const mxf::Insertion& insertion : rewrite.insertions) {
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(insertion.offset), insertion.size,
                     Types::u8{0});
    }
    bytes.resize(rewrite.newSize());
    for (const mxf::ByteRange& range : rewrite.writes) {
        std::copy(range.bytes.begin(), range.bytes.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(range.offset));
    }
    return bytes;
}

inline mxf::Rewrite rewriteOf(mxf::ByteRanges writes) {
    return {oldBytes.size(), {}, std::move(writes)};
}

/// Changes the clip, and dies on the way if the model says so.
/// @return whether it died.
inline bool change(ModelFiles& files, const mxf::Rewrite& rewrite,
                   const std::string& recoveryFolder = {}) {
    try {
        mxf::rewriteInPlace(files, clip, rewrite, *files.find(clip), recoveryFolder);
    } catch (const Crash&) {
        return true;
    }
    return false;
}

} // namespace Corvid::Testing
