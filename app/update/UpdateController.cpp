#include "update/UpdateController.h"

#include "update/FeedProbe.h"
#include "update/FeedSignature.h"
#include "update/Limits.h"
#include "update/Links.h"
#include "update/ReleaseNotes.h"
#include "update/UpdateVersion.h"

#include <QPointer>

#include <initializer_list>
#include <limits>
#include <utility>

namespace quillmark {
namespace {

std::optional<std::string> firstPage(std::initializer_list<std::optional<std::string>> candidates)
{
    for (const auto& candidate : candidates)
        if (auto page = candidate ? pageAddress(*candidate) : std::nullopt) return page;
    return std::nullopt;
}

std::string notesOf(const AppcastItem& item)
{
    const QString text = QString::fromStdString(item.description.value_or(item.title.value_or("")));
    const bool isHtml = item.description && item.notesFormat == AppcastItem::NotesFormat::html;
    return (isHtml ? simpleHtml(text) : htmlOfPlainText(text)).toStdString();
}

} // namespace

UpdateController::UpdateController(BundleInfo bundle, std::filesystem::path settingsFile,
                                   FeedNetwork& network, UpdatePresenter& presenter,
                                   UpdateTiming timing)
    : m_bundle(std::move(bundle)), m_settingsFile(std::move(settingsFile)), m_network(network),
      m_presenter(presenter), m_timing(std::move(timing))
{
    if (m_bundle.feedURL) m_settings = UpdateSettings::load(m_settingsFile);
    m_nextLook.setSingleShot(true);
    connect(&m_nextLook, &QTimer::timeout, this, [this] {
        m_hasLooked = true;
        m_nextLook.start(m_timing.lookInterval);
        look();
    });
}

UpdateController::~UpdateController() = default;

void UpdateController::start()
{
    if (!m_bundle.feedURL) return;
    changeSettings([](UpdateSettings& settings) {
        if (settings.launches < std::numeric_limits<int>::max()) ++settings.launches;
    });
    // A coarse timer may be early.
    m_nextLook.setTimerType(Qt::PreciseTimer);
    m_nextLook.start(m_timing.firstLook);
    // Who starts a program for the first time has other things to think about.
    if (m_settings.launches >= 2 && !m_settings.automaticChecks)
        m_presenter.askForConsent(UpdateTexts::consent(m_bundle),
                                  [self = QPointer(this)](bool automatic) {
                                      if (self) self->setAutomaticChecks(automatic);
                                  });
}

void UpdateController::setAutomaticChecks(bool automatic)
{
    changeSettings([&](UpdateSettings& settings) { settings.automaticChecks = automatic; });
    if (m_hasLooked) look();
}

void UpdateController::look()
{
    if (!m_request && isCheckDue(m_settings, now())) check(Cause::schedule);
}

void UpdateController::checkForUpdates()
{
    if (!m_bundle.feedURL)
        m_presenter.showAlert(UpdateTexts::fromPackages(m_bundle));
    else if (m_request)
        m_cause = Cause::user; // the check that is under way serves as well
    else
        check(Cause::user);
}

void UpdateController::check(Cause cause)
{
    m_cause = cause;
    m_request = std::make_unique<FeedRequest>(m_network, FeedMethod::get,
                                              QUrl(QString::fromStdString(*m_bundle.feedURL)),
                                              m_timing.requestLimit);
    connect(m_request.get(), &FeedRequest::finished, this, [this](const FeedAnswer& answer) {
        // It is what calls this.
        m_request.release()->deleteLater();
        finish(answer);
    });
}

void UpdateController::finish(const FeedAnswer& answer)
{
    // A publisher who has nothing to list yet.
    if (feedState(answer.status) == FeedState::upToDate) return finish(Appcast{});
    const bool isTooLarge = static_cast<std::size_t>(answer.body.size()) > FeedLimits::feedBytes;
    if (answer.status != 200 || (!answer.isWhole && !isTooLarge))
        return fail(UpdateTexts::unreachable(m_bundle));

    QByteArray list = answer.body;
    if (m_bundle.publicKey && !isTooLarge) {
        auto part = signedPart(list, QByteArray::fromStdString(*m_bundle.publicKey));
        if (!part)
            return fail(UpdateTexts::unusable("it does not carry its publisher’s signature"));
        list = *std::move(part);
    }
    const auto parsed = parseAppcast(list, runningSystem());
    if (const auto* const damage = std::get_if<AppcastDamage>(&parsed))
        return fail(UpdateTexts::unusable(damage->reason));
    finish(std::get<Appcast>(parsed));
}

void UpdateController::fail(const UpdateAlert& alert)
{
    if (m_cause == Cause::user) m_presenter.showAlert(alert);
}

void UpdateController::finish(const Appcast& appcast)
{
    changeSettings([&](UpdateSettings& settings) { settings.lastCheck = now(); });
    const std::string installed = m_bundle.comparedVersion();
    const AppcastItem* const newest = appcast.newest();
    const bool isNewer = newest != nullptr && compareVersions(newest->version, installed) > 0;
    if (!isNewer) {
        if (m_cause == Cause::user) m_presenter.showAlert(UpdateTexts::upToDate(m_bundle));
        return;
    }
    const bool isSkipped = m_settings.skippedVersion &&
                           compareVersions(newest->version, *m_settings.skippedVersion) == 0 &&
                           !newest->isCriticalFor(installed);
    if (m_cause == Cause::user || !isSkipped) offer(*newest, appcast);
}

void UpdateController::offer(const AppcastItem& item, const Appcast& appcast)
{
    const UpdateOffer offer{
        .appName = m_bundle.appName(),
        .version = item.displayVersion(),
        .installedVersion = m_bundle.displayVersion(),
        .published = item.published,
        .notes = notesOf(item),
        .notesPage = firstPage({item.releaseNotesLink}),
        .page = firstPage({item.link, appcast.link}),
        .critical = item.isCriticalFor(m_bundle.comparedVersion()),
        .checksAutomatically = m_settings.automaticChecks == true,
        .cause = m_cause,
    };
    m_presenter.showUpdate(offer, {
                                      .skip =
                                          [self = QPointer(this), version = item.version] {
                                              if (!self) return;
                                              self->changeSettings([&](UpdateSettings& settings) {
                                                  settings.skippedVersion = version;
                                              });
                                          },
                                      .checkAutomatically =
                                          [self = QPointer(this)](bool automatic) {
                                              if (self) self->setAutomaticChecks(automatic);
                                          },
                                  });
}

template <typename Change>
void UpdateController::changeSettings(Change change)
{
    change(m_settings);
    m_settings.save(m_settingsFile);
}

std::chrono::sys_seconds UpdateController::now() const
{
    return std::chrono::floor<std::chrono::seconds>(m_timing.now());
}

} // namespace quillmark
