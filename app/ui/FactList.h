// Labels and values, beside each other where there is room and else one above the other.
#pragma once

#include "listing/FontFactsText.h"

#include <QWidget>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

class LinkText;
class SelectableText;
class TextChain;
class TextLabel;

/// Keeps its widgets from one font to the next.
class FactList final : public QWidget {
    Q_OBJECT
public:
    /// `labels` are those of all facts there can be, `linked` the one whose value may be a link.
    /// The values join `chain`.
    FactList(std::span<const std::string_view> labels, std::string_view linked, TextChain& chain,
             QWidget* parent = nullptr);

    void setFacts(const std::vector<Fact>& facts);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user wants to see this address.
    void linkActivated(const std::string& address);

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    struct Row {
        TextLabel* label;
        SelectableText* text;
        LinkText* link; // null where the value is never one
        std::string address{};
        SelectableText* shown{}; // null while there is no such fact
    };

    void arrange();
    /// Where labels stand beside their values: the width of their column. 0 where above them.
    [[nodiscard]] int labelColumn(int width) const;
    template <typename Place>
    int place(int width, Place put) const;

    std::vector<Row> m_rows;
};

} // namespace quillmark
