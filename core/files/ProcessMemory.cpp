#include "files/ProcessMemory.h"

#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <sys/mman.h>

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

void reserveMemory(std::size_t bytes)
{
    // For what it does to the heap.
    void* room = std::malloc(bytes); // NOLINT(*-no-malloc,*-owning-memory)
    if (room == nullptr) return;
    constexpr std::size_t page = std::size_t{2} << 20U; // a large one
    std::size_t left = bytes;
    void* aligned = room;
    if (std::align(page, page, aligned, left) != nullptr)
        static_cast<void>(::madvise(aligned, left / page * page, MADV_HUGEPAGE));
    std::free(room); // NOLINT(*-no-malloc,*-owning-memory)
}

void returnMemory(std::size_t spare)
{
    if (mallinfo2().fordblks > spare) static_cast<void>(malloc_trim(0));
}

} // namespace quillmark
