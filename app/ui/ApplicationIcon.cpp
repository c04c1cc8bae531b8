#include "ui/ApplicationIcon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <array>

// The drawing is part of a static library, whose resources nobody registers by himself. The macro
// declares a function outside every namespace.
static void registerDrawing()
{
    Q_INIT_RESOURCE(about);
}

namespace quillmark {

namespace {

constexpr std::array sizes{16, 22, 24, 32, 48, 64, 128, 256};

QIcon drawnIcon()
{
    registerDrawing();
    QSvgRenderer renderer(QStringLiteral(":/About/icon.svg"));
    Q_ASSERT(renderer.isValid());
    QIcon icon;
    for (const int size : sizes) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

QIcon applicationIcon()
{
    // The plug-in that lets QIcon read SVG is a package of its own, which need not be there.
    static const QIcon icon = drawnIcon();
    return icon;
}

} // namespace quillmark
