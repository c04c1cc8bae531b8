// A button with rounded ends that chooses what a list shows: symbol, word and number.
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QString>

namespace quillmark {

/// Its text, which a screen reader says, is word and number.
class FilterChip final : public QAbstractButton {
    Q_OBJECT
public:
    /// Without a symbol where that is empty. An invalid colour is the palette's accent.
    FilterChip(QString word, QString symbol, const QColor& colour, QWidget* parent = nullptr);

    void setCount(int count);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Measures;
    [[nodiscard]] Measures measures() const;
    [[nodiscard]] QColor colour() const;

    QString m_word;
    QString m_symbol;
    QColor m_colour;
    QString m_count;
};

} // namespace quillmark
