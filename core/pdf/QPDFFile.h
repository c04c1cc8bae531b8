// What libqpdf does for us: it reads the cross-reference table, repairs files that have none worth
// the name, and decrypts. Where objects are and what the bytes of a stream are comes from here;
// what stands in an object is read by ObjectParser.h, because libqpdf parses whole object streams
// into objects of some hundred bytes a number, which took most of the time and nearly all of the
// memory of a check.
#pragma once

#include "pdf/ByteSource.h"
#include "pdf/PDFCheckError.h"
#include "pdf/ParsedObject.h"
#include "pdf/StreamFilters.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillmark::PDF {

/// Where an object is.
struct Location {
    enum class Kind {
        inFile,   // at an offset in the file
        inStream, // in the object stream with a number
    };
    Kind kind{};
    std::uint64_t value{}; // the offset or the number
};

class QPDFFile {
public:
    QPDFFile();
    ~QPDFFile();
    QPDFFile(const QPDFFile&) = delete;
    QPDFFile& operator=(const QPDFFile&) = delete;

    /// Opens a document, with the empty password if it is encrypted. To be called once; why it
    /// failed, or absent when it is open.
    [[nodiscard]] std::optional<PDFCheckError::Kind> open(std::unique_ptr<ByteSource> source);

    [[nodiscard]] bool isEncrypted() const { return m_isEncrypted; }

    /// The document's bytes.
    [[nodiscard]] ByteSource& bytes();

    /// The catalog: a reference, or its text when it stands in the trailer itself.
    [[nodiscard]] Reference root() const { return m_root; }
    [[nodiscard]] const std::string& rootText() const { return m_rootText; }

    /// How many objects the document has.
    [[nodiscard]] std::size_t objectCount() const { return m_table.size(); }

    /// Absent when there is no such object.
    [[nodiscard]] std::optional<Location> find(const Reference& reference) const;

    /// To be called when an object is not where `find` says: looks through the whole file for
    /// objects, the first few times that this happens. Whether it did: afterwards, `find` may say
    /// something else.
    bool repair(const Reference& reference);

    /// Tells the value of an object that a stream's length is given by.
    void setInteger(const Reference& reference, std::int64_t value);

    /// The bytes of a stream, decrypted but not decoded, its end searched for if its length is
    /// wrong; absent when there are none, or more than `limit`.
    [[nodiscard]] std::optional<Bytes> streamBytes(const Reference& reference, std::size_t limit);

private:
    struct Implementation;
    struct Entry {
        Reference reference;
        Location location;
    };

    void readTable();

    std::unique_ptr<Implementation> m_implementation;
    std::vector<Entry> m_table; // ascending
    Reference m_root;
    std::string m_rootText;
    bool m_isEncrypted{};
    int m_repairsLeft;
};

} // namespace quillmark::PDF
