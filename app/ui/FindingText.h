// A sentence in a verdict's colour, behind a symbol.
#pragma once

#include "assessment/Assessment.h"

#include <QColor>
#include <QLabel>
#include <QString>

namespace quillmark {

/// A label, so that a screen reader meets the sentence; drawn by itself.
class FindingText final : public QLabel {
    Q_OBJECT
public:
    explicit FindingText(QWidget* parent = nullptr);

    void setFinding(Verdict verdict, const QString& symbol, const QString& text);
    [[nodiscard]] QString symbol() const { return m_symbol; }
    /// Of the symbol; the words have it too unless the desktop asks for more contrast.
    [[nodiscard]] QColor colour() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void makeRoom();

    Verdict m_verdict{Verdict::unknown};
    QString m_symbol;
};

} // namespace quillmark
