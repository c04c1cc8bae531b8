#include "CommandLineFixture.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace quillmark::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr std::string_view cedarsNote = R"({"notes": {"Cedar-Regular": {
    "boughtFrom": "Tree \u001b[1mTypes", "license": "ebook", "text": "Order 17",
    "attachmentName": "receipt.pdf", "attachment": "0A1B2C3D-receipt.pdf",
    "updated": "2026-03-14T09:26:53Z", "url": "https://example.com/order/17"}}})";

class Show : public CommandLineFixture {
protected:
    void addNote()
    {
        folder.write("notes.json", std::string(cedarsNote));
        applicationNotes = at("notes.json");
    }
};

TEST_F(Show, OfAnInstalledFontTellsAllAboutIt)
{
    FontValues font = likelyOKFont();
    font.copyright = u"\u00A9 Cedar";
    addInstalled(font);
    addInstalled(unknownFont());
    addNote();
    const Outcome outcome = run({"show", "Cedar-Regular"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output,
                StartsWith("✓ Likely OK to embed  Cedar Regular\n"
                           "  Names the SIL Open Font License.\n"
                           "  - The font's own license fields name the SIL Open Font License"));
    EXPECT_THAT(
        outcome.output,
        HasSubstr("  PostScript name    Cedar-Regular\n"
                  "  File               /fonts/Cedar-Regular.ttf\n"
                  "  What the font says\n"
                  "    Family           Cedar\n"
                  "    Copyright        © Cedar\n"
                  "    License          This Font Software is licensed under the SIL Open Font "
                  "License, Version 1.1.\n"
                  "    Embedding bits   Installable (no restriction bits set) (fsType 0x0000)\n"
                  "    Vendor ID        TEST\n"
                  "    Format           TrueType\n"
                  "  Your license notes\n"
                  "    License type     Ebook / ePub\n"
                  "    Bought from      Tree \uFFFD[1mTypes\n"
                  "    Notes            Order 17\n"
                  "    Link             https://example.com/order/17\n"
                  "    Attached file    receipt.pdf\n"
                  "    Saved            "));
    EXPECT_THAT(outcome.output,
                EndsWith("\n\nCheck the license; this reads the font's own data. Not legal "
                         "advice.\n"));
}

TEST_F(Show, OfAFontWithoutANoteSaysSo)
{
    addInstalled(unknownFont());
    addNote();
    EXPECT_THAT(run({"show", "Brook"}).output, HasSubstr("\n  Your license notes\n    None\n"));
}

TEST_F(Show, LeavesNotesOutWhenTheyAreNotWanted)
{
    addInstalled(likelyOKFont());
    addNote();
    for (const char* format : {"text", "json", "jsonl", "csv"}) {
        EXPECT_THAT(run({"show", "Cedar-Regular", "-f", format}).output, HasSubstr("Order 17"));
        const Outcome outcome = run({"show", "Cedar-Regular", "-f", format, "--no-notes"});
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_THAT(outcome.output, HasSubstr("Cedar-Regular"));
        EXPECT_THAT(outcome.output, Not(HasSubstr("Order 17"))) << format;
    }
}

TEST_F(Show, FindsAFontByItsPostScriptNameWithoutReadingTheOthers)
{
    /// Knows one font by its name.
    class OneFont : public FontService {
    public:
        [[nodiscard]] std::vector<std::string> installedNames() const override
        {
            throw std::runtime_error("asked for all fonts");
        }
        [[nodiscard]] std::optional<PlatformFont>
        installedFont(std::string_view name) const override
        {
            if (name != "Cedar-Regular") return std::nullopt;
            return platformFont(likelyOKFont());
        }
        [[nodiscard]] std::vector<PlatformFont> facesOf(const std::string& /*file*/,
                                                        Faces /*which*/) const override
        {
            return {};
        }
    };
    const OneFont oneFont;
    fonts = &oneFont;
    EXPECT_EQ(run({"show", "Cedar-Regular"}).exitCode, 0);
    EXPECT_EQ(run({"show", "Cedar"}).exitCode, 70);
}

TEST_F(Show, FindsAFontByWhateverPeopleCallIt)
{
    addInstalled(likelyOKFont());
    addInstalled(restrictedFont());
    for (const char* name : {"Cedar Regular", "cedar regular", "CEDAR-REGULAR", "cedar"})
        EXPECT_THAT(run({"show", name}).output, StartsWith("✓ Likely OK to embed  Cedar Regular\n"))
            << name;
}

TEST_F(Show, OfAFamilyShowsEachOfItsFonts)
{
    addInstalled(likelyOKFont());
    FontValues bold = likelyOKFont();
    bold.style = u"Bold";
    bold.fullName = u"Cedar Bold";
    bold.postScriptName = "Cedar-Bold";
    addInstalled(bold);
    const std::string output = run({"show", "Cedar"}).output;
    EXPECT_THAT(output, StartsWith("✓ Likely OK to embed  Cedar Bold\n"));
    EXPECT_THAT(output, HasSubstr("\n\n✓ Likely OK to embed  Cedar Regular\n"));
}

TEST_F(Show, PrefersAFileToAnInstalledFontOfThatName)
{
    addInstalled(likelyOKFont());
    addFile("Cedar-Regular", {unknownFont()});
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    const Outcome outcome = run({"show", "Cedar-Regular"});
    std::filesystem::current_path(before);
    EXPECT_THAT(outcome.output, StartsWith("? Unknown  Brook\n"));
}

TEST_F(Show, OfAFileShowsEveryFaceInIt)
{
    addFile("both.ttc", {likelyOKFont(), restrictedFont()});
    const Outcome outcome = run({"show", at("both.ttc")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, StartsWith("✗ Restricted  Acme Bold\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\n\n✓ Likely OK to embed  Cedar Regular\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\n  File               FOLDER/both.ttc\n"));
}

TEST_F(Show, OfAnUnknownNameSaysWhatMayHaveBeenMeantAndGoesOn)
{
    addInstalled(likelyOKFont());
    const Outcome outcome = run({"show", "Cedar-Reglar", "Cedar-Regular"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: Cedar-Reglar: No installed font has this name; did "
                              "you mean \"Cedar-Regular\"?\n");
    EXPECT_THAT(outcome.output, HasSubstr("Cedar Regular"));
    EXPECT_EQ(run({"show", "gular"}).errors,
              "quillmark-cli: gular: No installed font has this name; did you mean \"Cedar "
              "Regular\"?\n");
    EXPECT_EQ(run({"show", "Willow"}).errors,
              "quillmark-cli: Willow: No installed font has this name\n");
}

TEST_F(Show, OfAMissingFileOrAFolderSaysSo)
{
    Outcome outcome = run({"show", at("gone.ttf")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/gone.ttf: No such file or directory\n");
    addFile("Fonts/a.ttf", {likelyOKFont()});
    outcome = run({"show", at("Fonts")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: FOLDER/Fonts: A folder; quillmark-cli scan lists its fonts\n");
}

TEST_F(Show, AsJsonHasTheNoteWithTheRow)
{
    addInstalled(likelyOKFont());
    addNote();
    const std::string output = run({"show", "Cedar-Regular", "--json"}).output;
    EXPECT_THAT(output, HasSubstr(R"(
      "kind": "installed",
      "title": "Cedar-Regular",
      "subtitle": "Installed fonts called Cedar-Regular",
      "summary": {)"));
    EXPECT_THAT(output, HasSubstr(R"(,
          "note": {
            "license": "ebook",
            "boughtFrom": "Tree \u001b[1mTypes",
            "text": "Order 17",
            "url": "https://example.com/order/17",
            "attachmentName": "receipt.pdf",
            "updated": "2026-03-14T09:26:53Z"
          }
        }
      ])"));
    EXPECT_THAT(run({"show", "Oak", "--json"}).output, HasSubstr(R"(
      "path": "Oak",
      "message": "No installed font has this name)"));
}

TEST_F(Show, MeetsFailOn)
{
    addInstalled(restrictedFont());
    EXPECT_EQ(run({"show", "AcmeHeadline-Bold", "--fail-on", "restricted"}).exitCode, 1);
    EXPECT_EQ(run({"show", "AcmeHeadline-Bold", "--fail-on", "never"}).exitCode, 0);
}

} // namespace
} // namespace quillmark::test
