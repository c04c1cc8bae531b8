// The row of chips above a list of fonts, which choose the verdict to show, and the picker for
// where fonts have come from.
#pragma once

#include "listing/RowFilter.h"
#include "pdf/AuditRow.h"
#include "ui/AuditColumn.h"

#include <QWidget>

#include <array>
#include <optional>

class QBoxLayout;
class QButtonGroup;
class QComboBox;

namespace quillmark {

class FilterChip;

/// Keeps only what is chosen in it; what is shown then is for the list to say.
class FilterBar final : public QWidget {
    Q_OBJECT
public:
    explicit FilterBar(QWidget* parent = nullptr);

    /// The picker is there for fonts on this computer only.
    void setKind(ListKind kind);
    /// The numbers on the chips, which are those of the whole list.
    void setCounts(const AuditSummary& summary);

    [[nodiscard]] std::optional<Verdict> verdict() const; // absent: all
    void setVerdict(std::optional<Verdict> verdict);
    [[nodiscard]] Source source() const;
    void setSource(Source source);

    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Something else was chosen, by whomever.
    void changed();

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    [[nodiscard]] FilterChip* chip(std::optional<Verdict> verdict) const;
    void arrange();

    QBoxLayout* m_layout;
    QWidget* m_chips;
    QButtonGroup* m_group;
    FilterChip* m_all;
    std::array<FilterChip*, rawValues<Verdict>.size()> m_ofVerdict{};
    QWidget* m_picker;
    QComboBox* m_sources;
};

} // namespace quillmark
