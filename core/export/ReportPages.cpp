#include "export/ReportPages.h"

#include "assessment/Brand.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillmark {
namespace {

struct Color {
    double red;
    double green;
    double blue;
};

Color color(Ink ink)
{
    switch (ink) {
    case Ink::black:
        return {0.08, 0.08, 0.1};
    case Ink::grey:
        return {0.35, 0.35, 0.38};
    case Ink::restricted:
        return {0.75, 0.15, 0.12};
    case Ink::unknown:
        return {0.7, 0.45, 0.0};
    case Ink::likelyOK:
        return {0.1, 0.5, 0.25};
    }
    return {};
}

/// How many pages a node of the page tree has. Readers walk from the root to a page.
constexpr std::size_t pagesOfGroup = 64;

void appendNumbers(std::string& text, std::initializer_list<double> numbers)
{
    for (const double number : numbers) {
        appendNumber(text, number);
        text += ' ';
    }
}

/// The codes as a string in parentheses, byte by byte.
void appendCodes(std::string& content, std::string_view codes)
{
    content += '(';
    for (const char byte : codes) {
        if (byte == '\r') {
            content += "\\r"; // which would be read as a line feed
            continue;
        }
        if (byte == '(' || byte == ')' || byte == '\\') content += '\\';
        content += byte;
    }
    content += ')';
}

bool hasText(const Line& line)
{
    return !line.runs.empty();
}

} // namespace

ReportPages::ReportPages(const ReportFonts& fonts, const Diagnostic& diagnostic)
    : m_setter(fonts, ReportPage::frameWidth, diagnostic)
{
}

bool ReportPages::isPageEmpty() const
{
    return m_top == ReportPage::frameBottom + ReportPage::frameHeight;
}

void ReportPages::startPage()
{
    m_pages.push_back(m_file.reserve());
    if ((m_pages.size() - 1) % pagesOfGroup == 0) m_pageGroups.push_back(m_file.reserve());
    m_top = ReportPage::frameBottom + ReportPage::frameHeight;
    m_state = {};
    // Marks can be stacked on a letter without end; they end at the frame.
    m_content = "q ";
    appendNumbers(m_content, {ReportPage::frameLeft, ReportPage::frameBottom,
                              ReportPage::frameWidth, ReportPage::frameHeight});
    m_content += "re W n BT\n";
    m_images.clear();
    m_links.clear();
    m_isOpen = true;
}

void ReportPages::endPage()
{
    m_content += "ET\n" + m_images + "Q BT\n";
    m_state = {};
    showFooter();
    m_content += "ET\n";
    const PDFFile::Object content = m_file.reserve();
    m_file.writeStream(content, {}, m_content);
    std::string page =
        "<</Type/Page/Parent " + reference(m_pageGroups.back()) + "/Contents " + reference(content);
    if (!m_links.empty()) page += "/Annots[" + m_links + "]";
    m_file.write(m_pages.back(), page + ">>");
    m_isOpen = false;
}

void ReportPages::showFooter()
{
    const Paragraph footer{
        .runs = {{ReportText::footer(m_pages.size()), Weight::regular, Ink::grey}},
        .size = ReportText::footerSize,
        .leading = ReportText::footerSize};
    for (const Line& line : m_setter.lines(footer)) {
        for (const GlyphRun& run : line.runs)
            show(run, line.size, ReportPage::footerBaseline);
    }
}

void ReportPages::add(std::span<const Paragraph> paragraphs, std::size_t keptThrough)
{
    struct PlacedLine {
        Line line;
        const Paragraph* paragraph;
    };
    constexpr std::size_t mostKept = 8; // a name can have thousands of lines
    std::vector<PlacedLine> lines;
    std::size_t kept = 0;
    for (std::size_t index = 0; index < paragraphs.size(); ++index) {
        if (index == keptThrough) kept = lines.size() + 1;
        for (Line& line : m_setter.lines(paragraphs[index]))
            lines.push_back({std::move(line), &paragraphs[index]});
    }
    kept = std::min({kept, mostKept, lines.size()});

    if (!m_isOpen) startPage();
    double keptHeight = 0;
    for (const PlacedLine& placed : std::span(lines).first(kept))
        keptHeight += placed.line.height;
    if (keptHeight > room() && !isPageEmpty()) {
        endPage();
        startPage();
    }
    if (auto entry = std::exchange(m_nextEntry, std::nullopt))
        m_outline[static_cast<std::size_t>(entry->first)].push_back(
            {std::move(entry->second), m_pages.back(), m_top});

    const auto lastText = std::find_if(lines.rbegin(), lines.rend(),
                                       [](const auto& placed) { return hasText(placed.line); });
    const auto textLines = static_cast<std::size_t>(lines.rend() - lastText);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const auto& [line, paragraph] = lines[index];
        const bool isLastButOne = index >= kept && index + 2 == textLines;
        const double needed = line.height + (isLastButOne ? lines[index + 1].line.height : 0);
        if (needed > room() && !isPageEmpty()) {
            endPage();
            startPage();
        }
        if (!hasText(line) && isPageEmpty()) continue;
        place(line, paragraph->link);
    }
}

void ReportPages::place(const Line& line, const std::optional<TextLink>& link)
{
    const double baseline = m_top - line.ascent;
    const double bottom = m_top - line.height;
    bool isSpan = false;
    for (const GlyphRun& run : line.runs) {
        if (isSpan && !run.continues) {
            m_content += "EMC\n";
            isSpan = false;
        }
        if (!run.text.empty()) {
            m_content += "/Span<</ActualText<FEFF" + utf16Digits(run.text) + ">>>BDC\n";
            isSpan = true;
        }
        show(run, line.size, baseline);
    }
    if (isSpan) m_content += "EMC\n";
    for (const PlacedImage& image : line.images) {
        m_images += "q ";
        appendNumbers(m_images, {image.width, 0, 0, image.height,
                                 ReportPage::frameLeft + image.left, baseline + image.bottom});
        m_images += "cm/I" + std::to_string(image.image) + " Do Q\n";
    }
    if (link && line.link) addAnnotation(*line.link, m_top, bottom, link->address);
    m_top = bottom;
}

void ReportPages::show(const GlyphRun& run, double size, double baseline)
{
    if (m_state.font != run.font || m_state.size != size) {
        m_state.font = run.font;
        m_state.size = size;
        m_content += "/F" + std::to_string(run.font) + ' ';
        appendNumber(m_content, size);
        m_content += " Tf ";
    }
    if (m_state.ink != run.ink) {
        m_state.ink = run.ink;
        const auto [red, green, blue] = color(run.ink);
        appendNumbers(m_content, {red, green, blue});
        m_content += "rg ";
    }
    // Relative to where the last run started; rounded where it stands, so that no error adds up.
    constexpr double unit = 1000;
    const long x = std::lround((ReportPage::frameLeft + run.x) * unit);
    const long y = std::lround((baseline + run.rise) * unit);
    appendNumbers(m_content, {static_cast<double>(x - m_state.x) / unit,
                              static_cast<double>(y - m_state.y) / unit});
    m_content += "Td";
    m_state.x = x;
    m_state.y = y;
    appendCodes(m_content, run.codes);
    m_content += "Tj\n";
}

void ReportPages::addAnnotation(const Extent& extent, double top, double bottom,
                                std::string_view address)
{
    m_links += "<</Type/Annot/Subtype/Link/Border[0 0 0]/F 4/Rect[";
    appendNumbers(m_links, {ReportPage::frameLeft + extent.left, bottom,
                            ReportPage::frameLeft + extent.right, top});
    m_links += "]/A<</S/URI/URI" + byteString(address) + ">>>>";
}

void ReportPages::addOutlineEntry(Verdict verdict, std::string_view title)
{
    m_nextEntry.emplace(verdict, title);
}

PDFFile::Object ReportPages::writePageTree()
{
    const PDFFile::Object root = m_file.reserve();
    std::string groups;
    for (std::size_t group = 0; group < m_pageGroups.size(); ++group) {
        const std::size_t first = group * pagesOfGroup;
        const auto pages =
            std::span(m_pages).subspan(first, std::min(pagesOfGroup, m_pages.size() - first));
        std::string node = "<</Type/Pages/Parent " + reference(root) + "/Count " +
                           std::to_string(pages.size()) + "/Kids[";
        for (const PDFFile::Object page : pages)
            node += reference(page) + ' ';
        m_file.write(m_pageGroups[group], node + "]>>");
        groups += reference(m_pageGroups[group]) + ' ';
    }
    const PDFFile::Object resources = m_file.reserve();
    m_file.write(resources, m_setter.writeResources(m_file));
    std::string entries = "<</Type/Pages/Count " + std::to_string(m_pages.size()) + "/Resources " +
                          reference(resources) + "/MediaBox[0 0 ";
    appendNumbers(entries, {ReportPage::width, ReportPage::height});
    m_file.write(root, entries + "]/Kids[" + groups + "]>>");
    return root;
}

/// A group for each verdict, closed, with its fonts: so that the few restricted fonts of a long
/// list are found.
std::optional<PDFFile::Object> ReportPages::writeOutline()
{
    std::vector<Verdict> verdicts;
    for (std::size_t index = 0; index < m_outline.size(); ++index) {
        if (!m_outline[index].empty()) verdicts.push_back(static_cast<Verdict>(index));
    }
    if (verdicts.empty()) return std::nullopt;
    const PDFFile::Object root = m_file.reserve();
    std::vector<PDFFile::Object> groups;
    for (std::size_t index = 0; index < verdicts.size(); ++index)
        groups.push_back(m_file.reserve());
    for (std::size_t index = 0; index < verdicts.size(); ++index) {
        const auto& entries = m_outline[static_cast<std::size_t>(verdicts[index])];
        std::vector<PDFFile::Object> objects;
        for (std::size_t entry = 0; entry < entries.size(); ++entry)
            objects.push_back(m_file.reserve());
        const std::string count = std::to_string(entries.size());
        const std::string title = std::string(label(verdicts[index])).append(" (" + count + ")");
        std::string group = "<</Title" + textString(title) + "/Parent " + reference(root) +
                            "/First " + reference(objects.front()) + "/Last " +
                            reference(objects.back()) + "/Count -" + count;
        if (index > 0) group += "/Prev " + reference(groups[index - 1]);
        if (index + 1 < groups.size()) group += "/Next " + reference(groups[index + 1]);
        m_file.write(groups[index], group + ">>");
        writeEntries(verdicts[index], groups[index], objects);
    }
    m_file.write(root, "<</Type/Outlines/First " + reference(groups.front()) + "/Last " +
                           reference(groups.back()) + "/Count " + std::to_string(groups.size()) +
                           ">>");
    return root;
}

void ReportPages::writeEntries(Verdict verdict, PDFFile::Object parent,
                               std::span<const PDFFile::Object> objects)
{
    const auto& entries = m_outline[static_cast<std::size_t>(verdict)];
    for (std::size_t index = 0; index < entries.size(); ++index) {
        std::string entry = "<</Title" + textString(entries[index].title) + "/Parent " +
                            reference(parent) + "/Dest[" + reference(entries[index].page) +
                            "/XYZ 0 ";
        appendNumber(entry, entries[index].top);
        entry += " 0]";
        if (index > 0) entry += "/Prev " + reference(objects[index - 1]);
        if (index + 1 < objects.size()) entry += "/Next " + reference(objects[index + 1]);
        m_file.write(objects[index], entry + ">>");
    }
}

std::vector<std::byte> ReportPages::finish(std::string_view title, std::string_view creationDate)
{
    if (!m_isOpen && m_pages.empty()) startPage();
    if (m_isOpen) endPage();
    const PDFFile::Object pages = writePageTree();
    const std::optional<PDFFile::Object> outline = writeOutline();
    const PDFFile::Object catalog = m_file.reserve();
    std::string entries = "<</Type/Catalog/Lang(en)/ViewerPreferences<</DisplayDocTitle true>>"
                          "/Pages " +
                          reference(pages);
    if (outline) entries += "/Outlines " + reference(*outline);
    m_file.write(catalog, entries + ">>");
    const PDFFile::Object information = m_file.reserve();
    m_file.write(information, "<</Title" + textString(title) + "/Creator" + byteString(Brand) +
                                  "/Producer" + byteString(Brand) + "/CreationDate" +
                                  byteString(creationDate) + ">>");
    return m_file.finish(catalog, information);
}

} // namespace quillmark
