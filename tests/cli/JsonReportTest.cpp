#include "CommandLineFixture.h"

#include "cli/Help.h"

#include <gmock/gmock.h>

namespace quillmark::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class JsonReport : public CommandLineFixture {};

TEST_F(JsonReport, HasEveryKeyInItsOrder)
{
    addFile("Fonts/acme.ttf", {restrictedFont()});
    const Outcome outcome = run({"scan", at("Nowhere"), at("Fonts"), "-f", "json"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.output, R"({
  "quillmark": ")" + std::string(cli::version()) +
                                  R"(",
  "lists": [
    {
      "kind": "folder",
      "title": "Fonts",
      "subtitle": "FOLDER/Fonts",
      "path": "FOLDER/Fonts",
      "summary": {
        "likelyOK": 0,
        "restricted": 1,
        "unknown": 0,
        "text": "1 fonts: 0 likely OK, 1 restricted, 0 unknown"
      },
      "rows": [
        {
          "id": "FOLDER/Fonts/acme.ttf#AcmeHeadline-Bold#",
          "facts": {
            "postScriptName": "AcmeHeadline-Bold",
            "family": "Acme",
            "style": "Bold",
            "fullName": "Acme Bold",
            "licenseDescription": "Ask us.",
            "os2": {
              "version": 4,
              "fsType": 2,
              "vendorID": "TEST"
            },
            "filePath": "FOLDER/Fonts/acme.ttf",
            "format": "TrueType",
            "origin": "folder"
          },
          "assessment": {
            "verdict": "restricted",
            "headline": "The font's embedding bits forbid embedding it.",
            "reasons": [
              "Embedding bits (fsType 0x0002): Restricted License, which means the font must not be embedded in documents."
            ],
            "license": "named",
            "appleBundled": false
          }
        }
      ]
    }
  ],
  "errors": [
    {
      "path": "FOLDER/Nowhere",
      "message": "No such file or directory"
    }
  ],
  "disclaimer": "Check the license; this reads the font's own data. Not legal advice."
}
)");
}

TEST_F(JsonReport, OfInstalledFontsHasNoPath)
{
    EXPECT_THAT(run({"installed", "-fjson"}).output, HasSubstr(R"(
    {
      "kind": "installed",
      "title": "Installed fonts",
      "subtitle": "Every font installed on this computer",
      "summary": {
        "likelyOK": 0,
        "restricted": 0,
        "unknown": 0,
        "text": "0 fonts: 0 likely OK, 0 restricted, 0 unknown"
      },
      "rows": []
    }
)"));
}

TEST_F(JsonReport, OfAFontFileIsAListOfItsOwn)
{
    addFile("a.ttf", {likelyOKFont()});
    addFile("b.ttf", {unknownFont()});
    const Outcome outcome = run({"scan", at("a.ttf"), at("b.ttf"), "-fjson"});
    for (const char* name : {"a.ttf", "b.ttf"})
        EXPECT_THAT(outcome.output, HasSubstr(std::string(R"(
      "kind": "folder",
      "title": ")") + name + R"(",
      "subtitle": "FOLDER/)" + name + R"(",
      "path": "FOLDER/)" + name +
                                              R"(",
      "summary": {)"));
}

TEST_F(JsonReport, OfNothingThatCanBeReadIsStillWhole)
{
    const Outcome outcome = run({"scan", at("Nowhere"), "-fjson"});
    EXPECT_THAT(outcome.output, StartsWith("{\n  \"quillmark\": "));
    EXPECT_THAT(outcome.output, HasSubstr("\n  \"lists\": [],\n"));
    EXPECT_THAT(outcome.output, EndsWith("\n}\n"));
}

TEST_F(JsonReport, KeepsTheLibrarysOrder)
{
    addFile("Fonts/a.ttf", {likelyOKFont()});
    addFile("Fonts/b.ttf", {unknownFont()});
    addFile("Fonts/c.ttf", {restrictedFont()});
    const std::string output = run({"scan", at("Fonts"), "-fjson"}).output;
    const auto acme = output.find(R"("family": "Acme")");
    const auto brook = output.find(R"("family": "Brook")");
    const auto cedar = output.find(R"("family": "Cedar")");
    EXPECT_LT(acme, brook);
    EXPECT_LT(brook, cedar);
    EXPECT_LT(cedar, output.size());
}

TEST_F(JsonReport, EscapesWhatCouldControlATerminal)
{
    FontValues font = likelyOKFont();
    font.fullName = u"A\x1b[31m\"q\"\\\u202E\u009B\n\u00A9";
    addFile("Fonts/a.ttf", {font});
    EXPECT_THAT(run({"scan", at("Fonts"), "-fjson"}).output,
                HasSubstr("\"fullName\": \"A\\u001b[31m\\\"q\\\"\\\\\\u202e\\u009b\\n\u00A9\""));
}

TEST_F(JsonReport, IsWrittenWholeWhenItIsLargerThanOnePiece)
{
    constexpr int count = 300;
    for (int i = 0; i < count; ++i) {
        FontValues font = unknownFont();
        font.license.assign(1000, u'x');
        font.postScriptName += std::to_string(i);
        addFile("Fonts/" + std::to_string(i) + ".ttf", {font});
    }
    const std::string output = run({"scan", at("Fonts"), "-fjson"}).output;
    EXPECT_GT(output.size(), count * 1000U);
    EXPECT_THAT(output, EndsWith("Not legal advice.\"\n}\n"));
    std::size_t rows = 0;
    for (auto found = output.find("\"id\": "); found != std::string::npos;
         found = output.find("\"id\": ", found + 1))
        ++rows;
    EXPECT_EQ(rows, std::size_t{count});
}

} // namespace
} // namespace quillmark::test
