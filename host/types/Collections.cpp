#include "host/types/Collections.h"

#include "host/dataio/Memory.h"
#include "host/types/FixedBytes.h"

namespace Corvid::Types {

namespace {

constexpr std::size_t headSize = 8;

void writeNumber(DataIO::DataSink& sink, u32 number) {
    u8 bytes[sizeof number];
    writeBigEndian(bytes, number);
    sink.write(bytes, sizeof bytes);
}

} // namespace

Collection::Collection(const Collection& other) : DataType(other), itemSize_(other.itemSize_) {
    items_.reserve(other.items_.size());
    for (const auto& item : other.items_) {
        items_.push_back(item->clone());
    }
}

Collection::~Collection() = default;

void Collection::add(Templates::auto_ptr<SimpleDataType> item) {
    if (item) {
        items_.push_back(std::move(item));
    }
}

void Collection::remove(u32 index) { items_.erase(items_.begin() + index); }

void Collection::serialize(DataIO::DataSink& sink) const {
    writeNumber(sink, size());
    writeNumber(sink, static_cast<u32>(itemSize_));
    for (const auto& item : items_) {
        item->serialize(sink);
    }
}

u16 Collection::serializedSize() const { return static_cast<u16>(byteCount()); }

std::size_t Collection::byteCount() const {
    std::size_t size = headSize;
    for (const auto& item : items_) {
        size += item->byteCount();
    }
    return size;
}

const u8* Collection::rawBuffer() const {
    DataIO::Memory::MemoryDataSink sink(byteCount());
    serialize(sink);
    buffer_.assign(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
    return buffer_.data();
}

} // namespace Corvid::Types
