#include "ui/DesktopPrompts.h"

#include "PrivateBus.h"
#include "model/QtText.h"
#include "support/TemporaryFolder.h"
#include "ui/ProgramOpener.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

using Paths = std::vector<fs::path>;

const OpenPanel pdfPanel{OpenPanel::Choice::pdfs, "Check", "Choose PDFs to list."};

/// A window with panels over it, and a desktop that remembers what it was to open.
class Panels : public testing::Test {
protected:
    Panels()
    {
        qputenv("HOME", folder.path().c_str());
        prompts.setWindow(&window);
        window.setFocusPolicy(Qt::StrongFocus);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    /// The panel that is on the screen.
    QFileDialog* panel()
    {
        EXPECT_TRUE(QTest::qWaitFor([this] { return find<QFileDialog>() != nullptr; }));
        return find<QFileDialog>();
    }
    template <typename Dialog>
    Dialog* find() const
    {
        for (Dialog* const dialog : window.findChildren<Dialog*>())
            if (dialog->isVisible()) return dialog;
        return nullptr;
    }
    /// Types into the panel what a person would, and confirms.
    void answer(const fs::path& path)
    {
        QFileDialog* const dialog = panel();
        ASSERT_TRUE(dialog);
        auto* const field = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        ASSERT_TRUE(field);
        field->setText(qtText(path.native()));
        QTest::keyClick(field, Qt::Key_Return);
    }
    std::function<void(Paths)> keep()
    {
        return [this](Paths paths) { chosen = std::move(paths); };
    }
    std::function<void(fs::path)> keepOne()
    {
        return [this](const fs::path& path) { chosen = Paths{path}; };
    }

    TemporaryFolder folder;
    QWidget window;
    DesktopPrompts prompts{folder.path() / "settings.ini"};
    std::optional<Paths> chosen;
};

TEST_F(Panels, SayWhatIsAskedAndAreModalToTheWindowAlone)
{
    prompts.open(pdfPanel, keep());
    QFileDialog* const dialog = panel();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Choose PDFs to list."));
    EXPECT_EQ(dialog->labelText(QFileDialog::Accept), QStringLiteral("Check"));
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFiles);
    EXPECT_EQ(dialog->parentWidget(), &window);
    EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(Panels, ACancelledOneAnswersNothingAndGivesTheFocusBack)
{
    QLineEdit field(&window);
    field.show();
    field.setFocus();
    prompts.open(pdfPanel, keep());
    QTest::keyClick(panel(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !find<QFileDialog>(); }));
    EXPECT_EQ(chosen, std::nullopt);
    EXPECT_TRUE(QTest::qWaitFor([&] { return field.hasFocus(); }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChildren<QFileDialog*>().isEmpty(); }));
}

TEST_F(Panels, ForPDFsShowThemWhateverTheCaseOfTheSuffixAndNothingElse)
{
    for (const char* name : {"a.pdf", "B.PDF", "c.Pdf", "d.txt"})
        folder.write(name, "x");
    prompts.open(pdfPanel, keep());
    QFileDialog* const dialog = panel();
    ASSERT_TRUE(dialog);
    dialog->setDirectory(qtText(folder.path().native()));
    auto* const list = dialog->findChild<QAbstractItemView*>(QStringLiteral("listView"));
    ASSERT_TRUE(list);
    const auto names = [&] {
        std::vector<std::string> shown;
        for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row)
            shown.push_back(
                stdText(list->model()->index(row, 0, list->rootIndex()).data().toString()));
        return shown;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return names().size() == 3; }));
    EXPECT_THAT(names(), testing::UnorderedElementsAre("a.pdf", "B.PDF", "c.Pdf"));
}

TEST_F(Panels, SeveralPDFsComeInThePanelsOrder)
{
    const auto first = folder.write("ä b.pdf", "x");
    const auto second = folder.write("c.pdf", "x");
    prompts.open(pdfPanel, keep());
    answer("\"" + second.native() + "\" \"" + first.native() + "\"");
    EXPECT_EQ(chosen, (Paths{second, first}));
}

TEST_F(Panels, AFolderIsChosenAsAWhole)
{
    const auto file = folder.write("My Fonts ü/a.ttf", "x");
    prompts.open({OpenPanel::Choice::folder, "Scan Folder", "Choose a folder."}, keep());
    EXPECT_EQ(panel()->fileMode(), QFileDialog::Directory);
    answer(file.parent_path());
    EXPECT_EQ(chosen, Paths{file.parent_path()});
}

TEST_F(Panels, EachPurposeBeginsWhereItWasLeft)
{
    const auto document = folder.write("Documents/a.pdf", "x");
    const auto font = folder.write("Type/Brook/a.ttf", "x");
    const auto begins = [&](OpenPanel::Choice choice) {
        prompts.open({choice, "OK", "Choose."}, keep());
        const QString directory = panel()->directory().path();
        QTest::keyClick(panel(), Qt::Key_Escape);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !find<QFileDialog>(); }));
        return fs::path(stdText(directory));
    };
    prompts.open(pdfPanel, keep());
    answer(document);
    prompts.open({OpenPanel::Choice::folder, "Scan Folder", "Choose a folder."}, keep());
    answer(font.parent_path());

    EXPECT_EQ(begins(OpenPanel::Choice::pdfs), document.parent_path());
    // The next folder is likely to be a neighbour.
    EXPECT_EQ(begins(OpenPanel::Choice::folder), folder.path() / "Type");
    fs::remove_all(folder.path() / "Type");
    EXPECT_TRUE(fs::exists(begins(OpenPanel::Choice::folder)));
}

TEST_F(Panels, WhileOneIsOpenThereIsNoSecond)
{
    prompts.open(pdfPanel, keep());
    ASSERT_TRUE(panel());
    prompts.save({"list.csv", ExportFormat::csv}, keepOne());
    EXPECT_EQ(window.findChildren<QFileDialog*>().size(), 1);
}

TEST_F(Panels, WhoeverIsAnsweredMayOpenTheNext)
{
    const auto document = folder.write("a.pdf", "x");
    prompts.open(pdfPanel, [&](const Paths&) {
        prompts.save({"list.csv", ExportFormat::csv}, keepOne());
    });
    answer(document);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        auto* const dialog = find<QFileDialog>();
        return dialog != nullptr && dialog->acceptMode() == QFileDialog::AcceptSave;
    }));
}

class SavePanels : public Panels {
protected:
    void ask(ExportFormat format = ExportFormat::csv)
    {
        prompts.save({format == ExportFormat::csv ? "list.csv" : "list.pdf", format}, keepOne());
    }
    void answerQuestion(QMessageBox::StandardButton button)
    {
        // Also the one of the toolkit's own panel, which belongs to that.
        QMessageBox* box{};
        EXPECT_TRUE(QTest::qWaitFor([&] {
            box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            return box != nullptr;
        }));
        if (box != nullptr) QTest::mouseClick(box->button(button), Qt::LeftButton);
    }
};

TEST_F(SavePanels, SuggestTheNameAndTheFormat)
{
    ask(ExportFormat::pdf);
    QFileDialog* const dialog = panel();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Export as PDF"));
    EXPECT_EQ(dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text(),
              QStringLiteral("list.pdf"));
}

TEST_F(SavePanels, AddTheSuffixWhereThereIsNone)
{
    ask();
    answer(folder.path() / "audit");
    EXPECT_EQ(chosen, Paths{folder.path() / "audit.csv"});
    ask();
    answer(folder.path() / "audit.txt");
    EXPECT_EQ(chosen, Paths{folder.path() / "audit.txt"});
}

TEST_F(SavePanels, AskBeforeAFileIsReplacedThatOnlyTheSuffixLeadsTo)
{
    folder.write("audit.csv", "old");
    ask();
    answer(folder.path() / "audit");
    answerQuestion(QMessageBox::No);
    EXPECT_EQ(chosen, std::nullopt);
    ask();
    answer(folder.path() / "audit");
    EXPECT_EQ(chosen, std::nullopt);
    answerQuestion(QMessageBox::Yes);
    EXPECT_EQ(chosen, Paths{folder.path() / "audit.csv"});
}

/// A file manager on the bus that remembers what it was to show.
class FakeFileManager final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    FakeFileManager()
    {
        m_bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), this,
                             QDBusConnection::ExportAllSlots);
        m_bus.registerService(QStringLiteral("org.freedesktop.FileManager1"));
    }
    ~FakeFileManager() override
    {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.FileManager1"));
        m_bus.unregisterObject(QStringLiteral("/org/freedesktop/FileManager1"));
    }
    QStringList shown;

public Q_SLOTS:
    void ShowItems(const QStringList& uris, const QString&) { shown += uris; }

private:
    QDBusConnection m_bus = privateBus();
};

/// Remembers the URLs that programs were to open.
class Programs final : public QObject {
    Q_OBJECT
public:
    Programs()
    {
        for (const QString& scheme : schemes)
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~Programs() override
    {
        for (const QString& scheme : schemes)
            QDesktopServices::unsetUrlHandler(scheme);
    }
    std::vector<std::string> opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened.push_back(url.toEncoded().toStdString()); }

private:
    const QStringList schemes{QStringLiteral("file"), QStringLiteral("http"),
                              QStringLiteral("https"), QStringLiteral("mailto")};
};

class Revealing : public testing::Test {
protected:
    /// What the file manager was asked for.
    std::vector<std::string> shownBy(const FakeFileManager& manager)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.shown.isEmpty(); }));
        std::vector<std::string> shown;
        for (const QString& uri : manager.shown)
            shown.push_back(stdText(uri));
        return shown;
    }

    TemporaryFolder folder;
    Programs programs;
    DesktopPrompts prompts{folder.path() / "settings.ini"};
};

TEST_F(Revealing, AFileIsSelectedInTheFileManager)
{
    const FakeFileManager manager;
    prompts.reveal(folder.write("a b/ü#\xFF.ttf", "x"));
    EXPECT_THAT(shownBy(manager),
                ElementsAre(fileURL(folder.path().native()) + "/a%20b/%C3%BC%23%FF.ttf"));
    EXPECT_THAT(programs.opened, IsEmpty());
}

TEST_F(Revealing, AFolderIsSelectedToo)
{
    const FakeFileManager manager;
    prompts.reveal(folder.path());
    EXPECT_THAT(shownBy(manager), ElementsAre(fileURL(folder.path().native())));
}

TEST_F(Revealing, InPlaceOfWhatIsGoneTheNearestFolderIsShown)
{
    const FakeFileManager manager;
    prompts.reveal(folder.path() / "gone/deeper/a.ttf");
    EXPECT_THAT(shownBy(manager), ElementsAre(fileURL(folder.path().native())));
}

TEST_F(Revealing, WithoutAFileManagerTheFolderIsOpenedAndNeverTheFile)
{
    static_cast<void>(privateBus());
    prompts.reveal(folder.write("a b/a.ttf", "x"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !programs.opened.empty(); }));
    EXPECT_THAT(programs.opened, ElementsAre(fileURL((folder.path() / "a b").native())));
}

TEST_F(Revealing, WithoutAFileManagerAFolderIsOpenedItself)
{
    static_cast<void>(privateBus());
    prompts.reveal(folder.path());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !programs.opened.empty(); }));
    EXPECT_THAT(programs.opened, ElementsAre(fileURL(folder.path().native())));
}

TEST_F(Revealing, ALinkThatLeadsNowhereIsShownItself)
{
    const FakeFileManager manager;
    const fs::path link = folder.path() / "link.ttf";
    fs::create_symlink("nowhere", link);
    prompts.reveal(link);
    EXPECT_THAT(shownBy(manager), ElementsAre(fileURL(link.native())));
}

class Opening : public Revealing {};

TEST_F(Opening, OnlyWebAddressesGoToTheBrowser)
{
    EXPECT_TRUE(prompts.openURL("https://example.org/a?b=c#d"));
    EXPECT_TRUE(prompts.openURL("http://example.org/"));
    for (const char* refused :
         {"ftp://example.org/", "mailto:a@example.org", "javascript:alert(1)",
          "https:///etc/passwd", "HTTPS", "", "quillmark:a", "http://user@example.org/"})
        EXPECT_FALSE(prompts.openURL(refused)) << refused;
    EXPECT_THAT(programs.opened, ElementsAre("https://example.org/a?b=c#d", "http://example.org/"));
}

TEST_F(Opening, AFileGoesToItsProgram)
{
    const fs::path receipt = folder.write("a ü%20.pdf", "%PDF-1.4\n");
    EXPECT_TRUE(prompts.openURL(fileURL(receipt.native())));
    EXPECT_THAT(programs.opened, ElementsAre(fileURL(receipt.native())));
}

TEST_F(Opening, WhatIsNotThereOrNoFileIsNotOpened)
{
    EXPECT_FALSE(prompts.openURL(fileURL((folder.path() / "gone.pdf").native())));
    EXPECT_FALSE(prompts.openURL(fileURL(folder.path().native())));
    EXPECT_THAT(programs.opened, IsEmpty());
}

TEST_F(Opening, AProgramIsShownAndNeverRun)
{
    const FakeFileManager manager;
    const fs::path script = folder.write("receipt", "#!/bin/sh\necho paid\n");
    EXPECT_TRUE(prompts.openURL(fileURL(script.native())));
    EXPECT_THAT(shownBy(manager), ElementsAre(fileURL(script.native())));
    EXPECT_THAT(programs.opened, IsEmpty());
}

TEST(IsProgram, WhatADesktopWouldStart)
{
    const TemporaryFolder folder;
    struct Case {
        const char* name;
        const char* content;
        bool isProgram;
    };
    for (const Case& file : {
             Case{"receipt.pdf", "%PDF-1.4\n", false},
             Case{"license.txt", "Free for all.\n", false},
             Case{"photo.jpg", "\xFF\xD8\xFF\xE0", false},
             Case{"mail.eml", "From: shop@example.org\n", false},
             Case{"font.desktop", "[Desktop Entry]\nType=Application\nExec=true\n", true},
             Case{"install.sh", "echo\n", true},
             Case{"noSuffix", "#!/usr/bin/python3\n", true},
             Case{"noSuffix2",
                  "\x7F"
                  "ELF\2\1\1\0\0\0\0\0\0\0\0\0\3\0\x3E\0",
                  true},
             Case{"setup.exe", "MZ", true},
             Case{"SETUP.MSI", "", true},
             Case{"tool.jar", "PK\3\4", true},
             Case{"font.deb", "!<arch>\ndebian-binary", true},
             Case{"App.AppImage", "x", true},
         })
        EXPECT_EQ(isProgram(folder.write(file.name, std::string_view(file.content))),
                  file.isProgram)
            << file.name;
}

TEST(IsProgram, WhatMayBeExecutedAndWhatCannotBeRead)
{
    const TemporaryFolder folder;
    const fs::path receipt = folder.write("receipt.pdf", "%PDF-1.4\n");
    EXPECT_FALSE(isProgram(receipt));
    fs::permissions(receipt, fs::perms::owner_exec, fs::perm_options::add);
    EXPECT_TRUE(isProgram(receipt));
    EXPECT_TRUE(isProgram(folder.path() / "gone.pdf"));
}

} // namespace
} // namespace quillmark::test

#include "DesktopPromptsTest.moc"
