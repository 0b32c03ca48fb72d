#include "host/dataio/ReadWindow.h"

#include <algorithm>

namespace Corvid::DataIO {

ReadWindow::View ReadWindow::view(std::uint64_t offset, std::size_t count) {
    const bool inside = offset >= offset_ && offset - offset_ <= size_ &&
                        count <= size_ - static_cast<std::size_t>(offset - offset_);
    if (!inside) {
        load(offset, count);
    }
    const auto start = static_cast<std::size_t>(offset - offset_);
    return {bytes_.data() + start, std::min(count, size_ - start)};
}

void ReadWindow::load(std::uint64_t offset, std::size_t count) {
    std::uint64_t wanted = count;
    if (readAheadEnd_ > offset) {
        wanted = std::max<std::uint64_t>(
            wanted, std::min<std::uint64_t>(readAhead, readAheadEnd_ - offset));
    }
    size_ = 0;
    offset_ = offset;
    const auto size = static_cast<std::size_t>(source_.available(offset, wanted));
    // The room for one long value is not kept for the many short ones after it.
    if (bytes_.size() < size || (bytes_.size() > 16 * readAhead && size <= readAhead)) {
        bytes_ =
            Templates::vector<unsigned char>(std::max(size, std::min<std::size_t>(readAhead, 512)));
    }
    size_ = source_.readAt(offset, bytes_.data(), size);
}

} // namespace Corvid::DataIO
