#include "host/mxf/rewrite/FileHashes.h"

#include "host/base/Exceptions.h"

#include <algorithm>
#include <sodium/crypto_generichash.h>

namespace Corvid::mxf {

Templates::vector<FileRange> essenceOf(RewritableFile& file) {
    Templates::vector<FileRange> ranges;
    for (std::size_t i = 0; i != file.partitions().size(); ++i) {
        const FileRange range = file.afterMetadata(i);
        if (range.begin < range.end) {
            ranges.push_back(range);
        }
    }
    return ranges;
}

ContentHash hashOf(DataIO::RandomAccessSource& source, const Templates::vector<FileRange>& ranges,
                   const HashProgress& progress) {
    constexpr std::uint64_t pieceSize = std::uint64_t{1024} * 1024;
    std::uint64_t all = 0;
    for (const FileRange& range : ranges) {
        all += range.end - range.begin;
    }
    std::uint64_t done = 0;
    Bytes buffer(static_cast<std::size_t>(std::min(all, pieceSize)));
    crypto_generichash_state state;
    ContentHash hash;
    crypto_generichash_init(&state, nullptr, 0, hash.size());
    for (const FileRange& range : ranges) {
        for (std::uint64_t at = range.begin; at != range.end;) {
            const std::size_t got = source.readAt(
                at, buffer.data(),
                static_cast<std::size_t>(std::min<std::uint64_t>(range.end - at, buffer.size())));
            if (got == 0) {
                throw Exceptions::IOError("can't read " + source.name() + ": it has become shorter",
                                          CORVID_HERE);
            }
            crypto_generichash_update(&state, buffer.data(), got);
            at += got;
            done += got;
            if (progress) {
                progress(done, all);
            }
        }
    }
    crypto_generichash_final(&state, hash.data(), hash.size());
    return hash;
}

} // namespace Corvid::mxf
