// FreeType's memory, with a bound.
#pragma once

#include <cstddef>

#include <ft2build.h>
#include FT_SYSTEM_H

namespace quillmark {

/// Gives FreeType memory up to a total. FreeType takes a font's word for how long a part of it is,
/// and asks for so much memory before it reads what there is. For one thread at a time; what was
/// given must be released before this ends.
class FreeTypeMemory {
public:
    /// `most` is how much may be in use at a time, in bytes.
    explicit FreeTypeMemory(std::size_t most);
    FreeTypeMemory(const FreeTypeMemory&) = delete;
    FreeTypeMemory& operator=(const FreeTypeMemory&) = delete;

    /// For FT_New_Library. Beyond the total its functions return null, as where memory has run out.
    [[nodiscard]] FT_Memory get() { return &m_memory; }

private:
    static void* allocate(FT_Memory memory, long size) noexcept;
    static void* resize(FT_Memory memory, long before, long size, void* block) noexcept;
    static void release(FT_Memory memory, void* block) noexcept;

    FT_MemoryRec_ m_memory{};
    std::size_t m_most;
    std::size_t m_used{};
};

} // namespace quillmark
