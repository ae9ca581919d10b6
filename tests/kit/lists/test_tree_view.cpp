#include "base/RuntimeError.h"
#include "kit/lists/TreeView.h"

#include <QtGui/QClipboard>
#include <QtGui/QHelpEvent>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolTip>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::kit {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> childrenOf(const TreeModel& nodes, int node) {
    const QModelIndex parent = node == 0 ? QModelIndex() : nodes.place(node);
    std::vector<std::string> texts;
    for (int row = 0; row < nodes.rowCount(parent); ++row)
        texts.push_back(nodes.index(row, 0, parent).data(Qt::DisplayRole).toString().toStdString());
    return texts;
}

// R (1) with b (2), which has b2 (3) and B1 (4); a (5)
void fill(TreeModel& nodes) {
    nodes.add({}, "R", "Root");
    nodes.add("R", "b", "b");
    nodes.add("b", "b2", "b2");
    nodes.add("b", "b1", "B1");
    nodes.add("R", "a", "a");
}

class TreeViewTest : public testing::Test {
protected:
    TreeViewTest() {
        m_tree.resize(300, 300);
        fill(m_tree.nodes());
        m_tree.nodes().setExpanded(1, true);
        m_tree.show();
        m_tree.flush();
    }
    QPoint at(int node) { return m_tree.visualRect(m_tree.nodes().place(node)).center(); }
    void click(int node) { QTest::mouseClick(m_tree.viewport(), Qt::LeftButton, {}, at(node)); }

    TreeView m_tree;
};

} // namespace

// ---- Nodes

TEST(TreeModel, IndexesFollowTheOrderOfAdding) {
    TreeModel nodes;
    fill(nodes);
    EXPECT_EQ(nodes.count(), 5);
    EXPECT_EQ(nodes.find("b1"), 4);
    EXPECT_EQ(nodes.key(5), "a");
    EXPECT_EQ(nodes.parentOf(4), 2);
    EXPECT_EQ(nodes.parentOf(1), 0);
    EXPECT_EQ(nodes.firstChild(2), 3);
    EXPECT_EQ(nodes.firstChild(3), 0);
    EXPECT_EQ(nodes.childCount(1), 2);
    EXPECT_EQ(nodes.lastSibling(3), 4);
    EXPECT_EQ(nodes.lastSibling(1), 1);
}

TEST(TreeModel, AMissingParentAndAKeyInUseAreRefused) {
    TreeModel nodes;
    fill(nodes);
    EXPECT_THROW(nodes.add("nowhere", "x", "x"), base::RuntimeError);
    EXPECT_THROW(nodes.add("R", "a", "x"), base::RuntimeError);
    EXPECT_THROW(nodes.add("R", "", "x"), base::RuntimeError);
    EXPECT_EQ(nodes.tryAdd("nowhere", "x", "x"), 0);
    EXPECT_EQ(nodes.tryAdd("R", "a", "x"), 0);
    EXPECT_EQ(nodes.tryAdd("x", "x", "its own parent"), 0);
    EXPECT_EQ(nodes.count(), 5);
    EXPECT_EQ(nodes.tryAdd("R", "A", "keys are exact"), 6);
    for (const int node : {-1, 0, 7})
        EXPECT_THROW(nodes.setText(node, "x"), base::RuntimeError) << node;
}

TEST(TreeModel, BelowTheDeepestLevelNothingIsAdded) {
    TreeModel nodes;
    nodes.add({}, "0", "0");
    for (int level = 1; level < TreeModel::kDeepest; ++level)
        nodes.add(QString::number(level - 1), QString::number(level), "x");
    EXPECT_THROW(nodes.add(QString::number(TreeModel::kDeepest - 1), "too deep", "x"), base::RuntimeError);
    EXPECT_EQ(nodes.count(), TreeModel::kDeepest);
}

TEST(TreeModel, SortingIsUpToEachNode) {
    TreeModel nodes;
    fill(nodes);
    nodes.setSorted(1, true);
    nodes.flush();
    EXPECT_THAT(childrenOf(nodes, 1), ElementsAre("a", "b"));
    EXPECT_THAT(childrenOf(nodes, 2), ElementsAre("b2", "B1"));
    nodes.setSorted(2, true);
    nodes.flush();
    EXPECT_THAT(childrenOf(nodes, 2), ElementsAre("B1", "b2"));
    EXPECT_EQ(nodes.lastSibling(3), 4) << "added last, wherever it is shown";
    EXPECT_EQ(nodes.firstChild(2), 4);
}

TEST(TreeModel, ChildrenAddedLaterAreSortedIn) {
    TreeModel nodes;
    fill(nodes);
    nodes.setSorted(1, true);
    nodes.flush();
    nodes.add("R", "aa", "Aa");
    nodes.flush();
    EXPECT_THAT(childrenOf(nodes, 1), ElementsAre("a", "Aa", "b"));
}

TEST(TreeModel, AccentedLettersStandWithTheirBaseLetter) {
    TreeModel nodes;
    nodes.add({}, "R", "root");
    for (const char* name : {"zebra", "\u00C4rger", "b", "\u00e4hnlich", "Azur", "A\u0308hre"})
        nodes.add("R", name, name);
    nodes.setSorted(1, true);
    nodes.flush();
    EXPECT_THAT(childrenOf(nodes, 1), ElementsAre("Azur", "\u00e4hnlich", "A\u0308hre", "\u00C4rger", "b", "zebra"));
}

TEST(TreeModel, ANodeWithoutChildrenHasNothingToExpand) {
    TreeModel nodes;
    fill(nodes);
    QSignalSpy expanded(&nodes, &TreeModel::Expand);
    QSignalSpy collapsed(&nodes, &TreeModel::Collapse);
    nodes.setExpanded(3, true);
    nodes.setExpanded(2, false);
    EXPECT_TRUE(expanded.isEmpty());
    nodes.setExpanded(2, true);
    nodes.setExpanded(2, true);
    nodes.setExpanded(2, false);
    EXPECT_EQ(expanded.size(), 1);
    EXPECT_EQ(collapsed.size(), 1);
}

TEST(TreeModel, KnowsWhatIsInSight) {
    TreeModel nodes;
    fill(nodes);
    EXPECT_EQ(nodes.firstInSight(), 1);
    EXPECT_EQ(nodes.nextInSight(1), 0);
    nodes.setExpanded(1, true);
    EXPECT_EQ(nodes.nextInSight(1), 2);
    EXPECT_EQ(nodes.nextInSight(2), 5);
    nodes.setExpanded(2, true);
    EXPECT_EQ(nodes.nextInSight(4), 5);
    EXPECT_EQ(nodes.nextInSight(5), 0);
    EXPECT_EQ(nodes.lastInSight(), 5);
    EXPECT_EQ(TreeModel().lastInSight(), 0);
}

TEST(TreeModel, ClearingForgetsEverything) {
    TreeModel nodes;
    fill(nodes);
    nodes.setExpanded(1, true);
    nodes.setSorted(1, true);
    nodes.clear();
    EXPECT_EQ(nodes.count(), 0);
    EXPECT_EQ(nodes.find("R"), 0);
    EXPECT_FALSE(nodes.flush());
    EXPECT_THAT(nodes.takeExpansionChanges(), IsEmpty());
    EXPECT_EQ(nodes.add({}, "R", "again"), 1);
    EXPECT_FALSE(nodes.isExpanded(1));
}

TEST(TreeModel, PersistentPlacesFollowTheirNodes) {
    TreeModel nodes;
    fill(nodes);
    nodes.flush();
    const QPersistentModelIndex kept(nodes.place(2));
    const QPersistentModelIndex below(nodes.place(3));
    nodes.setSorted(1, true);
    nodes.flush();
    EXPECT_EQ(kept.row(), 1);
    EXPECT_EQ(nodes.nodeAt(kept), 2);
    EXPECT_EQ(nodes.nodeAt(below.parent()), 2);
}

// ---- The view

TEST_F(TreeViewTest, ShowsWhatIsExpanded) {
    EXPECT_TRUE(m_tree.isExpanded(m_tree.nodes().place(1)));
    EXPECT_FALSE(m_tree.isExpanded(m_tree.nodes().place(2)));
    m_tree.nodes().setExpanded(2, true);
    EXPECT_FALSE(m_tree.isExpanded(m_tree.nodes().place(2))) << "not before the event loop";
    m_tree.flush();
    EXPECT_TRUE(m_tree.isExpanded(m_tree.nodes().place(2)));
}

TEST(TreeView, ItsFirstNodesShowAtTheNextReturnToTheEventLoop) {
    TreeView tree;
    fill(tree.nodes());
    EXPECT_EQ(tree.nodes().rowCount(QModelIndex()), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(tree.nodes().rowCount(QModelIndex()), 1);
}

TEST_F(TreeViewTest, ARowReachesToTheRightEdgeAtEveryWidth) {
    for (const int width : {600, 200, 400}) {
        m_tree.resize(width, 300);
        QCoreApplication::processEvents();
        EXPECT_EQ(m_tree.header()->sectionSize(0), m_tree.viewport()->width()) << width;
    }
}

TEST_F(TreeViewTest, ExpansionAndSelectionStayWhenNodesAreAdded) {
    m_tree.nodes().setExpanded(2, true);
    m_tree.selectNode(4);
    QSignalSpy clicks(&m_tree, &TreeView::NodeClick);
    QSignalSpy expanded(&m_tree, &TreeView::Expand);
    m_tree.nodes().add("b", "b3", "b3");
    m_tree.flush();
    EXPECT_EQ(m_tree.selectedNode(), 4);
    EXPECT_TRUE(m_tree.isExpanded(m_tree.nodes().place(2)));
    EXPECT_TRUE(clicks.isEmpty());
    EXPECT_TRUE(expanded.isEmpty());
}

TEST_F(TreeViewTest, ChangesShowAtTheNextReturnToTheEventLoop) {
    m_tree.nodes().add("R", "late", "late");
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_tree.nodes().place(6).isValid(); }, 5000));
}

TEST_F(TreeViewTest, AClickIsToldAlsoOnTheSelectedNode) {
    QSignalSpy clicks(&m_tree, &TreeView::NodeClick);
    click(2);
    click(2);
    click(5);
    ASSERT_EQ(clicks.size(), 3);
    EXPECT_EQ(clicks[1][0].toInt(), 2);
    EXPECT_EQ(clicks[2][0].toInt(), 5);
}

TEST_F(TreeViewTest, TheMarkBesideANodeOnlyExpandsIt) {
    QSignalSpy clicks(&m_tree, &TreeView::NodeClick);
    QSignalSpy expanded(&m_tree, &TreeView::Expand);
    const QRect node = m_tree.visualRect(m_tree.nodes().place(2));
    QTest::mouseClick(m_tree.viewport(), Qt::LeftButton, {}, QPoint(node.left() - 8, node.center().y()));
    EXPECT_TRUE(clicks.isEmpty());
    ASSERT_EQ(expanded.size(), 1);
    EXPECT_EQ(expanded[0][0].toInt(), 2);
    EXPECT_TRUE(m_tree.nodes().isExpanded(2));
}

TEST_F(TreeViewTest, TheProgramsSelectionTellsNothingAndBringsTheNodeIntoSight) {
    QSignalSpy clicks(&m_tree, &TreeView::NodeClick);
    QSignalSpy expanded(&m_tree, &TreeView::Expand);
    m_tree.selectNode(3);
    EXPECT_EQ(m_tree.selectedNode(), 3);
    EXPECT_TRUE(clicks.isEmpty());
    EXPECT_EQ(expanded.size(), 1);
    EXPECT_THROW(m_tree.selectNode(99), base::RuntimeError);
    EXPECT_THROW(m_tree.ensureVisible(0), base::RuntimeError);
}

// However long a busy machine takes between two keys, they are typed together.
class PatientTyping : public TreeViewTest {
protected:
    PatientTyping() { QApplication::setKeyboardInputInterval(3'600'000); }
    ~PatientTyping() override { QApplication::setKeyboardInputInterval(m_interval); }

private:
    const int m_interval = QApplication::keyboardInputInterval();
};

TEST_F(PatientTyping, StaysAtANodeThatStillFits) {
    m_tree.nodes().add("R", "d1", "desk");
    m_tree.nodes().add("R", "d2", "desks");
    m_tree.selectNode(1);
    QTest::keyClicks(&m_tree, "desk");
    EXPECT_EQ(m_tree.selectedNode(), 6);
    QTest::keyClicks(&m_tree, "s");
    EXPECT_EQ(m_tree.selectedNode(), 7);
}

TEST_F(PatientTyping, LooksAtEveryNodeOnTheWayRound) {
    TreeView tree;
    for (const char* name : {"da", "db"})
        tree.nodes().add({}, name, name);
    tree.flush();
    tree.selectNode(1);
    QTest::keyClicks(&tree, "d");
    EXPECT_EQ(tree.selectedNode(), 2);
    QTest::keyClicks(&tree, "a");
    EXPECT_EQ(tree.selectedNode(), 1);
}

TEST_F(TreeViewTest, KeysGoFromNodeToNode) {
    m_tree.selectNode(1);
    QSignalSpy clicks(&m_tree, &TreeView::NodeClick);
    QTest::keyClick(&m_tree, Qt::Key_Down);
    EXPECT_EQ(m_tree.selectedNode(), 2);
    QTest::keyClick(&m_tree, Qt::Key_Right);
    EXPECT_TRUE(m_tree.nodes().isExpanded(2));
    EXPECT_EQ(clicks.size(), 1);
    QTest::keyClick(&m_tree, Qt::Key_A);
    EXPECT_EQ(m_tree.selectedNode(), 5);
    QTest::keyClick(&m_tree, Qt::Key_Z);
    EXPECT_EQ(m_tree.selectedNode(), 5);
    EXPECT_EQ(clicks.size(), 2);
}

TEST_F(TreeViewTest, AnAsteriskExpandsAllBelow) {
    m_tree.selectNode(1);
    QTest::keyClick(&m_tree, Qt::Key_Asterisk);
    EXPECT_TRUE(m_tree.nodes().isExpanded(2));
    EXPECT_FALSE(m_tree.nodes().isExpanded(3)) << "it has nothing to expand";
}

TEST_F(TreeViewTest, NoKeyExpandsANodeWithoutChildren) {
    QSignalSpy expanded(&m_tree, &TreeView::Expand);
    QSignalSpy collapsed(&m_tree, &TreeView::Collapse);
    m_tree.selectNode(5);
    for (const auto key : {Qt::Key_Plus, Qt::Key_Right, Qt::Key_Asterisk, Qt::Key_Minus})
        QTest::keyClick(&m_tree, key);
    EXPECT_FALSE(m_tree.nodes().isExpanded(5));
    EXPECT_FALSE(m_tree.isExpanded(m_tree.nodes().place(5)));
    EXPECT_TRUE(expanded.isEmpty());
    EXPECT_TRUE(collapsed.isEmpty());
}

TEST_F(TreeViewTest, BackspaceIsAClickOnTheParentUpToTheFirst) {
    m_tree.selectNode(4);
    QSignalSpy clicks(&m_tree, &TreeView::NodeClick);
    for (const int above : {2, 1}) {
        QTest::keyClick(&m_tree, Qt::Key_Backspace);
        EXPECT_EQ(m_tree.selectedNode(), above);
        EXPECT_EQ(clicks.takeLast()[0].toInt(), above);
    }
    QTest::keyClick(&m_tree, Qt::Key_Backspace);
    EXPECT_EQ(m_tree.selectedNode(), 1);
    EXPECT_TRUE(clicks.isEmpty());
}

TEST_F(TreeViewTest, TheTextOfTheSelectedNodeIsCopied) {
    m_tree.nodes().setText(4, "R&D  x\ty");
    m_tree.selectNode(4);
    QTest::keyClick(&m_tree, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "R&D  x\ty");
}

TEST_F(TreeViewTest, TheSelectionIsPaleWithoutTheFocus) {
    m_tree.selectNode(5);
    const QRect row = m_tree.visualRect(m_tree.nodes().place(5));
    const QImage painted = m_tree.viewport()->grab().toImage();
    const QColor ground = painted.pixelColor(painted.width() - 3, row.center().y());
    EXPECT_NE(ground, m_tree.palette().color(QPalette::Active, QPalette::Highlight));
    EXPECT_NE(ground, m_tree.palette().color(QPalette::Active, QPalette::Base));
}

TEST_F(TreeViewTest, ADoubleClickTurnsTheNodeAndIsTold) {
    bool expandedThen = false;
    QObject::connect(&m_tree, &TreeView::DblClick, [&] { expandedThen = m_tree.nodes().isExpanded(2); });
    QTest::mouseDClick(m_tree.viewport(), Qt::LeftButton, {}, at(2));
    EXPECT_TRUE(expandedThen);
    QSignalSpy chosen(&m_tree, &TreeView::DblClick);
    QTest::mouseDClick(m_tree.viewport(), Qt::LeftButton, {}, QPoint(150, 290));
    EXPECT_TRUE(chosen.isEmpty());
    QTest::keyClick(&m_tree, Qt::Key_Return);
    EXPECT_EQ(chosen.size(), m_tree.selectedNode() != 0 ? 1 : 0);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
    QApplication::sendEvent(&m_tree, &held);
    EXPECT_LE(chosen.size(), 1) << "a key that is held chooses once";
}

TEST_F(TreeViewTest, TheKeyboardComingToTheTreeChoosesAndClicksNothing) {
    QSignalSpy clicks(&m_tree, &TreeView::NodeClick);
    m_tree.grab();
    QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(&m_tree, &focus);
    EXPECT_TRUE(clicks.isEmpty());
    EXPECT_EQ(m_tree.selectedNode(), 0);
    QTest::keyClick(&m_tree, Qt::Key_Down);
    EXPECT_EQ(m_tree.selectedNode(), 1);
    m_tree.selectNode(5);
    QApplication::sendEvent(&m_tree, &focus);
    EXPECT_EQ(m_tree.selectedNode(), 5);
}

TEST_F(TreeViewTest, ExpandingEverythingIsOneChangeOfTheScreen) {
    TreeModel& nodes = m_tree.nodes();
    nodes.clear();
    nodes.add({}, "R", "Root");
    for (int i = 0; i < 200; ++i) {
        const QString key = QString::number(i);
        nodes.add("R", key, "n" + key);
        for (const char* below : {"y", "x"})
            nodes.add(key, key + below, below);
    }
    QObject::connect(&m_tree, &TreeView::Expand, [&](int node) { nodes.setSorted(node, true); });
    m_tree.flush();
    QSignalSpy layouts(&nodes, &TreeModel::layoutChanged);
    for (int node = 1; node <= nodes.count(); ++node)
        nodes.setExpanded(node, true);
    m_tree.flush();
    EXPECT_EQ(layouts.size(), 1);
    EXPECT_THAT(childrenOf(nodes, nodes.find("7")), ElementsAre("x", "y"));
    for (int node = 1; node <= nodes.count(); ++node)
        EXPECT_EQ(m_tree.isExpanded(nodes.place(node)), nodes.childCount(node) > 0);
    for (int node = 1; node <= nodes.count(); ++node)
        nodes.setExpanded(node, false);
    m_tree.flush();
    EXPECT_FALSE(m_tree.isExpanded(nodes.place(nodes.find("7"))));
}

// ---- Sideways

namespace {

// A narrow tree with a chain of directories one in the other, and a long way down a second one.
class DeepTreeTest : public testing::Test {
protected:
    DeepTreeTest() {
        m_tree.resize(152, 339);
        m_tree.nodes().add({}, "R", "Root");
        addChain("a");
        for (int i = 0; i < 1000; ++i)
            m_tree.nodes().add("R", QString::number(i), "n");
        addChain("z");
        m_tree.show();
        m_tree.flush();
    }
    void addChain(const QString& key) {
        QString above = "R";
        for (int level = 0; level < 10; ++level) {
            const QString here = key + QString::number(level);
            m_tree.nodes().add(above, here, "Directory");
            above = here;
        }
    }
    // Whether the node's text is in sight from its beginning to its end.
    bool isInSight(const QString& key) {
        const QModelIndex place = m_tree.nodes().place(m_tree.nodes().find(key));
        const QRect node = m_tree.visualRect(place);
        const int right = node.left() + m_tree.sizeHintForIndex(place).width();
        return node.left() >= 0 && right <= m_tree.viewport()->width() && node.top() >= 0 &&
               node.bottom() <= m_tree.viewport()->height();
    }

    // The tool tip that comes where the mouse rests on what is seen of the node.
    QString tipOn(const QString& key) {
        const QRect seen =
            m_tree.visualRect(m_tree.nodes().place(m_tree.nodes().find(key))).intersected(m_tree.viewport()->rect());
        QHelpEvent hover(QEvent::ToolTip, seen.center(), m_tree.viewport()->mapToGlobal(seen.center()));
        QToolTip::hideText();
        QApplication::sendEvent(m_tree.viewport(), &hover);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }

    TreeView m_tree;
};

} // namespace

TEST_F(DeepTreeTest, ATextFarToTheRightComesIntoSightAndOneAtTheEdgeComesBack) {
    for (const char* key : {"a9", "R", "z9", "a5", "500", "z6"}) {
        m_tree.ensureVisible(m_tree.nodes().find(key));
        EXPECT_TRUE(isInSight(key)) << key;
    }
}

TEST_F(DeepTreeTest, TheKeyboardKeepsTheNodeInSight) {
    m_tree.selectNode(m_tree.nodes().find("a0"));
    for (int level = 0; level < 18; ++level) {
        QTest::keyClick(&m_tree, Qt::Key_Right);
        EXPECT_TRUE(isInSight(m_tree.nodes().key(m_tree.selectedNode()))) << level;
    }
    EXPECT_EQ(m_tree.nodes().key(m_tree.selectedNode()), "a9");
    m_tree.selectNode(m_tree.nodes().find("0"));
    for (int press = 0; press < 5; ++press)
        QTest::keyClick(&m_tree, Qt::Key_Right);
    EXPECT_TRUE(isInSight("0")) << "there is nothing to go into";
}

TEST_F(DeepTreeTest, OfATextWiderThanTheTreeTheBeginningIsInSight) {
    const int node = m_tree.nodes().find("z9");
    m_tree.nodes().setText(node, QString(100, u'w'));
    m_tree.ensureVisible(node);
    const int left = m_tree.visualRect(m_tree.nodes().place(node)).left();
    EXPECT_GE(left, 0);
    EXPECT_LT(left, m_tree.viewport()->width() / 2);
}

TEST_F(DeepTreeTest, ATextWhoseBeginningIsOutOfSightHasAToolTip) {
    m_tree.ensureVisible(m_tree.nodes().find("a9"));
    m_tree.horizontalScrollBar()->setValue(0);
    m_tree.nodes().setText(m_tree.nodes().find("a0"), "A directory");
    m_tree.flush();
    EXPECT_EQ(tipOn("a0"), "");
    const QRect node = m_tree.visualRect(m_tree.nodes().place(m_tree.nodes().find("a0")));
    m_tree.horizontalScrollBar()->setValue(node.left() + 20);
    EXPECT_TRUE(tipOn("a0").contains("A directory"));
}

} // namespace discaro::kit
