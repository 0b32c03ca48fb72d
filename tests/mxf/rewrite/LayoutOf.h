#pragma once

#include "host/mxf/rewrite/HeaderLayout.h"
#include "tests/mxf/ReadBack.h"

namespace Corvid::Testing {

/// A file in memory and the layout of one of its copies of header metadata.
struct LayoutOf {
    explicit LayoutOf(Bytes content, std::size_t partition = 0)
        : bytes(std::move(content)), source(bytes.data(), bytes.size()), window(source),
          partitions(find()), layout(window, partitions[partition]) {}
    explicit LayoutOf(const MxfBuilder& builder, std::size_t partition = 0)
        : LayoutOf(builder.build(), partition) {}

    /// The number of the set of smallSets() or the like with an InstanceUID.
    std::size_t set(unsigned instance) const {
        return layout.find(Types::UUID({uuid(instance).data(), 16})).value();
    }

    Bytes bytes;
    DataIO::MemorySource source;
    DataIO::ReadWindow window;
    mxf::NoWarnings nobody;
    mxf::Partitions partitions;
    mxf::HeaderLayout layout;

private:
    mxf::Partitions find() {
        return mxf::findPartitions(window, mxf::findHeaderPartition(window, nobody), nobody);
    }
};

inline Bytes copyOf(Types::ByteView view) { return {view.data, view.data + view.size}; }

inline Types::UniversalLabel labelOf(const Bytes& bytes) {
    return Types::UniversalLabel(Types::ByteView{bytes.data(), bytes.size()});
}

} // namespace Corvid::Testing
