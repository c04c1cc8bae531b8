#include "Mutation.h"

#include <algorithm>
#include <array>

namespace quillmark::fuzz {
namespace {

using test::Bytes;

/// What a place may be changed with.
struct Material {
    Random& random;
    std::span<const std::byte> other;
    std::span<const std::string> words;
};

/// Numbers at which something may run over or turn negative.
constexpr auto edges = std::to_array<std::uint32_t>({
    0,      1,      2,      0x7F,       0x80,       0xFF,       0x100,      511,        512,
    0x7FFF, 0x8000, 0xFFFE, 0xFFFF,     0x10000,    0xFFFFFF,   0x7FFFFFFF, 0x80000000, 0xFFFFFFF0,
    9'999,  10'000, 65'534, 0x40000000, 0x3FFFFFFF, 0xFFFFFFFC, 0xFFFFFFFF,
});

void flipBit(Material& material, Bytes& bytes)
{
    bytes[material.random.below(bytes.size())] ^= std::byte{1} << material.random.below(8);
}

void setByte(Material& material, Bytes& bytes)
{
    bytes[material.random.below(bytes.size())] = static_cast<std::byte>(material.random());
}

void setNumber(Material& material, Bytes& bytes, std::size_t width)
{
    if (bytes.size() < width) return;
    // Fields of binary formats stand at even places.
    const std::size_t at = material.random.below(bytes.size() - width + 1) & ~std::size_t{1};
    const std::uint32_t value = material.random.oneOf(std::span<const std::uint32_t>(edges));
    for (std::size_t i = 0; i < width; ++i)
        bytes[at + i] = static_cast<std::byte>(value >> (8 * (width - 1 - i)));
}

void setShort(Material& material, Bytes& bytes)
{
    setNumber(material, bytes, 2);
}

void setLong(Material& material, Bytes& bytes)
{
    setNumber(material, bytes, 4);
}

/// A random piece of `bytes`, mostly a short one.
std::span<const std::byte> piece(Random& random, std::span<const std::byte> bytes)
{
    if (bytes.empty()) return {};
    const std::size_t at = random.below(bytes.size());
    const std::size_t most = std::min(bytes.size() - at, std::size_t{1} << random.below(13));
    return bytes.subspan(at, random.below(most) + 1);
}

void insert(Material& material, Bytes& bytes, std::span<const std::byte> more)
{
    const Bytes copy(more.begin(), more.end());
    const auto at = static_cast<std::ptrdiff_t>(material.random.below(bytes.size() + 1));
    bytes.insert(bytes.begin() + at, copy.begin(), copy.end());
}

void overwrite(Material& material, Bytes& bytes, std::span<const std::byte> by)
{
    const std::size_t at = material.random.below(bytes.size());
    std::ranges::copy(by.first(std::min(by.size(), bytes.size() - at)),
                      bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

void repeatPiece(Material& material, Bytes& bytes)
{
    const auto repeated = piece(material.random, bytes);
    const Bytes copy(repeated.begin(), repeated.end());
    for (std::size_t times = material.random.below(20) + 1; times > 0; --times)
        insert(material, bytes, copy);
}

void removePiece(Material& material, Bytes& bytes)
{
    const auto removed = piece(material.random, bytes);
    const auto at = bytes.begin() + (removed.data() - bytes.data());
    bytes.erase(at, at + static_cast<std::ptrdiff_t>(removed.size()));
}

void cut(Material& material, Bytes& bytes)
{
    bytes.resize(material.random.below(bytes.size()) + 1);
}

void insertOther(Material& material, Bytes& bytes)
{
    insert(material, bytes, piece(material.random, material.other));
}

void overwriteByOther(Material& material, Bytes& bytes)
{
    overwrite(material, bytes, piece(material.random, material.other));
}

void overwriteBySelf(Material& material, Bytes& bytes)
{
    const auto source = piece(material.random, bytes);
    const Bytes copy(source.begin(), source.end());
    overwrite(material, bytes, copy);
}

void insertWord(Material& material, Bytes& bytes)
{
    if (material.words.empty()) return;
    insert(material, bytes, std::as_bytes(std::span(material.random.oneOf(material.words))));
}

void overwriteByWord(Material& material, Bytes& bytes)
{
    if (material.words.empty()) return;
    overwrite(material, bytes, std::as_bytes(std::span(material.random.oneOf(material.words))));
}

/// Puts another number for a run of digits.
void setDigits(Material& material, Bytes& bytes)
{
    const auto isDigit = [](std::byte byte) {
        return byte >= std::byte{'0'} && byte <= std::byte{'9'};
    };
    const auto start =
        bytes.begin() + static_cast<std::ptrdiff_t>(material.random.below(bytes.size()));
    const auto begin = std::find_if(start, bytes.end(), isDigit);
    if (begin == bytes.end()) return;
    const auto end = std::find_if_not(begin, bytes.end(), isDigit);
    const std::uint32_t edge = material.random.oneOf(std::span<const std::uint32_t>(edges));
    const std::string number =
        material.random.oneIn(2) ? std::to_string(material.random.below(40)) : std::to_string(edge);
    const auto at = bytes.erase(begin, end);
    const auto digits = std::as_bytes(std::span(number));
    bytes.insert(at, digits.begin(), digits.end());
}

constexpr std::array mutations{
    flipBit,         setByte,     setShort,  setShort,        setLong,    setLong,
    repeatPiece,     removePiece, cut,       insertOther,     insertWord, overwriteByOther,
    overwriteBySelf, setDigits,   setDigits, overwriteByWord,
};

} // namespace

Random::Random(std::uint64_t seed) : m_state(seed) {}

std::uint64_t Random::operator()()
{
    // SplitMix64 (Steele, Lea and Flood, 2014).
    std::uint64_t z = (m_state += 0x9E3779B97F4A7C15U);
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
}

Bytes mutated(Random& random, Bytes bytes, std::span<const std::byte> other,
              std::span<const std::string> words)
{
    Material material{random, other, words};
    for (std::size_t places = random.below(8) + 1; places > 0 && !bytes.empty(); --places)
        mutations[random.below(mutations.size())](material, bytes);
    return bytes;
}

} // namespace quillmark::fuzz
