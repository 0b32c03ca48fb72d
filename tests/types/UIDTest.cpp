#include "host/types/UID.h"
#include "tests/types/Samples.h"

#include <set>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Corvid::Testing {
namespace {

namespace UID = Types::Factories::UID;

u8 nextByte = 0;
void count(u8* bytes, std::size_t size) {
    for (std::size_t i = 0; i != size; ++i) {
        bytes[i] = nextByte++;
    }
}
void fillWithOnes(u8* bytes, std::size_t size) { std::fill_n(bytes, size, u8{0xFF}); }

/// Puts another random source in place for a scope.
class Replaced {
public:
    explicit Replaced(UID::RandomSource source) : before_(UID::setRandomSource(source)) {}
    ~Replaced() { UID::setRandomSource(before_); }

private:
    UID::RandomSource before_;
};

TEST(GenerateUUID, marksVersionAndVariant) {
    for (int i = 0; i != 1000; ++i) {
        const Types::UUID uuid = UID::generateUUID(UID::uniqueVersion);
        ASSERT_EQ(uuid[6] >> 4, 4);
        ASSERT_EQ(uuid[8] >> 6, 2);
    }
}

TEST(GenerateUUID, givesEachOnce) {
    std::set<std::array<u8, 16>> seen;
    for (int i = 0; i != 1000; ++i) {
        EXPECT_TRUE(seen.insert(UID::generateUUID(UID::uniqueVersion).bytes()).second);
    }
}

TEST(GenerateUUID, givesEachOnceInWhateverThread) {
    constexpr std::size_t each = 5000;
    std::vector<std::vector<std::array<u8, 16>>> made(4);
    std::vector<std::thread> threads;
    for (auto& mine : made) {
        threads.emplace_back([&mine] {
            for (std::size_t i = 0; i != each; ++i) {
                mine.push_back(UID::generateUUID(UID::uniqueVersion).bytes());
            }
        });
    }
    std::set<std::array<u8, 16>> seen;
    for (std::size_t i = 0; i != threads.size(); ++i) {
        threads[i].join();
        seen.insert(made[i].begin(), made[i].end());
    }
    EXPECT_EQ(seen.size(), threads.size() * each);
}

TEST(GenerateUUID, givesAChildProcessOthersThanItsParent) {
    UID::generateUUID(UID::uniqueVersion); // what is got in advance is there now
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        const auto bytes = UID::generateUUID(UID::uniqueVersion).bytes();
        _exit(write(ends[1], bytes.data(), bytes.size()) == 16 ? 0 : 1);
    }
    ASSERT_GT(child, 0);
    const auto here = UID::generateUUID(UID::uniqueVersion).bytes();
    std::array<u8, 16> there{};
    EXPECT_EQ(read(ends[0], there.data(), there.size()), 16);
    waitpid(child, nullptr, 0);
    close(ends[0]);
    close(ends[1]);
    EXPECT_NE(there, here);
}

TEST(GenerateUUID, takesItsBytesFromTheReplacedSource) {
    {
        const Replaced source(count);
        nextByte = 0;
        EXPECT_EQ(bytesOf(UID::generateUUID(UID::uniqueVersion)),
                  (Bytes{0, 1, 2, 3, 4, 5, 0x46, 7, 0x88, 9, 10, 11, 12, 13, 14, 15}));
    }
    const Replaced source(fillWithOnes);
    Bytes ones(16, 0xFF);
    ones[6] = 0x4F;
    ones[8] = 0xBF;
    EXPECT_EQ(bytesOf(UID::generateUUID(UID::uniqueVersion)), ones);
}

TEST(GenerateUUID, goesBackToTheSystemsSource) {
    const Replaced source(fillWithOnes);
    EXPECT_EQ(UID::setRandomSource(nullptr), fillWithOnes);
    EXPECT_NE(UID::generateUUID(UID::uniqueVersion), UID::generateUUID(UID::uniqueVersion));
}

TEST(GenerateUUID, givesZerosForTheNilVersion) {
    EXPECT_EQ(static_cast<int>(UID::uniqueVersion), 1);
    EXPECT_EQ(UID::generateUUID(UID::nilVersion), Types::UUID());
}

} // namespace
} // namespace Corvid::Testing
