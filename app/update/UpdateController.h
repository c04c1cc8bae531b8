// The component that looks for updates: what is due when, what the list says, and what the user is
// told. Updater.h stands before it for the menu's command.
#pragma once

#include "update/Appcast.h"
#include "update/BundleInfo.h"
#include "update/FeedRequest.h"
#include "update/UpdateFramework.h"
#include "update/UpdatePresenter.h"
#include "update/UpdateSettings.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

namespace quillmark {

/// When things happen.
struct UpdateTiming {
    std::function<std::chrono::system_clock::time_point()> now{std::chrono::system_clock::now};
    /// From the start to the first look at whether a check is due, and then from look to look.
    std::chrono::milliseconds firstLook{std::chrono::seconds(10)};
    std::chrono::milliseconds lookInterval{std::chrono::hours(1)};
    /// For fetching the list.
    std::chrono::milliseconds requestLimit{std::chrono::seconds(30)};
};

/// Without a feed URL it touches neither the network nor the settings. Lives on the main thread.
class UpdateController final : public QObject, public UpdateFramework {
    Q_OBJECT
public:
    /// `network` and `presenter` have to outlive it.
    UpdateController(BundleInfo bundle, std::filesystem::path settingsFile, FeedNetwork& network,
                     UpdatePresenter& presenter, UpdateTiming timing = {});
    ~UpdateController() override;

    void start() override;
    [[nodiscard]] std::optional<std::string> feedURL() const override { return m_bundle.feedURL; }
    void checkForUpdates() override;

private:
    using Cause = UpdateOffer::Cause;

    void look();
    void check(Cause cause);
    void finish(const FeedAnswer& answer);
    void finish(const Appcast& appcast);
    void fail(const UpdateAlert& alert);
    void offer(const AppcastItem& item, const Appcast& appcast);

    void setAutomaticChecks(bool automatic);
    template <typename Change>
    void changeSettings(Change change);
    [[nodiscard]] std::chrono::sys_seconds now() const;

    BundleInfo m_bundle;
    std::filesystem::path m_settingsFile;
    FeedNetwork& m_network;
    UpdatePresenter& m_presenter;
    UpdateTiming m_timing;
    UpdateSettings m_settings;
    QTimer m_nextLook;
    bool m_hasLooked{};
    std::unique_ptr<FeedRequest> m_request; // null when no check is under way
    Cause m_cause{};                        // of that check
};

} // namespace quillmark
