#pragma once

#include "kit/ListModel.h"

#include <QtWidgets/QListView>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTreeView>

namespace discaro::kit {

// A list of rows with pictures, shown as large icons, small icons, a list, or a report with columns.
class ListView : public QStackedWidget {
    Q_OBJECT
public:
    enum class View { LargeIcons = 0, SmallIcons = 1, List = 2, Report = 3 };

    explicit ListView(QWidget* parent = nullptr);

    void setColumns(std::vector<ListColumn> columns);
    void setPictures(ListModel::Pictures pictures) { m_model.setPictures(std::move(pictures)); }
    void hideHeaders();
    // Ctrl and Shift choose several rows.
    void setMultiSelect();

    View view() const { return m_view; }
    void setView(View view);

    // Adding many rows is one change of the screen, at the next return to the event loop or look at the rows.
    void add(ListItem item);
    void clear();
    ListModel& rows();

    // Place of the current row, -1 when there is none.
    int selectedItem() const;
    bool isSelected(int place) const;
    void select(int place); // and no other row
    void ensureVisible(int place);

signals:
    void Click();
    void DblClick();
    void ItemClick(int place);      // a row became the current one, by mouse, keyboard or program
    void ColumnClick(int column);   // from 0
    void MenuWanted(QPoint global); // right button or menu key

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAbstractItemView& shown() const;
    void prepare(QAbstractItemView& view);
    void currentChanged(const QModelIndex& current);
    void layColumns();

    ListModel m_model;
    QTreeView* m_report;
    QListView* m_icons;
    QItemSelectionModel m_selection;
    View m_view = View::Report;
    bool m_flushWanted = false;
};

} // namespace discaro::kit
