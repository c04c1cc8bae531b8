// A drawing that stands beside text. What is drawn into something else is Symbols.h.
#pragma once

#include "ui/TextLabel.h"

#include <QLabel>
#include <QString>

#include <optional>

namespace quillmark {

/// Shows a drawing in the secondary colour. It is drawn anew each time, and so always has the
/// palette's colours and the screen's sharpness of that moment.
class SymbolLabel final : public QLabel {
    Q_OBJECT
public:
    /// As high as a line of text of that style.
    SymbolLabel(QString symbol, TextStyle besideText, QWidget* parent = nullptr);
    /// Of a size of its own, in device-independent pixels.
    SymbolLabel(QString symbol, int extent, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void fit();

    QString m_symbol;
    std::optional<TextStyle> m_style; // absent where the size is its own
};

} // namespace quillmark
