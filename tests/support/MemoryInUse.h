#pragma once

#include "tests/support/Sanitizers.h"

#include <cstddef>
#include <malloc.h>
#include <optional>

namespace Corvid::Testing {

/// The bytes that the process has allocated and not released. Nothing under sanitizers, which have
/// allocators of their own, and find what is lost themselves.
inline std::optional<std::size_t> memoryInUse() {
#if defined(CORVID_ADDRESS_SANITIZER) || defined(CORVID_THREAD_SANITIZER)
    return {};
#else
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

} // namespace Corvid::Testing
