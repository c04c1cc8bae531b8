#include "pdf/ObjectParser.h"

#include "pdf/Limits.h"
#include "support/FontBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <set>
#include <string>

namespace quillmark::PDF {
namespace {

using test::ascii;

constexpr Reference five{5, 0};

/// A source that hands out its bytes a few at a time, so that tokens fall apart.
class Crumbs final : public ByteSource {
public:
    Crumbs(std::string_view text, std::size_t piece) : m_bytes(ascii(text)), m_piece(piece) {}
    [[nodiscard]] std::uint64_t size() const override { return m_bytes.size(); }
    [[nodiscard]] std::span<const std::byte> at(std::uint64_t offset) override
    {
        if (offset >= m_bytes.size()) return {};
        const auto rest = std::span(m_bytes).subspan(offset);
        // A copy, so that bytes of an earlier piece are gone.
        m_window.assign(rest.begin(),
                        rest.begin() + static_cast<std::ptrdiff_t>(std::min(m_piece, rest.size())));
        return m_window;
    }
    [[nodiscard]] std::size_t read(std::uint64_t /*at*/, std::span<std::byte> /*into*/) override
    {
        return 0;
    }

private:
    test::Bytes m_bytes;
    std::size_t m_piece;
    test::Bytes m_window;
};

/// One line that says what was parsed: names with a slash, references as "5.0", "?" for values of
/// which only the presence is known.
// NOLINTNEXTLINE(misc-no-recursion): objects nest 500 deep at most
std::string dump(const ParsedObject& object, const Value& value)
{
    std::string text;
    switch (value.kind()) {
    case Value::Kind::null:
        return "null";
    case Value::Kind::other:
        return "?";
    case Value::Kind::integer:
        return std::to_string(*value.integer());
    case Value::Kind::name:
        return "/" + std::string(*object.name(value));
    case Value::Kind::reference:
        return std::to_string(value.reference()->number) + "." +
               std::to_string(value.reference()->generation);
    case Value::Kind::array:
        for (std::size_t i = 0; i < value.arraySize(); ++i)
            text += (i > 0 ? " " : "") + dump(object, object.element(value, i));
        return "[" + text + "]";
    case Value::Kind::dictionary:
        for (std::size_t i = 0; i < value.entryCount(); ++i)
            text += (i > 0 ? " /" : "/") + std::string(object.key(value, i)) + " " +
                    dump(object, object.entry(value, i));
        return "<" + text + ">";
    }
    return text;
}

std::string dump(const ParsedObjectRef& object)
{
    return object ? dump(*object, object->root()) : "none";
}

struct Text {
    const char* name;
    std::string text;
    std::string expected;

    friend std::ostream& operator<<(std::ostream& out, const Text& row) { return out << row.name; }
};

class ObjectTexts : public testing::TestWithParam<Text> {};

TEST_P(ObjectTexts, ParseAsExpectedHoweverTheBytesArrive)
{
    for (const std::size_t piece : {1U, 2U, 3U, 7U, 1000U}) {
        Crumbs source(GetParam().text, piece);
        ObjectParser parser;
        EXPECT_EQ(dump(parser.direct({source, 0, 10'000})), GetParam().expected) << piece;
    }
}

INSTANTIATE_TEST_SUITE_P(
    ObjectParser, ObjectTexts,
    testing::Values(Text{"Integer", "12", "12"}, Text{"NegativeInteger", "-12", "-12"},
                    Text{"IntegerWithPlus", "+12", "12"}, Text{"Real", "1.5", "?"},
                    Text{"NumberOverTheRange", "99999999999999999999", "?"},
                    Text{"Truth", "true", "?"}, Text{"Null", "null", "null"},
                    Text{"Name", "/Font", "/Font"}, Text{"EmptyName", "/ 1", "/"},
                    Text{"NameWithEscape", "/A#20B#2f", "/A B/"},
                    Text{"NameWithEscapeInSmallLetters", "/#c3#a9", "/\xC3\xA9"},
                    Text{"NameWithHashThatStartsNoEscape", "/A#G1#", "/A#G1#"},
                    Text{"NameWithLettersBehindF", "/A#zz#1g#1G#1:#1@", "/A#zz#1g#1G#1:#1@"},
                    Text{"NameWithEscapedNUL", "/A#00B", "/A#00B"},
                    Text{"NameEndsAtADelimiter", "[/A/B(c)/D]", "[/A /B ? /D]"},
                    Text{"String", "(a(b)\\)c)", "?"}, Text{"StringThatNeverEnds", "(abc", "?"},
                    Text{"StringThatEndsInABackslash", "[(abc\\", "[?]"},
                    Text{"HexString", "<41 4>", "?"}, Text{"HexStringThatNeverEnds", "<41", "?"},
                    Text{"Array", "[1 /A [2 []] null]", "[1 /A [2 []] null]"},
                    Text{"Reference", "[7 0 R 8 1 R]", "[7.0 8.1]"},
                    Text{"ReferenceBehindNumbers", "[1 2 3 0 R 4]", "[1 2 3.0 4]"},
                    Text{"ReferenceToObjectZero", "[0 0 R]", "[null]"},
                    Text{"ReferenceOverTheRange", "[3000000000 0 R]", "[null]"},
                    Text{"ReferenceWithNegativeGeneration", "[3 -1 R]", "[null]"},
                    Text{"ReferenceWithGenerationOverTheRange", "[3 3000000000 R]", "[null]"},
                    Text{"ReferenceToANegativeObject", "[-3 0 R]", "[null]"},
                    Text{"ReferenceWithoutGeneration", "[3 /A R]", "[3 /A]"},
                    Text{"ReferenceWithoutNumber", "[/A 3 R]", "[/A 3]"},
                    Text{"ReferenceWithoutNumbers", "[/A R 1 R]", "[/A 1]"},
                    Text{"ReferenceOnItsOwnIsANumber", "7 0 R", "7"},
                    Text{"Dictionary", "<</B 1/A/X/C 4 0 R>>", "</A /X /B 1 /C 4.0>"},
                    Text{"DictionaryInDictionary", "<</A<</B<<>>>>>>", "</A </B <>>>"},
                    Text{"LastOfEqualKeysCounts", "<</A 1/B 2/A 3>>", "</A 3 /B 2>"},
                    Text{"EqualKeysWithDifferentSpelling", "<</A 1/#41 3>>", "</A 3>"},
                    Text{"NullValueIsAMissingKey", "<</A null/B 2>>", "</B 2>"},
                    Text{"LastOfEqualKeysMayBeNull", "<</A 1/A null>>", "<>"},
                    Text{"KeyWithoutValue", "<</A 1/B>>", "</A 1>"},
                    Text{"ValueWithoutKeyIsPassedOver", "<<5/A 1(x)/B 2>>", "</A 1 /B 2>"},
                    Text{"KeysAreOrderedByTheirBytes", "<</b 1/\xC3\xA9 2/B 3/a 4>>",
                         "</B 3 /a 4 /b 1 /\xC3\xA9 2>"},
                    Text{"CommentsAreWhiteSpace", "<</A%x>>\n1%(\r/B 2>>", "</A 1 /B 2>"},
                    Text{"StrayClosersArePassedOver", "<</A]1/B[2>>3]>>", "</A 1 /B [2 3]>"},
                    Text{"StrayBracesAndWords", "[{1} foo 2)3>4]", "[? 1 ? ? 2 ? 3 ? 4]"},
                    Text{"UnclosedContainersEndWithTheBytes", "<</A[1 2/B", "</A [1 2 /B]>"},
                    Text{"UnclosedContainersEndWithTheObject", "<</A[1 2 endobj 3", "</A [1 2]>"},
                    Text{"NothingThere", "  %x", "none"}, Text{"OnlyTheEnd", "endobj", "none"},
                    Text{"OnlyACloser", "] 5", "5"}),
    [](const auto& test) { return std::string(test.param.name); });

std::string indirect(std::string_view text, const Reference& expected = five)
{
    Crumbs source(text, 100);
    ObjectParser parser;
    return dump(parser.indirect({source, 0, 10'000}, expected));
}

TEST(ObjectParser, HeaderHasToMatch)
{
    EXPECT_EQ(indirect("5 0 obj /A endobj"), "/A");
    EXPECT_EQ(indirect("\n 5 %x\n 0 obj/A endobj"), "/A");
    EXPECT_EQ(indirect("5 0 obj/A", {5, 1}), "none");
    EXPECT_EQ(indirect("5 0 obj/A", {4, 0}), "none");
    EXPECT_EQ(indirect("5 0 /A"), "none");
    EXPECT_EQ(indirect("5 0 R /A"), "none");
    EXPECT_EQ(indirect("5 0 stream /A"), "none");
    EXPECT_EQ(indirect("xref"), "none");
    EXPECT_EQ(indirect(""), "none");
}

ParsedObjectRef object(std::string_view text)
{
    Crumbs source(text, 100);
    ObjectParser parser;
    return parser.indirect({source, 0, 10'000}, five);
}

TEST(ObjectParser, DictionaryBeforeTheKeywordIsAStreams)
{
    EXPECT_TRUE(object("5 0 obj<</A 1>>stream\nx")->isStream());
    EXPECT_TRUE(object("5 0 obj<</A 1 stream\nx")->isStream());
    EXPECT_FALSE(object("5 0 obj<</A 1>>endobj")->isStream());
    EXPECT_FALSE(object("5 0 obj[1]stream")->isStream());
}

TEST(ObjectParser, StreamKeywordEndsWhereItEnds)
{
    EXPECT_EQ(object("5 0 obj<<>>stream\nx")->streamKeywordEnd(), 17U);
}

TEST(ObjectParser, ObjectInAnObjectStreamIsNeverAStream)
{
    Crumbs source("<</A 1>>stream\nx", 100);
    ObjectParser parser;
    EXPECT_FALSE(parser.direct({source, 0, 100})->isStream());
}

TEST(ObjectParser, FindsKeysAndNothingElse)
{
    const auto parsed = object("5 0 obj<</A 1/C 3/D 4>>");
    EXPECT_EQ(parsed->find(parsed->root(), "A")->integer(), 1);
    EXPECT_EQ(parsed->find(parsed->root(), "D")->integer(), 4);
    EXPECT_EQ(parsed->find(parsed->root(), "B"), nullptr);
    EXPECT_EQ(parsed->find(parsed->root(), ""), nullptr);
    EXPECT_EQ(parsed->find(*parsed->find(parsed->root(), "A"), "A"), nullptr);
}

TEST(ObjectParser, ValuesOfOtherKindsAreEmptyContainersAndNoNames)
{
    const auto parsed = object("5 0 obj 7");
    EXPECT_EQ(parsed->root().arraySize(), 0U);
    EXPECT_EQ(parsed->root().entryCount(), 0U);
    EXPECT_EQ(parsed->name(parsed->root()), std::nullopt);
    EXPECT_EQ(parsed->root().reference(), std::nullopt);
}

TEST(ObjectParser, PositionsTellValuesApartAndAreTheSameEachTime)
{
    const auto first = object("5 0 obj<</A<</B[1]>>/C<<>>>>");
    const auto second = object("5 0 obj<</A<</B[1]>>/C<<>>>>");
    const auto positions = [](const ParsedObject& parsed) {
        const Value& a = *parsed.find(parsed.root(), "A");
        return std::vector{parsed.position(parsed.root()), parsed.position(a),
                           parsed.position(*parsed.find(a, "B")),
                           parsed.position(*parsed.find(parsed.root(), "C"))};
    };
    const auto found = positions(*first);
    EXPECT_EQ(found, positions(*second));
    EXPECT_EQ(found[0], 0U);
    EXPECT_EQ(std::set(found.begin(), found.end()).size(), 4U);
}

TEST(ObjectParser, NestingEndsAtTheLimit)
{
    const auto nested = [](std::size_t depth) {
        return dump(object("5 0 obj" + std::string(depth, '[') + std::string(depth, ']')));
    };
    EXPECT_EQ(nested(Limits::objectDepth).size(), 2 * Limits::objectDepth);
    EXPECT_EQ(nested(Limits::objectDepth + 1), "none");
}

TEST(ObjectParser, TextEndsAtTheLimit)
{
    Crumbs source("5 0 obj[1 2 3]endobj", 100);
    ObjectParser parser;
    EXPECT_EQ(dump(parser.indirect({source, 0, 14}, five)), "[1 2 3]");
    EXPECT_EQ(dump(parser.indirect({source, 0, 13}, five)), "none");
}

TEST(ObjectParser, TextMayEndWithItsSourceAtTheLimit)
{
    Crumbs source("5 0 obj[1 2", 100);
    ObjectParser parser;
    EXPECT_EQ(dump(parser.indirect({source, 0, 11}, five)), "[1 2]");
    EXPECT_EQ(dump(parser.indirect({source, 0, 10}, five)), "none");
}

TEST(ObjectParser, ParserStartsAfreshWithEachObject)
{
    ObjectParser parser;
    Crumbs broken("5 0 obj<</A[1 2", 100);
    Crumbs sound("5 0 obj<</B 1>>endobj", 100);
    EXPECT_EQ(dump(parser.indirect({broken, 0, 100}, five)), "</A [1 2]>");
    const auto parsed = parser.indirect({sound, 0, 100}, five);
    EXPECT_EQ(dump(parsed), "</B 1>");
    EXPECT_FALSE(parsed->isStream());
}

TEST(ObjectPlaces, AreReadUntilSomethingElseStandsThere)
{
    const auto places = [](std::string_view text, std::uint64_t count) {
        Crumbs source(text, 100);
        std::string line;
        for (const auto& place : parsePlaces({source, 0, 1000}, count))
            line += std::to_string(place.number) + "@" + std::to_string(place.offset) + " ";
        return line;
    };
    EXPECT_EQ(places("4 0 5 12 6 30 <<", 3), "4@0 5@12 6@30 ");
    EXPECT_EQ(places("4 0 5 12 6 30 <<", 2), "4@0 5@12 ");
    EXPECT_EQ(places("4 0 5 12 6 30 <<", 9), "4@0 5@12 6@30 ");
    EXPECT_EQ(places("4 0 5 /A 6 30", 3), "4@0 ");
    EXPECT_EQ(places("-4 0 5 -1 3000000000 1 6 30", 4), "6@30 ");
}

struct Sighting {
    const char* name;
    std::string text;
    bool mayHave;

    friend std::ostream& operator<<(std::ostream& out, const Sighting& row)
    {
        return out << row.name;
    }
};

class KeySightings : public testing::TestWithParam<Sighting> {};

TEST_P(KeySightings, AreNeverMissed)
{
    for (const std::size_t piece : {1U, 3U, 1000U}) {
        Crumbs source(GetParam().text, piece);
        EXPECT_EQ(ObjectParser().mayHaveKey({source, 0, 1000}, {}, "AP"), GetParam().mayHave)
            << piece;
    }
}

INSTANTIATE_TEST_SUITE_P(
    ObjectParser, KeySightings,
    testing::Values(
        Sighting{"Key", "<</A 1/AP 2>>", true},
        Sighting{"NoKey", "<</A 1/B<</C[(x)<41>]>>>>", false},
        Sighting{"KeyInside", "<</A<</AP 1>>>>", true}, Sighting{"KeyAsValue", "<</A/AP>>", true},
        Sighting{"LongerKey", "<</APX 1/A 2>>", false},
        Sighting{"EscapedName", "<</A#50 1>>", true}, Sighting{"KeyInString", "<</A(/AP)>>", false},
        Sighting{"StringWithClosers", "<</A(>>)/AP 1>>", true},
        Sighting{"StringWithEscapes", "<</A(\\)>>)/AP 1>>", true},
        Sighting{"HexStringWithClosers", "<</A<41>/AP 1>>", true},
        Sighting{"CommentWithClosers", "<</A 1%>>\n/AP 1>>", true},
        Sighting{"KeyBehindTheObject", "<</A 1>>endobj 6 0 obj<</AP 1>>", false},
        Sighting{"StrayCloser", "<</A]/B 1>>/AP", true},
        Sighting{"CrossedClosers", "<</A[>>]/AP 1>>", true}, Sighting{"CutShort", "<</A 1", true},
        Sighting{"NoDictionary", "5", true}, Sighting{"OnlyACloser", "]", true},
        Sighting{"OnlyClosers", ">> /A", true},
        Sighting{"DeepNesting", "<</A" + std::string(40, '[') + std::string(40, ']') + ">>", true}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(KeySighting, ObjectOfAFileHasAHeader)
{
    Crumbs source("5 0 obj<</A 1>>endobj", 100);
    EXPECT_FALSE(ObjectParser().mayHaveKey({source, 0, 1000}, five, "AP"));
    // Whatever stands there.
    EXPECT_TRUE(ObjectParser().mayHaveKey({source, 0, 1000}, {6, 0}, "AP"));
}

TEST(ObjectParser, TellsHowMuchTextItLookedAtEvenWhenItGaveNothing)
{
    Crumbs source("5 0 obj (a string) endobj", 100);
    ObjectParser parser;
    EXPECT_NE(parser.indirect({source, 0, 1000}, five), nullptr);
    EXPECT_EQ(parser.textRead(), 18U);
    EXPECT_EQ(parser.indirect({source, 0, 12}, five), nullptr);
    EXPECT_EQ(parser.textRead(), 12U);
    EXPECT_EQ(parser.indirect({source, 0, 1000}, {6, 0}), nullptr);
    EXPECT_EQ(parser.textRead(), 1U);
    EXPECT_NE(parser.direct({source, 8, 1000}), nullptr);
    EXPECT_EQ(parser.textRead(), 10U);
    EXPECT_TRUE(parser.mayHaveKey({source, 8, 1000}, {}, "AP"));
    EXPECT_EQ(parser.textRead(), 17U);
}

TEST(KeySighting, ObjectLongerThanLookedAtMayHaveAnything)
{
    Crumbs source("<</A 1/B 2>>", 100);
    EXPECT_FALSE(ObjectParser().mayHaveKey({source, 0, 12}, {}, "AP"));
    EXPECT_TRUE(ObjectParser().mayHaveKey({source, 0, 11}, {}, "AP"));
}

struct Mention {
    const char* name;
    std::string_view text;
    bool may;

    friend std::ostream& operator<<(std::ostream& out, const Mention& row)
    {
        return out << row.name;
    }
};

class Mentions : public testing::TestWithParam<Mention> {};

TEST_P(Mentions, AreNeverMissed)
{
    EXPECT_EQ(mayMention(ascii(GetParam().text), "AP"), GetParam().may);
}

INSTANTIATE_TEST_SUITE_P(
    ObjectLexer, Mentions,
    testing::Values(
        Mention{"Key", "<</AP<<>>>>", true}, Mention{"NothingElse", "/AP", true},
        Mention{"LongerName", "/APX", true}, Mention{"InString", "(/AP)", true},
        Mention{"LastEscaped", "/A#50", true}, Mention{"FirstEscaped", "/#41P", true},
        Mention{"AllEscaped", "x/#41#50 ", true}, Mention{"BehindAnotherName", "/#/A#50", true},
        Mention{"NoText", "", false}, Mention{"NoName", "AP", false},
        Mention{"SpaceInside", "/A P", false}, Mention{"OtherByteEscaped", "/A#51", false},
        Mention{"CutEscape", "/A#5", false}, Mention{"EmptyEscape", "/A#", false},
        Mention{"EscapeWithoutSlash", "#41P", false}, Mention{"EndOfLongerName", "/xA#50", false},
        Mention{"EscapeBehindSpace", "/A #50", false}, Mention{"Address", "(http://a/b#AP)", false},
        Mention{"OtherNameWithEscape", "/B#41P", false}),
    [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace quillmark::PDF
