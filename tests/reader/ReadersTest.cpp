#include "reader/Readers.h"

#include "ReadFolder.h"
#include "reader/DocumentReader.h"
#include "support/FontContainers.h"
#include "support/PDFEncryption.h"
#include "support/SampleDocument.h"

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

using testing::IsEmpty;

TEST(FontReaders, ReadAFolderAsTheLocalFilesDo)
{
    const TemporaryFolder folder;
    for (int i = 0; i < 500; ++i)
        writeFont(folder, "font" + std::to_string(i));
    folder.write("collection.ttc", FontBytes()
                                       .face()
                                       .name(1, u"One")
                                       .name(6, u"One")
                                       .face("OTTO")
                                       .name(1, u"Zwei \u00E4\u00F6\u00FC")
                                       .name(4, u"Zwei ohne Namen")
                                       .os2({.fsType = 2})
                                       .build());
    folder.write("nameless.otf", FontBytes().face("OTTO").build());
    folder.write("broken.ttf", "no font");
    folder.write("empty.woff2", "");
    folder.write("OFL.txt", "This Font Software is licensed under the SIL Open Font License");
    const auto expected = scan(folder, std::make_shared<LocalFontFiles>());
    EXPECT_GT(expected.size(), 500U);
    const auto files = fontReaders(ordinaryReader());
    EXPECT_EQ(scan(folder, files), expected);
    EXPECT_EQ(scan(folder, files), expected); // by the same processes
}

TEST(FontReaders, ReadOneFileAndNone)
{
    const TemporaryFolder folder;
    const std::string path = writeFont(folder, "font");
    const SystemFontService here;
    const SystemFontService service(fontReaders(ordinaryReader()));
    EXPECT_EQ(FontLibrary::readFile(service, path, FontOrigin::folder),
              FontLibrary::readFile(here, path, FontOrigin::folder));
    EXPECT_THAT(service.facesOf(folder.path() / "gone.ttf", Faces::all), IsEmpty());
    service.facesOfEach({}, Faces::all,
                        [](std::size_t, std::vector<PlatformFont>&&) { FAIL() << "no file"; });
}

TEST(FontReaders, ListTheInstalledFontsAndTheirInstancesAsThisProcessDoes)
{
    const Collator order("en");
    const SystemFontService here;
    const SystemFontService service(fontReaders(ordinaryReader()));
    const auto expected = FontLibrary::installedFonts(here, order);
    EXPECT_EQ(FontLibrary::installedFonts(service, order), expected);
    EXPECT_EQ(FontLibrary::namedInstances(service, expected),
              FontLibrary::namedInstances(here, expected));
}

TEST(FontReaders, HandOnTheFirstExceptionOfTheirCaller)
{
    const TemporaryFolder folder;
    std::vector<std::string> paths;
    for (int i = 0; i < 1'000; ++i)
        paths.push_back(writeFont(folder, "font" + std::to_string(i)));
    const auto files = fontReaders(ordinaryReader());
    std::atomic<int> taken = 0;
    const auto take = [&](std::size_t, std::vector<PlatformFont>&&) {
        if (++taken == 10) throw std::runtime_error("enough");
    };
    EXPECT_THROW(files->facesOfEach(paths, Faces::all, take), std::runtime_error);
    EXPECT_LT(taken, 1'000);
}

TEST(Readers, WithoutTheirProgramSayWhichIsMissing)
{
    const TemporaryFolder folder;
    const std::string program = folder.path() / "gone";
    const auto files = fontReaders({.program = program});
    const std::vector<std::string> paths{writeFont(folder, "font")};
    try {
        files->facesOfEach(paths, Faces::all, [](std::size_t, std::vector<PlatformFont>&&) {});
        FAIL() << "there is no such program";
    } catch (const reader::StartFailure& failure) {
        EXPECT_EQ(std::string(failure.what()),
                  "the program " + program + " cannot be started: No such file or directory");
    }
}

TEST(Readers, WithAProgramThatEndsAtOnceSayThatItDoesNotWork)
{
    const TemporaryFolder folder;
    const auto files = fontReaders({.program = "/bin/true"});
    const std::vector<std::string> paths{writeFont(folder, "font")};
    EXPECT_THROW(
        files->facesOfEach(paths, Faces::all, [](std::size_t, std::vector<PlatformFont>&&) {}),
        reader::StartFailure);
}

TEST(DocumentReader, ReadsWhatThisProcessReads)
{
    const TemporaryFolder folder;
    const auto read = reader::documentReader(std::make_shared<reader::Readers>(ordinaryReader()));
    const Bytes program = FontBytes()
                              .face()
                              .name(0, u"(c) Foo")
                              .name(1, u"Foo")
                              .name(6, u"Foo")
                              .name(13, u"All rights reserved")
                              .os2({.fsType = 2})
                              .build();
    const std::string text =
        sampleDocument(9, {{"ABCDEF+Foo", {1, 2, 3, 7, 9}, program}, {"Bar", {2}, std::nullopt}});
    const auto expectSame = [&](const std::filesystem::path& path) {
        EXPECT_EQ(read(path), PDFFontScanner::read(path)) << path;
    };
    expectSame(folder.write("sound.pdf", text));
    expectSame(folder.write("cut.pdf", text.substr(0, text.size() / 2)));
    expectSame(folder.write("none.pdf", "no PDF"));
    expectSame(folder.path() / "gone.pdf");
    expectSame(folder.path());
    const Bytes bytes = ascii(text);
    // GnuTLS is loaded by a process that is confined already.
    expectSame(folder.write("aes.pdf", encrypted(bytes, Encryption::aesWith256Bits, "")));
    expectSame(folder.write("locked.pdf", encrypted(bytes, Encryption::aesWith256Bits, "secret")));
    const auto sound = read(folder.path() / "aes.pdf");
    ASSERT_TRUE(std::holds_alternative<DocumentFonts>(sound));
    EXPECT_EQ(std::get<DocumentFonts>(sound).fonts.size(), 2U);
}

} // namespace
} // namespace quillmark::test
