#include "library/RegularFile.h"

#include "support/ShortReads.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

namespace quillmark {
namespace {

using test::TemporaryFolder;

std::string textAt(const RegularFile& file, std::uint64_t at, std::size_t length)
{
    std::string text(length, '?');
    text.resize(file.read(at, std::as_writable_bytes(std::span(text))));
    return text;
}

TEST(RegularFile, ReadsAtAnyPosition)
{
    const TemporaryFolder folder;
    const auto file = RegularFile::open(folder.write("a", "0123456789").string());
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size(), 10U);
    EXPECT_EQ(textAt(*file, 0, 4), "0123");
    EXPECT_EQ(textAt(*file, 7, 3), "789");
    EXPECT_EQ(textAt(*file, 7, 9), "789");
    EXPECT_EQ(textAt(*file, 10, 1), "");
    EXPECT_EQ(textAt(*file, 1000, 1), "");
    EXPECT_EQ(textAt(*file, ~std::uint64_t{0}, 1), "");
}

TEST(RegularFile, ReadsOnThroughShortAndInterruptedReads)
{
    const TemporaryFolder folder;
    const auto file = RegularFile::open(folder.write("a", "0123456789").string());
    ASSERT_TRUE(file);
    const test::ShortReads reads(3);
    EXPECT_EQ(textAt(*file, 1, 8), "12345678");
    EXPECT_EQ(textAt(*file, 1, 20), "123456789");
}

TEST(RegularFile, IsFoundFromTheCurrentFolder)
{
    const TemporaryFolder folder;
    folder.write("a", "x");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    const auto file = RegularFile::open("a");
    std::filesystem::current_path(before);
    ASSERT_TRUE(file);
    EXPECT_EQ(textAt(*file, 0, 1), "x");
}

TEST(RegularFile, FollowsALink)
{
    const TemporaryFolder folder;
    folder.write("real", "x");
    std::filesystem::create_symlink("real", folder.path() / "link");
    EXPECT_TRUE(RegularFile::open((folder.path() / "link").string()));
}

TEST(RegularFile, OpensNothingButRegularFiles)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("nowhere", folder.path() / "dangling");
    for (const std::string& path : {folder.path().string(), (folder.path() / "pipe").string(),
                                    std::string("/dev/null"), (folder.path() / "dangling").string(),
                                    (folder.path() / "missing").string(), std::string()})
        EXPECT_FALSE(RegularFile::open(path)) << path;
}

TEST(RegularFile, DoesNotOpenALongPathThroughAFolderThatIsNotThere)
{
    const TemporaryFolder folder;
    std::string path = folder.path().string() + "/missing";
    while (path.size() < 10'000)
        path += "/deeper";
    EXPECT_FALSE(RegularFile::open(path + "/a"));
    EXPECT_FALSE(RegularFile::open(folder.path().string() + std::string(10'000, '/')));
    EXPECT_FALSE(RegularFile::open(std::string(10'000, 'x')));
}

TEST(RegularFile, DoesNotOpenWhatMayNotBeRead)
{
    const TemporaryFolder folder;
    const auto path = folder.write("a", "x");
    EXPECT_TRUE(RegularFile::open(path.string()));
    std::filesystem::permissions(path, std::filesystem::perms::none);
    const test::Unprivileged ordinary(folder.path());
    EXPECT_FALSE(RegularFile::open(path.string()));
}

TEST(RegularFile, ReadsLessFromAFileThatWasCut)
{
    const TemporaryFolder folder;
    const auto path = folder.write("a", "0123456789");
    const auto file = RegularFile::open(path.string());
    ASSERT_TRUE(file);
    std::filesystem::resize_file(path, 4);
    EXPECT_EQ(file->size(), 10U); // as it was when it was opened
    EXPECT_EQ(textAt(*file, 2, 6), "23");
    EXPECT_EQ(textAt(*file, 6, 2), "");
}

TEST(RegularFile, ReadsAFileThatWasRemoved)
{
    const TemporaryFolder folder;
    const auto path = folder.write("a", "0123456789");
    const auto file = RegularFile::open(path.string());
    ASSERT_TRUE(file);
    std::filesystem::remove(path);
    EXPECT_EQ(textAt(*file, 8, 2), "89");
}

TEST(RegularFile, OpensAPathLongerThanTheSystemTakes)
{
    const TemporaryFolder folder;
    std::string path = folder.path().string();
    const std::string name(250, 'n');
    for (int i = 0; i < 40; ++i) {
        // Made relative to the working folder, since the whole path is too long to be made.
        std::filesystem::current_path(i == 0 ? folder.path() : std::filesystem::path(name));
        std::filesystem::create_directory(name);
        path += "/" + name;
    }
    std::filesystem::current_path(name);
    {
        std::filesystem::path font = "font.ttf";
        ASSERT_EQ(::truncate(font.c_str(), 0), -1); // not there yet
        ASSERT_EQ(::mknod(font.c_str(), S_IFREG | 0600, 0), 0);
    }
    std::filesystem::current_path("/");
    EXPECT_GT(path.size(), 10000U);
    EXPECT_TRUE(RegularFile::open(path + "/font.ttf"));
    EXPECT_TRUE(RegularFile::open(path + "///font.ttf"));
    EXPECT_FALSE(RegularFile::open(path + "/none.ttf"));
    EXPECT_FALSE(RegularFile::open(path));
    EXPECT_FALSE(RegularFile::open(path + "/missing" + path + "/font.ttf"));
}

/// What the file at `path` holds, as it is located; absent when it does not open.
std::optional<std::string> located(LastFolder& last, const std::filesystem::path& path)
{
    const auto file = RegularFile::open(last.locate(path.string()));
    return file ? std::optional(textAt(*file, 0, 1)) : std::nullopt;
}

TEST(LastFolder, LocatesFilesInWhateverOrder)
{
    const TemporaryFolder folder;
    for (const char* name : {"a/1", "a/2", "a/b/3", "a/b/4", "c/1"}) {
        std::filesystem::create_directories((folder.path() / name).parent_path());
        folder.write(name, std::string(1, std::string_view(name).back()));
    }
    LastFolder last;
    for (const char* name : {"a/1", "a/2", "a/1", "a/b/3", "a/b/4", "a/2", "c/1", "a/1", "a/2"})
        EXPECT_EQ(located(last, folder.path() / name),
                  std::string_view(name).substr(std::string_view(name).size() - 1))
            << name;
}

TEST(LastFolder, LocatesNothingThatIsNotThere)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "a");
    folder.write("a/1", "1");
    LastFolder last;
    EXPECT_EQ(located(last, folder.path() / "none/1"), std::nullopt);
    EXPECT_EQ(located(last, folder.path() / "none/2"), std::nullopt);
    EXPECT_EQ(located(last, folder.path() / "a/1"), "1");
    EXPECT_EQ(located(last, folder.path() / "a/2"), std::nullopt);
    EXPECT_EQ(located(last, folder.path() / "a/"), std::nullopt);
    EXPECT_EQ(located(last, folder.path() / "a/1"), "1");
}

TEST(LastFolder, LocatesFilesWithoutAFolder)
{
    const TemporaryFolder folder;
    folder.write("1", "1");
    std::filesystem::current_path(folder.path());
    LastFolder last;
    EXPECT_EQ(located(last, "1"), "1");
    EXPECT_EQ(located(last, "./1"), "1");
    EXPECT_EQ(located(last, "./1"), "1");
    EXPECT_EQ(located(last, "1"), "1");
    EXPECT_EQ(located(last, "/1"), std::nullopt);
    EXPECT_EQ(located(last, "/1"), std::nullopt);
    std::filesystem::current_path("/");
}

TEST(LastFolder, KeepsAFolderOpenOnlyUntilAnotherOneComes)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "a");
    folder.write("a/1", "1");
    LastFolder last;
    EXPECT_EQ(located(last, folder.path() / "a/1"), "1");
    EXPECT_EQ(located(last, folder.path() / "a/1"), "1");
    // Another folder that has taken the place of the open one is found after the next one.
    std::filesystem::rename(folder.path() / "a", folder.path() / "b");
    std::filesystem::create_directory(folder.path() / "a");
    folder.write("a/1", "2");
    EXPECT_EQ(located(last, folder.path() / "a/1"), "1");
    EXPECT_EQ(located(last, folder.path() / "b/1"), "1");
    EXPECT_EQ(located(last, folder.path() / "a/1"), "2");
    EXPECT_EQ(located(last, folder.path() / "a/1"), "2");
}

TEST(RegularFile, DoesNotOpenANameLongerThanAnyCanBe)
{
    EXPECT_FALSE(RegularFile::open(std::string(100000, 'a')));
    EXPECT_FALSE(RegularFile::open("/" + std::string(100000, 'a')));
}

} // namespace
} // namespace quillmark
