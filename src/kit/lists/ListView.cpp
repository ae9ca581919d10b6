#include "kit/lists/ListView.h"

#include "base/RuntimeError.h"
#include "kit/common/Keys.h"
#include "kit/common/WindowScale.h"
#include "kit/lists/CellDelegate.h"

#include <QtCore/QScopedValueRollback>
#include <QtCore/QTimer>
#include <QtGui/QClipboard>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QStyleOption>

#include <algorithm>
#include <utility>

namespace discaro::kit {

namespace {

constexpr int kLargeIcon = 32;
constexpr int kSmallIcon = 16;

// Room of a large icon with its text, in lines of the font.
constexpr int kLargeWidth = 7;
constexpr int kLargeLines = 2;

// So many icons are laid out before the list is painted, and as many at a time behind that.
constexpr int kBatch = 1000;

} // namespace

// What the views inside tell the list, after they have answered an event themselves.
class ListViewEvents {
public:
    static void pressed(ListView& list, const QMouseEvent& event) { list.pressed(event); }
    static void released(ListView& list, const QMouseEvent& event) { list.released(event); }
    static void doubleClicked(ListView& list, const QMouseEvent& event) { list.doubleClicked(event); }
    static bool keyActs(ListView& list, const QKeyEvent& event) { return list.keyActs(event); }
    static int keyBegins(ListView& list) { return list.keyBegins(); }
    static void keyDone(ListView& list, int itemBefore) { list.keyDone(itemBefore); }
    static void menuKey(ListView& list) { list.menuKey(); }
    static void search(ListView& list, const QString& keys) { list.search(keys); }
    static void painted(ListView& list) { list.paintEmpty(); }
    static void resized(ListView& list, const QAbstractItemView& view) {
        if (&view == list.m_report)
            list.fillUp();
    }
};

namespace {

using Events = ListViewEvents;

template <typename View>
class InnerView : public View {
public:
    explicit InnerView(ListView& list)
        : View(&list)
        , m_list(list) {}

    void keyboardSearch(const QString& keys) override { Events::search(m_list, keys); }

protected:
    void mousePressEvent(QMouseEvent* event) override {
        View::mousePressEvent(event);
        Events::pressed(m_list, *event);
    }
    // Where one row is selected it is the row that was clicked: dragging the mouse on does not take the selection
    // along.
    void mouseMoveEvent(QMouseEvent* event) override {
        if (event->buttons() == Qt::NoButton || !selectsOne())
            View::mouseMoveEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        View::mouseReleaseEvent(event);
        Events::released(m_list, *event);
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override {
        View::mouseDoubleClickEvent(event);
        Events::doubleClicked(m_list, *event);
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (Events::keyActs(m_list, *event))
            return;
        const int before = Events::keyBegins(m_list);
        View::keyPressEvent(event);
        Events::keyDone(m_list, before);
    }
    void contextMenuEvent(QContextMenuEvent* event) override {
        if (event->reason() == QContextMenuEvent::Keyboard)
            Events::menuKey(m_list);
    }
    // First the columns: the view would show a scroll bar for those that are too wide now.
    void resizeEvent(QResizeEvent* event) override {
        Events::resized(m_list, *this);
        View::resizeEvent(event);
    }
    void paintEvent(QPaintEvent* event) override {
        View::paintEvent(event);
        Events::painted(m_list);
    }
    void initViewItemOption(QStyleOptionViewItem* option) const override {
        View::initViewItemOption(option);
        option->palette = paleWithoutFocus(option->palette);
    }
    // Nor does releasing it elsewhere, and Ctrl does not take the selection away.
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override {
        if (selectsOne() && event != nullptr && event->type() == QEvent::MouseButtonRelease)
            return QItemSelectionModel::NoUpdate;
        const auto command = View::selectionCommand(index, event);
        if (selectsOne() && command & QItemSelectionModel::Deselect)
            return QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
        return command;
    }

private:
    bool selectsOne() const { return this->selectionMode() == QAbstractItemView::SingleSelection; }

    ListView& m_list;
};

// The mark of the order points up where the order ascends, as the pictures of the order do; the toolkit's points down.
class Headers : public QHeaderView {
public:
    explicit Headers(QWidget* parent)
        : QHeaderView(Qt::Horizontal, parent) {
        setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    }

protected:
    void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override {
        QHeaderView::initStyleOptionForIndex(option, section);
        if (option->sortIndicator == QStyleOptionHeader::SortDown)
            option->sortIndicator = QStyleOptionHeader::SortUp;
        else if (option->sortIndicator == QStyleOptionHeader::SortUp)
            option->sortIndicator = QStyleOptionHeader::SortDown;
    }
};

// Icons that have not been laid out yet have no place to scroll to.
void layDownTo(QListView& icons, int place) {
    icons.setLayoutMode(place < kBatch ? QListView::Batched : QListView::SinglePass);
    icons.doItemsLayout();
    icons.setLayoutMode(QListView::Batched);
}

} // namespace

ListView::ListView(QWidget* parent)
    : QStackedWidget(parent)
    , m_selection(&m_model)
    , m_report(new InnerView<QTreeView>(*this))
    , m_icons(new InnerView<QListView>(*this)) {
    setFocusPolicy(Qt::StrongFocus);
    m_report->setRootIsDecorated(false);
    m_report->setUniformRowHeights(true);
    m_report->setAllColumnsShowFocus(true);
    m_report->setHeader(new Headers(m_report));
    m_report->header()->setSectionsClickable(true);
    m_report->header()->setSectionsMovable(false);
    m_report->header()->setStretchLastSection(false);
    m_report->header()->setHighlightSections(false);
    // The header turns its mark at a click; whether that turns the order is up to the window.
    connect(m_report->header(), &QHeaderView::sectionClicked, this, [this](int section) {
        emit ColumnClick(m_model.columnOf(section));
        markOrder();
    });
    connect(m_report->header(), &QHeaderView::sectionResized, this,
            [this] { m_widthsChosen = m_widthsChosen || !m_laysColumns; });
    connect(&m_model, &ListModel::OrderChanged, this, &ListView::markOrder);
    m_icons->setBatchSize(kBatch);
    m_icons->setLayoutMode(QListView::Batched);
    prepare(*m_report);
    prepare(*m_icons);
    connect(&m_selection, &QItemSelectionModel::selectionChanged, this, [this] { m_selectionMoved = true; });
    attach(*m_report);
    setCurrentWidget(m_report);
    setFocusProxy(m_report);
    layIcons();
}

// The views go before the model that they show.
ListView::~ListView() {
    delete m_report;
    delete m_icons;
}

void ListView::prepare(QAbstractItemView& view) {
    addWidget(&view);
    view.setItemDelegate(new CellDelegate(&view));
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setSelectionMode(QAbstractItemView::SingleSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setTabKeyNavigation(false);
    view.setFrameShape(QFrame::StyledPanel);
}

QAbstractItemView& ListView::shown() const {
    return m_view == View::Report ? static_cast<QAbstractItemView&>(*m_report) : *m_icons;
}

// Only the view that is seen has the rows: the other one would lay them out, too.
void ListView::attach(QAbstractItemView& view) {
    const QScopedValueRollback laying(m_laysColumns, true);
    const QItemSelectionModel* empty = view.selectionModel();
    view.setModel(&m_model);
    const QItemSelectionModel* own = view.selectionModel();
    view.setSelectionModel(&m_selection);
    delete empty;
    delete own;
    if (&view != m_report)
        return;
    layColumns();
    if (!m_header.isEmpty())
        m_report->header()->restoreState(m_header);
    fillUp();
    markOrder();
}

// The header forgets its columns with the model, and with them what the user has made of them.
void ListView::detach(QAbstractItemView& view) {
    const QScopedValueRollback laying(m_laysColumns, true);
    if (&view == m_report)
        m_header = m_report->header()->saveState();
    view.setModel(nullptr);
}

void ListView::setColumns(std::vector<ListColumn> columns) {
    const QScopedValueRollback laying(m_laysColumns, true);
    m_model.setColumns(std::move(columns));
    forgetWidths();
}

void ListView::forgetWidths() {
    m_header.clear();
    m_widthsChosen = false;
    layColumns();
    fillUp();
}

void ListView::layColumns() {
    const QScopedValueRollback laying(m_laysColumns, true);
    int section = 0;
    for (const ListColumn& column : m_model.columns())
        if (column.width > 0)
            m_report->setColumnWidth(section++, scaledLength(column.width));
}

void ListView::fillUp() {
    QHeaderView& header = *m_report->header();
    if (!m_firstFills || m_widthsChosen || header.count() == 0)
        return;
    const QScopedValueRollback laying(m_laysColumns, true);
    const int others = header.length() - header.sectionSize(0);
    const int own = scaledLength(m_model.columns().front().width);
    header.resizeSection(0, std::max(own, m_report->viewport()->width() - others));
}

void ListView::markOrder() {
    QHeaderView& header = *m_report->header();
    header.setSortIndicator(m_model.sectionOf(m_model.sortKey()), m_model.sortOrder());
    header.setSortIndicatorShown(m_model.isSorted());
}

void ListView::layIcons() {
    const bool large = m_view == View::LargeIcons;
    const int icon = scaledLength(large ? kLargeIcon : kSmallIcon);
    const int small = scaledLength(kSmallIcon);
    m_report->setIconSize(QSize(small, small));
    m_icons->setIconSize(QSize(icon, icon));
    const int line = QFontMetrics(font()).height();
    const QSize room(line * kLargeWidth, icon + (kLargeLines + 1) * line);
    m_icons->setGridSize(large ? room : QSize());
    m_icons->setUniformItemSizes(large);
}

// Nobody can widen a column then, so the last one takes what room there is.
void ListView::hideHeaders() {
    m_report->setHeaderHidden(true);
    fillWithLastColumn();
}

void ListView::fillWithLastColumn() {
    m_report->header()->setStretchLastSection(true);
}

void ListView::fillWithFirstColumn() {
    m_firstFills = true;
    fillUp();
}

void ListView::setMultiSelect() {
    m_report->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_icons->setSelectionMode(QAbstractItemView::ExtendedSelection);
}

void ListView::setView(View view) {
    if (view == m_view)
        return;
    const bool focused = shown().hasFocus();
    const bool wasReport = std::exchange(m_view, view) == View::Report;
    const bool large = view == View::LargeIcons;
    m_icons->setViewMode(large ? QListView::IconMode : QListView::ListMode);
    m_icons->setFlow(view == View::List ? QListView::TopToBottom : QListView::LeftToRight);
    m_icons->setWrapping(true);
    m_icons->setResizeMode(QListView::Adjust);
    m_icons->setMovement(QListView::Static);
    layIcons();
    if (wasReport != (view == View::Report)) {
        detach(wasReport ? static_cast<QAbstractItemView&>(*m_report) : *m_icons);
        m_model.showColumns(!wasReport);
        m_selection.select(m_selection.selection(), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        attach(shown());
    }
    setCurrentWidget(&shown());
    setFocusProxy(&shown());
    nameViews();
    if (focused)
        shown().setFocus();
    if (view != View::Report)
        layDownTo(*m_icons, m_selection.currentIndex().row());
    shown().scrollTo(m_selection.currentIndex());
}

void ListView::add(ListItem item) {
    m_model.add(std::move(item));
    if (!std::exchange(m_flushWanted, true))
        QTimer::singleShot(0, this, [this] { takeIn(); });
}

void ListView::clear() {
    m_model.clear();
}

ListModel& ListView::rows() {
    takeIn();
    return m_model;
}

void ListView::takeIn() {
    m_flushWanted = false;
    m_model.flush();
    const QItemSelectionModel::SelectionFlags look =
        m_firstSelected ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                        : QItemSelectionModel::NoUpdate;
    if (!m_selection.currentIndex().isValid() && m_model.count() > 0)
        m_selection.setCurrentIndex(m_model.index(0, 0), look);
}

int ListView::selectedItem() {
    takeIn();
    return m_selection.currentIndex().row();
}

const ListItem& ListView::selectedRow() {
    const int place = selectedItem();
    if (place < 0)
        throw base::RuntimeError(base::ErrorNumber::InvalidValue, "the list has no row");
    return m_model.item(place);
}

bool ListView::isSelected(int place) {
    takeIn();
    return m_selection.isRowSelected(place, {});
}

std::vector<int> ListView::selectedPlaces() {
    takeIn();
    std::vector<int> places;
    for (const QItemSelectionRange& range : m_selection.selection())
        for (int place = range.top(); place <= range.bottom(); ++place)
            places.push_back(place);
    std::ranges::sort(places);
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

void ListView::select(int place) {
    const QModelIndex index = rows().index(place, 0);
    if (index.isValid())
        m_selection.setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void ListView::ensureVisible(int place) {
    const QModelIndex index = rows().index(place, 0);
    if (m_view != View::Report && place >= kBatch)
        layDownTo(*m_icons, place);
    shown().scrollTo(index);
}

void ListView::pressed(const QMouseEvent& event) {
    m_doubleClicked = false;
    const QModelIndex index = shown().indexAt(event.position().toPoint());
    if (index.isValid())
        emit ItemClick(index.row());
    if (event.button() == Qt::RightButton)
        emit MenuWanted(event.globalPosition().toPoint());
}

// A click is told when the button goes up: by then the selection stands.
void ListView::released(const QMouseEvent& event) {
    if (event.button() == Qt::LeftButton && !std::exchange(m_doubleClicked, false))
        emit Click();
}

void ListView::doubleClicked(const QMouseEvent& event) {
    if (event.button() != Qt::LeftButton)
        return;
    m_doubleClicked = true;
    if (shown().indexAt(event.position().toPoint()).isValid())
        emit DblClick();
    else
        emit DblClickBeside();
}

bool ListView::keyActs(const QKeyEvent& event) {
    if (event.matches(QKeySequence::Copy)) {
        copy();
        return true;
    }
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return false;
    if (isEnter(event) && selectedItem() >= 0)
        emit DblClick();
    if (event.key() == Qt::Key_Backspace)
        emit Backspace();
    return isEnter(event) || event.key() == Qt::Key_Backspace;
}

void ListView::copy() {
    QStringList texts;
    for (const int place : selectedPlaces()) {
        const ListItem& row = m_model.item(place);
        texts << (m_copied ? m_copied(row) : row.text);
    }
    if (const QString all = texts.join(u'\n'); !all.isEmpty())
        QApplication::clipboard()->setText(all);
}

void ListView::setEmptyText(const QString& text) {
    m_emptyText = text;
    setAccessibleDescription(text);
    nameViews();
    shown().viewport()->update();
}

void ListView::paintEmpty() {
    if (m_emptyText.isEmpty() || m_model.count() > 0)
        return;
    QWidget& ground = *shown().viewport();
    QPainter painter(&ground);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const int line = painter.fontMetrics().height();
    QRect place;
    painter.drawText(ground.rect().adjusted(line, line, -line, -line),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_emptyText, &place);
    if (!shown().hasFocus())
        return;
    QStyleOptionFocusRect mark;
    mark.initFrom(&ground);
    mark.rect = place.adjusted(-line / 2, -line / 4, line / 2, line / 4);
    mark.state |= QStyle::State_KeyboardFocusChange;
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &mark, &painter, &ground);
}

// Rows that are taken in only now may select the first one; no key did that.
int ListView::keyBegins() {
    const int item = selectedItem();
    m_selectionMoved = false;
    return item;
}

void ListView::keyDone(int itemBefore) {
    const int item = selectedItem();
    if (item >= 0 && item != itemBefore)
        emit ItemClick(item);
    if (m_selectionMoved && item >= 0)
        emit Click();
}

void ListView::menuKey() {
    emit MenuWanted(menuPlace(shown()));
}

void ListView::search(const QString& keys) {
    const auto [beginning, fromNext] = m_typeAhead.typed(keys);
    const int count = rows().count();
    const int start = std::max(selectedItem(), 0) + (fromNext ? 1 : 0);
    for (int step = 0; step < count; ++step) {
        const int place = (start + step) % count;
        if (!TypeAhead::fits(m_model.item(place).text, beginning))
            continue;
        select(place);
        ensureVisible(place);
        return;
    }
}

void ListView::nameViews() {
    shown().setAccessibleName(accessibleName());
    shown().setAccessibleDescription(accessibleDescription());
}

void ListView::showEvent(QShowEvent* event) {
    nameViews();
    QStackedWidget::showEvent(event);
}

void ListView::changeEvent(QEvent* event) {
    QStackedWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        layIcons();
        forgetWidths();
    }
}

} // namespace discaro::kit
