// The inspector: one font of the list in full, with the user's own notes on it.
#pragma once

#include "pdf/AuditRow.h"

#include <QStackedWidget>

#include <optional>

class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace quillmark {

class AppModel;
class FactList;
class NoteEditor;
class SectionBox;
class SelectableText;
class TextChain;
class VerdictBadge;

/// Made to follow the arrow keys through a long list: its widgets stay, only their texts change.
class FontDetailView final : public QStackedWidget {
    Q_OBJECT
public:
    /// The model has to outlive the view.
    explicit FontDetailView(AppModel& model, QWidget* parent = nullptr);

    /// Shows a font, or that none is selected. The row is copied.
    void setRow(const AuditRow* row);

    [[nodiscard]] QSize minimumSizeHint() const override { return {300, 120}; }
    [[nodiscard]] QSize sizeHint() const override { return {340, 600}; }

private:
    void createPage(QVBoxLayout& page);

    AppModel& m_model;
    std::optional<AuditRow> m_row; // the one that is shown
    TextChain* m_chain{};

    QWidget* m_empty;
    QScrollArea* m_scroll;
    SelectableText* m_name{};
    SelectableText* m_postScriptName{};
    VerdictBadge* m_badge{};
    SelectableText* m_headline{};
    SelectableText* m_reasons{};
    FactList* m_facts{};
    SectionBox* m_useBox{};
    FactList* m_use{};
    QPushButton* m_showInFinder{};
    NoteEditor* m_notes{};
};

} // namespace quillmark
