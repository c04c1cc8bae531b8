#include "app/model/ModelFixture.h"

#include "export/AuditExport.h"
#include "export/PDFReport.h"

#include <sys/stat.h>

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Export : public ModelFixture {
protected:
    /// Shows a list with one installed font.
    void showInstalled()
    {
        install(*fonts, unknownFont());
        model->scanInstalled();
        background.runAll();
    }
    /// Exports the list to this name.
    std::filesystem::path exportAs(const std::string& name, ExportFormat format)
    {
        std::filesystem::path path = folder.path() / name;
        model->export_(format);
        prompts.answerSave(path);
        background.runAll();
        return path;
    }
    /// The report of the current list under this title and date.
    [[nodiscard]] std::string report(const std::string& title,
                                     std::chrono::system_clock::time_point date) const
    {
        const auto bytes = AuditExport::pdfReport(title, model->list()->subtitle,
                                                  model->list()->rows.span(), model->notes(), date);
        if (!bytes) return "no report";
        return {reinterpret_cast<const char*>(bytes->data()), bytes->size()};
    }
};

TEST_F(Export, OfAnEmptyListShowsAnAlertAndNoPanel)
{
    model->export_(ExportFormat::csv);
    EXPECT_EQ(model->alert(), "There's nothing to export in this view yet.");
    EXPECT_EQ(prompts.saved, std::nullopt);
    model->setAlert(std::nullopt);
    model->export_(ExportFormat::pdf);
    EXPECT_EQ(model->alert(), "There's nothing to export in this view yet.");
    EXPECT_EQ(prompts.saved, std::nullopt);
}

TEST_F(Export, WithoutAListDoesNothing)
{
    model->setSelection(SidebarItem::checkDocument());
    model->export_(ExportFormat::csv);
    EXPECT_EQ(model->alert(), std::nullopt);
    EXPECT_EQ(prompts.saved, std::nullopt);
}

TEST_F(Export, SuggestsTheListsTitleAsName)
{
    showInstalled();
    model->export_(ExportFormat::csv);
    EXPECT_EQ(prompts.saved, (SavePanel{"Installed on This Mac.csv", ExportFormat::csv}));
    model->export_(ExportFormat::pdf);
    EXPECT_EQ(prompts.saved, (SavePanel{"Installed on This Mac.pdf", ExportFormat::pdf}));
    const auto path = addScannedFolder("My Fonts v1.2", {unknownFont()});
    model->setSelection(SidebarItem::folder(path));
    model->export_(ExportFormat::csv);
    EXPECT_EQ(prompts.saved, (SavePanel{"My Fonts v1.2.csv", ExportFormat::csv}));
}

TEST_F(Export, SuggestsADocumentsNameWithoutItsExtension)
{
    addCheckedDocument("Flyer.v2.PDF");
    model->export_(ExportFormat::csv);
    EXPECT_EQ(prompts.saved, (SavePanel{"Flyer.v2 fonts.csv", ExportFormat::csv}));
    model->export_(ExportFormat::pdf);
    EXPECT_EQ(prompts.saved, (SavePanel{"Flyer.v2 fonts.pdf", ExportFormat::pdf}));
}

TEST_F(Export, CancellingThePanelWritesNothing)
{
    showInstalled();
    model->export_(ExportFormat::csv);
    EXPECT_EQ(background.waiting(), 0U);
    EXPECT_THAT(prompts.revealed, IsEmpty());
}

TEST_F(Export, AsCSVHasTheRowsAndNotesAndIsRevealed)
{
    showInstalled();
    model->saveNote({.boughtFrom = "A shop"}, "Brook");
    const auto path = exportAs("list.csv", ExportFormat::csv);
    EXPECT_EQ(content(path), AuditExport::csv(model->installed().span(), model->notes()));
    EXPECT_THAT(*content(path), HasSubstr("A shop"));
    EXPECT_THAT(prompts.revealed, ElementsAre(path));
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Export, IsWrittenInTheBackgroundAndRevealedAfterwards)
{
    showInstalled();
    model->export_(ExportFormat::csv);
    prompts.answerSave(folder.path() / "list.csv");
    EXPECT_EQ(background.waiting(), 1U);
    EXPECT_EQ(background.workToEnd, 1);
    EXPECT_THAT(prompts.revealed, IsEmpty());
    EXPECT_EQ(content(folder.path() / "list.csv"), std::nullopt);
}

TEST_F(Export, AsPDFIsTheReportOfNow)
{
    showInstalled();
    model->saveNote({.boughtFrom = "A shop"}, "Brook");
    const auto path = exportAs("list.pdf", ExportFormat::pdf);
    EXPECT_THAT(*content(path), StartsWith("%PDF-"));
    EXPECT_EQ(content(path), report("Font license audit: Installed on This Mac", now));
    EXPECT_THAT(prompts.revealed, ElementsAre(path));
}

TEST_F(Export, OfADocumentBearsTheDateOfItsCheck)
{
    addCheckedDocument("flyer.pdf");
    const auto checked = now;
    now += std::chrono::days(3);
    const auto path = exportAs("report.pdf", ExportFormat::pdf);
    EXPECT_EQ(content(path), report("Font license audit: flyer.pdf", checked));
    EXPECT_NE(content(path), report("Font license audit: flyer.pdf", now));
}

TEST_F(Export, IsOfTheListThatWasShownWhenItWasAskedFor)
{
    showInstalled();
    const std::string expected = AuditExport::csv(model->installed().span(), model->notes());
    model->export_(ExportFormat::csv);
    install(*fonts, likelyOKFont());
    model->scanInstalled();
    background.runAll();
    model->setSelection(std::nullopt);
    prompts.answerSave(folder.path() / "list.csv");
    background.runAll();
    EXPECT_EQ(content(folder.path() / "list.csv"), expected);
}

TEST_F(Export, ReplacesTheFileThatIsThere)
{
    showInstalled();
    folder.write("list.csv", std::string(100'000, 'x'));
    const auto path = exportAs("list.csv", ExportFormat::csv);
    EXPECT_EQ(content(path), AuditExport::csv(model->installed().span(), model->notes()));
}

TEST_F(Export, ANewFileHasTheUsualPermissions)
{
    showInstalled();
    const mode_t before = umask(S_IWGRP | S_IRWXO);
    makeModel(AppModel::Persistence::on);
    model->scanInstalled();
    background.runAll();
    const auto path = exportAs("list.csv", ExportFormat::csv);
    umask(before);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(path).permissions(),
              perms::owner_read | perms::owner_write | perms::group_read);
}

TEST_F(Export, WhatCannotBeWrittenIsReportedAndNotRevealed)
{
    showInstalled();
    const auto path = exportAs("missing/list.csv", ExportFormat::csv);
    EXPECT_EQ(model->alert(), path.native() + " could not be written: No such file or directory.");
    EXPECT_THAT(prompts.revealed, IsEmpty());
    folder.write("folder/file", "");
    const auto other = exportAs("folder", ExportFormat::pdf);
    EXPECT_EQ(model->alert(), other.native() + " could not be written: Is a directory.");
    EXPECT_THAT(prompts.revealed, IsEmpty());
}

} // namespace
} // namespace quillmark::test
