#include "explorer/NodeSearch.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace discaro::explorer {

namespace {

// A tree as a list of nodes, each with the index of its parent.
struct Tree {
    struct Node {
        std::string label;
        int parent;
    };
    std::vector<Node> nodes;

    int count() const { return static_cast<int>(nodes.size()); }
    const std::string& key(int node) const { return nodes[static_cast<size_t>(node) - 1].label; }
    const std::string& tag(int node) const { return key(node); }
    int lastSibling(int node) const {
        const int parent = nodes[static_cast<size_t>(node) - 1].parent;
        int last = node;
        for (int each = 1; each <= count(); ++each)
            if (nodes[static_cast<size_t>(each) - 1].parent == parent)
                last = each;
        return last;
    }
};

const Tree kTree{{{"R", 0}, {"C1D1", 1}, {"A", 2}, {"A1", 3}, {"A2", 3}, {"B", 2}, {"B1", 6}, {"C", 2}}};

} // namespace

TEST(NodeSearch, FindsEveryDirectoryOfTheListedOne) {
    EXPECT_EQ(findListedDirectory(kTree, 2, std::string("A")), 3);
    EXPECT_EQ(findListedDirectory(kTree, 2, std::string("B")), 6);
    EXPECT_EQ(findListedDirectory(kTree, 2, std::string("C")), 8);
    EXPECT_EQ(findListedDirectory(kTree, 3, std::string("A2")), 5);
}

TEST(NodeSearch, LooksNoFurtherThanTheListedOnesChildren) {
    EXPECT_EQ(findListedDirectory(kTree, 3, std::string("B")), 0);
    EXPECT_EQ(findListedDirectory(kTree, 3, std::string("C")), 0);
}

TEST(NodeSearch, IndexesThatNoNodeHasFindNothing) {
    for (const int listed : {-1, 0, 8, 9, 1000})
        EXPECT_EQ(findListedDirectory(kTree, listed, std::string("C")), 0) << listed;
    EXPECT_EQ(findListedDirectory(Tree{}, 1, std::string("C")), 0);
}

TEST(NodeSearch, FindsTheFirstNodeWithATag) {
    EXPECT_EQ(findTagged(kTree, std::string("A1")), 4);
    EXPECT_EQ(findTagged(kTree, std::string("nowhere")), 0);
}

} // namespace discaro::explorer
