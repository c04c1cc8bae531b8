#include "fontfile/CFF.h"

#include "support/FontBytes.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>

namespace quillmark {
namespace {

using test::ascii;
using test::Bytes;
using test::ByteWriter;
using test::cffIndex;
using test::cffProgram;

using namespace std::string_view_literals;

/// A program called "Foo" with one string, "Found" (id 391), and this Top DICT.
std::optional<BareFontInfo> readWithTopDict(std::string_view topDict)
{
    return CFF::read(cffProgram({ascii("Foo")}, ascii(topDict), {ascii("Found")}));
}

/// Four header bytes, the last of them unused, and then `indexes`.
std::optional<BareFontInfo> readIndexes(const Bytes& indexes)
{
    return CFF::read(ByteWriter().u8(1).u8(0).u8(4).u8(1).bytes(indexes).build());
}

Bytes joined(std::initializer_list<Bytes> parts)
{
    ByteWriter writer;
    for (const Bytes& part : parts)
        writer.bytes(part);
    return writer.build();
}

TEST(CFF, EveryFieldIsReadFromItsOperator)
{
    const BareFontInfo info{"Foo-Bold", "Foo Bold", "Foo", "A notice", "(c) Someone"};
    EXPECT_EQ(CFF::read(cffProgram(info)), info);
}

TEST(CFF, FieldsWithoutAnOperatorAreAbsent)
{
    const BareFontInfo info{"Foo-Bold", {}, {}, {}, {}};
    EXPECT_EQ(CFF::read(cffProgram(info)), info);
}

TEST(CFF, FullNameWithAStandardStringIdIsAbsent)
{
    const auto info = readWithTopDict("\x1C\x01\x86\x02"sv); // 390, FullName
    ASSERT_TRUE(info);
    EXPECT_EQ(info->fullName, std::nullopt);
}

TEST(CFF, FirstIdBehindTheStandardStringsIsTheFirstString)
{
    EXPECT_EQ(readWithTopDict("\x1C\x01\x87\x02"sv)->fullName, "Found"); // 391
}

TEST(CFF, StringIdBehindTheLastStringIsAbsent)
{
    EXPECT_EQ(readWithTopDict("\x1C\x01\x88\x02"sv)->fullName, std::nullopt); // 392
}

TEST(CFF, NegativeStringIdIsAbsent)
{
    EXPECT_EQ(readWithTopDict("\x1D\x80\x00\x00\x00\x02"sv)->fullName, std::nullopt);
    EXPECT_EQ(readWithTopDict("\x1C\xFF\xFF\x02"sv)->fullName, std::nullopt);
}

TEST(CFF, LargestStringIdIsAbsent)
{
    EXPECT_EQ(readWithTopDict("\x1D\x7F\xFF\xFF\xFF\x02"sv)->fullName, std::nullopt);
}

TEST(CFF, EmptyNameIndexYieldsAResultWithoutFontName)
{
    const BareFontInfo info{{}, "Foo Bold", {}, {}, {}};
    EXPECT_EQ(CFF::read(cffProgram(info)), info);
}

TEST(CFF, EmptyFirstNameIsAbsent)
{
    EXPECT_EQ(CFF::read(cffProgram({{}, ascii("Second")}, {}, {}))->fontName, std::nullopt);
}

TEST(CFF, FirstOfSeveralNamesIsTheFontsName)
{
    EXPECT_EQ(CFF::read(cffProgram({ascii("A"), ascii("B")}, {}, {}))->fontName, "A");
}

TEST(CFF, FontNameIsRepairedButNotTrimmed)
{
    EXPECT_EQ(CFF::read(cffProgram({ascii(" F\xFFoo ")}, {}, {}))->fontName, " F\uFFFDoo ");
}

TEST(CFF, StringsAreRepairedAndTrimmed)
{
    const auto info =
        CFF::read(cffProgram({}, ascii("\x1C\x01\x87\x01"sv), {ascii(" \r\n\xC2\xA9 \x80 X\n")}));
    EXPECT_EQ(info->notice, "\u00A9 \uFFFD X");
}

TEST(CFF, BlankStringIsAbsent)
{
    EXPECT_EQ(CFF::read(cffProgram({}, ascii("\x1C\x01\x87\x01"sv), {ascii(" \n")}))->notice,
              std::nullopt);
}

TEST(CFF, SixteenMegabytesOfTextAreTakenFromOneProgram)
{
    // All four names are the same string of a third of the limit, and the font's name one byte.
    constexpr std::string_view allNames = "\x1C\x01\x87\x02\x1C\x01\x87\x03"
                                          "\x1C\x01\x87\x01\x1C\x01\x87\x0C\x00"sv;
    const auto read = [&](std::size_t size) {
        const Bytes text(size, std::byte{'x'});
        return readIndexes(
            joined({cffIndex({ascii("F")}), cffIndex({ascii(allNames)}), cffIndex({text}, 4)}));
    };
    constexpr std::size_t third = (std::size_t{16} << 20U) / 3;
    const auto fitting = read(third);
    EXPECT_EQ(fitting->fontName, "F");
    EXPECT_EQ(fitting->fullName, std::string(third, 'x'));
    EXPECT_TRUE(fitting->familyName);
    EXPECT_TRUE(fitting->notice);
    EXPECT_FALSE(fitting->copyright);
    const auto tooLong = read(third + 1);
    EXPECT_TRUE(tooLong->familyName);
    EXPECT_FALSE(tooLong->notice);
}

// Programs that give no result.

TEST(CFF, EmptyInputGivesNothing)
{
    EXPECT_EQ(CFF::read({}), std::nullopt);
}

TEST(CFF, MajorVersionOtherThanOneGivesNothing)
{
    for (const int version : {0, 2, 255}) {
        Bytes program = cffProgram({ascii("Foo")}, {}, {});
        ASSERT_TRUE(CFF::read(program));
        program[0] = static_cast<std::byte>(version);
        EXPECT_EQ(CFF::read(program), std::nullopt) << version;
    }
}

TEST(CFF, FewerThanThreeBytesGiveNothing)
{
    EXPECT_EQ(CFF::read(ascii("\x01"sv)), std::nullopt);
    EXPECT_EQ(CFF::read(ascii("\x01\x00"sv)), std::nullopt);
}

TEST(CFF, IndexesStartWhereTheHeaderSizeSays)
{
    const Bytes program =
        ByteWriter().u8(1).u8(0).u8(9).zeros(6).bytes(cffIndex({ascii("Foo")})).build();
    EXPECT_EQ(CFF::read(program), std::nullopt); // no Top DICT follows
    const Bytes whole = joined({program, cffIndex({Bytes{}}), cffIndex({})});
    EXPECT_EQ(CFF::read(whole)->fontName, "Foo");
}

TEST(CFF, HeaderSizeBehindTheEndGivesNothing)
{
    EXPECT_EQ(CFF::read(ascii("\x01\x00\xFF\x01"sv)), std::nullopt);
}

TEST(CFF, EmptyTopDictIndexGivesNothing)
{
    EXPECT_EQ(readIndexes(joined({cffIndex({ascii("Foo")}), cffIndex({}), cffIndex({})})),
              std::nullopt);
}

TEST(CFF, MissingStringIndexGivesNothing)
{
    EXPECT_EQ(readIndexes(joined({cffIndex({ascii("Foo")}), cffIndex({Bytes{}})})), std::nullopt);
}

TEST(CFF, ProgramCutAnywhereGivesNothing)
{
    const Bytes program = cffProgram({ascii("Foo")}, ascii("\x1C\x01\x87\x02"sv), {ascii("Bar")});
    ASSERT_TRUE(CFF::read(program));
    for (std::size_t size = 0; size < program.size(); ++size)
        EXPECT_EQ(CFF::read(std::span(program).first(size)), std::nullopt) << size;
}

// INDEX structures.

TEST(CFF, OffsetsOfOneToFourBytesAreRead)
{
    for (const std::uint8_t offSize : std::to_array<std::uint8_t>({1, 2, 3, 4})) {
        const auto info = readIndexes(joined({
            cffIndex({ascii("Foo"), ascii("Other")}, offSize),
            cffIndex({ascii("\x1C\x01\x88\x02"sv)}, offSize),
            cffIndex({ascii("first"), ascii("second")}, offSize),
        }));
        ASSERT_TRUE(info) << int{offSize};
        EXPECT_EQ(info->fontName, "Foo");
        EXPECT_EQ(info->fullName, "second");
    }
}

TEST(CFF, OffsetSizeOfZeroOrFiveMakesTheIndexUnreadable)
{
    for (const std::uint8_t offSize : std::to_array<std::uint8_t>({0, 5, 255})) {
        const Bytes names = ByteWriter().u16(1).u8(offSize).zeros(600).build();
        EXPECT_EQ(readIndexes(joined({names, cffIndex({Bytes{}}), cffIndex({})})), std::nullopt)
            << int{offSize};
    }
}

TEST(CFF, ElementThatEndsBeforeItsStartMakesTheIndexUnreadable)
{
    const Bytes names = ByteWriter().u16(2).u8(1).u8(1).u8(3).u8(2).text("ab").build();
    EXPECT_EQ(readIndexes(joined({names, cffIndex({Bytes{}}), cffIndex({})})), std::nullopt);
}

TEST(CFF, ElementOutsideTheBufferMakesTheIndexUnreadable)
{
    const Bytes strings = ByteWriter().u16(1).u8(1).u8(1).u8(3).text("a").build();
    EXPECT_EQ(readIndexes(joined({cffIndex({ascii("Foo")}), cffIndex({Bytes{}}), strings})),
              std::nullopt);
    const Bytes inside = ByteWriter().u16(1).u8(1).u8(1).u8(2).text("a").build();
    EXPECT_TRUE(readIndexes(joined({cffIndex({ascii("Foo")}), cffIndex({Bytes{}}), inside})));
}

TEST(CFF, LargestOffsetsDoNotWrapRound)
{
    const Bytes names =
        ByteWriter().u16(1).u8(4).u32(0xFFFFFFFF).u32(0xFFFFFFFF).text("Foo").build();
    EXPECT_EQ(readIndexes(joined({names, cffIndex({Bytes{}}), cffIndex({})})), std::nullopt);
}

TEST(CFF, OffsetArrayBehindTheEndMakesTheIndexUnreadable)
{
    EXPECT_EQ(readIndexes(ByteWriter().u16(0xFFFF).u8(4).zeros(100).build()), std::nullopt);
}

TEST(CFF, IndexEndsBehindItsLastElement)
{
    // The last offset decides, so that bytes before the first element do not shift what follows.
    const Bytes names = ByteWriter().u16(1).u8(1).u8(3).u8(5).text("--ab").build();
    const auto info = readIndexes(joined({names, cffIndex({Bytes{}}), cffIndex({})}));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->fontName, "ab");
}

/// The full name in a program with this Top DICT and as many strings as there can be, all of them
/// "x" but for the last one.
std::optional<std::string> fullNameAmong65535Strings(std::string_view topDict)
{
    std::vector<Bytes> strings(65535, ascii("x"));
    strings.back() = ascii("the last one");
    return readIndexes(joined({cffIndex({}), cffIndex({ascii(topDict)}), cffIndex(strings, 3)}))
        ->fullName;
}

TEST(CFF, LargestIndexIsRead)
{
    // 391 + 65534 does not fit in 16 bits.
    EXPECT_EQ(fullNameAmong65535Strings("\x1D\x00\x01\x01\x85\x02"sv), "the last one");
}

TEST(CFF, NumberOfSixteenBitsIsSigned)
{
    EXPECT_EQ(fullNameAmong65535Strings("\x1C\x7F\xFF\x02"sv), "x");
    EXPECT_EQ(fullNameAmong65535Strings("\x1C\x80\x00\x02"sv), std::nullopt);
    EXPECT_EQ(fullNameAmong65535Strings("\x1C\xFF\xFF\x02"sv), std::nullopt);
}

// Numbers in the Top DICT. Each row is an operand that must have the value 391 (the string
// "Found") or some other value that names no string, followed by the FullName operator.

struct OperandCase {
    const char* name;
    std::string_view topDict;
    std::optional<std::string> fullName;

    friend std::ostream& operator<<(std::ostream& out, const OperandCase& row)
    {
        return out << row.name;
    }
};

class CFFOperand : public testing::TestWithParam<OperandCase> {};

TEST_P(CFFOperand, IsReadAsItsValue)
{
    const auto info = readWithTopDict(GetParam().topDict);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->fullName, GetParam().fullName);
}

INSTANTIATE_TEST_SUITE_P(
    TopDict, CFFOperand,
    testing::Values(
        OperandCase{"TwoBytesPositive", "\xF8\x1B\x02"sv, "Found"},          // (248-247)*256+27+108
        OperandCase{"TwoBytesPositiveNextValue", "\xF8\x1C\x02"sv, {}},      // 392
        OperandCase{"TwoBytesPositiveValueBefore", "\xF8\x1A\x02"sv, {}},    // 390
        OperandCase{"TwoBytesNegative", "\xFC\x1B\x02"sv, {}},               // -391
        OperandCase{"SixteenBits", "\x1C\x01\x87\x02"sv, "Found"},           // 28
        OperandCase{"ThirtyTwoBits", "\x1D\x00\x00\x01\x87\x02"sv, "Found"}, // 29
        OperandCase{"OneByteIsNeverAName", "\xF6\x02"sv, {}},                // 107
        OperandCase{"RealNumberIsZero", "\x1E\x39\x1F\x02"sv, {}},           // 391 as a real
        OperandCase{"FirstOperandCounts", "\xF8\x1B\x8B\x02"sv, "Found"},
        OperandCase{"FirstOperandCountsAlsoBeforeAName", "\x8B\xF8\x1B\x02"sv, {}},
        OperandCase{"RealNumberCountsAsTheFirst", "\x1E\x1F\xF8\x1B\x02"sv, {}},
        OperandCase{"RealNumberEndsAtAHighEndNibble", "\x8B\x05\x1E\xF1\xF8\x1B\x02"sv, {}},
        OperandCase{"RepeatedOperatorOverwrites", "\x8B\x02\xF8\x1B\x02"sv, "Found"},
        OperandCase{"RepeatedOperatorOverwritesWithWorse", "\xF8\x1B\x02\x8B\x02"sv, {}},
        OperandCase{"RepeatWithoutOperandsIsIgnored", "\xF8\x1B\x02\x02"sv, "Found"},
        OperandCase{"OperandsAreClearedAtEveryOperator", "\xF8\x1B\x05\x02"sv, {}},
        OperandCase{"OperandsAreClearedAtAnEscapedOperator", "\xF8\x1B\x0C\x07\x02"sv, {}},
        OperandCase{"EscapedTwoIsNotFullName", "\xF8\x1B\x0C\x02"sv, {}},
        OperandCase{"ReservedBytesAreSkipped",
                    "\x16\x17\x18\x19\x1A\x1B\x1F\xFF\xF8\x1B\x16\x1F\xFF\x02"sv, "Found"},
        OperandCase{"LastOperatorClearsTheOperands", "\xF8\x1B\x15\x02"sv, {}}, // 21
        OperandCase{"SmallestTwoBytePositiveTakesItsSecondByte", // 110, not 108 and FullName
                    "\xF8\x1B\x02\xF7\x02\x05"sv, "Found"},
        OperandCase{"SixteenBitsTakeThreeBytes", "\xF8\x1B\x02\x1C\x00\x02\x05"sv, "Found"},
        OperandCase{"ThirtyTwoBitsTakeFiveBytes", "\xF8\x1B\x02\x1D\x00\x00\x00\x02\x05"sv,
                    "Found"},
        OperandCase{"CutSixteenBitsStopTheParse", "\xF8\x1B\x02\x1C\x01"sv, "Found"},
        OperandCase{"CutThirtyTwoBitsStopTheParse", "\xF8\x1B\x02\x1D\x00\x00\x01"sv, "Found"},
        OperandCase{"CutPositiveStopsTheParse", "\xF8\x1B\x02\xF8"sv, "Found"},
        OperandCase{"CutNegativeStopsTheParse", "\xF8\x1B\x02\xFC"sv, "Found"},
        OperandCase{"CutRealNumberStopsTheParse", "\xF8\x1B\x02\x1E\x11\x02"sv, "Found"},
        OperandCase{"NothingIsTakenFromBehindTheCut", "\xF8\x1B\x1D\x02"sv, {}},
        OperandCase{"EscapeAtTheVeryEndChangesNothing", "\xF8\x1B\x02\xF8\x1B\x0C"sv, "Found"},
        OperandCase{"NoOperators", "\xF8\x1B"sv, {}}, OperandCase{"Empty", ""sv, {}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(CFF, RealNumberEndsAtALowOrAHighEndNibble)
{
    // Behind each real number stands an operator that clears it; the name follows.
    for (const std::string_view real : {"\x1E\x1F"sv, "\x1E\xF1"sv, "\x1E\xFF"sv, "\x1E\x12\x3F"sv})
        EXPECT_EQ(readWithTopDict(std::string(real) + "\x05\xF8\x1B\x02")->fullName, "Found");
}

TEST(CFF, CopyrightIsTheEscapedOperatorZeroAndNoticeTheOperatorOne)
{
    const auto info = readWithTopDict("\xF8\x1B\x0C\x00"sv);
    EXPECT_EQ(info, (BareFontInfo{"Foo", {}, {}, {}, "Found"}));
    EXPECT_EQ(readWithTopDict("\xF8\x1B\x01"sv), (BareFontInfo{"Foo", {}, {}, "Found", {}}));
    EXPECT_EQ(readWithTopDict("\xF8\x1B\x03"sv), (BareFontInfo{"Foo", {}, "Found", {}, {}}));
}

TEST(CFF, OneAndTwoByteNumbersHaveTheirDocumentedLimits)
{
    // 108 to 1131 take two bytes. The String INDEX goes on behind what they can number.
    std::vector<Bytes> strings(741, ascii("between"));
    strings.front() = ascii("391");
    strings.back() = ascii("1131");
    strings.resize(2000, ascii("beyond"));
    const auto fullName = [&](std::string_view topDict) {
        return CFF::read(cffProgram({}, ascii(topDict), strings))->fullName;
    };
    EXPECT_EQ(fullName("\xF8\x1B\x02"sv), "391");
    EXPECT_EQ(fullName("\xFA\xFF\x02"sv), "1131");
    EXPECT_EQ(fullName("\xFB\x00\x02"sv), std::nullopt); // -108
    EXPECT_EQ(fullName("\xFE\xFF\x02"sv), std::nullopt); // -1131
    EXPECT_EQ(fullName("\xF9\x00\x02"sv), "between");    // 620
}

} // namespace
} // namespace quillmark
