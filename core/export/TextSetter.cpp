#include "export/TextSetter.h"

#include "text/Utf8.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace quillmark {
namespace {

/// What Pango makes of a text takes some hundred times its size in memory.
constexpr std::size_t mostPieceCharacters = 2000;

/// Coloured glyphs of one report; each takes a millisecond and some kilobytes. More leave a gap on
/// paper and are still found as text.
constexpr std::size_t mostImages = 200;

constexpr std::size_t regularFont = 0;
constexpr std::size_t boldFont = 1;

// Of Courier Prime, in ems: how the height of a line is shared out above and below its base line.
constexpr double faceAscent = 0.781;
constexpr double faceHeight = 1.123;

/// Where a word that is too long for any line is broken, which are mostly paths and addresses.
constexpr std::u32string_view breaksAfter = U"/-_";

std::size_t fontOf(Weight weight)
{
    return weight == Weight::bold ? boldFont : regularFont;
}

Line emptyLine(const Paragraph& paragraph)
{
    const double spare = paragraph.leading - faceHeight * paragraph.size;
    Line line;
    line.size = paragraph.size;
    line.ascent = faceAscent * paragraph.size + spare / 2;
    line.height = paragraph.leading;
    return line;
}

void appendCode(std::string& codes, GlyphCode code)
{
    codes += static_cast<char>(code >> 8U);
    codes += static_cast<char>(code & 0xFFU);
}

void extend(std::optional<Extent>& extent, double left, double right)
{
    if (!extent) extent = Extent{left, right};
    extent->left = std::min(extent->left, left);
    extent->right = std::max(extent->right, right);
}

bool isInLink(const Paragraph& paragraph, std::size_t start)
{
    return paragraph.link && start >= paragraph.link->start && start < paragraph.link->end;
}

/// The run that the byte at `start` belongs to.
const TextRun& runAt(const Paragraph& paragraph, std::size_t start)
{
    for (const TextRun& run : paragraph.runs) {
        if (start < run.text.size()) return run;
        start -= run.text.size();
    }
    return paragraph.runs.back();
}

/// A part of a paragraph, from one byte of its text to another.
Paragraph part(const Paragraph& paragraph, std::size_t start, std::size_t end)
{
    Paragraph piece{.runs = {},
                    .size = paragraph.size,
                    .leading = paragraph.leading,
                    .indent = start == 0 ? paragraph.indent : paragraph.hang,
                    .hang = paragraph.hang};
    std::size_t runStart = 0;
    for (const TextRun& run : paragraph.runs) {
        const std::size_t from = std::max(start, runStart);
        const std::size_t to = std::min(end, runStart + run.text.size());
        if (from < to)
            piece.runs.push_back(
                {run.text.substr(from - runStart, to - from), run.weight, run.ink});
        runStart += run.text.size();
    }
    if (paragraph.link && paragraph.link->start < end && paragraph.link->end > start)
        piece.link = TextLink{std::max(paragraph.link->start, start) - start,
                              std::min(paragraph.link->end, end) - start,
                              {}};
    return piece;
}

/// The end of the longest piece that starts at `start`.
std::size_t pieceEnd(std::string_view text, std::size_t start)
{
    std::size_t end = start;
    for (std::size_t count = 0; end < text.size() && count < mostPieceCharacters; ++count)
        end += Utf8::first(text.substr(end)).length;
    return end;
}

} // namespace

TextSetter::TextSetter(const ReportFonts& fonts, double width, Diagnostic diagnostic)
    : m_files(fonts), m_width(width), m_diagnostic(std::move(diagnostic))
{
    for (const FontFile& file : {fonts.regular, fonts.bold}) {
        m_fontFiles.push_back(file);
        m_fonts.push_back(EmbeddedFont::open(file));
    }
}

bool TextSetter::isReady() const
{
    return m_fonts[regularFont] && m_fonts[boldFont];
}

std::vector<Line> TextSetter::lines(const Paragraph& paragraph)
{
    std::vector<Line> lines;
    if (takeCharacters(paragraph))
        setCharacters(paragraph, lines);
    else
        setPieces(paragraph, lines);
    if (lines.empty()) lines.push_back(emptyLine(paragraph));
    lines.front().ascent += paragraph.spaceBefore;
    lines.front().height += paragraph.spaceBefore;
    return lines;
}

double TextSetter::room(const Paragraph& paragraph, std::size_t blanks)
{
    if (blanks == 0) return 0;
    EmbeddedFont& font = *m_fonts[regularFont];
    const double advance = font.advance(font.code(U' ').value_or(0));
    return static_cast<double>(blanks) * advance * paragraph.size / 1000;
}

/// Whether the report's own faces have all that the paragraph needs, each glyph by itself; always,
/// when what is missing is replaced by their glyph for it.
bool TextSetter::takeCharacters(const Paragraph& paragraph, Missing missing)
{
    m_characters.clear();
    std::size_t start = 0;
    for (std::size_t index = 0; index < paragraph.runs.size(); ++index) {
        const TextRun& run = paragraph.runs[index];
        EmbeddedFont& font = *m_fonts[fontOf(run.weight)];
        std::string_view text = run.text;
        while (!text.empty()) {
            const Utf8::Character character = Utf8::first(text);
            auto code = font.code(character.codePoint);
            if (!code) {
                if (missing == Missing::refused) return false;
                code = font.code(0U, text.substr(0, character.length));
            }
            m_characters.push_back({*code, character.codePoint, index, start,
                                    font.advance(*code) * paragraph.size / 1000});
            start += character.length;
            text.remove_prefix(character.length);
        }
    }
    return true;
}

void TextSetter::setCharacters(const Paragraph& paragraph, std::vector<Line>& lines)
{
    const double hang = room(paragraph, paragraph.hang);
    double x = room(paragraph, paragraph.indent);
    std::size_t first = 0;
    do {
        const std::size_t next = lineEnd(first, m_width - x, m_width - hang);
        std::size_t last = next;
        while (next < m_characters.size() && last > first &&
               m_characters[last - 1].character == ' ')
            --last;
        lines.push_back(lineOf(paragraph, first, last, x));
        first = next;
        x = hang;
    } while (first < m_characters.size());
}

/// Where the line that starts with the character `first` ends and the next one starts. A word goes
/// to the next line if it fits there as a whole; else it is broken, at a good place if it has one.
std::size_t TextSetter::lineEnd(std::size_t first, double width, double nextWidth) const
{
    std::size_t wordStart = first;
    std::size_t goodBreak = first; // in the word at hand
    double used = 0;
    double wordWidth = 0;
    std::size_t at = first;
    for (; at < m_characters.size(); ++at) {
        const Character& character = m_characters[at];
        const bool isBlank = character.character == ' ';
        if (!isBlank && used + character.advance > width) break;
        used += character.advance;
        wordWidth += character.advance;
        if (isBlank) {
            wordStart = at + 1;
            wordWidth = 0;
        }
        if (isBlank || breaksAfter.find(character.character) != std::u32string_view::npos)
            goodBreak = at + 1;
    }
    if (at == m_characters.size()) return at;
    std::size_t wordEnd = at;
    while (wordEnd < m_characters.size() && wordWidth <= nextWidth &&
           m_characters[wordEnd].character != ' ')
        wordWidth += m_characters[wordEnd++].advance;
    if (wordStart > first && wordWidth <= nextWidth) return wordStart;
    if (goodBreak > std::max(wordStart, first)) return goodBreak;
    return std::max(at, first + 1);
}

Line TextSetter::lineOf(const Paragraph& paragraph, std::size_t first, std::size_t last,
                        double x) const
{
    Line line = emptyLine(paragraph);
    if (first < m_characters.size()) line.start = m_characters[first].start;
    const TextRun* run = nullptr;
    for (const Character& character : std::span(m_characters).subspan(first, last - first)) {
        const TextRun& own = paragraph.runs[character.run];
        if (&own != run) {
            run = &own;
            line.runs.push_back({fontOf(run->weight), run->ink, x, 0, x, {}});
        }
        appendCode(line.runs.back().codes, character.code);
        x += character.advance;
        line.runs.back().end = x;
        if (isInLink(paragraph, character.start)) extend(line.link, x - character.advance, x);
    }
    return line;
}

void TextSetter::setPieces(const Paragraph& paragraph, std::vector<Line>& lines)
{
    const std::string text = paragraph.text();
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = pieceEnd(text, start);
        const std::size_t before = lines.size();
        setPiece(part(paragraph, start, end), lines);
        // Its last line is set again, with what belongs on the same line behind it.
        const bool isCut = end < text.size() && lines.size() > before + 1;
        start = isCut ? start + lines.back().start : end;
        if (isCut) lines.pop_back();
    }
}

void TextSetter::setPiece(const Paragraph& piece, std::vector<Line>& lines)
{
    if (takeCharacters(piece)) return setCharacters(piece, lines);
    if (!m_scripts) {
        m_scripts = std::make_unique<ScriptLayout>(m_files);
        if (!m_scripts->isReady())
            m_diagnostic("Quillmark report font: Pango is missing; text in other scripts can be "
                         "searched, but not seen.");
    }
    if (!m_scripts->isReady()) {
        takeCharacters(piece, Missing::replaced);
        return setCharacters(piece, lines);
    }
    const std::string text = piece.text();
    const auto laidOut =
        m_scripts->lines(piece, m_width, room(piece, piece.indent), room(piece, piece.hang));
    for (const ScriptLine& line : laidOut)
        lines.push_back(lineOf(piece, text, line));
}

Line TextSetter::lineOf(const Paragraph& paragraph, const std::string& text,
                        const ScriptLine& scripts)
{
    Line line = emptyLine(paragraph);
    // A taller script gets more room, but one font's strange metrics do not push the text apart.
    const double ascent = std::clamp(scripts.ascent, line.ascent, 2 * paragraph.size);
    const double descent =
        std::clamp(scripts.descent, line.height - line.ascent, 1.2 * paragraph.size);
    line.ascent = ascent;
    line.height = ascent + descent;
    const auto foremost = std::ranges::min_element(scripts.clusters, {}, &ScriptCluster::start);
    if (foremost != scripts.clusters.end()) line.start = foremost->start;
    for (const ScriptCluster& cluster : scripts.clusters) {
        if (cluster.glyphs.empty()) continue;
        const TextRun& run = runAt(paragraph, cluster.start);
        const auto clusterText =
            std::string_view(text).substr(cluster.start, cluster.end - cluster.start);
        place(line, cluster, clusterText, run.weight, run.ink);
        if (isInLink(paragraph, cluster.start))
            extend(line.link, cluster.x, cluster.x + cluster.width);
    }
    return line;
}

void TextSetter::place(Line& line, const ScriptCluster& cluster, std::string_view text,
                       Weight weight, Ink ink)
{
    constexpr double unseen = 0.02; // points
    const std::size_t index = fontFor(cluster.font, weight);
    EmbeddedFont& font = *m_fonts[index];
    const bool isKnown = m_fontFiles[index] == (cluster.font ? *cluster.font : FontFile{});
    const bool isShort = text.size() <= EmbeddedFont::longestText;
    const double end = cluster.x + cluster.width;
    // A mark takes no room, but fonts have an advance for it.
    const bool isMark = cluster.width == 0;
    const bool isAlone = cluster.glyphs.size() == 1 && isShort && !isMark;
    for (const ScriptCluster::Glyph& glyph : cluster.glyphs) {
        const bool isFirst = &glyph == &cluster.glyphs.front();
        const unsigned number = isKnown ? glyph.glyph : 0;
        const GlyphCode code = font.code(number, isFirst && isShort ? text : std::string_view());
        const GlyphRun* const before = line.runs.empty() ? nullptr : &line.runs.back();
        const bool follows = isAlone && before && before->font == index && before->ink == ink &&
                             before->text.empty() && !before->continues &&
                             std::abs(before->rise - glyph.y) < unseen &&
                             std::abs(before->end - glyph.x) < unseen;
        if (!follows) {
            line.runs.push_back({index, ink, glyph.x, glyph.y, glyph.x, {}});
            if (!isAlone && isFirst) line.runs.back().text = text;
            line.runs.back().continues = !isFirst;
        }
        appendCode(line.runs.back().codes, code);
        line.runs.back().end += font.advance(code) * line.size / 1000;
        if (const auto image = imageOf(index, number)) {
            const GlyphImage& picture = m_images[*image];
            line.images.push_back({*image, glyph.x + picture.left * line.size,
                                   glyph.y + picture.bottom * line.size,
                                   picture.width * picture.pixel * line.size,
                                   picture.height * picture.pixel * line.size});
        }
    }
    // Whoever searches the text takes the end of the last glyph for that of all, and behind a mark
    // would find a gap, or the next letter on top of this one.
    if (!isAlone && std::abs(line.runs.back().end - end) > unseen) {
        if (const GlyphCode blank = font.blank(); blank != 0) {
            line.runs.push_back({index, ink, end, 0, end, {}});
            line.runs.back().continues = true;
            appendCode(line.runs.back().codes, blank);
        }
    }
}

/// The report's own font where there is no file, or none that can be opened.
std::size_t TextSetter::fontFor(const FontFile* file, Weight weight)
{
    if (file == nullptr) return fontOf(weight);
    const auto known = std::ranges::find(m_fontFiles, *file);
    if (known != m_fontFiles.end()) return static_cast<std::size_t>(known - m_fontFiles.begin());
    auto font = EmbeddedFont::open(*file);
    if (!font) return fontOf(weight);
    m_fontFiles.push_back(*file);
    m_fonts.push_back(std::move(font));
    return m_fonts.size() - 1;
}

std::optional<std::size_t> TextSetter::imageOf(std::size_t font, unsigned glyph)
{
    if (!m_fonts[font]->hasColors()) return std::nullopt;
    const auto [known, isNew] = m_imageOfGlyph.try_emplace(std::pair(font, glyph));
    if (!isNew || m_images.size() >= mostImages) return known->second;
    if (auto image = m_fonts[font]->image(glyph)) {
        m_images.push_back(std::move(*image));
        known->second = m_images.size() - 1;
    }
    return known->second;
}

std::string TextSetter::writeResources(PDFFile& file)
{
    std::string resources = "<</Font<<";
    for (std::size_t index = 0; index < m_fonts.size(); ++index) {
        const PDFFile::Object object = file.reserve();
        m_fonts[index]->write(file, object);
        resources += "/F" + std::to_string(index) + ' ' + reference(object);
    }
    resources += ">>/XObject<<";
    for (std::size_t index = 0; index < m_images.size(); ++index) {
        const GlyphImage& image = m_images[index];
        const PDFFile::Object colors = file.reserve();
        const PDFFile::Object alpha = file.reserve();
        const std::string entries = "/Type/XObject/Subtype/Image/Width " +
                                    std::to_string(image.width) + "/Height " +
                                    std::to_string(image.height) + "/BitsPerComponent 8";
        file.writeStream(alpha, entries + "/ColorSpace/DeviceGray", image.alpha);
        file.writeStream(colors, entries + "/ColorSpace/DeviceRGB/SMask " + reference(alpha),
                         image.colors);
        resources += "/I" + std::to_string(index) + ' ' + reference(colors);
    }
    return resources + ">>>>";
}

} // namespace quillmark
