#include "app/model/ModelFixture.h"

#include "listing/DocumentSummary.h"
#include "support/PDFBytes.h"
#include "support/PDFEncryption.h"
#include "support/SampleDocument.h"

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Documents : public ModelFixture {
protected:
    [[nodiscard]] const PDFFontInfo& font(std::size_t document) const
    {
        return *model->documents().at(document)->rows.at(0).pdf;
    }
};

constexpr auto dropAPDF = "Drop a PDF file. (Other documents: export or print them to PDF first, "
                          "then check the PDF.)";

TEST_F(Documents, ThePanelAsksForAnyNumberOfPDFs)
{
    model->chooseDocuments();
    EXPECT_EQ(prompts.opened,
              (OpenPanel{OpenPanel::Choice::pdfs, "Check",
                         "Choose PDFs to list the fonts embedded in them. The files are only read, "
                         "never changed."}));
    EXPECT_EQ(background.waiting(), 0U);
}

TEST_F(Documents, AreCheckedOneAfterTheOtherInTheOrderOfThePanel)
{
    const auto second = addDocument("b.pdf");
    const auto first = addDocument("a.pdf");
    model->chooseDocuments();
    prompts.answerOpen({second, first});
    EXPECT_EQ(model->checkingDocument(), "b.pdf");
    EXPECT_EQ(background.waiting(), 1U);
    background.runOne();
    EXPECT_THAT(documentPaths(), ElementsAre(second));
    EXPECT_EQ(model->selection(), SidebarItem::document(second));
    EXPECT_EQ(model->checkingDocument(), "a.pdf");
    background.runOne();
    EXPECT_THAT(documentPaths(), ElementsAre(second, first));
    EXPECT_EQ(model->selection(), SidebarItem::document(first));
    EXPECT_EQ(model->checkingDocument(), std::nullopt);
    EXPECT_EQ(model->documents()[0]->checkedAt, now);
}

TEST_F(Documents, AnExtensionInCapitalsIsAccepted)
{
    const auto path = addCheckedDocument("FLYER.PDF");
    EXPECT_THAT(documentPaths(), ElementsAre(path));
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Documents, OnlyOtherFilesGiveAnAlertAndNoCheck)
{
    model->checkDocuments({"/letter.docx", "/pdf", "/.pdf", "/a.pdf.odt"});
    EXPECT_EQ(model->alert(), dropAPDF);
    EXPECT_EQ(background.waiting(), 0U);
    model->setAlert(std::nullopt);
    model->checkDocuments({});
    EXPECT_EQ(model->alert(), dropAPDF);
}

TEST_F(Documents, OtherFilesAmongPDFsAreLeftOutSilently)
{
    const auto path = addDocument("a.pdf");
    model->checkDocuments({"/letter.docx", path});
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(path));
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Documents, OneThatCannotBeOpenedIsReportedAndTheNextIsChecked)
{
    const auto broken = folder.write("broken.pdf", "no PDF");
    const auto good = addDocument("good.pdf");
    model->checkDocuments({broken, good});
    background.runOne();
    EXPECT_EQ(model->alert(), "broken.pdf couldn't be opened as a PDF.");
    EXPECT_THAT(model->documents(), IsEmpty());
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    EXPECT_EQ(model->checkingDocument(), "good.pdf");
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(good));
}

TEST_F(Documents, OneThatIsLockedIsReportedAndNothingElseChanges)
{
    const Bytes locked = encrypted(onePage("").build(), Encryption::aesWith256Bits, "secret");
    const auto path = folder.write("locked.pdf", locked);
    model->checkDocuments({path});
    background.runAll();
    EXPECT_EQ(model->alert(), (PDFCheckError{PDFCheckError::Kind::locked, "locked.pdf"}.message()));
    EXPECT_THAT(model->documents(), IsEmpty());
    EXPECT_EQ(model->checkingDocument(), std::nullopt);
}

TEST_F(Documents, ANewerAlertReplacesOneNotYetDismissed)
{
    model->checkDocuments({folder.write("one.pdf", ""), folder.write("two.pdf", "")});
    const auto alerts = count(&AppModel::alertChanged);
    background.runAll();
    EXPECT_EQ(*alerts, 2);
    EXPECT_EQ(model->alert(), "two.pdf couldn't be opened as a PDF.");
}

TEST_F(Documents, CheckedAgainKeepsItsPlaceWithFreshRows)
{
    const auto first = addCheckedDocument("a.pdf", "Brook");
    const auto second = addCheckedDocument("b.pdf");
    addDocument("a.pdf", "Cedar");
    now += std::chrono::hours(1);
    model->recheck(*model->documents()[0]);
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(first, second));
    EXPECT_THAT(font(0).pdfNames, ElementsAre("Cedar"));
    EXPECT_EQ(model->documents()[0]->checkedAt, now);
    EXPECT_EQ(model->selection(), SidebarItem::document(first));
}

TEST_F(Documents, NamedTwiceInOneRequestAreOneEntry)
{
    const auto path = addDocument("a.pdf");
    model->checkDocuments({path, folder.path() / "." / "a.pdf"});
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(path));
}

TEST_F(Documents, CheckedAgainWithTheSameResultNotifyNobody)
{
    const auto path = addCheckedDocument("a.pdf");
    const auto documents = count(&AppModel::documentsChanged);
    const auto list = count(&AppModel::listChanged);
    const auto selection = count(&AppModel::selectionChanged);
    model->checkDocuments({path});
    background.runAll();
    EXPECT_EQ(*documents, 0);
    EXPECT_EQ(*list, 0);
    EXPECT_EQ(*selection, 0);
}

TEST_F(Documents, ACheckedDocumentThatWasDeletedIsReportedAndKept)
{
    const auto path = addCheckedDocument("a.pdf");
    std::filesystem::remove(path);
    model->recheck(*model->documents()[0]);
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(path));
    EXPECT_EQ(model->alert(), "a.pdf couldn't be opened as a PDF.");
}

TEST_F(Documents, DroppedDuringACheckAreCheckedToo)
{
    const auto first = addDocument("a.pdf");
    const auto second = addDocument("b.pdf");
    model->checkDocuments({first});
    model->checkDocuments({second});
    EXPECT_EQ(model->checkingDocument(), "b.pdf");
    background.runOne();
    EXPECT_EQ(model->checkingDocument(), "b.pdf");
    background.runOne();
    EXPECT_EQ(model->checkingDocument(), std::nullopt);
    EXPECT_THAT(documentPaths(), ElementsAre(first, second));
}

TEST_F(Documents, OfTwoChecksOfOneDocumentTheLaterOneStays)
{
    const auto path = addDocument("a.pdf", "Brook");
    model->checkDocuments({path});
    model->checkDocuments({path});
    background.runOne(1);
    addDocument("a.pdf", "Cedar");
    background.runOne();
    EXPECT_THAT(font(0).pdfNames, ElementsAre("Brook"));
}

TEST_F(Documents, AreMatchedToInstalledFonts)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    background.runAll();
    addCheckedDocument("a.pdf", "Brook");
    EXPECT_EQ(font(0).matchedPath, "/fonts/Brook.ttf");
}

TEST_F(Documents, AreMatchedToInstalledFontsBeforeTheseAreListed)
{
    install(*fonts, unknownFont());
    addCheckedDocument("a.pdf", "Brook");
    EXPECT_EQ(font(0).matchedPath, "/fonts/Brook.ttf");
}

TEST_F(Documents, AFontOfAFolderWinsOverAnInstalledOneAndTheLastFolderOverAll)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    addScannedFolder("first", {unknownFont()});
    const auto last = addScannedFolder("last", {unknownFont()});
    addCheckedDocument("a.pdf", "Brook");
    EXPECT_EQ(font(0).matchedPath, (last / "Brook.ttf").native());
}

TEST_F(Documents, StrippedFontsAreExplainedUntilTheirFolderHasBeenScanned)
{
    const Bytes stripped(32); // nothing that can be read as a font
    const auto path = folder.write("a.pdf", sampleDocument(1, {{"Brook", {1}, stripped}}));
    model->checkDocuments({path});
    background.runAll();
    EXPECT_TRUE(hasStrippedFields(*model->documents().at(0)));
    const auto scanned = addScannedFolder("Fonts", {unknownFont()});
    model->recheck(*model->documents().at(0));
    background.runAll();
    EXPECT_EQ(font(0).matchedPath, (scanned / "Brook.ttf").native());
    EXPECT_FALSE(hasStrippedFields(*model->documents().at(0)));
}

TEST_F(Documents, AreMatchedToNamedInstances)
{
    FontValues variable = unknownFont();
    variable.instance = u"Heavy";
    const auto fontsFolder = addScannedFolder("Fonts", {variable});
    addCheckedDocument("a.pdf", "Brook-Heavy");
    EXPECT_EQ(font(0).matchedPath, (fontsFolder / "Brook.ttf").native());
    EXPECT_FALSE(font(0).matchedByFamily);
}

TEST_F(Documents, FontsScannedDuringTheCheckAreMatchedOnlyByTheNextOne)
{
    const auto path = addDocument("a.pdf", "Brook");
    model->checkDocuments({path});
    const auto scanned = addFolder("Fonts", {unknownFont()});
    model->scanFolder(scanned, AppModel::Select::no);
    background.runOne(1);
    background.runAll();
    EXPECT_EQ(font(0).matchedPath, std::nullopt);
    model->recheck(*model->documents()[0]);
    background.runAll();
    EXPECT_EQ(font(0).matchedPath, (scanned / "Brook.ttf").native());
}

TEST_F(Documents, RemovingTheShownOneShowsThePageForChecking)
{
    const auto first = addCheckedDocument("a.pdf");
    const auto second = addCheckedDocument("b.pdf");
    model->removeDocument(second);
    EXPECT_THAT(documentPaths(), ElementsAre(first));
    EXPECT_EQ(model->selection(), SidebarItem::checkDocument());
    EXPECT_EQ(model->list(), std::nullopt);
}

TEST_F(Documents, RemovingAnotherOneKeepsTheSelection)
{
    const auto first = addCheckedDocument("a.pdf");
    const auto second = addCheckedDocument("b.pdf");
    model->removeDocument(first);
    EXPECT_THAT(documentPaths(), ElementsAre(second));
    EXPECT_EQ(model->selection(), SidebarItem::document(second));
    const auto changed = count(&AppModel::documentsChanged);
    model->removeDocument(first);
    EXPECT_EQ(*changed, 0);
}

TEST_F(Documents, AreNotRemembered)
{
    addCheckedDocument("a.pdf");
    makeModel(AppModel::Persistence::on);
    model->start();
    background.runAll();
    EXPECT_THAT(model->documents(), IsEmpty());
}

TEST_F(Documents, OneWhoseNameIsNotUTF8CanBeCheckedAgain)
{
    addCheckedDocument("b\xFC.pdf", "Brook");
    ASSERT_EQ(model->documents().size(), 1U);
    EXPECT_EQ(model->documents()[0]->fileName, "b\uFFFD.pdf");
    addDocument("b\xFC.pdf", "Cedar");
    model->recheck(*model->documents()[0]);
    EXPECT_EQ(model->checkingDocument(), "b\uFFFD.pdf");
    background.runAll();
    ASSERT_EQ(model->documents().size(), 1U);
    EXPECT_THAT(font(0).pdfNames, ElementsAre("Cedar"));
}

} // namespace
} // namespace quillmark::test
