#include "host/dataio/RandomAccessSource.h"

#include <algorithm>

namespace Corvid::DataIO {

RandomAccessSource::~RandomAccessSource() = default;

std::uint64_t RandomAccessSource::available(std::uint64_t offset, std::uint64_t count) {
    const std::uint64_t all = size();
    return offset >= all ? 0 : std::min(count, all - offset);
}

} // namespace Corvid::DataIO
