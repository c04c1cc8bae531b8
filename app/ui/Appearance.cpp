#include "ui/Appearance.h"

#include "ui/Contrast.h"

#include <QApplication>
#include <QColor>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <chrono>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop"_L1;
constexpr auto object = "/org/freedesktop/portal/desktop"_L1;
constexpr auto interface = "org.freedesktop.portal.Settings"_L1;
constexpr auto space = "org.freedesktop.appearance"_L1;
constexpr auto colorScheme = "color-scheme"_L1;
constexpr auto contrast = "contrast"_L1;
constexpr uint darkPreferred = 1;
constexpr uint moreContrast = 1;
// The portal may have to be started first.
constexpr std::chrono::milliseconds patience{10'000};

} // namespace

QPalette darkPalette()
{
    const QColor window(0x2b, 0x2b, 0x2b);
    const QColor base(0x1b, 0x1b, 0x1b);
    const QColor text(0xf0, 0xf0, 0xf0);
    const QColor dimmed(0x82, 0x82, 0x82);
    const QColor highlight(0x2a, 0x6f, 0xc9);

    // The shades of frames and grooves follow from these two.
    QPalette palette(QColor(0x3a, 0x3a, 0x3a), window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    // Stripes would take contrast from the badges that stand on them.
    palette.setColor(QPalette::AlternateBase, base);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3a, 0x3a));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, QColor(0xa0, 0xa0, 0xa0));
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb4, 0xff));
    palette.setColor(QPalette::LinkVisited, QColor(0xc5, 0x9c, 0xff));
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, dimmed);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4a, 0x4a, 0x4a));
    return palette;
}

Appearance::Appearance(QObject* parent) : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    // The slot takes the whole message: one that takes a QDBusVariant is refused without a word.
    if (!bus.connect(service, object, interface, u"SettingChanged"_s, this,
                     SLOT(settingChanged(QDBusMessage))))
        qWarning("Changes of the desktop's colours will not be noticed.");
    ask(colorScheme);
    ask(contrast);
}

void Appearance::ask(const QString& key)
{
    // Not ReadOne, which the portal of Debian 12 is too old for.
    QDBusMessage question = QDBusMessage::createMethodCall(service, object, interface, u"Read"_s);
    question << QString(space) << key;
    auto* const watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(question, static_cast<int>(patience.count())),
        this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, key] {
        if (!watcher->isError()) follow(key, watcher->reply().arguments().value(0));
        watcher->deleteLater();
    });
}

void Appearance::settingChanged(const QDBusMessage& message)
{
    const QList<QVariant> arguments = message.arguments();
    if (arguments.value(0).toString() == space)
        follow(arguments.value(1).toString(), arguments.value(2));
}

void Appearance::follow(const QString& key, const QVariant& value)
{
    QVariant inner = value; // an answer wraps it twice, a signal once
    while (inner.canConvert<QDBusVariant>())
        inner = inner.value<QDBusVariant>().variant();
    if (key == colorScheme)
        setDark(inner.toUInt() == darkPreferred);
    else if (key == contrast)
        setMoreContrastWanted(inner.toUInt() == moreContrast);
}

void Appearance::setDark(bool dark)
{
    if (dark == m_isDark) return;
    // What the platform's theme has made of the setting by itself stays.
    constexpr int middle = 128;
    const bool themeIsDark =
        !m_isDark && QApplication::palette().color(QPalette::Window).lightness() < middle;
    if (themeIsDark) return;
    m_isDark = dark;
    QApplication::setPalette(dark ? darkPalette() : QPalette());
}

} // namespace quillmark
