#include "CommandLineFixture.h"
#include "support/SampleDocument.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace quillmark::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// A font program without license fields, as PDF writers embed it.
Bytes strippedProgram()
{
    return FontBytes().face().name(1, u"Cedar").name(6, u"Cedar-Regular").build();
}

/// A font program in which nothing can be read.
Bytes unreadableProgram()
{
    return ascii("no font");
}

class Check : public CommandLineFixture {
protected:
    std::string addDocument(const std::string& name, int pageCount,
                            const std::vector<DocumentFont>& documentFonts)
    {
        return folder.write(name, sampleDocument(pageCount, documentFonts));
    }
};

TEST_F(Check, ShowsEachFontInFullTheWorstFirst)
{
    addInstalled(restrictedFont());
    addFile("Fonts/cedar.ttf", {likelyOKFont()});
    const std::string document =
        addDocument("book.pdf", 7,
                    {{"ABCDEF+Cedar-Regular", {1, 2, 3, 7}, strippedProgram()},
                     {"AcmeHeadline-Bold", {2}, strippedProgram()},
                     {"GHIJKL+Willow", {4, 6}, unreadableProgram()},
                     {"Brook-Light", {5}, std::nullopt}});
    const Outcome outcome = run({"check", document, "--fonts", at("Fonts")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(
        outcome.output,
        "book.pdf\n"
        "FOLDER/book.pdf · 7 pages\n"
        "\n"
        "✗ Restricted  Acme Bold\n"
        "  The font's embedding bits forbid embedding it.\n"
        "  - Embedded (TrueType) in this PDF.\n"
        "  - Read from the font data inside the PDF.\n"
        "  - Matched by name to the font file at /fonts/AcmeHeadline-Bold.ttf.\n"
        "  - Embedding bits (fsType 0x0002): Restricted License, which means the font must not be "
        "embedded in documents.\n"
        "  PostScript name    AcmeHeadline-Bold\n"
        "  In this PDF\n"
        "    Name in PDF      AcmeHeadline-Bold\n"
        "    Font type        TrueType\n"
        "    Embedded         Embedded (TrueType)\n"
        "    Pages            2\n"
        "    Matched to       /fonts/AcmeHeadline-Bold.ttf\n"
        "\n"
        "? Unknown  Willow\n"
        "  No license text in the font.\n"
        "  - Embedded (TrueType), subset in this PDF.\n"
        "  - The PDF's copy has no license fields, and no installed or scanned font has this name, "
        "so only its name could be read. Scan the folder with the font files you used to match "
        "it.\n"
        "  - The font has no license description or URL to read. Find where it came from and what "
        "that license allows.\n"
        "  PostScript name    Willow\n"
        "  In this PDF\n"
        "    Name in PDF      GHIJKL+Willow\n"
        "    Font type        TrueType\n"
        "    Embedded         Embedded (TrueType), subset\n"
        "    Pages            4, 6\n"
        "    Matched to       No installed or scanned font with this name\n"
        "\n"
        "✓ Likely OK to embed  Brook-Light\n"
        "  Not embedded: the PDF only names this font.\n"
        "  - The file carries no font data for it; the reader uses its own copy or a substitute, "
        "so none of the font ships with the file.\n"
        "  - If you re-export this file, check whether the font gets embedded then: No license "
        "text in the font.\n"
        "  PostScript name    Brook-Light\n"
        "  In this PDF\n"
        "    Name in PDF      Brook-Light\n"
        "    Font type        TrueType\n"
        "    Embedded         Not embedded\n"
        "    Pages            5\n"
        "    Matched to       No installed or scanned font with this name\n"
        "\n"
        "✓ Likely OK to embed  Cedar Regular\n"
        "  Names the SIL Open Font License.\n"
        "  - Embedded (TrueType), subset in this PDF.\n"
        "  - Read from the font data inside the PDF.\n"
        "  - Matched by name to the font file at FOLDER/Fonts/cedar.ttf.\n"
        "  - The font's own license fields name the SIL Open Font License (license text).\n"
        "  - The OFL allows using, embedding and bundling it, also in products you sell; you can't "
        "sell the font file by itself, and Reserved Font Names limit renamed copies.\n"
        "  - Embedding bits (fsType 0x0000): installable, no restriction set. Many fonts set these "
        "loosely, so they don't settle it.\n"
        "  PostScript name    Cedar-Regular\n"
        "  In this PDF\n"
        "    Name in PDF      ABCDEF+Cedar-Regular\n"
        "    Font type        TrueType\n"
        "    Embedded         Embedded (TrueType), subset\n"
        "    Pages            1-3, 7\n"
        "    Matched to       FOLDER/Fonts/cedar.ttf\n"
        "\n"
        "Tip: PDF writers often strip the license fields from the fonts they embed. Name the "
        "folder with the fonts you used, --fonts FOLDER, so each one can be matched.\n"
        "\n"
        "4 fonts: 2 likely OK, 1 restricted, 1 unknown\n"
        "Check the license; this reads the font's own data. Not legal advice.\n");
}

TEST_F(Check, AsJsonHasTheDocumentAndWhatThePdfSays)
{
    addFile("Fonts/cedar.ttf", {likelyOKFont()});
    const std::string document =
        addDocument("book.pdf", 3, {{"ABCDEF+Cedar-Light", {1, 3}, unreadableProgram()}});
    const Outcome outcome =
        run({"check", document, "--fonts", at("Fonts"), "--no-installed", "-fjson"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, HasSubstr(R"json(
      "kind": "document",
      "title": "book.pdf",
      "subtitle": "Fonts in book.pdf (3 pages)",
      "path": "FOLDER/book.pdf",
      "fileName": "book.pdf",
      "pageCount": 3,
      "checkedAt": "2026-11-21T04:00:00Z",
      "summary": {
        "likelyOK": 1,
        "restricted": 0,
        "unknown": 0,
        "text": "1 fonts: 1 likely OK, 0 restricted, 0 unknown"
      },
      "rows": [
        {
          "id": "FOLDER/Fonts/cedar.ttf#Cedar-Regular#trueType",
          "facts": {)json"));
    EXPECT_THAT(outcome.output, HasSubstr(R"(
          "pdf": {
            "pdfNames": [
              "ABCDEF+Cedar-Light"
            ],
            "subtype": "TrueType",
            "program": "trueType",
            "subset": true,
            "pages": [
              1,
              3
            ],
            "matchedPath": "FOLDER/Fonts/cedar.ttf",
            "matchedByFamily": true,
            "readEmbeddedData": false
          }
        }
      ])"));
}

TEST_F(Check, OfSeveralDocumentsKeepsTheirOrderAndGoesOnAfterAFailure)
{
    const std::string first = addDocument("zebra.pdf", 1, {{"One", {1}, std::nullopt}});
    const std::string damaged = folder.write("damaged.pdf", "nothing of a PDF");
    const std::string last = addDocument("alpha.pdf", 2, {{"Two", {2}, std::nullopt}});
    const Outcome outcome =
        run({"check", first, damaged, at("missing.pdf"), last, "--no-installed"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: damaged.pdf couldn't be opened as a PDF.\n"
                              "quillmark-cli: missing.pdf couldn't be opened as a PDF.\n");
    EXPECT_THAT(outcome.output, StartsWith("zebra.pdf\nFOLDER/zebra.pdf · 1 page\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\nalpha.pdf\nFOLDER/alpha.pdf · 2 pages\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\nIn all, 2 fonts: 2 likely OK"));

    const std::string json =
        run({"check", damaged, first, at("missing.pdf"), "--no-installed", "-fjson"}).output;
    EXPECT_THAT(json, HasSubstr(R"(
  "errors": [
    {
      "path": "FOLDER/damaged.pdf",
      "message": "damaged.pdf couldn't be opened as a PDF."
    },
    {
      "path": "FOLDER/missing.pdf",
      "message": "missing.pdf couldn't be opened as a PDF."
    }
  ],
)"));
    EXPECT_THAT(json, HasSubstr("\"title\": \"zebra.pdf\""));
}

TEST_F(Check, OfADocumentWithoutFontsSaysWhatThatCanMean)
{
    EXPECT_EQ(run({"check", addDocument("empty.pdf", 1, {})}).output,
              "empty.pdf\n"
              "FOLDER/empty.pdf · 1 page\n"
              "\n"
              "No fonts in this PDF. It may be all images, or its text was turned into "
              "outlines.\n"
              "\n"
              "0 fonts: 0 likely OK, 0 restricted, 0 unknown\n"
              "Check the license; this reads the font's own data. Not legal advice.\n");
}

class Matching : public Check {
protected:
    /// Where the one font of a document was matched to.
    std::string match(const std::string& name, const std::vector<std::string>& options)
    {
        std::vector<std::string> arguments{"check",
                                           addDocument("d.pdf", 1, {{name, {1}, std::nullopt}})};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        const std::string label = "  Matched to       ";
        const auto at = outcome.output.find(label);
        if (at == std::string::npos) return outcome.output;
        const auto start = at + label.size();
        return outcome.output.substr(start, outcome.output.find('\n', start) - start);
    }

    const std::string none = "No installed or scanned font with this name";
};

TEST_F(Matching, FindsInstalledFontsByNameAndByFamily)
{
    addInstalled(likelyOKFont());
    EXPECT_EQ(match("Cedar-Regular", {}), "/fonts/Cedar-Regular.ttf");
    EXPECT_EQ(match("Cedar-Black", {}), "/fonts/Cedar-Regular.ttf (by family)");
    EXPECT_EQ(match("Oak", {}), none);
}

TEST_F(Matching, PrefersAFolderToInstalledFontsAndTheLastFolderToOthers)
{
    addInstalled(likelyOKFont());
    addFile("First/a.ttf", {likelyOKFont()});
    addFile("Second/b.ttf", {likelyOKFont()});
    EXPECT_EQ(match("Cedar-Regular", {"--fonts", at("First")}), "FOLDER/First/a.ttf");
    EXPECT_EQ(match("Cedar-Regular", {"--fonts", at("First"), "--fonts", at("Second")}),
              "FOLDER/Second/b.ttf");
    EXPECT_EQ(match("Cedar-Regular", {"--fonts", at("Second"), "--fonts", at("First")}),
              "FOLDER/First/a.ttf");
}

TEST_F(Matching, WithoutInstalledFontsNeverAsksTheSystem)
{
    const ListingFontService refusing([] { throw std::runtime_error("asked for its fonts"); });
    fonts = &refusing;
    EXPECT_EQ(match("Cedar-Regular", {"--no-installed"}), none);
}

TEST_F(Matching, WithoutInstalledFontsLeavesOutTheSystemsLookUpByName)
{
    // Only the look-up by name knows this one, as a system does that knows fonts by more
    // names.
    class LookUpOnly : public FontService {
    public:
        [[nodiscard]] std::vector<std::string> installedNames() const override { return {}; }
        [[nodiscard]] std::optional<PlatformFont>
        installedFont(std::string_view name) const override
        {
            PlatformFont font = platformFont(likelyOKFont());
            font.postScriptName = name;
            font.path = "/system/found";
            return font;
        }
        [[nodiscard]] std::vector<PlatformFont> facesOf(const std::string& /*file*/,
                                                        Faces /*which*/) const override
        {
            return {};
        }
    };
    const LookUpOnly lookUpOnly;
    fonts = &lookUpOnly;
    EXPECT_EQ(match("Cedar-Regular", {}), "/system/found");
    EXPECT_EQ(match("Cedar-Regular", {"--no-installed"}), none);
}

TEST_F(Matching, FindsANamedInstanceOfAVariableFont)
{
    FontValues variable = likelyOKFont();
    variable.instance = u"Narrow";
    addFile("Fonts/variable.ttf", {variable});
    EXPECT_EQ(match("Cedar-Narrow", {"--fonts", at("Fonts"), "--no-installed"}),
              "FOLDER/Fonts/variable.ttf");
}

TEST_F(Check, DoesNotListTheInstalledFontsWhenNoDocumentOpens)
{
    const ListingFontService refusing([] { throw std::runtime_error("asked for its fonts"); });
    fonts = &refusing;
    EXPECT_EQ(run({"check", at("missing.pdf")}).exitCode, 3);
    EXPECT_EQ(run({"check", addDocument("d.pdf", 1, {{"Oak", {1}, std::nullopt}})}).exitCode, 70);
}

TEST_F(Check, ListsTheInstalledFontsOnceForAllDocuments)
{
    int listings = 0;
    const ListingFontService counting([&listings] { ++listings; });
    fonts = &counting;
    const std::string first = addDocument("a.pdf", 1, {{"Oak", {1}, std::nullopt}});
    const std::string second = addDocument("b.pdf", 1, {{"Elm", {1}, std::nullopt}});
    EXPECT_EQ(run({"check", first, second}).exitCode, 0);
    EXPECT_EQ(listings, 1);
}

TEST_F(Check, ChecksTheDocumentsThoughAFontFolderIsMissing)
{
    addFile("Fonts/cedar.ttf", {likelyOKFont()});
    const std::string document = addDocument("d.pdf", 1, {{"Cedar-Regular", {1}, std::nullopt}});
    const Outcome outcome = run(
        {"check", document, "--fonts", at("Nowhere"), "--fonts", at("Fonts"), "--no-installed"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/Nowhere: No such file or directory\n");
    EXPECT_THAT(outcome.output, HasSubstr("Matched to       FOLDER/Fonts/cedar.ttf\n"));
}

TEST_F(Check, DoesNotTakeAFileForAFontFolder)
{
    const auto file = addFile("cedar.ttf", {likelyOKFont()});
    const std::string document = addDocument("d.pdf", 1, {});
    const Outcome outcome = run({"check", document, "--fonts", file.native()});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/cedar.ttf: Not a folder\n");
}

TEST_F(Check, MeetsFailOnByTheVerdictsOfItsDocuments)
{
    addInstalled(restrictedFont());
    const std::string restricted =
        addDocument("r.pdf", 1, {{"AcmeHeadline-Bold", {1}, strippedProgram()}});
    const std::string unknown = addDocument("u.pdf", 1, {{"Willow", {1}, unreadableProgram()}});
    const std::string fine = addDocument("f.pdf", 1, {{"Oak", {1}, std::nullopt}});
    EXPECT_EQ(run({"check", fine, restricted, fine, "--fail-on", "restricted"}).exitCode, 1);
    EXPECT_EQ(run({"check", fine, unknown, "--fail-on", "restricted"}).exitCode, 0);
    EXPECT_EQ(run({"check", fine, unknown, "--fail-on", "unknown"}).exitCode, 1);
    EXPECT_EQ(run({"check", fine, "--fail-on", "unknown"}).exitCode, 0);
    EXPECT_EQ(run({"check", at("gone.pdf"), restricted, "--fail-on", "restricted"}).exitCode, 3);
}

TEST_F(Check, ShowsThePdfsNameBesideAFontThatCallsItselfOtherwise)
{
    const Bytes nameless = FontBytes().face().os2({}).build();
    const std::string document = addDocument("d.pdf", 1, {{"ABCDEF+Willow", {1}, nameless}});
    EXPECT_THAT(run({"check", document, "--no-installed"}).output,
                HasSubstr("\n? Unknown  Unnamed font  ABCDEF+Willow\n"));
    addFile("Fonts/a.ttf", {likelyOKFont()});
    const std::string other = addDocument("e.pdf", 1, {{"Cedar-Black", {1}, unreadableProgram()}});
    EXPECT_THAT(run({"check", other, "--no-installed", "--fonts", at("Fonts")}).output,
                HasSubstr("  Cedar Regular  Cedar-Black\n"));
}

TEST_F(Check, GivesTheTipOnceAndNotWhenQuiet)
{
    const std::string document = addDocument("u.pdf", 1, {{"Willow", {1}, unreadableProgram()}});
    const std::string output = run({"check", document, document, "--no-installed"}).output;
    const auto first = output.find("\nTip: ");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(output.find("\nTip: ", first + 1), std::string::npos);
    EXPECT_THAT(run({"check", document, "--no-installed", "-q"}).output, Not(HasSubstr("Tip: ")));
}

TEST_F(Check, LetsNoControlSequenceOfAPdfThrough)
{
    const std::string document =
        addDocument("d\x1b[31m.pdf", 1, {{"A#1B#5B2J#07#C2#9B1m#E2#80#AE#0AB", {1}, std::nullopt}});
    outputColumns = 200;
    plainTerminal = true;
    const Outcome outcome = run({"check", document, "--no-installed"});
    EXPECT_EQ(outcome.exitCode, 0);
    // NOLINTNEXTLINE(misc-misleading-bidirectional): nobody is misled by an escape
    for (const char* hostile : {"\x1b", "\a", "\u009B", "\u202E"})
        EXPECT_THAT(outcome.output, Not(HasSubstr(hostile)));
    EXPECT_THAT(outcome.output, HasSubstr("A\uFFFD[2J\uFFFD\uFFFD1m\uFFFD B\n"));
    EXPECT_EQ(run({"check", at("gone\x1b[31m.pdf")}).errors,
              "quillmark-cli: gone\uFFFD[31m.pdf couldn't be opened as a PDF.\n");
}

} // namespace
} // namespace quillmark::test
