#include "editing/StoredBytes.h"

#include "host/mxf/HeaderMetadataWriter.h"

namespace Corvid::Editing {

namespace {

class StringSink final : public DataIO::DataSink {
public:
    explicit StringSink(std::string& to) : to_(to) {}

    void write(const unsigned char* bytes, std::size_t count) override {
        to_.append(reinterpret_cast<const char*>(bytes), count);
    }

private:
    std::string& to_;
};

} // namespace

std::string bytesOf(const Metadata::Element& element) {
    std::string bytes;
    bytes.reserve(element.serializedSize());
    appendBytes(element, bytes);
    return bytes;
}

void appendBytes(const Metadata::Element& element, std::string& to) {
    StringSink sink(to);
    element.serialize(sink);
}

DataIO::Memory::MemoryDataSink headerPartitionOf(Metadata::PartitionMetadata& metadata) {
    DataIO::Memory::MemoryDataSink sink;
    mxf::PartitionPack pack;
    pack.status = mxf::PartitionStatus::closedComplete;
    mxf::writeHeaderPartition(pack, mxf::HeaderMetadataWriter(metadata), sink);
    return sink;
}

} // namespace Corvid::Editing
