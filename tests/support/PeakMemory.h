#pragma once

#include "tests/support/Sanitizers.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Corvid::Testing {

/// How much more memory than before a process needs while it calls the body, in bytes. The body
/// runs in a process of its own, from which nothing but this number comes back; what it throws
/// counts as done. Nothing where sanitizers make memory mean something else.
inline std::optional<std::size_t> peakMemoryOf(const std::function<void()>& body) {
#if defined(CORVID_ADDRESS_SANITIZER) || defined(CORVID_THREAD_SANITIZER)
    (void)body;
    return {};
#else
    const auto peak = [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
    };
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        const std::size_t before = peak();
        try {
            body();
        } catch (...) {
        }
        const std::size_t growth = peak() - before;
        _exit(write(ends[1], &growth, sizeof growth) == sizeof growth ? 0 : 1);
    }
    close(ends[1]);
    std::size_t growth = 0;
    const bool told = child > 0 && read(ends[0], &growth, sizeof growth) == sizeof growth;
    close(ends[0]);
    if (child > 0) {
        waitpid(child, nullptr, 0);
    }
    if (!told) {
        throw std::runtime_error("the process that was to be measured did not end well");
    }
    return growth;
#endif
}

} // namespace Corvid::Testing
