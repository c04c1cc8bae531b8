// A PDF file (ISO 32000-1) as its objects are written. What the pages show is PDFReport.h's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

/// Appends a number with at most three decimals, as PDF writes it: never with an exponent.
void appendNumber(std::string& text, double number);

/// `text`, valid UTF-8, as a text string: UTF-16 in hexadecimal, or in parentheses where it is
/// ASCII.
[[nodiscard]] std::string textString(std::string_view text);

/// ASCII in parentheses.
[[nodiscard]] std::string byteString(std::string_view ascii);

/// `text`, valid UTF-8, as the hexadecimal digits of its UTF-16.
[[nodiscard]] std::string utf16Digits(std::string_view text);

/// Collects the bytes of a file. Objects without a stream go together into compressed object
/// streams: a report has some for every font.
class PDFFile {
public:
    using Object = std::uint32_t;

    PDFFile();
    ~PDFFile();
    PDFFile(const PDFFile&) = delete;
    PDFFile& operator=(const PDFFile&) = delete;

    /// The number of an object to come. Each has to be written once.
    [[nodiscard]] Object reserve();
    void write(Object object, std::string_view body);
    /// `entries` are those of the stream's dictionary besides its length and filter.
    void writeStream(Object object, std::string_view entries, std::string_view data);

    /// Writes what is left and returns the file; nothing may follow.
    [[nodiscard]] std::vector<std::byte> finish(Object catalog, Object information);

private:
    struct Place {
        bool compressed{};
        std::uint64_t offset{}; // in the file, or the number of the object stream
        std::uint32_t index{};  // in the object stream
    };

    void append(std::string_view text);
    void flushObjects();
    void writeStreamBytes(Object object, std::string_view entries, std::string_view data);

    class Compressor;
    std::map<int, std::unique_ptr<Compressor>> m_compressors; // by level, when first needed
    std::vector<std::byte> m_bytes;
    std::vector<Place> m_places; // by object number less one
    std::vector<Object> m_pending;
    std::string m_pendingOffsets;
    std::string m_pendingBodies;
};

/// "12 0 R"
[[nodiscard]] std::string reference(PDFFile::Object object);

} // namespace quillmark
