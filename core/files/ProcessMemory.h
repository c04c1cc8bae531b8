// How the running program gets its memory from the system.
#pragma once

namespace quillmark {

/// For a program that runs for a moment, in which it fills its memory once, or again and again. By
/// default memory goes back to the system in between, and each page of it that is asked for again
/// has to be cleared again.
void keepMemory();

} // namespace quillmark
