#include "library/AbsolutePath.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace quillmark {
namespace {

using test::TemporaryFolder;

TEST(AbsolutePath, HasNoDotsAndNoSlashAtItsEnd)
{
    const std::string here = std::filesystem::current_path();
    EXPECT_EQ(absolutePath("."), here);
    EXPECT_EQ(absolutePath("./"), here);
    EXPECT_EQ(absolutePath("Fonts/"), here + "/Fonts");
    EXPECT_EQ(absolutePath("/nowhere//a/./b/../c/"), "/nowhere/a/c");
    EXPECT_EQ(absolutePath("/"), "/");
    EXPECT_EQ(absolutePath("//"), "/");
}

TEST(AbsolutePath, KeepsTheDotsAfterALinkToAnotherFolder)
{
    const TemporaryFolder folder;
    folder.write("elsewhere/inner/x", "");
    folder.write("y", "");
    std::filesystem::create_directory_symlink(folder.path() / "elsewhere/inner",
                                              folder.path() / "link");
    EXPECT_EQ(absolutePath(folder.path() / "link/.."), folder.path() / "link/..");
}

} // namespace
} // namespace quillmark
