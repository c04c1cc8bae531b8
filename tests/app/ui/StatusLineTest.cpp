#include "ui/StatusLine.h"

#include "app/model/ModelFixture.h"
#include "ui/TextLabel.h"

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

class StatusLineTest : public ModelFixture {
protected:
    StatusLine line{*model};
};

TEST_F(StatusLineTest, TellsWhatIsBeingRead)
{
    model->scanInstalled();
    EXPECT_EQ(line.text(), u"Reading every installed font…"_s);
    const auto path = addFolder("Shop Fonts", {likelyOKFont()});
    model->scanFolder(path, AppModel::Select::no);
    EXPECT_EQ(line.text(), u"Scanning Shop Fonts…"_s);
    model->checkDocuments({addDocument("shop.pdf")});
    EXPECT_EQ(line.text(), u"Checking shop.pdf…"_s);
}

TEST_F(StatusLineTest, SumsUpTheShownList)
{
    const auto path = addScannedFolder("Fonts", {likelyOKFont(), restrictedFont()});
    model->setSelection(SidebarItem::folder(path));
    line.setShownRows(2);
    EXPECT_EQ(line.text(), u"2 fonts: 1 likely OK, 1 restricted, 0 unknown"_s);
    line.setShownRows(1);
    EXPECT_EQ(line.text(), u"1 shown of 2 fonts: 1 likely OK, 1 restricted, 0 unknown"_s);
    model->setSelection(SidebarItem::checkDocument());
    EXPECT_EQ(line.text(), QString());
}

TEST_F(StatusLineTest, AFilesNameNeitherBreaksTheLineNorTurnsIt)
{
    model->checkDocuments({addDocument("a\nb\u202E & <b>.pdf")});
    EXPECT_EQ(line.text(), u"Checking a\uFFFDb\uFFFD & <b>.pdf…"_s);
}

TEST_F(StatusLineTest, OfALongNameBeginningAndEndAreShown)
{
    line.resize(400, 24);
    line.show();
    model->checkDocuments({addDocument(std::string(240, 'W') + ".pdf")});
    EXPECT_EQ(line.text().size(), 240 + u"Checking .pdf…"_s.size());
    const auto* const label = line.findChild<TextLabel*>();
    EXPECT_LT(label->fontMetrics().horizontalAdvance(label->shownText()), 400 - 90);
    EXPECT_TRUE(label->shownText().startsWith(u"Checking W"_s));
    EXPECT_TRUE(label->shownText().endsWith(u"W.pdf…"_s));
    EXPECT_EQ(label->text(), line.text());
    line.resize(8000, 24);
    EXPECT_EQ(label->shownText(), line.text());
}

} // namespace
} // namespace quillmark::test
