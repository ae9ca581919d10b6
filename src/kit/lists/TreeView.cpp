#include "kit/lists/TreeView.h"

#include "kit/common/Keys.h"
#include "kit/common/Pace.h"
#include "kit/common/WindowScale.h"
#include "kit/lists/CellDelegate.h"

#include <QtCore/QScopedValueRollback>
#include <QtGui/QClipboard>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QScrollBar>

#include <algorithm>

namespace discaro::kit {

namespace {

constexpr int kIcon = 16;
constexpr int kIndentation = 16;

// So many expansions are shown one after the other; more are laid out together.
constexpr size_t kFewExpansions = 4;

// How many rows around those in sight tell how wide the tree is.
constexpr int kWidthPrecision = 200;

} // namespace

TreeView::TreeView(QWidget* parent)
    : QTreeView(parent) {
    setModel(&m_nodes);
    setItemDelegate(new CellDelegate(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setExpandsOnDoubleClick(false);
    setTabKeyNavigation(false);
    header()->setStretchLastSection(false);
    header()->setResizeContentsPrecision(kWidthPrecision);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    layIcons();
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &TreeView::flush);
    connect(&m_nodes, &TreeModel::Waiting, this, &TreeView::later);
    connect(&m_nodes, &TreeModel::Expand, this, &TreeView::Expand);
    connect(&m_nodes, &TreeModel::Collapse, this, &TreeView::Collapse);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) { noteExpanded(index, true); });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) { noteExpanded(index, false); });
}

// The view forgets the model before that goes.
TreeView::~TreeView() {
    m_quiet = true;
    setModel(nullptr);
}

// ---- Bringing changes before the user

void TreeView::later() {
    if (m_later.isActive())
        return;
    const int64_t since = m_flushed.isValid() ? m_flushed.elapsed() : Pace::kMilliseconds;
    m_later.start(static_cast<int>(std::max<int64_t>(0, Pace::kMilliseconds - since)));
}

void TreeView::flush() {
    m_later.stop();
    const int current = selectedNode();
    const int scrolled = verticalScrollBar()->value();
    const bool anew = m_nodes.flush();
    const auto changes = m_nodes.takeExpansionChanges();
    applyExpansions(anew ? m_nodes.expandedNodes() : changes);
    if (anew && current != 0) {
        setCurrent(current);
        executeDelayedItemsLayout();
        verticalScrollBar()->setValue(scrolled);
    }
    viewport()->update();
    m_flushed.start();
}

void TreeView::applyExpansions(const std::vector<int>& nodes) {
    const QScopedValueRollback quiet(m_quiet, true);
    // While a layout is due the expansions are only noted, each at the same small cost.
    if (nodes.size() > kFewExpansions)
        scheduleDelayedItemsLayout();
    for (const int node : nodes)
        QTreeView::setExpanded(m_nodes.place(node), m_nodes.isExpanded(node));
}

void TreeView::noteExpanded(const QModelIndex& index, bool expanded) {
    if (!m_quiet)
        m_nodes.noteExpanded(m_nodes.nodeAt(index), expanded);
}

// ---- Selection

int TreeView::selectedNode() const {
    return m_nodes.nodeAt(currentIndex());
}

void TreeView::setCurrent(int node) {
    const QScopedValueRollback quiet(m_quiet, true);
    setCurrentIndex(m_nodes.place(node));
}

// Opens all nodes above it.
void TreeView::uncover(int node) {
    for (int above = m_nodes.parentOf(node); above != 0; above = m_nodes.parentOf(above))
        m_nodes.setExpanded(above, true);
    flush();
}

void TreeView::selectNode(int node) {
    uncover(node);
    setCurrent(node);
}

void TreeView::ensureVisible(int node) {
    uncover(node);
    const QScopedValueRollback quiet(m_quiet, true);
    scrollTo(m_nodes.place(node));
}

// The base class would go to the left edge, where a node far down has nothing but its indentation.
void TreeView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    QScrollBar& bar = *horizontalScrollBar();
    const int before = bar.value();
    QTreeView::scrollTo(index, hint);
    if (!index.isValid())
        return;
    resizeColumnToContents(0);
    updateGeometries();
    bar.setValue(before);
    const int mark = indentation();
    const int left = visualRect(index).left() + bar.value() - mark;
    const int right = left + mark + sizeHintForIndex(index).width();
    const int room = viewport()->width();
    bar.setValue(right <= room ? 0 : std::min(left, std::max(bar.value(), right - room)));
}

// The base class leaves the last row of a long tree out.
int TreeView::sizeHintForColumn(int column) const {
    const int width = QTreeView::sizeHintForColumn(column);
    const int last = m_nodes.lastInSight();
    const QModelIndex place = last == 0 ? QModelIndex() : m_nodes.place(last);
    if (!place.isValid())
        return width;
    const int left = (m_nodes.levelOf(last) + 1) * indentation();
    return std::max(width, left + sizeHintForIndex(place).width());
}

void TreeView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    if (!m_quiet && !m_answering && current.isValid())
        emit NodeClick(m_nodes.nodeAt(current));
}

// ---- What the user does

void TreeView::mousePressEvent(QMouseEvent* event) {
    {
        const QScopedValueRollback answering(m_answering, true);
        QTreeView::mousePressEvent(event);
    }
    const QPoint position = event->position().toPoint();
    const QModelIndex pressed = indexAt(position);
    // Beside the node stands the mark that expands it.
    if (pressed.isValid() && pressed == currentIndex() && visualRect(pressed).contains(position))
        emit NodeClick(m_nodes.nodeAt(pressed));
    if (event->button() == Qt::RightButton)
        emit MenuWanted(event->globalPosition().toPoint());
}

// Dragging goes through no nodes.
void TreeView::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton)
        QTreeView::mouseMoveEvent(event);
}

void TreeView::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    const bool onNode = index.isValid() && visualRect(index).contains(position);
    if (event->button() != Qt::LeftButton || !onNode)
        return QTreeView::mouseDoubleClickEvent(event);
    const int node = m_nodes.nodeAt(index);
    m_nodes.setExpanded(node, !m_nodes.isExpanded(node));
    emit DblClick();
}

void TreeView::clickParent() {
    const int node = selectedNode();
    const int above = node == 0 ? 0 : m_nodes.parentOf(node);
    if (above == 0)
        return;
    selectNode(above);
    emit NodeClick(above);
}

bool TreeView::keyActs(const QKeyEvent& event) {
    if (selectedNode() == 0)
        return false;
    if (event.matches(QKeySequence::Copy))
        QApplication::clipboard()->setText(m_nodes.text(selectedNode()));
    else if (isEnter(event))
        emit DblClick();
    else if (event.key() == Qt::Key_Backspace && event.modifiers() == Qt::NoModifier)
        clickParent();
    else
        return false;
    return true;
}

void TreeView::keyPressEvent(QKeyEvent* event) {
    if (keyActs(*event))
        return;
    const int before = selectedNode();
    const int scrolled = horizontalScrollBar()->value();
    {
        const QScopedValueRollback answering(m_answering, true);
        QTreeView::keyPressEvent(event);
    }
    const int node = selectedNode();
    // The base class scrolls the node out of sight where an arrow leads nowhere.
    if (node == before)
        horizontalScrollBar()->setValue(scrolled);
    if (node != 0 && node != before)
        emit NodeClick(node);
}

void TreeView::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() != QContextMenuEvent::Keyboard)
        return;
    emit MenuWanted(menuPlace(*this));
}

void TreeView::keyboardSearch(const QString& keys) {
    const auto [beginning, fromNext] = m_typeAhead.typed(keys);
    const int current = selectedNode();
    int node = current != 0 ? current : m_nodes.firstInSight();
    if (fromNext && current != 0)
        node = m_nodes.nextInSight(node);
    for (int step = 0; step < m_nodes.count(); ++step) {
        if (node == 0)
            node = m_nodes.firstInSight();
        if (TypeAhead::fits(m_nodes.text(node), beginning)) {
            flush();
            setCurrentIndex(m_nodes.place(node));
            return;
        }
        node = m_nodes.nextInSight(node);
    }
}

// The view takes its first node for the current one when the keyboard comes to it, if it has been painted by then. That
// is nobody's choice; a key that moves chooses it.
void TreeView::focusInEvent(QFocusEvent* event) {
    const int before = selectedNode();
    const QScopedValueRollback quiet(m_quiet, true);
    QTreeView::focusInEvent(event);
    if (before == 0)
        setCurrentIndex({});
}

void TreeView::layIcons() {
    const int icon = scaledLength(kIcon);
    setIconSize(QSize(icon, icon));
    setIndentation(scaledLength(kIndentation));
}

void TreeView::initViewItemOption(QStyleOptionViewItem* option) const {
    QTreeView::initViewItemOption(option);
    option->palette = paleWithoutFocus(option->palette);
}

void TreeView::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        layIcons();
}

// Beside short texts a row reaches to the right edge all the same.
void TreeView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    header()->setMinimumSectionSize(viewport()->width());
}

} // namespace discaro::kit
