#include "tools/corvid/StoredBytes.h"

#include "host/dataio/Memory.h"

namespace Corvid::Tool {

std::string bytesOf(const Metadata::Element& element) {
    DataIO::Memory::MemoryDataSink sink(element.serializedSize());
    element.serialize(sink);
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

} // namespace Corvid::Tool
