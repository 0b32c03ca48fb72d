#include "editing/apply/ClipHashes.h"

#include "host/mxf/rewrite/FileHashes.h"

namespace Corvid::Editing {

std::vector<ContentHash> headerHashes(DataIO::RandomAccessSource& clip,
                                      const std::vector<std::size_t>& partitions) {
    mxf::RewritableFile file(clip);
    std::vector<ContentHash> hashes;
    for (const std::size_t partition : partitions) {
        const mxf::HeaderLayout& layout = file.layout(partition);
        hashes.push_back(mxf::hashOf(clip, {{layout.begin(), layout.end()}}));
    }
    return hashes;
}

ContentHash essenceHash(DataIO::RandomAccessSource& clip, const HashProgress& progress) {
    mxf::RewritableFile file(clip);
    return mxf::hashOf(clip, essenceOf(file), progress);
}

void requireCertainEssence(DataIO::RandomAccessSource& clip) {
    mxf::RewritableFile file(clip);
    essenceOf(file);
}

} // namespace Corvid::Editing
