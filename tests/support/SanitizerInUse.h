#pragma once

// Which sanitizer the file is compiled with; g++ says it by a macro, clang++ as one of its
// features.
#if defined(__has_feature)
#define TKPPDUPDATING_HAS_FEATURE(feature) __has_feature(feature)
#else
#define TKPPDUPDATING_HAS_FEATURE(feature) 0
#endif

/// 1 under AddressSanitizer, which needs memory of its own and keeps what was freed; else 0.
#if defined(__SANITIZE_ADDRESS__) || TKPPDUPDATING_HAS_FEATURE(address_sanitizer)
#define TKPPDUPDATING_ADDRESS_SANITIZER 1
#else
#define TKPPDUPDATING_ADDRESS_SANITIZER 0
#endif

/// The same of ThreadSanitizer.
#if defined(__SANITIZE_THREAD__) || TKPPDUPDATING_HAS_FEATURE(thread_sanitizer)
#define TKPPDUPDATING_THREAD_SANITIZER 1
#else
#define TKPPDUPDATING_THREAD_SANITIZER 0
#endif
