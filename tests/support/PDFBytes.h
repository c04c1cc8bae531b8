// PDF files written object by object (ISO 32000). Lengths, offsets and the cross-reference table
// are filled in, so that what a test writes wrong is all that is wrong. For encoding stream data
// see PDFEncoders.h, for encrypted files PDFEncryption.h.
#pragma once

#include "support/FontBytes.h"

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark::test {

class PDFBytes {
public:
    /// What tells readers where the objects are.
    enum class CrossReference {
        table,
        stream,       // uncompressed
        flatedStream, // with Flate and a PNG predictor, as most producers write it
    };

    /// Text in front of the header, which offsets do not count.
    PDFBytes& garbage(std::string_view text);
    PDFBytes& crossReference(CrossReference kind);
    /// Further entries of the trailer, such as "/Size 5" (which is written anyway). The catalog is
    /// object 1 unless an entry "/Root" is among them.
    PDFBytes& trailer(std::string_view entries);

    /// An object as it stands between "obj" and "endobj".
    PDFBytes& object(int number, std::string_view text, int generation = 0);
    /// A stream; `entries` are those of its dictionary but for the length.
    PDFBytes& stream(int number, std::string_view entries, std::span<const std::byte> data);
    PDFBytes& stream(int number, std::string_view entries, std::string_view data = {});
    /// A stream whose dictionary has just these entries, right or wrong.
    PDFBytes& streamAsWritten(int number, std::string_view entries, std::string_view data);
    /// Objects inside an object stream, in this order. They get entries in the cross-reference
    /// stream, which then must be one.
    PDFBytes& objectStream(int number, const std::vector<std::pair<int, std::string>>& members,
                           std::string_view entries = {});
    /// An object stream with these bytes, with the members' entries in the cross-reference stream.
    PDFBytes& objectStreamAsWritten(int number, std::string_view entries,
                                    std::span<const std::byte> data,
                                    const std::vector<int>& members);

    /// An entry of the cross-reference stream for an object that is not there: in an object stream.
    PDFBytes& claimInStream(int member, int stream);

    /// The number behind the highest one used.
    [[nodiscard]] int nextNumber() const;

    [[nodiscard]] std::string text() const;
    [[nodiscard]] Bytes build() const;

private:
    struct Object {
        int number{};
        int generation{};
        std::string text; // with the stream, if it is one
    };

    [[nodiscard]] std::string crossReferenceTable(const std::map<int, std::size_t>& offsets) const;
    [[nodiscard]] std::string crossReferenceStream(std::map<int, std::size_t> offsets,
                                                   std::size_t here) const;
    [[nodiscard]] std::string trailerEntries(int size) const;

    std::string m_garbage;
    CrossReference m_crossReference{CrossReference::table};
    std::string m_trailer;
    std::vector<Object> m_objects;
    std::map<int, int> m_inStream; // object stream by number
};

/// A document of one page with these resources. Objects 1 to 3 are the catalog, the root of the
/// page tree and the page; further objects begin with 4.
[[nodiscard]] PDFBytes onePage(std::string_view resources, std::string_view pageEntries = {});

/// A document whose pages have these entries besides type and parent. Objects 1 and 2 are the
/// catalog and the root of the page tree, which has the entries `shared`; page n is object 2 + n.
[[nodiscard]] PDFBytes pages(const std::vector<std::string>& entries, std::string_view shared = {});

/// The bytes with the first place where `what` stands replaced. Throws when it stands nowhere.
[[nodiscard]] Bytes replaced(const Bytes& bytes, std::string_view what, std::string_view by);

[[nodiscard]] std::string_view asText(std::span<const std::byte> bytes);

} // namespace quillmark::test
