#include "tools/corvid/input/ReadWhole.h"

#include "host/base/Exceptions.h"
#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

using namespace Corvid;
using namespace Corvid::Testing;
using Tool::readWhole;

namespace {

TEST(ReadWhole, readsUpToTheLimitAndNoMore) {
    const Workshop shop;
    const std::string path = (shop.path() / "file").string();
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{1} << 20}) {
        const std::string bytes(size, 'x');
        shop.write("file", bytes);
        EXPECT_TRUE(readWhole(path, 1 << 20, "a text") == bytes);
    }
    shop.write("file", std::string((1 << 20) + 1, 'x'));
    try {
        readWhole(path, 1 << 20, "a text");
        FAIL();
    } catch (const Exceptions::LimitExceeded& error) {
        EXPECT_EQ(Platform::toUtf8(error.message()),
                  "can't read " + path + ": more than 1 MiB, the limit for a text");
    }
}

TEST(ReadWhole, saysWhatCantBeRead) {
    const Workshop shop;
    EXPECT_THROW(readWhole((shop.path() / "none").string(), 9, "a text"), Exceptions::IOError);
    EXPECT_THROW(readWhole(shop.path().string(), 9, "a text"), Exceptions::IOError);
}

} // namespace
