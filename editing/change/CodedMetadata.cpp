#include "editing/change/CodedMetadata.h"

#include "host/dataio/Memory.h"
#include "host/dataio/MemorySource.h"
#include "host/mxf/HeaderMetadataWriter.h"

namespace Corvid::Editing {

namespace {

DataIO::Memory::MemoryDataSink written(Metadata::PartitionMetadata& metadata) {
    DataIO::Memory::MemoryDataSink sink;
    mxf::PartitionPack pack;
    pack.status = mxf::PartitionStatus::closedComplete;
    mxf::writeHeaderPartition(pack, mxf::HeaderMetadataWriter(metadata), sink);
    return sink;
}

} // namespace

struct CodedMetadata::Content {
    explicit Content(Metadata::PartitionMetadata& metadata)
        : sink(written(metadata)), source(sink.rawBuffer(), sink.serializedSize()), window(source),
          layout(window, mxf::findHeaderPartition(window, warnings)) {}

    DataIO::Memory::MemoryDataSink sink;
    DataIO::MemorySource source;
    DataIO::ReadWindow window;
    mxf::NoWarnings warnings;
    mxf::HeaderLayout layout;
};

CodedMetadata::CodedMetadata(Metadata::PartitionMetadata& metadata)
    : content_(std::make_unique<Content>(metadata)) {}

CodedMetadata::~CodedMetadata() = default;

const mxf::HeaderLayout& CodedMetadata::layout() const noexcept { return content_->layout; }

} // namespace Corvid::Editing
