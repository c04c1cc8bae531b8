#include "ui/Updates.h"

#include <utility>

namespace quillmark {

Updates::Updates(BundleInfo bundle, std::filesystem::path settingsFile, QWidget& window,
                 Prompts& prompts)
    : m_bundle(std::move(bundle)), m_windows(window, prompts), m_network(m_bundle.displayVersion()),
      m_controller(m_bundle, std::move(settingsFile), m_network, m_windows), m_probe(m_network)
{
}

void Updates::start()
{
    static_cast<void>(updater());
}

void Updates::checkForUpdates()
{
    updater().checkForUpdates();
}

Updater& Updates::updater()
{
    if (!m_updater)
        m_updater = std::make_unique<Updater>(m_bundle, m_controller, m_probe, m_windows);
    return *m_updater;
}

} // namespace quillmark
