#include "host/dataio/ReadWindow.h"

#include "host/dataio/MemorySource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace Corvid::DataIO {
namespace {

/// Counts what is read.
class CountingSource : public MemorySource {
public:
    explicit CountingSource(const std::vector<unsigned char>& bytes)
        : MemorySource(bytes.data(), bytes.size()) {}
    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override {
        ++reads;
        furthest = std::max(furthest, offset + count);
        greatest = std::max(greatest, count);
        return MemorySource::readAt(offset, to, count);
    }

    unsigned reads = 0;
    std::uint64_t furthest = 0;
    std::size_t greatest = 0;
};

std::vector<unsigned char> numbers(std::size_t size) {
    std::vector<unsigned char> bytes(size);
    for (std::size_t i = 0; i != size; ++i) {
        bytes[i] = static_cast<unsigned char>(i * 2654435761U >> 24);
    }
    return bytes;
}

TEST(ReadWindow, showsTheSameBytesAsTheSourceInAnyOrder) {
    const auto bytes = numbers(300'000);
    CountingSource source(bytes);
    ReadWindow window(source);
    std::mt19937 random(7);
    for (int i = 0; i != 2000; ++i) {
        window.readAheadUpTo(random() % 400'000);
        const std::size_t offset = random() % 310'000;
        const std::size_t count = random() % (i % 10 == 0 ? 200'000 : 100);
        const auto view = window.view(offset, count);
        const std::size_t there =
            offset < bytes.size() ? std::min(count, bytes.size() - offset) : 0;
        ASSERT_EQ(view.size, there);
        ASSERT_TRUE(std::equal(view.data, view.data + there,
                               bytes.data() + std::min(offset, bytes.size())));
    }
}

TEST(ReadWindow, readsNothingBehindItsBoundUnlessAsked) {
    const auto bytes = numbers(300'000);
    CountingSource source(bytes);
    ReadWindow window(source);
    window.view(0, 10);
    EXPECT_EQ(source.furthest, 10U);
    window.readAheadUpTo(1000);
    window.view(20, 10);
    EXPECT_EQ(source.furthest, 1000U);
    window.view(995, 10);
    EXPECT_EQ(source.furthest, 1005U);
}

TEST(ReadWindow, readsManySmallPiecesWithFewReads) {
    const auto bytes = numbers(300'000);
    CountingSource source(bytes);
    ReadWindow window(source);
    window.readAheadUpTo(bytes.size());
    for (std::size_t offset = 0; offset + 20 <= bytes.size(); offset += 20) {
        window.view(offset, 20);
    }
    EXPECT_LE(source.reads, 6U);
}

TEST(ReadWindow, makesRoomForNoMoreThanThereIs) {
    const auto bytes = numbers(100);
    CountingSource source(bytes);
    ReadWindow window(source);
    EXPECT_EQ(window.view(10, ~std::size_t{0} / 4).size, 90U);
    EXPECT_EQ(source.greatest, 90U);
}

} // namespace
} // namespace Corvid::DataIO
