#include "ui/FirstPaint.h"

#include <QEvent>
#include <QObject>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <utility>

namespace quillmark {
namespace {

class PaintWatch final : public QObject {
public:
    PaintWatch(QWidget& window, std::function<void()> then)
        : QObject(&window), m_then(std::move(then))
    {
        constexpr std::chrono::seconds longest{1};
        window.installEventFilter(this);
        QTimer::singleShot(longest, this, [this] { finish(); });
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        // The picture is on its way to the screen once this event is done with.
        if (event->type() == QEvent::Paint) QTimer::singleShot(0, this, [this] { finish(); });
        return false;
    }

private:
    void finish()
    {
        deleteLater();
        if (const auto then = std::exchange(m_then, nullptr)) then();
    }

    std::function<void()> m_then;
};

} // namespace

void afterFirstPaint(QWidget& window, std::function<void()> then)
{
    new PaintWatch(window, std::move(then));
}

} // namespace quillmark
