#include "ui/SidebarView.h"

#include "model/AppModel.h"
#include "ui/ContextMenuKey.h"
#include "ui/SidebarDelegate.h"
#include "ui/SidebarModel.h"
#include "ui/Symbols.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int buttonMargin = 6;
constexpr int buttonSideMargin = 10; // its symbol stands below those of the rows

/// A tree whose sections are always open and whose rows have no branches to draw.
class SourceTree final : public QTreeView {
public:
    using QTreeView::QTreeView;

protected:
    void drawRow(QPainter* painter, const QStyleOptionViewItem& options,
                 const QModelIndex& index) const override
    {
        // Without the ground that the style draws: the delegate draws all of it.
        QStyleOptionViewItem row = options;
        row.rect.setLeft(0);
        row.rect.setWidth(viewport()->width());
        row.widget = this;
        row.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
        row.state.setFlag(QStyle::State_HasFocus, hasFocus() && currentIndex() == index);
        row.state.setFlag(QStyle::State_MouseOver, m_hovered == index);
        itemDelegate()->paint(painter, row, index);
    }
    void drawBranches(QPainter*, const QRect&, const QModelIndex&) const override {}
    void mousePressEvent(QMouseEvent* event) override
    {
        // A right click is about a row, and does not go there; a click beside the rows goes
        // nowhere.
        const bool isOnRow =
            indexAt(event->position().toPoint()).flags().testFlag(Qt::ItemIsSelectable);
        if (event->button() == Qt::LeftButton && isOnRow) QTreeView::mousePressEvent(event);
    }
    bool viewportEvent(QEvent* event) override
    {
        if (event->type() == QEvent::HoverMove || event->type() == QEvent::HoverLeave) {
            const QModelIndex now =
                event->type() == QEvent::HoverMove
                    ? indexAt(static_cast<QHoverEvent*>(event)->position().toPoint())
                    : QModelIndex();
            if (now != m_hovered) {
                m_hovered = now;
                viewport()->update();
            }
        }
        return QTreeView::viewportEvent(event);
    }
    void keyPressEvent(QKeyEvent* event) override
    {
        if (!openContextMenu(*this, *event)) QTreeView::keyPressEvent(event);
    }

private:
    QPersistentModelIndex m_hovered;
};

} // namespace

SidebarView::SidebarView(AppModel& model, QWidget* parent)
    : QWidget(parent), m_model(model), m_sources(new SidebarModel(model, this)),
      m_tree(new SourceTree), m_scan(new QToolButton)
{
    setMinimumWidth(minimumColumnWidth);
    setMaximumWidth(maximumColumnWidth);

    m_tree->setAccessibleName(u"Sources"_s);
    m_tree->setModel(m_sources);
    m_tree->setItemDelegate(new SidebarDelegate(this));
    m_tree->setFrameShape(QFrame::NoFrame);
    m_tree->viewport()->setBackgroundRole(QPalette::Window);
    m_tree->setHeaderHidden(true);
    m_tree->setRootIsDecorated(false);
    m_tree->setItemsExpandable(false);
    m_tree->setExpandsOnDoubleClick(false);
    m_tree->setIndentation(0);
    m_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_tree->setSelectionMode(QAbstractItemView::SingleSelection);
    m_tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_tree->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_tree->viewport()->setAttribute(Qt::WA_Hover);
    m_tree->expandAll();
    // Asked for by the pointer a menu comes to the viewport, by the Menu key to the tree itself.
    m_tree->viewport()->installEventFilter(this);
    m_tree->installEventFilter(this);

    m_scan->setText(u"Scan a Font Folder…"_s);
    m_scan->setIcon(symbolIcon(u"folder.badge.plus"_s));
    m_scan->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_scan->setAutoRaise(true);
    m_scan->setFocusPolicy(Qt::TabFocus);
    connect(m_scan, &QToolButton::clicked, &m_model, &AppModel::chooseFolder);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_tree, 1);
    auto* const bottom = new QHBoxLayout;
    bottom->setContentsMargins(buttonSideMargin, buttonMargin, buttonMargin, buttonMargin);
    bottom->addWidget(m_scan);
    bottom->addStretch();
    layout->addLayout(bottom);

    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SidebarView::followTree);
    connect(&m_model, &AppModel::selectionChanged, this, &SidebarView::followModel);
    connect(m_sources, &SidebarModel::updated, this, &SidebarView::followModel);
    followModel();
}

QSize SidebarView::sizeHint() const
{
    return {idealColumnWidth, QWidget::sizeHint().height()};
}

void SidebarView::focusTree()
{
    m_tree->setFocus(Qt::OtherFocusReason);
}

void SidebarView::followModel()
{
    if (m_sources->isUpdating()) return;
    const auto& selection = m_model.selection();
    const QModelIndex index = selection ? m_sources->indexOf(*selection) : QModelIndex();
    if (index.isValid() && m_tree->selectionModel()->isSelected(index)) return;
    if (index.isValid())
        m_tree->setCurrentIndex(index);
    else
        m_tree->selectionModel()->clear();
}

void SidebarView::followTree()
{
    if (m_sources->isUpdating()) return;
    const QModelIndexList selected = m_tree->selectionModel()->selectedIndexes();
    // A click with Ctrl takes the selection away, but something is always shown.
    if (selected.isEmpty()) return followModel();
    if (auto item = m_sources->itemAt(selected.front())) m_model.setSelection(std::move(item));
}

bool SidebarView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ContextMenu) return QWidget::eventFilter(watched, event);
    const auto* const request = static_cast<QContextMenuEvent*>(event);
    const bool byKey = request->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? m_tree->currentIndex() : m_tree->indexAt(request->pos());
    openMenu(index, byKey ? m_tree->viewport()->mapToGlobal(m_tree->visualRect(index).center())
                          : request->globalPos());
    return true;
}

void SidebarView::openMenu(const QModelIndex& index, const QPoint& at)
{
    const auto item = m_sources->itemAt(index);
    if (!item) return;
    const bool isFolder = item->kind == SidebarItem::Kind::folder;
    if (!isFolder && item->kind != SidebarItem::Kind::document) return;

    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    // By path: the row may be gone, or another one, when something is chosen.
    const std::string& path = item->path;
    const auto add = [&](const QString& text, auto act) {
        connect(menu->addAction(text), &QAction::triggered, &m_model, act);
    };
    if (isFolder)
        add(u"Rescan"_s, [this, path] { m_model.scanFolder(path, AppModel::Select::no); });
    else
        add(u"Check Again"_s, [this, path] {
            const auto found = std::ranges::find_if(
                m_model.documents(), [&](const SharedAudit& each) { return each->path == path; });
            if (found != m_model.documents().end()) m_model.recheck(**found);
        });
    add(u"Show in Finder"_s, [this, path] { m_model.showInFinder(path); });
    menu->addSeparator();
    if (isFolder)
        add(u"Remove from List"_s, [this, path] { m_model.removeFolder(path); });
    else
        add(u"Remove from List"_s, [this, path] { m_model.removeDocument(path); });
    menu->popup(at);
}

} // namespace quillmark
