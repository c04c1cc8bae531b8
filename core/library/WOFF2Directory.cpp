#include "library/WOFF2Directory.h"

#include "fontfile/ByteReader.h"
#include "library/Limits.h"
#include "library/SfntTags.h"

#include <span>

namespace quillmark {
namespace {

constexpr std::size_t headerSize = 48;
constexpr std::size_t windowSize = 4096;

/// Reads a file from one byte to the next.
class Cursor {
public:
    Cursor(const HeadedSource& file, std::uint64_t at) : m_file(file), m_at(at) {}

    [[nodiscard]] std::uint64_t position() const { return m_at; }

    [[nodiscard]] std::optional<std::uint32_t> u8()
    {
        if (m_at >= Limits::woff2DirectoryBytes) return std::nullopt;
        if (m_at - m_windowStart >= m_window.size()) {
            m_windowStart = m_at;
            m_window = m_file.view(m_at, windowSize, m_scratch);
            if (m_window.empty()) return std::nullopt;
        }
        return std::to_integer<std::uint32_t>(m_window[m_at++ - m_windowStart]);
    }

    [[nodiscard]] std::optional<std::uint32_t> u16() { return unsignedValue(2); }
    [[nodiscard]] std::optional<std::uint32_t> u32() { return unsignedValue(4); }

    /// A number of one to five bytes (UIntBase128).
    [[nodiscard]] std::optional<std::uint32_t> base128()
    {
        std::uint32_t value = 0;
        for (int i = 0; i < 5; ++i) {
            const auto next = u8();
            if (!next || (i == 0 && *next == 0x80U)) return std::nullopt; // no leading zeros
            if ((value & 0xFE000000U) != 0) return std::nullopt;          // no more than 32 bits
            value = value << 7U | (*next & 0x7FU);
            if ((*next & 0x80U) == 0) return value;
        }
        return std::nullopt;
    }

    /// A number of one to three bytes (255UInt16).
    [[nodiscard]] std::optional<std::uint32_t> packedU16()
    {
        constexpr std::uint32_t wordCode = 253;
        constexpr std::uint32_t oneMoreByteCode2 = 254;
        constexpr std::uint32_t oneMoreByteCode1 = 255;
        const auto code = u8();
        if (!code || *code < wordCode) return code;
        if (*code == wordCode) return u16();
        const auto more = u8();
        if (!more) return std::nullopt;
        return *code == oneMoreByteCode1 ? wordCode + *more : 2 * wordCode + *more;
        static_assert(oneMoreByteCode2 + 1 == oneMoreByteCode1);
    }

private:
    [[nodiscard]] std::optional<std::uint32_t> unsignedValue(int bytes)
    {
        std::uint32_t value = 0;
        for (int i = 0; i < bytes; ++i) {
            const auto next = u8();
            if (!next) return std::nullopt;
            value = value << 8U | *next;
        }
        return value;
    }

    const HeadedSource& m_file;
    std::uint64_t m_at{};
    std::uint64_t m_windowStart{};
    std::span<const std::byte> m_window;
    std::vector<std::byte> m_scratch;
};

enum class Kind { name, os2, fvar, glyphs, other };

/// The kind of table that a tag's number in the flags byte means.
Kind kindOfNumber(std::uint32_t number)
{
    switch (number) {
    case 5:
        return Kind::name;
    case 6:
        return Kind::os2;
    case 10: // glyf
    case 11: // loca
        return Kind::glyphs;
    case 47:
        return Kind::fvar;
    default:
        return Kind::other;
    }
}

Kind kindOfTag(std::uint32_t tag)
{
    switch (tag) {
    case sfntTag("name"):
        return Kind::name;
    case sfntTag("OS/2"):
        return Kind::os2;
    case sfntTag("fvar"):
        return Kind::fvar;
    case sfntTag("glyf"):
    case sfntTag("loca"):
        return Kind::glyphs;
    default:
        return Kind::other;
    }
}

struct Record {
    Kind kind{};
    bool isTransformed{}; // stored in another form than in a font file
    std::uint32_t length{};
};

std::optional<Record> record(Cursor& cursor)
{
    constexpr std::uint32_t tagFollows = 63;
    constexpr std::uint32_t untransformedGlyphs = 3;
    const auto flags = cursor.u8();
    if (!flags) return std::nullopt;
    Record record;
    const std::uint32_t number = *flags & 0x3FU;
    if (number == tagFollows) {
        const auto tag = cursor.u32();
        if (!tag) return std::nullopt;
        record.kind = kindOfTag(*tag);
    } else {
        record.kind = kindOfNumber(number);
    }
    // Of the outlines the plain form has the highest version, of everything else the lowest.
    const std::uint32_t version = *flags >> 6U;
    record.isTransformed = version != (record.kind == Kind::glyphs ? untransformedGlyphs : 0);

    auto length = cursor.base128();
    if (length && record.isTransformed) length = cursor.base128();
    if (!length) return std::nullopt;
    record.length = *length;
    return record;
}

/// Lets `face` have the table. As in plain font files, the last one of a kind counts.
void add(WOFF2Directory::Face& face, std::size_t table, const std::vector<Record>& records)
{
    if (table >= records.size() || records[table].isTransformed) return;
    switch (records[table].kind) {
    case Kind::name:
        face.name = table;
        break;
    case Kind::os2:
        face.os2 = table;
        break;
    case Kind::fvar:
        face.fvar = table;
        break;
    case Kind::glyphs:
    case Kind::other:
        break;
    }
}

using FaceList = std::vector<WOFF2Directory::Face>;

FaceList onlyFace(const std::vector<Record>& records)
{
    WOFF2Directory::Face face;
    for (std::size_t table = 0; table < records.size(); ++table)
        add(face, table, records);
    return {face};
}

std::optional<FaceList> collectionFaces(Cursor& cursor, const std::vector<Record>& records)
{
    const auto version = cursor.u32();
    const auto count = cursor.packedU16();
    if (!version || !count || *count == 0 || *count > Limits::faces) return std::nullopt;
    FaceList faces;
    for (std::uint32_t index = 0; index < *count; ++index) {
        const auto tableCount = cursor.packedU16();
        const auto sfntVersion = cursor.u32();
        if (!tableCount || !sfntVersion) return std::nullopt;
        WOFF2Directory::Face face;
        face.index = index;
        for (std::uint32_t i = 0; i < *tableCount; ++i) {
            const auto table = cursor.packedU16();
            if (!table) return std::nullopt;
            add(face, *table, records);
        }
        if (isSfntFace(*sfntVersion, static_cast<std::uint16_t>(*tableCount)))
            faces.push_back(face);
    }
    return faces;
}

} // namespace

std::optional<WOFF2Directory> WOFF2Directory::read(const HeadedSource& file)
{
    const ByteReader header(file.head());
    const auto flavor = header.u32(4);
    const auto tableCount = header.u16(12);
    const auto streamLength = header.u32(20);
    if (!flavor || !tableCount || !streamLength) return std::nullopt;
    const bool isCollection = *flavor == sfntTag("ttcf");
    if (!isCollection && !isSfntFace(*flavor, *tableCount)) return std::nullopt;

    Cursor cursor(file, headerSize);
    WOFF2Directory directory;
    std::vector<Record> records;
    std::uint64_t offset = 0;
    for (std::uint32_t i = 0; i < *tableCount; ++i) {
        const auto next = record(cursor);
        if (!next) return std::nullopt;
        records.push_back(*next);
        directory.tables.push_back({offset, next->length});
        offset += next->length;
    }
    auto faces = isCollection ? collectionFaces(cursor, records) : onlyFace(records);
    if (!faces) return std::nullopt;
    directory.faces = *std::move(faces);
    directory.streamOffset = cursor.position();
    directory.streamLength = *streamLength;
    return directory;
}

} // namespace quillmark
