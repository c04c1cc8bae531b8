#include "CommandLineFixture.h"

#include "files/FileDescriptor.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace quillmark::test {
namespace {

using testing::EndsWith;
using testing::StartsWith;

class JsonLinesReport : public CommandLineFixture {};

TEST_F(JsonLinesReport, HasOneFontALineWithItsListAndTheDisclaimer)
{
    addFile("Fonts/acme.ttf", {restrictedFont()});
    EXPECT_EQ(
        run({"scan", at("Fonts"), "-f", "jsonl"}).output,
        R"({"list": {"kind": "folder", "title": "Fonts", "subtitle": "FOLDER/Fonts", "path": "FOLDER/Fonts"}, )"
        R"("id": "FOLDER/Fonts/acme.ttf#AcmeHeadline-Bold#", )"
        R"("facts": {"postScriptName": "AcmeHeadline-Bold", "family": "Acme", "style": "Bold", )"
        R"("fullName": "Acme Bold", "licenseDescription": "Ask us.", )"
        R"("os2": {"version": 4, "fsType": 2, "vendorID": "TEST"}, )"
        R"("filePath": "FOLDER/Fonts/acme.ttf", "format": "TrueType", "origin": "folder"}, )"
        R"("assessment": {"verdict": "restricted", )"
        R"("headline": "The font's embedding bits forbid embedding it.", )"
        R"("reasons": ["Embedding bits (fsType 0x0002): Restricted License, which means the font must not be embedded in documents."], )"
        R"("license": "named", "appleBundled": false}, )"
        R"("disclaimer": "Check the license; this reads the font's own data. Not legal advice."})"
        "\n");
}

TEST_F(JsonLinesReport, HasAsManyLinesAsThereAreFontsWhateverTheySay)
{
    FontValues font = likelyOKFont();
    font.license = u"One\nTwo\r\nThree\u2028Four";
    addFile("Fonts/a.ttf", {font, unknownFont()});
    addFile("More/b.ttf", {restrictedFont()});
    const Outcome outcome = run({"scan", at("Fonts"), at("Nowhere"), at("More"), "-fjsonl"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/Nowhere: No such file or directory\n");
    EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 3);
    EXPECT_THAT(outcome.output, StartsWith(R"({"list": {"kind": "folder")"));
    EXPECT_THAT(outcome.output, EndsWith("}\n"));
}

TEST_F(JsonLinesReport, OfNothingIsEmpty)
{
    EXPECT_EQ(run({"installed", "-fjsonl"}).output, "");
}

TEST_F(JsonLinesReport, MeetsFailOnAndReportsAFullDevice)
{
    addInstalled(restrictedFont());
    EXPECT_EQ(run({"installed", "-fjsonl", "--fail-on", "restricted"}).exitCode, 1);
    EXPECT_EQ(run({"installed", "-fjsonl", "-o", "/dev/full"}).exitCode, 4);
}

} // namespace
} // namespace quillmark::test
