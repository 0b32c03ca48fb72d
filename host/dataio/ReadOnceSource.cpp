#include "host/dataio/ReadOnceSource.h"

#include <algorithm>
#include <iterator>

namespace Corvid::DataIO {

ReadOnceSource::~ReadOnceSource() = default;

std::size_t ReadOnceSource::readAt(std::uint64_t offset, unsigned char* to, std::size_t count) {
    std::size_t done = 0;
    while (done != count) {
        const std::uint64_t at = offset + done;
        const auto next = pieces_.upper_bound(at);
        if (next != pieces_.begin()) {
            const auto& [begin, bytes] = *std::prev(next);
            if (at - begin < bytes.size()) {
                const auto from = static_cast<std::size_t>(at - begin);
                const std::size_t size = std::min(count - done, bytes.size() - from);
                std::copy_n(bytes.data() + from, size, to + done);
                done += size;
                continue;
            }
        }
        std::size_t wanted = count - done;
        if (next != pieces_.end()) {
            wanted = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, next->first - at));
        }
        const std::size_t got = source_.readAt(at, to + done, wanted);
        keep(at, to + done, got);
        done += got;
        if (got != wanted) {
            break;
        }
    }
    return done;
}

void ReadOnceSource::keep(std::uint64_t offset, const unsigned char* bytes, std::size_t count) {
    const auto next = pieces_.upper_bound(offset);
    if (next != pieces_.begin()) {
        auto& [begin, before] = *std::prev(next);
        if (offset - begin == before.size()) {
            before.insert(before.end(), bytes, bytes + count);
            return;
        }
    }
    pieces_.emplace(offset, Templates::vector<unsigned char>(bytes, bytes + count));
}

} // namespace Corvid::DataIO
