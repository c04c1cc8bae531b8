// A small window from which files, and what has an address, can be dragged onto the application
// under test; without any of them, some text.
// usage: drag_source [FILE|URL]...
#include <QApplication>
#include <QDrag>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

namespace {

class Source final : public QLabel {
public:
    explicit Source(QList<QUrl> urls) : QLabel(QStringLiteral("drag me")), m_urls(std::move(urls))
    {
        setAccessibleName(QStringLiteral("drag source"));
        setAlignment(Qt::AlignCenter);
        setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        setGeometry(0, 0, 120, 40);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override { m_from = event->pos(); }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        const bool isFar =
            (event->pos() - m_from).manhattanLength() >= QApplication::startDragDistance();
        if (!(event->buttons() & Qt::LeftButton) || !isFar) return;
        auto* const content = new QMimeData;
        if (m_urls.isEmpty())
            content->setText(QStringLiteral("only text"));
        else
            content->setUrls(m_urls);
        auto* const drag = new QDrag(this);
        drag->setMimeData(content);
        drag->exec(Qt::CopyAction);
    }

private:
    QList<QUrl> m_urls;
    QPoint m_from;
};

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QList<QUrl> urls;
    for (const QString& dragged : QApplication::arguments().mid(1))
        urls += dragged.contains(QStringLiteral("://"))
                    ? QUrl(dragged)
                    : QUrl::fromLocalFile(QFileInfo(dragged).absoluteFilePath());
    Source source(urls);
    source.show();
    return QApplication::exec();
}
