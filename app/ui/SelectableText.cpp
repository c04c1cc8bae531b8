#include "ui/SelectableText.h"

#include "ui/AccessibleRole.h"
#include "ui/ShownText.h"

#include <QApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextOption>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int usualWidth = 200; // asked for where nobody says how wide
constexpr int caretMargin = 24; // kept in sight around the caret

/// Whether a word goes on for so long that to look for its end in every line would take time.
bool hasEndlessWord(const QString& text)
{
    constexpr int longest = 500;
    int length = 0;
    for (const QChar character : text) {
        length = character.isSpace() ? 0 : length + 1;
        if (length > longest) return true;
    }
    return false;
}

} // namespace

SelectableText::SelectableText(const QString& name, TextStyle style, TextTone tone, QWidget* parent)
    : QTextEdit(parent), m_style(style), m_tone(tone)
{
    setAccessibleName(name);
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setAcceptRichText(false);
    setFocusPolicy(Qt::ClickFocus);
    setAcceptDrops(false); // what is dropped here is meant for the window
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    // Text of any script begins where the window's own does, below and beside its label. Which way
    // its words go is for each paragraph to say.
    QTextOption option = document()->defaultTextOption();
    option.setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) |
                        Qt::AlignAbsolute);
    document()->setDefaultTextOption(option);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    connect(this, &QTextEdit::cursorPositionChanged, this, &SelectableText::keepCaretInSight);
    applyStyle();
}

void SelectableText::setContent(std::string_view text, std::string_view aside)
{
    QString content = shownText(text);
    QString beside = shownText(aside);
    if (content == m_content && beside == m_aside) return;
    m_content = std::move(content);
    m_aside = std::move(beside);
    write();
    contentChanged();
}

void SelectableText::setOneWay()
{
    m_oneWay = true;
    write();
}

void SelectableText::setBold(bool bold)
{
    m_bold = bold;
    applyStyle();
}

void SelectableText::setParagraphGap(int gap)
{
    m_paragraphGap = gap;
    write();
}

void SelectableText::write()
{
    setWordWrapMode(hasEndlessWord(m_content) ? QTextOption::WrapAnywhere
                                              : QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextCharFormat format;
    adjust(format);
    setCurrentCharFormat(format);
    setPlainText(m_content);
    if (m_oneWay || !m_aside.isEmpty()) {
        // The aside stays behind the text, also where the text goes from right to left.
        QTextBlockFormat direction;
        direction.setLayoutDirection(layoutDirection());
        QTextCursor(document()).mergeBlockFormat(direction);
    }
    if (!m_aside.isEmpty()) {
        QTextCharFormat quiet;
        quiet.setFont(textFont(TextStyle::callout));
        quiet.setForeground(secondaryColour(QApplication::palette()));
        QTextCursor end(document());
        end.movePosition(QTextCursor::End);
        end.insertText(u"  "_s + m_aside, quiet);
    }
    if (m_paragraphGap > 0) {
        QTextBlockFormat apart;
        apart.setTopMargin(m_paragraphGap);
        QTextCursor following(document());
        if (following.movePosition(QTextCursor::NextBlock)) {
            following.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
            following.mergeBlockFormat(apart);
        }
    }
    m_heights = {};
    updateGeometry();
}

void SelectableText::adjust(QTextCharFormat&) const {}

void SelectableText::contentChanged() {}

int SelectableText::heightForWidth(int width) const
{
    const auto known = std::ranges::find(m_heights, width, &Height::width);
    if (known != m_heights.end()) return known->height;
    // The document is laid out for the width that was asked for last, which is nearly always the
    // one that the widget then gets. The first layout of all makes QTextEdit arrange itself, and
    // takes the width that it has.
    if (document()->textWidth() != width) document()->setTextWidth(width);
    if (document()->textWidth() != width) document()->setTextWidth(width);
    const int height = static_cast<int>(std::ceil(document()->size().height()));
    m_heights = {m_heights[1], Height{width, height}};
    return height;
}

QSize SelectableText::sizeHint() const
{
    return {usualWidth, minimumSizeHint().height()};
}

QSize SelectableText::minimumSizeHint() const
{
    return {QFontMetrics(font()).averageCharWidth() * 4, QFontMetrics(font()).height()};
}

void SelectableText::changeEvent(QEvent* event)
{
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::ApplicationFontChange ||
        event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::PaletteChange)
        applyStyle();
}

void SelectableText::applyStyle()
{
    // Setting a palette is a change of the palette.
    if (m_applying) return;
    m_applying = true;
    QFont font = textFont(m_style);
    if (m_bold) font.setBold(true);
    setFont(font);
    const QPalette palette = QApplication::palette();
    QPalette own;
    own.setColor(QPalette::Text, m_tone == TextTone::secondary
                                     ? secondaryColour(palette)
                                     : palette.color(QPalette::Active, QPalette::WindowText));
    setPalette(own);
    write();
    m_applying = false;
}

void SelectableText::focusInEvent(QFocusEvent* event)
{
    QTextEdit::focusInEvent(event);
    m_showsFocus = event->reason() != Qt::MouseFocusReason;
    viewport()->update();
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        keepCaretInSight();
    Q_EMIT focused();
}

void SelectableText::focusOutEvent(QFocusEvent* event)
{
    QTextEdit::focusOutEvent(event);
    m_showsFocus = false;
    viewport()->update();
}

void SelectableText::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    QTextCursor caret = textCursor();
    switch (event->key()) {
    case Qt::Key_Up:
        if (!isPlain || caret.movePosition(QTextCursor::Up)) break;
        Q_EMIT leftUpwards();
        return;
    case Qt::Key_Down:
        if (!isPlain || caret.movePosition(QTextCursor::Down)) break;
        Q_EMIT leftDownwards();
        return;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        event->ignore(); // pages are those of the scroll area
        return;
    }
    QTextEdit::keyPressEvent(event);
}

void SelectableText::paintEvent(QPaintEvent* event)
{
    // A layout may have asked for other widths since.
    if (document()->textWidth() != viewport()->width())
        document()->setTextWidth(viewport()->width());
    QTextEdit::paintEvent(event);
    if (!m_showsFocus || !hasFocus()) return;
    QPainter painter(viewport());
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = viewport()->rect();
    option.backgroundColor = palette().color(QPalette::Window);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void SelectableText::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

QMimeData* SelectableText::createMimeDataFromSelection() const
{
    auto* const copied = new QMimeData;
    copied->setText(textCursor().selection().toPlainText());
    return copied;
}

void SelectableText::keepCaretInSight()
{
    if (!hasFocus()) return;
    for (QWidget* parent = parentWidget(); parent != nullptr; parent = parent->parentWidget())
        if (auto* const area = qobject_cast<QScrollArea*>(parent)) {
            const QPoint caret = mapTo(area->widget(), cursorRect().center());
            area->ensureVisible(caret.x(), caret.y(), 0, caretMargin);
            return;
        }
}

LinkText::LinkText(const QString& name, QWidget* parent)
    : SelectableText(name, TextStyle::body, TextTone::primary, parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleDescription(name);
    viewport()->setCursor(Qt::PointingHandCursor);
    setAccessibleRole(this, QAccessible::Link, [this] { Q_EMIT activated(); });
}

void LinkText::adjust(QTextCharFormat& format) const
{
    format.setForeground(QApplication::palette().color(QPalette::Link));
    format.setFontUnderline(true);
}

void LinkText::contentChanged()
{
    setAccessibleName(content()); // as of any link
}

void LinkText::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        Q_EMIT activated();
        return;
    }
    SelectableText::keyPressEvent(event);
}

void LinkText::mouseReleaseEvent(QMouseEvent* event)
{
    SelectableText::mouseReleaseEvent(event);
    // Whoever has dragged over the text wants to copy it.
    if (event->button() == Qt::LeftButton && !textCursor().hasSelection() &&
        viewport()->rect().contains(event->position().toPoint()))
        Q_EMIT activated();
}

TextChain::TextChain(QWidget* parent) : QObject(parent), m_parent(parent) {}

void TextChain::add(SelectableText* text)
{
    m_texts.push_back(text);
    connect(text, &SelectableText::focused, this, [this, text] { setStop(text); });
    connect(text, &SelectableText::leftUpwards, this, [this, text] { goOn(text, -1); });
    connect(text, &SelectableText::leftDownwards, this, [this, text] { goOn(text, 1); });
}

bool TextChain::isShown(const SelectableText* text) const
{
    return text->isVisibleTo(m_parent);
}

void TextChain::update()
{
    if (m_stop != nullptr && isShown(m_stop)) return;
    restart();
}

void TextChain::restart()
{
    const auto first = std::ranges::find_if(m_texts, [this](const SelectableText* text) {
        return isShown(text) && qobject_cast<const LinkText*>(text) == nullptr;
    });
    if (first != m_texts.end()) setStop(*first);
}

void TextChain::setStop(SelectableText* text)
{
    if (qobject_cast<LinkText*>(text) != nullptr) return;
    if (m_stop != nullptr) m_stop->setFocusPolicy(Qt::ClickFocus);
    m_stop = text;
    m_stop->setFocusPolicy(Qt::StrongFocus);
}

void TextChain::goOn(const SelectableText* from, int step)
{
    const auto here = std::ranges::find(m_texts, from) - m_texts.begin();
    const auto count = static_cast<std::ptrdiff_t>(m_texts.size());
    for (auto next = here + step; next >= 0 && next < count; next += step) {
        SelectableText* const text = m_texts[static_cast<std::size_t>(next)];
        if (!isShown(text)) continue;
        text->moveCursor(step > 0 ? QTextCursor::Start : QTextCursor::End);
        text->setFocus(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return;
    }
}

} // namespace quillmark
