#include "pdf/QPDFFilters.h"

#include "pdf/Limits.h"
#include "pdf/QPDFHeaders.h"

#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>

namespace quillmark::PDF {
namespace {

// libqpdf makes filters by their name alone, so this is how they learn whose budget to use.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
thread_local StreamDecoder* currentDecoder = nullptr;

/// Gathers what is to be decoded and passes it on decoded, all at once. It never throws: libqpdf
/// finishes the pipeline of an encrypted stream twice after an exception, and crashes.
class BoundedPipeline final : public Pipeline {
public:
    BoundedPipeline(const Filter& filter, Pipeline* target)
        : Pipeline("bounded filter", target), m_filter(filter)
    {
    }

    void write(unsigned char const* data, std::size_t length) override
    {
        const auto bytes = std::as_bytes(std::span(data, length));
        if (length > Limits::streamBytes - m_raw.size()) m_failed = true;
        if (m_failed) return;
        try {
            m_raw.insert(m_raw.end(), bytes.begin(), bytes.end());
        } catch (const std::bad_alloc&) {
            m_failed = true;
        }
    }

    void finish() override
    {
        if (std::exchange(m_finished, true)) return;
        try {
            StreamDecoder unlimited(std::numeric_limits<std::uint64_t>::max());
            auto& decoder = currentDecoder ? *currentDecoder : unlimited;
            std::optional<Bytes> data;
            if (!m_failed)
                data = decoder.decode(std::move(m_raw), {&m_filter, 1}, Limits::streamBytes);
            if (data)
                getNext()->write(reinterpret_cast<const unsigned char*>(data->data()),
                                 data->size());
            getNext()->finish();
        } catch (const std::exception&) {
            // The stream is then shorter than it should be, which libqpdf notices by itself.
        }
    }

private:
    Filter m_filter;
    Bytes m_raw;
    bool m_failed{};
    bool m_finished{};
};

class BoundedFilter final : public QPDFStreamFilter {
public:
    explicit BoundedFilter(Filter::Kind kind) { m_filter.kind = kind; }

    bool setDecodeParms(QPDFObjectHandle parameters) override
    {
        if (!parameters.isDictionary()) return parameters.isNull();
        const auto integer = [&](const char* key, std::int64_t absent) -> std::int64_t {
            auto value = parameters.getKey(key);
            return value.isInteger() ? value.getIntValue() : absent;
        };
        m_filter.predictor.predictor = integer("/Predictor", 1);
        m_filter.predictor.colors = integer("/Colors", 1);
        m_filter.predictor.bitsPerComponent = integer("/BitsPerComponent", 8);
        m_filter.predictor.columns = integer("/Columns", 1);
        m_filter.earlyChange = integer("/EarlyChange", 1) != 0;
        return true;
    }

    Pipeline* getDecodePipeline(Pipeline* next) override
    {
        m_pipeline = std::make_unique<BoundedPipeline>(m_filter, next);
        return m_pipeline.get();
    }

private:
    Filter m_filter;
    std::unique_ptr<Pipeline> m_pipeline;
};

void replaceFilters()
{
    for (const char* name :
         {"FlateDecode", "LZWDecode", "ASCIIHexDecode", "ASCII85Decode", "RunLengthDecode"}) {
        const auto kind = filterKind(name);
        QPDF::registerStreamFilter(std::string("/") + name, [kind = *kind] {
            return std::make_shared<BoundedFilter>(kind);
        });
    }
}

} // namespace

QPDFDecoding::QPDFDecoding(StreamDecoder& decoder)
    : m_outer(std::exchange(currentDecoder, &decoder))
{
    [[maybe_unused]] static const bool areReplaced = [] {
        replaceFilters();
        return true;
    }();
}

QPDFDecoding::~QPDFDecoding()
{
    currentDecoder = m_outer;
}

} // namespace quillmark::PDF
