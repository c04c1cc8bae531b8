#include "pdf/StreamFilters.h"

#include "support/FontContainers.h"
#include "support/PDFBytes.h"
#include "support/PDFEncoders.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace quillmark::PDF {
namespace {

using test::ascii;
using test::asText;
using Kind = Filter::Kind;

constexpr std::size_t plenty = 1 << 20;

Filter filter(Kind kind)
{
    Filter filter;
    filter.kind = kind;
    return filter;
}

std::optional<std::string> decoded(const Bytes& raw, const std::vector<Filter>& filters,
                                   std::size_t limit = plenty)
{
    StreamDecoder decoder(std::numeric_limits<std::uint64_t>::max());
    const auto bytes = decoder.decode(raw, filters, limit);
    if (!bytes) return std::nullopt;
    return std::string(asText(*bytes));
}

std::optional<std::string> decoded(std::string_view raw, Kind kind)
{
    return decoded(ascii(raw), {filter(kind)});
}

/// Text with few different characters and long repetitions, and every byte value.
std::string sample(std::size_t size)
{
    std::string text;
    for (std::size_t i = 0; text.size() < size; ++i) {
        text += "font " + std::to_string(i % 37) + ' ';
        text += std::string(i % 9, 'x');
        text += static_cast<char>(i);
    }
    text.resize(size);
    return text;
}

struct NamedFilter {
    const char* name;
    const char* abbreviation;
    Kind kind;
    Bytes (*encode)(std::span<const std::byte>);

    friend std::ostream& operator<<(std::ostream& out, const NamedFilter& row)
    {
        return out << row.name;
    }
};

class EveryFilter : public testing::TestWithParam<NamedFilter> {};

TEST_P(EveryFilter, IsKnownByItsName)
{
    EXPECT_EQ(filterKind(GetParam().name), GetParam().kind);
}

TEST_P(EveryFilter, IsKnownByItsAbbreviation)
{
    EXPECT_EQ(filterKind(GetParam().abbreviation), GetParam().kind);
}

TEST_P(EveryFilter, GivesBackWhatWasEncoded)
{
    for (const std::size_t size : {1U, 2U, 3U, 4U, 5U, 127U, 128U, 129U, 1000U, 70'000U}) {
        const std::string text = sample(size);
        EXPECT_EQ(decoded(GetParam().encode(ascii(text)), {filter(GetParam().kind)}), text) << size;
    }
}

TEST_P(EveryFilter, GivesAsManyBytesAsTheLimitAndNotOneMore)
{
    const std::string text = sample(1000);
    const Bytes raw = GetParam().encode(ascii(text));
    // The undecoded bytes are bound by the same limit, so a filter that makes data longer is
    // given a limit above their size.
    const std::string longer = sample(3000);
    const Bytes more = GetParam().encode(ascii(longer));
    const auto filters = std::vector{filter(GetParam().kind)};
    EXPECT_EQ(decoded(more, filters, std::max(more.size(), longer.size())), longer);
    EXPECT_EQ(decoded(more, filters, longer.size() - 1), std::nullopt);
}

TEST_P(EveryFilter, TakesAnyBytes)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        Bytes raw;
        unsigned state = seed * 7919 + 1;
        for (unsigned i = 0; i < seed; ++i) {
            state = state * 1664525 + 1013904223;
            raw.push_back(static_cast<std::byte>(state >> 24U));
        }
        const auto text = decoded(raw, {filter(GetParam().kind)});
        EXPECT_LE(text.value_or("").size(), plenty);
    }
}

INSTANTIATE_TEST_SUITE_P(
    StreamFilters, EveryFilter,
    testing::Values(NamedFilter{"FlateDecode", "Fl", Kind::flate, test::deflated},
                    NamedFilter{"LZWDecode", "LZW", Kind::lzw,
                                [](std::span<const std::byte> data) { return test::lzw(data); }},
                    NamedFilter{"ASCIIHexDecode", "AHx", Kind::asciiHex, test::asciiHex},
                    NamedFilter{"ASCII85Decode", "A85", Kind::ascii85, test::ascii85},
                    NamedFilter{"RunLengthDecode", "RL", Kind::runLength, test::runLength}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(StreamFilters, CryptChangesNothing)
{
    EXPECT_EQ(filterKind("Crypt"), Kind::crypt);
    EXPECT_EQ(decoded("as it is", Kind::crypt), "as it is");
}

TEST(StreamFilters, NoFilterGivesTheBytesThemselves)
{
    EXPECT_EQ(decoded(ascii("as it is"), {}), "as it is");
    EXPECT_EQ(decoded({}, {}), "");
}

TEST(StreamFilters, ImageFiltersAndUnknownOnesAreNoFilters)
{
    for (const char* name : {"DCTDecode", "DCT", "JPXDecode", "JBIG2Decode", "CCITTFaxDecode",
                             "CCF", "flatedecode", "FlateDecode ", ""})
        EXPECT_EQ(filterKind(name), std::nullopt) << name;
}

TEST(StreamFilters, ChainIsUndoneFromTheOutsideIn)
{
    const std::string text = sample(500);
    const Bytes raw = test::ascii85(test::deflated(test::runLength(ascii(text))));
    EXPECT_EQ(decoded(raw, {filter(Kind::ascii85), filter(Kind::flate), filter(Kind::runLength)}),
              text);
}

TEST(StreamFilters, LimitHoldsForTheLayersInBetween)
{
    const std::string text(5000, 'x');
    const Bytes hex = test::asciiHex(ascii(text));
    const Bytes raw = test::deflated(hex);
    const auto chain = std::vector{filter(Kind::flate), filter(Kind::asciiHex)};
    EXPECT_EQ(decoded(raw, chain, hex.size()), text);
    EXPECT_EQ(decoded(raw, chain, hex.size() - 1), std::nullopt);
}

TEST(StreamFilters, BudgetIsSharedByAllStreamsAndChargedForEveryLayer)
{
    StreamDecoder decoder(100);
    const Bytes raw = test::asciiHex(Bytes(20)); // 41 bytes
    const auto hex = std::vector{filter(Kind::asciiHex)};
    ASSERT_TRUE(decoder.decode(raw, hex, plenty));
    EXPECT_EQ(decoder.budget(), 100 - 41 - 20);
    EXPECT_FALSE(decoder.decode(raw, hex, plenty)); // would need 61
}

TEST(StreamFilters, StreamOverItsLimitIsChargedTheLimit)
{
    StreamDecoder decoder(1'000'000);
    const Bytes raw = test::deflated(Bytes(500'000));
    EXPECT_FALSE(decoder.decode(raw, std::vector{filter(Kind::flate)}, 1000));
    EXPECT_EQ(decoder.budget(), 1'000'000 - raw.size() - 1001);
}

TEST(Flate, DataCutShortGiveWhatComesBefore)
{
    const std::string text = sample(5000);
    Bytes raw = test::deflated(ascii(text));
    raw.resize(raw.size() / 2);
    const auto start = decoded(raw, {filter(Kind::flate)});
    ASSERT_TRUE(start);
    EXPECT_GT(start->size(), 100U);
    EXPECT_LT(start->size(), text.size());
    EXPECT_EQ(*start, text.substr(0, start->size()));
}

TEST(Flate, DataDamagedInTheMiddleGiveWhatComesBefore)
{
    std::string text;
    for (unsigned i = 0; i < 5000; ++i)
        text += std::to_string(i * i);
    Bytes raw = test::deflated(ascii(text));
    std::fill(raw.begin() + static_cast<std::ptrdiff_t>(raw.size() / 2), raw.end(),
              std::byte{0xFF});
    const auto start = decoded(raw, {filter(Kind::flate)});
    ASSERT_TRUE(start);
    EXPECT_EQ(start->substr(0, 1000), text.substr(0, 1000));
}

TEST(Flate, WrongCheckSumDoesNotMatter)
{
    const std::string text = sample(1000);
    Bytes raw = test::deflated(ascii(text));
    raw.back() ^= std::byte{1};
    EXPECT_EQ(decoded(raw, {filter(Kind::flate)}), text);
}

TEST(Flate, BytesBehindTheDataDoNotMatter)
{
    Bytes raw = test::deflated(ascii("data"));
    raw.push_back(std::byte{'\n'});
    EXPECT_EQ(decoded(raw, {filter(Kind::flate)}), "data");
}

TEST(Flate, DataThatAreNoFlateAtAllAreAbsent)
{
    EXPECT_EQ(decoded("not compressed", Kind::flate), std::nullopt);
}

TEST(Flate, DataThatGrowAThousandfoldAreDecoded)
{
    const std::string text(900'000, 'x');
    const Bytes raw = test::deflated(ascii(text));
    ASSERT_LT(raw.size(), 2000U);
    EXPECT_EQ(decoded(raw, {filter(Kind::flate)}), text);
}

TEST(LZW, CodesCanGrowOneCodeLate)
{
    const std::string text = sample(20'000);
    Filter late = filter(Kind::lzw);
    late.earlyChange = false;
    EXPECT_EQ(decoded(test::lzw(ascii(text), false), {late}), text);
    EXPECT_NE(decoded(test::lzw(ascii(text), false), {filter(Kind::lzw)}), text);
}

TEST(LZW, PieceMayBeUsedBeforeItIsInTheTable)
{
    // Clear, "a", then the code that "aa" gets only through this very code, and the end.
    EXPECT_EQ(decoded(test::lzw(ascii("aaa")), {filter(Kind::lzw)}), "aaa");
}

/// Codes of the width that a decoder expects of each, which grows with its table.
Bytes lzwCodes(const std::vector<unsigned>& codes)
{
    Bytes raw;
    std::uint32_t bits = 0;
    unsigned available = 0;
    unsigned width = 9;
    unsigned next = 258;
    bool isFirst = true;
    for (const unsigned code : codes) {
        bits = bits << width | code;
        for (available += width; available >= 8; available -= 8)
            raw.push_back(static_cast<std::byte>(bits >> (available - 8)));
        if (code == 256) {
            width = 9;
            next = 258;
        } else if (!isFirst && next < 4096) {
            ++next;
        }
        isFirst = code == 256;
        if (next + 1 >= (1U << width) && width < 12) ++width;
    }
    raw.push_back(static_cast<std::byte>(bits << (8 - available)));
    return raw;
}

TEST(LZW, TableMayBeFullForLong)
{
    std::vector<unsigned> codes{256};
    std::string text;
    for (unsigned i = 0; i < 6000; ++i) {
        codes.push_back(i * 7 % 256);
        text += static_cast<char>(i * 7 % 256);
    }
    // The first entry of the table, and the last, which is behind that of the first two bytes.
    for (const unsigned code : {258U, 4095U}) {
        codes.push_back(code);
        text += text.substr(code - 258, 2);
    }
    codes.push_back(257);
    EXPECT_EQ(decoded(lzwCodes(codes), {filter(Kind::lzw)}), text);
}

TEST(LZW, PieceBeforeAnyOtherEndsTheData)
{
    EXPECT_EQ(decoded(lzwCodes({256, 'a', 256, 258, 'b', 257}), {filter(Kind::lzw)}), "a");
}

TEST(LZW, PieceThatIsLongerThanTheLimitIsTooMuch)
{
    const std::string text(1000, 'a');
    const Bytes raw = test::lzw(ascii(text));
    for (std::size_t limit = raw.size(); limit < text.size(); ++limit)
        EXPECT_EQ(decoded(raw, {filter(Kind::lzw)}, limit), std::nullopt) << limit;
    EXPECT_EQ(decoded(raw, {filter(Kind::lzw)}, text.size()), text);
}

TEST(LZW, CodeThatIsNotInTheTableEndsTheData)
{
    // Clear (256), "a" (97), 300 and the end (257), of nine bits each.
    EXPECT_EQ(decoded(std::string_view("\x80\x18\x65\x90\x10", 5), Kind::lzw), "a");
}

TEST(ASCIIHex, WhiteSpaceIsPassedOver)
{
    EXPECT_EQ(decoded("66\n6F 6f\r\t74>", Kind::asciiHex), "foot");
}

TEST(ASCIIHex, MissingLastDigitIsZero)
{
    EXPECT_EQ(decoded("666>", Kind::asciiHex), "f`");
}

TEST(ASCIIHex, NothingCountsBehindTheEndMark)
{
    EXPECT_EQ(decoded("66>67", Kind::asciiHex), "f");
}

TEST(ASCII85, ShortGroupGivesFewerBytes)
{
    EXPECT_EQ(decoded("9jqo^BlbD-~>", Kind::ascii85), "Man is d");
    EXPECT_EQ(decoded("9jqo^Bl~>", Kind::ascii85), "Man i");
}

TEST(ASCII85, ZIsFourZeros)
{
    EXPECT_EQ(decoded("z~>", Kind::ascii85), std::string(4, '\0'));
}

TEST(ASCII85, ZInsideAGroupEndsTheData)
{
    EXPECT_EQ(decoded("9jqo^Blz9jqo^~>", Kind::ascii85), "Man i");
}

TEST(ASCII85, WhiteSpaceIsPassedOver)
{
    EXPECT_EQ(decoded("9j qo\n^~>", Kind::ascii85), "Man ");
}

TEST(RunLength, CopiesAndRuns)
{
    EXPECT_EQ(decoded(std::string_view("\x02"
                                       "abc"
                                       "\xFE"
                                       "x"
                                       "\x80"
                                       "rest",
                                       11),
                      Kind::runLength),
              "abcxxx");
}

TEST(RunLength, RunThatIsLongerThanTheLimitIsTooMuch)
{
    // Three runs of 128 bytes.
    const Bytes raw = ascii("\x81x\x81y\x81z");
    for (const std::size_t limit : {6U, 127U, 128U, 129U, 255U, 256U, 383U})
        EXPECT_EQ(decoded(raw, {filter(Kind::runLength)}, limit), std::nullopt) << limit;
    EXPECT_EQ(decoded(raw, {filter(Kind::runLength)}, 384),
              std::string(128, 'x') + std::string(128, 'y') + std::string(128, 'z'));
}

TEST(RunLength, RunWithoutItsByteIsNone)
{
    EXPECT_EQ(decoded("\xFEx\xFE", Kind::runLength), "xxx");
}

TEST(RunLength, RunThatIsCutShortGivesWhatIsThere)
{
    EXPECT_EQ(decoded("\x05"
                      "ab",
                      Kind::runLength),
              "ab");
}

/// Decodes data with a predictor, which is only looked at behind Flate and LZW.
std::optional<std::string> predicted(std::string_view rows, const Predictor& predictor)
{
    Filter flate = filter(Kind::flate);
    flate.predictor = predictor;
    return decoded(test::deflated(ascii(rows)), {flate});
}

TEST(Predictors, EveryPNGTagIsUndone)
{
    // Rows of three bytes: none, sub, up, average, Paeth; then a row with a tag that is none.
    const std::string rows = std::string("\0\1\2\3", 4) + std::string("\1\1\1\1", 4) +
                             std::string("\2\1\1\1", 4) + std::string("\3\1\1\1", 4) +
                             std::string("\4\1\1\1", 4) + std::string("\7\1\2\3", 4);
    const auto data =
        predicted(rows, {.predictor = 15, .colors = 1, .bitsPerComponent = 8, .columns = 3});
    EXPECT_EQ(data, std::string("\1\2\3"
                                "\1\2\3"
                                "\2\3\4"
                                "\2\3\4"
                                "\3\4\5"
                                "\1\2\3"));
}

TEST(Predictors, PaethTakesTheNearestNeighbourAndOfEqualOnesTheEarlier)
{
    struct Neighbours {
        int left;
        int above;
        int aboveLeft;
        int taken;
    };
    // Left, above, above left, each on its own; then ties, in which that order decides.
    for (const auto& [left, above, aboveLeft, taken] :
         {Neighbours{30, 10, 10, 30}, Neighbours{10, 30, 10, 30}, Neighbours{10, 30, 20, 20},
          Neighbours{30, 10, 20, 20}, Neighbours{6, 12, 10, 6}, Neighbours{12, 9, 10, 12},
          Neighbours{9, 12, 10, 12}, Neighbours{10, 6, 10, 6}, Neighbours{7, 7, 9, 7}}) {
        // Two rows of two pixels. The first of the second row is predicted from above.
        std::string rows;
        for (const int byte : {0, aboveLeft, above, 4, left - aboveLeft, 0})
            rows += static_cast<char>(byte);
        const auto data =
            predicted(rows, {.predictor = 15, .colors = 1, .bitsPerComponent = 8, .columns = 2});
        ASSERT_TRUE(data);
        EXPECT_EQ(data->size(), 4U);
        EXPECT_EQ(data->back(), static_cast<char>(taken))
            << left << ' ' << above << ' ' << aboveLeft;
    }
}

TEST(Predictors, PNGTakesTheLeftNeighbourAWholePixelAway)
{
    const auto data =
        predicted(std::string("\1\1\2\3\4\5\6", 7),
                  {.predictor = 10, .colors = 3, .bitsPerComponent = 8, .columns = 2});
    EXPECT_EQ(data, std::string("\1\2\3\5\7\x09"));
}

TEST(Predictors, PNGRowThatIsCutShortIsKept)
{
    const auto data =
        predicted(std::string("\0\1\2\3\2\1", 6),
                  {.predictor = 12, .colors = 1, .bitsPerComponent = 8, .columns = 3});
    EXPECT_EQ(data, std::string("\1\2\3\2"));
}

TEST(Predictors, TIFFAddsTheSameComponentOfThePixelBefore)
{
    const auto data = predicted("\1\2\3\1\1\1\5\5\5\1\1\1",
                                {.predictor = 2, .colors = 3, .bitsPerComponent = 8, .columns = 2});
    EXPECT_EQ(data, "\1\2\3\2\3\4\5\5\5\6\6\6");
}

TEST(Predictors, TIFFHandlesEveryComponentSize)
{
    // Of 16 bits: 0x00FF + 0x0001; of four: 1, 1, 1, 1; of two and of one.
    EXPECT_EQ(predicted(std::string("\0\xFF\0\1", 4),
                        {.predictor = 2, .colors = 1, .bitsPerComponent = 16, .columns = 2}),
              std::string("\0\xFF\1\0", 4));
    EXPECT_EQ(
        predicted("\x11\x11", {.predictor = 2, .colors = 1, .bitsPerComponent = 4, .columns = 4}),
        "\x12\x34");
    EXPECT_EQ(predicted("\x55", {.predictor = 2, .colors = 1, .bitsPerComponent = 2, .columns = 4}),
              "\x6C");
    EXPECT_EQ(predicted("\xFF", {.predictor = 2, .colors = 1, .bitsPerComponent = 1, .columns = 8}),
              "\xAA");
}

TEST(Predictors, NumberOneMeansNone)
{
    EXPECT_EQ(
        predicted("data", {.predictor = 1, .colors = -5, .bitsPerComponent = 0, .columns = 0}),
        "data");
}

TEST(Predictors, SenselessParametersMakeTheDataAbsent)
{
    const std::vector<Predictor> senseless{
        {.predictor = 0, .colors = 1, .bitsPerComponent = 8, .columns = 1},
        {.predictor = 3, .colors = 1, .bitsPerComponent = 8, .columns = 1},
        {.predictor = 9, .colors = 1, .bitsPerComponent = 8, .columns = 1},
        {.predictor = 16, .colors = 1, .bitsPerComponent = 8, .columns = 1},
        {.predictor = 12, .colors = 0, .bitsPerComponent = 8, .columns = 1},
        {.predictor = 12, .colors = 33, .bitsPerComponent = 8, .columns = 1},
        {.predictor = 12, .colors = 1, .bitsPerComponent = 3, .columns = 1},
        {.predictor = 12, .colors = 1, .bitsPerComponent = 32, .columns = 1},
        {.predictor = 12, .colors = 1, .bitsPerComponent = 8, .columns = 0},
        {.predictor = 12, .colors = 1, .bitsPerComponent = 8, .columns = -1},
        {.predictor = 2, .colors = 1, .bitsPerComponent = 8, .columns = 16'777'217},
    };
    for (const auto& predictor : senseless)
        EXPECT_EQ(predicted("data", predictor), std::nullopt) << predictor.predictor;
}

TEST(Predictors, WidestRowsAreUndone)
{
    EXPECT_EQ(
        predicted(std::string("\0data", 5),
                  {.predictor = 12, .colors = 32, .bitsPerComponent = 16, .columns = 16'777'216}),
        "data");
}

TEST(Predictors, OnlyFlateAndLZWHaveThem)
{
    Filter hex = filter(Kind::asciiHex);
    hex.predictor.predictor = 12;
    EXPECT_EQ(decoded(ascii("6667>"), {hex}), "fg");
}

} // namespace
} // namespace quillmark::PDF
