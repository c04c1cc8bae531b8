// Longer text that wraps, and can be selected and copied. Short labels are TextLabel.h.
#pragma once

#include "ui/TextLabel.h"

#include <QObject>
#include <QTextEdit>

#include <array>
#include <string_view>
#include <vector>

namespace quillmark {

/// Plain text as tall as it needs to be for its width, without frame or ground of its own. Meant
/// to stand in a scroll area: it scrolls that, never itself. A word that is longer than a line,
/// such as a path, is broken where the line ends.
///
/// Reached by the Tab key only through a TextChain.
class SelectableText : public QTextEdit {
    Q_OBJECT
public:
    /// `name` is what a screen reader says before the text.
    explicit SelectableText(const QString& name, TextStyle style = TextStyle::body,
                            TextTone tone = TextTone::primary, QWidget* parent = nullptr);

    /// Shows text of a font or a file (see ShownText.h). `aside` follows it, less prominently.
    void setContent(std::string_view text, std::string_view aside = {});
    [[nodiscard]] QString content() const { return m_content; }
    /// The text goes the window's own way whatever its letters, as a path does.
    void setOneWay();
    /// The same font, but bold.
    void setBold(bool bold);
    /// The room between two lines of the content, in pixels, where each is a paragraph.
    void setParagraphGap(int gap);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void focused();
    /// The Up key was pressed on the first line, or Down on the last one.
    void leftUpwards();
    void leftDownwards();

protected:
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;

    /// How the content is written, besides the font.
    virtual void adjust(QTextCharFormat& format) const;
    virtual void contentChanged();

private:
    struct Height {
        int width{-1};
        int height{};
    };

    void applyStyle();
    void write();
    void keepCaretInSight();

    TextStyle m_style;
    TextTone m_tone;
    bool m_oneWay{};
    bool m_bold{};
    int m_paragraphGap{};
    bool m_applying{};
    bool m_showsFocus{};
    QString m_content;
    QString m_aside;
    mutable std::array<Height, 2> m_heights; // the latest; layouts ask several times
};

/// Text that opens an address.
class LinkText final : public SelectableText {
    Q_OBJECT
public:
    explicit LinkText(const QString& name, QWidget* parent = nullptr);

Q_SIGNALS:
    void activated();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void adjust(QTextCharFormat& format) const override;
    void contentChanged() override;
};

/// Texts that are a single stop of the Tab key, so that a page full of them is quickly passed: the
/// stop is the text that was used last, and Up and Down go on to the next one. Its parent is the
/// widget that they all stand in.
class TextChain final : public QObject {
    Q_OBJECT
public:
    explicit TextChain(QWidget* parent);

    /// Adds a text below the others. A link stays a stop of its own.
    void add(SelectableText* text);
    /// To be called when texts have been shown or hidden.
    void update();
    /// Makes the first text the stop again.
    void restart();

private:
    [[nodiscard]] bool isShown(const SelectableText* text) const;
    void setStop(SelectableText* text);
    void goOn(const SelectableText* from, int step);

    QWidget* m_parent;
    std::vector<SelectableText*> m_texts;
    SelectableText* m_stop{};
};

} // namespace quillmark
