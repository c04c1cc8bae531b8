#include "CommandLineFixture.h"

#include <gmock/gmock.h>

namespace quillmark::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class PdfReport : public CommandLineFixture {
protected:
    PdfReport() { addFile("Fonts/acme.ttf", {restrictedFont()}); }
};

TEST_F(PdfReport, GoesToAFileOrToStandardOutput)
{
    const Outcome outcome = run({"scan", at("Fonts"), "-f", "pdf", "-o", at("audit.pdf")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "");
    const std::string report = run({"scan", at("Fonts"), "-f", "pdf"}).output;
    EXPECT_THAT(report, AllOf(StartsWith("%PDF-"), EndsWith("%%EOF\n")));
    EXPECT_EQ(content("audit.pdf"), report);
}

TEST_F(PdfReport, IsReadByACheckOfDocuments)
{
    ASSERT_EQ(run({"scan", at("Fonts"), "-f", "pdf", "-o", at("audit.pdf")}).exitCode, 0);
    const Outcome outcome = run({"check", at("audit.pdf"), "--no-installed"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, HasSubstr("audit.pdf · 1 page"));
    EXPECT_THAT(outcome.output, HasSubstr("Courier Prime"));
}

TEST_F(PdfReport, IsNotWrittenToATerminal)
{
    outputColumns = 80;
    const Outcome outcome = run({"scan", at("Fonts"), "-f", "pdf"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: a PDF is nothing for a terminal; name a file with --output.\n");
    EXPECT_EQ(run({"scan", at("Fonts"), "-f", "pdf", "-o", at("audit.pdf")}).exitCode, 0);
}

TEST_F(PdfReport, NeverReplacesADocumentThatItIsOf)
{
    const std::filesystem::path document = folder.write("book.pdf", "stands for a PDF");
    const Outcome outcome = run({"check", at("book.pdf"), "-f", "pdf", "-o", at("book.pdf")});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: --output would replace the input \"FOLDER/book.pdf\".\n");
    EXPECT_EQ(content("book.pdf"), "stands for a PDF");
}

TEST_F(PdfReport, IsJudgedByFailOnAndByWhatCouldNotBeRead)
{
    EXPECT_EQ(run({"scan", at("Fonts"), "-f", "pdf", "--fail-on", "restricted"}).exitCode, 1);
    const Outcome outcome = run({"scan", at("Fonts"), at("Nowhere"), "-f", "pdf"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/Nowhere: No such file or directory\n");
    EXPECT_THAT(outcome.output, StartsWith("%PDF-"));
}

} // namespace
} // namespace quillmark::test
