// Text of the windows, in one of a few styles that follow the application's font and palette.
// Longer text that wraps and can be copied is SelectableText.h.
#pragma once

#include <QColor>
#include <QFont>
#include <QLabel>
#include <QPalette>
#include <QString>

#include <optional>

namespace quillmark {

/// The typographic styles; all sizes are relative to the application's font.
enum class TextStyle { body, title, headline, callout, caption, monospaced };
/// How prominent a text is.
enum class TextTone { primary, secondary };

[[nodiscard]] QFont textFont(TextStyle style);

/// The colour of less important text on the palette's window: still at least 4.5 to 1.
[[nodiscard]] QColor secondaryColour(const QPalette& palette);

/// Shows plain text, never markup, whatever it holds.
class TextLabel final : public QLabel {
    Q_OBJECT
public:
    explicit TextLabel(const QString& text = {}, TextStyle style = TextStyle::body,
                       TextTone tone = TextTone::primary, QWidget* parent = nullptr);

    /// The same font, but bold.
    void setBold(bool bold);
    /// Makes it one line that takes the room it is given, and never asks for more: a text that does
    /// not fit is shown with "…" for what lies there, and whole in a tool tip.
    void setElided(Qt::TextElideMode mode);
    /// What is to be seen of the text.
    [[nodiscard]] QString shownText() const;

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void applyStyle();

    TextStyle m_style;
    TextTone m_tone;
    std::optional<Qt::TextElideMode> m_elided; // absent: never
    bool m_bold{};
    bool m_applying{};
};

} // namespace quillmark
