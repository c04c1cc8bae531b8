#include "ui/Symbols.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

// The drawings are part of a static library, whose resources nobody registers by himself. The
// macro declares a function outside every namespace.
static void registerDrawings()
{
    Q_INIT_RESOURCE(symbols);
}

namespace quillmark {

namespace {

/// The drawing's shape filled with one colour, `side` device pixels wide.
QPixmap drawn(const QString& name, const QColor& colour, int side)
{
    const QString key = QStringLiteral("symbol:%1:%2:%3")
                            .arg(name, colour.name(QColor::HexArgb), QString::number(side));
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;

    static const bool registered = (registerDrawings(), true);
    Q_ASSERT(registered);
    QSvgRenderer renderer(QStringLiteral(":/Symbols/%1.svg").arg(name));
    Q_ASSERT_X(renderer.isValid(), "symbol", qPrintable(name));
    pixmap = QPixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), colour);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

class SymbolEngine final : public QIconEngine {
public:
    SymbolEngine(QString name, std::optional<QColor> colour)
        : m_name(std::move(name)), m_colour(colour)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal scale = painter->device()->devicePixelRatioF();
        const int extent = std::min(rect.width(), rect.height());
        const QPixmap picture = symbolPixmap(m_name, colour(mode), extent, scale);
        painter->drawPixmap(rect.x() + (rect.width() - extent) / 2,
                            rect.y() + (rect.height() - extent) / 2, picture);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override
    {
        // The size comes in device pixels.
        QPixmap picture = drawn(m_name, colour(mode), std::min(size.width(), size.height()));
        picture.setDevicePixelRatio(scale);
        return picture;
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }

    [[nodiscard]] QIconEngine* clone() const override { return new SymbolEngine(m_name, m_colour); }
    QString key() const override { return QStringLiteral("symbol"); }
    QString iconName() override { return m_name; }
    bool isNull() override { return false; }

private:
    [[nodiscard]] QColor colour(QIcon::Mode mode) const
    {
        const QPalette palette = QGuiApplication::palette();
        const bool disabled = mode == QIcon::Disabled;
        if (m_colour) {
            QColor own = *m_colour;
            if (disabled) own.setAlphaF(0.5F);
            return own;
        }
        return palette.color(disabled ? QPalette::Disabled : QPalette::Active,
                             mode == QIcon::Selected ? QPalette::HighlightedText
                                                     : QPalette::WindowText);
    }

    QString m_name;
    std::optional<QColor> m_colour; // absent: the palette's
};

} // namespace

QIcon symbolIcon(const QString& name)
{
    return QIcon(new SymbolEngine(name, std::nullopt));
}

QIcon symbolIcon(const QString& name, const QColor& colour)
{
    return QIcon(new SymbolEngine(name, colour));
}

QPixmap symbolPixmap(const QString& name, const QColor& colour, int extent, qreal devicePixelRatio)
{
    QPixmap picture = drawn(name, colour, static_cast<int>(std::lround(extent * devicePixelRatio)));
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
}

} // namespace quillmark
