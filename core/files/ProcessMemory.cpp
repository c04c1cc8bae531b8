#include "files/ProcessMemory.h"

#include <malloc.h>

namespace quillmark {

void keepMemory()
{
    constexpr int never = 1 << 30;         // bytes; no list of fonts is that long
    constexpr int largestPiece = 32 << 20; // bytes; more cannot be asked for
    constexpr int growth = 1 << 20;        // bytes
    static_cast<void>(mallopt(M_TRIM_THRESHOLD, never));
    static_cast<void>(mallopt(M_MMAP_THRESHOLD, largestPiece));
    static_cast<void>(mallopt(M_TOP_PAD, growth));
}

void returnMemory(std::size_t spare)
{
    if (mallinfo2().fordblks > spare) static_cast<void>(malloc_trim(0));
}

} // namespace quillmark
