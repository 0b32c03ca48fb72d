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

RoundTrip compareWithRoundTrip(PartitionMetadata& metadata, std::size_t listed) {
    RoundTrip trip;
    trip.fromDocument = throughXml(metadata, {});
    PartitionMetadata& read = *trip.fromDocument;
    trip.fromFile = throughFile(read);
    static_cast<Comparison&>(trip) = compare(metadata, *trip.fromFile, listed);
    // Other identifiers make no other file but for their bytes.
    const Renaming renaming = renameSets(read);
    trip.differences.unite(compareRenamed(metadata, read, renaming, listed).differences);
    return trip;
}

} // namespace Corvid::Editing
