#include "ui/DocumentHeader.h"

#include "FontRows.h"
#include "listing/DocumentSummary.h"
#include "model/QtText.h"
#include "ui/Contrast.h"
#include "ui/FindingText.h"
#include "ui/SelectableText.h"
#include "ui/VerdictLook.h"

#include <gtest/gtest.h>

#include <QImage>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

class DocumentHeaders : public testing::Test {
protected:
    /// Shows a document whose fonts have these verdicts.
    void show(const std::vector<Verdict>& verdicts, bool stripped = false)
    {
        audit.rows.clear();
        for (const Verdict verdict : verdicts) {
            AuditRow row = documentRow({.pdfNames = {},
                                        .subtype = {},
                                        .program = EmbeddedProgram::cff,
                                        .subset = false,
                                        .pages = {},
                                        .matchedPath = std::nullopt,
                                        .matchedByFamily = false,
                                        .readEmbeddedData = !stripped});
            row.assessment.verdict = verdict;
            audit.rows.push_back(std::move(row));
        }
        header.setAudit(audit);
        header.resize(600, header.heightForWidth(600));
        header.show();
    }
    [[nodiscard]] bool shows(const QString& text) const
    {
        for (auto* const label : header.findChildren<QLabel*>())
            if (label->isVisible() && label->text() == text) return true;
        return false;
    }

    DocumentAudit audit{.path = "/books/Spring & book.pdf",
                        .fileName = "Spring & book.pdf",
                        .pageCount = 48,
                        .checkedAt = std::chrono::sys_days(std::chrono::year(2026) / 3 / 14),
                        .rows = {}};
    DocumentHeader header;
    FindingText* finding{header.findChild<FindingText*>()};
};

TEST_F(DocumentHeaders, NameTheDocumentAndWhatItHas)
{
    show({Verdict::unknown, Verdict::unknown});
    const auto* const name = header.findChild<SelectableText*>();
    EXPECT_EQ(name->toPlainText(), u"Spring & book.pdf"_s);
    EXPECT_TRUE(name->font().bold());
    EXPECT_TRUE(shows(qtText(documentLine(audit))));
    EXPECT_TRUE(
        qtText(documentLine(audit)).startsWith(u"48 pages · 2 embedded fonts · checked "_s));
}

TEST_F(DocumentHeaders, UnknownFontsAloneGetNoSentence)
{
    show({Verdict::unknown});
    EXPECT_FALSE(finding->isVisible());
    EXPECT_FALSE(shows(qtText(strippedFieldsNote)));
}

TEST_F(DocumentHeaders, ADocumentWithoutFontsGetsNoSentence)
{
    show({});
    EXPECT_FALSE(finding->isVisible());
}

TEST_F(DocumentHeaders, RestrictedFontsGetAWarning)
{
    show({Verdict::restricted, Verdict::restricted, Verdict::likelyOK});
    EXPECT_TRUE(finding->isVisible());
    EXPECT_EQ(finding->symbol(), u"exclamationmark.triangle.fill"_s);
    EXPECT_EQ(finding->colour(), verdictLook(Verdict::restricted).colour);
    EXPECT_TRUE(finding->text().startsWith(u"2 fonts here look restricted"_s));
    show({Verdict::restricted});
    EXPECT_TRUE(finding->text().startsWith(u"1 font here looks restricted"_s));
}

TEST_F(DocumentHeaders, OpenFontsGetASeal)
{
    show({Verdict::likelyOK});
    EXPECT_TRUE(finding->isVisible());
    EXPECT_EQ(finding->symbol(), u"checkmark.seal.fill"_s);
    EXPECT_EQ(finding->colour(), verdictLook(Verdict::likelyOK).colour);
    EXPECT_EQ(finding->text(),
              u"Every font in this PDF names an open license or isn't embedded."_s);
}

TEST_F(DocumentHeaders, StrippedFieldsAreExplained)
{
    show({Verdict::unknown}, true);
    EXPECT_TRUE(shows(qtText(strippedFieldsNote)));
    show({Verdict::unknown}, false);
    EXPECT_FALSE(shows(qtText(strippedFieldsNote)));
}

TEST_F(DocumentHeaders, TheSentenceHasTheVerdictsColourUnlessMoreContrastIsWanted)
{
    show({Verdict::restricted});
    const auto darkestWord = [this] {
        const QImage image = finding->grab().toImage();
        int least = 255;
        for (int y = 0; y < image.height(); ++y)
            for (int x = finding->contentsRect().left(); x < image.width(); ++x)
                least = std::min(least, image.pixelColor(x, y).red());
        return least;
    };
    EXPECT_GT(darkestWord(), 180);
    setMoreContrastWanted(true);
    EXPECT_LT(darkestWord(), 100);
    setMoreContrastWanted(false);
    EXPECT_GT(darkestWord(), 180);
}

TEST_F(DocumentHeaders, ALongNameDoesNotWidenTheWindow)
{
    audit.fileName = std::string(300, 'W') + ".pdf";
    show({});
    EXPECT_LT(header.minimumSizeHint().width(), 300);
    const auto* const name = header.findChild<SelectableText*>();
    EXPECT_EQ(name->height(), name->heightForWidth(name->width()));
}

} // namespace
} // namespace quillmark::test
