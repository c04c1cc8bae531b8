// The report's pages: where lines stand, what is printed under them, and what leads to them.
#pragma once

#include "export/PDFFile.h"
#include "export/TextSetter.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

// US Letter with its frame of text, in points from the lower left corner.
namespace ReportPage {
inline constexpr double width = 612;
inline constexpr double height = 792;
inline constexpr double frameLeft = 54;
inline constexpr double frameBottom = 66;
inline constexpr double frameWidth = 504;
inline constexpr double frameHeight = 672;
inline constexpr double footerBaseline = 40;
} // namespace ReportPage

class ReportPages {
public:
    ReportPages(const ReportFonts& fonts, const Diagnostic& diagnostic);

    /// Whether there are fonts to write with. Nothing else may be asked if not.
    [[nodiscard]] bool isReady() const { return m_setter.isReady(); }

    /// Adds paragraphs that belong together. The first lines, through the first one of the
    /// paragraph `keptThrough`, never part; a single last line does not stand on a page by itself.
    void add(std::span<const Paragraph> paragraphs, std::size_t keptThrough);

    /// Lists what is added next in the file's outline, under its verdict.
    void addOutlineEntry(Verdict verdict, std::string_view title);

    [[nodiscard]] std::vector<std::byte> finish(std::string_view title,
                                                std::string_view creationDate);

private:
    struct OutlineEntry {
        std::string title;
        PDFFile::Object page{};
        double top{};
    };
    /// What the page's text operators have set.
    struct TextState {
        std::size_t font = static_cast<std::size_t>(-1);
        double size{};
        std::optional<Ink> ink;
        long x{}; // in thousandths of a point, as the page's numbers are written
        long y{};
    };

    void startPage();
    void endPage();
    void place(const Line& line, const std::optional<TextLink>& link);
    void show(const GlyphRun& run, double size, double baseline);
    void showFooter();
    void addAnnotation(const Extent& extent, double top, double bottom, std::string_view address);
    [[nodiscard]] double room() const { return m_top - ReportPage::frameBottom; }
    [[nodiscard]] bool isPageEmpty() const;
    [[nodiscard]] PDFFile::Object writePageTree();
    [[nodiscard]] std::optional<PDFFile::Object> writeOutline();
    void writeEntries(Verdict verdict, PDFFile::Object parent,
                      std::span<const PDFFile::Object> objects);

    PDFFile m_file;
    TextSetter m_setter;
    std::vector<PDFFile::Object> m_pages;
    std::vector<PDFFile::Object> m_pageGroups; // nodes of the page tree, in order
    std::array<std::vector<OutlineEntry>, rawValues<Verdict>.size()> m_outline;
    std::optional<std::pair<Verdict, std::string>> m_nextEntry;

    // The page at hand.
    bool m_isOpen{};
    double m_top{};        // of the next line
    std::string m_content; // its text
    std::string m_images;  // what is drawn over it
    std::string m_links;
    TextState m_state;
};

} // namespace quillmark
