// A quiet box with a heading, which sets one group of the inspector apart from the others.
#pragma once

#include <QString>
#include <QWidget>

class QVBoxLayout;

namespace quillmark {

class SectionBox final : public QWidget {
    Q_OBJECT
public:
    explicit SectionBox(const QString& title, QWidget* parent = nullptr);

    /// What stands in the box. To be called once.
    void setContent(QWidget* content);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* m_heading;
    QVBoxLayout* m_layout;
};

} // namespace quillmark
