#include "ui/NoteEditor.h"

#include "model/AppModel.h"
#include "model/QtText.h"
#include "text/DateText.h"
#include "text/WebLink.h"
#include "ui/SelectableText.h"
#include "ui/SymbolLabel.h"
#include "ui/Symbols.h"
#include "ui/TextLabel.h"

#include <QComboBox>
#include <QEvent>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextDocument>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <limits>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int labelGap = 3;  // between a label and its field
constexpr int fieldGap = 12; // between a field and the next label
constexpr int buttonGap = 6; // around the buttons of the attachment
constexpr int noteLines = 6; // of the free notes in sight

/// A picker that lets the wheel scroll what it stands in: whoever scrolls past it must not change
/// a note by that.
class Picker final : public QComboBox {
public:
    using QComboBox::QComboBox;

protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

/// Lines of what the user knows, which the Tab key leaves.
class NoteText final : public QPlainTextEdit {
public:
    NoteText()
    {
        setTabChangesFocus(true);
        setLineWrapMode(QPlainTextEdit::WidgetWidth);
        setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }
    [[nodiscard]] QSize sizeHint() const override
    {
        const int frame = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
        return {200, noteLines * QFontMetrics(font()).lineSpacing() + frame};
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return {80, sizeHint().height()}; }
};

/// The text as typed: toPlainText() would take no-break spaces for blanks.
QString typedText(const QPlainTextEdit& field)
{
    QString text = field.document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

QLineEdit* makeField(const QString& prompt)
{
    auto* const field = new QLineEdit;
    field->setPlaceholderText(prompt);
    // Notes may hold more than Qt's usual 32767 characters; the field would silently cut them.
    field->setMaxLength(std::numeric_limits<int>::max());
    field->setMinimumWidth(80);
    return field;
}

TextLabel* makeLabel(const QString& text, QWidget* field)
{
    auto* const label = new TextLabel(text, TextStyle::callout, TextTone::secondary);
    label->setBuddy(field);
    field->setAccessibleName(text);
    return label;
}

} // namespace

NoteEditor::NoteEditor(AppModel& model, QWidget* parent) : QWidget(parent), m_model(model)
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(labelGap);
    createFields();
    createAttachmentRow();
    m_saved = new TextLabel({}, TextStyle::caption, TextTone::secondary);
    layout->addSpacing(buttonGap);
    layout->addWidget(m_saved);
    m_saved->hide();

    connect(&m_model, &AppModel::notesChanged, this, [this] {
        if (m_loaded && !m_filling) read(Fields::keep);
    });
}

void NoteEditor::createFields()
{
    m_license = new Picker;
    m_license->setMinimumContentsLength(8);
    m_license->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    for (const HeldLicense license : allCases<HeldLicense>)
        m_license->addItem(qtText(label(license)));
    m_boughtFrom = makeField(u"Shop, foundry or website"_s);
    m_text = new NoteText;
    m_link = makeField(u"License or receipt URL"_s);
    m_openLink = new QToolButton;
    m_openLink->setText(u"Open the link"_s);
    m_openLink->setToolTip(u"Open the link"_s);
    m_openLink->setIcon(symbolIcon(u"arrow.up.right.square"_s));
    m_openLink->setAutoRaise(true);
    m_openLink->setFocusPolicy(Qt::StrongFocus);
    m_openLink->hide();

    auto* const layout = static_cast<QVBoxLayout*>(this->layout());
    const auto add = [&](const QString& label, QWidget* field) {
        if (layout->count() > 0) layout->addSpacing(fieldGap - labelGap);
        layout->addWidget(makeLabel(label, field));
        return field;
    };
    layout->addWidget(add(u"License type"_s, m_license));
    layout->addWidget(add(u"Bought from"_s, m_boughtFrom));
    layout->addWidget(add(u"Notes"_s, m_text));
    add(u"Link"_s, m_link);
    auto* const linkRow = new QHBoxLayout;
    linkRow->setSpacing(4);
    linkRow->addWidget(m_link);
    linkRow->addWidget(m_openLink);
    layout->addLayout(linkRow);

    const auto edited = [this](auto change) {
        return [this, change] {
            if (m_filling || !m_loaded) return;
            change();
            save();
        };
    };
    connect(m_license, &QComboBox::currentIndexChanged, this, edited([this] {
                m_note.license =
                    allCases<HeldLicense>[static_cast<std::size_t>(m_license->currentIndex())];
            }));
    connect(m_boughtFrom, &QLineEdit::textChanged, this,
            edited([this] { m_note.boughtFrom = stdText(m_boughtFrom->text()); }));
    connect(m_text, &QPlainTextEdit::textChanged, this,
            edited([this] { m_note.text = stdText(typedText(*m_text)); }));
    connect(m_link, &QLineEdit::textChanged, this, &NoteEditor::showLinkButton);
    connect(m_link, &QLineEdit::textChanged, this,
            edited([this] { m_note.url = stdText(m_link->text()); }));
    connect(m_openLink, &QToolButton::clicked, this,
            [this] { m_model.openLink(stdText(m_link->text())); });
}

void NoteEditor::createAttachmentRow()
{
    m_paperclip = new SymbolLabel(u"paperclip"_s, TextStyle::body);
    m_paperclip->setAccessibleName(u"Attached"_s); // what the drawing says to others
    m_attachment = new SelectableText(u"Attachment"_s);
    m_noAttachment = new TextLabel(u"No file attached"_s, TextStyle::body, TextTone::secondary);
    m_openAttachment = new QPushButton(u"Open"_s);
    m_removeAttachment = new QPushButton(u"Remove"_s);
    m_attach = new QPushButton(u"Attach File…"_s);
    for (QPushButton* const button : {m_openAttachment, m_removeAttachment, m_attach})
        button->setAutoDefault(false);

    auto* const layout = static_cast<QVBoxLayout*>(this->layout());
    layout->addSpacing(fieldGap - labelGap);
    auto* const nameRow = new QHBoxLayout;
    nameRow->setSpacing(buttonGap);
    nameRow->addWidget(m_paperclip, 0, Qt::AlignTop);
    nameRow->addWidget(m_attachment, 1);
    nameRow->addWidget(m_noAttachment, 1);
    layout->addLayout(nameRow);
    auto* const copyButtons = new QHBoxLayout;
    copyButtons->setSpacing(buttonGap);
    copyButtons->addWidget(m_openAttachment);
    copyButtons->addWidget(m_removeAttachment);
    copyButtons->addStretch();
    layout->addSpacing(buttonGap - labelGap);
    layout->addLayout(copyButtons);
    layout->addSpacing(buttonGap - labelGap);
    layout->addWidget(m_attach, 0, Qt::AlignLeft);

    connect(m_openAttachment, &QPushButton::clicked, this,
            [this] { m_model.openAttachment(m_key); });
    connect(m_removeAttachment, &QPushButton::clicked, this,
            [this] { m_model.removeAttachment(m_key); });
    connect(m_attach, &QPushButton::clicked, this, [this] { m_model.attachFile(m_key); });
}

void NoteEditor::setKey(const std::string& key)
{
    if (m_loaded && key == m_key) return;
    m_key = key;
    m_loaded = true;
    read(Fields::replace);
}

void NoteEditor::save()
{
    if (m_model.note(m_key) == m_note) return;
    m_model.saveNote(m_note, m_key);
    // Saving what says nothing removes the note, and within one second nothing may have changed.
    read(Fields::keep);
}

/// Takes the note from the model. Fields that show it already can be left alone, with their caret
/// and with what can be undone.
void NoteEditor::read(Fields fields)
{
    m_note = m_model.note(m_key);
    m_filling = true;
    const bool all = fields == Fields::replace;
    m_license->setCurrentIndex(static_cast<int>(m_note.license));
    if (all || stdText(m_boughtFrom->text()) != m_note.boughtFrom) {
        m_boughtFrom->setText(qtText(m_note.boughtFrom));
        m_boughtFrom->setCursorPosition(0);
    }
    if (all || stdText(m_link->text()) != m_note.url) {
        m_link->setText(qtText(m_note.url));
        m_link->setCursorPosition(0);
    }
    if (all || stdText(typedText(*m_text)) != m_note.text) {
        m_text->setPlainText(qtText(m_note.text));
        m_text->verticalScrollBar()->setValue(0);
    }
    m_filling = false;
    showLinkButton();
    showRest();
}

void NoteEditor::showLinkButton()
{
    const std::string link = stdText(m_link->text());
    m_openLink->setVisible(link.starts_with("http") && webLink(link));
}

void NoteEditor::showRest()
{
    const bool isAttached = m_note.attachment.has_value();
    if (isAttached) m_attachment->setContent(m_note.attachmentName.value_or(*m_note.attachment));
    for (QWidget* const widget :
         {static_cast<QWidget*>(m_paperclip), static_cast<QWidget*>(m_attachment),
          static_cast<QWidget*>(m_openAttachment), static_cast<QWidget*>(m_removeAttachment)})
        widget->setVisible(isAttached);
    m_noAttachment->setVisible(!isAttached);
    const bool wasSaved = m_note.updated != std::chrono::sys_seconds{};
    if (wasSaved) m_saved->setText(u"Saved "_s + qtText(dateText(m_note.updated)));
    m_saved->setVisible(wasSaved);
}

} // namespace quillmark
