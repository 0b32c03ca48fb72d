#include "host/mxf/rewrite/InPlaceForm.h"

#include "tests/mxf/rewrite/CarryOut.h"

#include <random>

namespace Corvid::mxf {
namespace {

using TestBytes = Testing::Bytes;

/// What a file system makes: blocks are inserted, then everything is written.
TestBytes carriedOut(const TestBytes& old, const Rewrite& rewrite, std::uint64_t blockSize) {
    EXPECT_LE(rewrite.insertions.size(), 1U);
    TestBytes file = old;
    for (const Insertion& insertion : rewrite.insertions) {
        EXPECT_EQ(insertion.offset % blockSize, 0U);
        EXPECT_EQ(insertion.size % blockSize, 0U);
        EXPECT_LT(insertion.offset, old.size());
        file.insert(file.begin() + static_cast<std::ptrdiff_t>(insertion.offset), insertion.size,
                    0);
    }
    file.resize(std::max<std::size_t>(file.size(), rewrite.newSize()));
    std::uint64_t last = 0;
    for (const ByteRange& range : rewrite.writes) {
        EXPECT_GE(range.offset, last);
        last = range.end();
        std::copy(range.bytes.begin(), range.bytes.end(),
                  file.begin() + static_cast<std::ptrdiff_t>(range.offset));
    }
    return file;
}

/// The file as it is to be: what is inserted is zeros.
TestBytes wanted(const TestBytes& old, const Rewrite& rewrite) {
    TestBytes file;
    std::size_t position = 0;
    for (const Insertion& insertion : rewrite.insertions) {
        file.insert(file.end(), old.begin() + static_cast<std::ptrdiff_t>(position),
                    old.begin() + static_cast<std::ptrdiff_t>(insertion.offset));
        file.resize(file.size() + insertion.size);
        position = insertion.offset;
    }
    file.insert(file.end(), old.begin() + static_cast<std::ptrdiff_t>(position), old.end());
    file.resize(rewrite.newSize());
    for (const ByteRange& range : rewrite.writes) {
        std::copy(range.bytes.begin(), range.bytes.end(),
                  file.begin() + static_cast<std::ptrdiff_t>(range.offset));
    }
    return file;
}

TestBytes randomBytes(std::mt19937& random, std::size_t size) {
    TestBytes bytes(size);
    for (auto& byte : bytes) {
        byte = static_cast<unsigned char>(1 + random() % 255);
    }
    return bytes;
}

TEST(InPlaceForm, makesTheSameFile) {
    std::mt19937 random(8);
    constexpr std::uint64_t blockSize = 32;
    for (int round = 0; round != 3000; ++round) {
        const TestBytes old = randomBytes(random, 1 + random() % 400);
        Rewrite rewrite;
        rewrite.oldSize = old.size();
        for (std::uint64_t at = random() % 100; at <= old.size() && random() % 3 != 0;
             at += 1 + random() % 150) {
            rewrite.insertions.push_back({at, (1 + random() % 4) * blockSize});
        }
        const std::uint64_t newSize = rewrite.newSize();
        for (std::uint64_t at = random() % 60; at < newSize; at += random() % 200) {
            const auto size = std::min<std::uint64_t>(1 + random() % 70, newSize - at);
            const TestBytes bytes = randomBytes(random, size);
            rewrite.writes.push_back({at, Bytes(bytes.begin(), bytes.end())});
            at += size;
        }
        DataIO::MemorySource source(old.data(), old.size());
        for (const std::uint64_t block : {std::uint64_t{0}, blockSize}) {
            const auto form = inPlaceForm(rewrite, source, block);
            ASSERT_TRUE(form);
            EXPECT_EQ(form->newSize(), newSize);
            EXPECT_EQ(carriedOut(old, *form, blockSize), wanted(old, rewrite)) << round;
            EXPECT_TRUE(block != 0 || form->insertions.empty());
        }
    }
}

TEST(InPlaceForm, writesNoMoreThanABlockAroundAnInsertion) {
    constexpr std::uint64_t blockSize = 4096;
    const TestBytes old(20 * blockSize, 0x77);
    DataIO::MemorySource source(old.data(), old.size());
    const Rewrite rewrite = {old.size(), {{5 * blockSize + 100, blockSize}}, {{3, Bytes(1)}}};
    const auto form = inPlaceForm(rewrite, source, blockSize);
    ASSERT_TRUE(form);
    ASSERT_EQ(form->insertions.size(), 1U);
    EXPECT_EQ(form->insertions[0].offset, 5 * blockSize);
    std::size_t written = 0;
    for (const ByteRange& range : form->writes) {
        written += range.bytes.size();
    }
    EXPECT_EQ(written, 1U + 100 + 100);
}

TEST(InPlaceForm, isNoneWhereTooMuchWouldBeWritten) {
    /// A file of which no byte can be read.
    class Large : public DataIO::RandomAccessSource {
    public:
        Large() : RandomAccessSource("large") {}
        std::size_t readAt(std::uint64_t, unsigned char*, std::size_t) override { return 0; }
        std::uint64_t size() override { return 2 * greatestTail; }
    };
    Large source;
    const Rewrite rewrite = {source.size(), {{4096, 4096}}, {}};
    EXPECT_FALSE(inPlaceForm(rewrite, source, 0));
    EXPECT_TRUE(inPlaceForm(rewrite, source, 4096));
    const Rewrite twice = {source.size(), {{4096, 4096}, {8192, 4096}}, {}};
    EXPECT_FALSE(inPlaceForm(twice, source, 4096));
    const Rewrite odd = {source.size(), {{4096, 100}}, {}};
    EXPECT_FALSE(inPlaceForm(odd, source, 4096));
    const Rewrite tail = {source.size(), {{source.size() - 5, 100}}, {}};
    EXPECT_EQ(Testing::messageOf([&] { inPlaceForm(tail, source, 0); }),
              "can't read large: it has become shorter");
}

} // namespace
} // namespace Corvid::mxf
