#include "ui/UpdateDialog.h"

#include "model/QtText.h"
#include "text/DateText.h"
#include "text/Printable.h"
#include "ui/ApplicationIcon.h"
#include "ui/TextLabel.h"
#include "update/Links.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int iconExtent = 64;
constexpr int gap = 12;
constexpr QSize leastNotes{460, 180};

/// Shows nothing but the text it is given: pictures and the like, if there were any, are neither
/// fetched nor read from this computer.
class NotesView final : public QTextBrowser {
public:
    using QTextBrowser::QTextBrowser;

protected:
    QVariant loadResource(int type, const QUrl&) override
    {
        if (type != QTextDocument::ImageResource) return {};
        // Where nothing is given, Qt looks for a file of that name by itself.
        QImage nothing(1, 1, QImage::Format_ARGB32_Premultiplied);
        nothing.fill(Qt::transparent);
        return nothing;
    }
};

QString versions(const UpdateOffer& offer)
{
    QString text =
        u"%1 %2 is available"_s.arg(qtText(offer.appName), qtText(printable(offer.version)));
    if (!offer.installedVersion.empty())
        text += u"; you have %1"_s.arg(qtText(offer.installedVersion));
    text += u'.';
    if (offer.published) text += u" Published %1."_s.arg(qtText(dayText(*offer.published)));
    if (offer.critical) text += u" This is an important update."_s;
    return text;
}

} // namespace

UpdateDialog::UpdateDialog(const UpdateOffer& offer, QWidget* parent)
    : QDialog(parent), m_offer(offer)
{
    setWindowTitle(u"New Version"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const picture = new QLabel;
    picture->setPixmap(
        applicationIcon().pixmap(QSize(iconExtent, iconExtent), devicePixelRatioF()));

    auto* const automatic = new QCheckBox(u"Check for updates automatically"_s);
    automatic->setChecked(offer.checksAutomatically);
    connect(automatic, &QCheckBox::toggled, this, &UpdateDialog::checkAutomatically);

    auto* const content = new QVBoxLayout;
    content->setSpacing(gap);
    content->addWidget(createTexts());
    content->addWidget(createNotes(), 1);
    content->addWidget(automatic);
    auto* const beside = new QHBoxLayout;
    beside->setSpacing(gap);
    beside->addWidget(picture, 0, Qt::AlignTop);
    beside->addLayout(content, 1);
    auto* const whole = new QVBoxLayout(this);
    whole->setSpacing(gap);
    whole->addLayout(beside, 1);
    whole->addWidget(createButtons());
    m_default->setFocus();
}

QWidget* UpdateDialog::createTexts()
{
    auto* const title = new TextLabel(
        u"A new version of %1 is available!"_s.arg(qtText(m_offer.appName)), TextStyle::headline);
    auto* const text = new TextLabel(versions(m_offer));
    title->setBold(true);
    for (TextLabel* const label : {title, text})
        label->setWordWrap(true);
    // What a screen reader says when the dialog comes up.
    setAccessibleDescription(title->text() + u' ' + text->text());
    auto* const texts = new QWidget;
    auto* const column = new QVBoxLayout(texts);
    column->setContentsMargins({});
    column->addWidget(title);
    column->addWidget(text);
    return texts;
}

QWidget* UpdateDialog::createNotes()
{
    auto* const notes = new NotesView;
    notes->setAccessibleName(u"Release notes"_s);
    notes->setMinimumSize(leastNotes);
    notes->setOpenLinks(false);
    notes->setHtml(qtText(m_offer.notes));
    connect(notes, &QTextBrowser::anchorClicked, this, [this](const QUrl& url) {
        if (const auto page = pageAddress(stdText(url.toString(QUrl::FullyEncoded))))
            Q_EMIT pageRequested(*page);
    });

    auto* const whole = new QWidget;
    auto* const column = new QVBoxLayout(whole);
    column->setContentsMargins({});
    column->addWidget(notes);
    notes->setVisible(!m_offer.notes.empty());
    if (m_offer.notesPage) {
        auto* const more = new QPushButton(u"Release Notes on the Web…"_s);
        more->setAutoDefault(false);
        connect(more, &QPushButton::clicked, this,
                [this] { Q_EMIT pageRequested(*m_offer.notesPage); });
        column->addWidget(more, 0, Qt::AlignLeft);
    }
    return whole;
}

QWidget* UpdateDialog::createButtons()
{
    auto* const buttons = new QWidget;
    auto* const row = new QHBoxLayout(buttons);
    row->setContentsMargins({});
    if (!m_offer.critical) {
        auto* const skip = new QPushButton(u"Skip This Version"_s);
        skip->setAutoDefault(false);
        connect(skip, &QPushButton::clicked, this, [this] {
            Q_EMIT skipped();
            reject();
        });
        row->addWidget(skip);
    }
    row->addStretch();
    m_default = new QPushButton(u"Remind Me Later"_s);
    m_default->setAutoDefault(false);
    connect(m_default, &QPushButton::clicked, this, &QDialog::reject);
    row->addWidget(m_default);
    if (m_offer.page) {
        m_default = new QPushButton(u"Download…"_s);
        connect(m_default, &QPushButton::clicked, this, [this] {
            Q_EMIT pageRequested(*m_offer.page);
            accept();
        });
        row->addWidget(m_default);
    }
    m_default->setDefault(true);
    return buttons;
}

} // namespace quillmark
