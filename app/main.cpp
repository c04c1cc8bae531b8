#include "assessment/Brand.h"
#include "library/SystemFontService.h"
#include "model/AppModel.h"
#include "model/QtText.h"
#include "model/RandomUUID.h"
#include "model/ThreadPoolRunner.h"
#include "reader/DocumentReader.h"
#include "reader/FontReaders.h"
#include "reader/Readers.h"
#include "ui/Appearance.h"
#include "ui/CommandLine.h"
#include "ui/DesktopPrompts.h"
#include "ui/EndSignals.h"
#include "ui/FirstPaint.h"
#include "ui/HandedFiles.h"
#include "ui/MainWindow.h"
#include "ui/SingleInstance.h"
#include "ui/Updates.h"

#include <QApplication>
#include <QMessageBox>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace quillmark;

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

/// Permission of whoever started the program to come to the front, under Wayland or X11.
std::string activationToken()
{
    const std::string token = variable("XDG_ACTIVATION_TOKEN");
    return token.empty() ? variable("DESKTOP_STARTUP_ID") : token;
}

int say(const CommandLineAnswer& answer)
{
    static_cast<void>(std::fputs(answer.output.c_str(), stdout));
    static_cast<void>(std::fputs(answer.errors.c_str(), stderr));
    return answer.exitCode;
}

/// The arguments for QApplication, which keeps a reference to their number.
class ToolkitArguments {
public:
    ToolkitArguments(const char* program, const std::vector<std::string>& options)
    {
        m_texts.emplace_back(program == nullptr ? "quillmark" : program);
        m_texts.insert(m_texts.end(), options.begin(), options.end());
        for (std::string& text : m_texts)
            m_pointers.push_back(text.data());
        m_count = static_cast<int>(m_pointers.size());
        m_pointers.push_back(nullptr);
    }
    [[nodiscard]] int& count() { return m_count; }
    [[nodiscard]] char** values() { return m_pointers.data(); }

private:
    std::vector<std::string> m_texts;
    std::vector<char*> m_pointers;
    int m_count{};
};

int sayThatItDoesNotAnswer()
{
    QMessageBox box(QMessageBox::Warning, qtText(Brand),
                    QStringLiteral("Quillmark is running already, but does not answer."));
    box.open();
    static_cast<void>(QApplication::exec());
    return EXIT_FAILURE;
}

bool isWindowOpen()
{
    return std::ranges::any_of(QApplication::topLevelWidgets(), &QWidget::isVisible);
}

/// Shows the window until it is closed, with all that belongs to it.
int showWindow(ThreadPoolRunner& background, SingleInstance* instance, const StartRequest& start)
{
    const Appearance appearance;
    const UserPlaces places = UserPlaces::standard();
    DesktopPrompts prompts(places.settingsFile);
    const auto readers = std::make_shared<const reader::Readers>(
        reader::besideThisProgram(reader::Settings::Afterwards::ended));
    AppModel model(
        {
            .prompts = prompts,
            .background = background,
            .fontService =
                [readers] {
                    return std::make_shared<SystemFontService>(
                        std::make_shared<reader::FontReaders>(readers));
                },
            .clock = std::chrono::system_clock::now,
            .makeUUID = randomUUID,
            .places = places,
            .readDocument = reader::documentReader(readers),
        },
        AppModel::Persistence::on);
    MainWindow window(model, places);
    HandedFiles handed(model);
    Updates updates(builtBundleInfo(), places.settingsFile, window, prompts);
    QObject::connect(&window, &MainWindow::checkForUpdatesRequested, &updates,
                     &Updates::checkForUpdates);
    prompts.setWindow(&window);
    QObject::connect(&prompts, &DesktopPrompts::failed, &model,
                     [&](const std::string& sentence) { model.setAlert(sentence); });
    if (instance != nullptr) {
        QObject::connect(instance, &SingleInstance::requested, &window,
                         [&](const StartRequest& request) {
                             comeToFront(window, request.activationToken);
                             handed.open(request.files);
                         });
        instance->listen();
    }
    const EndSignals signals;
    QObject::connect(&signals, &EndSignals::asked, &window, [] { QApplication::quit(); });
    window.show();
    // Fonts are read when there is something to look at.
    afterFirstPaint(window, [&] {
        model.start();
        updates.start();
        handed.open(start.files);
    });

    int code = EXIT_SUCCESS;
    do {
        code = QApplication::exec();
        background.finish();
        // What was still being saved may have failed, and say so.
    } while (isWindowOpen());
    return code;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    // A file above the limit of its size is an error of the write, and not the end of the program.
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    const std::vector<std::string> given(arguments + std::min(argumentCount, 1),
                                         arguments + argumentCount);
    const auto read = readCommandLine(given);
    if (const auto* answer = std::get_if<CommandLineAnswer>(&read)) return say(*answer);
    const auto& windowStart = std::get<WindowStart>(read);
    const StartRequest start{activationToken(), windowStart.files};

    // Before anything that takes time: a second start is over here.
    std::unique_ptr<SingleInstance> instance;
    auto role = SingleInstance::Role::first;
    if (const auto folder = runtimeFolder()) {
        instance = std::make_unique<SingleInstance>(*folder, UserPlaces::standard().dataFolder);
        role = instance->enter(start);
    }
    if (role == SingleInstance::Role::handedOver) return EXIT_SUCCESS;

    auto background = std::make_unique<ThreadPoolRunner>();
    int code = EXIT_SUCCESS;
    {
        ToolkitArguments toolkit(argumentCount > 0 ? arguments[0] : nullptr,
                                 windowStart.toolkitOptions);
        QApplication::setApplicationName(qtText(Brand));
        QApplication::setApplicationVersion(QStringLiteral(QUILLMARK_VERSION));
        QApplication::setDesktopFileName(QStringLiteral("org.quillmark.Quillmark"));
        const QApplication application(toolkit.count(), toolkit.values());
        code = role == SingleInstance::Role::first ? showWindow(*background, instance.get(), start)
                                                   : sayThatItDoesNotAnswer();
    }
    // Threads that only read, maybe from a server that takes its time, end with the program.
    if (background->isWorking()) std::_Exit(code);
    return code;
}
