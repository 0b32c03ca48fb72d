#include "tools/corvid/batch/Frames.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <unistd.h>

namespace Corvid::Tool {

bool writeAll(int pipe, const void* bytes, std::size_t count) noexcept {
    const auto* at = static_cast<const unsigned char*>(bytes);
    while (count != 0) {
        const ssize_t written = ::write(pipe, at, count);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            at += written;
            count -= static_cast<std::size_t>(written);
        }
    }
    return true;
}

void sendFrame(int pipe, FrameHead::Kind kind, const unsigned char* bytes, std::size_t count) {
    constexpr std::size_t most = 1U << 20;
    do {
        const std::size_t size = std::min(count, most);
        const FrameHead head{kind, static_cast<std::uint32_t>(size)};
        if (!writeAll(pipe, &head, sizeof head) || !writeAll(pipe, bytes, size)) {
            std::_Exit(EXIT_FAILURE);
        }
        bytes += size;
        count -= size;
    } while (count != 0);
}

bool ResultFrames::isTerminal() const noexcept { return ::isatty(STDOUT_FILENO) != 0; }

} // namespace Corvid::Tool
