#include "ui/AboutDialog.h"

#include "assessment/Brand.h"
#include "model/QtText.h"
#include "ui/ApplicationIcon.h"
#include "ui/TextLabel.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFontMetrics>
#include <QGridLayout>
#include <QPlainTextEdit>
#include <QPushButton>

// The text is part of a static library, whose resources nobody registers by himself. The macro
// declares a function outside every namespace.
static void registerText()
{
    Q_INIT_RESOURCE(about);
}

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int iconExtent = 64;
constexpr int noticeColumns = 84; // the notices are written for terminals
constexpr int noticeLines = 16;

QPlainTextEdit* noticesField()
{
    auto* const field = new QPlainTextEdit(thirdPartyNotices());
    field->setReadOnly(true);
    field->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    field->setTabChangesFocus(true);
    field->setFont(textFont(TextStyle::monospaced));
    const QFontMetrics metrics(field->font());
    field->setMinimumSize(metrics.horizontalAdvance(u'x') * noticeColumns / 2,
                          metrics.lineSpacing() * noticeLines / 2);
    return field;
}

/// How large the field is when nobody has changed the dialog's size.
QSize noticesSize(const QPlainTextEdit& field)
{
    const QFontMetrics metrics(field.font());
    return {metrics.horizontalAdvance(u'x') * noticeColumns, metrics.lineSpacing() * noticeLines};
}

} // namespace

QString thirdPartyNotices()
{
    static const bool registered = (registerText(), true);
    Q_ASSERT(registered);
    QFile file(u":/About/copyright"_s);
    const bool opened = file.open(QIODevice::ReadOnly);
    Q_ASSERT(opened); // it is part of the program
    if (!opened) return {};
    // Debian's form of such files: what continues a field is indented, an empty line is a full
    // stop.
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (QString& line : lines) {
        if (line == u" ."_s)
            line.clear();
        else if (line.startsWith(u' '))
            line.remove(0, 1);
    }
    return lines.join(u'\n');
}

AboutDialog::AboutDialog(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(u"About "_s + qtText(Brand));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);

    auto* const icon = new QLabel;
    icon->setPixmap(applicationIcon().pixmap(QSize(iconExtent, iconExtent), devicePixelRatioF()));
    auto* const name = new TextLabel(qtText(Brand), TextStyle::title);
    name->setBold(true);
    auto* const version =
        new TextLabel(u"Version " QUILLMARK_VERSION ""_s, TextStyle::body, TextTone::secondary);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* const purpose = new TextLabel(u"Reads what each font says about itself, and says whether "
                                        u"it may be embedded in something you sell. "
                                        "It only reads, and keeps everything on this computer."_s);
    purpose->setWordWrap(true);

    auto* const notices = noticesField();
    auto* const heading = new TextLabel(u"What it is made with, and under which licenses:"_s);
    heading->setBuddy(notices);
    notices->setAccessibleName(u"Third-party notices"_s);

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton* const close = buttons->button(QDialogButtonBox::Close);
    close->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* const layout = new QGridLayout(this);
    layout->setColumnStretch(1, 1);
    layout->setHorizontalSpacing(16);
    layout->addWidget(icon, 0, 0, 3, 1, Qt::AlignTop);
    layout->addWidget(name, 0, 1);
    layout->addWidget(version, 1, 1);
    layout->addWidget(purpose, 2, 1);
    layout->addWidget(heading, 3, 0, 1, 2);
    layout->addWidget(notices, 4, 0, 1, 2);
    layout->addWidget(buttons, 5, 0, 1, 2);
    layout->setRowMinimumHeight(3, heading->sizeHint().height() * 2);
    layout->setRowStretch(4, 1);
    resize(noticesSize(*notices) + QSize(0, sizeHint().height() - notices->sizeHint().height()));
    close->setFocus();
}

} // namespace quillmark
