#include "ui/SearchField.h"

#include "ui/Symbols.h"

#include <QAction>
#include <QFontMetrics>
#include <QKeyEvent>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

SearchField::SearchField(QWidget* parent) : QLineEdit(parent)
{
    const QString prompt = u"Font, PostScript name or maker"_s;
    setPlaceholderText(prompt);
    setAccessibleName(u"Search"_s);
    setClearButtonEnabled(true);
    // Qt's own button has an icon and no words.
    if (auto* const clear = findChild<QAction*>(u"_q_qlineeditclearaction"_s))
        clear->setText(u"Clear the search"_s);
    addAction(symbolIcon(u"magnifyingglass"_s), QLineEdit::LeadingPosition)->setText(u"Search"_s);
    const int promptWidth = fontMetrics().horizontalAdvance(prompt);
    setMinimumWidth(promptWidth * 3 / 4);
    setMaximumWidth(promptWidth * 3 / 2);
}

void SearchField::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        if (text().isEmpty())
            Q_EMIT left();
        else
            clear();
        return;
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT left();
        return;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

} // namespace quillmark
