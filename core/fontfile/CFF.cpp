#include "fontfile/CFF.h"

#include "fontfile/ByteReader.h"
#include "text/Encoding.h"
#include "text/Trim.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace quillmark {
namespace {

constexpr std::uint16_t noticeOperator = 1;
constexpr std::uint16_t fullNameOperator = 2;
constexpr std::uint16_t familyNameOperator = 3;
constexpr std::uint8_t escape = 12; // the first byte of an operator of two bytes
constexpr std::uint16_t escapedOperators = 1200;
constexpr std::uint16_t copyrightOperator = escapedOperators;

/// String ids below it name strings that every CFF reader knows; no font's own name is one of them.
constexpr std::int32_t standardStringCount = 391;

/// The most text, in bytes as stored, that is taken from one program, as from one name table. All
/// names can be one and the same string of many megabytes; one that would go beyond is left out.
constexpr std::size_t maximumProgramText = std::size_t{16} << 20U;

/// An INDEX whose every element has been found to lie inside the program.
class Index {
public:
    /// The INDEX at `offset`; absent when any part of it cannot be read.
    static std::optional<Index> read(std::span<const std::byte> program, std::size_t offset)
    {
        const ByteReader reader(program);
        const auto count = reader.u16(offset);
        if (!count) return std::nullopt;
        Index index;
        index.m_end = offset + 2;
        if (*count == 0) return index;

        const auto offSize = reader.u8(offset + 2);
        if (!offSize || *offSize < 1 || *offSize > 4) return std::nullopt;
        index.m_count = *count;
        index.m_offSize = *offSize;
        const auto offsets = reader.slice(offset + 3, (std::size_t{*count} + 1) * *offSize);
        if (!offsets) return std::nullopt;
        index.m_offsets = *offsets;
        // Offsets count from the byte before the data, which is the last byte of the offset array.
        const std::size_t base = offset + 2 + offsets->size();
        index.m_data = program.subspan(base);
        for (std::size_t i = 0; i < index.m_count; ++i)
            if (!index.element(i)) return std::nullopt;
        index.m_end = base + index.elementOffset(index.m_count);
        return index;
    }

    [[nodiscard]] std::size_t end() const { return m_end; }

    /// Absent when there are not that many.
    [[nodiscard]] std::optional<std::span<const std::byte>> element(std::size_t i) const
    {
        if (i >= m_count) return std::nullopt;
        const std::size_t start = elementOffset(i);
        const std::size_t end = elementOffset(i + 1);
        if (end < start) return std::nullopt;
        return ByteReader(m_data).slice(start, end - start);
    }

private:
    [[nodiscard]] std::size_t elementOffset(std::size_t i) const
    {
        return *ByteReader(m_offsets).unsignedValue(i * m_offSize, m_offSize);
    }

    std::size_t m_count{};
    std::size_t m_offSize{};
    std::span<const std::byte> m_offsets;
    std::span<const std::byte> m_data;
    std::size_t m_end{};
};

/// A number in a DICT and the bytes it takes.
struct Operand {
    std::int32_t value{};
    std::size_t length{};
};

/// The bytes behind the 30 that starts a real number, up to the one with an end nibble.
std::optional<std::size_t> realNumberLength(const ByteReader& dict, std::size_t at)
{
    for (std::size_t length = 1; const auto byte = dict.u8(at + length - 1); ++length)
        if (*byte >> 4U == 0xF || (*byte & 0xFU) == 0xF) return length;
    return std::nullopt;
}

/// The operand that starts with byte `b0` at `at`; absent when it runs past the end.
std::optional<Operand> operand(const ByteReader& dict, std::size_t at, std::uint8_t b0)
{
    if (b0 == 28) {
        const auto value = dict.u16(at + 1);
        if (!value) return std::nullopt;
        return Operand{static_cast<std::int16_t>(*value), 3};
    }
    if (b0 == 29) {
        const auto value = dict.u32(at + 1);
        if (!value) return std::nullopt;
        return Operand{static_cast<std::int32_t>(*value), 5};
    }
    if (b0 == 30) {
        // No name is numbered by a real number, so only where it ends is of interest.
        const auto length = realNumberLength(dict, at + 1);
        if (!length) return std::nullopt;
        return Operand{0, 1 + *length};
    }
    if (b0 <= 246) return Operand{b0 - 139, 1};
    const auto b1 = dict.u8(at + 1);
    if (!b1) return std::nullopt;
    if (b0 <= 250) return Operand{(b0 - 247) * 256 + *b1 + 108, 2};
    return Operand{-(b0 - 251) * 256 - *b1 - 108, 2};
}

/// The first operand of every operator in a DICT; a later one of the same operator counts.
std::map<std::uint16_t, std::int32_t> firstOperands(std::span<const std::byte> bytes)
{
    std::map<std::uint16_t, std::int32_t> values;
    const ByteReader dict(bytes);
    std::optional<std::int32_t> first;
    std::size_t at = 0;
    while (const auto b0 = dict.u8(at)) {
        const bool isOperator = *b0 <= 21;
        const bool isReserved = (*b0 >= 22 && *b0 <= 27) || *b0 == 31 || *b0 == 255;
        if (isReserved) {
            ++at;
        } else if (isOperator) {
            std::uint16_t number = *b0;
            ++at;
            if (const auto b1 = dict.u8(at); *b0 == escape && b1) {
                number = static_cast<std::uint16_t>(escapedOperators + *b1);
                ++at;
            }
            if (first) values[number] = *first;
            first.reset();
        } else {
            const auto next = operand(dict, at, *b0);
            if (!next) break;
            if (!first) first = next->value;
            at += next->length;
        }
    }
    return values;
}

} // namespace

std::optional<BareFontInfo> CFF::read(std::span<const std::byte> program)
{
    const ByteReader header(program);
    const auto headerSize = header.u8(2);
    if (header.u8(0) != 1 || !headerSize) return std::nullopt;

    const auto names = Index::read(program, *headerSize);
    if (!names) return std::nullopt;
    const auto topDicts = Index::read(program, names->end());
    if (!topDicts) return std::nullopt;
    const auto strings = Index::read(program, topDicts->end());
    const auto topDict = topDicts->element(0);
    if (!strings || !topDict) return std::nullopt;

    std::size_t textLeft = maximumProgramText;
    const auto decoded =
        [&textLeft](
            const std::optional<std::span<const std::byte>>& stored) -> std::optional<std::string> {
        if (!stored || stored->empty() || stored->size() > textLeft) return std::nullopt;
        textLeft -= stored->size();
        return decodeUtf8(*stored);
    };
    const auto values = firstOperands(*topDict);
    const auto string = [&](std::uint16_t number) -> std::optional<std::string> {
        const auto id = values.find(number);
        if (id == values.end() || id->second < standardStringCount) return std::nullopt;
        const auto index = static_cast<std::size_t>(id->second - standardStringCount);
        return trimmedOrAbsent(decoded(strings->element(index)).value_or(""));
    };

    BareFontInfo info;
    info.fontName = decoded(names->element(0));
    info.fullName = string(fullNameOperator);
    info.familyName = string(familyNameOperator);
    info.notice = string(noticeOperator);
    info.copyright = string(copyrightOperator);
    return info;
}

} // namespace quillmark
