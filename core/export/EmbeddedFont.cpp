#include "export/EmbeddedFont.h"

#include "export/CFFProgram.h"
#include "export/TrueTypeProgram.h"
#include "fontfile/NameTable.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <span>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

namespace quillmark {
namespace {

/// Codes take two bytes, and the last is left out, as some readers do.
constexpr std::size_t mostCodes = 65'535;

/// To draw so many anew takes longer than to copy them from a TrueType font, together with what has
/// to be copied for glyphs that are not shown.
constexpr std::size_t leastCopiedGlyphs = 1000;

/// Colours that are loaded at this size in pixels, and images that are not smaller than half of it,
/// are good on paper.
constexpr unsigned imageSize = 128;

struct Range {
    char32_t first;
    char32_t last;
};

/// Characters that are one glyph each, left to right: Latin, Greek and Cyrillic without combining
/// marks, and punctuation and symbols without formatting characters.
constexpr std::array simpleRanges{
    Range{0x0020, 0x007E}, Range{0x00A0, 0x00AC}, Range{0x00AE, 0x02FF}, Range{0x0370, 0x0482},
    Range{0x048A, 0x052F}, Range{0x1E00, 0x1FFF}, Range{0x2010, 0x2027}, Range{0x202F, 0x205E},
    Range{0x2070, 0x20CF}, Range{0x2100, 0x22FF}, Range{0x2500, 0x25FF}, Range{0xFFFD, 0xFFFD},
};

bool isSimple(char32_t character)
{
    return std::ranges::any_of(simpleRanges, [character](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

constexpr char32_t narrowNoBreakSpace = 0x202F;

FT_Library freeType()
{
    // One for each thread, as FreeType wants it.
    struct Library {
        FT_Library library{};
        Library()
        {
            if (::FT_Init_FreeType(&library) != 0) library = nullptr;
        }
        ~Library()
        {
            if (library != nullptr) ::FT_Done_FreeType(library);
        }
        Library(const Library&) = delete;
        Library& operator=(const Library&) = delete;
    };
    thread_local const Library one;
    return one.library;
}

/// What FreeType takes an outline apart into.
struct Pen {
    CharString& charString;
    double scale{}; // to thousandths of an em
    double x{};
    double y{};

    [[nodiscard]] double scaled(FT_Pos position) const
    {
        return static_cast<double>(position) * scale;
    }

    void reach(double nextX, double nextY)
    {
        x = nextX;
        y = nextY;
    }

    static int move(const FT_Vector* to, void* pen)
    {
        Pen& self = *static_cast<Pen*>(pen);
        self.reach(self.scaled(to->x), self.scaled(to->y));
        self.charString.moveTo(self.x, self.y);
        return 0;
    }

    static int line(const FT_Vector* to, void* pen)
    {
        Pen& self = *static_cast<Pen*>(pen);
        self.reach(self.scaled(to->x), self.scaled(to->y));
        self.charString.lineTo(self.x, self.y);
        return 0;
    }

    /// A quadratic curve is a cubic one whose control points lie two thirds of the way to its own.
    static int conic(const FT_Vector* control, const FT_Vector* to, void* pen)
    {
        Pen& self = *static_cast<Pen*>(pen);
        const double controlX = self.scaled(control->x);
        const double controlY = self.scaled(control->y);
        const double endX = self.scaled(to->x);
        const double endY = self.scaled(to->y);
        const auto between = [](double from, double towards) {
            return from + (towards - from) * 2 / 3;
        };
        self.charString.curveTo(between(self.x, controlX), between(self.y, controlY),
                                between(endX, controlX), between(endY, controlY), endX, endY);
        self.reach(endX, endY);
        return 0;
    }

    static int cubic(const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to,
                     void* pen)
    {
        Pen& self = *static_cast<Pen*>(pen);
        self.reach(self.scaled(to->x), self.scaled(to->y));
        self.charString.curveTo(self.scaled(control1->x), self.scaled(control1->y),
                                self.scaled(control2->x), self.scaled(control2->y), self.x, self.y);
        return 0;
    }
};

std::string key(unsigned glyph, std::string_view text)
{
    std::string joined = std::to_string(glyph) + ' ';
    return joined += text;
}

/// What a PDF name can hold without escapes.
std::string nameCharacters(std::string_view name)
{
    std::string safe;
    std::ranges::copy_if(name, std::back_inserter(safe), [](char character) {
        const char lower = Utf8::asciiLower(character);
        return (lower >= 'a' && lower <= 'z') || (character >= '0' && character <= '9') ||
               character == '-' || character == '_' || character == '.';
    });
    return safe.empty() ? "Font" : safe;
}

/// Six capitals that differ where the glyphs differ (ISO 32000-1, 9.6.4).
std::string subsetPrefix(std::span<const unsigned> glyphs)
{
    std::uint64_t hash = 0xCBF29CE484222325U; // FNV-1a
    for (const unsigned glyph : glyphs) {
        for (const unsigned byte : {glyph & 0xFFU, glyph >> 8U})
            hash = (hash ^ byte) * 0x100000001B3U;
    }
    std::string prefix;
    for (int letter = 0; letter < 6; ++letter, hash /= 26)
        prefix += static_cast<char>('A' + hash % 26);
    return prefix + '+';
}

/// The strings of a CFF program have no encoding of their own; readers take them for ASCII.
std::string asciiOnly(std::string_view text)
{
    std::string ascii;
    while (!text.empty()) {
        const Utf8::Character character = Utf8::first(text);
        text.remove_prefix(character.length);
        if (character.codePoint == 0xA9)
            ascii += "(c)";
        else
            ascii += character.codePoint < 0x7F ? static_cast<char>(character.codePoint) : '?';
    }
    return ascii;
}

std::string toUnicode(const std::vector<std::string>& texts)
{
    std::string map = "/CIDInit/ProcSet findresource begin\n12 dict begin\nbegincmap\n"
                      "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n"
                      "/CMapName/Adobe-Identity-UCS def\n/CMapType 2 def\n"
                      "1 begincodespacerange\n<0000><FFFF>\nendcodespacerange\n";
    constexpr std::size_t entriesOfBlock = 100; // no block may have more
    std::vector<std::size_t> codes;
    for (std::size_t code = 0; code < texts.size(); ++code) {
        if (!texts[code].empty()) codes.push_back(code);
    }
    for (std::size_t start = 0; start < codes.size(); start += entriesOfBlock) {
        const std::size_t end = std::min(codes.size(), start + entriesOfBlock);
        map += std::to_string(end - start) + " beginbfchar\n";
        for (const std::size_t code : std::span(codes).subspan(start, end - start)) {
            std::string digits;
            constexpr std::string_view hexadecimal = "0123456789ABCDEF";
            for (int shift = 12; shift >= 0; shift -= 4)
                digits += hexadecimal[(code >> static_cast<unsigned>(shift)) & 0xFU];
            map += "<" + digits + "><" + utf16Digits(texts[code]) + ">\n";
        }
        map += "endbfchar\n";
    }
    map += "endcmap\nCMapName currentdict/CMap defineresource pop\nend\nend\n";
    return map;
}

/// Each code's glyph, in two bytes.
std::string glyphNumbers(std::span<const unsigned> glyphs)
{
    std::string bytes;
    bytes.reserve(glyphs.size() * 2);
    for (const unsigned glyph : glyphs) {
        bytes += static_cast<char>(glyph >> 8U & 0xFFU);
        bytes += static_cast<char>(glyph & 0xFFU);
    }
    return bytes;
}

std::string widths(const std::vector<double>& advances)
{
    std::string entries = "/W[0";
    if (std::ranges::all_of(advances,
                            [&](double advance) { return advance == advances.front(); })) {
        entries += ' ' + std::to_string(advances.size() - 1) + ' ';
        appendNumber(entries, advances.front());
    } else {
        entries += '[';
        for (const double advance : advances) {
            appendNumber(entries, advance);
            entries += ' ';
        }
        entries += ']';
    }
    return entries + ']';
}

} // namespace

/// FreeType's face, and what only it can tell.
class EmbeddedFont::Face {
public:
    explicit Face(FT_Face face) : m_face(face) {}
    ~Face() { ::FT_Done_Face(m_face); }
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    [[nodiscard]] unsigned glyph(char32_t character) const
    {
        return ::FT_Get_Char_Index(m_face, character);
    }

    /// In thousandths of an em.
    [[nodiscard]] double advance(unsigned glyph) const
    {
        FT_Fixed advance = 0;
        if (!FT_IS_SCALABLE(m_face) || m_face->units_per_EM == 0 ||
            ::FT_Get_Advance(m_face, glyph, FT_LOAD_NO_SCALE, &advance) != 0)
            return bitmapAdvance(glyph);
        return static_cast<double>(advance) * 1000 / m_face->units_per_EM;
    }

    /// Appends the outline, or an empty one where there is none.
    void draw(unsigned glyph, double advance, CharStrings& charStrings) const
    {
        CharString drawn(charStrings, advance);
        constexpr auto outlines = FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP;
        if (m_face->units_per_EM != 0 && ::FT_Load_Glyph(m_face, glyph, outlines) == 0 &&
            m_face->glyph->format == FT_GLYPH_FORMAT_OUTLINE) {
            Pen pen{drawn, 1000.0 / m_face->units_per_EM};
            FT_Outline_Funcs functions{};
            functions.move_to = &Pen::move;
            functions.line_to = &Pen::line;
            functions.conic_to = &Pen::conic;
            functions.cubic_to = &Pen::cubic;
            ::FT_Outline_Decompose(&m_face->glyph->outline, &functions, &pen);
        }
        drawn.finish();
    }

    /// Absent when the font is none of TrueType outlines, or a variable font's named instance.
    [[nodiscard]] std::optional<std::string> trueTypeProgram(std::span<const unsigned> glyphs) const
    {
        if (m_face->face_index >> 16U != 0) return std::nullopt;
        return quillmark::trueTypeProgram(
            {[this](std::string_view tag) { return tableSize(tag); },
             [this](std::string_view tag, std::size_t offset, std::span<char> into) {
                 return readTable(tag, offset, into);
             }},
            glyphs);
    }

    [[nodiscard]] bool hasColors() const { return FT_HAS_COLOR(m_face); }

    [[nodiscard]] std::optional<GlyphImage> image(unsigned glyph) const
    {
        if (!FT_HAS_COLOR(m_face) || !selectImageSize()) return std::nullopt;
        if (::FT_Load_Glyph(m_face, glyph, FT_LOAD_COLOR | FT_LOAD_RENDER) != 0)
            return std::nullopt;
        const FT_Bitmap& bitmap = m_face->glyph->bitmap;
        if (bitmap.pixel_mode != FT_PIXEL_MODE_BGRA || bitmap.width == 0 || bitmap.pitch <= 0)
            return std::nullopt;
        // Fonts have images for screens, of twice as many pixels as paper shows at this size.
        const unsigned side = std::max(1U, std::min(bitmap.width, bitmap.rows) / (imageSize / 2));
        GlyphImage image = reduced(bitmap, side);
        image.pixel = static_cast<double>(side) / m_face->size->metrics.y_ppem;
        const double sourcePixel = 1.0 / m_face->size->metrics.y_ppem;
        image.left = m_face->glyph->bitmap_left * sourcePixel;
        image.bottom = m_face->glyph->bitmap_top * sourcePixel - image.height * image.pixel;
        return image;
    }

    [[nodiscard]] std::string postScriptName() const
    {
        const char* const name = ::FT_Get_Postscript_Name(m_face);
        return nameCharacters(name == nullptr ? "" : name);
    }

    /// The font's own names, with its copyright and its licence, so that whoever reads the document
    /// can tell what may be done with it.
    [[nodiscard]] CFFNames names() const
    {
        CFFNames names;
        const std::string table = nameTable();
        const NameStrings strings = NameTable::strings(std::as_bytes(std::span(table)));
        const auto text = [&strings](NameID id) {
            const auto found = strings.find(static_cast<std::uint16_t>(id));
            return found == strings.end() ? std::string() : asciiOnly(found->second);
        };
        names.fullName = text(NameID::fullName);
        names.familyName = text(NameID::family);
        names.notice = text(NameID::copyright);
        const std::string license = text(NameID::licenseDescription);
        if (!license.empty()) names.notice += names.notice.empty() ? license : " " + license;
        constexpr std::size_t longestNotice = 1000;
        names.notice.resize(std::min(names.notice.size(), longestNotice));
        return names;
    }

    /// In thousandths of an em.
    [[nodiscard]] std::array<long, 6> metrics() const
    {
        const long unit = std::max<long>(m_face->units_per_EM, 1);
        const FT_BBox& box = m_face->bbox;
        std::array<long, 6> values{box.xMin, box.yMin,         box.xMax,
                                   box.yMax, m_face->ascender, m_face->descender};
        for (long& value : values)
            value = value * 1000 / unit;
        return values;
    }

    [[nodiscard]] bool isFixedWidth() const { return FT_IS_FIXED_WIDTH(m_face); }

private:
    /// Each square of `side` times `side` pixels as one.
    static GlyphImage reduced(const FT_Bitmap& bitmap, unsigned side)
    {
        const unsigned width = (bitmap.width + side - 1) / side;
        const unsigned height = (bitmap.rows + side - 1) / side;
        GlyphImage image;
        image.width = static_cast<int>(width);
        image.height = static_cast<int>(height);
        image.colors.resize(std::size_t{3} * width * height);
        image.alpha.resize(std::size_t{1} * width * height);
        std::vector<std::array<unsigned, 4>> sums(width); // blue, green, red, opacity
        for (unsigned row = 0; row < height; ++row) {
            std::ranges::fill(sums, std::array<unsigned, 4>{});
            for (unsigned y = row * side; y < std::min(bitmap.rows, (row + 1) * side); ++y)
                addRow(
                    sums, side,
                    std::span(bitmap.buffer + std::size_t{y} * static_cast<unsigned>(bitmap.pitch),
                              std::size_t{4} * bitmap.width));
            for (std::size_t x = 0; x < width; ++x)
                setPixel(image, std::size_t{row} * width + x, sums[x], side * side);
        }
        return image;
    }

    static void addRow(std::span<std::array<unsigned, 4>> sums, unsigned side,
                       std::span<const unsigned char> pixels)
    {
        for (std::size_t x = 0; x < pixels.size() / 4; ++x) {
            std::array<unsigned, 4>& sum = sums[x / side];
            for (std::size_t channel = 0; channel < 4; ++channel)
                sum[channel] += pixels[x * 4 + channel];
        }
    }

    static void setPixel(GlyphImage& image, std::size_t pixel, const std::array<unsigned, 4>& sum,
                         unsigned count)
    {
        const auto [blue, green, red, alpha] = sum;
        std::size_t at = pixel * 3;
        for (const unsigned color : {red, green, blue}) {
            // FreeType's colours are multiplied with the opacity already.
            const unsigned plain = alpha == 0 ? 0 : std::min(255U, color * 255U / alpha);
            image.colors[at++] = static_cast<char>(plain);
        }
        image.alpha[pixel] = static_cast<char>(alpha / count);
    }

    [[nodiscard]] bool selectImageSize() const
    {
        if (m_face->num_fixed_sizes == 0)
            return ::FT_Set_Pixel_Sizes(m_face, imageSize, imageSize) == 0;
        return ::FT_Select_Size(m_face, m_face->num_fixed_sizes - 1) == 0; // the largest, usually
    }

    [[nodiscard]] double bitmapAdvance(unsigned glyph) const
    {
        constexpr auto metrics = FT_LOAD_COLOR | FT_LOAD_BITMAP_METRICS_ONLY;
        if (!selectImageSize() || ::FT_Load_Glyph(m_face, glyph, metrics) != 0) return 0;
        return static_cast<double>(m_face->glyph->metrics.horiAdvance) / 64 * 1000 /
               m_face->size->metrics.x_ppem;
    }

    static FT_ULong tableTag(std::string_view tag)
    {
        FT_ULong number = 0;
        for (const char letter : tag)
            number = number << 8U | static_cast<unsigned char>(letter);
        return number;
    }

    [[nodiscard]] std::size_t tableSize(std::string_view tag) const
    {
        FT_ULong size = 0;
        return ::FT_Load_Sfnt_Table(m_face, tableTag(tag), 0, nullptr, &size) == 0 ? size : 0;
    }

    [[nodiscard]] bool readTable(std::string_view tag, std::size_t offset,
                                 std::span<char> into) const
    {
        if (into.empty()) return true; // which would be all of the table
        FT_ULong size = into.size();
        return ::FT_Load_Sfnt_Table(m_face, tableTag(tag), static_cast<FT_Long>(offset),
                                    reinterpret_cast<FT_Byte*>(into.data()), &size) == 0;
    }

    [[nodiscard]] std::string nameTable() const
    {
        const std::size_t size = tableSize("name");
        std::string table(size <= NameTable::maximumFileBytes ? size : 0, '\0');
        if (!readTable("name", 0, table)) table.clear();
        return table;
    }

    FT_Face m_face;
};

std::unique_ptr<EmbeddedFont> EmbeddedFont::open(const FontFile& file)
{
    FT_Face face = nullptr;
    if (freeType() == nullptr ||
        ::FT_New_Face(freeType(), file.path.c_str(), file.index, &face) != 0)
        return nullptr;
    return std::unique_ptr<EmbeddedFont>(new EmbeddedFont(std::make_unique<Face>(face)));
}

EmbeddedFont::EmbeddedFont(std::unique_ptr<Face> face) : m_face(std::move(face))
{
    m_codes.emplace(key(0, {}), add(0, {}, m_face->advance(0)));
}

EmbeddedFont::~EmbeddedFont() = default;

std::optional<GlyphCode> EmbeddedFont::code(char32_t character)
{
    if (character < m_simple.size() && m_simple[character]) return m_simple[character];
    if (!isSimple(character)) return std::nullopt;
    // Dates have a narrow space that few fonts know.
    unsigned glyph = m_face->glyph(character == narrowNoBreakSpace ? U' ' : character);
    // The sign for a character that cannot be shown is the glyph for what the font has not.
    if (glyph == 0 && character != Utf8::replacementCharacter) return std::nullopt;
    std::string text;
    Utf8::append(text, character);
    const GlyphCode made = code(glyph, text);
    if (made == 0 || advance(made) <= 0) return std::nullopt;
    if (character >= m_simple.size()) m_simple.resize(character + 1);
    return m_simple[character] = made;
}

GlyphCode EmbeddedFont::code(unsigned glyph, std::string_view text)
{
    const auto known = m_codes.find(key(glyph, text));
    if (known != m_codes.end()) return known->second;
    if (m_texts.size() == mostCodes) return 0;
    const GlyphCode added = add(glyph, text, m_face->advance(glyph));
    m_codes.emplace(key(glyph, text), added);
    return added;
}

GlyphCode EmbeddedFont::blank()
{
    constexpr unsigned noGlyph = 0xFFFF; // which is no font's, and drawn as nothing
    if (m_blank) return *m_blank;
    if (m_texts.size() == mostCodes) return 0;
    const unsigned space = m_face->glyph(U' ');
    m_blank = add(space == 0 ? noGlyph : space, {}, 0);
    return *m_blank;
}

GlyphCode EmbeddedFont::add(unsigned glyph, std::string_view text, double advance)
{
    const auto added = static_cast<GlyphCode>(m_texts.size());
    m_glyphs.push_back(glyph);
    m_advances.push_back(advance);
    m_texts.emplace_back(text);
    return added;
}

bool EmbeddedFont::hasColors() const
{
    return m_face->hasColors();
}

std::optional<GlyphImage> EmbeddedFont::image(unsigned glyph)
{
    return m_face->image(glyph);
}

void EmbeddedFont::write(PDFFile& file, PDFFile::Object object)
{
    const std::string fontName = subsetPrefix(m_glyphs) + m_face->postScriptName();
    const PDFFile::Object descendant = file.reserve();
    const PDFFile::Object descriptor = file.reserve();
    const PDFFile::Object texts = file.reserve();
    const PDFFile::Object program = file.reserve();
    file.write(object, "<</Type/Font/Subtype/Type0/BaseFont/" + fontName +
                           "/Encoding/Identity-H/DescendantFonts[" + reference(descendant) +
                           "]/ToUnicode " + reference(texts) + ">>");
    std::string entries = "<</Type/Font/BaseFont/" + fontName +
                          "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>"
                          "/FontDescriptor " +
                          reference(descriptor) + widths(m_advances);
    const auto copied =
        m_glyphs.size() < leastCopiedGlyphs ? std::nullopt : m_face->trueTypeProgram(m_glyphs);
    if (copied) {
        const PDFFile::Object numbers = file.reserve();
        file.write(descendant,
                   entries + "/Subtype/CIDFontType2/CIDToGIDMap " + reference(numbers) + ">>");
        file.writeStream(numbers, {}, glyphNumbers(m_glyphs));
        writeDescriptor(file, descriptor, fontName, program, "/FontFile2 ");
        file.writeStream(program, "/Length1 " + std::to_string(copied->size()), *copied);
    } else {
        file.write(descendant, entries + "/Subtype/CIDFontType0>>");
        writeDescriptor(file, descriptor, fontName, program, "/FontFile3 ");
        file.writeStream(program, "/Subtype/CIDFontType0C", drawnProgram(fontName));
    }
    file.writeStream(texts, {}, toUnicode(m_texts));
}

std::string EmbeddedFont::drawnProgram(const std::string& fontName) const
{
    constexpr std::size_t usualSize = 256; // of an ideograph
    CharStrings charStrings;
    charStrings.bytes.reserve(m_glyphs.size() * usualSize);
    for (std::size_t code = 0; code < m_glyphs.size(); ++code)
        m_face->draw(m_glyphs[code], m_advances[code], charStrings);
    CFFNames names = m_face->names();
    names.fontName = fontName;
    return cffProgram(names, charStrings);
}

void EmbeddedFont::writeDescriptor(PDFFile& file, PDFFile::Object object,
                                   const std::string& fontName, PDFFile::Object program,
                                   std::string_view programEntry) const
{
    const auto [left, bottom, right, top, ascent, descent] = m_face->metrics();
    constexpr int fixedPitch = 1;
    constexpr int symbolic = 4;
    const int flags = symbolic + (m_face->isFixedWidth() ? fixedPitch : 0);
    std::string entries = "<</Type/FontDescriptor/FontName/" + fontName + "/Flags " +
                          std::to_string(flags) + "/FontBBox[";
    for (const long side : {left, bottom, right, top})
        entries += std::to_string(side) + ' ';
    entries += "]/ItalicAngle 0/Ascent " + std::to_string(ascent) + "/Descent " +
               std::to_string(descent) + "/CapHeight " + std::to_string(ascent) + "/StemV 80";
    entries += programEntry;
    file.write(object, entries + reference(program) + ">>");
}

} // namespace quillmark
