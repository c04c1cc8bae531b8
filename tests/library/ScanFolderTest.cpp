#include "library/FontLibrary.h"

#include "Fonts.h"
#include "library/FolderWalk.h"
#include "library/SystemFontService.h"
#include "support/FakeFontService.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

using test::FakeFontService;
using test::fontFile;
using test::platformFont;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Scans a temporary folder in which a test has put real files.
class ScanFolder : public testing::Test {
protected:
    [[nodiscard]] std::vector<FontFacts> scan() const { return scan(m_folder.path()); }
    [[nodiscard]] std::vector<FontFacts> scan(const fs::path& path) const
    {
        return FontLibrary::scanFolder(m_service, m_order, path);
    }
    [[nodiscard]] std::string path(const std::string& relative) const
    {
        return (m_folder.path() / relative).string();
    }

    TemporaryFolder m_folder;
    SystemFontService m_service;
    Collator m_order{"en"};
};

std::vector<std::string> names(const std::vector<FontFacts>& fonts)
{
    std::vector<std::string> found;
    found.reserve(fonts.size());
    for (const FontFacts& font : fonts)
        found.push_back(font.postScriptName);
    return found;
}

TEST_F(ScanFolder, ALicenceFileBesideAFontGivesItsTextAndPath)
{
    m_folder.write("Foo-Regular.ttf", fontFile(u"Foo", u"Foo-Regular"));
    m_folder.write("OFL.txt", "SIL OPEN FONT LICENSE\n");
    m_folder.write("README.md", "Read me");
    const auto fonts = scan();
    ASSERT_THAT(fonts, SizeIs(1));
    EXPECT_EQ(fonts[0].licenseDescription, "SIL OPEN FONT LICENSE");
    EXPECT_EQ(fonts[0].licenseFile, path("OFL.txt"));
    EXPECT_EQ(fonts[0].filePath, path("Foo-Regular.ttf"));
    EXPECT_EQ(fonts[0].origin, FontOrigin::folder);
    EXPECT_EQ(fonts[0].format, "TrueType");
}

TEST_F(ScanFolder, TwoLicenceFilesOfOtherFontsAreNotAttached)
{
    m_folder.write("Foo.ttf", fontFile(u"Foo", u"Foo"));
    m_folder.write("OFL.txt", "one");
    m_folder.write("LICENSE-Bar.txt", "two");
    const auto fonts = scan();
    ASSERT_THAT(fonts, SizeIs(1));
    EXPECT_EQ(fonts[0].licenseDescription, std::nullopt);
    EXPECT_EQ(fonts[0].licenseFile, std::nullopt);
}

TEST_F(ScanFolder, ALicenceFileInTheFolderAboveIsNotUsed)
{
    m_folder.write("OFL.txt", "above");
    m_folder.write("fonts/Foo.ttf", fontFile(u"Foo", u"Foo"));
    m_folder.write("fonts/deeper/OFL.txt", "below");
    EXPECT_EQ(scan().at(0).licenseDescription, std::nullopt);
}

TEST_F(ScanFolder, AFontWithItsOwnLicenceTextOrAddressGetsNoLicenceFile)
{
    m_folder.write("OFL.txt", "beside");
    m_folder.write("a.ttf",
                   test::FontBytes().face().name(1, u"A").name(6, u"A").name(13, u"own").build());
    m_folder.write("b.ttf",
                   test::FontBytes().face().name(1, u"B").name(6, u"B").name(14, u"url").build());
    const auto fonts = scan();
    ASSERT_THAT(names(fonts), ElementsAre("A", "B"));
    EXPECT_EQ(fonts[0].licenseDescription, "own");
    EXPECT_EQ(fonts[0].licenseFile, std::nullopt);
    EXPECT_EQ(fonts[1].licenseDescription, std::nullopt);
    EXPECT_EQ(fonts[1].licenseURL, "url");
    EXPECT_EQ(fonts[1].licenseFile, std::nullopt);
}

TEST_F(ScanFolder, ACollectionGivesARecordForEachFace)
{
    test::FontBytes collection;
    for (const char16_t* name : {u"One", u"Two", u"Three"})
        collection.face().name(1, name).name(6, name).os2({.fsType = 4});
    m_folder.write("three.ttc", collection.build());
    const auto fonts = scan();
    EXPECT_THAT(names(fonts), ElementsAre("One", "Three", "Two"));
    for (const FontFacts& font : fonts) {
        EXPECT_EQ(font.filePath, path("three.ttc"));
        EXPECT_EQ(font.format, "TrueType collection");
    }
}

TEST_F(ScanFolder, FacesOfOneNameInOneFileGiveOneRecord)
{
    test::FontBytes collection;
    collection.face().name(1, u"First").name(6, u"Same");
    collection.face().name(1, u"Second").name(6, u"Same");
    m_folder.write("same.ttc", collection.build());
    const auto fonts = scan();
    ASSERT_THAT(fonts, SizeIs(1));
    EXPECT_EQ(fonts[0].family, "First");
}

TEST_F(ScanFolder, TheSameFontInTwoFilesGivesTwoRecordsInTheWalksOrder)
{
    m_folder.write("b/foo.ttf", fontFile(u"Foo", u"Foo"));
    m_folder.write("a/foo.ttf", fontFile(u"Foo", u"Foo"));
    fs::create_symlink("b/foo.ttf", m_folder.path() / "link.ttf");
    const auto fonts = scan();
    ASSERT_THAT(fonts, SizeIs(3));
    EXPECT_EQ(fonts[0].filePath, path("a/foo.ttf"));
    EXPECT_EQ(fonts[1].filePath, path("b/foo.ttf"));
    EXPECT_EQ(fonts[2].filePath, path("link.ttf"));
}

TEST_F(ScanFolder, OfAFileGivesWhatAScanOfItsFolderGivesForIt)
{
    test::FontBytes collection;
    for (const char16_t* name : {u"Zeta", u"Alpha", u"Zeta"})
        collection.face().name(1, name).name(6, name);
    collection.face().name(1, u"Mu").name(6, u"Mu").name(13, u"own");
    const auto file = m_folder.write("four.ttc", collection.build());
    m_folder.write("OFL.txt", "text");
    const LicenseFile::Candidates beside(licenseCandidates(m_folder.path()));
    const auto fonts = FontLibrary::scanFile(m_service, m_order, file, beside);
    EXPECT_EQ(fonts, scan());
    ASSERT_THAT(names(fonts), ElementsAre("Alpha", "Mu", "Zeta"));
    EXPECT_EQ(fonts[0].licenseFile, path("OFL.txt"));
    EXPECT_EQ(fonts[1].licenseFile, std::nullopt);
    EXPECT_EQ(fonts[2].licenseDescription, "text");
}

TEST_F(ScanFolder, CopyingIsALicenceFileAndLicensePdfIsNone)
{
    m_folder.write("a/Foo.ttf", fontFile(u"Foo", u"Foo"));
    m_folder.write("a/License.pdf", "no text");
    m_folder.write("b/Bar.ttf", fontFile(u"Bar", u"Bar"));
    m_folder.write("b/COPYING", "text");
    const auto fonts = scan();
    ASSERT_THAT(names(fonts), ElementsAre("Bar", "Foo"));
    EXPECT_EQ(fonts[0].licenseDescription, "text");
    EXPECT_EQ(fonts[0].licenseFile, path("b/COPYING"));
    EXPECT_EQ(fonts[1].licenseFile, std::nullopt);
}

TEST_F(ScanFolder, IsSortedByFamilyThenStyleWithNumbersByValue)
{
    m_folder.write("1.ttf", fontFile(u"Font 10", u"F10"));
    m_folder.write("2.ttf", fontFile(u"Font 9", u"F9"));
    m_folder.write(
        "3.ttf",
        test::FontBytes().face().name(1, u"Font 9").name(2, u"Bold").name(6, u"F9-Bold").build());
    EXPECT_THAT(names(scan()), ElementsAre("F9-Bold", "F9", "F10"));
}

TEST_F(ScanFolder, OneBadFileDoesNotHideTheOthers)
{
    m_folder.write("empty.ttf", "");
    m_folder.write("garbage.otf", "this is no font, whatever its name says");
    const test::Bytes whole = fontFile(u"Cut", u"Cut");
    m_folder.write("cut.ttf", std::span(whole).first(20));
    m_folder.write("good.ttf", fontFile(u"Good", u"Good"));
    m_folder.write("short.woff2", "wOF2");
    EXPECT_THAT(names(scan()), ElementsAre("Good"));
}

TEST_F(ScanFolder, UnreadableFilesAndFoldersDoNotHideTheOthers)
{
    m_folder.write("good.ttf", fontFile(u"Good", u"Good"));
    const auto file = m_folder.write("closed.ttf", fontFile(u"Closed", u"Closed"));
    const auto folder = m_folder.write("closed/a.ttf", fontFile(u"A", u"A")).parent_path();
    fs::create_symlink("gone.ttf", m_folder.path() / "dangling.ttf");
    EXPECT_THAT(names(scan()), ElementsAre("A", "Closed", "Good"));
    fs::permissions(file, fs::perms::none);
    fs::permissions(folder, fs::perms::none);
    {
        const test::Unprivileged ordinary(m_folder.path());
        EXPECT_THAT(names(scan()), ElementsAre("Good"));
    }
    fs::permissions(folder, fs::perms::owner_all);
}

TEST_F(ScanFolder, APipeNamedLikeAFontIsNotWaitedFor)
{
    ASSERT_EQ(::mkfifo((m_folder.path() / "pipe.ttf").c_str(), 0600), 0);
    m_folder.write("good.ttf", fontFile(u"Good", u"Good"));
    EXPECT_THAT(names(scan()), ElementsAre("Good"));
}

TEST_F(ScanFolder, FileNamesThatLookAlikeAreBothListed)
{
    m_folder.write("\xFF.ttf", fontFile(u"Foo", u"Foo"));
    m_folder.write("\xFE.ttf", fontFile(u"Foo", u"Foo"));
    const auto fonts = scan();
    ASSERT_THAT(fonts, SizeIs(2));
    EXPECT_EQ(fonts[0].filePath, path("\uFFFD.ttf"));
    EXPECT_EQ(fonts[1].filePath, path("\uFFFD.ttf"));
}

TEST_F(ScanFolder, ALicenceFileWhoseNameIsNotUtf8IsReadAndShown)
{
    m_folder.write("a.ttf", fontFile(u"Foo", u"Foo"));
    m_folder.write("OFL\xFF.txt", "text");
    const auto fonts = scan();
    ASSERT_THAT(fonts, SizeIs(1));
    EXPECT_EQ(fonts[0].licenseDescription, "text");
    EXPECT_EQ(fonts[0].licenseFile, path("OFL\uFFFD.txt"));
}

TEST_F(ScanFolder, ContentAndNotTheExtensionDecidesHowAFileIsRead)
{
    m_folder.write("a.otf", fontFile(u"TrueType in otf", u"A"));
    m_folder.write("b.ttf",
                   test::FontBytes().face("OTTO").name(1, u"CFF in ttf").name(6, u"B").build());
    m_folder.write("c.woff", fontFile(u"Plain in woff", u"C"));
    const auto fonts = scan();
    ASSERT_THAT(names(fonts), ElementsAre("B", "C", "A"));
    EXPECT_EQ(fonts[0].format, "OpenType (CFF)");
    EXPECT_EQ(fonts[1].format, "TrueType");
    EXPECT_EQ(fonts[2].format, "TrueType");
}

TEST_F(ScanFolder, AMissingFolderGivesNothing)
{
    EXPECT_THAT(scan(m_folder.path() / "missing"), IsEmpty());
}

TEST_F(ScanFolder, TheResultIsTheSameEveryTimeAndOnOneCore)
{
    for (int i = 0; i < 200; ++i) {
        const std::string name = "font" + std::to_string(i);
        m_folder.write(name + ".ttf", fontFile(i % 3 == 0 ? u"Alpha" : u"Beta", u"Same"));
    }
    const auto first = scan();
    ASSERT_THAT(first, SizeIs(200));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(scan(), first);

    cpu_set_t all;
    ASSERT_EQ(::sched_getaffinity(0, sizeof all, &all), 0);
    cpu_set_t one;
    CPU_ZERO(&one);
    std::size_t core = 0;
    while (!CPU_ISSET(core, &all))
        ++core;
    CPU_SET(core, &one);
    ASSERT_EQ(::sched_setaffinity(0, sizeof one, &one), 0);
    EXPECT_EQ(scan(), first);
    ASSERT_EQ(::sched_setaffinity(0, sizeof all, &all), 0);
}

TEST_F(ScanFolder, FilesThatChangeAndVanishMeanwhileDoNotStopIt)
{
    for (int i = 0; i < 50; ++i)
        m_folder.write("stay" + std::to_string(i) + ".ttf", fontFile(u"Stay", u"Stay"));
    const test::Bytes changing = fontFile(u"Changing", u"Changing");
    const auto changed = m_folder.write("changing.ttf", changing);
    std::atomic<bool> isDone{false};
    std::atomic<int> changes{0};
    std::thread changer([&] {
        while (!isDone) {
            m_folder.write("changing.ttf", std::span(changing).first(60));
            m_folder.write("changing.ttf", changing);
            fs::remove(m_folder.write("sub/vanishing.ttf", changing));
            fs::remove(m_folder.path() / "sub");
            fs::rename(m_folder.write("new.tmp", changing), changed);
            ++changes;
        }
    });
    int scans = 0;
    while (scans < 20 || changes < 20) {
        const auto fonts = scan();
        EXPECT_EQ(std::ranges::count(fonts, "Stay", &FontFacts::family), 50);
        ++scans;
    }
    isDone = true;
    changer.join();
}

TEST(ScanFolderWithService, AsksTheServiceForEveryFontFile)
{
    const TemporaryFolder folder;
    FakeFontService service;
    for (const char* name : {"a.ttf", "b.otf", "c.ttc", "d.otc", "e.dfont", "f.woff", "g.woff2"}) {
        PlatformFont font = platformFont(name, {{1, u"Foo"}});
        font.path = folder.write(name, "");
        service.files[*font.path] = {font};
    }
    folder.write("h.pfb", "");
    service.files[folder.path() / "h.pfb"] = {platformFont("h")};
    EXPECT_THAT(names(FontLibrary::scanFolder(service, Collator("en"), folder.path())),
                ElementsAre("a.ttf", "b.otf", "c.ttc", "d.otc", "e.dfont", "f.woff", "g.woff2"));
}

TEST(ScanFolderWithService, AFaceWithoutAPathGetsNoLicenceFile)
{
    const TemporaryFolder folder;
    folder.write("OFL.txt", "text");
    FakeFontService service;
    service.files[folder.write("a.ttf", "")] = {platformFont("A")};
    const auto fonts = FontLibrary::scanFolder(service, Collator("en"), folder.path());
    ASSERT_THAT(fonts, SizeIs(1));
    EXPECT_EQ(fonts[0].licenseDescription, std::nullopt);
}

} // namespace
} // namespace quillmark
