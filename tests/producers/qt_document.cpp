// Writes a document with Qt's own PDF writer. Usage: qt_document FILE

#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>

int main(int argc, char** argv)
{
    if (argc != 2) return 2;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QPdfWriter writer(QString::fromLocal8Bit(argv[1]));
    QPainter painter(&writer);
    int position = 0;
    const auto draw = [&](const char* family, QFont::Weight weight = QFont::Normal) {
        painter.setFont(QFont(QString::fromLatin1(family), 14, weight));
        painter.drawText(100, position += 400, QString::fromLatin1(family));
    };
    draw("DejaVu Sans");
    draw("DejaVu Sans", QFont::Bold);
    draw("Cantarell");
    draw("OCRA");
    if (!writer.newPage()) return 1;
    draw("Goudy Bookletter 1911");
    draw("DejaVu Sans");
    return painter.end() ? 0 : 1;
}
