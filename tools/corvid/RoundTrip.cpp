#include "tools/corvid/RoundTrip.h"

#include "host/dataio/Memory.h"
#include "host/dataio/MemorySource.h"
#include "host/mxf/File.h"
#include "host/mxf/HeaderMetadataWriter.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "tools/corvid/DocumentMetadata.h"
#include "tools/corvid/RenameSets.h"
#include "tools/corvid/WriteDocument.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace Corvid::Tool {

namespace {

using DataIO::Memory::MemoryDataSink;
using PartitionHolder = Templates::auto_ptr<Metadata::PartitionMetadata>;
using Metadata::PartitionMetadata;

/// Adds to the differences of one comparison those that only the other has.
void unite(std::vector<Difference>& differences, const std::vector<Difference>& others) {
    const auto identityOf = [](const Difference& each) {
        return std::tuple(each.kind, each.set, each.instanceUID, each.property);
    };
    std::map<decltype(identityOf(others.front())), std::size_t> counts;
    for (const Difference& other : others) {
        ++counts[identityOf(other)];
    }
    for (Difference& each : differences) {
        if (const auto found = counts.find(identityOf(each));
            found != counts.end() && found->second != 0) {
            --found->second;
            each.identifiers = DifferenceIdentifiers::both;
        } else {
            each.identifiers = DifferenceIdentifiers::written;
        }
    }
    for (const Difference& other : others) {
        if (auto& count = counts[identityOf(other)]; count != 0) {
            --count;
            differences.push_back(other);
            differences.back().identifiers = DifferenceIdentifiers::fresh;
        }
    }
}

PartitionHolder throughXml(PartitionMetadata& metadata) {
    MemoryDataSink text;
    XMLUtils::ReplaceInvalidCharacters invalid(0);
    WrittenDocument(metadata, {})
        .serialise(XMLUtils::EncodingType::utf8, XMLUtils::Layout::compact, invalid, text);
    return readDocument(text.rawBuffer(), text.serializedSize(),
                        metadata.partitionDictionary().dictionary(), DocumentIdentifiers::written)
        .metadata;
}

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

Comparison compareWithRoundTrip(PartitionMetadata& metadata) {
    const PartitionHolder read = throughXml(metadata);
    Comparison comparison = compare(metadata, *throughFile(*read), {});
    const Renaming renaming = renameSets(*read);
    unite(comparison.differences, compare(metadata, *throughFile(*read), renaming).differences);
    return comparison;
}

} // namespace Corvid::Tool
