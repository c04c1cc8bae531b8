// What a reader process may not do, whatever the files make of it.
#pragma once

namespace quillmark::reader {

/// What of it the kernel could give.
struct Confinement {
    bool files{};       // Landlock: nothing is written, made, removed or started
    bool systemCalls{}; // seccomp: nothing but what reading files takes
};

/// From now on this process, which must have one thread, has limits and may do nothing but read
/// files, allocate memory, and talk through `channel`. Never undone.
[[nodiscard]] Confinement confine(int channel);

} // namespace quillmark::reader
