#include "ui/StatusLine.h"

#include "model/AppModel.h"
#include "model/FileSentence.h"
#include "model/QtText.h"
#include "text/Printable.h"
#include "ui/TextLabel.h"

#include <QAccessible>
#include <QProgressBar>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int barWidth = 90;
constexpr int sideMargin = 6;

} // namespace

StatusLine::StatusLine(AppModel& model, QWidget* parent)
    : QStatusBar(parent), m_model(model), m_bar(new QProgressBar),
      m_text(new TextLabel({}, TextStyle::callout, TextTone::secondary))
{
    setSizeGripEnabled(false);
    m_bar->setRange(0, 0);
    m_bar->setTextVisible(false);
    m_bar->setFixedWidth(barWidth);
    m_bar->setMaximumHeight(QFontMetrics(textFont(TextStyle::callout)).height() - 4);
    m_bar->hide();
    m_text->setContentsMargins(sideMargin, 0, sideMargin, 0);
    // The name of a file must not widen the window.
    m_text->setElided(Qt::ElideMiddle);
    addWidget(m_text, 1);
    addPermanentWidget(m_bar);
    for (const auto change : {&AppModel::scanningInstalledChanged, &AppModel::scanningFolderChanged,
                              &AppModel::checkingDocumentChanged, &AppModel::listChanged})
        connect(&m_model, change, this, &StatusLine::follow);
    follow();
}

void StatusLine::setShownRows(int count)
{
    m_shownRows = count;
    follow();
}

QString StatusLine::text() const
{
    return m_text->text();
}

QString StatusLine::workUnderWay() const
{
    if (m_model.checkingDocument())
        return u"Checking %1…"_s.arg(qtText(printable(*m_model.checkingDocument())));
    if (m_model.scanningFolder())
        return u"Scanning %1…"_s.arg(qtText(printable(shownName(*m_model.scanningFolder()))));
    if (m_model.scanningInstalled()) return u"Reading every installed font…"_s;
    return {};
}

QString StatusLine::summary() const
{
    const std::optional<AuditList>& list = m_model.list();
    if (!list || list->rows.empty()) return {};
    QString all = qtText(AuditSummary::of(list->rows.span()).text());
    if (m_shownRows == static_cast<int>(list->rows.size())) return all;
    return u"%1 shown of %2"_s.arg(QString::number(m_shownRows), all);
}

void StatusLine::follow()
{
    const QString work = workUnderWay();
    const bool isBusy = !work.isEmpty();
    m_bar->setVisible(isBusy);
    m_bar->setAccessibleName(work);
    const QString line = isBusy ? work : summary();
    m_text->setText(line);
    if (m_wasBusy && !isBusy && !line.isEmpty()) {
        QAccessibleEvent announcement(m_text, QAccessible::Alert);
        QAccessible::updateAccessibility(&announcement);
    }
    m_wasBusy = isBusy;
}

} // namespace quillmark
