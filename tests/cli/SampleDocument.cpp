#include "SampleDocument.h"

#include <algorithm>

namespace quillmark::test {
namespace {

/// Objects numbered as they are added, from 1 on.
class Objects {
public:
    int add(const std::string& content)
    {
        m_offsets.push_back(m_file.size());
        m_file += std::to_string(m_offsets.size()) + " 0 obj\n" + content + "\nendobj\n";
        return static_cast<int>(m_offsets.size());
    }

    std::string finish(int root)
    {
        const std::size_t table = m_file.size();
        const std::string count = std::to_string(m_offsets.size() + 1);
        m_file += "xref\n0 " + count + "\n0000000000 65535 f \n";
        for (const std::size_t offset : m_offsets) {
            std::string digits = std::to_string(offset);
            digits.insert(0, 10 - digits.size(), '0');
            m_file += digits + " 00000 n \n";
        }
        m_file += "trailer\n<< /Size " + count + " /Root " + std::to_string(root) +
                  " 0 R >>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
        return m_file;
    }

private:
    std::string m_file{"%PDF-1.7\n"};
    std::vector<std::size_t> m_offsets;
};

std::string reference(int object)
{
    return std::to_string(object) + " 0 R";
}

int addFont(Objects& objects, const DocumentFont& font)
{
    std::string descriptor;
    if (font.program) {
        const std::string bytes(reinterpret_cast<const char*>(font.program->data()),
                                font.program->size());
        const int program = objects.add("<< /Length " + std::to_string(bytes.size()) +
                                        " >>\nstream\n" + bytes + "\nendstream");
        descriptor = " /FontDescriptor " +
                     reference(objects.add("<< /Type /FontDescriptor /FontName /" + font.name +
                                           " /FontFile2 " + reference(program) + " >>"));
    }
    return objects.add("<< /Type /Font /Subtype /TrueType /BaseFont /" + font.name + descriptor +
                       " >>");
}

} // namespace

std::string sampleDocument(int pageCount, const std::vector<DocumentFont>& fonts)
{
    Objects objects;
    std::vector<int> fontObjects;
    for (const DocumentFont& font : fonts)
        fontObjects.push_back(addFont(objects, font));

    // The pages come right after the fonts, and their parent right after them.
    const int parent = objects.add("null") + pageCount + 1;
    std::string kids;
    for (int page = 1; page <= pageCount; ++page) {
        std::string resources;
        for (std::size_t i = 0; i < fonts.size(); ++i)
            if (std::ranges::count(fonts[i].pages, page) > 0)
                resources += "/F" + std::to_string(i) + " " + reference(fontObjects[i]) + " ";
        kids += reference(objects.add("<< /Type /Page /Parent " + reference(parent) +
                                      " /MediaBox [0 0 100 100] /Resources << /Font << " +
                                      resources + ">> >> >>")) +
                " ";
    }
    const int pages = objects.add("<< /Type /Pages /Kids [ " + kids + "] /Count " +
                                  std::to_string(pageCount) + " >>");
    return objects.finish(objects.add("<< /Type /Catalog /Pages " + reference(pages) + " >>"));
}

} // namespace quillmark::test
