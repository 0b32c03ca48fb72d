#include "editing/change/CodedMetadata.h"

#include "editing/StoredBytes.h"
#include "host/dataio/MemorySource.h"

namespace Corvid::Editing {

struct CodedMetadata::Content {
    explicit Content(Metadata::PartitionMetadata& metadata)
        : sink(headerPartitionOf(metadata)), source(sink.rawBuffer(), sink.serializedSize()),
          window(source), layout(window, mxf::findHeaderPartition(window, warnings)) {}

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
