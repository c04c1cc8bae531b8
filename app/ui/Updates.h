// Everything of the check for updates, put together for the main window.
#pragma once

#include "ui/UpdateWindows.h"
#include "update/FeedProbe.h"
#include "update/FeedRequest.h"
#include "update/UpdateController.h"
#include "update/Updater.h"

#include <QObject>

#include <filesystem>
#include <memory>

namespace quillmark {

class Updates final : public QObject {
    Q_OBJECT
public:
    /// `window` and `prompts` have to outlive it. Nothing happens before one of the functions is
    /// called.
    Updates(BundleInfo bundle, std::filesystem::path settingsFile, QWidget& window,
            Prompts& prompts);

    /// Begins the checks that nobody asks for.
    void start();
    void checkForUpdates();

private:
    Updater& updater();

    BundleInfo m_bundle;
    UpdateWindows m_windows;
    FeedNetwork m_network;
    UpdateController m_controller;
    HttpFeedProbe m_probe;
    std::unique_ptr<Updater> m_updater; // made when it is first used, which starts the controller
};

} // namespace quillmark
