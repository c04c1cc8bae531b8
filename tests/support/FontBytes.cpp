#include "support/FontBytes.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace quillmark::test {
namespace {

constexpr std::size_t tableRecordSize = 16;

std::byte byteOf(std::uint32_t value, unsigned shift)
{
    return static_cast<std::byte>(value >> shift & 0xFFU);
}

void overwrite(Bytes& bytes, std::size_t at, std::uint32_t value, unsigned width)
{
    for (unsigned i = 0; i < width; ++i)
        bytes.at(at + i) = byteOf(value, 8 * (width - 1 - i));
}

} // namespace

ByteWriter& ByteWriter::u8(std::uint8_t value)
{
    m_bytes.push_back(static_cast<std::byte>(value));
    return *this;
}

ByteWriter& ByteWriter::u16(std::uint16_t value)
{
    m_bytes.push_back(byteOf(value, 8));
    m_bytes.push_back(byteOf(value, 0));
    return *this;
}

ByteWriter& ByteWriter::u24(std::uint32_t value)
{
    m_bytes.push_back(byteOf(value, 16));
    return u16(static_cast<std::uint16_t>(value & 0xFFFFU));
}

ByteWriter& ByteWriter::u32(std::uint32_t value)
{
    return u16(static_cast<std::uint16_t>(value >> 16U))
        .u16(static_cast<std::uint16_t>(value & 0xFFFFU));
}

ByteWriter& ByteWriter::text(std::string_view characters)
{
    return bytes(std::as_bytes(std::span(characters)));
}

ByteWriter& ByteWriter::bytes(std::span<const std::byte> more)
{
    m_bytes.insert(m_bytes.end(), more.begin(), more.end());
    return *this;
}

ByteWriter& ByteWriter::zeros(std::size_t count)
{
    m_bytes.resize(m_bytes.size() + count);
    return *this;
}

ByteWriter& ByteWriter::mark(const std::string& position)
{
    m_positions[position] = m_bytes.size();
    return *this;
}

std::size_t ByteWriter::position(const std::string& name) const
{
    const auto found = m_positions.find(name);
    if (found == m_positions.end()) throw std::out_of_range("no position named " + name);
    return found->second;
}

ByteWriter& ByteWriter::overwrite16(const std::string& position, std::uint16_t value)
{
    overwrite(m_bytes, this->position(position), value, 2);
    return *this;
}

ByteWriter& ByteWriter::overwrite32(const std::string& position, std::uint32_t value)
{
    overwrite(m_bytes, this->position(position), value, 4);
    return *this;
}

Bytes ascii(std::string_view text)
{
    return ByteWriter().text(text).build();
}

Bytes utf16(std::u16string_view text)
{
    ByteWriter writer;
    for (const char16_t unit : text)
        writer.u16(unit);
    return writer.build();
}

NameRecord windowsEnglish(std::uint16_t nameID, std::u16string_view text)
{
    return {3, 1, 0x409, nameID, utf16(text)};
}

ByteWriter nameTable(const std::vector<NameRecord>& records)
{
    ByteWriter writer;
    writer.u16(0);
    writer.mark("count").u16(static_cast<std::uint16_t>(records.size()));
    writer.mark("stringOffset").u16(static_cast<std::uint16_t>(6 + 12 * records.size()));
    std::size_t offset = 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const NameRecord& record = records[i];
        writer.mark("record" + std::to_string(i))
            .u16(record.platform)
            .u16(record.encoding)
            .u16(record.language)
            .u16(record.nameID)
            .u16(static_cast<std::uint16_t>(record.bytes.size()))
            .u16(static_cast<std::uint16_t>(offset));
        offset += record.bytes.size();
    }
    for (const NameRecord& record : records)
        writer.bytes(record.bytes);
    return writer;
}

Bytes os2Table(const OS2Values& values)
{
    ByteWriter writer;
    writer.u16(values.version).zeros(6).u16(values.fsType).zeros(48);
    writer.text(values.vendorID).zeros(4 - std::min<std::size_t>(values.vendorID.size(), 4));
    Bytes bytes = writer.build();
    bytes.resize(values.size);
    return bytes;
}

Bytes cffIndex(const std::vector<Bytes>& elements, std::uint8_t offSize)
{
    ByteWriter writer;
    writer.u16(static_cast<std::uint16_t>(elements.size()));
    if (elements.empty()) return writer.build();
    writer.u8(offSize);
    std::size_t offset = 1;
    const auto writeOffset = [&] {
        for (unsigned shift = 8U * offSize; shift > 0; shift -= 8)
            writer.u8(static_cast<std::uint8_t>(offset >> (shift - 8) & 0xFFU));
    };
    for (const Bytes& element : elements) {
        writeOffset();
        offset += element.size();
    }
    writeOffset();
    for (const Bytes& element : elements)
        writer.bytes(element);
    return writer.build();
}

Bytes cffProgram(const std::vector<Bytes>& names, const Bytes& topDict,
                 const std::vector<Bytes>& strings)
{
    return ByteWriter()
        .u8(1) // version 1.0
        .u8(0)
        .u8(4) // header size
        .u8(1)
        .bytes(cffIndex(names))
        .bytes(cffIndex({topDict}))
        .bytes(cffIndex(strings))
        .build();
}

Bytes cffProgram(const BareFontInfo& info)
{
    ByteWriter topDict;
    std::vector<Bytes> strings;
    const auto add = [&](const std::optional<std::string>& text, std::string_view operatorBytes) {
        if (!text) return;
        const auto id = static_cast<std::uint16_t>(391 + strings.size());
        topDict.u8(28).u16(id).text(operatorBytes);
        strings.push_back(ascii(*text));
    };
    add(info.notice, "\x01");
    add(info.fullName, "\x02");
    add(info.familyName, "\x03");
    add(info.copyright, std::string_view("\x0C\0", 2));
    std::vector<Bytes> names;
    if (info.fontName) names.push_back(ascii(*info.fontName));
    return cffProgram(names, topDict.build(), strings);
}

Bytes type1Program(const BareFontInfo& info)
{
    ByteWriter writer;
    writer.text("%!PS-AdobeFont-1.0\n12 dict begin\n/FontInfo 9 dict dup begin\n");
    const auto add = [&](std::string_view key, const std::optional<std::string>& text) {
        if (text) writer.text(key).text(" (").text(*text).text(") readonly def\n");
    };
    add("/FullName", info.fullName);
    add("/FamilyName", info.familyName);
    add("/Notice", info.notice);
    add("/Copyright", info.copyright);
    writer.text("end readonly def\n");
    if (info.fontName) writer.text("/FontName /").text(*info.fontName).text(" def\n");
    return writer.text("/FontType 1 def\ncurrentdict end\ncurrentfile eexec\n").build();
}

FontBytes& FontBytes::face(std::string_view version)
{
    m_faces.push_back({std::string(version), {}, {}, {}});
    return *this;
}

FontBytes& FontBytes::collection()
{
    m_collection = true;
    return *this;
}

FontBytes& FontBytes::name(std::uint16_t nameID, std::u16string_view text)
{
    return nameRecord(windowsEnglish(nameID, text));
}

FontBytes& FontBytes::nameRecord(NameRecord record)
{
    m_faces.at(m_faces.size() - 1).names.push_back(std::move(record));
    return *this;
}

FontBytes& FontBytes::os2(OS2Values values)
{
    m_faces.at(m_faces.size() - 1).os2 = std::move(values);
    return *this;
}

FontBytes& FontBytes::table(std::string_view tag, Bytes bytes)
{
    m_faces.at(m_faces.size() - 1).tables.emplace_back(tag, std::move(bytes));
    return *this;
}

ByteWriter FontBytes::writer() const
{
    std::vector<std::vector<std::pair<std::string, Bytes>>> tables;
    std::size_t directoriesSize = 0;
    for (const Face& face : m_faces) {
        auto& list = tables.emplace_back();
        if (face.os2) list.emplace_back("OS/2", os2Table(*face.os2));
        if (!face.names.empty()) list.emplace_back("name", nameTable(face.names).build());
        list.insert(list.end(), face.tables.begin(), face.tables.end());
        directoriesSize += 12 + list.size() * tableRecordSize;
    }

    ByteWriter writer;
    const bool isCollection = m_collection || m_faces.size() > 1;
    std::size_t directory = isCollection ? 12 + 4 * m_faces.size() : 0;
    std::size_t data = directory + directoriesSize;
    if (isCollection) {
        writer.text("ttcf").u32(0x00010000);
        writer.mark("numFonts").u32(static_cast<std::uint32_t>(m_faces.size()));
        for (std::size_t f = 0; f < m_faces.size(); ++f) {
            writer.mark("face" + std::to_string(f) + ".entry");
            writer.u32(static_cast<std::uint32_t>(directory));
            directory += 12 + tables[f].size() * tableRecordSize;
        }
    }
    for (std::size_t f = 0; f < m_faces.size(); ++f) {
        const std::string face = "face" + std::to_string(f);
        writer.mark(face).text(m_faces[f].version);
        writer.mark(face + ".numTables").u16(static_cast<std::uint16_t>(tables[f].size()));
        writer.zeros(6); // the binary search fields, which no reader of ours looks at
        for (const auto& [tag, bytes] : tables[f]) {
            std::string record = face;
            record.append(".").append(tag);
            writer.mark(record).text(tag).u32(0);
            writer.mark(record + ".offset").u32(static_cast<std::uint32_t>(data));
            writer.mark(record + ".length").u32(static_cast<std::uint32_t>(bytes.size()));
            data += (bytes.size() + 3) / 4 * 4;
        }
    }
    for (std::size_t f = 0; f < m_faces.size(); ++f) {
        for (const auto& [tag, bytes] : tables[f]) {
            writer.mark("face" + std::to_string(f) + "." + tag + ".data").bytes(bytes);
            writer.zeros((4 - bytes.size() % 4) % 4);
        }
    }
    return writer;
}

} // namespace quillmark::test
