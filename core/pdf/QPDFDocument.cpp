#include "pdf/PDFDocument.h"

#include "pdf/Limits.h"
#include "pdf/QPDFInput.h"
#include "pdf/StreamFilters.h"
#include "text/Encoding.h"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <algorithm>
#include <exception>
#include <map>
#include <unordered_map>
#include <utility>

namespace quillmark::PDF {
namespace {

class QPDFReader;

/// A value with where it stands in the document.
struct Node {
    QPDFObjectHandle handle;
    Identity identity{};
};

/// Takes what `read` returns. libqpdf throws for damage of many kinds; whatever it is, the value is
/// then simply not there.
template <typename Read>
auto orAbsent(Read&& read) -> decltype(read())
{
    try {
        return read();
    } catch (const std::exception&) {
        return {};
    }
}

class QPDFDictionary final : public Dictionary {
public:
    QPDFDictionary(QPDFReader& reader, Node node) : m_reader(reader), m_node(std::move(node)) {}
    [[nodiscard]] Identity identity() const override { return m_node.identity; }
    [[nodiscard]] DictionaryRef dictionary(std::string_view key) const override;
    [[nodiscard]] ArrayRef array(std::string_view key) const override;
    [[nodiscard]] StreamRef stream(std::string_view key) const override;
    [[nodiscard]] std::optional<std::string> name(std::string_view key) const override;
    void enumerate(const Visitor& visitor) const override;

private:
    [[nodiscard]] Node child(std::string_view key) const;
    QPDFReader& m_reader;
    mutable Node m_node; // libqpdf resolves references even when it only reads
};

class QPDFArray final : public Array {
public:
    QPDFArray(QPDFReader& reader, Node node) : m_reader(reader), m_node(std::move(node)) {}
    [[nodiscard]] Identity identity() const override { return m_node.identity; }
    [[nodiscard]] std::size_t size() const override;
    [[nodiscard]] DictionaryRef dictionary(std::size_t index) const override;

private:
    QPDFReader& m_reader;
    mutable Node m_node;
};

class QPDFStream final : public Stream {
public:
    QPDFStream(QPDFReader& reader, Node node) : m_reader(reader), m_node(std::move(node)) {}
    [[nodiscard]] Identity identity() const override { return m_node.identity; }
    [[nodiscard]] DictionaryRef dictionary() const override;
    [[nodiscard]] SharedBytes data() const override;

private:
    QPDFReader& m_reader;
    mutable Node m_node;
};

class QPDFValue final : public Object {
public:
    QPDFValue(QPDFReader& reader, Node node) : m_reader(reader), m_node(std::move(node)) {}
    [[nodiscard]] DictionaryRef dictionary() const override;
    [[nodiscard]] StreamRef stream() const override;

private:
    QPDFReader& m_reader;
    mutable Node m_node;
};

/// Collects undecoded stream data up to a limit. It never throws: an exception out of a pipeline
/// makes libqpdf finish the pipeline of an encrypted stream twice, which it does not survive.
class Collector final : public Pipeline {
public:
    explicit Collector(std::size_t limit) : Pipeline("data", nullptr), m_limit(limit) {}
    void write(unsigned char const* data, size_t length) override
    {
        if (m_full || length > m_limit - m_bytes.size()) {
            m_full = true;
            return;
        }
        const auto bytes = std::as_bytes(std::span(data, length));
        try {
            m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        } catch (const std::bad_alloc&) {
            m_full = true;
        }
    }
    void finish() override {}
    [[nodiscard]] bool full() const { return m_full; }
    [[nodiscard]] const Bytes& bytes() const { return m_bytes; }

private:
    Bytes m_bytes;
    std::size_t m_limit;
    bool m_full{};
};

class QPDFReader final : public Document {
public:
    QPDFReader()
    {
        m_pdf.setSuppressWarnings(true);
        m_pdf.setAttemptRecovery(true);
    }
    /// Absent when the document opened.
    std::optional<PDFCheckError::Kind> open(std::unique_ptr<ByteSource> source);
    [[nodiscard]] DictionaryRef pages() const override;

    [[nodiscard]] Node child(Identity owner, std::string_view key, QPDFObjectHandle value);
    [[nodiscard]] SharedBytes decode(Node& stream);

private:
    [[nodiscard]] SharedBytes decodeNow(QPDFObjectHandle& stream);

    mutable QPDF m_pdf;
    mutable std::map<std::pair<Identity, std::string>, Identity> m_direct;
    std::unordered_map<Identity, SharedBytes> m_decoded;
    DecodeBudget m_budget{Limits::programBytes};
};

constexpr Identity directBit = Identity{1} << 63U;

Identity identityOf(const QPDFObjGen& number)
{
    return (static_cast<Identity>(static_cast<std::uint32_t>(number.getObj())) << 32U) |
           static_cast<std::uint32_t>(number.getGen());
}

Node QPDFReader::child(Identity owner, std::string_view key, QPDFObjectHandle value)
{
    if (value.isIndirect()) {
        const Identity identity = identityOf(value.getObjGen());
        return {std::move(value), identity};
    }
    if (!value.isDictionary() && !value.isArray()) return {std::move(value), 0};
    const auto [known, isNew] =
        m_direct.try_emplace({owner, std::string(key)}, directBit + m_direct.size());
    return {std::move(value), known->second};
}

DictionaryRef asDictionary(QPDFReader& reader, Node node)
{
    if (!node.handle.isDictionary()) return nullptr;
    return std::make_shared<QPDFDictionary>(reader, std::move(node));
}

StreamRef asStream(QPDFReader& reader, Node node)
{
    if (!node.handle.isStream()) return nullptr;
    return std::make_shared<QPDFStream>(reader, std::move(node));
}

Node QPDFDictionary::child(std::string_view key) const
{
    return m_reader.child(m_node.identity, key, m_node.handle.getKey('/' + std::string(key)));
}

DictionaryRef QPDFDictionary::dictionary(std::string_view key) const
{
    return orAbsent([&] { return asDictionary(m_reader, child(key)); });
}

ArrayRef QPDFDictionary::array(std::string_view key) const
{
    return orAbsent([&]() -> ArrayRef {
        Node node = child(key);
        if (!node.handle.isArray()) return nullptr;
        return std::make_shared<QPDFArray>(m_reader, std::move(node));
    });
}

StreamRef QPDFDictionary::stream(std::string_view key) const
{
    return orAbsent([&] { return asStream(m_reader, child(key)); });
}

/// A name's bytes without the slash. libqpdf writes a NUL for a "#" that starts no escape.
std::string nameBytes(std::string name)
{
    std::ranges::replace(name, '\0', '#');
    return name.substr(std::min<std::size_t>(1, name.size()));
}

std::optional<std::string> QPDFDictionary::name(std::string_view key) const
{
    return orAbsent([&]() -> std::optional<std::string> {
        auto value = m_node.handle.getKey('/' + std::string(key));
        if (!value.isName()) return std::nullopt;
        return repairedUtf8(nameBytes(value.getName()));
    });
}

void QPDFDictionary::enumerate(const Visitor& visitor) const
{
    orAbsent([&] {
        for (auto& [name, value] : m_node.handle.getDictAsMap()) {
            const std::string key = nameBytes(name);
            const auto object =
                std::make_shared<QPDFValue>(m_reader, m_reader.child(m_node.identity, key, value));
            if (!visitor(key, object)) break;
        }
        return 0;
    });
}

std::size_t QPDFArray::size() const
{
    return orAbsent([&] { return static_cast<std::size_t>(m_node.handle.getArrayNItems()); });
}

DictionaryRef QPDFArray::dictionary(std::size_t index) const
{
    return orAbsent([&]() -> DictionaryRef {
        if (index >= size()) return nullptr;
        return asDictionary(m_reader,
                            m_reader.child(m_node.identity, std::to_string(index),
                                           m_node.handle.getArrayItem(static_cast<int>(index))));
    });
}

DictionaryRef QPDFValue::dictionary() const
{
    return orAbsent([&] { return asDictionary(m_reader, m_node); });
}

StreamRef QPDFValue::stream() const
{
    return orAbsent([&] { return asStream(m_reader, m_node); });
}

DictionaryRef QPDFStream::dictionary() const
{
    return orAbsent([&] {
        return asDictionary(m_reader, {m_node.handle.getDict(), m_node.identity});
    });
}

SharedBytes QPDFStream::data() const
{
    return orAbsent([&] { return m_reader.decode(m_node); });
}

std::int64_t integer(QPDFObjectHandle parameters, const char* key, std::int64_t absent)
{
    auto value = parameters.getKey(key);
    return value.isInteger() ? value.getIntValue() : absent;
}

/// The filters of a stream in the order of decoding; absent when one of them is not for plain
/// bytes.
std::optional<std::vector<Filter>> filtersOf(QPDFObjectHandle dictionary)
{
    std::vector<Filter> filters;
    auto names = dictionary.getKey("/Filter");
    auto parameters = dictionary.getKey("/DecodeParms");
    const int count = names.isArray() ? names.getArrayNItems() : names.isNull() ? 0 : 1;
    if (static_cast<std::size_t>(count) > Limits::filters) return std::nullopt;
    for (int i = 0; i < count; ++i) {
        auto name = names.isArray() ? names.getArrayItem(i) : names;
        if (!name.isName()) return std::nullopt;
        const auto kind = filterKind(nameBytes(name.getName()));
        if (!kind) return std::nullopt;
        Filter filter;
        filter.kind = *kind;
        auto own = parameters;
        if (parameters.isArray())
            own = i < parameters.getArrayNItems() ? parameters.getArrayItem(i)
                                                  : QPDFObjectHandle::newNull();
        if (own.isDictionary()) {
            filter.predictor = {.predictor = integer(own, "/Predictor", 1),
                                .colors = integer(own, "/Colors", 1),
                                .bitsPerComponent = integer(own, "/BitsPerComponent", 8),
                                .columns = integer(own, "/Columns", 1)};
            filter.earlyChange = integer(own, "/EarlyChange", 1) != 0;
        }
        filters.push_back(filter);
    }
    return filters;
}

SharedBytes QPDFReader::decodeNow(QPDFObjectHandle& stream)
{
    const auto filters = filtersOf(stream.getDict());
    if (!filters) return nullptr;
    Collector raw(Limits::streamBytes);
    stream.pipeStreamData(&raw, 0, qpdf_dl_none, true);
    if (raw.full()) return nullptr;
    auto data = PDF::decode(raw.bytes(), *filters, Limits::streamBytes, m_budget);
    if (!data) return nullptr;
    return std::make_shared<const Bytes>(*std::move(data));
}

SharedBytes QPDFReader::decode(Node& stream)
{
    const auto [known, isNew] = m_decoded.try_emplace(stream.identity);
    if (isNew) known->second = orAbsent([&] { return decodeNow(stream.handle); });
    return known->second;
}

std::optional<PDFCheckError::Kind> QPDFReader::open(std::unique_ptr<ByteSource> source)
{
    try {
        m_pdf.processInputSource(std::make_shared<QPDFInput>(std::move(source)), "");
        if (m_pdf.getTrailer().getKey("/Root").isDictionary()) return std::nullopt;
    } catch (const QPDFExc& error) {
        if (error.getErrorCode() == qpdf_e_password) return PDFCheckError::Kind::locked;
    } catch (const std::exception&) {
    }
    // Encrypted in a way that libqpdf does not know, or does not understand: without a key, all
    // the same.
    return orAbsent([&] { return m_pdf.isEncrypted(); }) ? PDFCheckError::Kind::locked
                                                         : PDFCheckError::Kind::unreadable;
}

DictionaryRef QPDFReader::pages() const
{
    return orAbsent([&] {
        auto& reader = const_cast<QPDFReader&>(*this);
        auto root = m_pdf.getRoot();
        return asDictionary(
            reader, reader.child(identityOf(root.getObjGen()), "Pages", root.getKey("/Pages")));
    });
}

Opened openSource(std::unique_ptr<ByteSource> source)
{
    if (!source) return PDFCheckError::Kind::unreadable;
    auto document = std::make_unique<QPDFReader>();
    if (const auto failure = document->open(skippingLeadingGarbage(std::move(source))))
        return *failure;
    return document;
}

} // namespace

Opened open(const std::filesystem::path& path)
{
    return openSource(fileSource(path));
}

Opened open(std::span<const std::byte> data)
{
    return openSource(memorySource(data));
}

} // namespace quillmark::PDF
