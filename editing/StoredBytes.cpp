#include "editing/StoredBytes.h"

#include "host/dataio/Memory.h"

namespace Corvid::Editing {

std::string bytesOf(const Metadata::Element& element) {
    DataIO::Memory::MemoryDataSink sink(element.serializedSize());
    element.serialize(sink);
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

} // namespace Corvid::Editing
