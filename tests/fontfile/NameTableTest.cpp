#include "fontfile/NameTable.h"

#include "support/FontBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <ostream>

namespace quillmark {
namespace {

using test::ascii;
using test::Bytes;
using test::ByteWriter;
using test::NameRecord;
using test::nameTable;
using test::utf16;
using test::windowsEnglish;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using namespace std::string_literals;
using namespace std::string_view_literals;

NameStrings strings(const std::vector<NameRecord>& records)
{
    return NameTable::strings(nameTable(records).build());
}

NameRecord windows(std::uint16_t language, std::u16string_view text, std::uint16_t encoding = 1)
{
    return {3, encoding, language, 1, utf16(text)};
}
NameRecord unicode(std::u16string_view text, std::uint16_t encoding = 3)
{
    return {0, encoding, 0, 1, utf16(text)};
}
NameRecord macintosh(std::uint16_t language, std::string_view text, std::uint16_t encoding = 0)
{
    return {1, encoding, language, 1, ascii(text)};
}

// Which of several strings is chosen. All of them are for identifier 1.

struct ChoiceCase {
    const char* name;
    std::vector<NameRecord> records;
    std::string chosen; // empty: the identifier has no string

    friend std::ostream& operator<<(std::ostream& out, const ChoiceCase& row)
    {
        return out << row.name;
    }
};

class NameChoice : public testing::TestWithParam<ChoiceCase> {};

TEST_P(NameChoice, FollowsTheOrderOfPreference)
{
    const NameStrings names = strings(GetParam().records);
    if (GetParam().chosen.empty())
        EXPECT_THAT(names, IsEmpty());
    else
        EXPECT_THAT(names, ElementsAre(Pair(1, GetParam().chosen)));
}

INSTANTIATE_TEST_SUITE_P(
    NameTable, NameChoice,
    testing::Values(
        ChoiceCase{"WindowsEnglishBeatsAnEarlierGermanRecord",
                   {windows(0x407, u"German"), windows(0x409, u"English")},
                   "English"},
        ChoiceCase{"WindowsEnglishBeatsALaterGermanRecord",
                   {windows(0x409, u"English"), windows(0x407, u"German")},
                   "English"},
        ChoiceCase{"WindowsEnglishBeatsAUnicodeRecord",
                   {unicode(u"Unicode"), windows(0x409, u"English")},
                   "English"},
        ChoiceCase{"BritishEnglishIsAnotherLanguage",
                   {windows(0x809, u"British"), windows(0x409, u"American")},
                   "American"},
        ChoiceCase{"FirstOfTwoGermanRecordsWins",
                   {windows(0x407, u"first"), windows(0x407, u"second")},
                   "first"},
        ChoiceCase{"FirstOfTwoOtherLanguagesWins",
                   {windows(0x40C, u"French"), windows(0x407, u"German")},
                   "French"},
        ChoiceCase{"FirstOfTwoWindowsEnglishRecordsWinsWhateverTheEncoding",
                   {windows(0x409, u"full", 10), windows(0x409, u"basic", 1)},
                   "full"},
        ChoiceCase{"OtherWindowsLanguageBeatsUnicode",
                   {unicode(u"Unicode"), windows(0x407, u"German")},
                   "German"},
        ChoiceCase{
            "UnicodeBeatsMacintoshEnglish", {macintosh(0, "Mac"), unicode(u"Unicode")}, "Unicode"},
        ChoiceCase{
            "FirstOfTwoUnicodeRecordsWins", {unicode(u"first", 3), unicode(u"second", 4)}, "first"},
        ChoiceCase{"MacintoshEnglishBeatsAnotherMacintoshLanguage",
                   {macintosh(2, "German"), macintosh(0, "English")},
                   "English"},
        ChoiceCase{"FirstOfTwoOtherMacintoshLanguagesWins",
                   {macintosh(2, "German"), macintosh(1, "French")},
                   "German"},
        ChoiceCase{"OtherMacintoshLanguageIsBetterThanNothing", {macintosh(2, "German")}, "German"},
        ChoiceCase{"BlankBestStringLeavesTheNextBest",
                   {windows(0x409, {u" \0 \0", 4}), windows(0x407, u"German")},
                   "German"},
        ChoiceCase{"BlankFirstOfEqualsLeavesTheSecond",
                   {windows(0x407, u" "), windows(0x407, u"second")},
                   "second"},
        ChoiceCase{"EmptyBestStringLeavesTheLowestRank",
                   {windows(0x409, u""), unicode(u"\t"), macintosh(2, "German")},
                   "German"},
        ChoiceCase{"OnlyBlankStringsGiveNothing", {windows(0x409, u" "), macintosh(0, "\r\n")}, ""},
        ChoiceCase{"UnreadableBestStringLeavesTheNextBest",
                   {{3, 1, 0x409, 1, ascii("odd")}, macintosh(0, "Mac")},
                   "Mac"}),
    [](const auto& row) { return std::string(row.param.name); });

// Which records are read, and how they are decoded.

struct DecodingCase {
    const char* name;
    NameRecord record;
    std::string text; // empty: the record is not read

    friend std::ostream& operator<<(std::ostream& out, const DecodingCase& row)
    {
        return out << row.name;
    }
};

class NameDecoding : public testing::TestWithParam<DecodingCase> {};

TEST_P(NameDecoding, FollowsPlatformAndEncoding)
{
    const NameStrings names = strings({GetParam().record});
    if (GetParam().text.empty())
        EXPECT_THAT(names, IsEmpty());
    else
        EXPECT_THAT(names, ElementsAre(Pair(1, GetParam().text)));
}

INSTANTIATE_TEST_SUITE_P(
    NameTable, NameDecoding,
    testing::Values(
        DecodingCase{"WindowsSymbolIsUtf16", windows(0x409, u"F\u00F6o", 0), "F\u00F6o"},
        DecodingCase{"WindowsUnicodeIsUtf16", windows(0x409, u"F\u00F6o", 1), "F\u00F6o"},
        DecodingCase{"WindowsFullUnicodeIsUtf16", windows(0x409, u"\U0001F600", 10), "\U0001F600"},
        DecodingCase{"WindowsShiftJisIsIgnored", windows(0x411, u"Foo", 2), ""},
        DecodingCase{"WindowsChineseIsIgnored", windows(0x804, u"Foo", 3), ""},
        DecodingCase{"WindowsBig5IsIgnored", windows(0x404, u"Foo", 4), ""},
        DecodingCase{"WindowsWansungIsIgnored", windows(0x412, u"Foo", 5), ""},
        DecodingCase{"WindowsJohabIsIgnored", windows(0x412, u"Foo", 6), ""},
        DecodingCase{"WindowsEncoding9IsIgnored", windows(0x409, u"Foo", 9), ""},
        DecodingCase{"WindowsEncoding11IsIgnored", windows(0x409, u"Foo", 11), ""},
        DecodingCase{"UnicodeEncoding0IsUtf16", unicode(u"Foo", 0), "Foo"},
        DecodingCase{"UnicodeEncoding6IsUtf16", unicode(u"Foo", 6), "Foo"},
        DecodingCase{"UnicodeUnknownEncodingIsUtf16", unicode(u"Foo", 99), "Foo"},
        DecodingCase{"MacintoshRomanIsMacRoman", macintosh(0, "F\x9Ao\xAA"), "F\u00F6o\u2122"},
        DecodingCase{"MacintoshJapaneseIsIgnored", macintosh(11, "Foo", 1), ""},
        DecodingCase{"Platform2IsIgnored", {2, 1, 0, 1, utf16(u"Foo")}, ""},
        DecodingCase{"Platform4IsIgnored", {4, 0, 0, 1, ascii("Foo")}, ""},
        DecodingCase{"Platform240IsIgnored", {240, 0, 0, 1, ascii("Foo")}, ""},
        DecodingCase{"WindowsOddLengthIsIgnored", {3, 1, 0x409, 1, ascii("\0F\0"sv)}, ""},
        DecodingCase{"UnicodeOddLengthIsIgnored", {0, 3, 0, 1, ascii("\0F\0"sv)}, ""},
        DecodingCase{"MacintoshOddLengthIsFine", {1, 0, 0, 1, ascii("Foo")}, "Foo"},
        DecodingCase{"LoneSurrogateIsRepaired", {3, 1, 0x409, 1, ascii("\xD8\0\0F"sv)}, "\uFFFDF"},
        DecodingCase{"BlanksAndNulsAreTrimmed", windows(0x409, {u"\0 \u3000\nFoo\0Bar\r\n\0", 14}),
                     "Foo\0Bar"s},
        DecodingCase{"MacintoshBlanksAndNulsAreTrimmed", macintosh(0, "\0\xCA Foo \0"sv), "Foo"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(NameTable, EveryIdentifierGetsItsString)
{
    EXPECT_THAT(strings({windowsEnglish(1, u"Foo"), windowsEnglish(65535, u"last"),
                         windowsEnglish(2, u"Bold"), windowsEnglish(256, u"Light"),
                         windowsEnglish(0, u"copyright")}),
                ElementsAre(Pair(0, "copyright"), Pair(1, "Foo"), Pair(2, "Bold"),
                            Pair(256, "Light"), Pair(65535, "last")));
}

TEST(NameTable, IdentifiersDoNotInfluenceEachOther)
{
    EXPECT_THAT(strings({{1, 0, 0, 1, ascii("Mac family")},
                         {3, 1, 0x409, 2, utf16(u"Bold")},
                         {1, 0, 0, 2, ascii("Mac style")}}),
                ElementsAre(Pair(1, "Mac family"), Pair(2, "Bold")));
}

// Damage.

TEST(NameTable, TableOfFewerThanSixBytesGivesNothing)
{
    const Bytes table = nameTable({windowsEnglish(1, u"Foo")}).build();
    for (std::size_t size = 0; size < 6; ++size)
        EXPECT_THAT(NameTable::strings(std::span(table).first(size)), IsEmpty()) << size;
}

TEST(NameTable, TableWithoutRecordsGivesNothing)
{
    EXPECT_THAT(strings({}), IsEmpty());
}

TEST(NameTable, FormatIsNotChecked)
{
    Bytes table = nameTable({windowsEnglish(1, u"Foo")}).build();
    table[0] = table[1] = std::byte{0xFF};
    EXPECT_THAT(NameTable::strings(table), ElementsAre(Pair(1, "Foo")));
}

TEST(NameTable, RecordsBeyondTheTableAreSkipped)
{
    auto table = nameTable({windowsEnglish(1, u"Foo")});
    table.overwrite16("count", 0xFFFF);
    // What follows the one record is read as records as well: the string, too short to be one.
    EXPECT_THAT(NameTable::strings(table.build()), ElementsAre(Pair(1, "Foo")));
}

TEST(NameTable, RecordCutByTheEndOfTheTableIsSkipped)
{
    // The strings stand in the header's place: the records are all that the table has room for.
    const auto table = ByteWriter()
                           .u16('F')
                           .u16(2)
                           .u16(0)
                           .u16(3)
                           .u16(1)
                           .u16(0x409)
                           .u16(1)
                           .u16(2)
                           .u16(0)
                           .u16(3)
                           .u16(1)
                           .u16(0x409)
                           .u16(2)
                           .u16(2)
                           .u16(0)
                           .build();
    EXPECT_THAT(NameTable::strings(table), ElementsAre(Pair(1, "F"), Pair(2, "F")));
    EXPECT_THAT(NameTable::strings(std::span(table).first(table.size() - 1)),
                ElementsAre(Pair(1, "F")));
}

TEST(NameTable, StringThatRunsPastTheEndIsSkippedAlone)
{
    const auto table = nameTable({windowsEnglish(1, u"Foo"), windowsEnglish(2, u"Bold")}).build();
    EXPECT_THAT(NameTable::strings(std::span(table).first(table.size() - 1)),
                ElementsAre(Pair(1, "Foo")));
}

TEST(NameTable, StringOffsetBehindTheEndSkipsEveryString)
{
    auto table = nameTable({windowsEnglish(1, u"Foo")});
    table.overwrite16("stringOffset", 0xFFFF);
    EXPECT_THAT(NameTable::strings(table.build()), IsEmpty());
}

TEST(NameTable, StringOffsetsAreAddedWithoutWrappingRound)
{
    // 0xFFFF + 0xFFFF must not become 0xFFFE: the table has that many bytes.
    auto table = nameTable({windowsEnglish(1, u"Foo")});
    table.overwrite16("stringOffset", 0xFFFF).zeros(0xFFFF);
    Bytes bytes = table.build();
    bytes[6 + 10] = bytes[6 + 11] = std::byte{0xFF};
    EXPECT_THAT(NameTable::strings(bytes), IsEmpty());
}

TEST(NameTable, StringsMayOverlapRecordsAndEachOther)
{
    auto table = nameTable({windowsEnglish(1, u"Foo"), windowsEnglish(2, u"")});
    Bytes bytes = table.build();
    const std::size_t second = table.position("record1");
    bytes[second + 9] = std::byte{4}; // length; the offset is 6
    bytes[second + 11] = std::byte{2};
    EXPECT_THAT(NameTable::strings(bytes), ElementsAre(Pair(1, "Foo"), Pair(2, "oo")));
}

// Limits.

/// A table of `count` records for the identifiers from 0 on, all of the same string of
/// `stringBytes` bytes: "xx...".
Bytes sharedString(std::uint16_t count, std::uint16_t stringBytes)
{
    ByteWriter writer;
    writer.u16(0).u16(count).u16(static_cast<std::uint16_t>(6 + 12 * count));
    for (std::uint16_t id = 0; id < count; ++id)
        writer.u16(1).u16(0).u16(0).u16(id).u16(stringBytes).u16(0);
    return writer.text(std::string(stringBytes, 'x')).build();
}

TEST(NameTable, SixteenMegabytesOfTextAreReadFromOneTable)
{
    // 256 strings of 65535 bytes are 256 bytes short of the limit.
    const NameStrings names = NameTable::strings(sharedString(1000, 65535));
    EXPECT_EQ(names.size(), 256U);
    EXPECT_EQ(std::prev(names.end())->first, 255U);
}

TEST(NameTable, ShorterStringStillFitsWhereALongerOneDoesNot)
{
    Bytes table = sharedString(258, 65535);
    table[6 + 12 * 257 + 8] = std::byte{0}; // the last one's length is 255
    const NameStrings names = NameTable::strings(table);
    EXPECT_EQ(names.size(), 257U);
    EXPECT_EQ(names.find(256), names.end());
    EXPECT_EQ(names.find(257)->second, std::string(255, 'x'));
}

TEST(NameTable, StringsThatAreNotChosenCostNothing)
{
    std::vector<NameRecord> records;
    records.reserve(101);
    for (int i = 0; i < 100; ++i)
        records.push_back({1, 0, 2, 1, ascii("loser")});
    records.push_back(windowsEnglish(1, u"Foo"));
    std::size_t budget = 101 * 12 + 6 + 1000;
    EXPECT_THAT(NameTable::strings(nameTable(records).build(), budget),
                ElementsAre(Pair(1, "Foo")));
    EXPECT_EQ(budget, 1000U);
}

TEST(NameTable, OnlyTheWantedIdentifiersAreRead)
{
    constexpr std::array wanted{NameID::typographicFamily, NameID::family};
    const Bytes table =
        nameTable({windowsEnglish(1, u"Foo"), windowsEnglish(3, u"unique"),
                   windowsEnglish(16, u"Foo Sans"), windowsEnglish(256, u"feature")})
            .build();
    std::size_t budget = NameTable::maximumFileBytes;
    EXPECT_THAT(NameTable::strings(table, budget, wanted),
                ElementsAre(Pair(1, "Foo"), Pair(16, "Foo Sans")));
}

TEST(NameTable, StringsThatAreNotWantedCostNothing)
{
    constexpr std::array wanted{NameID::family};
    const Bytes table =
        nameTable({windowsEnglish(3, u"unique"), windowsEnglish(1, u"Foo")}).build();
    std::size_t budget = 2 * 12 + 6 + 1000;
    EXPECT_THAT(NameTable::strings(table, budget, wanted), ElementsAre(Pair(1, "Foo")));
    EXPECT_EQ(budget, 1000U);
}

TEST(NameTable, BlankStringsCount)
{
    std::size_t budget = 2 * 12 + 6;
    EXPECT_THAT(
        NameTable::strings(nameTable({windowsEnglish(1, u"   "), {1, 0, 0, 1, ascii("F")}}).build(),
                           budget),
        IsEmpty());
    EXPECT_EQ(budget, 0U);
}

TEST(NameTable, BudgetIsSharedBetweenTables)
{
    const Bytes table = nameTable({windowsEnglish(1, u"Foo"), windowsEnglish(2, u"Bold")}).build();
    const std::size_t needed = 2 * 12 + 6 + 8;
    std::size_t budget = needed + (2 * 12 + 6);
    EXPECT_THAT(NameTable::strings(table, budget), ElementsAre(Pair(1, "Foo"), Pair(2, "Bold")));
    EXPECT_THAT(NameTable::strings(table, budget), ElementsAre(Pair(1, "Foo")));
    EXPECT_EQ(budget, 0U);
    EXPECT_THAT(NameTable::strings(table, budget), IsEmpty());
}

TEST(NameTable, TableWhoseRecordsExceedTheBudgetGivesNothingAndCostsNothing)
{
    std::size_t budget = 23;
    EXPECT_THAT(NameTable::strings(
                    nameTable({windowsEnglish(1, u"F"), windowsEnglish(2, u"B")}).build(), budget),
                IsEmpty());
    EXPECT_EQ(budget, 23U);
}

TEST(NameTable, DeclaredRecordsThatAreNotThereCostAtMostTheTable)
{
    std::size_t budget = 1000;
    EXPECT_THAT(NameTable::strings(ByteWriter().u16(0).u16(0xFFFF).u16(6).build(), budget),
                IsEmpty());
    EXPECT_EQ(budget, 1000U - 6U);
}

// Identifiers.

TEST(NameID, EveryCaseHasItsNumber)
{
    const std::vector<std::pair<NameID, std::uint16_t>> rows{
        {NameID::copyright, 0},
        {NameID::family, 1},
        {NameID::subfamily, 2},
        {NameID::fullName, 4},
        {NameID::postScriptName, 6},
        {NameID::trademark, 7},
        {NameID::manufacturer, 8},
        {NameID::designer, 9},
        {NameID::description, 10},
        {NameID::vendorURL, 11},
        {NameID::designerURL, 12},
        {NameID::licenseDescription, 13},
        {NameID::licenseURL, 14},
        {NameID::typographicFamily, 16},
        {NameID::typographicSubfamily, 17},
    };
    ASSERT_EQ(allNameIDs.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(allNameIDs[i], rows[i].first);
        EXPECT_EQ(static_cast<std::uint16_t>(rows[i].first), rows[i].second);
        EXPECT_EQ(nameID(rows[i].second), rows[i].first);
    }
}

TEST(NameID, OtherNumbersHaveNoCase)
{
    for (const std::uint16_t raw : std::to_array<std::uint16_t>({3, 5, 15, 18, 19, 25, 256, 65535}))
        EXPECT_EQ(nameID(raw), std::nullopt) << raw;
}

} // namespace
} // namespace quillmark
