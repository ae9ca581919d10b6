#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtGui/QIcon>

#include <functional>
#include <vector>

namespace discaro::kit {

// The nodes of a tree. A node is known by its index: 1 for the node added first, 2 for the next, and so on; 0 stands
// for no node. Every node has a key that no other node has, compared exactly.
//
// Added and sorted nodes wait until `flush`, so that adding many is one change of the screen; all questions here see
// them at once. Every function that takes an index throws base::RuntimeError InvalidValue when no node has it.
class TreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    using Pictures = std::function<QIcon(const QString& key)>;

    // No path on any disc is as deep as this many nodes.
    static constexpr int kDeepest = 2000;

    explicit TreeModel(QObject* parent = nullptr);

    // Adds a node as the last child of the node with the parent's key, or at the top where that is empty, and returns
    // its index. Throws InvalidValue when no node has the parent's key, when the key is empty or in use, or below the
    // deepest level.
    int add(const QString& parentKey, const QString& key, const QString& text);
    // The parent must exist and the key be free, else it adds nothing and returns 0.
    int tryAdd(const QString& parentKey, const QString& key, const QString& text);
    void clear();

    int count() const { return static_cast<int>(m_nodes.size()); }
    // The index of the node with that key, 0 for none.
    int find(const QString& key) const { return m_keys.value(key, 0); }

    const QString& key(int node) const { return at(node).key; }
    const QString& text(int node) const { return at(node).text; }
    void setText(int node, const QString& text);
    const QString& tag(int node) const { return at(node).tag; }
    void setTag(int node, const QString& tag) { at(node).tag = tag; }
    // Key in the tree's pictures.
    const QString& image(int node) const { return at(node).image; }
    void setImage(int node, const QString& key);
    void setPictures(Pictures pictures) { m_pictures = std::move(pictures); }

    // The parent, 0 at the top; the first child in the order shown, 0 for none; the number of children.
    int parentOf(int node) const { return at(node).parent; }
    int firstChild(int node) const;
    int childCount(int node) const { return static_cast<int>(at(node).children.size()); }
    // The one of a node and its siblings that was added last.
    int lastSibling(int node) const;

    // While sorted, a node's children stand in the order of their texts (base::orderKey, as the store's queries order
    // them); equal texts keep the order of adding.
    void setSorted(int node, bool sorted);

    // Whether the children are in sight. A node without children has nothing to expand: for it nothing changes.
    bool isExpanded(int node) const { return at(node).expanded; }
    void setExpanded(int node, bool expanded);

    // The next node in sight below a node as the tree is shown, 0 behind the last.
    int nextInSight(int node) const;
    int firstInSight() const;
    // The one at the very end, 0 in a tree without nodes, and how many nodes stand above a node.
    int lastInSight() const;
    int levelOf(int node) const { return at(node).level - 1; }

    // Takes the waiting changes in. Returns whether the nodes were given to the view anew, which then has none
    // expanded and no current one.
    bool flush();
    // The nodes expanded or collapsed since the last call, and all nodes that are expanded.
    std::vector<int> takeExpansionChanges();
    std::vector<int> expandedNodes() const;

    // For the view: where a node stands (invalid while it waits), and which node stands there (0 for none).
    QModelIndex place(int node) const;
    int nodeAt(const QModelIndex& index) const;
    // Notes what the user did in the view; a node without children stays as it is.
    void noteExpanded(int node, bool expanded);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex&) const override { return 1; }
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    void Expand(int node);
    void Collapse(int node);
    // Something waits for flush.
    void Waiting();

private:
    struct Node {
        QString key;
        QString text;
        QString tag;
        QString image;
        std::vector<int> children; // in the order shown, those not flushed yet at the end
        int parent = 0;
        int row = 0;
        int shown = 0; // how many of the children were flushed
        int level = 0;
        bool sorted = false;
        bool expanded = false;
        bool unsorted = false; // sorted, but not yet in order
    };

    const Node& at(int node) const;
    Node& at(int node) { return const_cast<Node&>(std::as_const(*this).at(node)); }
    const Node& family(int node) const { return node == 0 ? m_root : at(node); }
    Node& family(int node) { return node == 0 ? m_root : at(node); }
    int append(int parent, const QString& key, const QString& text);
    bool isInOrder(const Node& family) const;
    void arrange(Node& family);
    void arrangeWaiting();
    void sortShown();
    void wantSorting(int node);
    void changed(int node, int role);

    Node m_root;
    std::vector<Node> m_nodes; // the node with index i at i - 1
    QHash<QString, int> m_keys;
    std::vector<int> m_toSort;
    std::vector<int> m_expansions;
    Pictures m_pictures;
    bool m_added = false;
};

} // namespace discaro::kit
