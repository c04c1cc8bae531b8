#include "export/ReportFonts.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// A system that has no fonts at all.
class WithoutFonts : public testing::Test {
protected:
    WithoutFonts()
    {
        const auto settings = m_folder.write(
            "fonts.conf", R"(<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd">)"
                          "<fontconfig></fontconfig>");
        ::setenv("FONTCONFIG_FILE", settings.c_str(), 1);
    }
    ~WithoutFonts() override { ::unsetenv("FONTCONFIG_FILE"); }

    /// With the report's own faces of these names, and no others.
    ReportFonts load(std::initializer_list<const char*> names)
    {
        std::filesystem::create_directory(m_folder.path() / "own");
        for (const char* name : names)
            std::filesystem::copy_file(reportFontFolder() / name, m_folder.path() / "own" / name);
        return ReportFonts::load(m_folder.path() / "own",
                                 [this](std::string_view line) { m_told.emplace_back(line); });
    }

    test::TemporaryFolder m_folder;
    std::vector<std::string> m_told;
};

TEST_F(WithoutFonts, BothOwnFacesAreAllThatIsNeeded)
{
    const ReportFonts fonts = load({"CourierPrime-Regular.ttf", "CourierPrime-Bold.ttf"});
    EXPECT_EQ(fonts.regular.path, m_folder.path() / "own/CourierPrime-Regular.ttf");
    EXPECT_EQ(fonts.bold.path, m_folder.path() / "own/CourierPrime-Bold.ttf");
    EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(WithoutFonts, OneFaceStandsInForTheOther)
{
    const ReportFonts fonts = load({"CourierPrime-Regular.ttf"});
    EXPECT_EQ(fonts.bold, fonts.regular);
    EXPECT_THAT(m_told, ElementsAre(StartsWith("Quillmark report font: CourierPrime-Bold.ttf ")));
}

TEST_F(WithoutFonts, TheBoldFaceStandsInForTheRegularOne)
{
    const ReportFonts fonts = load({"CourierPrime-Bold.ttf"});
    EXPECT_EQ(fonts.regular.path, m_folder.path() / "own/CourierPrime-Bold.ttf");
    EXPECT_THAT(m_told,
                ElementsAre(StartsWith("Quillmark report font: CourierPrime-Regular.ttf ")));
}

TEST_F(WithoutFonts, AndWithoutOwnFacesThereAreNone)
{
    const ReportFonts fonts = load({});
    EXPECT_EQ(fonts.regular, FontFile{});
    EXPECT_EQ(fonts.bold, FontFile{});
    EXPECT_EQ(m_told.size(), 2U);
}

} // namespace
} // namespace quillmark
