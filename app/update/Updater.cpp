#include "update/Updater.h"

#include <QPointer>

#include <utility>

namespace quillmark {

Updater::Updater(BundleInfo bundle, UpdateFramework& framework, FeedProbe& probe,
                 UpdatePresenter& presenter, QObject* parent)
    : QObject(parent), m_bundle(std::move(bundle)), m_framework(framework), m_probe(probe),
      m_presenter(presenter)
{
    m_framework.start();
}

void Updater::checkForUpdates()
{
    if (m_checking) return;
    const std::optional<std::string> feed = m_framework.feedURL();
    if (!feed) return m_framework.checkForUpdates();
    m_checking = true;
    m_probe.probe(*feed, [self = QPointer(this)](FeedState state) {
        if (self) self->finish(state);
    });
}

void Updater::finish(FeedState state)
{
    m_checking = false;
    switch (state) {
    case FeedState::reachable:
        return m_framework.checkForUpdates();
    case FeedState::upToDate:
        return m_presenter.showAlert(UpdateTexts::upToDate(m_bundle));
    case FeedState::failed:
        return m_presenter.showAlert(UpdateTexts::unreachable(m_bundle));
    }
}

} // namespace quillmark
