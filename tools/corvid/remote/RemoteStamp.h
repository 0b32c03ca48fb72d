#pragma once

#include <cstdint>
#include <string>

namespace Corvid::Tool {

/// What shows whether a file on a server has changed.
struct RemoteStamp {
    std::uint64_t size = 0; ///< in bytes
    std::string version;    ///< what the server calls its content; never empty

    bool operator==(const RemoteStamp& other) const noexcept {
        return size == other.size && version == other.version;
    }
};

} // namespace Corvid::Tool
