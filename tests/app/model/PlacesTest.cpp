#include "model/QtText.h"
#include "model/UserPlaces.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

/// Sets environment variables for as long as it lives.
class Variables : public testing::Test {
protected:
    void SetUp() override
    {
        for (const char* name : names)
            m_before.push_back(qgetenv(name));
        qputenv("HOME", "/home/anna");
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_CONFIG_HOME");
    }
    void TearDown() override
    {
        for (std::size_t i = 0; i < m_before.size(); ++i)
            if (m_before[i].isNull())
                qunsetenv(names[i]);
            else
                qputenv(names[i], m_before[i]);
    }

private:
    static constexpr std::array names{"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"};
    std::vector<QByteArray> m_before;
};

using Places = Variables;

TEST_F(Places, AreBelowTheHomeFolderByDefault)
{
    const UserPlaces places = UserPlaces::standard();
    EXPECT_EQ(places.dataFolder, "/home/anna/.local/share/Quillmark");
    EXPECT_EQ(places.notesFile(), "/home/anna/.local/share/Quillmark/notes.json");
    EXPECT_EQ(places.attachments(), "/home/anna/.local/share/Quillmark/Attachments");
    EXPECT_EQ(places.settingsFile, "/home/anna/.config/Quillmark/settings.ini");
}

TEST_F(Places, FollowTheVariablesForThem)
{
    qputenv("XDG_DATA_HOME", "/data/anna");
    qputenv("XDG_CONFIG_HOME", "/config/anna");
    const UserPlaces places = UserPlaces::standard();
    EXPECT_EQ(places.dataFolder, "/data/anna/Quillmark");
    EXPECT_EQ(places.settingsFile, "/config/anna/Quillmark/settings.ini");
}

TEST(QtText, IsTheSameTextThereAndBack)
{
    const std::string text = "Größe 漢字 😀";
    EXPECT_EQ(stdText(qtText(text)), text);
    EXPECT_EQ(qtText("\xFF").size(), 1);
}

TEST(QtText, KeepsPathsWhateverTheirBytes)
{
    for (const std::string path : {"/a b", "/ü,\"\\%20",
                                   "/b\xFC"
                                   "cher/%41",
                                   "/"})
        EXPECT_EQ(pathFromKept(keptPath(path)), path);
    EXPECT_EQ(stdText(keptPath("/a b%20")), "/a b%20");
    EXPECT_EQ(stdText(keptPath("/b\xFC/a b")), "file:///b%FC/a%20b");
}

TEST(QtText, EncodesFileURLs)
{
    EXPECT_EQ(fileURL("/a b/ü?#%;&.pdf"), "file:///a%20b/%C3%BC%3F%23%25%3B%26.pdf");
}

} // namespace
} // namespace quillmark::test
