#include "editing/RoundTrip.h"

#include "editing/RenameSets.h"
#include "editing/StoredBytes.h"
#include "editing/ThroughXml.h"
#include "editing/compare/CompareRenamed.h"
#include "host/dataio/MemorySource.h"
#include "host/mxf/File.h"

namespace Corvid::Editing {

namespace {

using PartitionHolder = Templates::auto_ptr<Metadata::PartitionMetadata>;
using Metadata::PartitionMetadata;

PartitionHolder throughFile(PartitionMetadata& metadata) {
    const auto bytes = headerPartitionOf(metadata);
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
