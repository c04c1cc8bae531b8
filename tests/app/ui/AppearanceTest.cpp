#include "ui/Appearance.h"

#include "PrivateBus.h"
#include "ui/Contrast.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace quillmark::test {
namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto object = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";
constexpr auto space = "org.freedesktop.appearance";

/// The settings portal of a desktop, with two settings.
class FakePortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    FakePortal(uint scheme, uint contrast) : m_scheme(scheme), m_contrast(contrast)
    {
        m_bus.registerObject(QString::fromLatin1(object), this, QDBusConnection::ExportAllSlots);
        m_bus.registerService(QString::fromLatin1(service));
    }
    ~FakePortal() override
    {
        m_bus.unregisterService(QString::fromLatin1(service));
        m_bus.unregisterObject(QString::fromLatin1(object));
    }
    /// Whoever has asked for both settings hears of their changes, too.
    [[nodiscard]] bool wasAsked() const { return m_questions >= 2; }
    void change(const QString& key, uint value, const char* where = space)
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(QString::fromLatin1(object), QString::fromLatin1(interface),
                                       QStringLiteral("SettingChanged"));
        signal << QString::fromLatin1(where) << key
               << QVariant::fromValue(QDBusVariant(QVariant::fromValue(value)));
        m_bus.send(signal);
    }

public Q_SLOTS:
    // The portal wraps what it answers once more than what it signals.
    QDBusVariant Read(const QString& where, const QString& key)
    {
        ++m_questions;
        const bool isKnown = where == QLatin1String(space);
        const uint value = isKnown && key == QLatin1String("color-scheme") ? m_scheme : m_contrast;
        return QDBusVariant(QVariant::fromValue(QDBusVariant(QVariant::fromValue(value))));
    }

private:
    QDBusConnection m_bus = privateBus();
    uint m_scheme;
    uint m_contrast;
    int m_questions{};
};

class AppearanceOnADesktop : public testing::Test {
protected:
    void TearDown() override
    {
        QApplication::setPalette(QPalette());
        setMoreContrastWanted(false);
    }
    static bool isDark()
    {
        return QApplication::palette().color(QPalette::Window).lightness() < 128;
    }
};

TEST_F(AppearanceOnADesktop, StartsDarkWhereTheDesktopIsDark)
{
    const FakePortal portal(1, 0);
    const Appearance appearance;
    EXPECT_FALSE(isDark()); // nothing has waited for the answer
    EXPECT_TRUE(QTest::qWaitFor(isDark));
    EXPECT_FALSE(moreContrastWanted());
}

TEST_F(AppearanceOnADesktop, FollowsEveryChangeWhileItRuns)
{
    FakePortal portal(0, 0);
    const Appearance appearance;
    const QPalette light = QApplication::palette();
    ASSERT_TRUE(QTest::qWaitFor([&] { return portal.wasAsked(); }));
    portal.change(QStringLiteral("color-scheme"), 1);
    EXPECT_TRUE(QTest::qWaitFor(isDark));
    portal.change(QStringLiteral("color-scheme"), 2);
    EXPECT_TRUE(QTest::qWaitFor([] { return !isDark(); }));
    EXPECT_EQ(QApplication::palette(), light);
    portal.change(QStringLiteral("contrast"), 1);
    EXPECT_TRUE(QTest::qWaitFor(moreContrastWanted));
    portal.change(QStringLiteral("contrast"), 0);
    EXPECT_TRUE(QTest::qWaitFor([] { return !moreContrastWanted(); }));
}

TEST_F(AppearanceOnADesktop, TakesOtherSettingsForNothing)
{
    FakePortal portal(0, 0);
    const Appearance appearance;
    ASSERT_TRUE(QTest::qWaitFor([&] { return portal.wasAsked(); }));
    portal.change(QStringLiteral("color-scheme"), 1, "org.gnome.desktop.interface");
    portal.change(QStringLiteral("accent-color"), 1);
    portal.change(QStringLiteral("contrast"), 1); // the last to arrive
    EXPECT_TRUE(QTest::qWaitFor(moreContrastWanted));
    EXPECT_FALSE(isDark());
}

TEST_F(AppearanceOnADesktop, StartsWithMoreContrastWhereTheDesktopWantsIt)
{
    const FakePortal portal(0, 1);
    const Appearance appearance;
    EXPECT_TRUE(QTest::qWaitFor(moreContrastWanted));
    EXPECT_FALSE(isDark());
}

TEST_F(AppearanceOnADesktop, LeavesAThemeAloneThatIsDarkByItself)
{
    const QPalette theme(QColor(40, 20, 20));
    QApplication::setPalette(theme);
    ASSERT_TRUE(isDark());
    FakePortal portal(1, 1);
    const Appearance appearance;
    EXPECT_TRUE(QTest::qWaitFor(moreContrastWanted));
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), theme.color(QPalette::Window));
}

TEST_F(AppearanceOnADesktop, StaysAsItIsWithoutAPortal)
{
    QDBusConnection bus = privateBus();
    const Appearance appearance;
    // The bus has answered our question before this one.
    QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
    QCoreApplication::processEvents();
    EXPECT_FALSE(isDark());
    EXPECT_FALSE(moreContrastWanted());
}

/// WCAG 2.1's contrast ratio.
double contrastRatio(const QColor& one, const QColor& other)
{
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double channel) {
            return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

TEST(DarkPalette, HasALegibleTextForEveryBackground)
{
    constexpr std::array pairs{
        std::pair(QPalette::WindowText, QPalette::Window),
        std::pair(QPalette::Text, QPalette::Base),
        std::pair(QPalette::ButtonText, QPalette::Button),
        std::pair(QPalette::HighlightedText, QPalette::Highlight),
        std::pair(QPalette::ToolTipText, QPalette::ToolTipBase),
        std::pair(QPalette::PlaceholderText, QPalette::Base),
        std::pair(QPalette::Link, QPalette::Base),
        std::pair(QPalette::LinkVisited, QPalette::Window),
    };
    const QPalette palette = darkPalette();
    for (const auto& [text, background] : pairs)
        EXPECT_GE(contrastRatio(palette.color(text), palette.color(background)), 4.5)
            << int(text) << " on " << int(background);
}

TEST(DarkPalette, HasATableDarkEnoughForTheVerdictsAndNoStripes)
{
    const QPalette palette = darkPalette();
    EXPECT_LE(palette.color(QPalette::Base).lightness(), 0x1e);
    EXPECT_EQ(palette.color(QPalette::AlternateBase), palette.color(QPalette::Base));
}

} // namespace
} // namespace quillmark::test

#include "AppearanceTest.moc"
