#include "library/SystemFontService.h"

#include "Fonts.h"
#include "Tables.h"
#include "library/FontLibrary.h"
#include "support/FontContainers.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

using test::Bytes;
using test::FontBytes;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

/// An environment variable, put back at the end.
class Environment {
public:
    Environment(const char* name, const std::string& value) : m_name(name)
    {
        if (const char* before = std::getenv(name)) m_before = before;
        ::setenv(name, value.c_str(), 1);
    }
    ~Environment()
    {
        if (m_before)
            ::setenv(m_name, m_before->c_str(), 1);
        else
            ::unsetenv(m_name);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* m_name;
    std::optional<std::string> m_before;
};

Bytes fileBytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_FALSE(text.empty()) << path << " is missing: is its package installed?";
    return test::ascii(text);
}

Bytes dejaVu()
{
    return fileBytes("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
}

/// The bytes of a real font with other names: fontconfig lists no font without glyphs.
Bytes renamed(const std::vector<std::pair<std::uint16_t, std::u16string_view>>& names,
              const std::vector<test::TableBytes>& more = {})
{
    FontBytes font;
    font.face();
    for (auto& table : test::tablesOf(dejaVu())) {
        if (table.tag == "name")
            font.table("name", test::namesTable(names));
        else
            font.table(table.tag, std::move(table.bytes));
    }
    for (const test::TableBytes& table : more)
        font.table(table.tag, table.bytes);
    return font.build();
}

/// A set of installed fonts of a test's own.
class InstalledSet : public testing::Test {
protected:
    InstalledSet()
    {
        m_folder.write("fonts.conf",
                       "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n"
                       "<fontconfig><dir>" +
                           path("fonts").string() + "</dir><dir>" + path("more").string() +
                           "</dir><cachedir>" + path("cache").string() +
                           "</cachedir></fontconfig>\n");
        fs::create_directories(path("fonts"));
    }

    [[nodiscard]] fs::path path(const std::string& relative) const
    {
        return m_folder.path() / relative;
    }

    TemporaryFolder m_folder;
    Environment m_environment{"FONTCONFIG_FILE", path("fonts.conf").string()};
};

TEST_F(InstalledSet, NamesEveryFontOnce)
{
    m_folder.write("fonts/a.ttf", renamed({{1, u"Alpha"}, {6, u"Alpha-Regular"}}));
    m_folder.write("fonts/b.ttf", renamed({{1, u"Beta"}, {6, u"Beta-Regular"}}));
    m_folder.write("fonts/sub/copy.ttf", renamed({{1, u"Alpha"}, {6, u"Alpha-Regular"}}));
    const SystemFontService service;
    EXPECT_THAT(service.installedNames(), UnorderedElementsAre("Alpha-Regular", "Beta-Regular"));
    EXPECT_EQ(service.installedNames(), service.installedNames());
}

TEST_F(InstalledSet, FindsAFontByItsExactNameOnly)
{
    const auto file = m_folder.write(
        "fonts/a.ttf", renamed({{1, u"Alpha"}, {4, u"Alpha Full"}, {6, u"Alpha-Regular"}}));
    const SystemFontService service;
    const auto font = service.installedFont("Alpha-Regular");
    ASSERT_TRUE(font);
    EXPECT_EQ(font->postScriptName, "Alpha-Regular");
    EXPECT_EQ(font->path, file);
    EXPECT_EQ(test::summary(*font), "0 format 3 name Alpha fsType 0");
    for (const char* other : {"alpha-regular", "Alpha", "Alpha Full", "Helvetica", "sans", ""})
        EXPECT_FALSE(service.installedFont(other)) << other;
}

TEST_F(InstalledSet, AFontWithoutName6IsInstalledByItsFullNameWithoutSpaces)
{
    m_folder.write("fonts/a.ttf", renamed({{1, u"Alpha"}, {4, u"Alpha Full Name"}}));
    EXPECT_THAT(SystemFontService().installedNames(), ElementsAre("AlphaFullName"));
}

TEST_F(InstalledSet, AFontWithoutNamesIsInstalledByItsFileName)
{
    m_folder.write("fonts/No Name.ttf", renamed({{1, u"Alpha"}}));
    EXPECT_THAT(SystemFontService().installedNames(), ElementsAre("No Name"));
}

TEST_F(InstalledSet, EveryFaceOfACollectionIsInstalled)
{
    m_folder.write("fonts/c.ttc", test::collectionOf({renamed({{1, u"One"}, {6, u"One"}}),
                                                      renamed({{1, u"Two"}, {6, u"Two"}}),
                                                      renamed({{1, u"Three"}, {6, u"Three"}})}));
    const SystemFontService service;
    EXPECT_THAT(service.installedNames(), ElementsAre("One", "Two", "Three"));
    EXPECT_EQ(service.installedFont("Three")->index, 2U);
}

/// An `fvar` table with one axis and one instance, named 2 in the `name` table.
Bytes fvarTable()
{
    test::ByteWriter table;
    table.u16(1).u16(0).u16(16).u16(2).u16(1).u16(20).u16(1).u16(8);
    table.text("wght").u32(100U << 16U).u32(400U << 16U).u32(900U << 16U).u16(0).u16(1);
    return table.u16(2).u16(0).u32(700U << 16U).build();
}

TEST_F(InstalledSet, AVariableFontIsOneFontAndItsInstancesAreNone)
{
    m_folder.write("fonts/v.ttf", renamed({{1, u"Var"}, {2, u"Bold"}, {6, u"Var-Regular"}},
                                          {{"fvar", fvarTable()}}));
    const SystemFontService service;
    EXPECT_THAT(service.installedNames(), ElementsAre("Var-Regular"));
    const auto fonts = FontLibrary::installedFonts(service, Collator("en"));
    const auto instances = FontLibrary::namedInstances(service, fonts);
    ASSERT_THAT(instances, SizeIs(1));
    EXPECT_EQ(instances[0].postScriptName, "Var-Bold");
}

TEST_F(InstalledSet, OfOneNameAnSfntFontComesBeforeType1AndThatBeforeABitmapFont)
{
    m_folder.write("fonts/1.bdf", test::bdfFont());
    m_folder.write("fonts/2.pfb", test::type1Font({.postScriptName = "1"}));
    EXPECT_EQ(SystemFontService().installedFont("1")->format, FontFormat::postScript);
    m_folder.write("fonts/3.ttf", renamed({{1, u"Sfnt"}, {6, u"1"}}));
    const SystemFontService service;
    EXPECT_THAT(service.installedNames(), ElementsAre("1"));
    EXPECT_EQ(service.installedFont("1")->format, FontFormat::trueType);
}

TEST_F(InstalledSet, OfOneNameAndKindTheFirstFolderOfFontconfigWins)
{
    m_folder.write("more/a.ttf", renamed({{1, u"Second"}, {6, u"Same"}}));
    m_folder.write("fonts/z.ttf", renamed({{1, u"First"}, {6, u"Same"}}));
    EXPECT_EQ(SystemFontService().installedFont("Same")->path, path("fonts/z.ttf"));
}

TEST_F(InstalledSet, Type1AndBitmapFontsAreListedWithTheirNames)
{
    m_folder.write("fonts/old.pfb", test::type1Font());
    m_folder.write("fonts/tiny.bdf", test::bdfFont({.family = "Tiny"}));
    const SystemFontService service;
    EXPECT_THAT(service.installedNames(), UnorderedElementsAre("LegacyFont", "tiny"));
    const auto fonts = FontLibrary::installedFonts(service, Collator("en"));
    ASSERT_THAT(fonts, SizeIs(2));
    EXPECT_EQ(fonts[0].family, "Legacy Font");
    EXPECT_EQ(fonts[0].copyright, "Copyright of the legacy font");
    EXPECT_EQ(fonts[0].format, "PostScript Type 1");
    EXPECT_EQ(fonts[1].family, "Tiny");
    EXPECT_EQ(fonts[1].format, "Bitmap");
}

TEST_F(InstalledSet, WebFontsAreListedByTheirExtension)
{
    m_folder.write("fonts/w.woff",
                   fileBytes("/usr/share/fonts-font-awesome/fonts/fontawesome-webfont.woff"));
    const auto fonts = FontLibrary::installedFonts(SystemFontService(), Collator("en"));
    ASSERT_THAT(fonts, SizeIs(1));
    EXPECT_EQ(fonts[0].postScriptName, "FontAwesome");
    EXPECT_EQ(fonts[0].format, "WOFF");
}

TEST_F(InstalledSet, FacesThatFontconfigRejectsAreNotInstalled)
{
    m_folder.write("fonts/c.ttc", test::collectionOf({renamed({{1, u"Keep"}, {6, u"Keep"}}),
                                                      renamed({{1, u"Drop"}, {6, u"Drop"}})}));
    m_folder.write("fonts.conf",
                   "<?xml version=\"1.0\"?>\n<fontconfig><dir>" + path("fonts").string() +
                       "</dir><cachedir>" + path("cache").string() +
                       "</cachedir><selectfont><rejectfont><pattern><patelt name=\"family\">"
                       "<string>Drop</string></patelt></pattern></rejectfont></selectfont>"
                       "</fontconfig>\n");
    EXPECT_THAT(SystemFontService().installedNames(), ElementsAre("Keep"));
}

TEST_F(InstalledSet, AFontThatIsGoneSinceTheListingIsLeftOut)
{
    m_folder.write("fonts/stay.ttf", renamed({{1, u"Stay"}, {6, u"Stay"}}));
    const auto gone = m_folder.write("fonts/gone.ttf", renamed({{1, u"Gone"}, {6, u"Gone"}}));
    EXPECT_THAT(SystemFontService().installedNames(), SizeIs(2)); // fills fontconfig's cache
    // With the folder's time set back, fontconfig takes its cache to be current.
    const auto time = fs::last_write_time(path("fonts"));
    fs::remove(gone);
    fs::last_write_time(path("fonts"), time);
    EXPECT_THAT(SystemFontService().installedNames(), ElementsAre("Stay"));
}

TEST_F(InstalledSet, TheListIsKeptUntilANewServiceIsMade)
{
    m_folder.write("fonts/a.ttf", renamed({{1, u"A"}, {6, u"A"}}));
    const SystemFontService before;
    EXPECT_THAT(before.installedNames(), ElementsAre("A"));
    m_folder.write("fonts/sub/b.ttf", renamed({{1, u"B"}, {6, u"B"}}));
    EXPECT_THAT(before.installedNames(), ElementsAre("A"));
    EXPECT_THAT(SystemFontService().installedNames(), UnorderedElementsAre("A", "B"));
}

TEST_F(InstalledSet, MayBeAskedFromSeveralThreadsAtOnce)
{
    for (int i = 0; i < 20; ++i) {
        const std::u16string name = u"Font" + std::u16string(1, static_cast<char16_t>(u'A' + i));
        m_folder.write("fonts/" + std::to_string(i) + ".ttf", renamed({{1, name}, {6, name}}));
    }
    const SystemFontService service;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&service] {
            EXPECT_THAT(service.installedNames(), SizeIs(20));
            EXPECT_TRUE(service.installedFont("FontA"));
        });
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(InstalledSet, SeveralServicesMayListAtOnce)
{
    m_folder.write("fonts/a.ttf", renamed({{1, u"A"}, {6, u"A"}}));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back(
            [] { EXPECT_THAT(SystemFontService().installedNames(), ElementsAre("A")); });
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(InstalledSet, ASystemRootIsPutBeforeTheFiles)
{
    // fontconfig 2.14 looks for the fonts under the root but opens them without it, to see what
    // they are; so there are two of the file, and ours must come from under the root.
    const Bytes font = renamed({{1, u"A"}, {6, u"A"}});
    m_folder.write("fonts/a.ttf", font);
    const fs::path root = path("root");
    const auto inside = [&root](const fs::path& outside) { return root / outside.relative_path(); };
    fs::create_directories(inside(path("fonts")));
    fs::copy_file(path("fonts/a.ttf"), inside(path("fonts/a.ttf")));
    fs::copy_file(path("fonts.conf"), inside(path("fonts.conf")));
    const Environment variable("FONTCONFIG_SYSROOT", root.string());
    const SystemFontService service;
    ASSERT_THAT(service.installedNames(), ElementsAre("A"));
    EXPECT_EQ(service.installedFont("A")->path, inside(path("fonts/a.ttf")));
}

TEST_F(InstalledSet, NothingIsInstalledInAnEmptySet)
{
    EXPECT_THAT(SystemFontService().installedNames(), IsEmpty());
}

TEST_F(InstalledSet, ABrokenConfigurationListsNothingAndFailsNothing)
{
    for (const char* text :
         {"", "this is no XML", "<fontconfig><dir>", "<?xml version=\"1.0\"?>"}) {
        m_folder.write("fonts.conf", text);
        EXPECT_FALSE(SystemFontService().installedFont("Alpha")) << text;
    }
}

TEST(SystemFontServiceFiles, FacesHaveTheFilesPathAndNoNameOfTheService)
{
    const TemporaryFolder folder;
    const auto path = folder.write("a.ttf", test::fontFile(u"A", u"A-Regular"));
    const auto faces = SystemFontService().facesOf(path, Faces::all);
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_EQ(faces[0].path, path);
    EXPECT_EQ(faces[0].postScriptName, "");
}

TEST(SystemFontServiceFiles, OtherThingsThanFontsHaveNoFaces)
{
    const TemporaryFolder folder;
    const SystemFontService service;
    for (const fs::path& path :
         {folder.path(), folder.path() / "missing.ttf", folder.write("text.ttf", "no font"),
          folder.write("empty.ttf", ""), fs::path("/dev/null"), fs::path()})
        EXPECT_THAT(service.facesOf(path, Faces::all), IsEmpty()) << path;
}

TEST(SystemFontServiceFiles, AMisnamedFileIsReadAsWhatItIs)
{
    const TemporaryFolder folder;
    const Bytes name = test::namesTable({{1, u"Real"}});
    const SystemFontService service;
    const std::vector<std::pair<Bytes, const char*>> files{
        {test::woff2({.tables = {{.tag = "name", .bytes = name}}}).build(),
         "0 format - name Real fsType -"},
        {test::woff(test::trueTypeVersion, {{"name", name}}).build(),
         "0 format - name Real fsType -"},
        {FontBytes().face("OTTO").table("name", name).build(), "0 format 1 name Real fsType -"},
        {test::type1Font(), "0 format 4 name - fsType -"},
        {test::dfont({dejaVu()}), "0 format 3 name DejaVu Sans fsType 0"},
    };
    for (const char* file : {"a.ttf", "a.otf", "a.woff", "a.woff2", "a.dfont", "a"})
        for (const auto& [bytes, summary] : files)
            EXPECT_THAT(test::summaries(service.facesOf(folder.write(file, bytes), Faces::all)),
                        ElementsAre(summary))
                << file;
}

TEST(SystemFontServiceFiles, ADamagedSfntFontIsNotTriedAsAnythingElse)
{
    // FreeType would open this one: it has 512 tables, which is one too many.
    test::ByteWriter font = FontBytes().face().name(1, u"A").os2({}).writer();
    font.zeros(20000).overwrite16("face0.numTables", 512);
    const TemporaryFolder folder;
    EXPECT_THAT(SystemFontService().facesOf(folder.write("a.ttf", font.build()), Faces::all),
                IsEmpty());
}

/// One record of a scan, in one line.
std::string line(const FontFacts& facts)
{
    return fs::path(*facts.filePath).filename().string() + " | " + facts.postScriptName + " | " +
           facts.family + " | " + facts.style + " | " + *facts.format + " | " +
           (facts.os2 ? std::to_string(facts.os2->fsType) : "-") + " | " +
           facts.licenseURL.value_or("-");
}

TEST(RealFonts, OfEveryListedExtensionAreScanned)
{
    // Font Awesome comes in four forms, WenQuanYi as a collection; the two containers that no
    // package has are made from them.
    const fs::path awesome = "/usr/share/fonts-font-awesome/fonts";
    const TemporaryFolder folder;
    const Bytes trueType = fileBytes(awesome / "fontawesome-webfont.ttf");
    const Bytes openType = fileBytes(awesome / "FontAwesome.otf");
    folder.write("1.ttf", trueType);
    folder.write("2.otf", openType);
    folder.write("3.ttc", fileBytes("/usr/share/fonts/truetype/wqy/wqy-microhei.ttc"));
    folder.write("4.otc", test::collectionOf({openType, trueType}));
    folder.write("5.dfont", test::dfont({dejaVu()}));
    folder.write("6.woff", fileBytes(awesome / "fontawesome-webfont.woff"));
    folder.write("7.woff2", fileBytes(awesome / "fontawesome-webfont.woff2"));

    std::vector<std::string> lines;
    for (const FontFacts& facts :
         FontLibrary::scanFolder(SystemFontService(), Collator("en"), folder.path()))
        lines.push_back(line(facts));
    const std::string site = "http://fontawesome.io/license/";
    const std::string apache = "http://www.apache.org/licenses/LICENSE-2.0";
    const std::string dejaVuSite = "http://dejavu.sourceforge.net/wiki/index.php/License";
    EXPECT_THAT(
        lines,
        ElementsAre("5.dfont | DejaVuSans | DejaVu Sans | Book | TrueType | 0 | " + dejaVuSite,
                    "1.ttf | FontAwesome | FontAwesome | Regular | TrueType | 0 | " + site,
                    "2.otf | FontAwesome | FontAwesome | Regular | OpenType (CFF) | 0 | " + site,
                    "4.otc | FontAwesome | FontAwesome | Regular | OpenType (CFF) | 0 | " + site,
                    "6.woff | FontAwesome | FontAwesome | Regular | WOFF | 0 | " + site,
                    "7.woff2 | FontAwesome | FontAwesome | Regular | WOFF2 | 0 | " + site,
                    "3.ttc | WenQuanYiMicroHei | WenQuanYi Micro Hei | Regular | TrueType "
                    "collection | 8 | " +
                        apache,
                    "3.ttc | WenQuanYiMicroHeiMono | WenQuanYi Micro Hei Mono | Regular | TrueType "
                    "collection | 8 | " +
                        apache));
}

} // namespace
} // namespace quillmark
