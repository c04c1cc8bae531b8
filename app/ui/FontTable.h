// The table of fonts as the user sees it. What it shows is AuditTableModel.h.
#pragma once

#include "ui/AuditColumn.h"

#include <QByteArray>
#include <QTableView>

#include <array>
#include <string>

namespace quillmark {

class AuditTableModel;

class FontTable final : public QTableView {
    Q_OBJECT
public:
    /// `model` has to outlive the table.
    explicit FontTable(AuditTableModel& model, QWidget* parent = nullptr);

    /// The columns' widths and the order, to be restored in another run. Empty or unreadable bytes
    /// restore nothing.
    [[nodiscard]] QByteArray saveColumns() const;
    void restoreColumns(const QByteArray& saved);

    /// The first row that can be seen, or -1; and a way to have a row there again.
    [[nodiscard]] int topRow() const;
    void scrollToTopRow(int row);

    void keyboardSearch(const QString& search) override;

public Q_SLOTS:
    /// Puts the selected row on the clipboard; without one, the clipboard stays as it is. By this
    /// name the Edit menu finds it.
    void copy();

Q_SIGNALS:
    /// The user wants to see a font's file in the file manager.
    void revealRequested(const std::string& path);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    [[nodiscard]] int sizeHintForRow(int row) const override;

private:
    using Widths = std::array<int, rawValues<AuditColumn>.size()>; // by column

    [[nodiscard]] AuditColumn columnAt(int section) const;
    [[nodiscard]] static ColumnWidths limits(AuditColumn column);
    [[nodiscard]] Widths& wanted();
    void followModel();
    void layOutColumns();
    void keepWidth(int section, int width);
    void useFont();

    AuditTableModel& m_model;
    std::array<Widths, 2> m_wanted{}; // by kind of list; before they are fitted into the view
    bool m_layingOut{};
};

} // namespace quillmark
