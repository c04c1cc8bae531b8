#include "ui/FontListView.h"

#include "model/QtText.h"
#include "ui/AuditTableModel.h"
#include "ui/EmptyState.h"
#include "ui/FilterBar.h"
#include "ui/FontTable.h"
#include "ui/RowIdentity.h"

#include <QEvent>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <array>
#include <utility>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

void describeEmptiness(EmptyState& empty, ListKind kind)
{
    switch (kind) {
    case ListKind::fonts:
        empty.setTexts(u"No fonts found"_s, u"Add font files to this folder, then rescan."_s);
        break;
    case ListKind::document:
        empty.setTexts(u"No fonts in this PDF"_s,
                       u"It may be all images, or its text was turned into outlines."_s);
        break;
    }
}

} // namespace

FontListView::FontListView(QWidget* parent)
    : QWidget(parent), m_layout(new QVBoxLayout(this)), m_model(new AuditTableModel(this)),
      m_filters(new FilterBar), m_table(new FontTable(*m_model)),
      m_noneShown(new EmptyState(u"magnifyingglass"_s, u"No fonts match"_s,
                                 u"Change the search or the filters to see more."_s)),
      m_empty(new EmptyState(u"textformat"_s, {})), m_pages(new QStackedLayout)
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(m_filters);
    m_layout->addLayout(m_pages, 1);
    auto* const tablePage = new QWidget;
    auto* const tableLayout = new QVBoxLayout(tablePage);
    tableLayout->setContentsMargins(0, 0, 0, 0);
    tableLayout->addWidget(m_table);
    m_pages->addWidget(tablePage);
    m_pages->addWidget(m_empty);
    // Beside the table, for of what is in it screen readers are told the cells alone.
    m_noneShown->setParent(tablePage);
    m_noneShown->hide();
    m_table->viewport()->installEventFilter(this);

    connect(m_filters, &FilterBar::changed, this, &FontListView::applyFilter);
    connect(m_table, &FontTable::revealRequested, this, &FontListView::revealRequested);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FontListView::followCurrent);
    // Sorting by a header.
    connect(m_model, &QAbstractItemModel::layoutChanged, this,
            [this] { showSelection(Scroll::toSelection); });
    setList(std::nullopt);
}

void FontListView::setHeader(QWidget* header)
{
    m_layout->insertWidget(0, header);
    header->lower(); // screen readers go by the order of what is stacked
}

void FontListView::setList(const std::optional<AuditList>& list)
{
    const RowList before = m_model->rows();
    const int top = m_table->topRow();
    const int offset = m_table->verticalScrollBar()->value();
    std::optional<std::size_t> topPosition;
    if (top >= 0) topPosition = m_model->positionOf(top);

    m_showing = true;
    const auto change = m_model->setList(list);
    m_showing = false;
    m_filters->setKind(m_model->kind());
    m_filters->setCounts(AuditSummary::of(m_model->rows().span()));
    describeEmptiness(*m_empty, m_model->kind());
    m_pages->setCurrentWidget(m_model->rows().empty() ? m_empty : m_table->parentWidget());

    switch (change) {
    case AuditTableModel::Change::otherSource:
        m_selected.reset();
        m_filters->setVerdict(std::nullopt);
        m_filters->setSource(Source::all);
        setSearch({});
        m_table->scrollToTop();
        break;
    case AuditTableModel::Change::sameSource: {
        const auto follow = [&](std::optional<std::size_t>& position) {
            if (position) position = sameRows(before, std::array{*position}, m_model->rows())[0];
        };
        follow(m_selected);
        follow(topPosition);
        // At the top of the list it stays there, whatever has come in before the first row.
        if (offset > 0 && topPosition && m_model->rowOf(*topPosition) >= 0)
            m_table->scrollToTopRow(m_model->rowOf(*topPosition));
        break;
    }
    }
    showSelection(Scroll::no);
    tellShownRows();
}

QString FontListView::search() const
{
    return m_search;
}

void FontListView::setSearch(const QString& search)
{
    if (search == m_search) return;
    m_search = search;
    applyFilter();
    Q_EMIT searchChanged(m_search);
}

void FontListView::applyFilter()
{
    m_showing = true;
    m_model->setFilter({.verdict = m_filters->verdict(),
                        .source = m_filters->source(),
                        .search = stdText(m_search)});
    m_showing = false;
    m_table->scrollToTop();
    showSelection(Scroll::toSelection);
    tellShownRows();
}

int FontListView::selectedTableRow() const
{
    return m_selected ? m_model->rowOf(*m_selected) : -1;
}

std::optional<AuditRow> FontListView::selectedRow() const
{
    const int row = selectedTableRow();
    if (row < 0) return std::nullopt;
    return m_model->at(row);
}

/// The user has selected a row, or none.
void FontListView::followCurrent()
{
    if (m_showing) return;
    const QModelIndexList rows = m_table->selectionModel()->selectedRows();
    m_selected.reset();
    if (!rows.isEmpty()) m_selected = m_model->positionOf(rows.front().row());
    tellSelection();
}

/// Selects the font that is to be selected, after the table has changed under it.
void FontListView::showSelection(Scroll scroll)
{
    if (m_showing) return;
    m_showing = true;
    const int row = selectedTableRow();
    QItemSelectionModel* const selection = m_table->selectionModel();
    if (row < 0) {
        selection->clear();
    } else {
        const int column = std::max(0, selection->currentIndex().column());
        selection->setCurrentIndex(m_model->index(row, column),
                                   QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        if (scroll == Scroll::toSelection) m_table->scrollTo(m_model->index(row, 0));
    }
    m_showing = false;
    tellSelection();
}

void FontListView::tellSelection()
{
    std::optional<AuditRow> selected = selectedRow();
    if (selected == m_told) return;
    m_told = std::move(selected);
    Q_EMIT selectedRowChanged();
}

int FontListView::shownRows() const
{
    return m_model->rowCount();
}

void FontListView::tellShownRows()
{
    m_noneShown->setVisible(shownRows() == 0);
    if (shownRows() == m_toldRows) return;
    m_toldRows = shownRows();
    Q_EMIT shownRowsChanged(m_toldRows);
}

QByteArray FontListView::saveColumns() const
{
    return m_table->saveColumns();
}

void FontListView::restoreColumns(const QByteArray& saved)
{
    m_table->restoreColumns(saved);
}

bool FontListView::eventFilter(QObject* watched, QEvent* event)
{
    const QWidget* const viewport = m_table->viewport();
    if (watched == viewport && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        m_noneShown->setGeometry(viewport->geometry().translated(m_table->pos()));
    return QWidget::eventFilter(watched, event);
}

void FontListView::focusTable()
{
    m_table->setFocus(Qt::OtherFocusReason);
}

} // namespace quillmark
