#include "host/mxf/rewrite/disk/Blocks.h"

#include "host/base/Exceptions.h"

#include <algorithm>

namespace Corvid::mxf {

namespace {

/// The runs with a hole of so many bytes at an offset.
DataRuns withHole(const DataRuns& runs, std::uint64_t offset, std::uint64_t size) {
    DataRuns result;
    for (const DataRun& run : runs) {
        if (run.begin < offset) {
            result.push_back({run.begin, std::min(run.end, offset)});
        }
        if (run.end > offset) {
            result.push_back({std::max(run.begin, offset) + size, run.end + size});
        }
    }
    return result;
}

} // namespace

DataRuns withoutHole(const DataRuns& runs, std::uint64_t offset, std::uint64_t size) {
    DataRuns result;
    for (const DataRun& run : runs) {
        const std::uint64_t shift = run.begin < offset ? 0 : size;
        const DataRun moved{run.begin - shift, run.end - shift};
        if (!result.empty() && result.back().end == moved.begin) {
            result.back().end = moved.end;
        } else {
            result.push_back(moved);
        }
    }
    return result;
}

DataRuns dataFrom(const OpenFile& file, std::uint64_t offset) {
    FileSystem& system = file.system();
    const std::uint64_t block = std::max<std::uint64_t>(system.insertionBlock(file.number()), 1);
    DataRuns runs;
    while (const auto run = system.nextData(file.number(), offset)) {
        offset = (run->end + block - 1) / block * block;
        if (!runs.empty() && runs.back().end == run->begin) {
            runs.back().end = offset;
        } else {
            runs.push_back({run->begin, offset});
        }
    }
    return runs;
}

std::optional<std::uint64_t> findHole(const DataRuns& before, const DataRuns& now,
                                      std::uint64_t size) {
    const auto [was, is] = std::mismatch(before.begin(), before.end(), now.begin(), now.end());
    if (was == before.end() && is == now.end()) {
        return std::nullopt;
    }
    if (was != before.end() && is != now.end()) {
        const std::uint64_t hole = is->begin == was->begin ? is->end : was->begin;
        if (withHole(before, hole, size) == now) {
            return hole;
        }
    }
    throw Exceptions::InvalidFormat("the blocks of the file are not where the recovery file says, "
                                    "so nothing was changed",
                                    CORVID_HERE);
}

} // namespace Corvid::mxf
