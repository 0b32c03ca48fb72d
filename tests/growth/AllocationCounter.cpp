#include "tests/growth/AllocationCounter.h"

#include <algorithm>
#include <cstddef>
#include <malloc.h>

namespace Corvid::Testing::AllocationCounter {

namespace {

bool counts = false;
Counts current;
std::int64_t held = 0; // may fall below zero: what was there before is released, too

void noteTaken(void* memory, std::size_t size) noexcept {
    if (counts && memory != nullptr) {
        ++current.allocations;
        current.bytes += size;
        held += static_cast<std::int64_t>(malloc_usable_size(memory));
        current.peak = std::max(
            current.peak, static_cast<std::uint64_t>(std::max(held, static_cast<std::int64_t>(0))));
    }
}

void noteReleased(void* memory) noexcept {
    if (counts && memory != nullptr) {
        held -= static_cast<std::int64_t>(malloc_usable_size(memory));
    }
}

} // namespace

void start() noexcept {
    current = {};
    held = 0;
    counts = true;
}

Counts stop() noexcept {
    counts = false;
    return current;
}

} // namespace Corvid::Testing::AllocationCounter

namespace Corvid::Testing::ReplacedMalloc {

namespace {

template <class Allocate> void* allocated(std::size_t size, Allocate allocate) noexcept {
    void* const memory = allocate();
    AllocationCounter::noteTaken(memory, size);
    return memory;
}

void released(void* memory) noexcept { AllocationCounter::noteReleased(memory); }

} // namespace

} // namespace Corvid::Testing::ReplacedMalloc

#include "tests/support/ReplacedMalloc.h" // needs the two functions
