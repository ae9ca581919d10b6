#pragma once

// Where the tree's node of a directory or a row is. Nodes gives the nodes by their indexes from 1, as kit::TreeModel
// does: count(), key(node), tag(node), lastSibling(node).
namespace discaro::explorer {

// The tree's first node: the disc, or all of them.
inline constexpr int kFirst = 1;

// The node of a directory's row in the listing of the node `listed`: looked for from that one to the last sibling of
// the node behind it, which is its first child, since trees are built parent first, depth first. 0 when it is not
// there.
template <typename Nodes, typename Key>
int findListedDirectory(const Nodes& nodes, int listed, const Key& key) {
    if (listed < 1 || listed >= nodes.count())
        return 0;
    const int last = nodes.lastSibling(listed + 1);
    for (int node = listed; node <= last; ++node)
        if (nodes.key(node) == key)
            return node;
    return 0;
}

// The first node with that tag, 0 for none.
template <typename Nodes, typename Tag>
int findTagged(const Nodes& nodes, const Tag& tag) {
    for (int node = 1; node <= nodes.count(); ++node)
        if (nodes.tag(node) == tag)
            return node;
    return 0;
}

} // namespace discaro::explorer
