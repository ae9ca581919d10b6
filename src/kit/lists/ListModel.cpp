#include "kit/lists/ListModel.h"

#include "base/RuntimeError.h"
#include "base/Sentence.h"
#include "base/Text.h"
#include "kit/common/CellText.h"
#include "kit/common/Strings.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace discaro::kit {

const QString& ListItem::column(int number) const {
    static const QString kEmpty;
    if (number == 0)
        return text;
    const auto place = static_cast<size_t>(number) - 1;
    return number > 0 && place < subItems.size() ? subItems[place] : kEmpty;
}

ListModel::ListModel(QObject* parent)
    : QAbstractTableModel(parent) {}

void ListModel::setColumns(std::vector<ListColumn> columns) {
    beginResetModel();
    m_columns = std::move(columns);
    m_seen.clear();
    for (size_t column = 0; column < m_columns.size(); ++column)
        if (m_columns[column].width > 0)
            m_seen.push_back(static_cast<int>(column));
    endResetModel();
}

void ListModel::setPictures(Pictures pictures) {
    m_pictures = std::move(pictures);
    if (!m_order.empty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::DecorationRole});
}

void ListModel::add(ListItem item) {
    if (!item.key.isEmpty() && !m_keys.try_emplace(item.key, count()).second)
        throw base::RuntimeError(base::ErrorNumber::InvalidValue,
                                 base::filledIn("the key %1 is in use", {utf8(item.key)}));
    m_items.push_back(std::move(item));
}

void ListModel::clear() {
    if (m_items.empty())
        return;
    beginResetModel();
    m_items.clear();
    m_order.clear();
    m_keys.clear();
    endResetModel();
}

void ListModel::flush() {
    if (m_order.size() == m_items.size())
        return;
    const auto first = static_cast<int>(m_order.size());
    beginInsertRows({}, first, count() - 1);
    m_order.resize(m_items.size());
    std::iota(m_order.begin() + first, m_order.end(), first);
    const bool all = first == 0;
    if (all && m_sorted)
        arrange();
    endInsertRows();
    if (!all && m_sorted)
        sortNow();
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

// Rows that are sorted already stay in order by themselves.
void ListModel::setSortKey(int column) {
    if (std::exchange(m_sortKey, column) != column)
        orderChanged();
}

void ListModel::setSortOrder(Qt::SortOrder order) {
    if (std::exchange(m_sortOrder, order) != order)
        orderChanged();
}

void ListModel::setSorted(bool sorted) {
    if (std::exchange(m_sorted, sorted) != sorted)
        orderChanged();
}

void ListModel::orderChanged() {
    sortNow();
    emit OrderChanged();
}

int ListModel::columnOf(int section) const {
    const auto place = static_cast<size_t>(section);
    return section >= 0 && place < m_seen.size() ? m_seen[place] : section;
}

int ListModel::sectionOf(int column) const {
    const auto behind = std::ranges::upper_bound(m_seen, column);
    return std::max(0, static_cast<int>(behind - m_seen.begin()) - 1);
}

void ListModel::sortNow() {
    flush();
    if (!m_sorted || m_order.empty())
        return;
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const std::vector<int> before = m_order;
    arrange();
    movePersistent(before);
    emit layoutChanged({}, VerticalSortHint);
}

// The selection and the current row stay on the rows that they are on.
void ListModel::movePersistent(const std::vector<int>& before) {
    std::vector<int> placeNow(m_order.size());
    for (size_t place = 0; place < m_order.size(); ++place)
        placeNow[static_cast<size_t>(m_order[place])] = static_cast<int>(place);
    const QModelIndexList kept = persistentIndexList();
    QModelIndexList moved;
    moved.reserve(kept.size());
    for (const QModelIndex& old : kept) {
        const int item = before[static_cast<size_t>(old.row())];
        moved << index(placeNow[static_cast<size_t>(item)], old.column());
    }
    changePersistentIndexList(kept, moved);
}

void ListModel::arrange() {
    std::vector<std::string> keys(m_items.size());
    std::ranges::transform(m_items, keys.begin(),
                           [this](const ListItem& item) { return base::orderKey(utf8(item.column(m_sortKey))); });
    std::iota(m_order.begin(), m_order.end(), 0);
    const auto textOf = [&](int item) -> const std::string& { return keys[static_cast<size_t>(item)]; };
    if (m_sortOrder == Qt::AscendingOrder)
        std::ranges::stable_sort(m_order, [&](int a, int b) { return textOf(a) < textOf(b); });
    else
        std::ranges::stable_sort(m_order, [&](int a, int b) { return textOf(b) < textOf(a); });
}

void ListModel::showColumns(bool all) {
    const int others = static_cast<int>(m_seen.size()) - 1;
    if (others < 1 || m_allColumns == all)
        return;
    if (all) {
        beginInsertColumns({}, 1, others);
        m_allColumns = true;
        endInsertColumns();
    } else {
        beginRemoveColumns({}, 1, others);
        m_allColumns = false;
        endRemoveColumns();
    }
}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_order.size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
    if (parent.isValid())
        return 0;
    return m_allColumns ? std::max(1, static_cast<int>(m_seen.size())) : 1;
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const ListItem& shown = item(index.row());
    const int number = columnOf(index.column());
    const auto column = static_cast<size_t>(number);
    switch (role) {
    case Qt::DisplayRole:
        return oneLine(shown.column(number));
    case Qt::ToolTipRole:
        return tipText(shown.column(number));
    case Qt::DecorationRole:
        return column == 0 && m_pictures && !shown.icon.isEmpty() ? m_pictures(shown.icon) : QVariant();
    case Qt::TextAlignmentRole:
        return column < m_columns.size() ? QVariant(m_columns[column].alignment | Qt::AlignVCenter) : QVariant();
    case Qt::AccessibleTextRole:
        return column == 0 ? spokenRow(shown) : oneLine(shown.column(number));
    default:
        return {};
    }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const bool seen = section >= 0 && static_cast<size_t>(section) < m_seen.size();
    if (orientation != Qt::Horizontal || !seen)
        return {};
    const ListColumn& column = m_columns[static_cast<size_t>(columnOf(section))];
    if (role == Qt::DisplayRole)
        return column.header;
    if (role == Qt::TextAlignmentRole)
        return QVariant(column.alignment | Qt::AlignVCenter);
    return {};
}

// A row as one sentence: its text, then each seen column with its header.
QString ListModel::spokenRow(const ListItem& item) const {
    QString spoken = oneLine(item.text);
    for (size_t column = 1; column < m_columns.size(); ++column) {
        const QString& cell = item.column(static_cast<int>(column));
        if (m_columns[column].width > 0 && !cell.isEmpty())
            spoken += QStringLiteral(", %1 %2").arg(m_columns[column].header, oneLine(cell));
    }
    return spoken;
}

} // namespace discaro::kit
