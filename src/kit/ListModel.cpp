#include "kit/ListModel.h"

#include <algorithm>
#include <numeric>

#include "base/RuntimeError.h"
#include "kit/Strings.h"

namespace discaro::kit {

const QString& ListItem::column(int number) const {
    static const QString kEmpty;
    if (number == 0)
        return text;
    const auto place = static_cast<size_t>(number) - 1;
    return number > 0 && place < subItems.size() ? subItems[place] : kEmpty;
}

ListModel::ListModel(QObject* parent) : QAbstractTableModel(parent) {}

void ListModel::setColumns(std::vector<ListColumn> columns) {
    beginResetModel();
    m_columns = std::move(columns);
    endResetModel();
}

void ListModel::add(ListItem item) {
    if (!item.key.isEmpty() && !m_keys.try_emplace(item.key, count()).second)
        throw base::RuntimeError(base::ErrorNumber::InvalidValue, "the key " + utf8(item.key) + " is in use");
    m_items.push_back(std::move(item));
}

void ListModel::clear() {
    beginResetModel();
    m_items.clear();
    m_order.clear();
    m_keys.clear();
    endResetModel();
}

void ListModel::flush() {
    if (m_order.size() == m_items.size())
        return;
    beginResetModel();
    const auto first = static_cast<int>(m_order.size());
    m_order.resize(m_items.size());
    std::iota(m_order.begin() + first, m_order.end(), first);
    if (m_sorted)
        arrange();
    endResetModel();
}

const ListItem& ListModel::item(int place) const {
    if (place < 0 || place >= count())
        throw base::RuntimeError(base::ErrorNumber::InvalidValue, "no row " + std::to_string(place));
    const auto at = static_cast<size_t>(place);
    return m_items[at < m_order.size() ? static_cast<size_t>(m_order[at]) : at];
}

int ListModel::placeOf(const QString& key) const {
    const auto found = m_keys.find(key);
    if (found == m_keys.end())
        return -1;
    const auto place = std::ranges::find(m_order, found->second);
    return place == m_order.end() ? found->second : static_cast<int>(place - m_order.begin());
}

void ListModel::setSortKey(int column) {
    m_sortKey = column;
    sortNow();
}

void ListModel::setSortOrder(Qt::SortOrder order) {
    m_sortOrder = order;
    sortNow();
}

void ListModel::setSorted(bool sorted) {
    m_sorted = sorted;
    sortNow();
}

// Keeps the selection on the rows that it is on.
void ListModel::sortNow() {
    flush();
    if (!m_sorted)
        return;
    emit layoutAboutToBeChanged();
    const std::vector<int> before = m_order;
    arrange();
    std::vector<int> placeNow(m_order.size());
    for (size_t place = 0; place < m_order.size(); ++place)
        placeNow[static_cast<size_t>(m_order[place])] = static_cast<int>(place);
    QModelIndexList moved;
    const QModelIndexList kept = persistentIndexList();
    for (const QModelIndex& old : kept)
        moved << index(placeNow[static_cast<size_t>(before[static_cast<size_t>(old.row())])], old.column());
    changePersistentIndexList(kept, moved);
    emit layoutChanged();
}

void ListModel::arrange() {
    std::vector<QString> folded(m_items.size());
    std::ranges::transform(m_items, folded.begin(),
                           [this](const ListItem& item) { return item.column(m_sortKey).toCaseFolded(); });
    std::iota(m_order.begin(), m_order.end(), 0);
    const auto textOf = [&](int place) -> const QString& { return folded[static_cast<size_t>(place)]; };
    if (m_sortOrder == Qt::AscendingOrder)
        std::ranges::stable_sort(m_order, [&](int a, int b) { return textOf(a) < textOf(b); });
    else
        std::ranges::stable_sort(m_order, [&](int a, int b) { return textOf(b) < textOf(a); });
}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_order.size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : std::max<int>(1, static_cast<int>(m_columns.size()));
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const ListItem& shown = item(index.row());
    switch (role) {
    case Qt::DisplayRole:
        // Line ends would make rows of several lines; the properties show such texts whole.
        return QString(shown.column(index.column())).replace('\r', QString()).replace('\n', ' ');
    case Qt::ToolTipRole:
        return shown.column(index.column());
    case Qt::DecorationRole:
        return index.column() == 0 && m_pictures && !shown.icon.isEmpty() ? m_pictures(shown.icon) : QVariant();
    case Qt::TextAlignmentRole:
        if (static_cast<size_t>(index.column()) < m_columns.size())
            return QVariant(m_columns[static_cast<size_t>(index.column())].alignment | Qt::AlignVCenter);
        return {};
    case Qt::AccessibleTextRole:
        return index.column() == 0 ? spokenRow(shown) : shown.column(index.column());
    default:
        return {};
    }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || static_cast<size_t>(section) >= m_columns.size())
        return {};
    const ListColumn& column = m_columns[static_cast<size_t>(section)];
    if (role == Qt::DisplayRole)
        return column.header;
    if (role == Qt::TextAlignmentRole)
        return QVariant(column.alignment | Qt::AlignVCenter);
    return {};
}

// A row as one sentence: its text, then each seen column with its header.
QString ListModel::spokenRow(const ListItem& item) const {
    QString spoken = item.text;
    for (size_t column = 1; column < m_columns.size(); ++column) {
        const QString& cell = item.column(static_cast<int>(column));
        if (m_columns[column].width > 0 && !cell.isEmpty())
            spoken += ", " + m_columns[column].header + " " + cell;
    }
    return spoken;
}

} // namespace discaro::kit
