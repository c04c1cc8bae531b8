#include "pdf/QPDFFile.h"

#include "pdf/Limits.h"
#include "pdf/QPDFFilters.h"
#include "pdf/QPDFHeaders.h"
#include "pdf/QPDFInput.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

namespace quillmark::PDF {
namespace {

/// Collects stream data up to a limit. Like every pipeline here it never throws.
class Collector final : public Pipeline {
public:
    explicit Collector(std::size_t limit) : Pipeline("collector", nullptr), m_limit(limit) {}

    void write(unsigned char const* data, std::size_t length) override
    {
        if (length > m_limit - m_bytes.size()) m_full = true;
        if (m_full) return;
        const auto bytes = std::as_bytes(std::span(data, length));
        try {
            m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        } catch (const std::bad_alloc&) {
            m_full = true;
        }
    }
    void finish() override {}

    /// Absent when there was more than the limit.
    [[nodiscard]] std::optional<Bytes> take()
    {
        if (m_full) return std::nullopt;
        return std::move(m_bytes);
    }

private:
    Bytes m_bytes;
    std::size_t m_limit;
    bool m_full{};
};

QPDFObjGen numbers(const Reference& reference)
{
    return QPDFObjGen(static_cast<int>(reference.number), static_cast<int>(reference.generation));
}

Reference reference(const QPDFObjGen& numbers)
{
    return {static_cast<std::uint32_t>(numbers.getObj()),
            static_cast<std::uint32_t>(numbers.getGen())};
}

} // namespace

struct QPDFFile::Implementation {
    QPDF pdf;
    std::shared_ptr<QPDFInput> input;
    StreamDecoder nothing{0};

    /// Calls `work`, in which libqpdf may throw for damage of any kind. False when it did. Streams
    /// that libqpdf unpacks by itself are decoded with `decoder`.
    template <typename Work>
    bool attempt(Work&& work, StreamDecoder& decoder)
    {
        const QPDFDecoding decoding(decoder);
        input->beginObject();
        try {
            work();
            return true;
        } catch (const std::exception&) {
            return false;
        }
    }

    /// The same; once a document is open, libqpdf need not unpack anything.
    template <typename Work>
    bool attempt(Work&& work)
    {
        return attempt(std::forward<Work>(work), nothing);
    }
};

QPDFFile::QPDFFile()
    : m_implementation(std::make_unique<Implementation>()), m_repairsLeft(Limits::repairs)
{
    m_implementation->pdf.setSuppressWarnings(true);
    m_implementation->pdf.setAttemptRecovery(true);
}

QPDFFile::~QPDFFile() = default;

ByteSource& QPDFFile::bytes()
{
    return m_implementation->input->source();
}

std::optional<PDFCheckError::Kind> QPDFFile::open(std::unique_ptr<ByteSource> source)
{
    QPDF& pdf = m_implementation->pdf;
    StreamDecoder decoder(Limits::crossReferenceBytes(source->size()));
    const auto input = std::make_shared<QPDFInput>(std::move(source));
    m_implementation->input = input;
    const bool opened =
        m_implementation->attempt([&] { pdf.processInputSource(input, ""); }, decoder);
    input->allowStreams(false);
    // Encrypted, but with a password, in a way that libqpdf does not know or with damaged
    // parameters: in any case there is no key.
    if (!opened)
        return pdf.isEncrypted() ? PDFCheckError::Kind::locked : PDFCheckError::Kind::unreadable;

    m_isEncrypted = pdf.isEncrypted();
    const bool hasRoot = m_implementation->attempt([&] {
        auto root = pdf.getTrailer().getKey("/Root");
        if (root.isIndirect())
            m_root = reference(root.getObjGen());
        else
            m_rootText = root.unparse();
        readTable();
    });
    if (!hasRoot) return PDFCheckError::Kind::unreadable;
    return std::nullopt;
}

void QPDFFile::readTable()
{
    auto& pdf = m_implementation->pdf;
    (void)pdf.getWarnings(); // which forgets them
    m_table.clear();
    const auto table = pdf.getXRefTable();
    m_table.reserve(table.size());
    for (const auto& [object, entry] : table) {
        if (object.getObj() <= 0 || object.getGen() < 0) continue;
        if (entry.getType() == 1 && entry.getOffset() > 0)
            m_table.push_back(
                {reference(object),
                 {Location::Kind::inFile, static_cast<std::uint64_t>(entry.getOffset())}});
        else if (entry.getType() == 2 && entry.getObjStreamNumber() > 0)
            m_table.push_back({reference(object),
                               {Location::Kind::inStream,
                                static_cast<std::uint64_t>(entry.getObjStreamNumber())}});
    }
}

std::optional<Location> QPDFFile::find(const Reference& reference) const
{
    // Most tables have all numbers from 1 on.
    if (reference.number > 0 && reference.number <= m_table.size()) {
        const auto& guess = m_table[reference.number - 1];
        if (guess.reference == reference) return guess.location;
    }
    const auto found = std::ranges::lower_bound(m_table, reference, {}, &Entry::reference);
    if (found == m_table.end() || found->reference != reference) return std::nullopt;
    return found->location;
}

bool QPDFFile::repair(const Reference& reference)
{
    if (m_repairsLeft == 0) return false;
    --m_repairsLeft;
    m_implementation->attempt([&] {
        // Reading the object makes libqpdf see for itself, and search.
        (void)m_implementation->pdf.getObject(numbers(reference)).isNull();
        readTable();
    });
    return true;
}

void QPDFFile::setInteger(const Reference& reference, std::int64_t value)
{
    m_implementation->attempt([&] {
        m_implementation->pdf.replaceObject(numbers(reference),
                                            QPDFObjectHandle::newInteger(value));
    });
}

std::optional<Bytes> QPDFFile::streamBytes(const Reference& reference, std::size_t limit)
{
    QPDF& pdf = m_implementation->pdf;
    const auto& input = m_implementation->input;
    std::optional<Bytes> bytes;
    m_implementation->attempt([&] {
        auto stream = pdf.getObject(numbers(reference));
        const bool isStream = stream.isStream();
        // Each time a stream's end has to be searched for, libqpdf goes through the whole table.
        if (pdf.anyWarnings()) input->charge(pdf.getWarnings().size() + 16 * m_table.size());
        if (!isStream) return;
        Collector collector(limit);
        input->allowStreams(true);
        stream.pipeStreamData(&collector, 0, qpdf_dl_none, true);
        bytes = collector.take();
    });
    input->allowStreams(false);
    return bytes;
}

} // namespace quillmark::PDF
