// The standing caution beside verdicts.
#pragma once

#include <QWidget>

namespace quillmark {

class DisclaimerBox final : public QWidget {
    Q_OBJECT
public:
    explicit DisclaimerBox(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillmark
