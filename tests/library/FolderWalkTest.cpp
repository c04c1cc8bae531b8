#include "library/FolderWalk.h"

#include "library/Limits.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Whether folders are listed as on a file system that does not tell what its entries are. The
/// entry "vanishing.ttf" is gone then when it is asked for.
bool isWithoutTypes = false;

/// The paths of the fonts found below `folder`, relative to it.
std::vector<std::string> fontsBelow(const fs::path& folder)
{
    std::vector<std::string> paths;
    const std::string prefix = fs::canonical(folder).string() + "/";
    for (const auto& font : walkFolder(fs::canonical(folder)).fonts) {
        EXPECT_TRUE(font.path.starts_with(prefix)) << font.path;
        paths.push_back(font.path.substr(prefix.size()));
    }
    return paths;
}

std::vector<std::string> fullPaths(const fs::path& folder)
{
    std::vector<std::string> paths;
    for (const auto& font : walkFolder(folder).fonts)
        paths.push_back(font.path);
    return paths;
}

TEST(FontExtension, TheSevenExtensionsCountInAnyCase)
{
    for (const char* name : {"a.ttf", "a.otf", "a.ttc", "a.otc", "a.dfont", "a.woff", "a.woff2",
                             "a.TTF", "a.Otf", "a.WOFF2", "a.b.ttf"})
        EXPECT_TRUE(hasFontExtension(name)) << name;
}

TEST(FontExtension, OtherExtensionsDoNotCount)
{
    for (const char* name : {"a.pfb", "a.pcf", "a.eot", "a.svg", "a.ttf~", "a.ttf.bak", "ttf",
                             ".ttf", "a.", "a.woff3", "a.tt", "a.ttfx", ""})
        EXPECT_FALSE(hasFontExtension(name)) << name;
}

TEST(FolderWalk, TakesEntriesInByteOrderAndSubfoldersInTheirPlace)
{
    const TemporaryFolder folder;
    for (const char* name : {"b.ttf", "a.ttf", "Z.ttf", "m/y.otf", "m/x/1.woff", "m.ttf",
                             "\u00E4.ttf", "m-2/0.ttc", "10.ttf", "9.ttf"})
        folder.write(name, "");
    EXPECT_THAT(fontsBelow(folder.path()),
                ElementsAre("10.ttf", "9.ttf", "Z.ttf", "a.ttf", "b.ttf", "m/x/1.woff", "m/y.otf",
                            "m-2/0.ttc", "m.ttf", "\u00E4.ttf"));
}

TEST(FolderWalk, LeavesOutHiddenFilesAndFolders)
{
    const TemporaryFolder folder;
    for (const char* name : {".hidden.ttf", ".ttf", ".folder/a.ttf", "seen/.deep.ttf", "seen/b.ttf",
                             "..two.ttf", "seen/.OFL.txt"})
        folder.write(name, "");
    EXPECT_THAT(fontsBelow(folder.path()), ElementsAre("seen/b.ttf"));
    for (const auto& candidates : walkFolder(folder.path()).licenseCandidates)
        EXPECT_THAT(candidates, IsEmpty());
}

TEST(FolderWalk, EntersAHiddenFolderThatWasAskedFor)
{
    const TemporaryFolder folder;
    folder.write(".fonts/a.ttf", "");
    EXPECT_THAT(fullPaths(folder.path() / ".fonts"),
                ElementsAre((folder.path() / ".fonts/a.ttf").string()));
}

TEST(FolderWalk, EntersAFolderNamedLikeAFont)
{
    const TemporaryFolder folder;
    folder.write("a.ttf/inner.ttf", "");
    EXPECT_THAT(fontsBelow(folder.path()), ElementsAre("a.ttf/inner.ttf"));
}

TEST(FolderWalk, FollowsLinksToFiles)
{
    const TemporaryFolder folder;
    folder.write("elsewhere/real.bin", "");
    fs::create_directory(folder.path() / "fonts");
    fs::create_symlink("../elsewhere/real.bin", folder.path() / "fonts/link.ttf");
    fs::create_symlink("link.ttf", folder.path() / "fonts/link2.ttf");
    EXPECT_THAT(fontsBelow(folder.path() / "fonts"), ElementsAre("link.ttf", "link2.ttf"));
}

TEST(FolderWalk, LeavesOutDanglingAndLoopingLinks)
{
    const TemporaryFolder folder;
    fs::create_symlink("nowhere.ttf", folder.path() / "dangling.ttf");
    fs::create_symlink("loop.ttf", folder.path() / "loop.ttf");
    fs::create_symlink("nowhere.txt", folder.path() / "OFL.txt");
    const FolderContents contents = walkFolder(folder.path());
    EXPECT_THAT(contents.fonts, IsEmpty());
    EXPECT_THAT(contents.licenseCandidates, ElementsAre(IsEmpty()));
}

TEST(FolderWalk, DoesNotEnterLinksToFolders)
{
    const TemporaryFolder folder;
    folder.write("fonts/a.ttf", "");
    fs::create_directory(folder.path() / "other");
    fs::create_directory_symlink(folder.path() / "fonts", folder.path() / "other/link");
    fs::create_directory_symlink(folder.path() / "fonts", folder.path() / "other/link.ttf");
    EXPECT_THAT(fontsBelow(folder.path() / "other"), IsEmpty());
}

TEST(FolderWalk, EndsWhereALinkLeadsBack)
{
    const TemporaryFolder folder;
    folder.write("sub/a.ttf", "");
    fs::create_directory_symlink(folder.path(), folder.path() / "sub/up");
    fs::create_directory_symlink(".", folder.path() / "self");
    EXPECT_THAT(fontsBelow(folder.path()), ElementsAre("sub/a.ttf"));
}

TEST(FolderWalk, LeavesOutPipesSocketsAndDevicesAndLinksToThem)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder.path() / "pipe.ttf").c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo((folder.path() / "OFL").c_str(), 0600), 0);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_GE(socket, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string socketPath = (folder.path() / "socket.ttf").string();
    ASSERT_LT(socketPath.size(), sizeof address.sun_path);
    socketPath.copy(address.sun_path, socketPath.size());
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    fs::create_symlink("/dev/null", folder.path() / "device.ttf");
    fs::create_symlink("/dev/zero", folder.path() / "LICENSE");
    fs::create_symlink("pipe.ttf", folder.path() / "link-to-pipe.ttf");
    folder.write("real.ttf", "");

    const FolderContents contents = walkFolder(folder.path());
    ASSERT_THAT(contents.fonts, SizeIs(1));
    EXPECT_EQ(contents.fonts[0].path, (folder.path() / "real.ttf").string());
    EXPECT_THAT(contents.licenseCandidates, ElementsAre(IsEmpty()));
    ::close(socket);
}

TEST(FolderWalk, AsksWhatEntriesAreWhereTheFileSystemDoesNotTell)
{
    const TemporaryFolder folder;
    for (const char* name : {"a.ttf", "vanishing.ttf", "sub/b.ttf", "OFL.txt"})
        folder.write(name, "");
    fs::create_symlink("a.ttf", folder.path() / "link.ttf");
    fs::create_symlink("sub", folder.path() / "linked");
    ASSERT_EQ(::mkfifo((folder.path() / "pipe.ttf").c_str(), 0600), 0);
    isWithoutTypes = true;
    const auto fonts = fontsBelow(folder.path());
    const auto candidates = licenseCandidates(folder.path());
    isWithoutTypes = false;
    EXPECT_THAT(fonts, ElementsAre("a.ttf", "link.ttf", "sub/b.ttf"));
    EXPECT_THAT(candidates, ElementsAre(folder.path() / "OFL.txt"));
    EXPECT_FALSE(fs::exists(folder.path() / "vanishing.ttf"));
}

TEST(FolderWalk, KeepsNamesThatAreNotUtf8AsBytes)
{
    const TemporaryFolder folder;
    folder.write("\xFF.ttf", "");
    folder.write("\xFE.ttf", "");
    folder.write("\xC3\xA4.ttf", "");
    EXPECT_THAT(fontsBelow(folder.path()), ElementsAre("\xC3\xA4.ttf", "\xFE.ttf", "\xFF.ttf"));
}

TEST(FolderWalk, KeepsLicenceCandidatesByFolderInByteOrder)
{
    const TemporaryFolder folder;
    for (const char* name :
         {"a.ttf", "OFL.txt", "LICENSE.pdf", "COPYING", "README.md", "sub/b.ttf", "sub/license.md"})
        folder.write(name, "");
    fs::create_directory(folder.path() / "License"); // a folder is no licence text
    fs::create_symlink("OFL.txt", folder.path() / "ofl-link.txt");
    const FolderContents contents = walkFolder(folder.path());
    ASSERT_THAT(contents.fonts, SizeIs(2));
    const auto& top = contents.licenseCandidates.at(contents.fonts[0].folder);
    const auto& sub = contents.licenseCandidates.at(contents.fonts[1].folder);
    EXPECT_THAT(top, ElementsAre(folder.path() / "COPYING", folder.path() / "OFL.txt",
                                 folder.path() / "ofl-link.txt"));
    EXPECT_THAT(sub, ElementsAre(folder.path() / "sub/license.md"));
    EXPECT_EQ(licenseCandidates(folder.path()), top);
    EXPECT_EQ(licenseCandidates(folder.path() / "sub"), sub);
}

TEST(FolderWalk, FindsNothingInAMissingFolderOrAFile)
{
    const TemporaryFolder folder;
    EXPECT_THAT(walkFolder(folder.path() / "missing").fonts, IsEmpty());
    EXPECT_THAT(walkFolder(folder.write("a.ttf", "")).fonts, IsEmpty());
    EXPECT_THAT(walkFolder("").fonts, IsEmpty());
    EXPECT_THAT(licenseCandidates(folder.path() / "missing"), IsEmpty());
}

TEST(FolderWalk, CountsAnUnreadableSubfolderAsEmpty)
{
    const TemporaryFolder folder;
    folder.write("closed/a.ttf", "");
    folder.write("open/b.ttf", "");
    EXPECT_THAT(fontsBelow(folder.path()), ElementsAre("closed/a.ttf", "open/b.ttf"));
    fs::permissions(folder.path() / "closed", fs::perms::none);
    {
        const test::Unprivileged ordinary(folder.path());
        EXPECT_THAT(fontsBelow(folder.path()), ElementsAre("open/b.ttf"));
    }
    fs::permissions(folder.path() / "closed", fs::perms::owner_all);
}

TEST(FolderWalk, TakesALinkATrailingSlashAndDotsForTheFolderItself)
{
    const TemporaryFolder folder;
    const std::string font = folder.write("fonts/a.ttf", "").string();
    fs::create_directory_symlink("fonts", folder.path() / "link");
    EXPECT_THAT(fullPaths(folder.path() / "fonts/"), ElementsAre(font));
    EXPECT_THAT(fullPaths(folder.path() / "./fonts//."), ElementsAre(font));
    EXPECT_THAT(fullPaths(folder.path() / "fonts/../fonts"), ElementsAre(font));
    EXPECT_THAT(fullPaths(folder.path() / "link"),
                ElementsAre((folder.path() / "link/a.ttf").string()));
    EXPECT_THAT(fullPaths(folder.path() / "link/"),
                ElementsAre((folder.path() / "link/a.ttf").string()));
}

TEST(FolderWalk, DoesNotCutDotsBehindALink)
{
    const TemporaryFolder folder;
    folder.write("a/b/deep.ttf", "");
    folder.write("a/beside.ttf", "");
    folder.write("wrong.ttf", "");
    fs::create_directory_symlink("a/b", folder.path() / "link");
    EXPECT_THAT(fullPaths(folder.path() / "link/.."),
                ElementsAre((folder.path() / "link/../b/deep.ttf").string(),
                            (folder.path() / "link/../beside.ttf").string()));
}

TEST(FolderWalk, MakesARelativeFolderAbsolute)
{
    const TemporaryFolder folder;
    const std::string font = folder.write("fonts/a.ttf", "").string();
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    EXPECT_THAT(fullPaths("fonts"), ElementsAre(font));
    EXPECT_THAT(fullPaths("."), ElementsAre(font));
    fs::current_path(before);
}

/// Folders inside one another, made and removed without ever naming the whole path.
class DeepFolders {
public:
    DeepFolders(const fs::path& top, int depth) : m_top(top.string()), m_depth(depth)
    {
        int folder = ::open(m_top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        for (int i = 0; i < depth; ++i) {
            if (::mkdirat(folder, name, 0700) != 0) throw std::runtime_error("mkdirat");
            folder = descend(folder);
        }
        const int font = ::openat(folder, "deep.ttf", O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        ::close(font);
        ::close(folder);
    }
    ~DeepFolders()
    {
        // Each folder is emptied from inside the one above it, which ".." leads back to.
        int folder = ::open(m_top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        for (int i = 0; i < m_depth; ++i)
            folder = descend(folder);
        ::unlinkat(folder, "deep.ttf", 0);
        for (int i = 0; i < m_depth; ++i) {
            const int up = ::openat(folder, "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            ::close(folder);
            folder = up;
            ::unlinkat(folder, name, AT_REMOVEDIR);
        }
        ::close(folder);
    }
    DeepFolders(const DeepFolders&) = delete;
    DeepFolders& operator=(const DeepFolders&) = delete;

private:
    static constexpr const char* name = "d";

    static int descend(int folder)
    {
        const int next = ::openat(folder, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(folder);
        return next;
    }

    std::string m_top;
    int m_depth;
};

TEST(FolderWalk, FindsAFontBelowFiveThousandFolders)
{
    // In memory where that is possible: on a disk, making the folders takes long.
    const fs::path memory = "/dev/shm";
    const TemporaryFolder folder(fs::is_directory(memory) ? memory : fs::temp_directory_path());
    const DeepFolders deep(folder.path(), 5000);
    const FolderContents contents = walkFolder(folder.path());
    ASSERT_THAT(contents.fonts, SizeIs(1));
    EXPECT_EQ(contents.fonts[0].path.size(),
              folder.path().string().size() + 10'000 + std::string("/deep.ttf").size());
}

TEST(FolderWalk, DoesNotEnterFoldersWhosePathsTakeMoreThan16KiB)
{
    static_assert(Limits::pathBytes == 16384);
    const fs::path memory = "/dev/shm";
    const TemporaryFolder folder(fs::is_directory(memory) ? memory : fs::temp_directory_path());
    folder.write("a.ttf", "");
    const DeepFolders deep(folder.path(), 8192);
    EXPECT_THAT(fontsBelow(folder.path()), ElementsAre("a.ttf"));
}

} // namespace
} // namespace quillmark

/// Stands before the C library's function of this name.
extern "C" dirent* readdir(DIR* folder)
{
    const auto genuine = reinterpret_cast<decltype(readdir)*>(::dlsym(RTLD_NEXT, "readdir"));
    dirent* const entry = genuine(folder);
    if (entry != nullptr && quillmark::isWithoutTypes) {
        entry->d_type = DT_UNKNOWN;
        if (std::string_view(entry->d_name) == "vanishing.ttf")
            ::unlinkat(::dirfd(folder), entry->d_name, 0);
    }
    return entry;
}
