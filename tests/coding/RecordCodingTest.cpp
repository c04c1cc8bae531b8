#include "coding/RecordCoding.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using std::chrono::system_clock;

std::string encoded(const auto& record)
{
    std::string output;
    JsonWriter writer(output);
    encode(writer, record);
    return output;
}

/// `text` with the first `from` in it replaced; the test fails when there is none.
std::string replaced(std::string text, std::string_view from, std::string_view to)
{
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

FontFacts fullFacts()
{
    return {
        .postScriptName = "Foo-Bold",
        .family = "Foo",
        .style = "Bold",
        .fullName = "Foo Bold",
        .copyright = "© 2020 Foo\nAll rights reserved",
        .trademark = "Foo is a trademark",
        .manufacturer = "Foo Foundry",
        .designer = "A. Designer",
        .vendorURL = "https://example.com",
        .licenseDescription = "The \"Foo\" terms",
        .licenseURL = "https://example.com/eula",
        .licenseFile = "/fonts/LICENSE.txt",
        .os2 = OS2Info{.version = 4, .fsType = 8, .vendorID = "FOO"},
        .filePath = "/fonts/foo.otf",
        .format = "OpenType (CFF)",
        .origin = FontOrigin::folder,
    };
}

constexpr std::string_view fullFactsJson = R"json({
  "postScriptName": "Foo-Bold",
  "family": "Foo",
  "style": "Bold",
  "fullName": "Foo Bold",
  "copyright": "© 2020 Foo\nAll rights reserved",
  "trademark": "Foo is a trademark",
  "manufacturer": "Foo Foundry",
  "designer": "A. Designer",
  "vendorURL": "https://example.com",
  "licenseDescription": "The \"Foo\" terms",
  "licenseURL": "https://example.com/eula",
  "licenseFile": "/fonts/LICENSE.txt",
  "os2": {
    "version": 4,
    "fsType": 8,
    "vendorID": "FOO"
  },
  "filePath": "/fonts/foo.otf",
  "format": "OpenType (CFF)",
  "origin": "folder"
})json";

constexpr std::string_view bareFactsJson = R"({
  "postScriptName": "Foo",
  "family": "Foo",
  "style": "",
  "origin": "document"
})";

FontFacts bareFacts()
{
    FontFacts facts;
    facts.postScriptName = "Foo";
    facts.family = "Foo";
    facts.origin = FontOrigin::document;
    return facts;
}

Assessment someAssessment()
{
    return {
        .verdict = Verdict::likelyOK,
        .headline = "Names the MIT License.",
        .reasons = {"One.", "Two."},
        .license = LicenseKind::mit,
        .appleBundled = true,
    };
}

constexpr std::string_view someAssessmentJson = R"({
  "verdict": "likelyOK",
  "headline": "Names the MIT License.",
  "reasons": [
    "One.",
    "Two."
  ],
  "license": "mit",
  "appleBundled": true
})";

PDFFontInfo someInfo()
{
    return {
        .pdfNames = {"ABCDEF+Foo", "Foo"},
        .subtype = "Type0 / CIDFontType2",
        .program = EmbeddedProgram::cff,
        .subset = true,
        .pages = {1, 3},
        .matchedPath = "/fonts/foo.otf",
        .matchedByFamily = true,
        .readEmbeddedData = false,
    };
}

constexpr std::string_view someInfoJson = R"({
  "pdfNames": [
    "ABCDEF+Foo",
    "Foo"
  ],
  "subtype": "Type0 / CIDFontType2",
  "program": "cff",
  "subset": true,
  "pages": [
    1,
    3
  ],
  "matchedPath": "/fonts/foo.otf",
  "matchedByFamily": true,
  "readEmbeddedData": false
})";

DocumentAudit someAudit()
{
    DocumentAudit audit;
    audit.path = "/books/book.pdf";
    audit.fileName = "book.pdf";
    audit.pageCount = 12;
    audit.checkedAt = system_clock::time_point(1795233600s);
    audit.rows = {AuditRow{bareFacts(), someAssessment(), std::nullopt},
                  AuditRow{fullFacts(), Assessment{}, std::nullopt}};
    return audit;
}

// Encoding

TEST(RecordCoding, FactsAreWrittenWithTheirFieldsInOrder)
{
    EXPECT_EQ(encoded(fullFacts()), fullFactsJson);
}

TEST(RecordCoding, AbsentFactsAreLeftOut)
{
    EXPECT_EQ(encoded(bareFacts()), bareFactsJson);
}

TEST(RecordCoding, AnOS2RecordWithoutAVendorHasNoSuchKey)
{
    FontFacts facts = bareFacts();
    facts.os2 = OS2Info{.version = 0, .fsType = 0xFFFF, .vendorID = std::nullopt};
    EXPECT_EQ(encoded(facts), R"({
  "postScriptName": "Foo",
  "family": "Foo",
  "style": "",
  "os2": {
    "version": 0,
    "fsType": 65535
  },
  "origin": "document"
})");
}

TEST(RecordCoding, AnAssessmentIsWrittenWithItsFieldsInOrder)
{
    EXPECT_EQ(encoded(someAssessment()), someAssessmentJson);
}

TEST(RecordCoding, AnAssessmentWithoutReasonsHasAnEmptyArray)
{
    EXPECT_EQ(encoded(Assessment{}), R"({
  "verdict": "unknown",
  "headline": "",
  "reasons": [],
  "license": "none",
  "appleBundled": false
})");
}

TEST(RecordCoding, APDFsRecordIsWrittenWithItsFieldsInOrder)
{
    EXPECT_EQ(encoded(someInfo()), someInfoJson);
}

TEST(RecordCoding, AnUnmatchedPDFFontHasNoMatchedPath)
{
    EXPECT_EQ(encoded(PDFFontInfo{}), R"({
  "pdfNames": [],
  "subtype": "",
  "program": "notEmbedded",
  "subset": false,
  "pages": [],
  "matchedByFamily": false,
  "readEmbeddedData": false
})");
}

TEST(RecordCoding, ARowIsItsFactsAndAssessmentWithoutThePDFsRecord)
{
    const AuditRow row{bareFacts(), Assessment{}, someInfo()};
    EXPECT_EQ(encoded(row), R"({
  "facts": {
    "postScriptName": "Foo",
    "family": "Foo",
    "style": "",
    "origin": "document"
  },
  "assessment": {
    "verdict": "unknown",
    "headline": "",
    "reasons": [],
    "license": "none",
    "appleBundled": false
  }
})");
}

TEST(RecordCoding, ADocumentIsWrittenWithItsFieldsInOrder)
{
    DocumentAudit audit = someAudit();
    audit.rows.clear();
    EXPECT_EQ(encoded(audit), R"({
  "path": "/books/book.pdf",
  "fileName": "book.pdf",
  "pageCount": 12,
  "checkedAt": "2026-11-21T04:00:00Z",
  "rows": []
})");
}

// Dates

TEST(RecordCoding, DatesAreISO8601InUTC)
{
    EXPECT_EQ(encodeDate(system_clock::time_point(0s)), "1970-01-01T00:00:00Z");
    EXPECT_EQ(encodeDate(system_clock::time_point(1795233600s)), "2026-11-21T04:00:00Z");
    EXPECT_EQ(encodeDate(system_clock::time_point(951'868'799s)), "2000-02-29T23:59:59Z");
}

TEST(RecordCoding, DatesAreCutToTheSecondThatHasBegun)
{
    EXPECT_EQ(encodeDate(system_clock::time_point(1999ms)), "1970-01-01T00:00:01Z");
    EXPECT_EQ(encodeDate(system_clock::time_point(-1ms)), "1969-12-31T23:59:59Z");
}

// Round trips

template <typename Record>
void expectRoundTrip(const Record& record)
{
    const auto decoded = decode<Record>(encoded(record));
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(*decoded, record);
}

TEST(RecordCoding, FactsComeBackAsTheyWere)
{
    expectRoundTrip(fullFacts());
    expectRoundTrip(bareFacts());
}

TEST(RecordCoding, FactsOfEveryOriginComeBack)
{
    for (const FontOrigin origin :
         {FontOrigin::installed, FontOrigin::folder, FontOrigin::document}) {
        FontFacts facts = bareFacts();
        facts.origin = origin;
        expectRoundTrip(facts);
    }
}

TEST(RecordCoding, EmptyTextsComeBackAsEmptyAndNotAsAbsent)
{
    FontFacts facts = bareFacts();
    facts.fullName = "";
    facts.licenseFile = "";
    expectRoundTrip(facts);
}

TEST(RecordCoding, EveryCharacterOfATextComesBack)
{
    FontFacts facts = bareFacts();
    facts.copyright = std::string();
    for (char character = 0; character < 0x7F; ++character)
        *facts.copyright += character;
    *facts.copyright += "\x7F © \uFFFD \u2028 中 😀";
    expectRoundTrip(facts);
}

TEST(RecordCoding, TheLargest16BitNumbersComeBack)
{
    FontFacts facts = bareFacts();
    facts.os2 = OS2Info{.version = 0xFFFF, .fsType = 0xFFFF, .vendorID = "ABCD"};
    expectRoundTrip(facts);
}

TEST(RecordCoding, AssessmentsOfEveryVerdictAndLicenceComeBack)
{
    for (const Verdict verdict : allCases<Verdict>) {
        for (std::size_t kind = 0; kind < rawValues<LicenseKind>.size(); ++kind) {
            Assessment assessment = someAssessment();
            assessment.verdict = verdict;
            assessment.license = static_cast<LicenseKind>(kind);
            expectRoundTrip(assessment);
        }
    }
}

TEST(RecordCoding, PDFRecordsOfEveryProgramComeBack)
{
    for (std::size_t program = 0; program < rawValues<EmbeddedProgram>.size(); ++program) {
        PDFFontInfo info = someInfo();
        info.program = static_cast<EmbeddedProgram>(program);
        expectRoundTrip(info);
    }
    expectRoundTrip(PDFFontInfo{});
}

TEST(RecordCoding, ADocumentComesBack)
{
    expectRoundTrip(someAudit());
    expectRoundTrip(DocumentAudit{});
}

TEST(RecordCoding, ARowComesBackWithoutThePDFsRecord)
{
    const AuditRow row{fullFacts(), someAssessment(), someInfo()};
    EXPECT_EQ(decode<AuditRow>(encoded(row)),
              (AuditRow{fullFacts(), someAssessment(), std::nullopt}));
}

TEST(RecordCoding, TheFirstAndTheLastWholeSecondOfTheClockComeBack)
{
    using std::chrono::seconds;
    DocumentAudit audit;
    audit.checkedAt = std::chrono::ceil<seconds>(system_clock::time_point::min());
    expectRoundTrip(audit);
    audit.checkedAt = std::chrono::floor<seconds>(system_clock::time_point::max());
    expectRoundTrip(audit);
}

// Decoding

TEST(RecordCoding, CompactJsonWithKeysInAnyOrderDecodes)
{
    EXPECT_EQ(decode<FontFacts>(
                  R"({"origin":"document","style":"","family":"Foo","postScriptName":"Foo"})"),
              bareFacts());
}

TEST(RecordCoding, UnknownKeysArePassedOver)
{
    EXPECT_EQ(decode<FontFacts>(replaced(std::string(bareFactsJson), "{",
                                         R"({"later": {"version": [1, 2.5, null]}, )")),
              bareFacts());
}

TEST(RecordCoding, NullMeansAbsentForAnOptionalField)
{
    EXPECT_EQ(decode<FontFacts>(
                  replaced(std::string(bareFactsJson), "{", R"({"fullName": null, "os2": null, )")),
              bareFacts());
}

class RequiredFacts : public testing::TestWithParam<std::string_view> {};

TEST_P(RequiredFacts, MustNotBeMissing)
{
    const std::string key = '"' + std::string(GetParam()) + '"';
    EXPECT_EQ(decode<FontFacts>(replaced(std::string(bareFactsJson), key, R"("other")")),
              std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(RecordCoding, RequiredFacts,
                         testing::Values("postScriptName", "family", "style", "origin"),
                         [](const auto& test) { return std::string(test.param); });

class OptionalFacts : public testing::TestWithParam<std::string_view> {};

TEST_P(OptionalFacts, MayBeMissing)
{
    const std::string key = '"' + std::string(GetParam()) + '"';
    const auto facts = decode<FontFacts>(replaced(std::string(fullFactsJson), key, R"("other")"));
    ASSERT_TRUE(facts.has_value());
    EXPECT_NE(*facts, fullFacts());
}

TEST_P(OptionalFacts, MustNotHaveAnotherType)
{
    const std::string key = '"' + std::string(GetParam()) + '"';
    EXPECT_EQ(decode<FontFacts>(replaced(std::string(bareFactsJson), "{", "{" + key + ": 5, ")),
              std::nullopt);
    EXPECT_EQ(decode<FontFacts>(replaced(std::string(bareFactsJson), "{", "{" + key + ": [], ")),
              std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(RecordCoding, OptionalFacts,
                         testing::Values("fullName", "copyright", "trademark", "manufacturer",
                                         "designer", "vendorURL", "licenseDescription",
                                         "licenseURL", "licenseFile", "os2", "filePath", "format"),
                         [](const auto& test) { return std::string(test.param); });

/// One change to a sound record that makes it unsound.
struct Damage {
    std::string_view name;
    std::string_view from;
    std::string_view to;
};

std::string nameOf(const testing::TestParamInfo<Damage>& test)
{
    return std::string(test.param.name);
}

class DamagedFacts : public testing::TestWithParam<Damage> {};

TEST_P(DamagedFacts, DoNotDecode)
{
    EXPECT_EQ(
        decode<FontFacts>(replaced(std::string(fullFactsJson), GetParam().from, GetParam().to)),
        std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    RecordCoding, DamagedFacts,
    testing::Values(
        Damage{"UnknownOrigin", R"("folder")", R"("cloud")"},
        Damage{"OriginInCapitals", R"("folder")", R"("Folder")"},
        Damage{"OriginIsANumber", R"("folder")", "1"},
        Damage{"NameIsANumber", R"("Foo-Bold")", "1"},
        Damage{"NameIsNull", R"("Foo-Bold")", "null"},
        Damage{"VersionTooLarge", R"("version": 4)", R"("version": 65536)"},
        Damage{"VersionNegative", R"("version": 4)", R"("version": -1)"},
        Damage{"VersionMissing", R"("version": 4,)", ""},
        Damage{"VersionIsAText", R"("version": 4)", R"("version": "4")"},
        Damage{"VersionIsNull", R"("version": 4)", R"("version": null)"},
        Damage{"FsTypeTooLarge", R"("fsType": 8)", R"("fsType": 65536)"},
        Damage{"FsTypeBeyond64Bits", R"("fsType": 8)", R"("fsType": 18446744073709551624)"},
        Damage{"FsTypeAboveSigned64Bits", R"("fsType": 8)", R"("fsType": 9223372036854775816)"},
        Damage{"FsTypeLowestNumber", R"("fsType": 8)", R"("fsType": -9223372036854775808)"},
        Damage{"FsTypeFraction", R"("fsType": 8)", R"("fsType": 8.5)"},
        Damage{"FsTypeBeyondDoubles", R"("fsType": 8)", R"("fsType": 1e999)"},
        Damage{"FsTypeIsAFlag", R"("fsType": 8)", R"("fsType": true)"},
        Damage{"FsTypeMissing", R"("fsType": 8,)", ""},
        Damage{"VendorIsANumber", R"("vendorID": "FOO")", R"("vendorID": 3)"},
        Damage{"LoneSurrogate", "Foo Foundry", R"(\ud800)"},
        Damage{"InvalidUtf8", "Foo Foundry", "\xC3\x28"},
        Damage{"RawControlCharacter", "Foo Foundry", "\x01"},
        Damage{"TrailingComma", R"("folder")", R"("folder",)"}, Damage{"CutOff", "\"\n}", "\"\n"},
        Damage{"TextBehind", "\"\n}", "\"\n} x"}, Damage{"Comment", "{", "{ // facts\n"}),
    nameOf);

class DamagedAssessments : public testing::TestWithParam<Damage> {};

TEST_P(DamagedAssessments, DoNotDecode)
{
    EXPECT_EQ(decode<Assessment>(
                  replaced(std::string(someAssessmentJson), GetParam().from, GetParam().to)),
              std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    RecordCoding, DamagedAssessments,
    testing::Values(Damage{"UnknownVerdict", R"("likelyOK")", R"("fine")"},
                    Damage{"VerdictMissing", R"("verdict")", R"("other")"},
                    Damage{"HeadlineMissing", R"("headline")", R"("other")"},
                    Damage{"ReasonsMissing", R"("reasons")", R"("other")"},
                    Damage{"ReasonIsANumber", R"("Two.")", "2"},
                    Damage{"ReasonsAreAText", "[\n    \"One.\",\n    \"Two.\"\n  ]", R"("One.")"},
                    Damage{"UnknownLicence", R"("mit")", R"("MIT")"},
                    Damage{"LicenceMissing", R"("license")", R"("other")"},
                    Damage{"AppleBundledMissing", R"("appleBundled")", R"("other")"},
                    Damage{"AppleBundledIsANumber", "true", "1"}),
    nameOf);

class DamagedInfos : public testing::TestWithParam<Damage> {};

TEST_P(DamagedInfos, DoNotDecode)
{
    EXPECT_EQ(
        decode<PDFFontInfo>(replaced(std::string(someInfoJson), GetParam().from, GetParam().to)),
        std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    RecordCoding, DamagedInfos,
    testing::Values(Damage{"ProgramInCapitals", R"("cff")", R"("CFF")"},
                    Damage{"NamesMissing", R"("pdfNames")", R"("other")"},
                    Damage{"NameIsNull", R"("Foo")", "null"},
                    Damage{"SubtypeMissing", R"("subtype")", R"("other")"},
                    Damage{"ProgramMissing", R"("program")", R"("other")"},
                    Damage{"SubsetMissing", R"("subset")", R"("other")"},
                    Damage{"PagesMissing", R"("pages")", R"("other")"},
                    Damage{"PageIsAText", "    3", R"(    "3")"},
                    Damage{"PageTooLarge", "    3", "    2147483648"},
                    Damage{"PageTooSmall", "    3", "    -2147483649"},
                    Damage{"MatchedPathIsAFlag", R"("/fonts/foo.otf")", "true"},
                    Damage{"MatchedByFamilyMissing", R"("matchedByFamily")", R"("other")"},
                    Damage{"ReadEmbeddedDataMissing", R"("readEmbeddedData")", R"("other")"}),
    nameOf);

TEST(RecordCoding, AStoredProgramOfCffDecodesAndInCapitalsFails)
{
    const auto info = decode<PDFFontInfo>(someInfoJson);
    ASSERT_TRUE(info.has_value());
    EXPECT_EQ(info->program, EmbeddedProgram::cff);
    EXPECT_EQ(decode<PDFFontInfo>(replaced(std::string(someInfoJson), R"("cff")", R"("CFF")")),
              std::nullopt);
}

TEST(RecordCoding, TheLargestPageNumberDecodes)
{
    const auto info =
        decode<PDFFontInfo>(replaced(std::string(someInfoJson), "    3", "    2147483647"));
    ASSERT_TRUE(info.has_value());
    EXPECT_EQ(info->pages, (std::vector{1, 2147483647}));
}

TEST(RecordCoding, NegativePageNumbersComeBackAsFarAsTheyFit)
{
    const auto pages = [](const std::string& number) {
        const auto info = decode<PDFFontInfo>(replaced(std::string(someInfoJson), "    3", number));
        return info ? info->pages : std::vector<int>{};
    };
    EXPECT_EQ(pages("    -1"), (std::vector{1, -1}));
    EXPECT_EQ(pages("    -2147483648"), (std::vector{1, -2147483647 - 1}));
    EXPECT_EQ(pages("    -2147483649"), std::vector<int>{});
}

class DamagedRows : public testing::TestWithParam<Damage> {};

TEST_P(DamagedRows, DoNotDecode)
{
    const AuditRow row{bareFacts(), someAssessment(), std::nullopt};
    EXPECT_EQ(decode<AuditRow>(replaced(encoded(row), GetParam().from, GetParam().to)),
              std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    RecordCoding, DamagedRows,
    testing::Values(Damage{"FactsMissing", R"("facts")", R"("other")"},
                    Damage{"AssessmentMissing", R"("assessment")", R"("other")"},
                    Damage{"FactsUnsound", R"("origin": "document")", R"("origin": "")"},
                    Damage{"AssessmentUnsound", R"("license": "mit")", R"("license": "")"}),
    nameOf);

class DamagedDocuments : public testing::TestWithParam<Damage> {};

TEST_P(DamagedDocuments, DoNotDecode)
{
    EXPECT_EQ(decode<DocumentAudit>(replaced(encoded(someAudit()), GetParam().from, GetParam().to)),
              std::nullopt);
}

constexpr std::string_view date = "2026-11-21T04:00:00Z";

INSTANTIATE_TEST_SUITE_P(
    RecordCoding, DamagedDocuments,
    testing::Values(Damage{"PathMissing", R"("path")", R"("other")"},
                    Damage{"FileNameMissing", R"("fileName")", R"("other")"},
                    Damage{"PageCountMissing", R"("pageCount")", R"("other")"},
                    Damage{"PageCountTooLarge", ": 12,", ": 2147483648,"},
                    Damage{"RowsMissing", R"("rows")", R"("other")"},
                    Damage{"RowUnsound", R"("origin": "folder")", R"("origin": "")"},
                    Damage{"DateMissing", R"("checkedAt")", R"("other")"},
                    Damage{"DateIsANumber", R"("2026-11-21T04:00:00Z")", "1795233600"},
                    Damage{"DateEmpty", date, ""}, Damage{"DateWithoutTime", date, "2026-11-21"},
                    Damage{"DateWithoutZone", date, "2026-11-21T04:00:00"},
                    Damage{"DateWithOffset", date, "2026-11-21T04:00:00+01:00"},
                    Damage{"DateWithFraction", date, "2026-11-21T04:00:00.5Z"},
                    Damage{"DateWithSpace", date, "2026-11-21 04:00:00Z"},
                    Damage{"DateWithSign", date, "-026-11-21T04:00:00Z"},
                    Damage{"DateWithLetters", date, "2026-1x-21T04:00:00Z"},
                    Damage{"Month0", date, "2026-00-21T04:00:00Z"},
                    Damage{"Month13", date, "2026-13-21T04:00:00Z"},
                    Damage{"Day0", date, "2026-11-00T04:00:00Z"},
                    Damage{"Day31OfNovember", date, "2026-11-31T04:00:00Z"},
                    Damage{"Day29OfAShortFebruary", date, "2026-02-29T04:00:00Z"},
                    Damage{"Hour24", date, "2026-11-21T24:00:00Z"},
                    Damage{"Minute60", date, "2026-11-21T04:60:00Z"},
                    Damage{"Second60", date, "2026-11-21T04:00:60Z"},
                    Damage{"YearBeforeTheClock", date, "1600-01-01T00:00:00Z"},
                    Damage{"YearBeyondTheClock", date, "9999-12-31T23:59:59Z"}),
    nameOf);

TEST(RecordCoding, TheLastSecondOfALeapDayDecodes)
{
    const auto audit =
        decode<DocumentAudit>(replaced(encoded(someAudit()), date, "2000-02-29T23:59:59Z"));
    ASSERT_TRUE(audit.has_value());
    EXPECT_EQ(audit->checkedAt, system_clock::time_point(951'868'799s));
}

class NoRecords : public testing::TestWithParam<std::string_view> {};

TEST_P(NoRecords, DecodeAsNothing)
{
    EXPECT_EQ(decode<FontFacts>(GetParam()), std::nullopt);
    EXPECT_EQ(decode<Assessment>(GetParam()), std::nullopt);
    EXPECT_EQ(decode<PDFFontInfo>(GetParam()), std::nullopt);
    EXPECT_EQ(decode<AuditRow>(GetParam()), std::nullopt);
    EXPECT_EQ(decode<DocumentAudit>(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(RecordCoding, NoRecords,
                         testing::Values("", " ", "{", "}", "{}", "[]", "null", "true", "1", "\"\"",
                                         "[{}]", "not json", "\xEF\xBB\xBF", "\xFF\xFE{\0}\0",
                                         R"({"facts": [], "assessment": {}})"));

// A reader that called itself for each level would run out of stack here.
constexpr std::size_t depth = 100'000;

TEST(RecordCoding, DeepNestingDoesNotDecodeAndDoesNotCrash)
{
    const std::string opening(depth, '[');
    EXPECT_EQ(decode<AuditRow>(opening), std::nullopt);
    EXPECT_EQ(decode<AuditRow>(opening + std::string(depth, ']')), std::nullopt);
    std::string objects;
    for (std::size_t i = 0; i < depth; ++i)
        objects += R"({"facts":)";
    EXPECT_EQ(decode<AuditRow>(objects), std::nullopt);
}

TEST(RecordCoding, DeepNestingUnderAnUnknownKeyIsPassedOver)
{
    const std::string nested = std::string(depth, '[') + std::string(depth, ']');
    EXPECT_EQ(decode<FontFacts>(
                  replaced(std::string(bareFactsJson), "{", "{\"other\": " + nested + ", ")),
              bareFacts());
}

TEST(RecordCoding, EveryBeginningOfADocumentDecodesAsNothing)
{
    const std::string whole = encoded(someAudit());
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(decode<DocumentAudit>(std::string_view(whole).substr(0, size)), std::nullopt);
}

} // namespace
} // namespace quillmark
