#include "support/PDFBytes.h"

#include "support/FontContainers.h"
#include "support/PDFEncoders.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <stdexcept>

namespace quillmark::test {
namespace {

std::string streamText(std::string_view dictionaryEntries, std::string_view data)
{
    return "<<" + std::string(dictionaryEntries) + ">>\nstream\n" + std::string(data) +
           "\nendstream";
}

void putBigEndian(std::string& text, std::uint64_t value, unsigned width)
{
    for (unsigned i = width; i-- > 0;)
        text += static_cast<char>(value >> (8 * i));
}

std::string tableEntry(std::size_t offset, int generation, char kind)
{
    std::array<char, 32> line{};
    std::snprintf(line.data(), line.size(), "%010zu %05d %c \n", offset, generation, kind);
    return line.data();
}

} // namespace

std::string_view asText(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

PDFBytes& PDFBytes::garbage(std::string_view text)
{
    m_garbage = text;
    return *this;
}

PDFBytes& PDFBytes::crossReference(CrossReference kind)
{
    m_crossReference = kind;
    return *this;
}

PDFBytes& PDFBytes::trailer(std::string_view entries)
{
    m_trailer += entries;
    return *this;
}

PDFBytes& PDFBytes::object(int number, std::string_view text, int generation)
{
    m_objects.push_back({number, generation, std::string(text)});
    return *this;
}

PDFBytes& PDFBytes::stream(int number, std::string_view entries, std::span<const std::byte> data)
{
    return stream(number, entries, asText(data));
}

PDFBytes& PDFBytes::stream(int number, std::string_view entries, std::string_view data)
{
    const std::string length = "/Length " + std::to_string(data.size());
    return object(number, streamText(std::string(entries) + length, data));
}

PDFBytes& PDFBytes::streamAsWritten(int number, std::string_view entries, std::string_view data)
{
    return object(number, streamText(entries, data));
}

PDFBytes& PDFBytes::objectStream(int number,
                                 const std::vector<std::pair<int, std::string>>& members,
                                 std::string_view entries)
{
    std::string places;
    std::string objects;
    std::vector<int> numbers;
    for (const auto& [member, text] : members) {
        places += std::to_string(member) + ' ' + std::to_string(objects.size()) + ' ';
        objects += text + '\n';
        numbers.push_back(member);
    }
    const std::string all = "/Type/ObjStm/N " + std::to_string(members.size()) + "/First " +
                            std::to_string(places.size()) + std::string(entries);
    return objectStreamAsWritten(number, all, ascii(places + objects), numbers);
}

PDFBytes& PDFBytes::objectStreamAsWritten(int number, std::string_view entries,
                                          std::span<const std::byte> data,
                                          const std::vector<int>& members)
{
    for (const int member : members)
        claimInStream(member, number);
    return stream(number, entries, data);
}

PDFBytes& PDFBytes::claimInStream(int member, int stream)
{
    m_inStream[member] = stream;
    return *this;
}

int PDFBytes::nextNumber() const
{
    int highest = m_inStream.empty() ? 0 : m_inStream.rbegin()->first;
    for (const auto& object : m_objects)
        highest = std::max(highest, object.number);
    return highest + 1;
}

std::string PDFBytes::trailerEntries(int size) const
{
    std::string entries = m_trailer;
    if (entries.find("/Root") == std::string::npos) entries += "/Root 1 0 R";
    return entries + "/Size " + std::to_string(size);
}

std::string PDFBytes::crossReferenceTable(const std::map<int, std::size_t>& offsets) const
{
    std::map<int, int> generations;
    for (const auto& object : m_objects)
        generations[object.number] = object.generation;
    std::string table = "xref\n0 1\n" + tableEntry(0, 65535, 'f');
    for (auto at = offsets.begin(); at != offsets.end();) {
        auto end = at;
        for (int number = at->first; end != offsets.end() && end->first == number; ++number)
            ++end;
        table += std::to_string(at->first) + ' ' + std::to_string(std::distance(at, end)) + '\n';
        for (; at != end; ++at)
            table += tableEntry(at->second, generations[at->first], 'n');
    }
    return table + "trailer\n<<" + trailerEntries(nextNumber()) + ">>\n";
}

std::string PDFBytes::crossReferenceStream(std::map<int, std::size_t> offsets,
                                           std::size_t here) const
{
    const int number = nextNumber();
    offsets[number] = here;
    std::string table;
    for (int i = 0; i <= number; ++i) {
        const auto member = m_inStream.find(i);
        const auto offset = offsets.find(i);
        const bool inStream = member != m_inStream.end();
        putBigEndian(table, inStream ? 2 : offset != offsets.end() ? 1 : 0, 1);
        std::uint64_t field = 0;
        if (inStream)
            field = static_cast<std::uint64_t>(member->second);
        else if (offset != offsets.end())
            field = offset->second;
        putBigEndian(table, field, 4);
        putBigEndian(table, 0, 2);
    }
    std::string entries = "/Type/XRef/W[1 4 2]" + trailerEntries(number + 1);
    if (m_crossReference == CrossReference::flatedStream) {
        entries += "/Filter/FlateDecode/DecodeParms<</Predictor 12/Columns 7>>";
        const Bytes packed = deflated(pngUp(std::as_bytes(std::span(table)), 7));
        table = asText(packed);
    }
    entries += "/Length " + std::to_string(table.size());
    return std::to_string(number) + " 0 obj\n" + streamText(entries, table) + "\nendobj\n";
}

std::string PDFBytes::text() const
{
    // The second line marks the file as binary.
    std::string text = "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n";
    std::map<int, std::size_t> offsets;
    for (const auto& object : m_objects) {
        offsets[object.number] = text.size();
        text += std::to_string(object.number) + ' ' + std::to_string(object.generation) + " obj\n" +
                object.text + "\nendobj\n";
    }
    const std::size_t start = text.size();
    text += m_crossReference == CrossReference::table ? crossReferenceTable(offsets)
                                                      : crossReferenceStream(offsets, start);
    text += "startxref\n" + std::to_string(start) + "\n%%EOF\n";
    return m_garbage + text;
}

Bytes PDFBytes::build() const
{
    return ascii(text());
}

PDFBytes onePage(std::string_view resources, std::string_view pageEntries)
{
    return pages({"/Resources " + std::string(resources) + std::string(pageEntries)});
}

PDFBytes pages(const std::vector<std::string>& entries, std::string_view shared)
{
    std::string kids;
    for (std::size_t i = 0; i < entries.size(); ++i)
        kids += std::to_string(3 + i) + " 0 R ";
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Count " + std::to_string(entries.size()) + "/Kids[" + kids + "]" +
                      std::string(shared) + ">>");
    int number = 3;
    for (const auto& page : entries)
        pdf.object(number++, "<</Type/Page/Parent 2 0 R" + page + ">>");
    return pdf;
}

Bytes replaced(const Bytes& bytes, std::string_view what, std::string_view by)
{
    std::string text(asText(bytes));
    const std::size_t at = text.find(what);
    if (at == std::string::npos) throw std::runtime_error("there is nothing to replace");
    text.replace(at, what.size(), by);
    return ascii(text);
}

} // namespace quillmark::test
