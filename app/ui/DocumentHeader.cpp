#include "ui/DocumentHeader.h"

#include "listing/DocumentSummary.h"
#include "model/QtText.h"
#include "ui/FindingText.h"
#include "ui/SelectableText.h"
#include "ui/SymbolLabel.h"
#include "ui/TextLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int gap = 6;
constexpr int symbolGap = 10;

QString symbolOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::restricted:
        return u"exclamationmark.triangle.fill"_s;
    case Verdict::unknown:
        return u"questionmark.circle.fill"_s;
    case Verdict::likelyOK:
        return u"checkmark.seal.fill"_s;
    }
    return {};
}

} // namespace

DocumentHeader::DocumentHeader(QWidget* parent)
    : QWidget(parent), m_name(new SelectableText(u"Document"_s, TextStyle::title)),
      m_line(new TextLabel({}, TextStyle::callout, TextTone::secondary)),
      m_finding(new FindingText),
      m_note(new TextLabel(qtText(strippedFieldsNote), TextStyle::callout, TextTone::secondary))
{
    m_name->setBold(true);
    auto* const chain = new TextChain(this);
    chain->add(m_name);
    chain->update();
    m_line->setWordWrap(true);
    m_note->setWordWrap(true);
    m_finding->hide();
    m_note->hide();

    auto* const names = new QVBoxLayout;
    names->setSpacing(1);
    names->addWidget(m_name);
    names->addWidget(m_line);
    auto* const row = new QHBoxLayout;
    row->setSpacing(symbolGap);
    row->addWidget(new SymbolLabel(u"doc.richtext"_s, TextStyle::title), 0, Qt::AlignVCenter);
    row->addLayout(names, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    layout->addLayout(row);
    layout->addWidget(m_finding);
    layout->addWidget(m_note);
}

void DocumentHeader::setAudit(const DocumentAudit& audit)
{
    m_name->setContent(audit.fileName);
    m_line->setText(qtText(documentLine(audit)));
    const auto finding = documentFinding(AuditSummary::of(audit.rows));
    if (finding)
        m_finding->setFinding(finding->verdict, symbolOf(finding->verdict), qtText(finding->text));
    m_finding->setVisible(finding.has_value());
    m_note->setVisible(hasStrippedFields(audit));
}

} // namespace quillmark
