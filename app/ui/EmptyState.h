// What stands in a pane that has nothing to show yet: a large symbol, a title, and what to do.
#pragma once

#include <QLabel>
#include <QString>

namespace quillmark {

/// A label, so that a screen reader meets title and description as one text; drawn by itself.
class EmptyState final : public QLabel {
    Q_OBJECT
public:
    EmptyState(QString symbol, const QString& title, const QString& description = {},
               QWidget* parent = nullptr);

    void setTexts(const QString& title, const QString& description);
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString description() const { return m_description; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return {120, 80}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    QString m_title;
    QString m_description; // may be empty
};

} // namespace quillmark
