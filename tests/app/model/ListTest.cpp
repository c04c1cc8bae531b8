#include "app/model/ModelFixture.h"

namespace quillmark::test {
namespace {

using testing::ElementsAre;

class List : public ModelFixture {};

TEST_F(List, OfTheInstalledFonts)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    background.runAll();
    ASSERT_TRUE(model->list());
    EXPECT_EQ(model->list()->title, "Installed on This Mac");
    EXPECT_EQ(model->list()->subtitle,
              "Every font installed on this Mac, including the ones that came with macOS");
    EXPECT_THAT(displayNames(model->list()->rows.span()), ElementsAre("Brook"));
    EXPECT_EQ(model->list()->document, nullptr);
}

TEST_F(List, OfAFolder)
{
    const auto path = addScannedFolder("My Fonts", {unknownFont()});
    model->setSelection(SidebarItem::folder(path));
    ASSERT_TRUE(model->list());
    EXPECT_EQ(model->list()->title, "My Fonts");
    EXPECT_EQ(model->list()->subtitle, path.native());
    EXPECT_THAT(displayNames(model->list()->rows.span()), ElementsAre("Brook"));
    EXPECT_EQ(model->list()->document, nullptr);
}

TEST_F(List, OfADocument)
{
    const auto path = addCheckedDocument("flyer.pdf");
    ASSERT_TRUE(model->list());
    EXPECT_EQ(model->list()->title, "flyer.pdf");
    EXPECT_EQ(model->list()->subtitle, "Fonts in flyer.pdf (1 pages)");
    EXPECT_EQ(model->list()->rows.size(), 1U);
    EXPECT_EQ(model->list()->document, model->documents()[0]);
}

TEST_F(List, IsNotThereWithoutASelectionOfFonts)
{
    model->setSelection(std::nullopt);
    EXPECT_EQ(model->list(), std::nullopt);
    model->setSelection(SidebarItem::checkDocument());
    EXPECT_EQ(model->list(), std::nullopt);
    model->setSelection(SidebarItem::folder("/not/there"));
    EXPECT_EQ(model->list(), std::nullopt);
    model->setSelection(SidebarItem::document("/not/there.pdf"));
    EXPECT_EQ(model->list(), std::nullopt);
}

TEST_F(List, OfTheRootFolderHasItsPathAsTitle)
{
    EXPECT_EQ(AuditList::ofFolder({"/", RowList()}).title, "/");
}

TEST_F(List, SharesTheRowsOfTheModel)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    const auto path = addScannedFolder("Fonts", {unknownFont()});
    EXPECT_EQ(model->list()->rows.span().data(), model->installed().span().data());
    model->setSelection(SidebarItem::folder(path));
    EXPECT_EQ(model->list()->rows.span().data(), model->folders()[0].rows.span().data());
    addCheckedDocument("a.pdf");
    EXPECT_EQ(model->list()->rows.span().data(), model->documents()[0]->rows.data());
}

TEST_F(List, KeepsItsRowsWhenTheModelHasNewerOnes)
{
    addCheckedDocument("a.pdf");
    const AuditList list = *model->list();
    model->removeDocument(list.document->path);
    EXPECT_EQ(list.rows.size(), 1U);
    EXPECT_EQ(list.rows.span()[0].facts.family, "Brook");
}

TEST_F(List, NotifiesOnlyWhenWhatIsShownChanges)
{
    const auto changed = count(&AppModel::listChanged);
    const auto path = addScannedFolder("Fonts", {unknownFont()});
    EXPECT_EQ(*changed, 0);
    model->setSelection(SidebarItem::folder(path));
    EXPECT_EQ(*changed, 1);
    install(*fonts, likelyOKFont());
    model->scanInstalled();
    background.runAll();
    EXPECT_EQ(*changed, 1);
    model->removeFolder(path);
    EXPECT_GT(*changed, 1);
    EXPECT_EQ(model->list()->title, "Installed on This Mac");
}

TEST_F(List, IsUpToDateWhenAPropertyNotifies)
{
    const auto path = addScannedFolder("Fonts", {unknownFont()});
    std::string title;
    QObject::connect(model.get(), &AppModel::selectionChanged, model.get(),
                     [&] { title = model->list()->title; });
    model->setSelection(SidebarItem::folder(path));
    EXPECT_EQ(title, "Fonts");
}

class Properties : public ModelFixture {};

TEST_F(Properties, SelectionNotifiesWhenItsCaseOrPathChanges)
{
    const auto changed = count(&AppModel::selectionChanged);
    model->setSelection(SidebarItem::installed());
    EXPECT_EQ(*changed, 0);
    model->setSelection(SidebarItem::folder("/a"));
    model->setSelection(SidebarItem::folder("/a"));
    EXPECT_EQ(*changed, 1);
    model->setSelection(SidebarItem::folder("/b"));
    EXPECT_EQ(*changed, 2);
    model->setSelection(SidebarItem::document("/b"));
    EXPECT_EQ(*changed, 3);
    model->setSelection(std::nullopt);
    model->setSelection(std::nullopt);
    EXPECT_EQ(*changed, 4);
}

TEST_F(Properties, AlertNotifiesWhenItsTextChanges)
{
    const auto changed = count(&AppModel::alertChanged);
    model->setAlert("One");
    model->setAlert("One");
    EXPECT_EQ(*changed, 1);
    model->setAlert("Two");
    EXPECT_EQ(*changed, 2);
    EXPECT_EQ(model->alert(), "Two");
    model->setAlert(std::nullopt);
    EXPECT_EQ(*changed, 3);
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Properties, ShowHelpNotifiesWhenItChanges)
{
    const auto changed = count(&AppModel::showHelpChanged);
    model->setShowHelp(false);
    EXPECT_EQ(*changed, 0);
    model->setShowHelp(true);
    model->setShowHelp(true);
    EXPECT_EQ(*changed, 1);
    EXPECT_TRUE(model->showHelp());
}

} // namespace
} // namespace quillmark::test
