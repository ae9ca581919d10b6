#pragma once

#include <QtCore/QAbstractTableModel>
#include <QtCore/QString>
#include <QtGui/QIcon>

#include <functional>
#include <unordered_map>
#include <vector>

namespace discaro::kit {

// One row of a list: what the user sees, and what the window keeps with it.
struct ListItem {
    QString key; // unique in the list; empty for none
    QString text;
    QString icon; // key in the list's pictures; empty for none
    QString tag;
    std::vector<QString> subItems; // columns 1 and on

    // Column 0 is the text; a column that the row does not have is empty.
    const QString& column(int number) const;
};

struct ListColumn {
    QString header;
    int width = 0; // in logical pixels; 0 hides the column, which then only serves to sort by
    Qt::Alignment alignment = Qt::AlignLeft;
};

// The rows of a list and their order. Rows are numbered by their place from 0, in the order shown. While `sorted`,
// rows stand in the order of their texts in the sort column (base::orderKey, as the store's queries order them); equal
// texts keep the order of adding. Without it they keep the order that they have, and added rows come at the end.
//
// The view gets the columns that are seen, and numbers them without the others.
//
// Added rows wait until `flush`, so that adding many is one change of the screen; count, item and placeOf know them at
// once, behind the others.
class ListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using Pictures = std::function<QIcon(const QString& key)>;

    explicit ListModel(QObject* parent = nullptr);

    void setColumns(std::vector<ListColumn> columns);
    const std::vector<ListColumn>& columns() const { return m_columns; }
    void setPictures(Pictures pictures);

    // Throws base::RuntimeError InvalidValue when the key is in the list already.
    void add(ListItem item);
    void clear();
    int count() const { return static_cast<int>(m_items.size()); }

    // Takes the waiting rows in.
    void flush();

    // Throws InvalidValue for a place outside the list.
    const ListItem& item(int place) const;
    // The place of a key, -1 when it is not there.
    int placeOf(const QString& key) const;

    int sortKey() const { return m_sortKey; }
    void setSortKey(int column);
    Qt::SortOrder sortOrder() const { return m_sortOrder; }
    void setSortOrder(Qt::SortOrder order);
    bool isSorted() const { return m_sorted; }
    void setSorted(bool sorted);

    // The column of a section of the view, and the section of a column: for a hidden one, which holds what the one in
    // front of it is sorted by, that one's.
    int columnOf(int section) const;
    int sectionOf(int column) const;
    // Whether the view gets every column that is seen, or the first one alone.
    void showColumns(bool all);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    // The sort column, the direction, or whether the rows are sorted.
    void OrderChanged();

private:
    void orderChanged();
    void sortNow();
    void arrange();
    void movePersistent(const std::vector<int>& before);
    QString spokenRow(const ListItem& item) const;

    std::vector<ListColumn> m_columns;
    std::vector<int> m_seen; // the columns that are not hidden
    std::vector<ListItem> m_items;
    std::vector<int> m_order; // place shown -> place in m_items, for the rows that were flushed
    std::unordered_map<QString, int> m_keys;
    Pictures m_pictures;
    int m_sortKey = 0;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    bool m_sorted = false;
    bool m_allColumns = true;
};

} // namespace discaro::kit
