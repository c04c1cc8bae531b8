#include "ui/FontDetailView.h"

#include "listing/FontFactsText.h"
#include "model/AppModel.h"
#include "ui/DisclaimerBox.h"
#include "ui/EmptyState.h"
#include "ui/FactList.h"
#include "ui/NoteEditor.h"
#include "ui/SectionBox.h"
#include "ui/SelectableText.h"
#include "ui/VerdictBadge.h"

#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <filesystem>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int margin = 16;
constexpr int blockGap = 16; // between header, verdict, boxes and button
constexpr int lineGap = 4;   // within the header
constexpr int textGap = 8;   // between paragraphs

QVBoxLayout* addBlock(QVBoxLayout& page, int spacing)
{
    auto* const block = new QVBoxLayout;
    block->setSpacing(spacing);
    page.addLayout(block);
    return block;
}

std::string asParagraphs(const std::vector<std::string>& texts)
{
    std::string joined;
    for (const std::string& text : texts) {
        if (!joined.empty()) joined += '\n';
        joined += text;
    }
    return joined;
}

} // namespace

FontDetailView::FontDetailView(AppModel& model, QWidget* parent)
    : QStackedWidget(parent), m_model(model), m_chain(new TextChain(this)),
      m_empty(new EmptyState(u"sidebar.right"_s, u"Select a font"_s,
                             u"Its verdict, the reasons, what the font says about itself, and "
                             u"your license notes."_s)),
      m_scroll(new QScrollArea)
{
    addWidget(m_empty);

    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Nearly every font needs it; text that changes its width from font to font is restless.
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    auto* const content = new QWidget;
    auto* const page = new QVBoxLayout(content);
    page->setContentsMargins(margin, margin, margin, margin);
    page->setSpacing(blockGap);
    createPage(*page);
    page->addStretch();
    m_scroll->setWidget(content);
    addWidget(m_scroll);
}

void FontDetailView::createPage(QVBoxLayout& page)
{
    QVBoxLayout* const header = addBlock(page, lineGap);
    m_name = new SelectableText(u"Font"_s, TextStyle::title);
    m_name->setBold(true);
    m_postScriptName =
        new SelectableText(u"PostScript name"_s, TextStyle::monospaced, TextTone::secondary);
    header->addWidget(m_name);
    header->addWidget(m_postScriptName);

    QVBoxLayout* const verdict = addBlock(page, textGap);
    m_badge = new VerdictBadge(Verdict::unknown, BadgeSize::large);
    m_headline = new SelectableText(u"Verdict"_s, TextStyle::headline);
    m_reasons = new SelectableText(u"Reasons"_s);
    m_reasons->setParagraphGap(textGap);
    verdict->addWidget(m_badge);
    verdict->addWidget(m_headline);
    verdict->addWidget(m_reasons);
    verdict->addWidget(new DisclaimerBox);
    for (SelectableText* const text : {m_name, m_postScriptName, m_headline, m_reasons})
        m_chain->add(text);

    auto* const factsBox = new SectionBox(u"What the font says"_s);
    m_facts = new FactList(fontFactLabels, linkedFactLabel, *m_chain);
    factsBox->setContent(m_facts);
    page.addWidget(factsBox);

    m_useBox = new SectionBox(u"In this PDF"_s);
    m_use = new FactList(pdfFactLabels, {}, *m_chain);
    m_useBox->setContent(m_use);
    page.addWidget(m_useBox);

    m_showInFinder = new QPushButton(u"Show in Finder"_s);
    m_showInFinder->setAutoDefault(false);
    page.addWidget(m_showInFinder, 0, Qt::AlignLeft);

    auto* const notesBox = new SectionBox(u"Your license notes"_s);
    m_notes = new NoteEditor(m_model);
    notesBox->setContent(m_notes);
    page.addWidget(notesBox);

    connect(m_facts, &FactList::linkActivated, &m_model, &AppModel::openLink);
    connect(m_showInFinder, &QPushButton::clicked, &m_model, [this] {
        if (m_row && m_row->facts.filePath)
            m_model.showInFinder(std::filesystem::path(*m_row->facts.filePath));
    });
}

void FontDetailView::setRow(const AuditRow* row)
{
    if (row == nullptr) {
        m_row.reset();
        setCurrentWidget(m_empty);
        return;
    }
    setCurrentWidget(m_scroll);
    if (m_row == *row) return;
    const bool isOther = !m_row || m_row->id() != row->id();
    m_row = *row;

    const FontFacts& facts = row->facts;
    m_name->setContent(facts.displayName(), row->otherName().value_or(std::string()));
    m_postScriptName->setContent(facts.postScriptName);
    m_badge->setVerdict(row->assessment.verdict);
    m_headline->setContent(row->assessment.headline);
    m_reasons->setContent(asParagraphs(row->assessment.reasons));
    m_reasons->setVisible(!row->assessment.reasons.empty());
    m_facts->setFacts(factsOfFont(facts));
    m_useBox->setVisible(row->pdf.has_value());
    m_use->setFacts(row->pdf ? factsOfUse(*row->pdf) : std::vector<Fact>());
    m_showInFinder->setVisible(facts.filePath.has_value());
    m_notes->setKey(facts.postScriptName);

    m_chain->update();
    if (!isOther) return;
    m_chain->restart();
    m_scroll->verticalScrollBar()->setValue(0);
}

} // namespace quillmark
