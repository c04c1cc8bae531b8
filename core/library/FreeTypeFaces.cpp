#include "library/FreeTypeFaces.h"

#include "fontfile/NameTable.h"
#include "library/FreeTypeMemory.h"
#include "library/Inflate.h"
#include "library/Limits.h"
#include "library/SfntTags.h"
#include "text/Encoding.h"
#include "text/Trim.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_BDF_H
#include FT_FONT_FORMATS_H
#include FT_MODULE_H
#include FT_TRUETYPE_TABLES_H
#include FT_TYPE1_TABLES_H

namespace quillmark {
namespace {

/// FreeType for one thread: an FT_Library must not be shared without a lock.
class Library {
public:
    Library()
    {
        if (::FT_New_Library(m_memory.get(), &m_library) != 0) {
            m_library = nullptr;
            return;
        }
        ::FT_Add_Default_Modules(m_library);
    }
    ~Library()
    {
        if (m_library != nullptr) ::FT_Done_Library(m_library);
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    /// Null when there was no memory for one.
    [[nodiscard]] FT_Library get() const { return m_library; }

private:
    FreeTypeMemory m_memory{Limits::freeTypeMemoryBytes};
    FT_Library m_library{};
};

/// A file as FreeType reads it, up to a total.
class Stream {
public:
    explicit Stream(const ByteSource& source) : m_source(source)
    {
        m_stream.size = static_cast<unsigned long>(source.size());
        m_stream.descriptor.pointer = this;
        m_stream.read = &Stream::read;
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    [[nodiscard]] FT_Stream get() { return &m_stream; }

private:
    /// FreeType's callback. For a count of 0 it seeks, and 0 means success.
    static unsigned long read(FT_Stream stream, unsigned long offset, unsigned char* buffer,
                              unsigned long count) noexcept
    {
        auto& self = *static_cast<Stream*>(stream->descriptor.pointer);
        if (count == 0) return offset > stream->size ? 1 : 0;
        constexpr unsigned long costOfCall = 256; // as much time as copying so many bytes
        const unsigned long cost = count + costOfCall;
        if (cost > self.m_left) return 0;
        self.m_left -= cost;
        return self.m_source.read(offset, std::as_writable_bytes(std::span(buffer, count)));
    }

    const ByteSource& m_source;
    FT_StreamRec m_stream{};
    std::uint64_t m_left{Limits::freeTypeReadBytes};
};

struct DoneFace {
    void operator()(FT_Face face) const { ::FT_Done_Face(face); }
};
using Face = std::unique_ptr<std::remove_pointer_t<FT_Face>, DoneFace>;

Face openFace(FT_Library library, Stream& stream, FT_Long index)
{
    FT_Open_Args arguments{};
    arguments.flags = FT_OPEN_STREAM;
    arguments.stream = stream.get();
    FT_Face face = nullptr;
    if (::FT_Open_Face(library, &arguments, index, &face) != 0) return nullptr;
    return Face(face);
}

/// FreeType's name of a format, and the number that the system would give it.
struct FormatNumber {
    std::string_view name;
    FontFormat format;
};
constexpr std::array formatNumbers{
    FormatNumber{"TrueType", FontFormat::trueType}, // dfont; a CFF face in one as well
    FormatNumber{"CFF", FontFormat::trueType},
    FormatNumber{"Type 1", FontFormat::postScript},
    FormatNumber{"CID Type 1", FontFormat::postScript},
    FormatNumber{"BDF", FontFormat::bitmap},
    FormatNumber{"PCF", FontFormat::bitmap},
    FormatNumber{"Windows FNT", FontFormat::bitmap},
};

std::optional<FontFormat> format(FT_Face face)
{
    const char* name = ::FT_Get_Font_Format(face);
    if (name == nullptr) return std::nullopt;
    const auto found =
        std::ranges::find(formatNumbers, std::string_view(name), &FormatNumber::name);
    if (found == formatNumbers.end()) return std::nullopt;
    return found->format;
}

class TableReader {
public:
    [[nodiscard]] std::optional<std::vector<std::byte>> read(FT_Face face, std::uint32_t tag)
    {
        FT_ULong length = 0;
        if (::FT_Load_Sfnt_Table(face, tag, 0, nullptr, &length) != 0 || length > m_left)
            return std::nullopt;
        std::vector<std::byte> table(length);
        if (length > 0 && ::FT_Load_Sfnt_Table(
                              face, tag, 0, reinterpret_cast<FT_Byte*>(table.data()), &length) != 0)
            return std::nullopt;
        m_left -= length;
        return table;
    }

private:
    std::uint64_t m_left{Limits::tableBytes};
};

void put(NameStrings& names, NameID id, const char* characters)
{
    if (characters == nullptr) return;
    auto text =
        trimmedOrAbsent(decodeLatin1(std::as_bytes(std::span(std::string_view(characters)))));
    if (text) names.add(static_cast<std::uint16_t>(id), *std::move(text));
}

NameStrings type1Names(FT_Face face)
{
    NameStrings names;
    put(names, NameID::family, face->family_name);
    put(names, NameID::subfamily, face->style_name);
    put(names, NameID::postScriptName, ::FT_Get_Postscript_Name(face));
    PS_FontInfoRec info{};
    if (::FT_Get_PS_Font_Info(face, &info) == 0) {
        put(names, NameID::fullName, info.full_name);
        put(names, NameID::copyright, info.notice);
    }
    return names;
}

NameStrings bitmapNames(FT_Face face)
{
    NameStrings names;
    put(names, NameID::family, face->family_name);
    put(names, NameID::subfamily, face->style_name);
    BDF_PropertyRec copyright{};
    if (::FT_Get_BDF_Property(face, "COPYRIGHT", &copyright) == 0 &&
        copyright.type == BDF_PROPERTY_TYPE_ATOM)
        put(names, NameID::copyright, copyright.u.atom);
    return names;
}

NameStrings namesOutsideTables(FT_Face face, std::optional<FontFormat> format)
{
    if (format == FontFormat::postScript) return type1Names(face);
    if (format == FontFormat::bitmap) return bitmapNames(face);
    return {};
}

enum class Compression { none, gzip, other };

/// Told from the first bytes, as FreeType does.
Compression compression(const ByteSource& file)
{
    std::array<std::byte, 3> start{};
    if (file.read(0, start) < start.size()) return Compression::none;
    const auto is = [&start](std::initializer_list<int> signature) {
        return std::ranges::equal(signature, std::span(start).first(signature.size()), {}, {},
                                  [](std::byte value) { return std::to_integer<int>(value); });
    };
    if (is({0x1F, 0x8B})) return Compression::gzip;
    return is({0x1F, 0x9D}) || is({'B', 'Z', 'h'}) ? Compression::other : Compression::none;
}

std::vector<PlatformFont> uncompressedFaces(const ByteSource& file, Faces which)
{
    thread_local const Library library;
    std::vector<PlatformFont> found;
    // FreeType would unpack what is still compressed here, and knows no bounds in doing so.
    if (library.get() == nullptr || file.size() > Limits::freeTypeFileBytes ||
        compression(file) != Compression::none)
        return found;

    Stream stream(file);
    TableReader tables;
    FT_Long count = 1;
    for (FT_Long index = 0; index < count; ++index) {
        const Face face = openFace(library.get(), stream, index);
        if (!face) continue;
        if (index == 0) count = std::min<FT_Long>(face->num_faces, Limits::faces);
        PlatformFont font;
        font.index = static_cast<std::uint32_t>(index);
        font.format = format(face.get());
        font.names = namesOutsideTables(face.get(), font.format);
        if (FT_IS_SFNT(face.get())) {
            if (which == Faces::variable) font.fvar = tables.read(face.get(), sfntTag("fvar"));
            font.name = tables.read(face.get(), sfntTag("name"));
            font.os2 = tables.read(face.get(), sfntTag("OS/2"));
        }
        if (which == Faces::all || font.fvar) found.push_back(std::move(font));
    }
    return found;
}

} // namespace

namespace FreeTypeFaces {

std::vector<PlatformFont> faces(const ByteSource& file, Faces which)
{
    if (compression(file) != Compression::gzip) return uncompressedFaces(file, which);
    const auto bytes = inflated(file, 0, file.size(), Wrapper::gzip, Limits::freeTypeFileBytes);
    return bytes ? uncompressedFaces(MemorySource(*bytes), which) : std::vector<PlatformFont>{};
}

} // namespace FreeTypeFaces
} // namespace quillmark
