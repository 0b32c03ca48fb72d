#include "host/base/KeyedHash.h"

#include <gtest/gtest.h>

#include <numeric>
#include <set>
#include <string>

namespace Corvid {
namespace {

KeyedHash::Key key(unsigned char first) {
    KeyedHash::Key key{};
    std::iota(key.begin(), key.end(), first);
    return key;
}

// The vectors that its authors published with SipHash-2-4 (Aumasson and Bernstein, 2012) for the
// key 00 01 .. 0f and the bytes 00 01 .., as many as there are.
TEST(KeyedHash, isSipHash) {
    const KeyedHash hash(key(0));
    std::u16string text(7, u'\0');
    auto* bytes = reinterpret_cast<unsigned char*>(&text[0]);
    std::iota(bytes, bytes + 14, static_cast<unsigned char>(0));
    EXPECT_EQ(hash(u""), 0x726fdb47dd0e0e31U);
    EXPECT_EQ(hash(text.substr(0, 1)), 0x0d6c8009d9a94f5aU);
    EXPECT_EQ(hash(text), 0xf723ca908e7af2eeU);
    EXPECT_EQ(hash(bytes, 14), 0xf723ca908e7af2eeU);
}

TEST(KeyedHash, differsForEachKey) {
    std::set<std::uint64_t> hashes;
    for (unsigned char first = 0; first != 100; ++first) {
        hashes.insert(KeyedHash(key(first))(u"06.0e.2b.34"));
    }
    EXPECT_EQ(hashes.size(), 100U);
}

TEST(KeyedHash, hasRandomKeys) {
    std::set<KeyedHash::Key> keys;
    for (int i = 0; i != 100; ++i) {
        keys.insert(KeyedHash::randomKey());
    }
    EXPECT_EQ(keys.size(), 100u);
}

TEST(KeyedHash, readsTheWholeText) {
    const KeyedHash hash(key(7));
    std::set<std::uint64_t> hashes;
    for (std::size_t length = 0; length != 100; ++length) {
        hashes.insert(hash(std::u16string(length, u'0')));
    }
    EXPECT_EQ(hashes.size(), 100U);
}

} // namespace
} // namespace Corvid
