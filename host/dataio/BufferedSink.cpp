#include "host/dataio/BufferedSink.h"

namespace Corvid::DataIO {

void BufferedSink::write(const unsigned char* bytes, std::size_t count) {
    if (count > capacity - bytes_.size()) {
        flush();
    }
    if (count >= capacity) {
        target_.write(bytes, count);
    } else {
        bytes_.insert(bytes_.end(), bytes, bytes + count);
    }
}

void BufferedSink::flush() {
    if (!bytes_.empty()) {
        target_.write(bytes_.data(), bytes_.size());
        bytes_.clear();
    }
}

} // namespace Corvid::DataIO
