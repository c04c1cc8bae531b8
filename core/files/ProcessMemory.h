// How the running program gets its memory from the system.
#pragma once

#include <cstddef>

namespace quillmark {

/// Whether this is a build with a sanitizer, which has an allocator of its own, wants address space
/// without end, and tells on standard error what it has found.
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

/// For a program that runs for a moment, in which it fills its memory once, or again and again. By
/// default memory goes back to the system in between, and each page of it that is asked for again
/// has to be cleared again.
void keepMemory();

/// For a thread that is about to fill about so many bytes, little by little: the system is asked
/// for the room once and not for every few pages, and may give it in large ones. What is not filled
/// is not taken.
void reserveMemory(std::size_t bytes);

/// For a program that keeps memory and waits for more work: gives what is free back to the system
/// if that is more than `spare` bytes. So one large file does not leave its mark for good.
void returnMemory(std::size_t spare);

} // namespace quillmark
