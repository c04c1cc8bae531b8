// How the desktop wants windows to look: dark or light, and with how much contrast.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QPalette>
#include <QVariant>

namespace quillmark {

/// A dark palette whose table background leaves the verdict colours legible.
[[nodiscard]] QPalette darkPalette();

/// Follows the desktop's settings portal for as long as it lives. Qt 6.4 does not do so by itself.
class Appearance final : public QObject {
    Q_OBJECT
public:
    /// Asks the portal and returns; the answer comes with the event loop. Without a portal
    /// everything stays as Qt has made it.
    explicit Appearance(QObject* parent = nullptr);

private:
    void ask(const QString& key);
    void follow(const QString& key, const QVariant& value);
    void setDark(bool dark);

    bool m_isDark{}; // by our palette

private Q_SLOTS:
    void settingChanged(const QDBusMessage& message);
};

} // namespace quillmark
