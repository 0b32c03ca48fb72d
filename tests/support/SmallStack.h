#pragma once

#include "tests/support/Sanitizers.h"

#include <exception>
#include <functional>
#include <pthread.h>
#include <system_error>

namespace Corvid::Testing {

/// Stack enough for everything that the library does, however deep its input: what the smallest
/// threads of common platforms have. Sanitizers make every frame several times as large.
#if defined(CORVID_ADDRESS_SANITIZER) || defined(CORVID_THREAD_SANITIZER)
inline constexpr std::size_t smallStack = 4 * 512 * 1024;
#else
inline constexpr std::size_t smallStack = 512 * 1024;
#endif

/// Calls the body in a thread of its own with a small stack; what it throws comes out here.
inline void onSmallStack(std::function<void()> body) {
    struct Work {
        std::function<void()> body;
        std::exception_ptr failure;
    } work{std::move(body), {}};

    const auto check = [](int error) {
        if (error != 0) {
            throw std::system_error(error, std::generic_category());
        }
    };
    pthread_attr_t attributes;
    check(pthread_attr_init(&attributes));
    check(pthread_attr_setstacksize(&attributes, smallStack));
    pthread_t thread;
    check(pthread_create(
        &thread, &attributes,
        [](void* argument) -> void* {
            auto& given = *static_cast<Work*>(argument);
            try {
                given.body();
            } catch (...) {
                given.failure = std::current_exception();
            }
            return nullptr;
        },
        &work));
    check(pthread_join(thread, nullptr));
    check(pthread_attr_destroy(&attributes));
    if (work.failure) {
        std::rethrow_exception(work.failure);
    }
}

} // namespace Corvid::Testing
