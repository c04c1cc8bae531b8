#include "notes/NotesJson.h"

#include "notes/Limits.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <variant>

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using NotesJson::Damage;

constexpr std::chrono::sys_seconds moment(1'773'480'413s);

LicenseNote fullNote()
{
    return {
        .boughtFrom = "A \"foundry\"",
        .license = HeldLicense::desktopCommercial,
        .url = "https://example.org/receipt/1",
        .attachment = "0A1B2C3D-receipt.pdf",
        .attachmentName = "receipt.pdf",
        .text = "two seats\nsecond line",
        .updated = moment,
    };
}

constexpr std::string_view fullNoteText = R"({
  "notes": {
    "Garamond-Bold": {
      "attachment": "0A1B2C3D-receipt.pdf",
      "attachmentName": "receipt.pdf",
      "boughtFrom": "A \"foundry\"",
      "license": "desktopCommercial",
      "text": "two seats\nsecond line",
      "updated": "2026-03-14T09:26:53Z",
      "url": "https://example.org/receipt/1"
    }
  }
}
)";

NotesBook decoded(std::string_view text)
{
    auto result = NotesJson::decode(text);
    if (const auto* damage = std::get_if<Damage>(&result)) ADD_FAILURE() << damage->reason;
    auto* const found = std::get_if<NotesJson::Decoded>(&result);
    return found == nullptr ? NotesBook() : std::move(found->book);
}

/// Empty when the text can be read.
std::string damage(std::string_view text)
{
    const auto result = NotesJson::decode(text);
    const auto* found = std::get_if<Damage>(&result);
    return found == nullptr ? "" : found->reason;
}

/// Whether the book that is read of a text has all that it says.
bool isWhole(std::string_view text)
{
    const auto result = NotesJson::decode(text);
    const auto* const found = std::get_if<NotesJson::Decoded>(&result);
    EXPECT_NE(found, nullptr) << text;
    return found != nullptr && found->isWhole;
}

std::string replaced(std::string_view text, std::string_view what, std::string_view with)
{
    std::string result(text);
    const auto at = result.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return result.replace(at, what.size(), with);
}

// Writing

TEST(NotesJson, OfABookWithoutNotesMapsNotesToAnEmptyObject)
{
    EXPECT_EQ(NotesJson::encode({}), "{\n  \"notes\": {}\n}\n");
}

TEST(NotesJson, OfANoteIsIndentedWithItsKeysSorted)
{
    NotesBook book;
    book.set(fullNote(), "Garamond-Bold");
    EXPECT_EQ(NotesJson::encode(book), fullNoteText);
}

TEST(NotesJson, LeavesAbsentValuesOut)
{
    NotesBook book;
    book.set(LicenseNote{.text = "x"}, "Foo");
    EXPECT_EQ(NotesJson::encode(book), R"({
  "notes": {
    "Foo": {
      "boughtFrom": "",
      "license": "notSet",
      "text": "x",
      "updated": "1970-01-01T00:00:00Z",
      "url": ""
    }
  }
}
)");
}

TEST(NotesJson, SortsNotesByTheirKeys)
{
    NotesBook book;
    for (const char* key : {"b", "a", "B", "\xC3\xA9"})
        book.set(LicenseNote{.text = "x"}, key);
    const std::string text = NotesJson::encode(book);
    EXPECT_LT(text.find("\"B\""), text.find("\"a\""));
    EXPECT_LT(text.find("\"a\""), text.find("\"b\""));
    EXPECT_LT(text.find("\"b\""), text.find("\"\xC3\xA9\""));
}

TEST(NotesJson, OfOneBookIsAlwaysTheSame)
{
    NotesBook one;
    NotesBook other;
    for (const char* key : {"a", "b", "c"})
        one.set(fullNote(), key);
    for (const char* key : {"c", "b", "a"})
        other.set(fullNote(), key);
    EXPECT_EQ(NotesJson::encode(one), NotesJson::encode(other));
}

TEST(NotesJson, IsUTF8AndNotEscaped)
{
    NotesBook book;
    book.set(LicenseNote{.text = "\xE2\x80\xA6 \xC3\xBC/"}, "Foo");
    EXPECT_NE(NotesJson::encode(book).find("\"text\": \"\xE2\x80\xA6 \xC3\xBC/\""),
              std::string::npos);
}

TEST(NotesJson, WritesIllFormedTextAsReplacementCharacters)
{
    NotesBook book;
    book.set(LicenseNote{.text = "a\xFF"
                                 "b"},
             "Foo");
    EXPECT_NE(NotesJson::encode(book).find("\"text\": \"a\xEF\xBF\xBD"
                                           "b\""),
              std::string::npos);
}

// Reading

TEST(NotesJson, GivesBackEveryField)
{
    NotesBook expected;
    expected.set(fullNote(), "Garamond-Bold");
    EXPECT_EQ(decoded(fullNoteText), expected);
}

TEST(NotesJson, SurvivesEveryKindOfTextThereAndBack)
{
    NotesBook book;
    using namespace std::string_view_literals;
    for (const std::string_view text :
         {"\0"sv, "a\0b"sv, "\r\n\t\b\f"sv, "\x1B[1m\x7F"sv, "\"\\/"sv,
          "\xE2\x80\xA8\xE2\x80\xAE"sv, "\xF0\x9F\x96\x8B"sv, "\xEF\xBB\xBF"sv,
          "{\"notes\": {}}"sv})
        book.set(LicenseNote{.text = std::string(text)}, text);
    EXPECT_EQ(book.notes.size(), 9U);
    EXPECT_EQ(decoded(NotesJson::encode(book)), book);
}

TEST(NotesJson, SurvivesALongTextThereAndBack)
{
    NotesBook book;
    book.set(LicenseNote{.text = std::string(1'000'000, '"')}, std::string(10'000, 'k'));
    EXPECT_EQ(decoded(NotesJson::encode(book)), book);
}

TEST(NotesJson, ReadsEveryLicense)
{
    for (const HeldLicense license : allCases<HeldLicense>) {
        const auto text = replaced(fullNoteText, "desktopCommercial", rawValue(license));
        EXPECT_EQ(decoded(text).note("Garamond-Bold")->license, license);
    }
}

TEST(NotesJson, ReadsOtherFormsOfADate)
{
    for (const char* date :
         {"2026-03-14T09:26:53+00:00", "2026-03-14T10:26:53+0100", "2026-03-14T09:26:53.123456Z"}) {
        const auto text = replaced(fullNoteText, "2026-03-14T09:26:53Z", date);
        EXPECT_EQ(decoded(text).note("Garamond-Bold")->updated, moment) << date;
    }
}

TEST(NotesJson, TakesNullForAbsent)
{
    auto text = replaced(fullNoteText, "\"0A1B2C3D-receipt.pdf\"", "null");
    text = replaced(text, "\"receipt.pdf\"", "null");
    const NotesBook book = decoded(text);
    EXPECT_EQ(book.note("Garamond-Bold")->attachment, std::nullopt);
    EXPECT_EQ(book.note("Garamond-Bold")->attachmentName, std::nullopt);
    EXPECT_TRUE(book.note("Garamond-Bold")->unknownKeys.empty());
}

TEST(NotesJson, ReadsWithoutOptionalKeys)
{
    const auto text = replaced(fullNoteText, R"(      "attachment": "0A1B2C3D-receipt.pdf",
      "attachmentName": "receipt.pdf",
)",
                               "");
    EXPECT_EQ(decoded(text).note("Garamond-Bold")->attachment, std::nullopt);
}

TEST(NotesJson, MayBeginWithAByteOrderMark)
{
    EXPECT_EQ(decoded("\xEF\xBB\xBF" + std::string(fullNoteText)), decoded(fullNoteText));
}

TEST(NotesJson, RepairsIllFormedUTF8InStrings)
{
    const auto text = replaced(fullNoteText, "two seats", "two \xC3 seats \xED\xA0\x80");
    EXPECT_EQ(decoded(text).note("Garamond-Bold")->text,
              "two \xEF\xBF\xBD seats \xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\nsecond line");
}

TEST(NotesJson, TakesTheLastOfTwoEqualKeys)
{
    const auto text = replaced(fullNoteText, "\"url\":", "\"text\": \"later\", \"url\":");
    EXPECT_EQ(decoded(text).note("Garamond-Bold")->text, "later");
}

TEST(NotesJson, KeepsANoteThatSaysNothing)
{
    constexpr std::string_view text = R"({"notes": {"Foo": {"boughtFrom": "", "license": "notSet",
        "url": "", "text": "", "updated": "2026-03-14T09:26:53Z"}}})";
    ASSERT_NE(decoded(text).note("Foo"), nullptr);
    EXPECT_TRUE(decoded(text).note("Foo")->isEmpty());
}

// Keys of a newer version

constexpr std::string_view newerText = R"({
  "format": 2,
  "notes": {
    "Foo": {
      "boughtFrom": "",
      "license": "web",
      "seats": 12345678901234567890,
      "tags": [
        "print",
        {
          "weight": 0.1
        },
        null,
        true
      ],
      "text": "x",
      "updated": "2026-03-14T09:26:53Z",
      "url": ""
    }
  },
  "unread": {}
}
)";

TEST(NotesJson, CarriesUnknownKeysAlong)
{
    EXPECT_EQ(NotesJson::encode(decoded(newerText)), newerText);
}

TEST(NotesJson, CarriesUnknownKeysAlongWhenTheNoteIsChanged)
{
    NotesBook book = decoded(newerText);
    book.set(LicenseNote{.license = HeldLicense::web, .text = "y", .updated = moment}, "Foo");
    EXPECT_EQ(NotesJson::encode(book), replaced(newerText, "\"x\"", "\"y\""));
}

TEST(NotesJson, CarriesNumbersBelowZeroAlong)
{
    const std::string text = "{\n  \"least\": -9223372036854775808,\n  \"notes\": {}\n}\n";
    EXPECT_EQ(NotesJson::encode(decoded(text)), text);
}

TEST(NotesJson, ForgetsUnknownKeysOfANoteThatIsRemoved)
{
    NotesBook book = decoded(newerText);
    book.set(LicenseNote{}, "Foo");
    EXPECT_EQ(NotesJson::encode(book),
              "{\n  \"format\": 2,\n  \"notes\": {},\n  \"unread\": {}\n}\n");
}

TEST(NotesJson, LetsNoUnknownKeyReplaceAKnownOne)
{
    NotesBook book;
    book.unknownKeys = {{"notes", "[]"}, {"broken", "{"}};
    book.set(LicenseNote{.text = "x", .unknownKeys = {{"text", "\"y\""}}}, "Foo");
    const NotesBook read = decoded(NotesJson::encode(book));
    ASSERT_NE(read.note("Foo"), nullptr);
    EXPECT_EQ(read.note("Foo")->text, "x");
    EXPECT_TRUE(read.unknownKeys.empty());
}

// Damage

struct DamageRow {
    std::string_view name;
    std::string_view what;
    std::string_view with;
    std::string_view reason;
};

class DamagedNotes : public testing::TestWithParam<DamageRow> {};

TEST_P(DamagedNotes, AreDamageToTheWhole)
{
    const std::string second = replaced(fullNoteText, "  \"notes\": {",
                                        "  \"notes\": {\n    \"Foo\": {\"boughtFrom\": \"\", "
                                        "\"license\": \"web\", \"url\": \"\", \"text\": \"\", "
                                        "\"updated\": \"2026-03-14T09:26:53Z\"},");
    EXPECT_EQ(damage(second), "");
    EXPECT_EQ(damage(replaced(second, GetParam().what, GetParam().with)), GetParam().reason);
}

constexpr std::string_view noBoughtFrom =
    R"(the note on "Garamond-Bold" has no valid "boughtFrom")";
constexpr std::string_view noLicense = R"(the note on "Garamond-Bold" has no valid "license")";
constexpr std::string_view noUrl = R"(the note on "Garamond-Bold" has no valid "url")";
constexpr std::string_view noText = R"(the note on "Garamond-Bold" has no valid "text")";
constexpr std::string_view noUpdated = R"(the note on "Garamond-Bold" has no valid "updated")";
constexpr std::string_view noAttachment =
    R"(the note on "Garamond-Bold" has no valid "attachment")";
constexpr std::string_view noAttachmentName =
    R"(the note on "Garamond-Bold" has no valid "attachmentName")";

constexpr auto damageRows = std::to_array<DamageRow>({
    {"BoughtFromMissing", R"("boughtFrom": "A)", R"("other": "A)", noBoughtFrom},
    {"BoughtFromIsANumber", R"("A \"foundry\"")", "1", noBoughtFrom},
    {"BoughtFromIsNull", R"("A \"foundry\"")", "null", noBoughtFrom},
    {"LicenseMissing", R"("license": "desktopC)", R"("other": "desktopC)", noLicense},
    {"LicenseUnknown", "desktopCommercial", "desktopEverything", noLicense},
    {"LicenseInCapitals", "desktopCommercial", "DESKTOPCOMMERCIAL", noLicense},
    {"LicenseIsItsLabel", "desktopCommercial", "Desktop", noLicense},
    {"LicenseIsANumber", R"("desktopCommercial")", "3", noLicense},
    {"UrlMissing", R"("url": "https)", R"("URL": "https)", noUrl},
    {"UrlIsAnObject", R"("https://example.org/receipt/1")", "{}", noUrl},
    {"TextMissing", R"("text": "two)", R"("texts": "two)", noText},
    {"TextIsAList", R"("two seats\nsecond line")", "[]", noText},
    {"UpdatedMissing", "\"updated\": \"2026-03-14T09:26:53Z\",\n      \"url\"", "\"url\"",
     noUpdated},
    {"UpdatedWithoutZone", "53Z\",\n      \"url\"", "53\",\n      \"url\"", noUpdated},
    {"UpdatedIsANumber", "\"2026-03-14T09:26:53Z\",\n      \"url\"", "1773480413,\n      \"url\"",
     noUpdated},
    {"AttachmentIsANumber", R"("0A1B2C3D-receipt.pdf")", "1", noAttachment},
    {"AttachmentNameIsAFlag", R"("receipt.pdf")", "true", noAttachmentName},
    {"NoteIsAString", "\"Foo\": {", "\"Bar\": \"x\", \"Foo\": {",
     "\"notes\" holds something that is not a note"},
    {"NoteIsNull", "\"Foo\": {", "\"Bar\": null, \"Foo\": {",
     "\"notes\" holds something that is not a note"},
    {"NotesMissing", "\"notes\"", "\"note\"", "it has no \"notes\""},
    {"CommaMissing", "\"boughtFrom\": \"A \\\"foundry\\\"\",", "\"boughtFrom\": \"A\"",
     "it is not JSON"},
    {"LoneSurrogate", "two seats", "\\ud800", "it is not JSON"},
    {"NumberBeyondAll", "\"A \\\"foundry\\\"\"", "1e999", "it is not JSON"},
    {"RawControlCharacter", "two seats", "two\nseats", "it is not JSON"},
});

INSTANTIATE_TEST_SUITE_P(NotesJson, DamagedNotes, testing::ValuesIn(damageRows),
                         [](const auto& test) { return std::string(test.param.name); });

class NoNotes : public testing::TestWithParam<std::string_view> {};

TEST_P(NoNotes, AreRefused)
{
    EXPECT_NE(damage(GetParam()), "");
}

INSTANTIATE_TEST_SUITE_P(NotesJson, NoNotes,
                         testing::Values("", " ", "null", "[]", "{}", "\"notes\"",
                                         "{\"notes\": []}", "{\"notes\": null}", "{\"notes\": {}",
                                         "{\"notes\": {}} x", "not json", "\xFF\xFE{\0\"\0"));

TEST(NotesJson, DoesNotEndAtANul)
{
    for (const char* behind : {"", " ", "{\"notes\": {}}", "not json"})
        EXPECT_EQ(damage(std::string(fullNoteText) + '\0' + behind), "it is not JSON") << behind;
    EXPECT_EQ(damage(std::string(1, '\0') + std::string(fullNoteText)), "it is not JSON");
}

TEST(NotesJson, NamesNoKeyThatWouldDrownTheSentence)
{
    const auto text = replaced(fullNoteText, "Garamond-Bold", std::string(61, 'x'));
    EXPECT_EQ(damage(replaced(text, "desktopCommercial", "none")),
              "a note has no valid \"license\"");
}

// Limits

std::string nested(std::size_t depth)
{
    const std::size_t inner = depth - 1; // the outermost object is one level already
    return R"({"notes": {}, "deep": )" + std::string(inner, '[') + std::string(inner, ']') + "}";
}

TEST(NotesJson, CanBeNestedToALimit)
{
    const std::string text = nested(Limits::notesFileDepth);
    EXPECT_EQ(damage(text), "");
    EXPECT_EQ(decoded(NotesJson::encode(decoded(text))), decoded(text));
    EXPECT_EQ(damage(nested(Limits::notesFileDepth + 1)), "its values are nested too deeply");
}

TEST(NotesJson, NestedWithoutEndIsRefused)
{
    EXPECT_EQ(damage(std::string(10'000'000, '[')), "its values are nested too deeply");
    std::string objects;
    for (int i = 0; i < 1'000'000; ++i)
        objects += "{\"notes\":";
    EXPECT_EQ(damage(objects), "its values are nested too deeply");
}

/// A book with a list whose brackets and commas, with all else that is in the text, are so many.
std::string zeros(std::size_t marks)
{
    constexpr std::string_view start = R"({"notes": {}, "zeros": [0)";
    constexpr std::size_t otherMarks = 9;
    std::string text(start);
    for (std::size_t i = otherMarks; i < marks; ++i)
        text += ",0";
    return text + "]}";
}

TEST(NotesJson, ThatClosesMoreThanItOpensIsRefused)
{
    EXPECT_EQ(damage(R"({"notes": {}}})"), "it is not JSON");
    // What is closed too often makes no room for deeper nesting.
    EXPECT_EQ(damage(std::string(1000, ']') + nested(Limits::notesFileDepth + 1)),
              "its values are nested too deeply");
    EXPECT_EQ(damage("{}" + nested(Limits::notesFileDepth)), "it is not JSON");
}

TEST(NotesJson, OfTooManyValuesIsRefused)
{
    EXPECT_EQ(damage(zeros(Limits::notesFileMarks + 1)), "it holds too many values");
    // Text that is no JSON is not parsed up to its fault when it holds too many already.
    EXPECT_EQ(damage(zeros(Limits::notesFileMarks) + ","), "it holds too many values");
    EXPECT_EQ(damage(std::string(Limits::notesFileMarks, ',')), "it is not JSON");
}

TEST(NotesJson, CountsNothingInsideTexts)
{
    const std::string marks = "\\\"[{" + std::string(Limits::notesFileMarks, ',');
    EXPECT_EQ(damage(replaced(fullNoteText, "two seats", marks)), "");
    EXPECT_EQ(damage(replaced(fullNoteText, "two seats", std::string(100, '[') + "\\\\")), "");
    for (const std::string start : {"", "x", "xy"})
        for (const std::string escaped : {R"(\")", R"(\\\")", R"(\n\")"})
            EXPECT_EQ(
                damage(R"({"notes": {}, "x": ")" + start + escaped + std::string(100, '[') + "\"}"),
                "")
                << start << escaped;
}

TEST(NotesJson, CountsBehindTextsThatEndInABackslash)
{
    for (const std::string text : {R"(\\)", R"(x\\)", R"(\"\\)"})
        EXPECT_EQ(damage(R"({"notes": {}, "x": [")" + text + "\", " + std::string(100, '[')),
                  "its values are nested too deeply")
            << text;
}

// Whether all was read

TEST(NotesJson, OfOurOwnIsReadWhole)
{
    EXPECT_TRUE(isWhole(fullNoteText));
    EXPECT_TRUE(isWhole(R"({"notes": {}})"));
}

TEST(NotesJson, WithUnknownKeysIsReadWhole)
{
    EXPECT_TRUE(isWhole(R"({"notes": {}, "a": [1, {"b": null, "c": -0.5e3, "d": "é"}, true]})"));
    EXPECT_TRUE(isWhole(R"({"notes": {}, "a": 18446744073709551615, "b": 0.000012345678901234})"));
    EXPECT_TRUE(isWhole(R"({"notes": {}, "a": -9223372036854775808, "b": [-1]})"));
    EXPECT_TRUE(isWhole(R"({"notes": {}, "as we write it": 0.12345678901234568})"));
    EXPECT_TRUE(isWhole(R"({"notes": {}, "a": 0e9, "the smallest of all": 5e-324})"));
}

TEST(NotesJson, ThatSaysMoreThanIsReadIsNotWhole)
{
    const std::string note(fullNoteText.substr(
        fullNoteText.find("{\n      \"attachment\""),
        fullNoteText.rfind("}\n  }\n}") - fullNoteText.find("{\n      \"attachment\"") + 1));
    for (const std::string& text : {
             std::string("{\"notes\": {}, \"\xC3\": 1}"),
             std::string(R"({"notes": {}, "notes": {}})"),
             std::string(R"({"notes": {}, "a": 1, "a": 2})"),
             std::string(R"({"notes": {}, "a": [{"b": 1, "b": 2}]})"),
             std::string(R"({"notes": {}, "a": 0.123456789012345678})"),
             std::string(R"({"notes": {}, "a": 18446744073709551616})"),
             std::string(R"({"notes": {}, "becomes zero": 1e-400})"),
             std::string(R"({"notes": {}, "becomes 5e-324": 4.4e-324})"),
             "{\"notes\": {\"A\": " + note + ", \"A\": " + note + "}}",
             "{\"notes\": {\"A\": 1, \"A\": " + note + "}}",
             replaced(fullNoteText, "\"text\":", "\"text\": \"\", \"text\":"),
             replaced(fullNoteText, "\"text\":", "\"x\": [], \"x\": {}, \"text\":"),
             replaced(fullNoteText, "\"text\":", "\"x\": 1, \"x\": 2, \"y\": 3, \"text\":"),
         })
        EXPECT_FALSE(isWhole(text)) << text;
}

TEST(NotesJson, WithANoteTwiceIsAsGoodAsTheLastOne)
{
    const std::string good = R"({"boughtFrom": "", "license": "web", "url": "", "text": "good",
                                 "updated": "2026-01-01T00:00:00Z"})";
    EXPECT_EQ(decoded(R"({"notes": {"A": {}, "A": )" + good + "}}").note("A")->text, "good");
    EXPECT_EQ(damage(R"({"notes": {"A": )" + good + R"(, "A": {}}})"),
              "the note on \"A\" has no valid \"boughtFrom\"");
    EXPECT_EQ(damage(R"({"notes": 1, "notes": {}})"), "");
    EXPECT_EQ(damage(R"({"notes": {}, "notes": 1})"), "it has no \"notes\"");
}

TEST(NotesJson, WithTwoDamagedNotesSpeaksOfTheFirst)
{
    EXPECT_EQ(damage(R"({"notes": {"B": {}, "A": {"boughtFrom": ""}}})"),
              "the note on \"A\" has no valid \"license\"");
}

} // namespace
} // namespace quillmark
