#include "editing/RoundTrip.h"

#include "editing/RenameSets.h"
#include "editing/ThroughXml.h"
#include "editing/compare/CompareRenamed.h"
#include "host/dataio/Memory.h"
#include "host/dataio/MemorySource.h"
#include "host/mxf/File.h"
#include "host/mxf/HeaderMetadataWriter.h"

namespace Corvid::Editing {

namespace {

using DataIO::Memory::MemoryDataSink;
using PartitionHolder = Templates::auto_ptr<Metadata::PartitionMetadata>;
using Metadata::PartitionMetadata;

PartitionHolder throughFile(PartitionMetadata& metadata) {
    MemoryDataSink bytes;
    mxf::PartitionPack pack;
    pack.status = mxf::PartitionStatus::closedComplete;
    mxf::writeHeaderPartition(pack, mxf::HeaderMetadataWriter(metadata), bytes);
    mxf::NoWarnings warnings;
    mxf::File file(Templates::auto_ptr<DataIO::RandomAccessSource>(new DataIO::MemorySource(
                       bytes.rawBuffer(), bytes.serializedSize(), "the file written")),
                   metadata.partitionDictionary().dictionary(), warnings);
    return file.readMetadata(mxf::PartitionChoice::header()).metadata;
}

} // namespace

Comparison compareWithRoundTrip(PartitionMetadata& metadata, std::size_t listed) {
    const PartitionHolder read = throughXml(metadata, {});
    Comparison comparison = compare(metadata, *throughFile(*read), listed);
    const Renaming renaming = renameSets(*read);
    comparison.differences.unite(
        compareRenamed(metadata, *throughFile(*read), renaming, listed).differences);
    return comparison;
}

} // namespace Corvid::Editing
