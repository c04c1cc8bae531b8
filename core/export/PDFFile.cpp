#include "export/PDFFile.h"

#include "text/Utf8.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <new>
#include <span>

namespace quillmark {
namespace {

/// How many objects share an object stream. A reader decodes all of them for one.
constexpr std::size_t objectsOfStream = 200;

/// Only fonts of thousands of ideographs are larger than some 100 KB. To compress them well, or
/// those of all ideographs at all, would take longer than the rest of their report.
int compressionLevel(std::size_t size)
{
    constexpr std::size_t large = 0x40000;
    constexpr std::size_t huge = 0x200000;
    if (size < large) return 6;
    return size < huge ? 1 : 0;
}

void appendHexadecimal(std::string& text, unsigned value)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (int shift = 12; shift >= 0; shift -= 4)
        text += digits[(value >> static_cast<unsigned>(shift)) & 0xFU];
}

void appendInteger(std::string& text, std::uint64_t number)
{
    std::array<char, 20> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number);
    text.append(digits.begin(), end.ptr);
}

} // namespace

void appendNumber(std::string& text, double number)
{
    std::array<char, 32> digits{};
    const auto end =
        std::to_chars(digits.begin(), digits.end(), number, std::chars_format::fixed, 3);
    if (end.ec != std::errc()) {
        text += '0'; // no position on a page has that many digits
        return;
    }
    std::string_view written(digits.begin(), end.ptr);
    written.remove_suffix(written.size() - 1 - written.find_last_not_of('0'));
    if (written.ends_with('.')) written.remove_suffix(1);
    text += written == "-0" ? "0" : written;
}

std::string utf16Digits(std::string_view text)
{
    std::string digits;
    while (!text.empty()) {
        const Utf8::Character character = Utf8::first(text);
        text.remove_prefix(character.length);
        if (character.codePoint < 0x10000) {
            appendHexadecimal(digits, character.codePoint);
        } else {
            const unsigned above = character.codePoint - 0x10000;
            appendHexadecimal(digits, 0xD800U + (above >> 10U));
            appendHexadecimal(digits, 0xDC00U + (above & 0x3FFU));
        }
    }
    return digits;
}

std::string textString(std::string_view text)
{
    return Utf8::isAscii(text) ? byteString(text) : "<FEFF" + utf16Digits(text) + ">";
}

std::string byteString(std::string_view ascii)
{
    std::string written = "(";
    for (const char character : ascii) {
        if (character == '(' || character == ')' || character == '\\') written += '\\';
        written += character;
    }
    written += ')';
    return written;
}

std::string reference(PDFFile::Object object)
{
    return std::to_string(object) + " 0 R";
}

class PDFFile::Compressor {
public:
    explicit Compressor(int level) : m_compressor(::libdeflate_alloc_compressor(level))
    {
        if (m_compressor == nullptr) throw std::bad_alloc();
    }
    ~Compressor() { ::libdeflate_free_compressor(m_compressor); }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;

    /// Valid until the next call.
    std::string_view compress(std::string_view data)
    {
        m_space.resize(
            std::max(m_space.size(), ::libdeflate_zlib_compress_bound(m_compressor, data.size())));
        const std::size_t size = ::libdeflate_zlib_compress(m_compressor, data.data(), data.size(),
                                                            m_space.data(), m_space.size());
        return std::string_view(m_space).substr(0, size);
    }

private:
    libdeflate_compressor* m_compressor;
    std::string m_space;
};

PDFFile::PDFFile()
{
    constexpr std::size_t usualSize = std::size_t{64} << 10U; // of a report with its own face
    m_bytes.reserve(usualSize);
    append("%PDF-1.5\n%\xE2\xE3\xCF\xD3\n"); // not ASCII, as transfer programs can see
}

PDFFile::~PDFFile() = default;

PDFFile::Object PDFFile::reserve()
{
    m_places.emplace_back();
    return static_cast<Object>(m_places.size());
}

void PDFFile::write(Object object, std::string_view body)
{
    m_pending.push_back(object);
    appendInteger(m_pendingOffsets, object);
    m_pendingOffsets += ' ';
    appendInteger(m_pendingOffsets, m_pendingBodies.size());
    m_pendingOffsets += ' ';
    m_pendingBodies += body;
    m_pendingBodies += '\n';
    if (m_pending.size() == objectsOfStream) flushObjects();
}

void PDFFile::flushObjects()
{
    if (m_pending.empty()) return;
    const Object stream = reserve();
    for (std::uint32_t index = 0; index < m_pending.size(); ++index)
        m_places[m_pending[index] - 1] = {true, stream, index};
    std::string entries = "/Type/ObjStm/N ";
    appendInteger(entries, m_pending.size());
    entries += "/First ";
    appendInteger(entries, m_pendingOffsets.size());
    writeStream(stream, entries, m_pendingOffsets + m_pendingBodies);
    m_pending.clear();
    m_pendingOffsets.clear();
    m_pendingBodies.clear();
}

void PDFFile::writeStream(Object object, std::string_view entries, std::string_view data)
{
    m_places[object - 1] = {false, m_bytes.size(), 0};
    writeStreamBytes(object, entries, data);
}

void PDFFile::writeStreamBytes(Object object, std::string_view entries, std::string_view data)
{
    const int level = compressionLevel(data.size());
    auto& compressor = m_compressors[level];
    if (!compressor) compressor = std::make_unique<Compressor>(level);
    const std::string_view compressed = compressor->compress(data);
    std::string head;
    appendInteger(head, object);
    head += " 0 obj\n<<";
    head += entries;
    head += "/Filter/FlateDecode/Length ";
    appendInteger(head, compressed.size());
    head += ">>stream\n";
    append(head);
    append(compressed);
    append("\nendstream\nendobj\n");
}

void PDFFile::append(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
}

std::vector<std::byte> PDFFile::finish(Object catalog, Object information)
{
    flushObjects();
    const Object table = reserve();
    const std::uint64_t tableOffset = m_bytes.size();
    m_places[table - 1] = {false, tableOffset, 0};

    constexpr std::size_t entrySize = 7; // kind, five bytes of offset or stream, index
    static_assert(objectsOfStream <= 0x100);
    std::string entries(1, '\0'); // object 0, the head of the list of free ones
    entries.append(entrySize - 2, '\0');
    entries += '\xFF';
    for (const Place& place : m_places) {
        entries += place.compressed ? '\2' : '\1';
        for (int shift = 32; shift >= 0; shift -= 8)
            entries += static_cast<char>((place.offset >> static_cast<unsigned>(shift)) & 0xFFU);
        entries += static_cast<char>(place.index);
    }
    writeStreamBytes(table,
                     "/Type/XRef/W[1 5 1]/Size " + std::to_string(m_places.size() + 1) + "/Root " +
                         reference(catalog) + "/Info " + reference(information),
                     entries);
    append("startxref\n" + std::to_string(tableOffset) + "\n%%EOF\n");
    return std::move(m_bytes);
}

} // namespace quillmark
