#pragma once

#include "host/mxf/rewrite/RewritableFile.h"
#include "tests/mxf/rewrite/LayoutOf.h"

namespace Corvid::Testing {

/// The file after a rewrite: naively, in memory.
inline Bytes carryOut(const Bytes& old, const mxf::Rewrite& rewrite) {
    EXPECT_EQ(rewrite.oldSize, old.size());
    Bytes file;
    std::size_t position = 0;
    for (const auto& insertion : rewrite.insertions) {
        const auto begin = old.begin() + static_cast<std::ptrdiff_t>(position);
        file.insert(file.end(), begin, old.begin() + static_cast<std::ptrdiff_t>(insertion.offset));
        file.insert(file.end(), insertion.size, 0xDD); // it may not count on zeros in fill
        position = insertion.offset;
    }
    file.insert(file.end(), old.begin() + static_cast<std::ptrdiff_t>(position), old.end());
    file.resize(rewrite.newSize());
    std::uint64_t last = 0;
    for (const auto& range : rewrite.writes) {
        EXPECT_GE(range.offset, last) << "the writes are not in order";
        last = range.end();
        std::copy(range.bytes.begin(), range.bytes.end(),
                  file.begin() + static_cast<std::ptrdiff_t>(range.offset));
    }
    return file;
}

/// A file in memory that can be rewritten.
struct Rewritable {
    explicit Rewritable(Bytes content)
        : bytes(std::move(content)), source(bytes.data(), bytes.size()), file(source) {}
    explicit Rewritable(const MxfBuilder& builder) : Rewritable(builder.build()) {}

    Bytes planned(const mxf::FileEdit& edit, const mxf::Growth& growth = {}) {
        return carryOut(bytes, file.plan(edit, growth));
    }

    Bytes bytes;
    DataIO::MemorySource source;
    mxf::RewritableFile file;
};

/// An edit that gives a set a property of so many bytes.
inline mxf::CopyEdit longProperty(mxf::RewritableFile& file, std::size_t partition,
                                  unsigned instance, std::size_t size) {
    mxf::CopyEdit copy;
    copy.partition = partition;
    mxf::SetChange change;
    change.item = file.layout(partition).find(Types::UUID({uuid(instance).data(), 16})).value();
    change.added.push_back({labelOf(hex("06.0e.2b.34.01.01.01.01.0e.7f.00.00.00.00.00.01")),
                            mxf::Bytes(size, 'n'), 0});
    copy.edit.changedSets.push_back(std::move(change));
    return copy;
}

} // namespace Corvid::Testing
