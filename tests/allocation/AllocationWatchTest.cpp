#include "tests/allocation/Sweep.h"
#include "tests/allocation/XercesMemory.h"

#include <cstdlib>
#include <cstring>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLString.hpp>

namespace Corvid::Testing {
namespace {

void* volatile kept; // so that no compiler leaves a pair of calls out

void* allocate(std::size_t size) {
    kept = std::malloc(size);
    return kept;
}

TEST(AllocationWatch, failsOneAllocation) {
    AllocationWatch watch({2, false, false});
    void* const first = allocate(1);
    void* const second = allocate(1);
    void* const third = allocate(1);
    watch.endCall();
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(third, nullptr);
    EXPECT_EQ(watch.count(), 3U);
    EXPECT_TRUE(watch.hasFailed());
    std::free(first);
    std::free(third);
}

TEST(AllocationWatch, failsAllAllocationsFromOneOn) {
    AllocationWatch watch({2, true, false});
    void* const first = allocate(1);
    bool thrown = false;
    try {
        kept = ::operator new(1);
    } catch (const std::bad_alloc&) {
        thrown = true;
    }
    watch.endCall();
    EXPECT_TRUE(thrown);
    std::free(first);
}

TEST(AllocationWatch, tellsWhatIsNotReleased) {
    AllocationWatch watch({});
    void* const first = allocate(10);
    void* const second = allocate(20);
    std::unique_ptr<void, decltype(&std::free)> grown(std::realloc(second, 3000), std::free);
    watch.endCall();
    EXPECT_TRUE(watch.holds(static_cast<char*>(first) + 9));
    EXPECT_FALSE(watch.holds(&watch));
    std::free(first);
    const auto left = watch.left();
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left.front().number, 3U);
    EXPECT_EQ(left.front().size, 3000U);
    grown.reset();
    EXPECT_TRUE(watch.left().empty());
}

TEST(AllocationWatch, knowsWhatXercesAsksFor) {
    watchXmlMemory();
    AllocationWatch watch({1, false, true});
    void* const other = allocate(1);
    bool thrown = false;
    try {
        xercesc::XMLString::release(reinterpret_cast<XMLCh**>(const_cast<void**>(&kept)));
        xercesc::XMLString::replicate(u"text", xercesc::XMLPlatformUtils::fgMemoryManager);
    } catch (const xercesc::OutOfMemoryException&) {
        thrown = true;
    }
    watch.endCall();
    EXPECT_TRUE(thrown);
    EXPECT_NE(other, nullptr);
}

TEST(AllocationWatch, releasesDocumentsThatAreGivenUp) {
    watchXmlMemory();
    forgetDocuments();
    AllocationWatch watch({});
    xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core")->createDocument(u"u", u"r",
                                                                                      nullptr);
    watch.endCall();
    EXPECT_FALSE(watch.left().empty());
    EXPECT_EQ(releaseAbandonedDocuments(watch), 1U);
    EXPECT_TRUE(watch.left().empty());
    EXPECT_EQ(releaseAbandonedDocuments(watch), 0U);
}

struct Leaks : Subject {
    void call() override {
        void* const first = allocate(1);
        if (void* const second = std::malloc(1)) {
            std::free(second);
            std::free(first);
            return;
        }
        throw std::bad_alloc();
    }
    std::string result() override { return "done"; }
};

TEST(Sweep, tellsALeak) {
    testing::TestPartResultArray failures;
    {
        testing::ScopedFakeTestPartResultReporter reporter(&failures);
        sweep([] { return std::make_unique<Leaks>(); }, {"std::bad_alloc"});
    }
    ASSERT_EQ(failures.size(), 2); // alone, and with all after it
    for (int i = 0; i != failures.size(); ++i) {
        EXPECT_NE(std::strstr(failures.GetTestPartResult(i).message(), "1 bytes not released"),
                  nullptr);
    }
}

} // namespace
} // namespace Corvid::Testing
