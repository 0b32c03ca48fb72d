#include "host/base/Platform.h"

#include "tests/support/Sanitizers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

namespace Corvid::Platform {
namespace {

TEST(MallocAlloc, givesWritableMemoryOfTheSizeAskedFor) {
    void* const memory = malloc_alloc::allocate(1000);
    ASSERT_NE(memory, nullptr);
    std::memset(memory, 0xA5, 1000);
    malloc_alloc::deallocate(memory, 1000);
}

TEST(MallocAlloc, givesAPointerForNoBytes) {
    void* const memory = malloc_alloc::allocate(0);
    EXPECT_NE(memory, nullptr);
    malloc_alloc::deallocate(memory, 0);
}

TEST(MallocAlloc, takesNull) { malloc_alloc::deallocate(nullptr, 8); }

// Sanitizers stop at a size that they hold for absurd instead of returning null.
#if !defined(CORVID_ADDRESS_SANITIZER) && !defined(CORVID_THREAD_SANITIZER)
TEST(MallocAlloc, throwsWhereThereIsNoMemory) {
    volatile std::size_t size = std::numeric_limits<std::size_t>::max() / 2;
    EXPECT_THROW(malloc_alloc::allocate(size), std::bad_alloc);
}
#endif

TEST(Synchronization, returnsTheNewCount) {
    volatile long counter = 1;
    EXPECT_EQ(Synchronization::interlockedIncrement(counter), 2);
    EXPECT_EQ(Synchronization::interlockedIncrement(counter), 3);
    EXPECT_EQ(Synchronization::interlockedDecrement(counter), 2);
    EXPECT_EQ(counter, 2);
}

} // namespace
} // namespace Corvid::Platform
