#include "host/mxf/rewrite/InPlaceForm.h"

#include "host/base/Exceptions.h"

#include <algorithm>

namespace Corvid::mxf {

namespace {

/// Reads bytes of the file, which are there.
Bytes read(DataIO::RandomAccessSource& source, std::uint64_t begin, std::uint64_t end) {
    Bytes bytes(static_cast<std::size_t>(end - begin));
    if (source.readAt(begin, bytes.data(), bytes.size()) != bytes.size()) {
        throw Exceptions::IOError("can't read " + source.name() + ": it has become shorter",
                                  CORVID_HERE);
    }
    return bytes;
}

/// Adds what of a range no other range overwrites.
/// @param over  in the order of the file.
void addUncovered(ByteRanges& to, const ByteRange& range, const ByteRanges& over) {
    const auto part = [&](std::uint64_t begin, std::uint64_t end) {
        if (begin < end) {
            const auto from =
                range.bytes.begin() + static_cast<std::ptrdiff_t>(begin - range.offset);
            to.push_back({begin, Bytes(from, from + static_cast<std::ptrdiff_t>(end - begin))});
        }
    };
    auto next = std::partition_point(over.begin(), over.end(), [&](const ByteRange& each) {
        return each.end() <= range.offset;
    });
    std::uint64_t begin = range.offset;
    for (; next != over.end() && next->offset < range.end(); ++next) {
        part(begin, next->offset);
        begin = next->end();
    }
    part(begin, range.end());
}

/// What is where after the insertions, before the rewrite's own writes.
class Base {
public:
    Base(DataIO::RandomAccessSource& source) : source_(source) {}

    void addOld(std::uint64_t begin, std::uint64_t end, std::uint64_t at) {
        if (begin != end) {
            ranges.push_back({at, read(source_, begin, end)});
        }
    }
    void addZeros(std::uint64_t begin, std::uint64_t end) {
        if (begin != end) {
            ranges.push_back({begin, Bytes(static_cast<std::size_t>(end - begin))});
        }
    }

    ByteRanges ranges;

private:
    DataIO::RandomAccessSource& source_;
};

} // namespace

std::optional<Rewrite> inPlaceForm(const Rewrite& rewrite, DataIO::RandomAccessSource& source,
                                   std::uint64_t blockSize) {
    if (rewrite.insertions.empty()) {
        return rewrite;
    }
    Rewrite result;
    result.oldSize = rewrite.oldSize;
    Base base(source);
    auto insertion = rewrite.insertions.begin();
    std::uint64_t shift = 0;
    if (blockSize != 0) {
        const std::uint64_t block = insertion->offset / blockSize * blockSize;
        if (insertion->size % blockSize == 0 && block < rewrite.oldSize) {
            result.insertions.push_back({block, insertion->size});
            base.addOld(block, insertion->offset, block);
            base.addZeros(block + insertion->size, insertion->offset + insertion->size);
            shift = insertion->size;
            ++insertion;
        }
    }
    std::uint64_t inserted = 0;
    for (auto each = insertion; each != rewrite.insertions.end(); ++each) {
        inserted += each->size;
    }
    if (insertion != rewrite.insertions.end() &&
        rewrite.oldSize - insertion->offset + inserted > greatestTail) {
        return std::nullopt;
    }
    for (; insertion != rewrite.insertions.end(); ++insertion) {
        const auto next = insertion + 1;
        base.addZeros(insertion->offset + shift, insertion->offset + shift + insertion->size);
        shift += insertion->size;
        base.addOld(insertion->offset,
                    next == rewrite.insertions.end() ? rewrite.oldSize : next->offset,
                    insertion->offset + shift);
    }
    result.writes = rewrite.writes;
    for (const ByteRange& range : base.ranges) {
        addUncovered(result.writes, range, rewrite.writes);
    }
    std::sort(result.writes.begin(), result.writes.end(),
              [](const ByteRange& a, const ByteRange& b) { return a.offset < b.offset; });
    return result;
}

} // namespace Corvid::mxf
