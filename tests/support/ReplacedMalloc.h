#pragma once

#include <cerrno>
#include <cstddef>

/// The malloc family of an executable that watches what is allocated, whichever library asks. One
/// source file of it includes this, after it has defined in Corvid::Testing::ReplacedMalloc:
///
///     /// Calls allocate(), which gives the memory or null, or refuses the allocation.
///     template <class Allocate> void* allocated(std::size_t size, Allocate allocate) noexcept;
///     /// Is called before memory, or null, is released.
///     void released(void* memory) noexcept;
///
/// Neither may allocate.

// glibc's own, by the names that are taken here.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}
// NOLINTEND(bugprone-reserved-identifier)

// NOLINTBEGIN(misc-definitions-in-headers): one source file includes them
extern "C" {

void* malloc(std::size_t size) {
    return Corvid::Testing::ReplacedMalloc::allocated(size, [=] { return __libc_malloc(size); });
}

void* calloc(std::size_t count, std::size_t size) {
    return Corvid::Testing::ReplacedMalloc::allocated(count * size,
                                                      [=] { return __libc_calloc(count, size); });
}

void* memalign(std::size_t alignment, std::size_t size) {
    return Corvid::Testing::ReplacedMalloc::allocated(
        size, [=] { return __libc_memalign(alignment, size); });
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
    Corvid::Testing::ReplacedMalloc::released(memory);
    __libc_free(memory);
}

void* realloc(void* memory, std::size_t size) {
    if (memory != nullptr && size == 0) {
        free(memory);
        return nullptr;
    }
    return Corvid::Testing::ReplacedMalloc::allocated(size, [=] {
        Corvid::Testing::ReplacedMalloc::released(memory);
        return __libc_realloc(memory, size);
    });
}
}
// NOLINTEND(misc-definitions-in-headers)
