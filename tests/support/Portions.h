// What calls that read or write do when they are to move few bytes at once.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace quillmark::test {

/// No more than `most` bytes at once, and each call interrupted by a signal once before.
struct Portions {
    long most{}; // zero for any number, without interruptions
    bool interruptNext{true};

    /// Whether a call for `size` bytes fails, with errno set; otherwise `size` is what it moves.
    [[nodiscard]] bool interrupt(std::size_t& size)
    {
        if (most == 0) return false;
        interruptNext = !interruptNext;
        if (!interruptNext) {
            errno = EINTR;
            return true;
        }
        size = std::min(size, static_cast<std::size_t>(most));
        return false;
    }
};

} // namespace quillmark::test
