#pragma once

#include <QtWidgets/QStyledItemDelegate>

namespace discaro::kit {

// Shows the cells of lists and trees. A tool tip comes only where the cell does not show its whole text.
class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit CellDelegate(QObject* parent = nullptr);

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
    // Never larger than the room that a view of icons gives each; below a large icon all of it.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace discaro::kit
