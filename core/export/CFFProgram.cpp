#include "export/CFFProgram.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

// Operators of charstrings.
constexpr char rlineto = 5;
constexpr char hlineto = 6;
constexpr char vlineto = 7;
constexpr char rrcurveto = 8;
constexpr char endchar = 14;
constexpr char rmoveto = 21;

// Operators of dictionaries; those of two bytes begin with 12.
constexpr std::string_view notice{"\x01", 1};
constexpr std::string_view fullName{"\x02", 1};
constexpr std::string_view familyName{"\x03", 1};
constexpr std::string_view charset{"\x0F", 1};
constexpr std::string_view charStringsAt{"\x11", 1};
constexpr std::string_view privateAt{"\x12", 1};
constexpr std::string_view defaultWidthX{"\x14", 1};
constexpr std::string_view registryOrderingSupplement{"\x0C\x1E", 2};
constexpr std::string_view cidCount{"\x0C\x22", 2};
constexpr std::string_view fontDictsAt{"\x0C\x24", 2};
constexpr std::string_view fontDictSelectAt{"\x0C\x25", 2};

constexpr int offsetSize = 4; // in an INDEX

/// The number of the first string that is not one of the standard strings.
constexpr int firstOwnString = 391;

void appendBigEndian(std::string& bytes, std::size_t value, int size)
{
    for (int byte = size - 1; byte >= 0; --byte)
        bytes += static_cast<char>((value >> (8 * static_cast<unsigned>(byte))) & 0xFFU);
}

/// Writes a number in the form of charstrings, which dictionaries share. Returns where it ends, at
/// most three bytes further.
char* writeNumber(char* to, int value)
{
    if (value >= -107 && value <= 107) {
        *to++ = static_cast<char>(value + 139);
    } else if (value >= -1131 && value <= 1131) {
        const int above = std::abs(value) - 108;
        *to++ = static_cast<char>((value > 0 ? 247 : 251) + above / 256);
        *to++ = static_cast<char>(above % 256);
    } else {
        const auto unsignedValue = static_cast<std::uint16_t>(value);
        *to++ = 28;
        *to++ = static_cast<char>(unsignedValue >> 8U);
        *to++ = static_cast<char>(unsignedValue & 0xFFU);
    }
    return to;
}

void appendNumber(std::string& bytes, int value)
{
    std::array<char, 3> written{};
    bytes.append(written.data(), writeNumber(written.data(), value));
}

/// A number whose size does not depend on its value, since offsets depend on the sizes before them.
void appendFixedSizeNumber(std::string& bytes, std::size_t value)
{
    bytes += static_cast<char>(29);
    appendBigEndian(bytes, value, 4);
}

/// The size of an INDEX of so many bytes.
std::size_t indexSize(std::span<const std::size_t> ends)
{
    if (ends.empty()) return 2;
    return 3 + (ends.size() + 1) * offsetSize + ends.back();
}

/// An INDEX, whose entries lie in `bytes` one behind the other.
void appendIndex(std::string& program, std::string_view bytes, std::span<const std::size_t> ends)
{
    appendBigEndian(program, ends.size(), 2);
    if (ends.empty()) return;
    program += static_cast<char>(offsetSize);
    appendBigEndian(program, 1, offsetSize);
    for (const std::size_t end : ends)
        appendBigEndian(program, end + 1, offsetSize);
    program += bytes;
}

std::string index(std::span<const std::string> entries)
{
    std::string bytes;
    std::vector<std::size_t> ends;
    for (const std::string& entry : entries) {
        bytes += entry;
        ends.push_back(bytes.size());
    }
    std::string written;
    appendIndex(written, bytes, ends);
    return written;
}

/// As std::lround does, which is called some million times for a font of ideographs.
int rounded(double coordinate)
{
    // An outline beyond this comes from a broken font; charstrings cannot hold it.
    constexpr double farthest = 16'000;
    const double held = std::clamp(coordinate, -farthest, farthest);
    return static_cast<int>(held < 0 ? held - 0.5 : held + 0.5);
}

/// Where the parts lie, which are named in the top dictionary before they come.
struct Offsets {
    std::size_t charset{};
    std::size_t fontDictSelect{};
    std::size_t charStrings{};
    std::size_t fontDicts{};
};

class TopDict {
public:
    TopDict(const CFFNames& names, std::size_t glyphs)
    {
        m_strings = {"Adobe", "Identity"};
        appendNumber(m_start, firstOwnString);
        appendNumber(m_start, firstOwnString + 1);
        appendNumber(m_start, 0);
        m_start += registryOrderingSupplement;
        text(notice, names.notice);
        text(fullName, names.fullName);
        text(familyName, names.familyName);
        appendFixedSizeNumber(m_start, glyphs);
        m_start += cidCount;
    }

    [[nodiscard]] const std::vector<std::string>& strings() const { return m_strings; }

    [[nodiscard]] std::string bytes(const Offsets& offsets) const
    {
        std::string all = m_start;
        const auto append = [&all](std::size_t offset, std::string_view dictOperator) {
            appendFixedSizeNumber(all, offset);
            all += dictOperator;
        };
        append(offsets.charset, charset);
        append(offsets.fontDictSelect, fontDictSelectAt);
        append(offsets.charStrings, charStringsAt);
        append(offsets.fontDicts, fontDictsAt);
        return all;
    }

private:
    void text(std::string_view dictOperator, const std::string& value)
    {
        if (value.empty()) return;
        appendNumber(m_start, firstOwnString + static_cast<int>(m_strings.size()));
        m_start += dictOperator;
        m_strings.push_back(value);
    }

    std::string m_start;
    std::vector<std::string> m_strings;
};

/// Each glyph's CID is its number.
std::string identityCharset(std::size_t glyphs)
{
    std::string bytes;
    if (glyphs < 2) return std::string(1, '\0'); // only the glyph that has no entry
    bytes += '\2';
    appendBigEndian(bytes, 1, 2);
    appendBigEndian(bytes, glyphs - 2, 2);
    return bytes;
}

/// All glyphs belong to the only font dictionary.
std::string onlyFontDict(std::size_t glyphs)
{
    std::string bytes{'\3', '\0', '\1', '\0', '\0', '\0'};
    appendBigEndian(bytes, glyphs, 2);
    return bytes;
}

std::string fontDict(std::size_t privateSize, std::size_t privateOffset)
{
    std::string bytes;
    appendFixedSizeNumber(bytes, privateSize);
    appendFixedSizeNumber(bytes, privateOffset);
    bytes += privateAt;
    return bytes;
}

} // namespace

CharString::CharString(CharStrings& all, double width) : m_all(all)
{
    appendNumber(m_all.bytes, rounded(width)); // the nominal width is 0
}

char* CharString::step(char* to, int x, int y)
{
    to = writeNumber(writeNumber(to, x - m_x), y - m_y);
    m_x = x;
    m_y = y;
    return to;
}

/// By size, for which a string has a shorter way than for a range.
void CharString::append(const char* begin, const char* end)
{
    m_all.bytes.append(begin, static_cast<std::size_t>(end - begin));
}

void CharString::moveTo(double x, double y)
{
    std::array<char, 7> bytes; // NOLINT(*-member-init): no more than is filled is read
    char* end = step(bytes.data(), rounded(x), rounded(y));
    *end++ = rmoveto;
    append(bytes.data(), end);
}

void CharString::lineTo(double x, double y)
{
    std::array<char, 7> bytes; // NOLINT(*-member-init)
    char* end = bytes.data();
    const int nextX = rounded(x);
    const int nextY = rounded(y);
    if (nextY == m_y) {
        end = writeNumber(end, nextX - std::exchange(m_x, nextX));
        *end++ = hlineto;
    } else if (nextX == m_x) {
        end = writeNumber(end, nextY - std::exchange(m_y, nextY));
        *end++ = vlineto;
    } else {
        end = step(end, nextX, nextY);
        *end++ = rlineto;
    }
    append(bytes.data(), end);
}

void CharString::curveTo(double x1, double y1, double x2, double y2, double x, double y)
{
    std::array<char, 19> bytes; // NOLINT(*-member-init)
    char* end = step(bytes.data(), rounded(x1), rounded(y1));
    end = step(end, rounded(x2), rounded(y2));
    end = step(end, rounded(x), rounded(y));
    *end++ = rrcurveto;
    append(bytes.data(), end);
}

void CharString::finish()
{
    m_all.bytes += endchar;
    m_all.ends.push_back(m_all.bytes.size());
}

std::string cffProgram(const CFFNames& names, const CharStrings& charStrings)
{
    const std::size_t glyphs = charStrings.ends.size();
    const std::string header{'\1', '\0', '\4', '\4'};
    const std::string nameIndex = index(std::array{names.fontName});
    const TopDict topDict(names, glyphs);
    const std::string stringIndex = index(topDict.strings());
    const std::string noSubroutines = index({});
    const std::string charsetBytes = identityCharset(glyphs);
    const std::string fontDictSelect = onlyFontDict(glyphs);
    std::string privateDict;
    appendNumber(privateDict, 0);
    privateDict += defaultWidthX;

    Offsets offsets;
    offsets.charset = header.size() + nameIndex.size() +
                      index(std::array{topDict.bytes(offsets)}).size() + stringIndex.size() +
                      noSubroutines.size();
    offsets.fontDictSelect = offsets.charset + charsetBytes.size();
    offsets.charStrings = offsets.fontDictSelect + fontDictSelect.size();
    offsets.fontDicts = offsets.charStrings + indexSize(charStrings.ends);
    const std::size_t privateOffset = offsets.fontDicts + index(std::array{fontDict(0, 0)}).size();

    std::string program;
    program.reserve(privateOffset + privateDict.size());
    program += header;
    program += nameIndex;
    program += index(std::array{topDict.bytes(offsets)});
    program += stringIndex;
    program += noSubroutines;
    program += charsetBytes;
    program += fontDictSelect;
    appendIndex(program, charStrings.bytes, charStrings.ends);
    program += index(std::array{fontDict(privateDict.size(), privateOffset)});
    program += privateDict;
    return program;
}

} // namespace quillmark
