#pragma once

#include <cstddef>

namespace Corvid::XMLBuilder {

/// The schemas of the built-in dictionary as prepareSchemas.cpp has compiled them when the system
/// was built; their origin is builtInFingerprint().
struct PreparedSchemas {
    const unsigned char* bytes;
    std::size_t length;
};

PreparedSchemas preparedSchemas() noexcept;

} // namespace Corvid::XMLBuilder
