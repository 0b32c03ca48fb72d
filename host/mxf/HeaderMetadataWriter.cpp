#include "host/mxf/HeaderMetadataWriter.h"

#include "host/base/Exceptions.h"
#include "host/klv/BerOutput.h"
#include "host/metadata/ElementItems.h"
#include "host/mxf/Fill.h"
#include "host/mxf/HeaderMetadataReader.h"
#include "host/mxf/Keys.h"
#include "host/mxf/LocalSet.h"
#include "host/mxf/SetReader.h"

namespace Corvid::mxf {

namespace {

using Metadata::DarkMetadataSet;
using Metadata::MetadataSet;

std::string keyText(const KLV::Key& key) { return Platform::toUtf8(key.toString()); }

/// A set that is longer could not be read again.
void checkSize(const KLV::Key& key, const MetaMetadata::MetaMetadataSet* definition,
               std::uint64_t size) {
    if (size > greatestSetSize) {
        throw Exceptions::LimitExceeded("set " + nameOfSet(key, definition) + " has " +
                                            std::to_string(size) + " bytes, expected at most " +
                                            std::to_string(greatestSetSize),
                                        CORVID_HERE);
    }
}

std::uint64_t serializedSize(const DarkMetadataSet& set) {
    const std::uint64_t size = set.value()->size();
    return KLV::Key::length + KLV::berOctets(size, set.berLength()) + size;
}

void serialize(const DarkMetadataSet& set, DataIO::DataSink& sink) {
    set.key().serialize(sink);
    KLV::writeBer(sink, set.value()->size(), set.berLength());
    sink.write(set.value()->begin(), set.value()->size());
}

/// The labels of a dark set's tags are not known, so none of them may become another property's.
void keepTags(const DarkMetadataSet& set, Metadata::PartitionDictionary& primer) {
    if (!KLV::isLocalSet(set.key())) {
        return;
    }
    LocalSet properties(set.key(), {set.value()->begin(), set.value()->size()});
    while (const auto property = properties.next()) {
        primer.keep(Types::LocalTag(property->tag));
    }
}

// Labels of properties of the Preface (SMPTE ST 377-1).
using LabelBytes = std::array<Types::u8, 16>;
constexpr LabelBytes operationalPattern{0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05,
                                        0x01, 0x02, 0x02, 0x03, 0,    0,    0,    0};
constexpr LabelBytes essenceContainers{0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05,
                                       0x01, 0x02, 0x02, 0x10, 0x02, 0x01, 0,    0};

/// The labels among the values of a property.
Templates::vector<Types::UniversalLabel> labelsOf(const MetadataSet& set,
                                                  const LabelBytes& property) {
    struct Collect : Types::Visitors::NullVisitor {
        using NullVisitor::visit;
        void visit(const Types::UniversalLabel& label) override { labels.push_back(label); }
        Templates::vector<Types::UniversalLabel> labels;
    } collect;
    const Metadata::ElementItems items(set.find(Types::UniversalLabel(property)));
    for (Types::u32 i = 0; i != items.size(); ++i) {
        items.at(i).accept(collect);
    }
    return std::move(collect.labels);
}

} // namespace

HeaderMetadataWriter::HeaderMetadataWriter(Metadata::PartitionMetadata& metadata)
    : metadata_(metadata) {
    takeDarkSets();
    takeSets();
    const auto& primer = metadata_.partitionDictionary();
    primer_.assign(primer.begin(), primer.end());
    size_ += serializedSize(primer_);
}

void HeaderMetadataWriter::takeDarkSets() {
    for (auto i = metadata_.darkBegin(); i != metadata_.darkEnd(); ++i) {
        const DarkMetadataSet& set = **i;
        const KLV::Key& key = set.key();
        if (isFill(key) || isPrimerPack(key) || endsHeaderMetadata(key) || key == KLV::Key()) {
            throw Exceptions::InvalidFormat("the dark set has the key " + keyText(key) +
                                                ", which is not that of a set inside header "
                                                "metadata",
                                            CORVID_HERE);
        }
        checkSize(key, nullptr, set.value()->size());
        keepTags(set, metadata_.partitionDictionary());
        size_ += serializedSize(set);
    }
}

void HeaderMetadataWriter::takeSets() {
    metadata_.calculateSerializationOrder(order_, true, false);
    for (const MetadataSet* set : order_) {
        const std::size_t size = set->serializedSize();
        checkSize(set->key(), set->metaMetadataSet(), size);
        set->assignTags(metadata_.partitionDictionary());
        size_ += size;
    }
}

void HeaderMetadataWriter::write(DataIO::DataSink& sink) const {
    serialize(primer_, sink);
    for (const MetadataSet* set : order_) {
        set->serialize(sink, metadata_.partitionDictionary());
    }
    for (auto i = metadata_.darkBegin(); i != metadata_.darkEnd(); ++i) {
        serialize(**i, sink);
    }
}

PartitionPack headerPack(const MetadataSet& preface, Types::u32 kagSize) {
    PartitionPack pack;
    pack.status = PartitionStatus::closedComplete;
    pack.majorVersion = 1;
    pack.minorVersion = 3;
    pack.kagSize = kagSize;
    if (const auto pattern = labelsOf(preface, operationalPattern); !pattern.empty()) {
        pack.operationalPattern = pattern.front();
    }
    pack.essenceContainers = labelsOf(preface, essenceContainers);
    return pack;
}

void writeHeaderPartition(PartitionPack pack, const HeaderMetadataWriter& metadata,
                          DataIO::DataSink& sink) {
    // Both begin on the KAG, so each needs to know its own size only.
    const std::uint64_t behindPack = fillUpToKag(serializedSize(pack), pack.kagSize);
    const std::uint64_t behindSets = fillUpToKag(metadata.size(), pack.kagSize);
    pack.kind = PartitionKind::header;
    pack.headerByteCount = metadata.size() + behindSets;
    serialize(pack, sink);
    writeFill(sink, behindPack);
    metadata.write(sink);
    writeFill(sink, behindSets);
}

} // namespace Corvid::mxf
