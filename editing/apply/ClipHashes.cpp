#include "editing/apply/ClipHashes.h"

#include "host/mxf/rewrite/FileHashes.h"
#include "host/mxf/rewrite/RewritableFile.h"

namespace Corvid::Editing {

std::vector<ContentHash> headerHashes(mxf::RewritableFile& file, DataIO::RandomAccessSource& clip,
                                      const std::vector<std::size_t>& partitions) {
    std::vector<ContentHash> hashes;
    for (const std::size_t partition : partitions) {
        const mxf::HeaderLayout& layout = file.layout(partition);
        hashes.push_back(mxf::hashOf(clip, {{layout.begin(), layout.end()}}));
    }
    return hashes;
}

ContentHash essenceHash(mxf::RewritableFile& file, DataIO::RandomAccessSource& clip,
                        const HashProgress& progress) {
    return mxf::hashOf(clip, essenceOf(file), progress);
}

void requireCertainEssence(mxf::RewritableFile& file) { essenceOf(file); }

} // namespace Corvid::Editing
