// What a list of fonts is of: its title, and a line that says more. A document's is
// DocumentHeader.h.
#pragma once

#include <QString>
#include <QWidget>

namespace quillmark {

class TextLabel;

class ListHeading final : public QWidget {
    Q_OBJECT
public:
    explicit ListHeading(QWidget* parent = nullptr);

    void setTexts(const QString& title, const QString& subtitle);

private:
    TextLabel* m_title;
    TextLabel* m_subtitle;
};

} // namespace quillmark
