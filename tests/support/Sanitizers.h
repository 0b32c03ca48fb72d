#pragma once

// CORVID_ADDRESS_SANITIZER and CORVID_THREAD_SANITIZER: what GCC says with a macro and clang as a
// feature.

#if defined(__SANITIZE_ADDRESS__)
#define CORVID_ADDRESS_SANITIZER
#endif
#if defined(__SANITIZE_THREAD__)
#define CORVID_THREAD_SANITIZER
#endif

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CORVID_ADDRESS_SANITIZER
#endif
#if __has_feature(thread_sanitizer)
#define CORVID_THREAD_SANITIZER
#endif
#endif
