#pragma once

#include "Corvid/Export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace Corvid::DataIO {

/// Bytes that are read anywhere, as those of a file. Offsets have 64 bits. One thread at a time.
class CORVID_EXPORT RandomAccessSource {
public:
    RandomAccessSource(const RandomAccessSource&) = delete;
    RandomAccessSource& operator=(const RandomAccessSource&) = delete;
    virtual ~RandomAccessSource();

    /// Reads up to count bytes at an offset.
    /// @return how many bytes were read; fewer than count only where the source ends.
    /// @throws IOError  the bytes can't be had; says which source and why.
    virtual std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) = 0;

    /// The number of bytes in all. A source that learns it only at its end reads itself to the end.
    /// @throws IOError  as readAt().
    virtual std::uint64_t size() = 0;

    /// How many of the count bytes at an offset are there, without reading further than they go.
    /// Asked before room for them is made.
    /// @throws IOError  as readAt().
    virtual std::uint64_t available(std::uint64_t offset, std::uint64_t count);

    /// What people call the source: the path as given, or "standard input".
    const std::string& name() const noexcept { return name_; }

protected:
    explicit RandomAccessSource(std::string name) : name_(std::move(name)) {}

private:
    std::string name_;
};

} // namespace Corvid::DataIO
