#include "db/sqlite/Connection.h"
#include "explorer/CatalogueRig.h"
#include "explorer/Queries.h"
#include "explorer/TreeBuild.h"

#include <gtest/gtest.h>

namespace discaro::explorer {

namespace {

// Writes down what a tree would get: "parent>key text", and only where the parent is there.
class NotedTree : public TreeSink {
public:
    void nameFirst(std::string_view text) override { first = text; }
    void add(const TreeRow& row) override {
        if (!known(row.parent) || known(row.key))
            return;
        keys.push_back(row.key);
        nodes.push_back(row.parent + ">" + row.key + " " + row.text);
    }
    void progress(double percent) override {
        EXPECT_GE(percent, lastPercent);
        EXPECT_LE(percent, 100);
        lastPercent = percent;
        ++steps;
    }
    bool rowDone() override {
        ++rows;
        return rows != last;
    }

    bool known(const std::string& key) const { return std::find(keys.begin(), keys.end(), key) != keys.end(); }

    std::string first = "Root";
    std::vector<std::string> keys = {"R"};
    std::vector<std::string> nodes;
    double lastPercent = 0;
    int steps = 0;
    int rows = 0;
    int last = -1; // the row after which it has enough
};

class TreeBuild : public testing::Test {
protected:
    db::Database& catalogue() {
        app::Module1::OpenCatalogue();
        return *app::Module1::CatalogueDb;
    }
    NotedTree disc(const std::string& number) {
        NotedTree tree;
        buildDisc(*catalogue().OpenRecordset(discDirectoriesQuery(number)), tree);
        return tree;
    }
    NotedTree allContents() {
        NotedTree tree;
        db::Database& all = catalogue();
        buildAllContents(*all.OpenRecordset(kRootDirectoriesQuery), all, tree);
        return tree;
    }

    test::CatalogueRig m_rig;
};

using Nodes = std::vector<std::string>;

} // namespace

TEST_F(TreeBuild, TakesItsShapeFromTheRowsAlone) {
    m_rig.addRoot(12);
    m_rig.addRoot(1);
    m_rig.add(test::DirectoryRow{.number = "C12D1S1", .name = "Docs"});
    m_rig.add(test::DirectoryRow{.number = "C12D1S1S1", .name = "Old"});
    m_rig.add(test::DirectoryRow{.number = "C12D1S2", .name = "Games"});
    const NotedTree tree = disc("12");
    EXPECT_EQ(tree.first, "CD-ROM Number  12");
    EXPECT_EQ(tree.nodes,
              (Nodes{"R>C12D1 D:\\", "C12D1>C12D1S1 Docs", "C12D1S1>C12D1S1S1 Old", "C12D1>C12D1S2 Games"}));
    EXPECT_EQ(tree.steps, 4);
}

TEST_F(TreeBuild, ADiscWithoutRowsLeavesTheFirstNodeAsItWas) {
    m_rig.add(test::DiscRow{.number = 3, .name = "Empty"});
    const NotedTree tree = disc("3");
    EXPECT_EQ(tree.first, "Root");
    EXPECT_TRUE(tree.nodes.empty());
}

TEST_F(TreeBuild, AMissingParentLeavesOutTheDirectoryAndAllBelowIt) {
    m_rig.addRoot(1);
    m_rig.add(test::DirectoryRow{.number = "C1D1S4S1", .name = "Orphan"});
    m_rig.add(test::DirectoryRow{.number = "C1D1S4S1S1", .name = "Below"});
    m_rig.add(test::DirectoryRow{.number = "C1D1S1", .name = "Docs"});
    EXPECT_EQ(disc("1").nodes, (Nodes{"R>C1D1 D:\\", "C1D1>C1D1S1 Docs"}));
}

TEST_F(TreeBuild, AParentThatComesLaterLeavesTheDirectoryOut) {
    m_rig.addRoot(1);
    m_rig.add(test::DirectoryRow{.number = "C1D1S1S1", .name = "Early"});
    m_rig.add(test::DirectoryRow{.number = "C1D1S1", .name = "Docs"});
    m_rig.add(test::DirectoryRow{.number = "C1D1S1S2", .name = "InTime"});
    EXPECT_EQ(disc("1").nodes, (Nodes{"R>C1D1 D:\\", "C1D1>C1D1S1 Docs", "C1D1S1>C1D1S1S2 InTime"}));
}

TEST_F(TreeBuild, ADirectoryThatIsItsOwnParentIsLeftOut) {
    m_rig.addRoot(1);
    m_rig.add(test::DirectoryRow{.number = "C1D1S1", .name = "Loop", .parent = "C1D1S1"});
    EXPECT_EQ(disc("1").nodes, (Nodes{"R>C1D1 D:\\"}));
}

TEST_F(TreeBuild, RowsWithoutNumberOrParentAreLeftOut) {
    m_rig.addRoot(1);
    m_rig.run("INSERT INTO Directories(\"drive id number\", \"directory name\") VALUES (1, 'Nowhere')");
    m_rig.run("INSERT INTO Directories(\"drive id number\", \"Parent id\") VALUES (1, 'C1D1')");
    const NotedTree tree = disc("1");
    EXPECT_EQ(tree.rows, 3);
    EXPECT_EQ(tree.nodes.size(), 2U) << "an empty number is a key like another here; the tree itself refuses it";
}

TEST_F(TreeBuild, AllContentsHasEveryDiscsRootUnderTheDiscsName) {
    m_rig.add(test::DiscRow{.number = 2, .name = "Second"});
    m_rig.add(test::DiscRow{.number = 1, .name = "First"});
    m_rig.addRoot(2);
    m_rig.add(test::DirectoryRow{.number = "C2D1S1", .name = "Docs"});
    m_rig.addRoot(1);
    const NotedTree tree = allContents();
    EXPECT_EQ(tree.nodes, (Nodes{"R>C2D1 Second", "R>C1D1 First"}));
    EXPECT_EQ(tree.rows, 2);
}

TEST_F(TreeBuild, ARootWithoutItsDiscGetsANodeWithoutAName) {
    m_rig.addRoot(5);
    EXPECT_EQ(allContents().nodes, (Nodes{"R>C5D1 "}));
}

TEST_F(TreeBuild, AnEmptyCatalogueGivesNothing) {
    EXPECT_EQ(allContents().rows, 0);
}

TEST_F(TreeBuild, EndsWhenTheTreeHasEnough) {
    for (const int disc : {1, 2, 3})
        m_rig.addRoot(disc);
    NotedTree tree;
    tree.last = 2;
    db::Database& all = catalogue();
    buildAllContents(*all.OpenRecordset(kRootDirectoriesQuery), all, tree);
    EXPECT_EQ(tree.nodes.size(), 2U);
}

TEST_F(TreeBuild, TwoDirectoriesThatAreEachOthersParentsAreLeftOut) {
    m_rig.addRoot(1);
    m_rig.add(test::DirectoryRow{.number = "C1D1S1", .name = "Hen", .parent = "C1D1S2"});
    m_rig.add(test::DirectoryRow{.number = "C1D1S2", .name = "Egg", .parent = "C1D1S1"});
    m_rig.add(test::DirectoryRow{.number = "C1D1S3", .name = "Fine"});
    EXPECT_EQ(disc("1").nodes, (Nodes{"R>C1D1 D:\\", "C1D1>C1D1S3 Fine"}));
}

TEST_F(TreeBuild, ALockEndsTheBuild) {
    for (int number = 1; number < 600; ++number)
        m_rig.add(test::DirectoryRow{.number = "C1D1S" + std::to_string(number), .name = "x"});
    db::Connection::setLockWait(0);
    struct LockingTree : NotedTree {
        explicit LockingTree(const std::filesystem::path& file)
            : other(file) {}
        bool rowDone() override {
            if (++rows == 2)
                other.execute("BEGIN EXCLUSIVE");
            return true;
        }
        test::RawDatabase other;
    };
    LockingTree tree(m_rig.path());
    buildDisc(*catalogue().OpenRecordset(discDirectoriesQuery("1")), tree);
    EXPECT_LT(tree.rows, 400) << "what had been read ahead, and no more";
}

TEST_F(TreeBuild, ARecordsetThatIsClosedUnderItEndsTheBuild) {
    m_rig.addRoot(1);
    m_rig.add(test::DirectoryRow{.number = "C1D1S1", .name = "Docs"});
    struct ClosingTree : NotedTree {
        explicit ClosingTree(db::Recordset& opened)
            : recordset(opened) {}
        bool rowDone() override {
            recordset.Close();
            return true;
        }
        db::Recordset& recordset;
    };
    const auto recordset = catalogue().OpenRecordset(discDirectoriesQuery("1"));
    ClosingTree tree(*recordset);
    buildDisc(*recordset, tree);
    EXPECT_EQ(tree.nodes.size(), 1U);
}

} // namespace discaro::explorer
