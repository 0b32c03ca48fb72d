#pragma once

#include "Corvid/Export.h"

#include <cstddef>

namespace Corvid::Platform {

/// Where the memory of everything that crosses a library boundary comes from and goes back to, so
/// that one library may free what another has allocated.
class CORVID_EXPORT malloc_alloc {
public:
    /// @param size  bytes; 0 gives a pointer that may be freed.
    /// @throws std::bad_alloc  there is no memory.
    static void* allocate(std::size_t size);

    /// @param memory  what allocate() returned, or null.
    static void deallocate(void* memory, std::size_t size) noexcept;
};

namespace Synchronization {

/// Subtracts one as a single atomic step and returns what is left.
CORVID_EXPORT long interlockedDecrement(volatile long& counter) noexcept;

/// Adds one as a single atomic step and returns the sum.
CORVID_EXPORT long interlockedIncrement(volatile long& counter) noexcept;

} // namespace Synchronization

} // namespace Corvid::Platform
