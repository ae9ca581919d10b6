#pragma once

#include "kit/lists/TreeModel.h"
#include "kit/lists/TypeAhead.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtWidgets/QTreeView>

namespace discaro::kit {

// A tree of nodes with pictures, made for a hundred thousand of them. What is changed in `nodes` shows at the next
// return to the event loop.
//
// Keys: arrows, typing a beginning, Enter as a double click, Backspace as a click on the parent, the menu key; Ctrl+C
// copies the selected node's text. A double click also expands or collapses the node, before it is told.
class TreeView : public QTreeView {
    Q_OBJECT
public:
    explicit TreeView(QWidget* parent = nullptr);
    ~TreeView() override;

    TreeModel& nodes() { return m_nodes; }
    const TreeModel& nodes() const { return m_nodes; }

    // The node that is selected, 0 for none.
    int selectedNode() const;
    // Selects a node and raises no NodeClick. Its ancestors are expanded so that it is in sight. Throws
    // base::RuntimeError InvalidValue when there is no such node.
    void selectNode(int node);
    // Expands the node's ancestors and scrolls it into sight, sideways as far as its text goes. Throws InvalidValue.
    void ensureVisible(int node);
    // Acts as a click on the parent of the selected node; does nothing on a node at the top, or on none.
    void clickParent();

    // Brings what waits before the user now.
    void flush();

    void keyboardSearch(const QString& keys) override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

signals:
    // The user clicked a node, also the one that is selected already, or went to another by keyboard.
    void NodeClick(int node);
    // A node was expanded or collapsed, by the user or by the program.
    void Expand(int node);
    void Collapse(int node);
    void DblClick();
    void MenuWanted(QPoint global); // right button or menu key

protected:
    int sizeHintForColumn(int column) const override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void initViewItemOption(QStyleOptionViewItem* option) const override;

private:
    void later();
    void applyExpansions(const std::vector<int>& nodes);
    void noteExpanded(const QModelIndex& index, bool expanded);
    bool keyActs(const QKeyEvent& event);
    void uncover(int node);
    void setCurrent(int node);
    void layIcons();

    TreeModel m_nodes;
    TypeAhead m_typeAhead;
    QTimer m_later;
    QElapsedTimer m_flushed;
    bool m_quiet = false;     // the program moves the selection or the expansions
    bool m_answering = false; // an event of the user's is being answered; NodeClick comes at its end
};

} // namespace discaro::kit
