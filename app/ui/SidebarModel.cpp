#include "ui/SidebarModel.h"

#include "model/AppModel.h"
#include "model/FileSentence.h"
#include "model/QtText.h"
#include "text/Printable.h"
#include "ui/ToolTip.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

/// The internal id of a section; that of a row is its section's number.
constexpr quintptr ofSection = ~quintptr{0};

QString sectionTitle(int section)
{
    switch (static_cast<SidebarModel::Section>(section)) {
    case SidebarModel::Section::fonts:
        return u"Fonts"_s;
    case SidebarModel::Section::documents:
        return u"Documents"_s;
    }
    return {};
}

QString shown(const std::string& text)
{
    return qtText(printable(text));
}

QString fontCount(int count)
{
    return QString::number(count) + (count == 1 ? u" font"_s : u" fonts"_s);
}

} // namespace

SidebarModel::SidebarModel(const AppModel& model, QObject* parent)
    : QAbstractItemModel(parent), m_model(model), m_rows{fontRows(), documentRows()}
{
    const auto followFonts = [this] { update(Section::fonts, fontRows()); };
    connect(&m_model, &AppModel::installedChanged, this, followFonts);
    connect(&m_model, &AppModel::foldersChanged, this, followFonts);
    connect(&m_model, &AppModel::scanningFolderChanged, this, followFonts);
    connect(&m_model, &AppModel::documentsChanged, this,
            [this] { update(Section::documents, documentRows()); });
}

SidebarModel::Rows SidebarModel::fontRows() const
{
    Rows rows;
    rows.push_back({.item = SidebarItem::installed(),
                    .label = qtText(AuditList::ofInstalled({}).title),
                    .symbol = u"desktopcomputer"_s,
                    .hint = {},
                    .count = static_cast<int>(m_model.installed().size())});
    for (const FolderScan& folder : m_model.folders())
        rows.push_back({.item = SidebarItem::folder(folder.path),
                        .label = shown(shownName(folder.path)),
                        .symbol = u"folder"_s,
                        .hint = shown(shownPath(folder.path)),
                        .count = static_cast<int>(folder.rows.size())});
    if (const auto& scanning = m_model.scanningFolder())
        rows.push_back({.item = {},
                        .label = u"Scanning "_s + shown(shownName(*scanning)),
                        .symbol = {},
                        .hint = shown(shownPath(*scanning)),
                        .count = {}});
    return rows;
}

SidebarModel::Rows SidebarModel::documentRows() const
{
    Rows rows;
    rows.push_back({.item = SidebarItem::checkDocument(),
                    .label = u"Check a Document"_s,
                    .symbol = u"doc.text.magnifyingglass"_s,
                    .hint = {},
                    .count = {}});
    for (const SharedAudit& document : m_model.documents()) {
        const bool restricted = AuditSummary::of(document->rows).restricted > 0;
        rows.push_back({.item = SidebarItem::document(document->path),
                        .label = shown(document->fileName),
                        .symbol = restricted ? u"exclamationmark.triangle"_s : u"doc.richtext"_s,
                        .hint = shown(document->path),
                        .count = {},
                        .restricted = restricted});
    }
    return rows;
}

/// Takes the rows over one by one, so that whoever shows them moves nothing else.
void SidebarModel::update(Section section, Rows rows)
{
    m_updating = true;
    Rows& shown = m_rows.at(static_cast<std::size_t>(section));
    const QModelIndex parent = index(static_cast<int>(section), 0);
    const auto isIn = [](const Rows& all, const Row& row) {
        return std::ranges::find(all, row.item, &Row::item) != all.end();
    };
    for (int at = static_cast<int>(shown.size()) - 1; at >= 0; --at) {
        if (isIn(rows, shown[static_cast<std::size_t>(at)])) continue;
        beginRemoveRows(parent, at, at);
        shown.erase(shown.begin() + at);
        endRemoveRows();
    }
    for (int at = 0; at < static_cast<int>(rows.size()); ++at) {
        Row& row = rows[static_cast<std::size_t>(at)];
        const auto place = static_cast<std::size_t>(at);
        if (!isIn(shown, row)) {
            beginInsertRows(parent, at, at);
            shown.insert(shown.begin() + at, std::move(row));
            endInsertRows();
        } else if (shown[place].item == row.item && shown[place] != row) {
            shown[place] = std::move(row);
            const QModelIndex changed = index(at, 0, parent);
            Q_EMIT dataChanged(changed, changed);
        }
    }
    m_updating = false;
    Q_EMIT updated();
}

const SidebarModel::Row* SidebarModel::rowAt(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == ofSection) return nullptr;
    return &m_rows.at(index.internalId()).at(static_cast<std::size_t>(index.row()));
}

std::optional<SidebarItem> SidebarModel::itemAt(const QModelIndex& index) const
{
    const Row* const row = rowAt(index);
    return row == nullptr ? std::nullopt : row->item;
}

QModelIndex SidebarModel::indexOf(const SidebarItem& item) const
{
    for (int section = 0; section < sections; ++section) {
        const Rows& rows = m_rows.at(static_cast<std::size_t>(section));
        const auto found = std::ranges::find(rows, std::optional(item), &Row::item);
        if (found != rows.end())
            return index(static_cast<int>(found - rows.begin()), 0, index(section, 0));
    }
    return {};
}

QModelIndex SidebarModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent)) return {};
    return createIndex(row, column,
                       parent.isValid() ? static_cast<quintptr>(parent.row()) : ofSection);
}

QModelIndex SidebarModel::parent(const QModelIndex& child) const
{
    if (!child.isValid() || child.internalId() == ofSection) return {};
    return createIndex(static_cast<int>(child.internalId()), 0, ofSection);
}

int SidebarModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid()) return sections;
    if (parent.internalId() != ofSection || parent.column() != 0) return 0;
    return static_cast<int>(m_rows.at(static_cast<std::size_t>(parent.row())).size());
}

int SidebarModel::columnCount(const QModelIndex&) const
{
    return 1;
}

Qt::ItemFlags SidebarModel::flags(const QModelIndex& index) const
{
    const Row* const row = rowAt(index);
    if (row == nullptr || !row->item) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const Row* const row = rowAt(index);
    if (row == nullptr) {
        if (role == Qt::DisplayRole) return sectionTitle(index.row());
        return role == isSectionRole ? QVariant(true) : QVariant();
    }
    switch (role) {
    case Qt::DisplayRole:
        return row->label;
    case Qt::ToolTipRole:
        return plainToolTip(row->hint);
    case Qt::AccessibleTextRole:
        return row->count ? row->label + u", "_s + fontCount(*row->count) : row->label;
    case countRole:
        return row->count ? QVariant(*row->count) : QVariant();
    case symbolRole:
        return row->symbol;
    case restrictedRole:
        return row->restricted;
    default:
        return {};
    }
}

QVariant SidebarModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    // Never seen, but spoken.
    if (section != 0 || orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return u"Source"_s;
}

} // namespace quillmark
