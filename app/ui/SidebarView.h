// The sidebar: the sources to choose from, and the way to add a folder.
#pragma once

#include "model/SidebarItem.h"

#include <QWidget>

class QToolButton;
class QTreeView;

namespace quillmark {

class AppModel;
class SidebarModel;

/// Selects what the application model shows, and the other way round.
class SidebarView final : public QWidget {
    Q_OBJECT
public:
    /// In device-independent pixels.
    static constexpr int minimumColumnWidth = 190;
    static constexpr int idealColumnWidth = 240;
    static constexpr int maximumColumnWidth = 320;

    /// `model` has to outlive the view.
    explicit SidebarView(AppModel& model, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

    /// To give the keyboard to the sidebar.
    void focusTree();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followModel();
    void followTree();
    void openMenu(const QModelIndex& index, const QPoint& at);

    AppModel& m_model;
    SidebarModel* m_sources;
    QTreeView* m_tree;
    QToolButton* m_scan;
};

} // namespace quillmark
