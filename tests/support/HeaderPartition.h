#pragma once

#include "host/dataio/Memory.h"
#include "host/mxf/HeaderMetadataWriter.h"

#include <vector>

namespace Corvid::Testing {

/// The bytes of a closed and complete header partition that holds the metadata.
inline std::vector<unsigned char> headerPartitionOf(Metadata::PartitionMetadata& metadata) {
    DataIO::Memory::MemoryDataSink sink;
    mxf::PartitionPack pack;
    pack.status = mxf::PartitionStatus::closedComplete;
    pack.kagSize = 16;
    mxf::writeHeaderPartition(pack, mxf::HeaderMetadataWriter(metadata), sink);
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

} // namespace Corvid::Testing
