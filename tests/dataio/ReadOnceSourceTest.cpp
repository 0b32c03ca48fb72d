#include "host/dataio/ReadOnceSource.h"

#include "tests/support/NotingSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace Corvid::DataIO {
namespace {

using Testing::NotingSource;
using Bytes = std::vector<unsigned char>;

Bytes numbers(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i != size; ++i) {
        bytes[i] = static_cast<unsigned char>(i * 2654435761U >> 24);
    }
    return bytes;
}

TEST(ReadOnceSource, givesTheBytesOfItsSourceAndReadsEachAtMostOnce) {
    const Bytes bytes = numbers(5000);
    for (unsigned seed = 0; seed != 50; ++seed) {
        NotingSource source(bytes);
        ReadOnceSource once(source);
        std::vector<int> wanted(bytes.size());
        std::mt19937 random(seed);
        for (int i = 0; i != 200; ++i) {
            const std::size_t offset = random() % 5100;
            const std::size_t count = random() % (i % 10 == 0 ? 1000 : 30);
            Bytes read(count);
            read.resize(once.readAt(offset, read.data(), count));
            const std::size_t begin = std::min(offset, bytes.size());
            const std::size_t end = std::min(offset + count, bytes.size());
            ASSERT_EQ(read, Bytes(bytes.data() + begin, bytes.data() + end));
            std::fill(wanted.begin() + static_cast<std::ptrdiff_t>(begin),
                      wanted.begin() + static_cast<std::ptrdiff_t>(end), 1);
        }
        EXPECT_EQ(source.times, wanted);
    }
}

TEST(ReadOnceSource, hasTheNameAndTheSizeOfItsSource) {
    const Bytes bytes = numbers(10);
    NotingSource source(bytes);
    ReadOnceSource once(source);
    EXPECT_EQ(once.name(), source.name());
    EXPECT_EQ(once.size(), 10U);
    EXPECT_EQ(once.available(8, 5), 2U);
}

} // namespace
} // namespace Corvid::DataIO
