#include "ReadFolder.h"
#include "files/ProcessMemory.h"
#include "reader/DocumentReader.h"
#include "support/SampleDocument.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace quillmark::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

using Families = std::vector<std::string>;

/// A short patience, for files over which a reader is silent.
reader::Settings impatientReader()
{
    reader::Settings settings = faultyReader();
    settings.silence = std::chrono::milliseconds(1'000);
    return settings;
}

/// The families that are read of a folder with a file of this name among others.
Families readBeside(const std::string& name)
{
    const TemporaryFolder folder;
    for (const char* sound : {"a", "b", "y", "z"})
        writeFont(folder, sound);
    writeFont(folder, name);
    return families(scan(folder, fontReaders(impatientReader())));
}

TEST(Fault, NoneLosesNothing)
{
    EXPECT_EQ(readBeside("c"), (Families{"a", "b", "c", "y", "z"}));
}

TEST(Fault, CrashLosesOneFile)
{
    EXPECT_EQ(readBeside("crash"), (Families{"a", "b", "y", "z"}));
}

TEST(Fault, ExceededMemoryLosesOneFile)
{
    if (isSanitized)
        GTEST_SKIP() << "AddressSanitizer needs the address space that would be limited.";
    EXPECT_EQ(readBeside("memory"), (Families{"a", "b", "y", "z"}));
}

TEST(Fault, OverflownStackLosesOneFile)
{
    EXPECT_EQ(readBeside("overflow"), (Families{"a", "b", "y", "z"}));
}

TEST(Fault, SilenceLosesOneFile)
{
    EXPECT_EQ(readBeside("silent"), (Families{"a", "b", "y", "z"}));
}

TEST(Fault, GarbageInPlaceOfAnAnswerLosesOneFile)
{
    EXPECT_EQ(readBeside("garbage"), (Families{"a", "b", "y", "z"}));
}

TEST(Fault, MessageOfAnnouncedGigabytesLosesOneFile)
{
    EXPECT_EQ(readBeside("endless-message"), (Families{"a", "b", "y", "z"}));
}

TEST(Fault, FalseReportOfTheFileBegunLosesOneFile)
{
    EXPECT_EQ(readBeside("misnamed"), (Families{"a", "b", "y", "z"}));
}

TEST(Fault, FalseReportsInManyFilesLoseJustThose)
{
    const TemporaryFolder folder;
    Families expected;
    for (int i = 0; i < 300; ++i) {
        const std::string number = std::to_string(1000 + i);
        const bool isFaulty = i % 50 == 7;
        writeFont(folder, (isFaulty ? "misnamed" : "font") + number);
        if (!isFaulty) expected.push_back("font" + number);
    }
    EXPECT_EQ(families(scan(folder, fontReaders(faultyReader()))), expected);
}

TEST(Fault, ReportThatNoFileWasBegunEndsInAFailureAndNotInALoop)
{
    EXPECT_THROW(static_cast<void>(readBeside("forgetful")), reader::StartFailure);
}

TEST(Fault, AnswersThatNobodyAskedForEndTheProcessAndNotTheScan)
{
    // Whoever answers ahead can answer for other files; those before it are sound.
    EXPECT_THAT(readBeside("talkative"), testing::IsSupersetOf({"a", "b"}));
}

TEST(Fault, ManyOfThemInOneFolderLoseJustTheirFiles)
{
    const TemporaryFolder folder;
    Families expected;
    for (int i = 0; i < 300; ++i) {
        const std::string number = std::to_string(1000 + i);
        const bool isFaulty = i % 10 == 3;
        writeFont(folder, (isFaulty ? "crash" : "font") + number);
        if (!isFaulty) expected.push_back("font" + number);
    }
    EXPECT_EQ(families(scan(folder, fontReaders(faultyReader()))), expected);
}

TEST(Fault, InEveryFileLeavesNothing)
{
    const TemporaryFolder folder;
    for (int i = 0; i < 40; ++i)
        writeFont(folder, "crash" + std::to_string(i));
    EXPECT_THAT(scan(folder, fontReaders(faultyReader())), SizeIs(0));
}

TEST(Fault, OverADocumentMakesItUnreadable)
{
    const TemporaryFolder folder;
    const auto read = reader::documentReader(std::make_shared<reader::Readers>(impatientReader()));
    for (const char* name : {"crash.pdf", "silent.pdf", "overflow.pdf", "garbage.pdf"}) {
        const auto path = folder.write(name, sampleDocument(1, {{"Foo", {1}, std::nullopt}}));
        const auto result = PDFFontScanner::audit(
            path, read, [](std::string_view) { return std::nullopt; },
            std::chrono::system_clock::now);
        const auto* error = std::get_if<PDFCheckError>(&result);
        ASSERT_NE(error, nullptr) << name;
        EXPECT_EQ(error->message(), std::string(name) + " couldn't be opened as a PDF.");
    }
    const auto path = folder.write("sound.pdf", sampleDocument(1, {{"Foo", {1}, std::nullopt}}));
    EXPECT_EQ(read(path), PDFFontScanner::read(path));
}

TEST(Fault, OverTheListOfInstalledFontsIsAFailureAndNoEmptyList)
{
    EXPECT_THROW(static_cast<void>(fontReaders(faultyReader())->installed()), std::runtime_error);
}

TEST(Fault, InOneOfTwoScansAtOnceLeavesTheOtherAlone)
{
    const TemporaryFolder sound;
    const TemporaryFolder faulty;
    for (int i = 0; i < 200; ++i) {
        writeFont(sound, "font" + std::to_string(1000 + i));
        writeFont(faulty, (i % 5 == 0 ? "crash" : "font") + std::to_string(1000 + i));
    }
    const auto expected = scan(sound, std::make_shared<LocalFontFiles>());
    const auto files = fontReaders(faultyReader());
    std::jthread other([&] {
        for (int round = 0; round < 5; ++round)
            EXPECT_THAT(scan(faulty, files), SizeIs(160));
    });
    for (int round = 0; round < 5; ++round)
        EXPECT_EQ(scan(sound, files), expected);
}

} // namespace
} // namespace quillmark::test
