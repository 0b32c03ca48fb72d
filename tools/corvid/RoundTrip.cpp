#include "tools/corvid/RoundTrip.h"

#include "XMLBuilder/XMLBuilder.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"
#include "tools/corvid/DocumentMetadata.h"
#include "tools/corvid/SetAside.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace Corvid::Tool {

namespace {

using DataIO::Memory::MemoryDataSink;
using Metadata::PartitionMetadata;

/// Which identifier of one reading became which in another of the same document.
Renaming renamingBetween(const PartitionMetadata& one, const PartitionMetadata& other) {
    Renaming renaming;
    auto after = other.begin();
    for (auto before = one.begin(); before != one.end() && after != other.end();
         ++before, ++after) {
        if ((*before)->hasInstanceUID()) {
            renaming.add((*before)->instanceUID(), (*after)->instanceUID());
        }
    }
    return renaming;
}

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

} // namespace

void writeForComparison(PartitionMetadata& metadata, DataIO::DataSink& sink) {
    // Asked before: a writer that finds none leaves its document behind.
    if (metadata.find(Metadata::Structural::StructuralMetadataKeys::preface()).empty()) {
        throw Exceptions::InvalidFormat("no Preface among the " + std::to_string(metadata.size()) +
                                            " sets of the partition, so there is nothing to write",
                                        CORVID_HERE);
    }
    const SetAside aside(metadata);
    const auto document = XMLBuilder::partition2XML(&metadata, false, false);
    XMLUtils::ReplaceInvalidCharacters invalid(0);
    XMLUtils::serialise(document.get(), XMLUtils::EncodingType::utf8, XMLUtils::Layout::compact,
                        invalid, sink);
}

Comparison compareWithRoundTrip(PartitionMetadata& metadata) {
    MemoryDataSink text;
    writeForComparison(metadata, text);
    const auto read = [&](DocumentIdentifiers identifiers) {
        return readDocument(text.rawBuffer(), text.serializedSize(),
                            metadata.partitionDictionary().dictionary(), identifiers);
    };
    const auto written = read(DocumentIdentifiers::written);
    Comparison comparison = compare(metadata, *written.metadata, {});
    const auto fresh = read(DocumentIdentifiers::fresh);
    unite(comparison.differences,
          compare(metadata, *fresh.metadata, renamingBetween(*written.metadata, *fresh.metadata))
              .differences);
    return comparison;
}

} // namespace Corvid::Tool
