#include "ui/FontDetailView.h"

#include "FontRows.h"
#include "app/model/ModelFixture.h"
#include "model/QtText.h"
#include "ui/EmptyState.h"
#include "ui/FactList.h"
#include "ui/NoteEditor.h"
#include "ui/SectionBox.h"
#include "ui/SelectableText.h"
#include "ui/VerdictBadge.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <algorithm>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class FontDetails : public ModelFixture {
protected:
    FontDetails()
    {
        view.resize(340, 700);
        view.show();
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    void show(const AuditRow& row)
    {
        view.setRow(&row);
        // Texts grow and boxes follow, level by level.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        QCoreApplication::processEvents();
    }
    [[nodiscard]] QWidget* content() const { return view.findChild<QScrollArea*>()->widget(); }
    /// The text under a name that is in sight; null when there is none.
    [[nodiscard]] SelectableText* text(const QString& name) const
    {
        for (auto* const text : view.findChildren<SelectableText*>())
            if (text->isVisible() && text->accessibleName() == name) return text;
        return nullptr;
    }
    [[nodiscard]] QString shown(const QString& name) const
    {
        const SelectableText* const found = text(name);
        return found == nullptr ? u"(none)"_s : found->toPlainText();
    }
    /// What is in sight from top to bottom: the texts of labels, the names of all else.
    [[nodiscard]] std::vector<std::string> sights() const
    {
        std::vector<std::pair<int, std::string>> found;
        for (auto* const widget : content()->findChildren<QWidget*>()) {
            if (!widget->isVisible()) continue;
            std::string name;
            if (auto* const label = qobject_cast<QLabel*>(widget))
                name = label->text().toStdString();
            else if (qobject_cast<VerdictBadge*>(widget) || qobject_cast<SelectableText*>(widget))
                name = "<" + widget->accessibleName().toStdString() + ">";
            else if (auto* const button = qobject_cast<QPushButton*>(widget))
                name = "[" + button->text().toStdString() + "]";
            if (!name.empty()) found.emplace_back(widget->mapTo(content(), QPoint(0, 0)).y(), name);
        }
        std::ranges::stable_sort(found, {}, &std::pair<int, std::string>::first);
        std::vector<std::string> names;
        for (auto& [top, name] : found)
            names.push_back(std::move(name));
        return names;
    }
    [[nodiscard]] QPushButton* button(const QString& text) const
    {
        for (auto* const button : view.findChildren<QPushButton*>())
            if (button->isVisible() && button->text() == text) return button;
        return nullptr;
    }

    FontDetailView view{*model};
};

TEST_F(FontDetails, WithoutAFontSayWhatWouldStandHere)
{
    const auto* const empty = qobject_cast<EmptyState*>(view.currentWidget());
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->title(), u"Select a font"_s);
    EXPECT_EQ(
        empty->description(),
        u"Its verdict, the reasons, what the font says about itself, and your license notes."_s);
    show(talkativeRow());
    EXPECT_FALSE(empty->isVisible());
    view.setRow(nullptr);
    EXPECT_TRUE(empty->isVisible());
}

TEST_F(FontDetails, GoFromTheNameToTheNotes)
{
    show(documentRow({.pdfNames = {"Brook-Regular"},
                      .subtype = "TrueType",
                      .program = EmbeddedProgram::trueType,
                      .subset = false,
                      .pages = {1},
                      .matchedPath = "/fonts/Brook.ttf"},
                     talkativeRow()));
    EXPECT_THAT(
        sights(),
        ElementsAre("<Font>", "<PostScript name>", "<Likely OK to embed>", "<Verdict>", "<Reasons>",
                    "Check the license; this reads the font's own data. Not legal advice.",
                    "What the font says", "Family", "<Family>", "Copyright", "<Copyright>",
                    "Trademark", "<Trademark>", "Maker", "<Maker>", "Designer", "<Designer>",
                    "License", "<License>", "License file", "<License file>", "License URL",
                    "<https://openfontlicense.org>", "Embedding bits", "<Embedding bits>",
                    "Vendor ID", "<Vendor ID>", "Format", "<Format>", "In this PDF", "Name in PDF",
                    "<Name in PDF>", "Font type", "<Font type>", "Embedded", "<Embedded>", "Pages",
                    "<Pages>", "Matched to", "<Matched to>", "[Show in Finder]",
                    "Your license notes", "License type", "Bought from", "Notes", "Link",
                    "No file attached", "[Attach File…]"));
}

TEST_F(FontDetails, AreNamedByTheFont)
{
    AuditRow row = talkativeRow();
    row.assessment.headline = "A headline.";
    row.assessment.reasons = {"The first reason.", "The second one."};
    show(row);
    EXPECT_EQ(shown(u"Font"_s), u"Brook Regular"_s);
    EXPECT_TRUE(text(u"Font"_s)->font().bold());
    EXPECT_EQ(shown(u"PostScript name"_s), u"Brook-Regular"_s);
    EXPECT_EQ(shown(u"Verdict"_s), u"A headline."_s);
    EXPECT_EQ(shown(u"Reasons"_s), u"The first reason.\nThe second one."_s);
}

TEST_F(FontDetails, HaveTheLargeBadge)
{
    for (const Verdict verdict : allCases<Verdict>) {
        AuditRow row = talkativeRow();
        row.assessment.verdict = verdict;
        show(row);
        const auto* const badge = view.findChild<VerdictBadge*>();
        EXPECT_EQ(badge->verdict(), verdict);
        EXPECT_EQ(badge->size(), verdictBadgeSize(verdict, BadgeSize::large));
    }
}

TEST_F(FontDetails, ShowOnlyWhatTheFontSays)
{
    show(silentRow("Quiet"));
    EXPECT_EQ(shown(u"Family"_s), u"Quiet"_s);
    EXPECT_EQ(shown(u"Copyright"_s), u"(none)"_s);
    EXPECT_EQ(shown(u"Embedding bits"_s), u"None (no OS/2 table)"_s);
    EXPECT_EQ(shown(u"Vendor ID"_s), u"(none)"_s);
    for (auto* const label : view.findChildren<QLabel*>())
        EXPECT_FALSE(label->isVisible() && label->text() == u"Copyright"_s);
    show(talkativeRow());
    EXPECT_EQ(shown(u"Copyright"_s), u"Copyright 2020 The Brook Authors"_s);
    EXPECT_EQ(shown(u"Embedding bits"_s), u"Editable (fsType 0x0008)"_s);
}

TEST_F(FontDetails, TellHowAPDFUsesTheFontOnlyOfAPDFsFont)
{
    show(talkativeRow());
    EXPECT_EQ(shown(u"Matched to"_s), u"(none)"_s);
    show(documentRow({.pdfNames = {"Silent"},
                      .subtype = "Type1",
                      .program = EmbeddedProgram::notEmbedded,
                      .subset = false,
                      .pages = {1, 2, 3, 5},
                      .matchedPath = std::nullopt}));
    EXPECT_EQ(shown(u"Name in PDF"_s), u"Silent"_s);
    EXPECT_EQ(shown(u"Font type"_s), u"Type1"_s);
    EXPECT_EQ(shown(u"Embedded"_s), u"Not embedded"_s);
    EXPECT_EQ(shown(u"Pages"_s), u"1-3, 5"_s);
    EXPECT_EQ(shown(u"Matched to"_s), u"No installed or scanned font with this name"_s);
    show(talkativeRow());
    EXPECT_EQ(shown(u"Matched to"_s), u"(none)"_s);
}

TEST_F(FontDetails, AMatchByFamilyOnlySaysSo)
{
    show(documentRow({.pdfNames = {"Silent"},
                      .subtype = "Type1",
                      .program = EmbeddedProgram::notEmbedded,
                      .subset = false,
                      .pages = {},
                      .matchedPath = "/fonts/Silent-Bold.ttf",
                      .matchedByFamily = true}));
    EXPECT_EQ(shown(u"Matched to"_s), u"/fonts/Silent-Bold.ttf (by family)"_s);
    EXPECT_EQ(shown(u"Pages"_s), u"(none)"_s);
}

TEST_F(FontDetails, APDFsOwnNameStandsBesideOneThatSaysLittle)
{
    const auto row = [](const std::string& pdfName) {
        return documentRow({.pdfNames = {pdfName},
                            .subtype = "TrueType",
                            .program = EmbeddedProgram::trueType,
                            .subset = true,
                            .pages = {1},
                            .matchedPath = std::nullopt},
                           silentRow("Unnamed font"));
    };
    show(row("ABCDEF+Brook"));
    EXPECT_EQ(shown(u"Font"_s), u"Unnamed font  ABCDEF+Brook"_s);
    show(row("ABCDEF+Unnamed font"));
    EXPECT_EQ(shown(u"Font"_s), u"Unnamed font"_s);
}

TEST_F(FontDetails, TheLicensesAddressIsOpenedWhenItIsOne)
{
    AuditRow row = talkativeRow();
    row.facts.licenseURL = "https://example.com/\u00FC";
    show(row);
    auto* const link = qobject_cast<LinkText*>(text(u"https://example.com/ü"_s));
    ASSERT_TRUE(link);
    QTest::mouseClick(link->viewport(), Qt::LeftButton, {}, {5, 5});
    EXPECT_THAT(prompts.openedURLs, ElementsAre("https://example.com/%C3%BC"));
    EXPECT_EQ(model->alert(), std::nullopt);

    row.facts.licenseURL = "www.example.com";
    show(row);
    EXPECT_FALSE(link->isVisible());
    EXPECT_EQ(shown(u"License URL"_s), u"www.example.com"_s);
    EXPECT_FALSE(qobject_cast<LinkText*>(text(u"License URL"_s)));
}

TEST_F(FontDetails, ALinkThatNothingOpensIsReported)
{
    prompts.opensURLs = false;
    show(talkativeRow());
    auto* const link = qobject_cast<LinkText*>(text(u"https://openfontlicense.org"_s));
    ASSERT_TRUE(link);
    QTest::keyClick(link, Qt::Key_Return);
    EXPECT_EQ(model->alert(),
              "https://openfontlicense.org could not be opened: No program for it was found.");
}

TEST_F(FontDetails, RevealTheFontsFile)
{
    AuditRow row = talkativeRow();
    row.facts.filePath = "/fonts/Br\xFC\xFCk.ttf";
    show(row);
    ASSERT_TRUE(button(u"Show in Finder"_s));
    QTest::mouseClick(button(u"Show in Finder"_s), Qt::LeftButton);
    EXPECT_THAT(prompts.revealed, ElementsAre(std::filesystem::path("/fonts/Br\xFC\xFCk.ttf")));
    show(silentRow());
    EXPECT_FALSE(button(u"Show in Finder"_s));
}

TEST_F(FontDetails, HaveTheNoteOfTheFontsName)
{
    model->saveNote({.boughtFrom = "A shop"}, "Brook-Regular");
    show(talkativeRow());
    const auto* const notes = view.findChild<NoteEditor*>();
    EXPECT_EQ(notes->key(), "Brook-Regular");
    EXPECT_EQ(notes->findChild<QLineEdit*>()->text(), u"A shop"_s);
    show(silentRow("Quiet"));
    EXPECT_EQ(notes->key(), "Quiet");
    EXPECT_EQ(notes->findChild<QLineEdit*>()->text(), QString());
}

TEST_F(FontDetails, BeginAtTheTopForEachFont)
{
    show(talkativeRow());
    auto* const bar = view.findChild<QScrollArea*>()->verticalScrollBar();
    ASSERT_TRUE(QTest::qWaitFor([bar] { return bar->maximum() > 100; }));
    bar->setValue(100);
    show(talkativeRow());
    EXPECT_EQ(bar->value(), 100) << "a list that was read again keeps the place";
    AuditRow changed = talkativeRow();
    changed.facts.copyright = "Another notice";
    show(changed);
    EXPECT_EQ(bar->value(), 100);
    EXPECT_EQ(shown(u"Copyright"_s), u"Another notice"_s);
    show(silentRow());
    show(talkativeRow());
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(FontDetails, ValuesStandBelowTheirLabelsWhereItIsNarrow)
{
    show(talkativeRow());
    const auto* const label = view.findChild<FactList*>()->findChild<QLabel*>();
    ASSERT_EQ(label->text(), u"Family"_s);
    const SelectableText* const value = text(u"Family"_s);
    EXPECT_LT(label->geometry().bottom(), value->geometry().top());
    EXPECT_EQ(label->geometry().left(), value->geometry().left());
    view.resize(520, 700);
    QCoreApplication::processEvents();
    EXPECT_LT(label->geometry().right(), value->geometry().left());
    EXPECT_LE(std::abs(label->geometry().center().y() - value->geometry().center().y()), 3);
}

TEST_F(FontDetails, FitWhateverTheFontSays)
{
    AuditRow row = talkativeRow();
    row.facts.fullName = std::string(300, 'W');
    row.facts.postScriptName = std::string(300, 'x');
    row.facts.copyright = std::string(50'000, 'M');
    row.facts.trademark = "\u202Eevil <b>&amp;\x1b[31m";
    row.facts.licenseDescription = std::string(3'000, '\n');
    row.facts.licenseURL = "https://example.com/" + std::string(900, 'a');
    for (const int width : {300, 340, 520}) {
        view.resize(width, 700);
        show(row);
        EXPECT_LE(content()->width(), width);
        for (auto* const text : view.findChildren<SelectableText*>()) {
            if (!text->isVisible()) continue;
            EXPECT_LE(text->mapTo(content(), QPoint(text->width(), 0)).x(), content()->width());
            EXPECT_EQ(text->height(), text->heightForWidth(text->width()))
                << qPrintable(text->accessibleName()) << " at " << width;
        }
    }
    EXPECT_EQ(shown(u"Trademark"_s), u"\uFFFDevil <b>&amp;\uFFFD[31m"_s);
    EXPECT_TRUE(shown(u"Copyright"_s).endsWith(u"(Cut here after 20,000 characters.)"_s));
}

TEST_F(FontDetails, TheirBoxesAreGroupsWithNames)
{
    show(documentRow({}, talkativeRow()));
    std::vector<std::string> names;
    for (auto* const box : view.findChildren<SectionBox*>()) {
        QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(box);
        ASSERT_TRUE(spoken);
        EXPECT_EQ(spoken->role(), QAccessible::Grouping);
        EXPECT_GT(spoken->childCount(), 0);
        EXPECT_EQ(spoken->indexOfChild(spoken->child(0)), 0);
        names.push_back(spoken->text(QAccessible::Name).toStdString());
    }
    EXPECT_THAT(names, ElementsAre("What the font says", "In this PDF", "Your license notes"));
}

/// The names of what is told without any, with their roles.
void collectNameless(QAccessibleInterface* parent, std::vector<std::string>& found)
{
    for (int i = 0; i < parent->childCount(); ++i) {
        QAccessibleInterface* const child = parent->child(i);
        if (child == nullptr || child->state().invisible) continue;
        const auto* const widget = qobject_cast<QWidget*>(child->object());
        if (widget != nullptr && widget->focusPolicy() != Qt::NoFocus &&
            child->text(QAccessible::Name).isEmpty())
            found.emplace_back(widget->metaObject()->className());
        collectNameless(child, found);
    }
}

TEST_F(FontDetails, EveryControlHasAName)
{
    model->saveNote({.url = "https://example.com"}, "Brook-Regular");
    model->attachFile("Brook-Regular");
    prompts.answerOpen({folder.write("receipt.pdf", "paid")});
    background.runAll();
    show(documentRow({}, talkativeRow()));
    std::vector<std::string> nameless;
    collectNameless(QAccessible::queryAccessibleInterface(&view), nameless);
    EXPECT_THAT(nameless, IsEmpty());
}

TEST_F(FontDetails, TheTabKeyPassesTheTextsInOneStep)
{
    show(documentRow({}, talkativeRow()));
    text(u"Font"_s)->setFocus();
    std::vector<std::string> stops;
    for (int i = 0; i < 8; ++i) {
        stops.push_back(QApplication::focusWidget()->accessibleName().toStdString());
        if (auto* const button = qobject_cast<QPushButton*>(QApplication::focusWidget()))
            stops.back() = button->text().toStdString();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_THAT(stops, ElementsAre("Font", "https://openfontlicense.org", "Show in Finder",
                                   "License type", "Bought from", "Notes", "Link", "Attach File…"));
}

TEST_F(FontDetails, TheArrowKeysReachEveryText)
{
    show(talkativeRow());
    text(u"Font"_s)->setFocus();
    std::vector<std::string> met{"Font"};
    for (int i = 0; i < 100 && met.back() != "Format"; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        const auto name = QApplication::focusWidget()->accessibleName().toStdString();
        if (name != met.back()) met.push_back(name);
    }
    EXPECT_THAT(met, ElementsAre("Font", "PostScript name", "Verdict", "Reasons", "Family",
                                 "Copyright", "Trademark", "Maker", "Designer", "License",
                                 "License file", "https://openfontlicense.org", "Embedding bits",
                                 "Vendor ID", "Format"));
}

} // namespace
} // namespace quillmark::test
