#include "pdf/QPDFInput.h"

#include "pdf/Limits.h"
#include "support/FontBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark::PDF {
namespace {

/// Hands out a few bytes at a time.
class PieceSource final : public ByteSource {
public:
    PieceSource(std::string_view text, std::size_t piece)
        : m_bytes(test::ascii(text)), m_piece(piece)
    {
    }
    [[nodiscard]] std::uint64_t size() const override { return m_bytes.size(); }
    [[nodiscard]] std::span<const std::byte> at(std::uint64_t offset) override
    {
        if (offset >= m_bytes.size()) return {};
        const auto rest = std::span(m_bytes).subspan(static_cast<std::size_t>(offset));
        return rest.first(std::min(rest.size(), m_piece));
    }
    [[nodiscard]] std::size_t read(std::uint64_t /*offset*/,
                                   std::span<std::byte> /*target*/) override
    {
        return 0;
    }

private:
    test::Bytes m_bytes;
    std::size_t m_piece;
};

QPDFInput input(std::string_view text, std::size_t piece = 3)
{
    return QPDFInput(std::make_unique<PieceSource>(text, piece));
}

std::string read(QPDFInput& input, std::size_t length)
{
    std::string text(length, '?');
    text.resize(input.read(text.data(), length));
    return text;
}

TEST(QPDFInput, ReadsThroughPiecesUpToTheEnd)
{
    QPDFInput file = input("0123456789");
    EXPECT_EQ(read(file, 4), "0123");
    EXPECT_EQ(file.getLastOffset(), 0);
    EXPECT_EQ(file.tell(), 4);
    EXPECT_EQ(read(file, 100), "456789");
    EXPECT_EQ(file.getLastOffset(), 4);
    EXPECT_EQ(read(file, 1), "");
    EXPECT_EQ(file.getLastOffset(), 10);
}

TEST(QPDFInput, FindsTheFirstLineEndInLongLines)
{
    for (const std::size_t place : {0U, 1'022U, 1'023U, 1'024U, 1'025U, 5'000U})
        for (const std::string end : {"\n", "\r", "\r\n", "\n\r\n"}) {
            const std::string text = std::string(place, 'x') + end + "y\r\n";
            QPDFInput file = input(text, text.size());
            EXPECT_EQ(file.findAndSkipNextEOL(), static_cast<qpdf_offset_t>(place));
            EXPECT_EQ(file.tell(), static_cast<qpdf_offset_t>(place + end.size())) << place;
        }
}

TEST(QPDFInput, ReadsOnlySoMuchOfOneObject)
{
    constexpr std::size_t token = 128;
    constexpr std::size_t size = Limits::foreignObjectText + 100 * token;
    std::string text(size, 'x');
    text[Limits::foreignObjectText / 2] = '\n';
    // Counts what is read as libqpdf reads tokens, the last of which it sees twice.
    const auto tokensFrom = [](QPDFInput& file) {
        std::size_t count = 0;
        for (std::string piece = read(file, token); !piece.empty(); piece = read(file, token)) {
            count += piece.size();
            if (count % 1'000 == 0) file.seek(-1, SEEK_CUR);
        }
        return count;
    };
    QPDFInput file = input(text, size);
    EXPECT_LE(tokensFrom(file), Limits::foreignObjectText + Limits::foreignObjectText / 1'000);
    EXPECT_LT(file.tell(), static_cast<qpdf_offset_t>(size));
    // It can go on with another object, elsewhere, and from line to line.
    file.beginObject();
    EXPECT_EQ(read(file, token).size(), token);
    file.seek(size - 1, SEEK_SET);
    EXPECT_EQ(read(file, 1), "x");
    file.seek(0, SEEK_SET);
    EXPECT_EQ(file.findAndSkipNextEOL(), static_cast<qpdf_offset_t>(Limits::foreignObjectText / 2));
    EXPECT_EQ(read(file, token).size(), token);
    EXPECT_GT(tokensFrom(file), Limits::foreignObjectText / 2);
    EXPECT_EQ(file.tell(), static_cast<qpdf_offset_t>(size));
}

TEST(QPDFInput, SeeksFromTheBeginningFromWhereItIsAndFromTheEnd)
{
    QPDFInput file = input("0123456789");
    file.seek(7, SEEK_SET);
    EXPECT_EQ(read(file, 1), "7");
    file.seek(-3, SEEK_CUR);
    EXPECT_EQ(read(file, 1), "5");
    file.seek(2, SEEK_CUR);
    EXPECT_EQ(read(file, 1), "8");
    file.seek(-10, SEEK_END);
    EXPECT_EQ(read(file, 1), "0");
    file.rewind();
    EXPECT_EQ(file.tell(), 0);
}

TEST(QPDFInput, HasNothingBehindTheEnd)
{
    QPDFInput file = input("0123456789");
    file.seek(5, SEEK_END);
    EXPECT_EQ(file.tell(), 15);
    EXPECT_EQ(read(file, 1), "");
    EXPECT_EQ(file.getLastOffset(), 10);
    EXPECT_EQ(file.findAndSkipNextEOL(), 15);
}

TEST(QPDFInput, StaysWhereItIsWhenItIsToGoOutsideTheFile)
{
    QPDFInput file = input("0123456789");
    file.seek(4, SEEK_SET);
    constexpr auto furthest = std::numeric_limits<qpdf_offset_t>::max();
    for (const auto& [offset, whence] : {std::pair<qpdf_offset_t, int>(-1, SEEK_SET),
                                         {-5, SEEK_CUR},
                                         {-11, SEEK_END},
                                         {furthest, SEEK_CUR},
                                         {furthest, SEEK_END}}) {
        EXPECT_THROW(file.seek(offset, whence), std::runtime_error) << offset << ' ' << whence;
        EXPECT_EQ(file.tell(), 4);
    }
    EXPECT_EQ(read(file, 1), "4");
}

TEST(QPDFInput, GivesACharacterBackButNoneBeforeTheFirst)
{
    QPDFInput file = input("ab");
    EXPECT_EQ(read(file, 1), "a");
    file.unreadCh('a');
    EXPECT_EQ(file.tell(), 0);
    file.unreadCh('x');
    EXPECT_EQ(file.tell(), 0);
    EXPECT_EQ(read(file, 2), "ab");
}

/// The lines of a text, found from the beginning on, with where each was said to end.
std::vector<std::pair<std::string, std::string>> linesOf(std::string_view text, std::size_t piece)
{
    QPDFInput file = input(text, piece);
    std::vector<std::pair<std::string, std::string>> lines;
    while (file.tell() < static_cast<qpdf_offset_t>(text.size())) {
        const auto start = static_cast<std::size_t>(file.tell());
        const auto end = static_cast<std::size_t>(file.findAndSkipNextEOL());
        const auto next = static_cast<std::size_t>(file.tell());
        if (end < start || next < end || next > text.size()) {
            ADD_FAILURE() << start << ' ' << end << ' ' << next;
            break;
        }
        lines.emplace_back(text.substr(start, end - start), text.substr(end, next - end));
    }
    return lines;
}

TEST(QPDFInput, FindsLinesWithAllTheirEnds)
{
    const std::vector<std::pair<std::string, std::string>> lines{
        {"first", "\n"}, {"", ""}, {"second", "\r\n\n\r"}, {"third", "\r"}, {"last", ""}};
    std::string text;
    std::vector<std::pair<std::string, std::string>> expected;
    for (const auto& [line, end] : lines) {
        text += line + end;
        if (!line.empty()) expected.emplace_back(line, end);
    }
    for (std::size_t piece = 1; piece <= text.size(); ++piece)
        EXPECT_EQ(linesOf(text, piece), expected) << piece;
}

TEST(QPDFInput, FindsTheLastLineWithItsEnds)
{
    using Lines = std::vector<std::pair<std::string, std::string>>;
    for (const std::size_t piece : {1U, 2U, 3U, 4U, 9U}) {
        EXPECT_EQ(linesOf("abc\r\n", piece), (Lines{{"abc", "\r\n"}})) << piece;
        EXPECT_EQ(linesOf("\n\n\n", piece), (Lines{{"", "\n\n\n"}})) << piece;
    }
}

TEST(QPDFInput, ReadsLongPiecesOnlyWhileStreamsAreAllowed)
{
    const std::string text(5000, 'x');
    QPDFInput file = input(text, 700);
    EXPECT_EQ(read(file, 2000).size(), 2000U);
    file.allowStreams(false);
    EXPECT_EQ(read(file, 2000), "");
    EXPECT_EQ(file.tell(), 2000);
    // Blocks in which libqpdf searches are not stream data.
    EXPECT_EQ(read(file, 1024).size(), 1024U);
    file.allowStreams(true);
    EXPECT_EQ(read(file, 1500).size(), 1500U);
}

TEST(QPDFInput, ReadsNoMoreThanABudgetInAll)
{
    const std::string text(1000, 'x');
    QPDFInput file = input(text, text.size());
    const std::uint64_t budget = Limits::readBytes + Limits::readings * text.size();
    file.charge(budget - 1500);
    EXPECT_EQ(read(file, 1000), text);
    file.rewind();
    // What would be over it is not read at all, what is not still is.
    EXPECT_EQ(read(file, 501), "");
    EXPECT_EQ(read(file, 500).size(), 500U);
    EXPECT_EQ(read(file, 1), "");
}

TEST(QPDFInput, MayBeChargedMoreThanThereIsLeft)
{
    QPDFInput file = input("text");
    file.charge(std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(read(file, 1), "");
    file.charge(1);
    EXPECT_EQ(read(file, 1), "");
}

} // namespace
} // namespace quillmark::PDF
