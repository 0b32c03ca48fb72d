#include "host/dataio/BufferedSink.h"

#include "host/base/Exceptions.h"

#include <gtest/gtest.h>

#include <vector>

namespace Corvid::DataIO {
namespace {

/// Remembers what it gets and in which pieces.
class Pieces : public DataSink {
public:
    void write(const unsigned char* bytes, std::size_t count) override {
        if (fails) {
            throw Exceptions::IOError("full", CORVID_HERE);
        }
        all.insert(all.end(), bytes, bytes + count);
        ++writes;
    }
    std::vector<unsigned char> all;
    std::size_t writes = 0;
    bool fails = false;
};

TEST(BufferedSink, handsOnEveryByteInFewPieces) {
    std::vector<unsigned char> bytes(300'000);
    for (std::size_t i = 0; i != bytes.size(); ++i) {
        bytes[i] = static_cast<unsigned char>(i * 7);
    }
    for (const std::size_t piece : {1U, 3U, 4096U, 65535U, 65536U, 65537U, 300'000U}) {
        Pieces pieces;
        BufferedSink sink(pieces);
        for (std::size_t at = 0; at < bytes.size(); at += piece) {
            sink.write(bytes.data() + at, std::min(piece, bytes.size() - at));
        }
        sink.flush();
        EXPECT_EQ(pieces.all, bytes) << piece;
        EXPECT_LE(pieces.writes, 6U) << piece;
    }
}

TEST(BufferedSink, writesNothingUnlessItMust) {
    Pieces pieces;
    BufferedSink sink(pieces);
    sink.flush();
    const unsigned char byte = 1;
    sink.write(&byte, 1);
    sink.write(&byte, 0);
    EXPECT_EQ(pieces.writes, 0U);
    sink.flush();
    sink.flush();
    EXPECT_EQ(pieces.writes, 1U);
}

TEST(BufferedSink, letsFailuresPass) {
    Pieces pieces;
    pieces.fails = true;
    BufferedSink sink(pieces);
    const unsigned char byte = 1;
    sink.write(&byte, 1);
    EXPECT_THROW(sink.flush(), Exceptions::IOError);
}

} // namespace
} // namespace Corvid::DataIO
