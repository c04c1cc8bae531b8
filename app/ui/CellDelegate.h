// Draws the cells of the table of fonts.
#pragma once

#include <QStyledItemDelegate>

namespace quillmark {

/// One line of text, cut where the cell ends, and a second text beside it in the secondary style.
/// What is cut can be read in a tool tip.
class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Between the edges of a cell and what it shows, in device-independent pixels.
    static constexpr int margin = 8;
    /// Of every row, for the application's font.
    [[nodiscard]] static int rowHeight();

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    /// Draws what stands on the cell's ground.
    virtual void paintContent(QPainter& painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const;
    /// Whether the cell shows less than it says.
    [[nodiscard]] virtual bool isCut(const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const;
};

/// The small badge of a verdict.
class VerdictDelegate final : public CellDelegate {
    Q_OBJECT
public:
    using CellDelegate::CellDelegate;

    /// What the widest badge needs, margins included.
    [[nodiscard]] static int neededWidth();

protected:
    void paintContent(QPainter& painter, const QStyleOptionViewItem& option,
                      const QModelIndex& index) const override;
    [[nodiscard]] bool isCut(const QStyleOptionViewItem& option,
                             const QModelIndex& index) const override;
};

} // namespace quillmark
