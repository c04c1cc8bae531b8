#include "library/LicenseFile.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace quillmark {
namespace {

using test::TemporaryFolder;

FontFacts fontOf(std::string family)
{
    FontFacts facts;
    facts.postScriptName = "Some-Font";
    facts.family = std::move(family);
    return facts;
}

/// A folder of licence files, each holding its own name.
class LicenseFiles : public testing::Test {
protected:
    [[nodiscard]] std::vector<std::filesystem::path>
    holding(const std::vector<std::string>& names) const
    {
        std::vector<std::filesystem::path> files;
        files.reserve(names.size());
        for (const std::string& name : names)
            files.push_back(m_folder.write(name, "text of " + name));
        return files;
    }

    /// The name of the file that is attached to a font of this family; empty for none.
    [[nodiscard]] std::string attached(const std::string& family,
                                       const std::vector<std::string>& names) const
    {
        const FontFacts facts = LicenseFile::attach(fontOf(family), holding(names));
        if (!facts.licenseFile) return {};
        const std::filesystem::path file = *facts.licenseFile;
        EXPECT_EQ(facts.licenseDescription, "text of " + file.filename().string());
        return file.filename().string();
    }

    TemporaryFolder m_folder;
};

TEST(LicenseCandidate, EveryStemAndExtensionCounts)
{
    for (const char* name :
         {"OFL.txt", "ofl", "OFL-1.1.txt", "oflFAQ.md", "LICENSE", "License.txt", "license_ofl.md",
          "LICENCE", "licence.TXT", "COPYING", "Copying.Md", "copying-font.txt", "LICENSE.OFL.txt",
          "/some/folder/OFL.txt", "license."})
        EXPECT_TRUE(LicenseFile::isCandidate(name)) << name;
}

TEST(LicenseCandidate, OtherNamesDoNotCount)
{
    for (const char* name :
         {"License.pdf", "README.md", "my-license.txt", "OFL.html", "OFL-1.1", "licens.txt",
          "copy.txt", ".license", "", "ofl.txt.gz", "/license/readme.txt"})
        EXPECT_FALSE(LicenseFile::isCandidate(name)) << name;
}

TEST_F(LicenseFiles, TheOnlyCandidateServesEveryFamily)
{
    EXPECT_EQ(attached("Foo", {"OFL.txt"}), "OFL.txt");
    EXPECT_EQ(attached("Foo", {"LICENSE-Bar.txt"}), "LICENSE-Bar.txt");
}

TEST_F(LicenseFiles, OfSeveralCandidatesNoneNamedAfterTheFamilyIsAttached)
{
    EXPECT_EQ(attached("Foo", {"OFL.txt", "LICENSE-Bar.txt"}), "");
}

TEST_F(LicenseFiles, TheCandidateNamedAfterTheFamilyWins)
{
    EXPECT_EQ(attached("Foo", {"OFL.txt", "LICENSE-Bar.txt", "LICENSE-Foo.txt"}),
              "LICENSE-Foo.txt");
}

TEST_F(LicenseFiles, FamilyAndStemAreComparedByLettersAndDigitsWithoutCase)
{
    EXPECT_EQ(attached("Foo Bar-2", {"OFL.txt", "license_FOO bar.2.md"}), "license_FOO bar.2.md");
}

TEST_F(LicenseFiles, OfSeveralNamedAfterTheFamilyTheShortestNameWins)
{
    EXPECT_EQ(attached("Foo", {"LICENSE-Foo-Bold.txt", "OFL-Foo.txt", "COPYING-Foo.md"}),
              "OFL-Foo.txt");
}

TEST_F(LicenseFiles, LengthIsCountedInCharacters)
{
    // The first name has fewer characters, the second fewer bytes.
    EXPECT_EQ(attached("Foo", {"OFL-Foo-\u00E4\u00E4\u00E4.md", "OFL-Foo-abcd.md"}),
              "OFL-Foo-\u00E4\u00E4\u00E4.md");
}

TEST_F(LicenseFiles, EquallyShortNamesKeepTheirOrder)
{
    EXPECT_EQ(attached("Foo", {"OFL-Foo-b.txt", "OFL-Foo-a.txt"}), "OFL-Foo-b.txt");
    EXPECT_EQ(attached("Foo", {"OFL-Foo-a.txt", "OFL-Foo-b.txt"}), "OFL-Foo-a.txt");
}

TEST_F(LicenseFiles, WithoutCandidatesNothingIsAttached)
{
    EXPECT_EQ(attached("Foo", {}), "");
}

TEST_F(LicenseFiles, AFamilyWithoutLettersAndDigitsIsNamedByNoFile)
{
    EXPECT_EQ(attached("***", {"OFL.txt", "LICENSE.txt"}), "");
    EXPECT_EQ(attached("***", {"OFL.txt"}), "OFL.txt");
}

TEST_F(LicenseFiles, TheRestOfTheFactsStaysAsItIs)
{
    FontFacts expected = fontOf("Foo");
    const auto files = holding({"OFL.txt"});
    const FontFacts facts = LicenseFile::attach(expected, files);
    expected.licenseDescription = "text of OFL.txt";
    expected.licenseFile = files[0].string();
    EXPECT_EQ(facts, expected);
}

/// The text that is attached from a file of these bytes.
std::optional<std::string> textFrom(const std::string& bytes)
{
    const TemporaryFolder folder;
    const std::vector files{folder.write("OFL.txt", bytes)};
    const FontFacts facts = LicenseFile::attach(fontOf("Foo"), files);
    EXPECT_EQ(facts.licenseFile.has_value(), facts.licenseDescription.has_value());
    return facts.licenseDescription;
}

TEST(LicenseText, IsTrimmed)
{
    EXPECT_EQ(textFrom("\r\n\t  Free for all\n\n"), "Free for all");
}

TEST(LicenseText, BlankFilesAreNotAttached)
{
    EXPECT_EQ(textFrom(""), std::nullopt);
    EXPECT_EQ(textFrom(" \n\t \r\n"), std::nullopt);
}

TEST(LicenseText, IllFormedUtf8IsReplaced)
{
    EXPECT_EQ(textFrom("a\xFF\xC3z"), "a\uFFFD\uFFFDz");
}

TEST(LicenseText, OnlyTheFirst4000BytesAreRead)
{
    EXPECT_EQ(textFrom(std::string(4000, 'a')), std::string(4000, 'a'));
    EXPECT_EQ(textFrom(std::string(4000, 'a') + "b"), std::string(4000, 'a'));
    EXPECT_EQ(textFrom(std::string(4000, ' ') + "b"), std::nullopt);
}

TEST(LicenseText, ACharacterCutAtTheLimitIsReplaced)
{
    EXPECT_EQ(textFrom(std::string(3999, 'a') + "\u00E4"), std::string(3999, 'a') + "\uFFFD");
}

TEST(LicenseText, AFileOf512KiBIsIgnored)
{
    EXPECT_EQ(textFrom("x" + std::string(524287, ' ')), std::nullopt);
    EXPECT_EQ(textFrom("x" + std::string(524286, ' ')), "x");
}

TEST(LicenseText, AFileThatIsGoneLeavesTheFactsUnchanged)
{
    const FontFacts facts = fontOf("Foo");
    const std::vector<std::filesystem::path> files{"/nowhere/OFL.txt"};
    EXPECT_EQ(LicenseFile::attach(facts, files), facts);
}

TEST(LicenseText, AFolderNamedLikeALicenceLeavesTheFactsUnchanged)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "OFL");
    const FontFacts facts = fontOf("Foo");
    const std::vector<std::filesystem::path> files{folder.path() / "OFL"};
    EXPECT_EQ(LicenseFile::attach(facts, files), facts);
}

TEST(LicenseText, AnUnreadableFavouriteIsNotReplacedByAnother)
{
    const TemporaryFolder folder;
    const std::vector files{
        folder.path() / "OFL-Foo.txt", // not there
        folder.write("LICENSE-Foo.txt", "text"),
    };
    EXPECT_EQ(LicenseFile::attach(fontOf("Foo"), files).licenseDescription, std::nullopt);
}

} // namespace
} // namespace quillmark
