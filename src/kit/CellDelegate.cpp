#include "kit/CellDelegate.h"

#include <QtGui/QHelpEvent>
#include <QtWidgets/QListView>
#include <QtWidgets/QToolTip>

namespace discaro::kit {

CellDelegate::CellDelegate(QObject* parent)
    : QStyledItemDelegate(parent) {}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                             const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const QRect seen = view->visualRect(index).intersected(view->viewport()->rect());
    const bool whole = QStyledItemDelegate::sizeHint(option, index).width() <= seen.width();
    const bool oneLine = !index.data(Qt::ToolTipRole).toString().contains(u'\n');
    if (!whole || !oneLine)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QToolTip::hideText();
    return true;
}

QSize CellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QSize wanted = QStyledItemDelegate::sizeHint(option, index);
    const auto* icons = qobject_cast<const QListView*>(option.widget);
    if (!icons || !icons->gridSize().isValid())
        return wanted;
    // All have one size, so that below a large picture there is room for the lines of a long name.
    const QSize gap(option.fontMetrics.height() / 2, option.fontMetrics.height() * 2 / 3);
    const bool large = icons->viewMode() == QListView::IconMode;
    return large ? icons->gridSize() - gap : wanted.boundedTo(icons->gridSize());
}

// Below a large picture a text stands in the middle, whatever the side of its column.
void CellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->decorationPosition == QStyleOptionViewItem::Top)
        option->displayAlignment = Qt::AlignHCenter | Qt::AlignTop;
}

} // namespace discaro::kit
