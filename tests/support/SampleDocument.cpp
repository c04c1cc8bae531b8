#include "support/SampleDocument.h"

#include "support/PDFBytes.h"

#include <algorithm>

namespace quillmark::test {
namespace {

std::string reference(int object)
{
    return std::to_string(object) + " 0 R";
}

/// Adds the font as object `number`, and its descriptor and program right after it.
void addFont(PDFBytes& document, int number, const DocumentFont& font)
{
    const std::string name = "/" + font.name;
    std::string entries = "/Type/Font/Subtype/TrueType/BaseFont" + name;
    if (font.program) {
        entries += "/FontDescriptor " + reference(number + 1);
        document.object(number + 1, "<</Type/FontDescriptor/FontName" + name + "/FontFile2 " +
                                        reference(number + 2) + ">>");
        document.stream(number + 2, "", *font.program);
    }
    document.object(number, "<<" + entries + ">>");
}

} // namespace

std::string sampleDocument(int pageCount, const std::vector<DocumentFont>& fonts)
{
    // The fonts come behind the pages, with three numbers for each.
    const auto number = [pageCount](std::size_t font) {
        return 3 + pageCount + 3 * static_cast<int>(font);
    };
    std::vector<std::string> entries;
    for (int page = 1; page <= pageCount; ++page) {
        std::string resources;
        for (std::size_t i = 0; i < fonts.size(); ++i)
            if (std::ranges::count(fonts[i].pages, page) > 0)
                resources += "/F" + std::to_string(i) + " " + reference(number(i));
        entries.push_back("/MediaBox[0 0 100 100]/Resources<</Font<<" + resources + ">>>>");
    }
    PDFBytes document = pages(entries);
    for (std::size_t i = 0; i < fonts.size(); ++i)
        addFont(document, number(i), fonts[i]);
    return document.text();
}

} // namespace quillmark::test
