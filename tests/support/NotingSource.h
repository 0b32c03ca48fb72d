#pragma once

#include "host/dataio/MemorySource.h"

#include <vector>

namespace Corvid::Testing {

/// Bytes in memory; notes how often each is read.
class NotingSource : public DataIO::MemorySource {
public:
    explicit NotingSource(const std::vector<unsigned char>& bytes)
        : MemorySource(bytes.data(), bytes.size()), times(bytes.size()) {}

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override {
        const std::size_t got = MemorySource::readAt(offset, to, count);
        for (std::size_t i = 0; i != got; ++i) {
            ++times[static_cast<std::size_t>(offset) + i];
        }
        return got;
    }

    std::vector<int> times; ///< of each byte
};

} // namespace Corvid::Testing
