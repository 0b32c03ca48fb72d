#pragma once

#include "host/base/Templates.h"
#include "host/dataio/RandomAccessSource.h"

namespace Corvid::DataIO {

/// Shows pieces of a source in memory and reads ahead, so that many small pieces one after the
/// other cost few reads.
///
/// It holds one piece at a time: memory is the read-ahead or the longest piece asked for, and never
/// more than the source has.
class CORVID_EXPORT ReadWindow {
public:
    /// Bytes in the window.
    struct View {
        const unsigned char* data = nullptr;
        std::size_t size = 0;
    };

    /// @param source  borrowed; must outlive the window.
    explicit ReadWindow(RandomAccessSource& source) noexcept : source_(source) {}

    /// Allows reading ahead up to an offset; nothing after it is read unless asked for. At first
    /// there is no reading ahead.
    void readAheadUpTo(std::uint64_t offset) noexcept { readAheadEnd_ = offset; }

    /// The bytes at an offset: count of them, or fewer where the source ends. Valid until the next
    /// call.
    /// @throws IOError  the bytes can't be read.
    View view(std::uint64_t offset, std::size_t count);

    RandomAccessSource& source() const noexcept { return source_; }

private:
    static constexpr std::size_t readAhead = 64 * 1024;

    void load(std::uint64_t offset, std::size_t count);

    RandomAccessSource& source_;
    Templates::vector<unsigned char> bytes_;
    std::uint64_t offset_ = 0; ///< of the first byte in bytes_
    std::size_t size_ = 0;     ///< of what was read into bytes_
    std::uint64_t readAheadEnd_ = 0;
};

} // namespace Corvid::DataIO
