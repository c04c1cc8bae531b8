#include "export/TrueTypeProgram.h"

#include "fontfile/ByteReader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <map>
#include <vector>

namespace quillmark {
namespace {

/// More bytes of outlines than any font is known to have.
constexpr std::size_t mostOutlineBytes = 0x4000000;

// Of the tables "head" and "maxp" (OpenType 1.9).
constexpr std::size_t headSize = 54;
constexpr std::size_t checksumAdjustmentAt = 8;
constexpr std::size_t locationFormatAt = 50;
constexpr std::size_t glyphCountAt = 4;

constexpr std::size_t alignment = 4; // of tables and of outlines

struct CopiedTable {
    std::string_view tag;
    bool isNeeded;
    std::size_t longest; // in bytes; a longer one is left out
};

/// What is copied besides the outlines. Names and rights are for those who check the document's
/// fonts, and usually a few kilobytes.
constexpr std::array copiedTables{
    CopiedTable{"OS/2", false, 0x1000},   CopiedTable{"cvt ", false, 0x20000},
    CopiedTable{"fpgm", false, 0x100000}, CopiedTable{"head", true, 0x1000},
    CopiedTable{"hhea", true, 0x1000},    CopiedTable{"hmtx", true, 0x40000},
    CopiedTable{"maxp", true, 0x1000},    CopiedTable{"name", false, 0x10000},
    CopiedTable{"prep", false, 0x100000},
};

using Tables = std::map<std::string_view, std::string>; // in the order of a directory

ByteReader reader(std::string_view bytes)
{
    return ByteReader(std::as_bytes(std::span(bytes)));
}

void appendBigEndian(std::string& bytes, std::size_t value, unsigned size)
{
    for (unsigned byte = size; byte > 0; --byte)
        bytes += static_cast<char>((value >> (8 * (byte - 1))) & 0xFFU);
}

void overwrite(std::string& bytes, std::size_t at, std::size_t value, unsigned size)
{
    std::string written;
    appendBigEndian(written, value, size);
    bytes.replace(at, size, written);
}

std::size_t aligned(std::size_t size)
{
    return (size + alignment - 1) / alignment * alignment;
}

std::string read(const FontTables& tables, std::string_view tag, std::size_t longest)
{
    const std::size_t size = tables.size(tag);
    std::string bytes(size <= longest ? size : 0, '\0');
    if (!tables.read(tag, 0, bytes)) bytes.clear();
    return bytes;
}

/// The numbers of the glyphs that one is composed of (OpenType 1.9, "glyf").
std::vector<unsigned> components(std::string_view glyph)
{
    constexpr unsigned wideArguments = 0x0001;
    constexpr unsigned oneScale = 0x0008;
    constexpr unsigned moreComponents = 0x0020;
    constexpr unsigned twoScales = 0x0040;
    constexpr unsigned matrix = 0x0080;
    std::vector<unsigned> found;
    const ByteReader bytes = reader(glyph);
    std::size_t at = 10; // behind the count of contours and the box
    for (bool isMore = true; isMore;) {
        const auto flags = bytes.u16(at);
        const auto number = bytes.u16(at + 2);
        if (!flags || !number) break;
        found.push_back(*number);
        at += (*flags & wideArguments) != 0 ? 8U : 6U;
        if ((*flags & oneScale) != 0) at += 2;
        if ((*flags & twoScales) != 0) at += 4;
        if ((*flags & matrix) != 0) at += 8;
        isMore = (*flags & moreComponents) != 0;
    }
    return found;
}

/// Where the outlines of a font lie, and which of them are wanted.
class Outlines {
public:
    /// `locations` is the table "loca", with entries of two bytes or, if `isLong`, four.
    Outlines(const FontTables& tables, std::string_view locations, bool isLong, std::size_t glyphs)
        : m_tables(tables), m_isWanted(glyphs)
    {
        const ByteReader entries = reader(locations);
        const std::size_t all = tables.size("glyf");
        m_isSound = all <= mostOutlineBytes;
        std::size_t previous = 0;
        for (std::size_t index = 0; index <= glyphs; ++index) {
            const std::size_t width = isLong ? 4 : 2;
            const auto entry = entries.unsignedValue(index * width, width);
            // In two bytes, half of where it lies.
            const std::size_t start = std::size_t{entry.value_or(0)} * (isLong ? 1 : 2);
            m_isSound = m_isSound && entry && start >= previous && start <= all;
            m_starts.push_back(start);
            previous = start;
        }
    }

    /// Whether there are not too many, and each starts where the one before ends. Nothing else may
    /// be asked if not.
    [[nodiscard]] bool isSound() const { return m_isSound; }

    /// Asks for a glyph and for all that it is composed of.
    void want(unsigned glyph)
    {
        std::vector<unsigned> open{glyph};
        while (!open.empty()) {
            const unsigned next = open.back();
            open.pop_back();
            if (next >= m_isWanted.size() || m_isWanted[next]) continue;
            m_isWanted[next] = true;
            std::array<char, 2> contours{};
            if (size(next) < contours.size() || !m_tables.read("glyf", m_starts[next], contours))
                continue;
            const bool isComposed = (static_cast<unsigned char>(contours[0]) & 0x80U) != 0;
            if (!isComposed) continue;
            std::string outline(size(next), '\0');
            if (!m_tables.read("glyf", m_starts[next], outline)) continue;
            const std::vector<unsigned> parts = components(outline);
            open.insert(open.end(), parts.begin(), parts.end());
        }
    }

    /// The table "loca" for the outlines that are wanted, one after the other, in four bytes each.
    [[nodiscard]] std::string locations() const
    {
        std::string bytes;
        bytes.reserve(m_starts.size() * 4);
        std::size_t start = 0;
        for (unsigned glyph = 0; glyph < m_isWanted.size(); ++glyph) {
            appendBigEndian(bytes, start, 4);
            if (m_isWanted[glyph]) start += aligned(size(glyph));
        }
        appendBigEndian(bytes, start, 4);
        return bytes;
    }

    [[nodiscard]] std::size_t wantedBytes() const
    {
        std::size_t sum = 0;
        for (unsigned glyph = 0; glyph < m_isWanted.size(); ++glyph)
            sum += m_isWanted[glyph] ? aligned(size(glyph)) : 0;
        return sum;
    }

    void append(std::string& bytes) const
    {
        std::size_t at = bytes.size();
        bytes.resize(at + wantedBytes());
        for (unsigned glyph = 0; glyph < m_isWanted.size(); ++glyph) {
            if (!m_isWanted[glyph] || size(glyph) == 0) continue;
            // What cannot be read stays zero, which is a glyph without contours.
            (void)m_tables.read("glyf", m_starts[glyph], std::span(bytes).subspan(at, size(glyph)));
            at += aligned(size(glyph));
        }
    }

private:
    [[nodiscard]] std::size_t size(unsigned glyph) const
    {
        return m_starts[glyph + 1] - m_starts[glyph];
    }

    const FontTables& m_tables;
    std::vector<std::size_t> m_starts; // and the end of the last
    std::vector<bool> m_isWanted;
    bool m_isSound{true};
};

std::uint32_t checksum(std::string_view bytes)
{
    std::uint32_t sum = 0;
    const ByteReader words = reader(bytes);
    for (std::size_t at = 0; at < bytes.size(); at += 4)
        sum += words.u32(at).value_or(0);
    return sum;
}

/// A font file of these tables and the outlines, whose checksums are right.
std::string fontFile(const Tables& tables, const Outlines& outlines)
{
    constexpr std::size_t recordSize = 16;
    const auto count = static_cast<unsigned>(tables.size());
    const unsigned searched = std::bit_floor(count);
    std::string directory;
    appendBigEndian(directory, 0x00010000, 4);
    appendBigEndian(directory, count, 2);
    appendBigEndian(directory, searched * recordSize, 2);
    appendBigEndian(directory, std::bit_width(searched) - 1, 2);
    appendBigEndian(directory, (count - searched) * recordSize, 2);

    std::string file(directory.size() + count * recordSize, '\0');
    std::size_t headAt = 0;
    for (const auto& [tag, table] : tables) {
        const std::size_t start = file.size();
        if (tag == "head") headAt = start;
        file += table;
        if (tag == "glyf") outlines.append(file);
        const std::size_t length = file.size() - start;
        file.resize(aligned(file.size()));
        directory += tag;
        appendBigEndian(directory, checksum(std::string_view(file).substr(start)), 4);
        appendBigEndian(directory, start, 4);
        appendBigEndian(directory, length, 4);
    }
    file.replace(0, directory.size(), directory);
    overwrite(file, headAt + checksumAdjustmentAt, 0xB1B0AFBAU - checksum(file), 4);
    return file;
}

} // namespace

std::optional<std::string> trueTypeProgram(const FontTables& tables,
                                           std::span<const unsigned> glyphs)
{
    Tables copied;
    for (const CopiedTable& table : copiedTables) {
        std::string bytes = read(tables, table.tag, table.longest);
        if (!bytes.empty())
            copied.emplace(table.tag, std::move(bytes));
        else if (table.isNeeded)
            return std::nullopt;
    }
    std::string& head = copied["head"];
    const auto glyphCount = reader(copied["maxp"]).u16(glyphCountAt);
    if (head.size() < headSize || !glyphCount) return std::nullopt;
    constexpr std::size_t longestLocations = std::size_t{4} * 0x10000;
    Outlines outlines(tables, read(tables, "loca", longestLocations),
                      reader(head).u16(locationFormatAt) == 1, *glyphCount);
    if (!outlines.isSound()) return std::nullopt;
    outlines.want(0);
    for (const unsigned glyph : glyphs)
        outlines.want(glyph);
    overwrite(head, checksumAdjustmentAt, 0, 4);
    overwrite(head, locationFormatAt, 1, 2);
    copied["loca"] = outlines.locations();
    copied["glyf"]; // written last, so that outlines are copied once
    return fontFile(copied, outlines);
}

} // namespace quillmark
