#include "editing/compare/DarkSetList.h"

#include "host/dataio/Memory.h"
#include "host/klv/BerInput.h"

namespace Corvid::Editing {

namespace {

std::string textOf(const unsigned char* begin, const unsigned char* end) { return {begin, end}; }

std::string valueOf(const Metadata::MetadataSet& group, Metadata::PartitionDictionary& primer) {
    DataIO::Memory::MemoryDataSink sink(group.serializedSize());
    group.serialize(sink, primer);
    const auto* const length = sink.rawBuffer() + KLV::Key::length;
    return textOf(length + KLV::berOctetsFromFirst(*length),
                  sink.rawBuffer() + sink.serializedSize());
}

} // namespace

std::vector<ListedDarkSet> listDarkSets(Metadata::PartitionMetadata& partition) {
    std::vector<ListedDarkSet> list;
    for (const Metadata::MetadataSet* set : partition) {
        if (set->metaMetadataSet() == nullptr) {
            list.push_back({set->key(), set->berLength(),
                            valueOf(*set, partition.partitionDictionary()), set->instanceUID()});
        }
    }
    for (auto set = partition.darkBegin(); set != partition.darkEnd(); ++set) {
        const DataIO::Slice& value = *(*set)->value();
        list.push_back(
            {(*set)->key(), (*set)->berLength(), textOf(value.begin(), value.end()), {}});
    }
    return list;
}

} // namespace Corvid::Editing
