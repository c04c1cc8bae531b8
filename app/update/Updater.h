// Behind the command "Check for Updates…": finds out whether there is anything to ask before the
// framework is let loose, so that the user gets a clear answer when there is not.
#pragma once

#include "update/BundleInfo.h"
#include "update/FeedProbe.h"
#include "update/UpdateFramework.h"
#include "update/UpdatePresenter.h"

#include <QObject>

namespace quillmark {

/// Lives on the main thread. All that it is given has to outlive it.
class Updater final : public QObject {
    Q_OBJECT
public:
    /// Starts the framework.
    Updater(BundleInfo bundle, UpdateFramework& framework, FeedProbe& probe,
            UpdatePresenter& presenter, QObject* parent = nullptr);

    /// Whether a probe is under way.
    [[nodiscard]] bool checking() const { return m_checking; }
    /// Nothing while one is.
    void checkForUpdates();

private:
    void finish(FeedState state);

    BundleInfo m_bundle;
    UpdateFramework& m_framework;
    FeedProbe& m_probe;
    UpdatePresenter& m_presenter;
    bool m_checking{};
};

} // namespace quillmark
