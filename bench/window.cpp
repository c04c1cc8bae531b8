// The window by itself, for window.sh: how long it takes to be seen, what memory it holds, and how
// long it keeps its user waiting while fonts and documents are read.
//
//   bench_window fonts FOLDER COUNT   writes small fonts with different names
//   bench_window plain                a window with the same widgets and no data, until it is seen
//   bench_window window               ours, until it is seen
//   bench_window folder FOLDER        ours, while it scans a folder
//   bench_window document PDF         ours, while it checks a document
//
// It prints one figure a line: a name, a colon, and a number.
#include "library/SystemFontService.h"
#include "model/AppModel.h"
#include "model/RandomUUID.h"
#include "model/ThreadPoolRunner.h"
#include "support/FontBytes.h"
#include "ui/Appearance.h"
#include "ui/FirstPaint.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace quillmark;

/// In MB, as the system counts it now.
double residentMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
    return 0;
}

void print(std::string_view name, double value)
{
    std::cout << name << ": " << value << '\n';
}

/// Ends the program at once: taking a window apart is not what is measured.
[[noreturn]] void leave()
{
    std::cout.flush();
    std::_Exit(EXIT_SUCCESS);
}

void writeFonts(const std::filesystem::path& folder, int count)
{
    std::filesystem::create_directories(folder);
    constexpr int perFamily = 8;
    for (int number = 0; number < count; ++number) {
        const auto digits = [](int value) {
            const std::string text = std::to_string(value);
            return std::u16string(text.begin(), text.end());
        };
        const std::u16string family = u"Bench " + digits(number / perFamily);
        const std::u16string style = u"Style " + digits(number % perFamily);
        const bool isOpen = number % 3 == 0;
        const auto font =
            test::FontBytes{}
                .face()
                .name(0, u"Copyright 2026 The Bench Project Authors")
                .name(1, family)
                .name(2, style)
                .name(4, family + u" " + style)
                .name(6, u"Bench" + digits(number / perFamily) + u"-" + digits(number % perFamily))
                .name(8, u"Bench Type Foundry")
                .name(13, isOpen ? u"This Font Software is licensed under the SIL Open Font "
                                   u"License, Version 1.1."
                                 : u"You may use this font with one computer.")
                .os2({.fsType = static_cast<std::uint16_t>(number % 5 == 1 ? 2 : 0)})
                .build();
        std::ofstream file(folder / ("bench" + std::to_string(number) + ".ttf"), std::ios::binary);
        file.write(reinterpret_cast<const char*>(font.data()),
                   static_cast<std::streamsize>(font.size()));
    }
}

/// The widgets of the real window, filled with nothing.
std::unique_ptr<QMainWindow> plainWindow()
{
    auto window = std::make_unique<QMainWindow>();
    window->resize(1280, 780);
    for (const auto* const title : {"File", "Edit", "View", "Help"}) {
        QMenu* const menu = window->menuBar()->addMenu(QString::fromLatin1(title));
        for (int entry = 0; entry < 6; ++entry)
            menu->addAction(QStringLiteral("Command"));
    }
    QToolBar* const bar = window->addToolBar(QStringLiteral("Toolbar"));
    for (int button = 0; button < 3; ++button)
        bar->addAction(QStringLiteral("Button"));
    bar->addWidget(new QLineEdit);

    auto* const splitter = new QSplitter;
    auto* const tree = new QTreeView;
    tree->setModel(new QStandardItemModel(5, 1, tree));
    splitter->addWidget(tree);

    auto* const list = new QWidget;
    auto* const layout = new QVBoxLayout(list);
    layout->addWidget(new QLabel(QStringLiteral("Title")));
    layout->addWidget(new QLabel(QStringLiteral("Subtitle")));
    auto* const filters = new QHBoxLayout;
    for (int chip = 0; chip < 4; ++chip)
        filters->addWidget(new QToolButton);
    filters->addWidget(new QComboBox);
    layout->addLayout(filters);
    auto* const table = new QTableView;
    table->setModel(new QStandardItemModel(0, 5, table));
    layout->addWidget(table);
    splitter->addWidget(list);

    auto* const details = new QWidget;
    auto* const form = new QFormLayout(details);
    for (int row = 0; row < 16; ++row)
        form->addRow(QStringLiteral("Label"), new QLabel(QStringLiteral("Value")));
    form->addRow(QStringLiteral("Kind"), new QComboBox);
    form->addRow(QStringLiteral("From"), new QLineEdit);
    form->addRow(QStringLiteral("Notes"), new QPlainTextEdit);
    form->addRow(QStringLiteral("Link"), new QLineEdit);
    form->addRow(new QPushButton(QStringLiteral("Button")));
    auto* const scroll = new QScrollArea;
    scroll->setWidget(details);
    scroll->setWidgetResizable(true);
    splitter->addWidget(scroll);
    window->setCentralWidget(splitter);
    window->statusBar()->showMessage(QStringLiteral("Ready"));
    return window;
}

/// Nobody is asked anything here.
class NoPrompts final : public Prompts {
public:
    void open(const OpenPanel&, std::function<void(std::vector<std::filesystem::path>)>) override {}
    void save(const SavePanel&, std::function<void(std::filesystem::path)>) override {}
    void reveal(const std::filesystem::path&) override {}
    bool openURL(const std::string&) override { return false; }
};

/// The application in a home of its own.
struct Application {
    QTemporaryDir home;
    NoPrompts prompts;
    ThreadPoolRunner background;
    Appearance appearance;
    UserPlaces places{home.path().toStdString(),
                      home.filePath(QStringLiteral("settings.ini")).toStdString()};
    AppModel model{{
                       .prompts = prompts,
                       .background = background,
                       .fontService = [] { return std::make_shared<SystemFontService>(); },
                       .clock = std::chrono::system_clock::now,
                       .makeUUID = randomUUID,
                       .places = places,
                   },
                   AppModel::Persistence::off};
    MainWindow window{model, places};
};

/// Notices for how long the event loop does not come back.
class Heartbeat final : public QObject {
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            m_longest = std::max(m_longest, m_since.nsecsElapsed());
            m_since.restart();
        });
        m_since.start();
        m_timer.start();
    }
    /// In milliseconds.
    [[nodiscard]] double longest() const { return static_cast<double>(m_longest) / 1e6; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest{};
};

/// Runs `work` in the window until `isDone`, and tells the longest time without an answer.
void watch(Application& application, const std::function<void()>& work,
           const std::function<bool()>& isDone)
{
    application.window.show();
    afterFirstPaint(application.window, [&, work, isDone] {
        auto* const heartbeat = new Heartbeat;
        auto* const poll = new QTimer(&application.window);
        QObject::connect(poll, &QTimer::timeout, &application.window, [&, isDone, heartbeat] {
            if (!isDone()) return;
            // What has been read is also to be drawn.
            QTimer::singleShot(300, &application.window, [&, heartbeat] {
                print("longest stall in ms", heartbeat->longest());
                print("MB of memory", residentMemory());
                if (application.model.list())
                    print("rows", static_cast<double>(application.model.list()->rows.size()));
                leave();
            });
        });
        poll->start(20);
        work();
    });
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    const std::string mode = words.empty() ? std::string() : words[0];
    if (mode == "fonts" && words.size() == 3) {
        writeFonts(words[1], std::stoi(words[2]));
        return EXIT_SUCCESS;
    }
    const QApplication qt(argumentCount, arguments);
    const auto seen = [] {
        print("MB of memory", residentMemory());
        leave();
    };
    if (mode == "plain") {
        const auto window = plainWindow();
        window->show();
        afterFirstPaint(*window, seen);
        return QApplication::exec();
    }
    Application application;
    AppModel& model = application.model;
    if (mode == "window") {
        application.window.show();
        afterFirstPaint(application.window, seen);
    } else if (mode == "folder" && words.size() == 2) {
        watch(
            application, [&] { model.scanFolder(words[1], AppModel::Select::yes); },
            [&] { return !model.folders().empty() && !model.scanningFolder(); });
    } else if (mode == "document" && words.size() == 2) {
        watch(
            application, [&] { model.checkDocuments({words[1]}); },
            [&] { return !model.documents().empty() && !model.checkingDocument(); });
    } else {
        std::cerr << "see the top of bench/window.cpp\n";
        return 2;
    }
    return QApplication::exec();
}
