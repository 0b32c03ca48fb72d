#include "host/dataio/Memory.h"

#include <algorithm>

namespace Corvid::DataIO::Memory {

std::size_t MemoryDataSource::read(unsigned char* to, std::size_t count) {
    count = std::min(count, remaining_);
    std::copy_n(next_, count, to);
    next_ += count;
    remaining_ -= count;
    return count;
}

void MemoryDataSink::write(const unsigned char* bytes, std::size_t count) {
    bytes_.insert(bytes_.end(), bytes, bytes + count);
}

} // namespace Corvid::DataIO::Memory
