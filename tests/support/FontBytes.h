// Font files built byte by byte, with positions that a test can name and damage afterwards.
#pragma once

#include "fontfile/BareFontInfo.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark::test {

using Bytes = std::vector<std::byte>;

/// Big-endian bytes, written in order. `mark` names the current position; `damage` writes over a
/// named position of the finished bytes.
class ByteWriter {
public:
    ByteWriter& u8(std::uint8_t value);
    ByteWriter& u16(std::uint16_t value);
    ByteWriter& u24(std::uint32_t value);
    ByteWriter& u32(std::uint32_t value);
    ByteWriter& text(std::string_view characters);
    ByteWriter& bytes(std::span<const std::byte> more);
    ByteWriter& zeros(std::size_t count);
    ByteWriter& mark(const std::string& position);

    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
    [[nodiscard]] std::size_t position(const std::string& name) const; // throws if there is none
    ByteWriter& overwrite16(const std::string& position, std::uint16_t value);
    ByteWriter& overwrite32(const std::string& position, std::uint32_t value);
    [[nodiscard]] const Bytes& build() const { return m_bytes; }

private:
    Bytes m_bytes;
    std::map<std::string, std::size_t> m_positions;
};

/// One record of a `name` table; `bytes` is the string as stored.
struct NameRecord {
    std::uint16_t platform{};
    std::uint16_t encoding{};
    std::uint16_t language{};
    std::uint16_t nameID{};
    Bytes bytes;
};

[[nodiscard]] Bytes ascii(std::string_view text);
/// UTF-16 big-endian.
[[nodiscard]] Bytes utf16(std::u16string_view text);
[[nodiscard]] NameRecord windowsEnglish(std::uint16_t nameID, std::u16string_view text);

/// A `name` table of format 0. Its positions: "count", "stringOffset", "record0", "record1", ...
[[nodiscard]] ByteWriter nameTable(const std::vector<NameRecord>& records);

/// What an `OS/2` table of `size` bytes says; everything else in it is zero.
struct OS2Values {
    std::uint16_t version{4};
    std::uint16_t fsType{};
    std::string vendorID{"TEST"};
    std::size_t size{96};
};
[[nodiscard]] Bytes os2Table(const OS2Values& values);

/// A CFF INDEX whose offsets take `offSize` bytes each.
[[nodiscard]] Bytes cffIndex(const std::vector<Bytes>& elements, std::uint8_t offSize = 2);
/// A bare CFF program: header, Name INDEX, Top DICT INDEX (one element), String INDEX.
[[nodiscard]] Bytes cffProgram(const std::vector<Bytes>& names, const Bytes& topDict,
                               const std::vector<Bytes>& strings);
/// A bare CFF program that says what `info` says; it has no glyphs.
[[nodiscard]] Bytes cffProgram(const BareFontInfo& info);
/// The clear-text part of a Type 1 program that says what `info` says.
[[nodiscard]] Bytes type1Program(const BareFontInfo& info);

/// A font file with one or more faces. Each `face` starts a new face; more than one, or
/// `collection`, makes a collection. Tables get correct offsets and lengths; the positions of face
/// f's directory are "face<f>", "face<f>.numTables", "face<f>.<tag>" (its record),
/// "face<f>.<tag>.offset" and "face<f>.<tag>.length", of its tables "face<f>.<tag>.data" (the last
/// one's, when a tag occurs twice); of the collection "numFonts" and "face<f>.entry". A `version`
/// has four characters. The `OS/2` and `name` tables stand before the others.
class FontBytes {
public:
    FontBytes& face(std::string_view version = std::string_view("\0\1\0\0", 4));
    FontBytes& collection();
    /// A Windows English name of the current face.
    FontBytes& name(std::uint16_t nameID, std::u16string_view text);
    FontBytes& nameRecord(NameRecord record);
    FontBytes& os2(OS2Values values);
    /// Any other table, as it stands.
    FontBytes& table(std::string_view tag, Bytes bytes);

    /// The file, with its positions, for damaging it.
    [[nodiscard]] ByteWriter writer() const;
    [[nodiscard]] Bytes build() const { return writer().build(); }

private:
    struct Face {
        std::string version;
        std::vector<NameRecord> names;
        std::optional<OS2Values> os2;
        std::vector<std::pair<std::string, Bytes>> tables;
    };
    std::vector<Face> m_faces;
    bool m_collection{};
};

} // namespace quillmark::test
