#pragma once

#include "kit/lists/ListModel.h"
#include "kit/lists/TypeAhead.h"

#include <QtWidgets/QListView>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTreeView>

#include <functional>

namespace discaro::kit {

// A list of rows with pictures, shown as large icons, small icons, a list, or a report with columns.
//
// One row is the selected item: the one that the keyboard is on. It need not be among the rows that are selected, that
// is, highlighted. A list that has just been filled has its first row for it, and no row selected unless the window
// wants it to look selected.
//
// A mark in a header shows the order that the rows are in, once they are sorted.
//
// Keys: arrows, typing a beginning, Enter as a double click, Backspace, the menu key; Ctrl+C copies the rows selected.
class ListView : public QStackedWidget {
    Q_OBJECT
public:
    enum class View { LargeIcons = 0, SmallIcons = 1, List = 2, Report = 3 };

    explicit ListView(QWidget* parent = nullptr);
    ~ListView() override;

    void setColumns(std::vector<ListColumn> columns);
    void setPictures(ListModel::Pictures pictures) { m_model.setPictures(std::move(pictures)); }
    // The last column then fills what the others leave.
    void hideHeaders();
    // The same with the headers in sight.
    void fillWithLastColumn();
    // The first column takes what room the others leave beside it, and is never narrower than it was made; until the
    // user changes the width of a column.
    void fillWithFirstColumn();
    // Ctrl and Shift select several rows.
    void setMultiSelect();
    // The first row of a filled list looks selected, too.
    void setFirstSelected() { m_firstSelected = true; }
    // What Ctrl+C takes of a row, one line each; the row's text where nothing is given.
    void setCopied(std::function<QString(const ListItem&)> copied) { m_copied = std::move(copied); }
    // What a list without rows says in pale text; empty for nothing.
    void setEmptyText(const QString& text);

    View view() const { return m_view; }
    void setView(View view);

    // Adding many rows is one change of the screen, at the next return to the event loop or look at the rows.
    void add(ListItem item);
    void clear();
    // All rows, the waiting ones taken in.
    ListModel& rows();
    const ListModel& model() const { return m_model; }

    // Place of the selected item, -1 when the list is empty.
    int selectedItem();
    // The selected item; throws base::RuntimeError InvalidValue when the list is empty.
    const ListItem& selectedRow();
    bool isSelected(int place);
    // The places of the rows that are selected, ascending.
    std::vector<int> selectedPlaces();
    // Selects one row, which becomes the selected item, and no other; a place outside the list does nothing.
    void select(int place);
    void ensureVisible(int place);

    // The view that shows the rows now.
    QAbstractItemView& shown() const;

signals:
    // The user released the left button anywhere in the list, or selected other rows by keyboard. The release that
    // ends a double click is none.
    void Click();
    void DblClick();                // on a row, or Enter
    void DblClickBeside();          // where there is no row
    void ItemClick(int place);      // the user clicked a row or went to it by keyboard
    void ColumnClick(int column);   // a column's header, from 0
    void MenuWanted(QPoint global); // right button or menu key
    void Backspace();

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    friend class ListViewEvents;

    void prepare(QAbstractItemView& view);
    void attach(QAbstractItemView& view);
    void detach(QAbstractItemView& view);
    void takeIn();
    void layColumns();
    void forgetWidths();
    void fillUp();
    void layIcons();
    void nameViews();
    void pressed(const QMouseEvent& event);
    void released(const QMouseEvent& event);
    void doubleClicked(const QMouseEvent& event);
    bool keyActs(const QKeyEvent& event);
    void copy();
    void markOrder();
    void paintEmpty();
    int keyBegins();
    void keyDone(int itemBefore);
    void menuKey();
    void search(const QString& keys);

    ListModel m_model;
    QItemSelectionModel m_selection;
    QTreeView* m_report;
    QListView* m_icons;
    View m_view = View::Report;
    TypeAhead m_typeAhead;
    std::function<QString(const ListItem&)> m_copied;
    QString m_emptyText;
    bool m_firstSelected = false;
    bool m_flushWanted = false;
    bool m_selectionMoved = false;
    bool m_doubleClicked = false; // the button is still down from a double click
    QByteArray m_header;          // widths of the columns while another view is seen
    bool m_firstFills = false;
    bool m_laysColumns = false;  // the list itself changes their widths
    bool m_widthsChosen = false; // the user has changed one
};

} // namespace discaro::kit
