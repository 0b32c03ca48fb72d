#include "editing/StoredBytes.h"

#include "host/mxf/HeaderMetadataWriter.h"

namespace Corvid::Editing {

std::string bytesOf(const Metadata::Element& element) {
    DataIO::Memory::MemoryDataSink sink(element.serializedSize());
    element.serialize(sink);
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

DataIO::Memory::MemoryDataSink headerPartitionOf(Metadata::PartitionMetadata& metadata) {
    DataIO::Memory::MemoryDataSink sink;
    mxf::PartitionPack pack;
    pack.status = mxf::PartitionStatus::closedComplete;
    mxf::writeHeaderPartition(pack, mxf::HeaderMetadataWriter(metadata), sink);
    return sink;
}

} // namespace Corvid::Editing
