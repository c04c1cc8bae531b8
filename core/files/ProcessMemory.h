// How the running program gets its memory from the system.
#pragma once

#include <cstddef>

namespace quillmark {

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
