#pragma once

#include "host/dataio/DataSink.h"
#include "host/dataio/DataSource.h"

#include <vector>

namespace Corvid::DataIO::Memory {

/// Reads bytes in memory. They are borrowed and must outlive the source.
class CORVID_EXPORT MemoryDataSource : public DataSource {
public:
    MemoryDataSource(const unsigned char* bytes, std::size_t size) noexcept
        : next_(bytes), remaining_(size) {}

    std::size_t read(unsigned char* to, std::size_t count) override;
    std::uint64_t remaining() const override { return remaining_; }

private:
    const unsigned char* next_;
    std::size_t remaining_;
};

/// Collects bytes in memory, growing as needed.
class CORVID_EXPORT MemoryDataSink : public DataSink {
public:
    /// @param size  bytes to make room for at once.
    explicit MemoryDataSink(std::size_t size = 0) { bytes_.reserve(size); }

    void write(const unsigned char* bytes, std::size_t count) override;

    /// What was written so far; valid until the next write.
    const unsigned char* rawBuffer() const noexcept { return bytes_.data(); }
    std::size_t serializedSize() const noexcept { return bytes_.size(); }

private:
    std::vector<unsigned char> bytes_;
};

} // namespace Corvid::DataIO::Memory
