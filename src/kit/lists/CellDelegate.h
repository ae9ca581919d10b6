#pragma once

#include <QtWidgets/QStyledItemDelegate>

namespace discaro::kit {

// Shows the cells of lists and trees. A tool tip comes only where the cell does not show its whole text.
//
// In a list of icons a cell has the room that its name needs, as far as the view is that wide: beside a small picture
// in steps of a column's width, so that columns stand below each other; in a list view as it is, since the column there
// is as wide as its longest name. Below a large picture all have the same room, and a name breaks into two lines
// wherever it has to.
class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit CellDelegate(QObject* parent = nullptr);

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    bool showsAll(const QStyleOptionViewItem& option, const QModelIndex& index, const QRect& cell,
                  const QRect& seen) const;
};

// The colours of a view's rows: without the focus its selection is pale, so that the one that has it stands out. For
// the view's initViewItemOption. As the view's own palette they would make the style keep pictures for each view by
// itself.
const QPalette& paleWithoutFocus(const QPalette& colours);

// Where on the screen the menu key opens a view's menu: below the current cell, as far as that is in sight.
QPoint menuPlace(const QAbstractItemView& view);

} // namespace discaro::kit
