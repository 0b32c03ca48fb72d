#include "host/mxf/rewrite/Segments.h"

#include <algorithm>
#include <array>
#include <limits>

namespace Corvid::mxf {

namespace {

/// Equal bytes that are fewer than this are written with the different ones around them.
constexpr std::size_t leastEqualRun = 16;

constexpr std::uint64_t nowhere = std::numeric_limits<std::uint64_t>::max();

class Ranges {
public:
    void add(std::uint64_t offset, Types::ByteView bytes) {
        if (bytes.size == 0) {
            return;
        }
        if (result_.empty() || result_.back().end() != offset) {
            result_.push_back({offset, {}});
        }
        append(result_.back().bytes, bytes);
    }

    void addZeros(std::uint64_t offset, std::uint64_t size) {
        static const std::array<Types::u8, 4096> zeros{};
        while (size != 0) {
            const auto count =
                static_cast<std::size_t>(std::min<std::uint64_t>(size, zeros.size()));
            add(offset, {zeros.data(), count});
            offset += count;
            size -= count;
        }
    }

    /// Adds what differs of two runs of one size.
    void addDifferences(std::uint64_t offset, const Types::u8* before, const Types::u8* now,
                        std::size_t size) {
        std::size_t begin = 0; // of what is different
        std::size_t end = 0;
        for (std::size_t i = 0; i != size; ++i) {
            if (before[i] == now[i]) {
                continue;
            }
            if (i >= end + leastEqualRun) {
                add(offset + begin, {now + begin, end - begin});
                begin = i;
            } else if (end == 0) {
                begin = i;
            }
            end = i + 1;
        }
        add(offset + begin, {now + begin, end - begin});
    }

    ByteRanges take() { return std::move(result_); }

private:
    ByteRanges result_;
};

/// Goes along segments.
class Along {
public:
    explicit Along(const Segments& segments) : next_(segments.begin()), end_(segments.end()) {}

    /// The segment that has the byte, or null.
    const Segment* at(std::uint64_t offset) {
        while (next_ != end_ && next_->end() <= offset) {
            ++next_;
        }
        return next_ != end_ && next_->offset <= offset ? &*next_ : nullptr;
    }

    /// Where the next segment begins or the one that has the byte ends.
    std::uint64_t boundary(std::uint64_t offset) const {
        return next_ == end_ ? nowhere : next_->offset <= offset ? next_->end() : next_->offset;
    }

private:
    Segments::const_iterator next_;
    Segments::const_iterator end_;
};

} // namespace

ByteRanges differences(const Segments& before, const Segments& now) {
    Ranges ranges;
    Along old(before);
    Along wanted(now);
    const auto first = [](const Segments& segments) {
        return segments.empty() ? nowhere : segments.front().offset;
    };
    std::uint64_t position = std::min(first(before), first(now));
    while (position != nowhere) {
        const Segment* const was = old.at(position);
        const Segment* const is = wanted.at(position);
        const std::uint64_t end = std::min(old.boundary(position), wanted.boundary(position));
        const auto size = static_cast<std::size_t>(end - position);
        if (was != nullptr && is != nullptr) {
            ranges.addDifferences(position, was->bytes.data + (position - was->offset),
                                  is->bytes.data + (position - is->offset), size);
        } else if (is != nullptr) {
            ranges.add(position, {is->bytes.data + (position - is->offset), size});
        } else if (was != nullptr) {
            ranges.addZeros(position, size);
        }
        position = end;
    }
    return ranges.take();
}

} // namespace Corvid::mxf
