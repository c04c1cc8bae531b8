// How verdicts are reached, in words. The words are in assessment/HelpText.h.
#pragma once

#include <QDialog>

class QScrollArea;

namespace quillmark {

/// Modal to its parent's window; shown with open().
class HelpDialog final : public QDialog {
    Q_OBJECT
public:
    explicit HelpDialog(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QScrollArea* m_texts;
};

} // namespace quillmark
