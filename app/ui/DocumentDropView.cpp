#include "ui/DocumentDropView.h"

#include "assessment/Classifier.h"
#include "model/AppModel.h"
#include "model/QtText.h"
#include "text/Printable.h"
#include "ui/AccessibleRole.h"
#include "ui/DisclaimerBox.h"
#include "ui/DroppedFiles.h"
#include "ui/SymbolLabel.h"
#include "ui/TextLabel.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStringList>
#include <QVBoxLayout>

#include <optional>
#include <string>
#include <utility>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int pageMargin = 30; // between the window's edges and the drop area
constexpr int gap = 20;        // between what stands in it
constexpr int symbolExtent = 52;
constexpr int textWidth = 460; // longer lines are hard to read
constexpr int areaPadding = 24;
constexpr qreal radius = 14;
constexpr qreal lineWidth = 2;

/// The content in the middle of what scrolls: in a low window the texts would be cut, or keep it
/// from being made low.
QWidget* scrolled(QWidget* content)
{
    auto* const middle = new QWidget;
    auto* const centred = new QHBoxLayout(middle);
    centred->setContentsMargins(0, 0, 0, 0);
    centred->addStretch(1);
    centred->addWidget(content, 1'000);
    centred->addStretch(1);
    auto* const scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidgetResizable(true);
    scroll->setWidget(middle);
    // What lies under it is the area, with its tint.
    for (QWidget* const ground : {scroll->viewport(), middle})
        ground->setAutoFillBackground(false);
    return scroll;
}

} // namespace

/// The outlined area, one thing to whoever cannot see it.
class DocumentDropView::DropArea final : public QWidget {
public:
    DropArea() { setAccessibleWhole(this, QAccessible::Grouping); }

    [[nodiscard]] bool targeted() const { return m_targeted; }
    void setTargeted(bool targeted)
    {
        m_targeted = targeted;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QColor accent = palette().color(QPalette::Highlight);
        QColor quiet = secondaryColour(palette());
        quiet.setAlphaF(0.6F);
        QPen pen(m_targeted ? accent : quiet, lineWidth);
        pen.setDashPattern({5, 4});
        painter.setPen(pen);
        if (m_targeted) {
            QColor tint = accent;
            tint.setAlphaF(0.10F);
            painter.setBrush(tint);
        }
        constexpr qreal inset = lineWidth / 2;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius,
                                radius);
    }

private:
    bool m_targeted{};
};

DocumentDropView::DocumentDropView(AppModel& model, QWidget* parent)
    : QWidget(parent), m_model(model), m_area(new DropArea),
      m_choose(new QPushButton(u"Choose PDF…"_s)), m_busy(new QWidget),
      m_progress(new QProgressBar),
      m_checking(new TextLabel({}, TextStyle::body, TextTone::secondary)),
      m_return(new QShortcut(Qt::Key_Return, this)), m_enter(new QShortcut(Qt::Key_Enter, this))
{
    setAcceptDrops(true);
    const QString title = u"Drop a PDF here"_s;
    const QString description =
        u"See every font embedded in it, with the same check as your installed fonts. Made for "
        u"printables, ebooks, worksheets and anything else you sell as a PDF. Files are only "
        u"read, never changed."_s;
    const QString tip =
        u"Tip: PDF writers often strip the license fields from the fonts they embed. Scan the "
        u"folder with the fonts you used first, so each one can be matched."_s;
    m_area->setAccessibleName(u"Drop area for PDF files"_s);
    m_area->setAccessibleDescription(
        QStringList{title, description, tip, qtText(Classifier::disclaimer)}.join(u'\n'));

    auto* const titleLabel = new TextLabel(title, TextStyle::title);
    titleLabel->setBold(true);
    auto* const descriptionLabel = new TextLabel(description);
    for (TextLabel* const label : {titleLabel, descriptionLabel}) {
        label->setAlignment(Qt::AlignHCenter);
        label->setWordWrap(true);
    }

    m_choose->setDefault(true);
    connect(m_choose, &QPushButton::clicked, &m_model, &AppModel::chooseDocuments);
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setFixedWidth(220);
    m_checking->setAlignment(Qt::AlignHCenter);
    m_checking->setElided(Qt::ElideMiddle); // a name without blanks would widen the page
    auto* const busyLayout = new QVBoxLayout(m_busy);
    busyLayout->setContentsMargins(0, 0, 0, 0);
    busyLayout->addWidget(m_progress, 0, Qt::AlignHCenter);
    busyLayout->addWidget(m_checking);

    auto* const tipLabel = new TextLabel(tip, TextStyle::callout, TextTone::secondary);
    tipLabel->setWordWrap(true);
    auto* const tipRow = new QHBoxLayout;
    tipRow->setSpacing(8);
    tipRow->addWidget(new SymbolLabel(u"lightbulb"_s, TextStyle::callout), 0, Qt::AlignTop);
    tipRow->addWidget(tipLabel, 1);

    auto* const column = new QVBoxLayout;
    column->setSpacing(gap);
    column->addStretch(1);
    column->addWidget(new SymbolLabel(u"doc.text.magnifyingglass"_s, symbolExtent), 0,
                      Qt::AlignHCenter);
    column->addWidget(titleLabel);
    column->addWidget(descriptionLabel);
    column->addWidget(m_choose, 0, Qt::AlignHCenter);
    column->addWidget(m_busy);
    column->addLayout(tipRow);
    column->addWidget(new DisclaimerBox);
    column->addStretch(1);
    auto* const content = new QWidget;
    content->setLayout(column);
    content->setMaximumWidth(textWidth);

    auto* const inside = new QVBoxLayout(m_area);
    inside->setContentsMargins(areaPadding, areaPadding, areaPadding, areaPadding);
    inside->addWidget(scrolled(content));
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(pageMargin, pageMargin, pageMargin, pageMargin);
    layout->addWidget(m_area);

    // A default button answers these keys by itself only in a dialog.
    for (const QShortcut* const shortcut : {m_return, m_enter})
        connect(shortcut, &QShortcut::activated, &m_model, &AppModel::chooseDocuments);
    connect(qApp, &QApplication::focusChanged, this, &DocumentDropView::followFocus);
    connect(&m_model, &AppModel::checkingDocumentChanged, this, &DocumentDropView::followModel);
    followModel();
}

DocumentDropView::~DocumentDropView()
{
    // The focus leaves the button when QWidget deletes it, and this part is gone by then.
    disconnect(qApp, nullptr, this, nullptr);
}

bool DocumentDropView::targeted() const
{
    return m_area->targeted();
}

void DocumentDropView::followModel()
{
    const std::optional<std::string>& name = m_model.checkingDocument();
    if (name) {
        const QString text = u"Checking "_s + qtText(printable(*name)) + u"…"_s;
        m_progress->setAccessibleName(text);
        m_checking->setText(text);
    }
    m_choose->setVisible(!name);
    m_busy->setVisible(name.has_value());
    followFocus();
}

/// Where somebody types, Return belongs to the text.
void DocumentDropView::followFocus()
{
    const QWidget* const focus = QApplication::focusWidget();
    const bool types = focus != nullptr && focus->testAttribute(Qt::WA_InputMethodEnabled);
    const bool answers = !types && !m_model.checkingDocument();
    m_return->setEnabled(answers);
    m_enter->setEnabled(answers);
}

void DocumentDropView::dragEnterEvent(QDragEnterEvent* event)
{
    if (droppedFiles(*event).empty()) return;
    m_area->setTargeted(true);
    acceptFiles(*event);
}

void DocumentDropView::dragMoveEvent(QDragMoveEvent* event)
{
    if (targeted()) acceptFiles(*event);
}

void DocumentDropView::dragLeaveEvent(QDragLeaveEvent*)
{
    m_area->setTargeted(false);
}

void DocumentDropView::dropEvent(QDropEvent* event)
{
    m_area->setTargeted(false);
    const auto files = droppedFiles(*event);
    if (files.empty()) return;
    acceptFiles(*event);
    m_model.checkDocuments(files);
}

} // namespace quillmark
