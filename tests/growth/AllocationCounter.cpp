#include "tests/growth/AllocationCounter.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <malloc.h>

// glibc's own, behind the names that are taken here.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}
// NOLINTEND(bugprone-reserved-identifier)

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

using Corvid::Testing::AllocationCounter::noteReleased;
using Corvid::Testing::AllocationCounter::noteTaken;

extern "C" {

void* malloc(std::size_t size) {
    void* const memory = __libc_malloc(size);
    noteTaken(memory, size);
    return memory;
}

void* calloc(std::size_t count, std::size_t size) {
    void* const memory = __libc_calloc(count, size);
    noteTaken(memory, count * size);
    return memory;
}

void* realloc(void* memory, std::size_t size) {
    noteReleased(memory);
    void* const moved = __libc_realloc(memory, size);
    noteTaken(moved, size);
    return moved;
}

void* memalign(std::size_t alignment, std::size_t size) {
    void* const memory = __libc_memalign(alignment, size);
    noteTaken(memory, size);
    return memory;
}

void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    void* const made = memalign(alignment, size);
    if (made == nullptr) {
        return ENOMEM;
    }
    *memory = made;
    return 0;
}

void free(void* memory) {
    noteReleased(memory);
    __libc_free(memory);
}
}
