#include "assessment/Needle.h"

#include "text/Utf8.h"

#include <algorithm>

namespace quillmark {
namespace {

// As many starting points as are looked at together; compilers make a few instructions of them.
// Long texts take large blocks best; short ones small blocks, for what does not fill one is slow.
constexpr std::size_t smallBlock = 32;
constexpr std::size_t largeBlock = 128;
constexpr std::size_t longText = 1024;

/// Whether both characters stand in their places for at least one of a block's starting points.
/// Setting bit 0x20 lower-cases letters. It makes other characters of controls, which costs no more
/// than a closer look.
template <std::size_t blockSize>
bool anyCandidate(const char* firsts, char first, const char* seconds, char second)
{
    unsigned char least = 0xFF;
    for (std::size_t i = 0; i < blockSize; ++i) {
        const auto difference = static_cast<unsigned char>(((firsts[i] | 0x20) ^ first) |
                                                           ((seconds[i] | 0x20) ^ second));
        least = difference < least ? difference : least;
    }
    return least == 0;
}

} // namespace

bool Needle::occursIn(std::string_view text) const
{
    return text.size() < longText ? occursInBlocksOf<smallBlock>(text)
                                  : occursInBlocksOf<largeBlock>(text);
}

template <std::size_t blockSize>
bool Needle::occursInBlocksOf(std::string_view text) const
{
    if (text.size() < m_text.size()) return false;
    const std::size_t startCount = text.size() - m_text.size() + 1;
    if (startCount < blockSize) return startsAmong(text.data(), startCount);
    for (std::size_t start = 0; start < startCount; start += blockSize) {
        // The last block overlaps the one before, so that every block is whole.
        const char* block = text.data() + std::min(start, startCount - blockSize);
        if (anyCandidate<blockSize>(block + m_rarest, m_text[m_rarest], block + m_second,
                                    m_text[m_second]) &&
            startsAmong(block, blockSize))
            return true;
    }
    return false;
}

bool Needle::startsAmong(const char* starts, std::size_t count) const
{
    for (std::size_t i = 0; i < count; ++i)
        if (matchesAt(starts + i)) return true;
    return false;
}

bool Needle::matchesAt(const char* start) const
{
    return Utf8::asciiLower(start[m_rarest]) == m_text[m_rarest] &&
           std::ranges::equal(m_text, std::string_view(start, m_text.size()), {}, {},
                              Utf8::asciiLower);
}

} // namespace quillmark
