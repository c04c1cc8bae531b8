// The sources that the sidebar lists: two sections, each with its rows.
#pragma once

#include "model/SidebarItem.h"

#include <QAbstractItemModel>
#include <QString>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace quillmark {

class AppModel;

/// Follows the application model, row by row.
class SidebarModel final : public QAbstractItemModel {
    Q_OBJECT
public:
    /// Declared in the order in which they are shown.
    enum class Section { fonts, documents };
    static constexpr int sections = 2;

    /// What stands beside a row's label and how it is shown.
    enum Role {
        countRole = Qt::UserRole, // of fonts; none for a row without a badge
        symbolRole,               // its name, for symbolIcon()
        restrictedRole,           // whether the symbol has the colour of restricted fonts
        isSectionRole,
    };

    /// `model` has to outlive this one.
    explicit SidebarModel(const AppModel& model, QObject* parent = nullptr);

    /// What a row stands for; absent for sections and for what only tells of progress.
    [[nodiscard]] std::optional<SidebarItem> itemAt(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOf(const SidebarItem& item) const;

    /// Whether rows are being added or taken away. What happens to the selection meanwhile is
    /// nobody's wish.
    [[nodiscard]] bool isUpdating() const { return m_updating; }

    [[nodiscard]] QModelIndex index(int row, int column,
                                    const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    using QObject::parent;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

Q_SIGNALS:
    /// All rows are as the application model has them again.
    void updated();

private:
    struct Row {
        std::optional<SidebarItem> item; // absent: tells of a scan under way
        QString label;
        QString symbol; // may be empty
        QString hint;   // said on hover; may be empty
        std::optional<int> count;
        bool restricted{};
        bool operator==(const Row&) const = default;
    };
    using Rows = std::vector<Row>;

    [[nodiscard]] Rows fontRows() const;
    [[nodiscard]] Rows documentRows() const;
    [[nodiscard]] const Row* rowAt(const QModelIndex& index) const; // null for sections
    void update(Section section, Rows rows);

    const AppModel& m_model;
    std::array<Rows, sections> m_rows;
    bool m_updating{};
};

} // namespace quillmark
