#include "kit/ListView.h"

#include <QtCore/QTimer>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QHeaderView>

#include "kit/Form.h"

namespace discaro::kit {

namespace {

constexpr int kLargeIcon = 32;
constexpr int kSmallIcon = 16;

} // namespace

ListView::ListView(QWidget* parent)
    : QStackedWidget(parent), m_report(new QTreeView(this)), m_icons(new QListView(this)), m_selection(&m_model) {
    m_report->setRootIsDecorated(false);
    m_report->setUniformRowHeights(true);
    m_report->setAllColumnsShowFocus(true);
    m_report->header()->setSectionsClickable(true);
    m_report->header()->setStretchLastSection(false);
    m_report->header()->setHighlightSections(false);
    connect(m_report->header(), &QHeaderView::sectionClicked, this, &ListView::ColumnClick);
    m_icons->setUniformItemSizes(true);
    m_icons->setResizeMode(QListView::Adjust);
    m_icons->setMovement(QListView::Static);
    m_icons->setLayoutMode(QListView::Batched);
    prepare(*m_report);
    prepare(*m_icons);
    connect(&m_selection, &QItemSelectionModel::currentChanged, this, &ListView::currentChanged);
    setView(View::Report);
}

void ListView::prepare(QAbstractItemView& view) {
    addWidget(&view);
    view.setModel(&m_model);
    delete view.selectionModel();
    view.setSelectionModel(&m_selection);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setSelectionMode(QAbstractItemView::SingleSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setContextMenuPolicy(Qt::NoContextMenu);
    view.setTabKeyNavigation(false);
    view.installEventFilter(this);
    view.viewport()->installEventFilter(this);
    connect(&view, &QAbstractItemView::activated, this, &ListView::DblClick);
}

QAbstractItemView& ListView::shown() const {
    return m_view == View::Report ? static_cast<QAbstractItemView&>(*m_report) : *m_icons;
}

void ListView::setColumns(std::vector<ListColumn> columns) {
    m_model.setColumns(std::move(columns));
    layColumns();
}

void ListView::layColumns() {
    const auto* form = qobject_cast<Form*>(window());
    const double scale = form != nullptr ? form->scale() : 1.0;
    int number = 0;
    for (const ListColumn& column : m_model.columns()) {
        m_report->setColumnHidden(number, column.width == 0);
        m_report->setColumnWidth(number++, static_cast<int>(column.width * scale));
    }
}

void ListView::hideHeaders() {
    m_report->setHeaderHidden(true);
}

void ListView::setMultiSelect() {
    m_report->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_icons->setSelectionMode(QAbstractItemView::ExtendedSelection);
}

void ListView::setView(View view) {
    m_view = view;
    const bool large = view == View::LargeIcons;
    m_icons->setViewMode(large ? QListView::IconMode : QListView::ListMode);
    m_icons->setFlow(view == View::List ? QListView::TopToBottom : QListView::LeftToRight);
    m_icons->setWrapping(true);
    m_icons->setWordWrap(large);
    m_icons->setIconSize(large ? QSize(kLargeIcon, kLargeIcon) : QSize(kSmallIcon, kSmallIcon));
    m_icons->setMovement(QListView::Static);
    const QFontMetrics metrics(font());
    const int line = metrics.height();
    m_icons->setGridSize(large ? QSize(line * 6, kLargeIcon + 3 * line) : QSize(line * 11, line + 8));
    setCurrentWidget(&shown());
    setFocusProxy(&shown());
}

void ListView::add(ListItem item) {
    m_model.add(std::move(item));
    if (std::exchange(m_flushWanted, true))
        return;
    QTimer::singleShot(0, this, [this] { rows(); });
}

void ListView::clear() {
    m_model.clear();
}

ListModel& ListView::rows() {
    m_flushWanted = false;
    m_model.flush();
    return m_model;
}

int ListView::selectedItem() const {
    const QModelIndex current = m_selection.currentIndex();
    return current.isValid() ? current.row() : -1;
}

bool ListView::isSelected(int place) const {
    return m_selection.isRowSelected(place, {});
}

void ListView::select(int place) {
    m_selection.setCurrentIndex(rows().index(place, 0),
                                QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void ListView::ensureVisible(int place) {
    shown().scrollTo(rows().index(place, 0));
}

void ListView::currentChanged(const QModelIndex& current) {
    if (current.isValid())
        emit ItemClick(current.row());
}

// A click is told when the button goes up, wherever in the list it was, so that the selection stands by then.
bool ListView::eventFilter(QObject* watched, QEvent* event) {
    const bool handled = QStackedWidget::eventFilter(watched, event);
    if (event->type() == QEvent::MouseButtonRelease && watched == shown().viewport() &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
        QTimer::singleShot(0, this, &ListView::Click);
    if (event->type() == QEvent::ContextMenu && watched != &shown())
        emit MenuWanted(static_cast<QContextMenuEvent*>(event)->globalPos());
    return handled;
}

} // namespace discaro::kit
