#include "coding/JsonWriter.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace quillmark {
namespace {

using namespace std::string_view_literals;

std::string written(const auto& value)
{
    std::string output;
    JsonWriter(output).value(value);
    return output;
}

TEST(JsonWriter, AnEmptyObjectIsTwoBraces)
{
    std::string output;
    JsonWriter writer(output);
    writer.beginObject();
    writer.endObject();
    EXPECT_EQ(output, "{}");
}

TEST(JsonWriter, AnEmptyArrayIsTwoBrackets)
{
    std::string output;
    JsonWriter writer(output);
    writer.beginArray();
    writer.endArray();
    EXPECT_EQ(output, "[]");
}

TEST(JsonWriter, EachLevelIsIndentedByTwoSpaces)
{
    std::string output;
    JsonWriter writer(output);
    writer.beginObject();
    writer.member("text", "a");
    writer.key("numbers");
    writer.beginArray();
    writer.value(1);
    writer.value(-2);
    writer.beginArray();
    writer.value(true);
    writer.endArray();
    writer.endArray();
    writer.key("object");
    writer.beginObject();
    writer.member("flag", false);
    writer.key("nothing");
    writer.beginObject();
    writer.endObject();
    writer.key("none");
    writer.beginArray();
    writer.endArray();
    writer.endObject();
    writer.endObject();
    EXPECT_EQ(output, R"({
  "text": "a",
  "numbers": [
    1,
    -2,
    [
      true
    ]
  ],
  "object": {
    "flag": false,
    "nothing": {},
    "none": []
  }
})");
}

TEST(JsonWriter, ItsOutputMayBeDrainedBetweenCalls)
{
    std::string output;
    std::string all;
    const auto drain = [&] {
        all += output;
        output.clear();
    };
    JsonWriter writer(output);
    writer.beginArray();
    drain();
    writer.beginObject();
    drain();
    writer.key("a");
    drain();
    writer.value("b");
    drain();
    writer.member("c", 3);
    drain();
    writer.endObject();
    drain();
    writer.value(4);
    drain();
    writer.endArray();
    drain();
    EXPECT_EQ(all, "[\n  {\n    \"a\": \"b\",\n    \"c\": 3\n  },\n  4\n]");
}

TEST(JsonWriter, AppendsToWhatTheOutputHolds)
{
    std::string output = "before ";
    JsonWriter(output).value("x");
    EXPECT_EQ(output, "before \"x\"");
}

TEST(JsonWriter, ItemsWrittenApartStandAsIfWrittenInTheirPlace)
{
    const auto write = [](JsonWriter& writer, int item) {
        writer.beginObject();
        writer.member("number", item);
        writer.key("list");
        writer.beginArray();
        writer.value("text");
        writer.endArray();
        writer.endObject();
    };
    std::string inPlace;
    std::string apart;
    for (std::string* output : {&inPlace, &apart}) {
        JsonWriter writer(*output);
        writer.beginObject();
        for (const bool isEmpty : {true, false}) {
            writer.key(isEmpty ? JsonKey("empty") : JsonKey("holds one already"));
            writer.beginArray();
            if (!isEmpty) writer.value(true);
            for (int item = 0; item < 3; ++item) {
                std::string written;
                JsonWriter items = JsonWriter::ofItems(written, writer.depth());
                write(output == &apart ? items : writer, item);
                writer.items(written);
            }
            writer.endArray();
        }
        writer.endObject();
    }
    EXPECT_EQ(apart, inPlace);
    EXPECT_NE(apart.find("\"number\": 2"), std::string::npos);
}

TEST(JsonWriter, TextsOfEverySizeAreWrittenWhole)
{
    std::string output;
    std::string expected = "[";
    JsonWriter writer(output);
    writer.beginArray();
    for (std::size_t size = 0; size < 1100; ++size) {
        const std::string text(size, static_cast<char>('a' + size % 26));
        writer.value(text);
        expected += (size == 0 ? "\n  \"" : ",\n  \"") + text + '"';
    }
    for (const std::size_t size : {4095U, 4096U, 4097U, 100'000U}) {
        const std::string text(size, 'z');
        writer.value(text + '"');
        expected += ",\n  \"" + text + "\\\"\"";
    }
    writer.endArray();
    EXPECT_EQ(output, expected + "\n]");
}

TEST(JsonWriter, IndentationEndsAtSixtyFourLevels)
{
    std::string output;
    JsonWriter writer(output);
    for (int level = 0; level < 66; ++level)
        writer.beginArray();
    writer.value(1);
    for (int level = 0; level < 66; ++level)
        writer.endArray();
    const std::string deepest(128, ' ');
    EXPECT_NE(output.find("[\n" + deepest + "[\n" + deepest + "[\n" + deepest + "1\n" + deepest +
                          "]\n" + deepest + "]\n" + deepest.substr(2) + "]\n"),
              std::string::npos);
}

TEST(JsonWriter, ACharacterIsEscapedWhereverItStandsInALongText)
{
    for (std::size_t size = 1; size <= 100; ++size) {
        for (std::size_t place = 0; place < size; ++place) {
            std::string text(size, 'a');
            text[place] = '"';
            const std::string before(place, 'a');
            const std::string after(size - place - 1, 'a');
            EXPECT_EQ(written(std::string_view(text)), '"' + before + "\\\"" + after + '"');
        }
    }
}

TEST(JsonWriter, WhatIsNotASCIIStaysWhereverItStandsInALongText)
{
    for (std::size_t size = 1; size <= 50; ++size) {
        for (std::size_t place = 0; place < size; ++place) {
            const std::string text =
                std::string(place, 'a') + "\u00E9" + std::string(size - place - 1, 'a');
            EXPECT_EQ(written(std::string_view(text)), '"' + text + '"');
            EXPECT_EQ(written(std::string_view(text + '"')), '"' + text + "\\\"\"");
        }
    }
}

TEST(JsonWriter, AStringLiteralIsATextAndNoFlag)
{
    std::string output;
    JsonWriter(output).value("literal");
    EXPECT_EQ(output, "\"literal\"");
}

TEST(JsonWriter, NumbersAreWrittenWhole)
{
    EXPECT_EQ(written(0), "0");
    EXPECT_EQ(written(-1), "-1");
    EXPECT_EQ(written(std::uint16_t{65535}), "65535");
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

struct TextRow {
    std::string_view name;
    std::string_view text;
    std::string_view json;
};

class Texts : public testing::TestWithParam<TextRow> {};

TEST_P(Texts, AreQuotedAndEscaped)
{
    EXPECT_EQ(written(GetParam().text), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(JsonWriter, Texts,
                         testing::ValuesIn(std::to_array<TextRow>({
                             {"Empty", "", R"("")"},
                             {"Plain", "plain", R"("plain")"},
                             {"Quote", R"(a "b" c)", R"("a \"b\" c")"},
                             {"QuoteAtBothEnds", R"("")", R"("\"\"")"},
                             {"Backslash", R"(C:\fonts)", R"("C:\\fonts")"},
                             {"SlashStays", "a/b", R"("a/b")"},
                             {"LineFeed", "a\nb", R"("a\nb")"},
                             {"CarriageReturn", "a\rb", R"("a\rb")"},
                             {"Tab", "a\tb", R"("a\tb")"},
                             {"Backspace", "a\bb", R"("a\bb")"},
                             {"FormFeed", "a\fb", R"("a\fb")"},
                             {"Nul", "a\0b"sv, R"("a\u0000b")"},
                             {"FirstControl", "\x01", R"("\u0001")"},
                             {"VerticalTab", "\x0B", R"("\u000b")"},
                             {"Escape", "\x1B[2J", R"("\u001b[2J")"},
                             {"LastControl", "\x1F", R"("\u001f")"},
                             {"SpaceStays", " ", R"(" ")"},
                             {"Delete", "a\x7F", R"("a\u007f")"},
                             {"FirstC1Control", "\u0080", R"("\u0080")"},
                             {"C1ThatStartsSequences", "a\u009B2J", R"("a\u009b2J")"},
                             {"LastC1Control", "\u009F", R"("\u009f")"},
                             {"Latin1Stays", "\u00A0\u00A9\u00BF", "\"\u00A0\u00A9\u00BF\""},
                             {"ArabicLetterMark", "\u061C", R"("\u061c")"},
                             {"ArabicStays", "\u061B\u061F\u0639", "\"\u061B\u061F\u0639\""},
                             {"DirectionMarks", "\u200E\u200F", R"("\u200e\u200f")"},
                             {"Embeddings", "\u202A\u202E", R"("\u202a\u202e")"},
                             {"Isolates", "\u2066\u2069", R"("\u2066\u2069")"},
                             {"PunctuationStays", "\u2019\u2026\u2122", "\"\u2019\u2026\u2122\""},
                             {"OtherScriptsStay", "Größe 中文 😀", R"("Größe 中文 😀")"},
                             {"LineSeparators", "a\u2028b\u2029", R"("a\u2028b\u2029")"},
                             {"EscapesInARow", "\n\n\"\"", R"("\n\n\"\"")"},
                             {"EscapeAtTheEnd", "text\n", R"("text\n")"},
                         })),
                         [](const auto& test) { return std::string(test.param.name); });

#ifndef NDEBUG
void writeKeyInArray()
{
    std::string output;
    JsonWriter writer(output);
    writer.beginArray();
    writer.key("a");
}

void writeValueWithoutKey()
{
    std::string output;
    JsonWriter writer(output);
    writer.beginObject();
    writer.value(1);
}

void endArrayAsObject()
{
    std::string output;
    JsonWriter writer(output);
    writer.beginArray();
    writer.endObject();
}

void endAfterKey()
{
    std::string output;
    JsonWriter writer(output);
    writer.beginObject();
    writer.key("a");
    writer.endObject();
}

void endNothing()
{
    std::string output;
    JsonWriter(output).endArray();
}

TEST(JsonWriterDeathTest, WrongNestingIsCaught)
{
    EXPECT_DEATH(writeKeyInArray(), "Assertion");
    EXPECT_DEATH(writeValueWithoutKey(), "Assertion");
    EXPECT_DEATH(endArrayAsObject(), "Assertion");
    EXPECT_DEATH(endAfterKey(), "Assertion");
    EXPECT_DEATH(endNothing(), "Assertion");
}
#endif

TEST(JsonWriter, WritesAllOnOneLineWhenAsked)
{
    std::string json;
    JsonWriter writer(json, JsonWriter::Layout::oneLine);
    writer.beginObject();
    writer.member("text", "one\ntwo\r\u2028");
    writer.key("empty");
    writer.beginArray();
    writer.endArray();
    writer.key("numbers");
    writer.beginArray();
    writer.value(std::int64_t{1});
    writer.value(std::int64_t{2});
    writer.endArray();
    writer.key("object");
    writer.beginObject();
    writer.member("flag", true);
    writer.endObject();
    writer.endObject();
    EXPECT_EQ(json, "{\"text\": \"one\\ntwo\\r\\u2028\", \"empty\": [], \"numbers\": [1, 2], "
                    "\"object\": {\"flag\": true}}");
}

} // namespace
} // namespace quillmark
