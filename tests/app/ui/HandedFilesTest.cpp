#include "ui/HandedFiles.h"

#include "app/model/ModelFixture.h"
#include "model/QtText.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QFileOpenEvent>
#include <QUrl>

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FilesHandedIn : public ModelFixture {};

TEST_F(FilesHandedIn, FoldersAreScannedAndShown)
{
    const auto fontFolder = addFolder("Fonts", {unknownFont()});
    HandedFiles handed(*model);
    handed.open({fontFolder});
    background.runAll();
    EXPECT_THAT(folderPaths(), ElementsAre(fontFolder));
    EXPECT_EQ(model->selection(), SidebarItem::folder(fontFolder.native()));
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(FilesHandedIn, DocumentsWaitForTheInstalledFontsAndTheFolders)
{
    const auto fontFolder = addFolder("Fonts", {unknownFont()});
    const auto document = addDocument("book.pdf");
    HandedFiles handed(*model);
    handed.open({document, fontFolder});
    EXPECT_EQ(model->selection(), SidebarItem::checkDocument());
    model->scanInstalled();
    EXPECT_EQ(background.waiting(), 2U); // the folder and the installed fonts
    background.runOne(1);
    EXPECT_EQ(model->checkingDocument(), std::nullopt);
    background.runOne();
    EXPECT_EQ(model->checkingDocument(), "book.pdf");
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(document));
    EXPECT_EQ(model->selection(), SidebarItem::document(document.native()));
}

TEST_F(FilesHandedIn, DocumentsAreCheckedAtOnceAndInTheirOrderWhenEverythingHasBeenRead)
{
    model->scanInstalled();
    background.runAll();
    const auto second = addDocument("b.pdf");
    const auto first = addDocument("a.PDF");
    HandedFiles handed(*model);
    handed.open({second, folder.write("notes.txt", "x"), first});
    EXPECT_EQ(model->checkingDocument(), "b.pdf");
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(second, first));
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(FilesHandedIn, AnythingElseIsRefusedAloud)
{
    model->scanInstalled();
    background.runAll();
    HandedFiles handed(*model);
    handed.open({folder.write("letter.docx", "x"), folder.path() / "missing.ttf"});
    EXPECT_EQ(model->alert(), "Drop a PDF file. (Other documents: export or print them to PDF "
                              "first, then check the PDF.)");
    EXPECT_EQ(background.waiting(), 0U);
}

TEST_F(FilesHandedIn, ADocumentThatIsNotThereIsReported)
{
    model->scanInstalled();
    background.runAll();
    HandedFiles handed(*model);
    handed.open({folder.path() / "missing.pdf"});
    background.runAll();
    EXPECT_EQ(model->alert(), "missing.pdf couldn't be opened as a PDF.");
}

TEST_F(FilesHandedIn, AFileThatAnEventNamesIsOpened)
{
    model->scanInstalled();
    background.runAll();
    const auto document = addDocument("Größe 100%.pdf");
    HandedFiles handed(*model);
    QFileOpenEvent event(qtText(document.native()));
    QCoreApplication::sendEvent(qApp, &event);
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(document));
}

TEST_F(FilesHandedIn, AnEventThatNamesAPageOfTheWebChangesNothing)
{
    HandedFiles handed(*model);
    QFileOpenEvent event(QUrl(QStringLiteral("https://example.org/book.pdf")));
    QCoreApplication::sendEvent(qApp, &event);
    EXPECT_EQ(background.waiting(), 0U);
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(FilesHandedIn, NothingHandedInChangesNothing)
{
    HandedFiles handed(*model);
    handed.open({});
    EXPECT_EQ(background.waiting(), 0U);
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    EXPECT_THAT(documentPaths(), IsEmpty());
}

} // namespace
} // namespace quillmark::test
