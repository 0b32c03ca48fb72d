#include "host/base/Templates.h"

#include "host/base/Text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>
#include <thread>
#include <type_traits>
#include <utility>

namespace Corvid::Templates {
namespace {

/// Counts its living objects and the calls of its own operator delete.
class Tracked {
public:
    explicit Tracked(int number = 0) : number_(number) { ++living; }
    Tracked(const Tracked&) = delete;
    Tracked& operator=(const Tracked&) = delete;
    virtual ~Tracked() { --living; }

    static void* operator new(std::size_t size) {
        ++allocated;
        return Platform::malloc_alloc::allocate(size);
    }
    static void operator delete(void* memory, std::size_t size) {
        ++deallocated;
        Platform::malloc_alloc::deallocate(memory, size);
    }

    int number() const { return number_; }

    static inline int living = 0;
    static inline int allocated = 0;
    static inline int deallocated = 0;

private:
    int number_;
};

class TrackedMore : public Tracked {
public:
    using Tracked::Tracked;
};

class Owners : public ::testing::Test {
protected:
    void SetUp() override { Tracked::living = Tracked::allocated = Tracked::deallocated = 0; }
    void TearDown() override {
        EXPECT_EQ(Tracked::living, 0);
        EXPECT_EQ(Tracked::allocated, Tracked::deallocated);
    }
};

static_assert(!std::is_copy_constructible_v<auto_ptr<Tracked>>);
static_assert(!std::is_copy_assignable_v<auto_ptr<Tracked>>);
static_assert(std::is_nothrow_move_constructible_v<auto_ptr<Tracked>>);
static_assert(!std::is_convertible_v<Tracked*, auto_ptr<Tracked>>);
static_assert(!std::is_constructible_v<auto_ptr<TrackedMore>, auto_ptr<Tracked>>);

using AutoPtr = Owners;

TEST_F(AutoPtr, deletesWithTheOperatorOfTheClass) {
    { const auto_ptr<Tracked> owner(new Tracked(3)); }
    EXPECT_EQ(Tracked::deallocated, 1);
}

TEST_F(AutoPtr, handsOverByMoving) {
    auto_ptr<Tracked> first(new Tracked(3));
    auto_ptr<Tracked> second(std::move(first));
    EXPECT_FALSE(first);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->number(), 3);
    first = std::move(second);
    EXPECT_EQ((*first).number(), 3);
    EXPECT_EQ(second.get(), nullptr);
    EXPECT_EQ(Tracked::deallocated, 0);
}

TEST_F(AutoPtr, deletesWhatAnAssignmentReplaces) {
    auto_ptr<Tracked> owner(new Tracked(1));
    owner = auto_ptr<Tracked>(new Tracked(2));
    EXPECT_EQ(Tracked::living, 1);
    EXPECT_EQ(owner->number(), 2);
}

TEST_F(AutoPtr, takesOwnersOfDerivedClasses) {
    auto_ptr<TrackedMore> derived(new TrackedMore(4));
    const auto_ptr<Tracked> base(std::move(derived));
    EXPECT_EQ(base->number(), 4);
    EXPECT_FALSE(derived);
}

TEST_F(AutoPtr, survivesItself) {
    auto_ptr<Tracked> owner(new Tracked(5));
    auto_ptr<Tracked>& same = owner;
    owner = std::move(same);
    ASSERT_TRUE(owner);
    owner.reset(owner.get());
    EXPECT_EQ(owner->number(), 5);
    owner.reset();
    EXPECT_FALSE(owner);
}

TEST_F(AutoPtr, givesUpWhatItReleases) {
    auto_ptr<Tracked> owner(new Tracked(6));
    Tracked* const object = owner.release();
    EXPECT_FALSE(owner);
    EXPECT_EQ(Tracked::living, 1);
    delete object;
}

using SharedPointer = Owners;

TEST_F(SharedPointer, deletesWithItsLastOwner) {
    SharedPtr<Tracked> first(new Tracked(7));
    {
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const SharedPtr<Tracked> second = first;
        EXPECT_EQ(first.get(), second.get());
        first = SharedPtr<Tracked>();
        EXPECT_EQ(Tracked::living, 1);
        EXPECT_EQ(second->number(), 7);
    }
    EXPECT_EQ(Tracked::living, 0);
}

TEST_F(SharedPointer, takesOverFromAutoPtr) {
    auto_ptr<Tracked> owner(new Tracked(8));
    const SharedPtr<Tracked> shared(std::move(owner));
    EXPECT_FALSE(owner);
    EXPECT_EQ(shared->number(), 8);
}

TEST_F(SharedPointer, sharesWithOwnersOfBaseClasses) {
    const SharedPtr<TrackedMore> derived(new TrackedMore(9));
    const SharedPtr<Tracked> base = derived;
    EXPECT_EQ(base.get(), derived.get());
}

TEST_F(SharedPointer, survivesItselfAndNull) {
    SharedPtr<Tracked> owner(new Tracked(10));
    SharedPtr<Tracked>& same = owner;
    owner = same;
    EXPECT_EQ(owner->number(), 10);
    const SharedPtr<Tracked> null(static_cast<Tracked*>(nullptr));
    const SharedPtr<Tracked> copy = null; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_FALSE(copy);
}

TEST_F(SharedPointer, mayBeSharedByThreads) {
    SharedPtr<Tracked> owner(new Tracked(11));
    std::vector<std::thread> threads;
    for (int i = 0; i != 4; ++i) {
        threads.emplace_back([owner] {
            for (int round = 0; round != 20000; ++round) {
                SharedPtr<Tracked> mine = owner;
                const SharedPtr<Tracked> other = std::move(mine);
                ASSERT_EQ(other->number(), 11);
            }
        });
    }
    owner = SharedPtr<Tracked>();
    for (std::thread& thread : threads) {
        thread.join();
    }
    threads.clear();
    EXPECT_EQ(Tracked::living, 0);
    EXPECT_EQ(Tracked::deallocated, 1);
}

/// An allocation policy that counts the bytes that are out.
struct CountingPolicy {
    static void* allocate(std::size_t size) {
        bytes += static_cast<long>(size);
        return Platform::malloc_alloc::allocate(size);
    }
    static void deallocate(void* memory, std::size_t size) noexcept {
        bytes -= static_cast<long>(size);
        Platform::malloc_alloc::deallocate(memory, size);
    }
    static inline long bytes = 0;
};

TEST(Containers, takeTheirMemoryFromThePolicyAndGiveItBack) {
    {
        vector<int, CountingPolicy> numbers(1000, 7);
        EXPECT_GE(CountingPolicy::bytes, static_cast<long>(1000 * sizeof(int)));
        list<int, CountingPolicy> members{1, 2, 3};
        map<int, int, std::less<int>, CountingPolicy> pairs{{1, 2}, {3, 4}};
        basic_string<unsigned short, char_traits<unsigned short>, CountingPolicy> text(100, 'x');
        EXPECT_EQ(pairs.at(3), 4);
        EXPECT_EQ(members.size(), 3U);
        EXPECT_EQ(text.size(), 100U);
    }
    EXPECT_EQ(CountingPolicy::bytes, 0);
}

TEST(Containers, refuseACountThatOverflows) {
    allocator<long, Platform::malloc_alloc> allocator;
    volatile std::size_t count = std::numeric_limits<std::size_t>::max() / 4;
    EXPECT_THROW(allocator.allocate(count), std::bad_alloc);
}

TEST(BasicString, comparesUnitsAsUnsignedNumbers) {
    EXPECT_LT(Utf16Text({0x7FFF}), Utf16Text({0x8000}));
    EXPECT_LT(Utf16Text({'a'}), Utf16Text({'a', 0}));
    EXPECT_LT(Utf16Text({'a', 0x100}), Utf16Text({'b', 0x01}));
    EXPECT_EQ(Utf16Text({'a', 0xFFFF}), Utf16Text({'a', 0xFFFF}));
}

TEST(BasicString, isOfStandardUse) {
    const Utf16Unit text[] = {'a', 'b', 'c', 'b', 0};
    Utf16Text string(text);
    EXPECT_EQ(string.size(), 4U);
    EXPECT_EQ(string.find('b'), 1U);
    EXPECT_EQ(string.rfind('b'), 3U);
    EXPECT_EQ(string.find('x'), Utf16Text::npos);
    EXPECT_EQ(string.c_str()[4], 0);
    string += Utf16Unit{'d'};
    string.insert(1, string); // overlaps itself
    EXPECT_EQ(string, (Utf16Text{'a', 'a', 'b', 'c', 'b', 'd', 'b', 'c', 'b', 'd'}));
    const Utf16Text part = string.substr(2, 3);
    EXPECT_EQ(part, (Utf16Text{'b', 'c', 'b'}));
    string = text;
    EXPECT_EQ(string.size(), 4U);
}

TEST(CharTraits, keepsEndOfFileApartFromEveryUnit) {
    using Traits = char_traits<unsigned short>;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const auto value = Traits::to_int_type(static_cast<unsigned short>(unit));
        ASSERT_FALSE(Traits::eq_int_type(value, Traits::eof()));
        ASSERT_EQ(Traits::to_char_type(value), unit);
    }
    EXPECT_NE(Traits::not_eof(Traits::eof()), Traits::eof());
}

} // namespace
} // namespace Corvid::Templates
