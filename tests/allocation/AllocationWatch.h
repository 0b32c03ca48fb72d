#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Corvid::Testing {

/// Which allocations of a call fail.
struct Failing {
    std::size_t first = 0;  ///< the number of the first, counted from 1; 0 for none
    bool allBehind = false; ///< all that follow it fail, too
    bool onlyXml = false;   ///< only what Xerces-C asks its memory manager for counts
};

/// From construction to endCall() all allocations of the thread are counted, fail as asked, and are
/// remembered until they are released, be it later. There is one at a time in a process.
///
/// All that the process allocates passes here, whether by malloc, by operator new or in a library.
class AllocationWatch {
public:
    explicit AllocationWatch(Failing failing);
    AllocationWatch(const AllocationWatch&) = delete;
    AllocationWatch& operator=(const AllocationWatch&) = delete;
    ~AllocationWatch();

    /// From here on nothing fails or counts any more. Takes no memory.
    void endCall() noexcept;

    /// How many allocations there were.
    std::size_t count() const noexcept;

    /// Whether one has failed.
    bool hasFailed() const noexcept;

    struct Block {
        std::size_t number = 0; ///< of the allocation, as in Failing
        std::size_t size = 0;   ///< in bytes
    };
    /// What is not released.
    std::vector<Block> left() const;

    /// Whether the place lies in a block that is not released.
    bool holds(const void* place) const noexcept;
};

/// While it lives, what the thread allocates is on behalf of Xerces-C.
class XmlAllocation {
public:
    XmlAllocation() noexcept;
    XmlAllocation(const XmlAllocation&) = delete;
    XmlAllocation& operator=(const XmlAllocation&) = delete;
    ~XmlAllocation();
};

/// While it lives, watches note who calls for some allocations.
class AllocationTraces {
public:
    static constexpr std::size_t capacity = 1024;

    /// @param numbers  of the allocations; those beyond the capacity are left out.
    explicit AllocationTraces(const std::vector<std::size_t>& numbers);
    AllocationTraces(const AllocationTraces&) = delete;
    AllocationTraces& operator=(const AllocationTraces&) = delete;
    ~AllocationTraces();

    /// The callers of one of the allocations, innermost first: the name with its arguments, or the
    /// library and the place in it.
    static std::vector<std::string> of(std::size_t number);
};

} // namespace Corvid::Testing
