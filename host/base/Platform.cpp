#include "host/base/Platform.h"

#include <cstdlib>
#include <new>

namespace Corvid::Platform {

void* malloc_alloc::allocate(std::size_t size) {
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void malloc_alloc::deallocate(void* memory, std::size_t) noexcept { std::free(memory); }

namespace Synchronization {

long interlockedDecrement(volatile long& counter) noexcept {
    return __atomic_sub_fetch(&counter, 1, __ATOMIC_ACQ_REL);
}

long interlockedIncrement(volatile long& counter) noexcept {
    return __atomic_add_fetch(&counter, 1, __ATOMIC_RELAXED);
}

} // namespace Synchronization

} // namespace Corvid::Platform
