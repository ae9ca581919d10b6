#include "kit/lists/TreeModel.h"

#include "base/RuntimeError.h"
#include "base/Sentence.h"
#include "base/Text.h"
#include "kit/common/CellText.h"
#include "kit/common/Strings.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace discaro::kit {

namespace {

[[noreturn]] void refuse(const std::string& detail) {
    throw base::RuntimeError(base::ErrorNumber::InvalidValue, detail);
}

} // namespace

TreeModel::TreeModel(QObject* parent)
    : QAbstractItemModel(parent) {}

const TreeModel::Node& TreeModel::at(int node) const {
    if (node < 1 || node > count())
        refuse(base::filledIn("no node %1", {std::to_string(node)}));
    return m_nodes[static_cast<size_t>(node) - 1];
}

// ---- Nodes

int TreeModel::add(const QString& parentKey, const QString& key, const QString& text) {
    const int parent = find(parentKey);
    if (parent == 0 && !parentKey.isEmpty())
        refuse(base::filledIn("no node has the key %1", {utf8(parentKey)}));
    if (key.isEmpty() || m_keys.contains(key))
        refuse(base::filledIn("the key %1 is in use", {utf8(key)}));
    if (family(parent).level >= kDeepest)
        refuse(base::filledIn("the tree is too deep for %1", {utf8(key)}));
    return append(parent, key, text);
}

int TreeModel::tryAdd(const QString& parentKey, const QString& key, const QString& text) {
    const int parent = find(parentKey);
    const bool fits = (parent != 0 || parentKey.isEmpty()) && !key.isEmpty() && !m_keys.contains(key) &&
                      family(parent).level < kDeepest;
    return fits ? append(parent, key, text) : 0;
}

int TreeModel::append(int parent, const QString& key, const QString& text) {
    const int node = count() + 1;
    m_keys.insert(key, node);
    m_nodes.emplace_back();
    Node& made = m_nodes.back();
    Node& above = family(parent);
    made.key = key;
    made.text = text;
    made.parent = parent;
    made.level = above.level + 1;
    made.row = static_cast<int>(above.children.size());
    above.children.push_back(node);
    if (above.sorted)
        wantSorting(parent);
    if (!std::exchange(m_added, true))
        emit Waiting();
    return node;
}

void TreeModel::clear() {
    beginResetModel();
    m_root = {};
    m_nodes.clear();
    m_keys.clear();
    m_toSort.clear();
    m_expansions.clear();
    m_added = false;
    endResetModel();
}

void TreeModel::setText(int node, const QString& text) {
    at(node).text = text;
    changed(node, Qt::DisplayRole);
}

void TreeModel::setImage(int node, const QString& key) {
    if (at(node).image == key)
        return;
    at(node).image = key;
    changed(node, Qt::DecorationRole);
}

// Whoever takes the waiting changes in paints anew; a view looks long for the place of one node among many.
void TreeModel::changed(int node, int role) {
    const bool waiting = m_added || !m_toSort.empty() || !m_expansions.empty();
    const QModelIndex index = place(node);
    if (!waiting && index.isValid())
        emit dataChanged(index, index, {role});
}

int TreeModel::firstChild(int node) const {
    const auto& children = at(node).children;
    return children.empty() ? 0 : children.front();
}

int TreeModel::lastSibling(int node) const {
    return std::ranges::max(family(at(node).parent).children);
}

// ---- Order

void TreeModel::setSorted(int node, bool sorted) {
    at(node).sorted = sorted;
    if (sorted)
        wantSorting(node);
}

void TreeModel::wantSorting(int node) {
    Node& family = at(node);
    if (family.unsorted || family.children.size() < 2)
        return;
    family.unsorted = true;
    m_toSort.push_back(node);
    emit Waiting();
}

bool TreeModel::isInOrder(const Node& family) const {
    const auto keyOf = [this](int node) { return base::orderKey(utf8(text(node))); };
    std::string before = keyOf(family.children.front());
    for (const int child : family.children) {
        std::string key = keyOf(child);
        if (key < before)
            return false;
        before = std::move(key);
    }
    return true;
}

// The children were added in the order of their indexes, so that tells equal texts apart.
void TreeModel::arrange(Node& family) {
    std::vector<std::pair<std::string, int>> keyed;
    keyed.reserve(family.children.size());
    for (const int child : family.children)
        keyed.emplace_back(base::orderKey(utf8(text(child))), child);
    std::ranges::sort(keyed);
    for (size_t row = 0; row < keyed.size(); ++row) {
        family.children[row] = keyed[row].second;
        at(keyed[row].second).row = static_cast<int>(row);
    }
}

void TreeModel::arrangeWaiting() {
    for (const int node : std::exchange(m_toSort, {})) {
        Node& family = at(node);
        family.unsorted = false;
        if (!isInOrder(family))
            arrange(family);
    }
}

// All that waits is one change of the screen, whatever number of nodes it is.
void TreeModel::sortShown() {
    const auto disorder = [this](int node) { return !isInOrder(at(node)); };
    if (std::ranges::none_of(m_toSort, disorder))
        return arrangeWaiting();
    emit layoutAboutToBeChanged();
    arrangeWaiting();
    const QModelIndexList kept = persistentIndexList();
    QModelIndexList moved;
    moved.reserve(kept.size());
    std::ranges::transform(kept, std::back_inserter(moved),
                           [this](const QModelIndex& index) { return place(nodeAt(index)); });
    changePersistentIndexList(kept, moved);
    emit layoutChanged();
}

bool TreeModel::flush() {
    if (!m_added) {
        if (!m_toSort.empty())
            sortShown();
        return false;
    }
    beginResetModel();
    m_added = false;
    arrangeWaiting();
    m_root.shown = static_cast<int>(m_root.children.size());
    for (Node& node : m_nodes)
        node.shown = static_cast<int>(node.children.size());
    endResetModel();
    return true;
}

// ---- Expansion

void TreeModel::setExpanded(int node, bool expanded) {
    Node& changing = at(node);
    if (changing.expanded == expanded || changing.children.empty())
        return;
    changing.expanded = expanded;
    m_expansions.push_back(node);
    if (m_expansions.size() == 1)
        emit Waiting();
    expanded ? emit Expand(node) : emit Collapse(node);
}

void TreeModel::noteExpanded(int node, bool expanded) {
    if (at(node).children.empty())
        return;
    if (std::exchange(at(node).expanded, expanded) != expanded)
        expanded ? emit Expand(node) : emit Collapse(node);
}

std::vector<int> TreeModel::takeExpansionChanges() {
    return std::exchange(m_expansions, {});
}

std::vector<int> TreeModel::expandedNodes() const {
    std::vector<int> nodes;
    for (int node = 1; node <= count(); ++node)
        if (isExpanded(node))
            nodes.push_back(node);
    return nodes;
}

int TreeModel::firstInSight() const {
    return m_root.children.empty() ? 0 : m_root.children.front();
}

int TreeModel::lastInSight() const {
    int node = 0;
    while ((node == 0 || isExpanded(node)) && !family(node).children.empty())
        node = family(node).children.back();
    return node;
}

int TreeModel::nextInSight(int node) const {
    if (isExpanded(node) && childCount(node) > 0)
        return firstChild(node);
    for (int each = node; each != 0; each = parentOf(each)) {
        const auto& siblings = family(parentOf(each)).children;
        const auto next = static_cast<size_t>(at(each).row) + 1;
        if (next < siblings.size())
            return siblings[next];
    }
    return 0;
}

// ---- What the view reads

QModelIndex TreeModel::place(int node) const {
    const Node& found = at(node);
    const bool waits = found.row >= family(found.parent).shown;
    return waits ? QModelIndex() : createIndex(found.row, 0, static_cast<quintptr>(node));
}

int TreeModel::nodeAt(const QModelIndex& index) const {
    return index.isValid() ? static_cast<int>(index.internalId()) : 0;
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
    const Node& above = family(nodeAt(parent));
    if (column != 0 || row < 0 || row >= above.shown)
        return {};
    return createIndex(row, 0, static_cast<quintptr>(above.children[static_cast<size_t>(row)]));
}

QModelIndex TreeModel::parent(const QModelIndex& index) const {
    const int node = nodeAt(index);
    const int above = node == 0 ? 0 : parentOf(node);
    return above == 0 ? QModelIndex() : createIndex(at(above).row, 0, static_cast<quintptr>(above));
}

int TreeModel::rowCount(const QModelIndex& parent) const {
    return family(nodeAt(parent)).shown;
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
    const int node = nodeAt(index);
    if (node == 0)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return oneLine(text(node));
    case Qt::ToolTipRole:
        return tipText(text(node));
    case Qt::DecorationRole:
        return m_pictures && !image(node).isEmpty() ? m_pictures(image(node)) : QVariant();
    default:
        return {};
    }
}

Qt::ItemFlags TreeModel::flags(const QModelIndex& index) const {
    const int node = nodeAt(index);
    const bool leaf = node != 0 && at(node).children.empty();
    return QAbstractItemModel::flags(index) | (leaf ? Qt::ItemNeverHasChildren : Qt::NoItemFlags);
}

} // namespace discaro::kit
