// The list of fonts of the selected source: the filter bar and the table, or what stands there when
// there is nothing to list.
#pragma once

#include "model/AuditList.h"

#include <QByteArray>
#include <QString>
#include <QWidget>

#include <cstddef>
#include <optional>
#include <string>

class QBoxLayout;
class QStackedLayout;

namespace quillmark {

class AuditTableModel;
class EmptyState;
class FilterBar;
class FontTable;

/// Shows what it is given, and tells what the user wants. When the list of another source is shown,
/// the search and the filters are empty again, and the order and the widths of the columns stay;
/// when a source is read again, everything stays, selection and scrolling included.
class FontListView final : public QWidget {
    Q_OBJECT
public:
    explicit FontListView(QWidget* parent = nullptr);

    /// What stands above the filter bar, such as the list's title. Set once; the view owns it.
    void setHeader(QWidget* header);

    /// An absent list shows as one without rows.
    void setList(const std::optional<AuditList>& list);

    /// Part of a name, as typed.
    [[nodiscard]] QString search() const;
    void setSearch(const QString& search);

    /// The font whose row is selected; absent while none is, or while the filter keeps it away. Its
    /// row is selected again as soon as it is shown again, if no other one was chosen meanwhile.
    [[nodiscard]] std::optional<AuditRow> selectedRow() const;

    /// Widths and order of the columns, from one run of the program to the next. Bytes that are not
    /// from here restore nothing.
    [[nodiscard]] QByteArray saveColumns() const;
    void restoreColumns(const QByteArray& saved);

    /// How many fonts of the list the search and the filters leave.
    [[nodiscard]] int shownRows() const;

    /// To give the keyboard to the list.
    void focusTable();

Q_SIGNALS:
    /// Another row is selected, or none, or the selected font was read anew.
    void selectedRowChanged();
    /// The search was set, or was emptied with the other filters.
    void searchChanged(const QString& search);
    void shownRowsChanged(int count);
    /// The user wants to see a font's file in the file manager.
    void revealRequested(const std::string& path);

protected:
    /// Follows the size of what the table leaves for rows.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void applyFilter();
    void followCurrent();
    enum class Scroll { no, toSelection };
    void showSelection(Scroll scroll);
    void tellSelection();
    void tellShownRows();
    [[nodiscard]] int selectedTableRow() const;

    QBoxLayout* m_layout;
    AuditTableModel* m_model;
    FilterBar* m_filters;
    FontTable* m_table;
    EmptyState* m_noneShown; // over the table
    EmptyState* m_empty;     // in its place
    QStackedLayout* m_pages;
    QString m_search;
    std::optional<std::size_t> m_selected; // in the whole list; absent: none
    std::optional<AuditRow> m_told;        // what the last selectedRowChanged was about
    int m_toldRows{};                      // what the last shownRowsChanged said
    bool m_showing{};                      // the selection is being changed by the view itself
};

} // namespace quillmark
