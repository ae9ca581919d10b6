#include "kit/CellDelegate.h"

#include <QtGui/QHelpEvent>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QToolTip>

namespace discaro::kit {

CellDelegate::CellDelegate(QObject* parent)
    : QStyledItemDelegate(parent) {}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                             const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const QRect seen = view->visualRect(index).intersected(view->viewport()->rect());
    const bool whole = sizeHint(option, index).width() <= seen.width();
    const bool oneLine = !index.data(Qt::ToolTipRole).toString().contains(u'\n');
    if (!whole || !oneLine)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QToolTip::hideText();
    return true;
}

} // namespace discaro::kit
