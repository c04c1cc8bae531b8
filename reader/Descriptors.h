// What a reader process finds open when it starts.
#pragma once

namespace quillmark::reader {

namespace Descriptors {
inline constexpr int channel = 3; // a socket: questions come in, answers go out
inline constexpr int begun = 4;   // memory for the number of the question begun last
inline constexpr int end = 5;     // and nothing from here on
} // namespace Descriptors

/// Whether this is a build with a sanitizer, which wants address space without end, and tells on
/// standard error what it has found.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif
#else
inline constexpr bool isSanitized = false;
#endif

} // namespace quillmark::reader
