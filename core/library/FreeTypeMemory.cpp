#include "library/FreeTypeMemory.h"

#include <cstdlib>
#include <malloc.h>

// What FreeType is given are functions of C.
// NOLINTBEGIN(*-no-malloc,*-owning-memory)

namespace quillmark {

FreeTypeMemory::FreeTypeMemory(std::size_t most) : m_most(most)
{
    m_memory.user = this;
    m_memory.alloc = &FreeTypeMemory::allocate;
    m_memory.realloc = &FreeTypeMemory::resize;
    m_memory.free = &FreeTypeMemory::release;
}

void* FreeTypeMemory::allocate(FT_Memory memory, long size) noexcept
{
    return resize(memory, 0, size, nullptr);
}

void* FreeTypeMemory::resize(FT_Memory memory, long /*before*/, long size, void* block) noexcept
{
    auto& self = *static_cast<FreeTypeMemory*>(memory->user);
    const std::size_t used = self.m_used - ::malloc_usable_size(block);
    if (size < 0 || used > self.m_most || static_cast<std::size_t>(size) > self.m_most - used)
        return nullptr;
    void* const made = std::realloc(block, static_cast<std::size_t>(size));
    if (made != nullptr) self.m_used = used + ::malloc_usable_size(made);
    return made;
}

void FreeTypeMemory::release(FT_Memory memory, void* block) noexcept
{
    auto& self = *static_cast<FreeTypeMemory*>(memory->user);
    self.m_used -= ::malloc_usable_size(block);
    std::free(block);
}

} // namespace quillmark

// NOLINTEND(*-no-malloc,*-owning-memory)
