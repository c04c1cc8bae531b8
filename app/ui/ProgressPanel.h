// Work under way whose end nobody can tell: a moving bar over what is being done.
#pragma once

#include <QString>
#include <QWidget>

class QProgressBar;

namespace quillmark {

class TextLabel;

class ProgressPanel final : public QWidget {
    Q_OBJECT
public:
    explicit ProgressPanel(const QString& text, QWidget* parent = nullptr);

    void setText(const QString& text);

private:
    QProgressBar* m_bar;
    TextLabel* m_text;
};

} // namespace quillmark
