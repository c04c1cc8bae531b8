// What libqpdf decodes by itself goes through our filters.
#include "pdf/QPDFFilters.h"

#include "pdf/Limits.h"
#include "pdf/QPDFHeaders.h"
#include "support/FontContainers.h"
#include "support/PDFBytes.h"
#include "support/PDFEncoders.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace quillmark::PDF {
namespace {

using test::ascii;

constexpr std::size_t plenty = 1 << 20;

/// The end of a pipeline.
class Sink final : public Pipeline {
public:
    explicit Sink(bool isFailing = false) : Pipeline("sink", nullptr), m_isFailing(isFailing) {}
    void write(unsigned char const* data, std::size_t length) override
    {
        if (m_isFailing) throw std::runtime_error("no room");
        text.append(reinterpret_cast<const char*>(data), length);
    }
    void finish() override { ++finished; }

    std::string text;
    int finished{};

private:
    bool m_isFailing;
};

/// Puts a stream's data into the pipeline as a function does it.
class Provider final : public QPDFObjectHandle::StreamDataProvider {
public:
    explicit Provider(std::function<void(Pipeline&)> provide) : m_provide(std::move(provide)) {}
    void provideStreamData(QPDFObjGen const& /*object*/, Pipeline* pipeline) override
    {
        m_provide(*pipeline);
    }

private:
    std::function<void(Pipeline&)> m_provide;
};

/// Lets libqpdf decode a stream with this filter into `sink`.
bool decode(const std::string& filter, std::function<void(Pipeline&)> provide, Sink& sink)
{
    QPDF pdf;
    pdf.setSuppressWarnings(true);
    pdf.emptyPDF();
    auto stream = QPDFObjectHandle::newStream(&pdf);
    stream.replaceStreamData(std::make_shared<Provider>(std::move(provide)),
                             QPDFObjectHandle::newName(filter), QPDFObjectHandle::newNull());
    return stream.pipeStreamData(&sink, 0, qpdf_dl_all, true);
}

void put(Pipeline& pipeline, std::span<const std::byte> bytes)
{
    pipeline.write(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::string decoded(const std::string& filter, const Bytes& raw)
{
    Sink sink;
    decode(
        filter,
        [&raw](Pipeline& pipeline) {
            put(pipeline, raw);
            pipeline.finish();
        },
        sink);
    EXPECT_EQ(sink.finished, 1);
    return sink.text;
}

TEST(QPDFFilters, DecodeAsMuchAsTheBudgetAllows)
{
    const std::string text(1000, 'x');
    const Bytes raw = test::deflated(ascii(text));
    StreamDecoder decoder(raw.size() + text.size());
    const QPDFDecoding decoding(decoder);
    EXPECT_EQ(decoded("/FlateDecode", raw), text);
    EXPECT_EQ(decoder.budget(), 0U);
    EXPECT_EQ(decoded("/FlateDecode", raw), "");
}

TEST(QPDFFilters, AreThoseOfOurOwnStreams)
{
    StreamDecoder decoder(plenty);
    const QPDFDecoding decoding(decoder);
    const Bytes text = ascii("a text, a text");
    EXPECT_EQ(decoded("/LZWDecode", test::lzw(text)), test::asText(text));
    EXPECT_EQ(decoded("/ASCIIHexDecode", test::asciiHex(text)), test::asText(text));
    EXPECT_EQ(decoded("/ASCII85Decode", test::ascii85(text)), test::asText(text));
    EXPECT_EQ(decoded("/RunLengthDecode", test::runLength(text)), test::asText(text));
}

TEST(QPDFFilters, SpendTheBudgetOfTheInnermostWork)
{
    const Bytes raw = test::asciiHex(ascii("text"));
    StreamDecoder outer(plenty);
    StreamDecoder inner(plenty);
    const QPDFDecoding decoding(outer);
    {
        const QPDFDecoding within(inner);
        EXPECT_EQ(decoded("/ASCIIHexDecode", raw), "text");
    }
    EXPECT_EQ(outer.budget(), plenty);
    EXPECT_LT(inner.budget(), plenty);
    const auto left = inner.budget();
    EXPECT_EQ(decoded("/ASCIIHexDecode", raw), "text");
    EXPECT_EQ(outer.budget(), left);
    EXPECT_EQ(inner.budget(), left);
}

TEST(QPDFFilters, HaveNoBudgetOutsideOfAnyWork)
{
    StreamDecoder none(0);
    const Bytes raw = test::asciiHex(ascii("text"));
    {
        const QPDFDecoding decoding(none);
        EXPECT_EQ(decoded("/ASCIIHexDecode", raw), "");
    }
    EXPECT_EQ(decoded("/ASCIIHexDecode", raw), "text");
}

TEST(QPDFFilters, GatherNoMoreThanTheLargestStream)
{
    StreamDecoder decoder(~std::uint64_t{0});
    const QPDFDecoding decoding(decoder);
    constexpr std::size_t pieces = 64;
    static_assert(Limits::streamBytes % pieces == 0);
    const Bytes piece(Limits::streamBytes / pieces, std::byte{'>'}); // an end mark, so no data
    const auto provided = [&piece](std::size_t more) {
        Sink sink;
        decode(
            "/ASCIIHexDecode",
            [&](Pipeline& pipeline) {
                put(pipeline, ascii("6F6B"));
                for (std::size_t i = 1; i < pieces; ++i)
                    put(pipeline, piece);
                put(pipeline, std::span(piece).subspan(4));
                for (std::size_t i = 0; i < more; ++i)
                    put(pipeline, ascii(">"));
                pipeline.finish();
            },
            sink);
        EXPECT_EQ(sink.finished, 1);
        return sink.text;
    };
    EXPECT_EQ(provided(0), "ok");
    EXPECT_EQ(provided(1), "");
    EXPECT_EQ(provided(2), "");
}

TEST(QPDFFilters, PassOnWhatTheyHaveOnlyOnce)
{
    StreamDecoder decoder(plenty);
    const QPDFDecoding decoding(decoder);
    Sink sink;
    decode(
        "/ASCIIHexDecode",
        [](Pipeline& pipeline) {
            put(pipeline, ascii("6F6B>"));
            pipeline.finish();
            pipeline.finish();
        },
        sink);
    EXPECT_EQ(sink.text, "ok");
    EXPECT_EQ(sink.finished, 1);
}

TEST(QPDFFilters, LetNoExceptionThrough)
{
    StreamDecoder decoder(plenty);
    const QPDFDecoding decoding(decoder);
    Sink sink(true);
    bool isBehind = false;
    decode(
        "/ASCIIHexDecode",
        [&isBehind](Pipeline& pipeline) {
            put(pipeline, ascii("6F6B>"));
            pipeline.finish();
            isBehind = true;
        },
        sink);
    EXPECT_TRUE(isBehind);
    EXPECT_EQ(sink.finished, 0);
}

} // namespace
} // namespace quillmark::PDF
