#include "reader/Messages.h"

#include "reader/Limits.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace quillmark::reader {
namespace {

/// Hands the messages in `bytes` to an answer; where it ended or broke.
template <typename SomeAnswer>
Progress add(SomeAnswer& answer, std::string_view bytes)
{
    FrameBuffer buffer(Limits::messageBytes);
    Progress progress = Progress::goesOn;
    while (!bytes.empty()) {
        const std::span<char> room = buffer.room();
        const std::size_t count = std::min(room.size(), bytes.size());
        std::ranges::copy(bytes.substr(0, count), room.begin());
        buffer.filled(count);
        bytes.remove_prefix(count);
        while (const auto frame = buffer.next()) {
            progress = answer.add(*frame);
            if (progress != Progress::goesOn) return progress;
        }
    }
    return progress;
}

TEST(Messages, FacesComeBackWithTheirPath)
{
    PlatformFont full;
    full.postScriptName = "Foo-Bold";
    full.index = 3;
    full.format = FontFormat::openTypePostScript;
    full.os2.emplace(60, std::byte{7});
    full.settledNames = NameStrings{{0, "(c) Foo"}, {1, "Foo"}, {17, "Bold \u00E9"}};
    PlatformFont variable;
    variable.settledInstances = {{"Foo-Thin", "Thin", "Foo Thin"}, {"Foo-Fat", "Fat", "Foo Fat"}};
    PlatformFont empty;
    empty.settledNames.emplace();
    empty.settledInstances.emplace();

    std::string bytes;
    for (const PlatformFont& face : {full, variable, empty})
        writeFace(bytes, face);
    writeEnd(bytes);
    FacesAnswer answer;
    ASSERT_EQ(add(answer, bytes), Progress::ended);
    const auto faces = answer.take("/f/a.ttc");
    ASSERT_EQ(faces.size(), 3U);
    for (const PlatformFont& face : faces)
        EXPECT_EQ(face.path, "/f/a.ttc");
    EXPECT_EQ(faces[0].postScriptName, "Foo-Bold");
    EXPECT_EQ(faces[0].index, 3U);
    EXPECT_EQ(faces[0].format, FontFormat::openTypePostScript);
    EXPECT_EQ(faces[0].os2, full.os2);
    EXPECT_EQ(faces[0].settledNames, full.settledNames);
    EXPECT_FALSE(faces[0].settledInstances);
    EXPECT_FALSE(faces[1].settledNames || faces[1].os2 || faces[1].format);
    EXPECT_EQ(faces[1].settledInstances, variable.settledInstances);
    EXPECT_EQ(faces[2].settledNames, empty.settledNames);
    EXPECT_EQ(faces[2].settledInstances, empty.settledInstances);
    EXPECT_TRUE(answer.take("/f/b.ttc").empty());
}

TEST(Messages, OnlyTheBeginningOfAnOS2TableIsSent)
{
    PlatformFont face;
    face.os2 = std::vector<std::byte>(100'000, std::byte{7});
    std::string bytes;
    writeFace(bytes, face);
    EXPECT_LT(bytes.size(), 200U);
}

TEST(Messages, InstalledFilesKeepBytesThatAreNoText)
{
    const InstalledFile file{"/fonts/b\xFFook.ttc", {0, 2}};
    std::string bytes;
    writeInstalledFile(bytes, file);
    writeEnd(bytes);
    InstalledFilesAnswer answer;
    ASSERT_EQ(add(answer, bytes), Progress::ended);
    const auto files = answer.take();
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].path, file.path);
    EXPECT_EQ(files[0].faces, file.faces);
}

DocumentFonts sampleFonts()
{
    DocumentFonts document;
    document.pageCount = 70'000;
    DocumentFont font;
    font.baseName = "Foo";
    font.pdfNames = {"ABCDEF+Foo", "Foo"};
    font.subtype = "Type0 / CIDFontType2";
    font.program = EmbeddedProgram::type3;
    font.subset = true;
    font.pages = {1, 2, 3, 7, 9, 69'999, 70'000};
    document.fonts.push_back(font);
    FontFacts facts;
    facts.postScriptName = "Foo";
    facts.family = "Foo";
    facts.style = "Bold";
    facts.fullName = "Foo Bold";
    facts.copyright = "(c) Foo";
    facts.trademark = "Foo is a mark";
    facts.manufacturer = "Foo Works";
    facts.designer = "F. Oo";
    facts.vendorURL = "https://works.example";
    facts.licenseDescription = "Free for all";
    facts.licenseURL = "https://foo.example";
    facts.licenseFile = "/OFL.txt";
    facts.filePath = "/foo.ttf";
    facts.format = "TrueType";
    facts.os2 = OS2Info{4, 8, "FOO"};
    facts.origin = FontOrigin::document;
    font.embedded = facts;
    font.pages = {};
    document.fonts.push_back(font);
    return document;
}

std::string written(const DocumentFonts& document)
{
    std::string bytes;
    for (const DocumentFont& font : document.fonts)
        writeDocumentFont(bytes, font);
    writeEnd(bytes, document.pageCount);
    return bytes;
}

TEST(Messages, DocumentsComeBack)
{
    DocumentAnswer answer;
    ASSERT_EQ(add(answer, written(sampleFonts())), Progress::ended);
    EXPECT_EQ(answer.take(), PDFFontScanner::Reading(sampleFonts()));
    std::string bytes;
    writeError(bytes, PDFCheckError::Kind::locked);
    ASSERT_EQ(add(answer, bytes), Progress::ended);
    EXPECT_EQ(answer.take(), PDFFontScanner::Reading(PDFCheckError::Kind::locked));
}

TEST(Messages, AllPagesOfALongDocumentTakeAFewBytes)
{
    DocumentFont font;
    for (int page = 1; page <= 50'000; ++page)
        font.pages.push_back(page);
    std::string bytes;
    writeDocumentFont(bytes, font);
    EXPECT_LT(bytes.size(), 64U);
}

TEST(Messages, DamagedInAnyByteGiveSomethingOrBreak)
{
    const std::string sound = written(sampleFonts());
    int broken = 0;
    for (std::size_t at = 0; at < sound.size(); ++at) {
        for (const char value : {'\0', '\x01', '\x7F', '\xFF'}) {
            std::string bytes = sound;
            bytes[at] = value;
            DocumentAnswer answer;
            if (add(answer, bytes) == Progress::broken) ++broken;
        }
    }
    EXPECT_GT(broken, 0);
}

/// A font's message with these runs of pages.
std::string withRuns(const std::vector<std::pair<std::uint64_t, std::uint64_t>>& runs)
{
    std::string bytes;
    FrameWriter writer(bytes, static_cast<std::uint32_t>(Answer::documentFont));
    writer.text("Foo");
    writer.u32(0);
    writer.text("Type1");
    writer.u8(0);
    writer.u8(0);
    writer.compact(runs.size());
    for (const auto& [distance, count] : runs) {
        writer.compact(distance);
        writer.compact(count);
    }
    writer.u8(0);
    return bytes;
}

TEST(Messages, PagesThatNoDocumentHasBreakTheAnswer)
{
    constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
    constexpr std::uint64_t lastPage = std::numeric_limits<int>::max();
    const auto result = [](const auto& runs) {
        DocumentAnswer answer;
        return add(answer, withRuns(runs));
    };
    using Runs = std::vector<std::pair<std::uint64_t, std::uint64_t>>;
    EXPECT_EQ(result(Runs{{lastPage, 1}}), Progress::goesOn);
    EXPECT_EQ(result(Runs{{lastPage, 2}}), Progress::broken);
    EXPECT_EQ(result(Runs{{0, 1}}), Progress::broken);
    EXPECT_EQ(result(Runs{{1, 0}}), Progress::broken);
    EXPECT_EQ(result(Runs{{huge, 1}}), Progress::broken);
    EXPECT_EQ(result(Runs{{1, huge}}), Progress::broken);
    EXPECT_EQ(result(Runs{{1, 16'000'001}}), Progress::broken); // together more than are kept
    EXPECT_EQ(result(Runs{{1, 9'000'000}, {2, 9'000'000}}), Progress::broken);
}

TEST(Messages, FontsBehindTheLimitOfPagesHaveOnePageEach)
{
    DocumentAnswer answer;
    EXPECT_EQ(add(answer, withRuns({{1, 15'999'999}})), Progress::goesOn);
    for (int font = 0; font < 3; ++font)
        EXPECT_EQ(add(answer, withRuns({{7, 1}})), Progress::goesOn);
    std::string end;
    writeEnd(end, 20'000'000);
    ASSERT_EQ(add(answer, end), Progress::ended);
    const auto reading = answer.take();
    EXPECT_EQ(std::get<DocumentFonts>(reading).fonts.back().pages, std::vector<int>{7});

    EXPECT_EQ(add(answer, withRuns({{1, 16'000'000}})), Progress::goesOn);
    EXPECT_EQ(add(answer, withRuns({{7, 2}})), Progress::broken);
}

TEST(Messages, EndlessFacesBreakTheAnswer)
{
    std::string bytes;
    for (int i = 0; i < 10'000; ++i)
        writeFace(bytes, {});
    FacesAnswer answer;
    EXPECT_EQ(add(answer, bytes), Progress::broken);
}

TEST(Messages, OfAnotherKindBreakTheAnswer)
{
    std::string face;
    writeFace(face, {});
    std::string file;
    writeInstalledFile(file, {"/f", {}});
    DocumentAnswer document;
    EXPECT_EQ(add(document, face), Progress::broken);
    FacesAnswer faces;
    EXPECT_EQ(add(faces, file), Progress::broken);
    InstalledFilesAnswer files;
    EXPECT_EQ(add(files, face), Progress::broken);
}

} // namespace
} // namespace quillmark::reader
