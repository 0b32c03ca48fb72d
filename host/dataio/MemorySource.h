#pragma once

#include "host/dataio/RandomAccessSource.h"

#include <algorithm>

namespace Corvid::DataIO {

/// Bytes in memory that are read as those of a file. They are borrowed and must outlive the source.
class CORVID_EXPORT MemorySource : public RandomAccessSource {
public:
    MemorySource(const unsigned char* bytes, std::size_t size, std::string name = "memory")
        : RandomAccessSource(std::move(name)), bytes_(bytes), size_(size) {}

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override {
        if (offset >= size_) {
            return 0;
        }
        const std::size_t got = std::min(count, size_ - static_cast<std::size_t>(offset));
        std::copy_n(bytes_ + offset, got, to);
        return got;
    }
    std::uint64_t size() override { return size_; }

private:
    const unsigned char* bytes_;
    std::size_t size_;
};

} // namespace Corvid::DataIO
