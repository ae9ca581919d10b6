#include "app/Windows.h"
#include "explorer/ExplorerRig.h"
#include "kit/program/Yield.h"

#include <QtCore/QTimer>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QScrollBar>

namespace discaro::test {

using explorer::EXMain;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
namespace shared = app::Module1;

namespace {

class ExplorerTree : public ExplorerTest {
protected:
    EXMain& openGames() {
        EXMain& window = rig.open();
        window.Combo1->setListIndex(1);
        return window;
    }
    static QString image(const EXMain& window, const char* key) {
        return window.tvwdb->nodes().image(nodeOf(window, key));
    }
};

} // namespace

// ---- The disc list

TEST_F(ExplorerTree, DiscsStandInTheOrderOfTheirNames) {
    rig.catalogue.add(DiscRow{.number = 7, .name = "backup"});
    const EXMain& window = rig.open();
    ASSERT_EQ(window.Combo1->count(), 3);
    EXPECT_EQ(window.Combo1->itemText(0), "Atlas       (CD-ROM No. 2)");
    EXPECT_EQ(window.Combo1->itemText(1), "backup       (CD-ROM No. 7)");
    EXPECT_EQ(window.Combo1->itemText(2), "Games       (CD-ROM No. 1)");
    EXPECT_EQ(window.Combo1->itemData(1).toInt(), 7);
}

TEST_F(ExplorerTree, DiscsOfOneNameDifferByTheNumberOnly) {
    rig.catalogue.add(DiscRow{.number = 8, .name = "Games"});
    const EXMain& window = rig.open();
    EXPECT_EQ(window.Combo1->itemText(1), "Games       (CD-ROM No. 1)");
    EXPECT_EQ(window.Combo1->itemText(2), "Games       (CD-ROM No. 8)");
}

TEST_F(ExplorerTree, ManyDiscsDropDownWithAScrollBar) {
    for (int disc = 3; disc < 40; ++disc)
        rig.catalogue.add(DiscRow{.number = disc, .name = "Disc " + std::to_string(disc)});
    const EXMain& window = rig.open();
    window.Combo1->showPopup();
    kit::yield();
    const QScrollBar* bar = window.Combo1->view()->verticalScrollBar();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_GT(bar->maximum(), 0);
    window.Combo1->hidePopup();
}

TEST_F(ExplorerTree, TheWheelChangesTheDiscOnlyWithTheFocus) {
    EXMain& window = rig.open();
    window.tvwdb->setFocus();
    const QPointF at(5, 5);
    QWheelEvent wheel(at, window.Combo1->mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(window.Combo1, &wheel);
    EXPECT_EQ(window.Combo1->listIndex(), 0);
}

TEST_F(ExplorerTree, DiscNamesOfAnyCharactersStandOnOneLine) {
    rig.catalogue.add(DiscRow{.number = 3, .name = "Aa\tline\r\nend\u202Eback"});
    EXMain& window = rig.open();
    EXPECT_EQ(window.Combo1->itemText(0), "Aa line endback       (CD-ROM No. 3)");
    EXPECT_EQ(window.caption(), "Aa line endback       (CD-ROM No. 3)");
    EXPECT_EQ(window.Combo1->text(), QString::fromUtf8("Aa\tline\r\nend\u202Eback       (CD-ROM No. 3)"));
    clickNode(window, "R");
    EXPECT_EQ(columnOf(*window.DriveInfo, 1)[1], "Aa\tline\r\nend\u202Eback");
}

// ---- One disc

TEST_F(ExplorerTree, ADiscIsShownWhole) {
    EXMain& window = openGames();
    const kit::TreeModel& nodes = window.tvwdb->nodes();
    ASSERT_EQ(nodes.count(), 5);
    EXPECT_EQ(nodes.key(1), "R");
    EXPECT_EQ(nodes.text(1), "CD-ROM Number  1");
    EXPECT_EQ(nodes.tag(1).toStdString(), std::filesystem::absolute("kvt.mde").string());
    EXPECT_EQ(nodes.image(1), "cdrom");
    EXPECT_EQ(nodes.text(2), "D:\\");
    EXPECT_EQ(nodes.tag(3), "C1D1S1");
    EXPECT_EQ(nodes.parentOf(nodeOf(window, "C1D1S1S1")), nodeOf(window, "C1D1S1"));
    EXPECT_TRUE(nodes.isExpanded(1));
    EXPECT_TRUE(nodes.isExpanded(2));
    EXPECT_FALSE(nodes.isExpanded(3));
    EXPECT_EQ(image(window, "C1D1"), "open");
    EXPECT_EQ(image(window, "C1D1S1"), "closed");
    EXPECT_EQ(window.Label2->text(), "");
    EXPECT_TRUE(window.tvwdb->isExpanded(nodes.place(2)));
}

TEST_F(ExplorerTree, ChildrenAreSortedWhenANodeOpens) {
    rig.catalogue.add(DirectoryRow{.number = "C1D1S1S3", .name = "beta"});
    rig.catalogue.add(DirectoryRow{.number = "C1D1S1S2", .name = "Alpha"});
    EXMain& window = openGames();
    EXPECT_THAT(childrenOf(window, "C1D1S1"), ElementsAre("OLD", "beta", "Alpha"));
    window.tvwdb->nodes().setExpanded(nodeOf(window, "C1D1S1"), true);
    EXPECT_THAT(childrenOf(window, "C1D1S1"), ElementsAre("Alpha", "beta", "OLD"));
    EXPECT_EQ(image(window, "C1D1S1"), "open");
    window.tvwdb->nodes().setExpanded(nodeOf(window, "C1D1S1"), false);
    EXPECT_EQ(image(window, "C1D1S1"), "closed");
}

TEST_F(ExplorerTree, TheFirstNodeKeepsItsPicture) {
    EXMain& window = openGames();
    window.tvwdb->nodes().setExpanded(1, false);
    EXPECT_EQ(image(window, "R"), "cdrom");
    window.tvwdb->nodes().setExpanded(1, true);
    EXPECT_EQ(image(window, "R"), "cdrom");
}

TEST_F(ExplorerTree, ExpandAndCollapseAllTakeInTheFirstNode) {
    EXMain& window = openGames();
    choose(window, "expand");
    window.tvwdb->flush();
    EXPECT_TRUE(window.tvwdb->nodes().isExpanded(nodeOf(window, "C1D1S1")));
    EXPECT_EQ(image(window, "C1D1S1"), "open");
    EXPECT_EQ(image(window, "C1D1S2"), "closed") << "there is nothing to expand in it";
    EXPECT_TRUE(window.tvwdb->isExpanded(window.tvwdb->nodes().place(3)));
    choose(window, "collapse");
    window.tvwdb->flush();
    EXPECT_FALSE(window.tvwdb->nodes().isExpanded(1));
    EXPECT_FALSE(window.tvwdb->isExpanded(window.tvwdb->nodes().place(1)));
    EXPECT_EQ(image(window, "C1D1"), "closed");
}

TEST_F(ExplorerTree, ADiscWithoutDirectoriesHasOnlyTheFirstNode) {
    rig.catalogue.add(DiscRow{.number = 3, .name = "Bare"});
    EXMain& window = rig.open();
    window.Combo1->setListIndex(1);
    EXPECT_EQ(window.tvwdb->nodes().count(), 1);
    EXPECT_EQ(window.tvwdb->nodes().text(1), "Root");
    EXPECT_EQ(window.caption(), "Bare       (CD-ROM No. 3)");
}

TEST_F(ExplorerTree, TheSameDiscChosenAgainIsBuiltAnew) {
    EXMain& window = openGames();
    rig.catalogue.add(DirectoryRow{.number = "C1D1S3", .name = "New"});
    emit window.Combo1->Click();
    EXPECT_NE(nodeOf(window, "C1D1S3"), 0);
    EXPECT_EQ(window.tvwdb->nodes().count(), 6);
}

// ---- Clicks

TEST_F(ExplorerTree, AClickListsTheDirectory) {
    EXMain& window = openGames();
    clickNode(window, "C1D1");
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" DOCS", " PLAY", "readme.txt", "setup.exe"));
    EXPECT_EQ(window.Label2->text(), "D:\\");
    EXPECT_TRUE(countsAsListed(window, "C1D1"));
}

TEST_F(ExplorerTree, AClickOnTheNodeListedAlreadyRunsNoQuery) {
    EXMain& window = openGames();
    clickNode(window, "C1D1S1");
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" OLD", "manual.doc"));
    rig.catalogue.add(FileRow{.directory = "C1D1S1", .name = "late.doc", .extension = ".doc"});
    clickNode(window, "C1D1S1");
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" OLD", "manual.doc"));
    clickNode(window, "C1D1");
    clickNode(window, "C1D1S1");
    EXPECT_EQ(window.lvwdb->rows().count(), 3);
}

TEST_F(ExplorerTree, AfterARebuildTheNodeOfTheLastIndexCountsAsListed) {
    EXMain& window = openGames();
    clickNode(window, "C1D1S1");
    window.Combo1->setListIndex(0);
    clickNode(window, "C2D1S1");
    EXPECT_EQ(window.tvwdb->selectedNode(), 3);
    EXPECT_TRUE(window.DriveInfo->isVisible()) << "the third node was the last that was listed";
    clickNode(window, "C2D1");
    clickNode(window, "C2D1S1");
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre("asia.gif", "africa.gif"));
}

TEST_F(ExplorerTree, AClickOnTheFirstNodeShowsTheDisc) {
    EXMain& window = openGames();
    clickNode(window, "C1D1S1");
    EXPECT_FALSE(window.DriveInfo->isVisible());
    clickNode(window, "R");
    EXPECT_TRUE(window.DriveInfo->isVisible());
    EXPECT_EQ(columnOf(*window.DriveInfo, 1)[1], "Games");
    EXPECT_EQ(window.StatusBar1->panelText(1), "2 File(s)") << "the panels still tell of the last listing";
}

TEST_F(ExplorerTree, ADoubleClickOnADirectoryShowsItsProperties) {
    EXMain& window = openGames();
    doubleClickNode(window, "C1D1S1");
    EXPECT_THAT(rig.shown, Contains("EXDir"));
    EXPECT_EQ(shared::SelectedDirectory, "C1D1S1");
}

TEST_F(ExplorerTree, ADoubleClickOnTheFirstNodeShowsTheDiscAndOpensTheNode) {
    EXMain& window = openGames();
    bool whileShown = true;
    rig.whenModal = [&] { whileShown = window.tvwdb->nodes().isExpanded(1); };
    doubleClickNode(window, "R");
    EXPECT_THAT(rig.shown, Contains("EXCDROM"));
    EXPECT_EQ(shared::SelectedDisc, "1");
    EXPECT_FALSE(whileShown) << "the double click itself closes the node";
    EXPECT_TRUE(window.tvwdb->nodes().isExpanded(1));
}

// ---- All contents

TEST_F(ExplorerTree, AllContentsShowsEveryDisc) {
    EXMain& window = openGames();
    choose(window, "Showall");
    EXPECT_EQ(window.Label3->text(), "All Contents");
    EXPECT_EQ(window.tvwdb->nodes().text(1), "All CDs");
    EXPECT_THAT(childrenOf(window, "R"), ElementsAre("Atlas", "Games"));
    EXPECT_EQ(image(window, "C2D1"), "cdrom");
    EXPECT_EQ(window.tvwdb->nodes().tag(nodeOf(window, "C2D1")), "C2D1");
    EXPECT_TRUE(window.tvwdb->nodes().isExpanded(1));
    EXPECT_TRUE(window.Dirinfo->isVisible());
    EXPECT_EQ(window.caption(), "Games       (CD-ROM No. 1)") << "stays out of step";
    EXPECT_EQ(window.Combo1->listIndex(), 1);
}

TEST_F(ExplorerTree, ADiscOfAllContentsListsTheFilesOfItsRootOnly) {
    EXMain& window = openGames();
    choose(window, "Showall");
    clickNode(window, "C1D1");
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre("readme.txt", "setup.exe"));
    EXPECT_FALSE(window.lvwdb->isVisible()) << "the view is of facts";
    EXPECT_EQ(columnOf(*window.Dirinfo, 1)[1], "D:\\");
}

TEST_F(ExplorerTree, DoubleClicksInAllContentsLeadToTheRootAndToTheChosenDisc) {
    EXMain& window = openGames();
    choose(window, "Showall");
    doubleClickNode(window, "C2D1");
    EXPECT_EQ(shared::SelectedDirectory, "C2D1");
    EXPECT_THAT(rig.shown, Contains("EXDir"));
    doubleClickNode(window, "R");
    EXPECT_THAT(rig.shown, Contains("EXCDROM"));
    EXPECT_EQ(shared::SelectedDisc, "1") << "the disc chosen in the list";
}

TEST_F(ExplorerTree, ADiscOfAllContentsIsTaggedAsItsRootDirectory) {
    EXMain& window = openGames();
    choose(window, "Showall");
    clickNode(window, "C2D1");
    window.RunCommand("tag");
    EXPECT_THAT(rig.shown, Contains("ProgTag"));
    EXPECT_EQ(shared::TagKey, "DIRC2D1");
    EXPECT_EQ(shared::TagDirectory, "C2D1");
    EXPECT_EQ(shared::TagDisc, "1") << "the disc chosen in the list";
    clickNode(window, "R");
    window.RunCommand("tag");
    EXPECT_EQ(shared::TagKey, "CD1");
}

TEST_F(ExplorerTree, ADiscChosenAfterAllContentsStaysInTheViewOfFacts) {
    EXMain& window = openGames();
    choose(window, "Showall");
    window.Combo1->setListIndex(0);
    EXPECT_EQ(window.Label3->text(), "CD-ROM Number : 2");
    clickNode(window, "C2D1S1");
    EXPECT_TRUE(window.Dirinfo->isVisible());
}

// ---- Refresh

TEST_F(ExplorerTree, RefreshRebuildsOnTheFirstDisc) {
    EXMain& window = openGames();
    rig.catalogue.run("UPDATE Drive SET \"prefered name\" = 'Zoo' WHERE \"id number\" = 2");
    rig.catalogue.add(DirectoryRow{.number = "C1D1S3", .name = "New"});
    choose(window, "refreshall");
    EXPECT_EQ(window.Combo1->text(), "Games       (CD-ROM No. 1)");
    EXPECT_EQ(window.Combo1->itemText(1), "Zoo       (CD-ROM No. 2)");
    EXPECT_EQ(window.tvwdb->nodes().count(), 6);
    EXPECT_EQ(window.tvwdb->selectedNode(), 1);
}

// ---- Rows that no scan would write

TEST_F(ExplorerTree, OrphansAndLoopsAreLeftOutWithoutAWord) {
    rig.catalogue.add(DirectoryRow{.number = "C1D1S9S9", .name = "Orphan"});
    rig.catalogue.add(DirectoryRow{.number = "C1D1S5", .name = "Loop", .parent = "C1D1S5"});
    rig.catalogue.add(DirectoryRow{.number = "C1D1S6", .name = "Fine"});
    rig.catalogue.run("INSERT INTO Directories(\"drive id number\", \"Parent id\") VALUES (1, 'C1D1')");
    EXMain& window = openGames();
    EXPECT_EQ(window.tvwdb->nodes().count(), 6);
    EXPECT_EQ(nodeOf(window, "C1D1S9S9"), 0);
    EXPECT_NE(nodeOf(window, "C1D1S6"), 0);
    EXPECT_EQ(window.tvwdb->nodes().tag(nodeOf(window, "C1D1S2")), "C1D1S2");
}

TEST_F(ExplorerTree, NamesOfAnyCharactersAreShownOnOneLine) {
    rig.catalogue.add(DirectoryRow{.number = "C1D1S3", .name = "tab\there\r\nline\u202Eback"});
    rig.catalogue.add(DirectoryRow{.number = "C1D1S4", .name = ""});
    EXMain& window = openGames();
    EXPECT_THAT(childrenOf(window, "C1D1"), ElementsAre("", "DOCS", "Play", "tab here lineback"));
    EXPECT_EQ(window.tvwdb->nodes().text(nodeOf(window, "C1D1S3")).toStdString(), "tab\there\r\nline\u202Eback");
}

TEST_F(ExplorerTree, AVeryDeepTreeEndsSomewhere) {
    std::string sql;
    for (int level = 1; level < 3000; ++level)
        sql += "INSERT INTO Directories(\"drive id number\", \"Parent id\", \"id number\", "
               "\"directory name\") VALUES "
               "(1, '" +
               (level == 1 ? std::string("C1D1") : "N" + std::to_string(level - 1)) + "', 'N" + std::to_string(level) +
               "', 'x');";
    rig.catalogue.run("BEGIN;" + sql + "COMMIT;");
    EXMain& window = openGames();
    choose(window, "expand");
    EXPECT_LE(window.tvwdb->nodes().count(), kit::TreeModel::kDeepest + 10);
    EXPECT_GT(window.tvwdb->nodes().count(), 1000);
    choose(window, "collapse");
}

// ---- What happens in a yield

TEST_F(ExplorerTree, ADiscChosenWhileAnotherIsBuiltHasTheTreeToItself) {
    EXMain& window = rig.open();
    QTimer::singleShot(0, &window, [&] { window.Combo1->setListIndex(1); });
    window.Combo1->setListIndex(-1);
    window.Combo1->setListIndex(0);
    kit::yield();
    EXPECT_EQ(window.Combo1->listIndex(), 1);
    EXPECT_EQ(window.tvwdb->nodes().text(1), "CD-ROM Number  1");
    EXPECT_EQ(window.tvwdb->nodes().count(), 5);
    EXPECT_EQ(window.caption(), "Games       (CD-ROM No. 1)");
}

TEST_F(ExplorerTree, TheWindowMayGoWhileATreeIsBuilt) {
    EXMain& window = rig.open();
    QTimer::singleShot(0, &window, [&] { window.RunCommand("exit"); });
    window.Combo1->setListIndex(1);
    EXPECT_TRUE(window.isUnloaded());
    EXPECT_TRUE(rig.isUp("Switch"));
}

TEST_F(ExplorerTree, TheWindowMayGoWhileItLoads) {
    app::Windows::Show("EXMain");
    auto& window = *static_cast<EXMain*>(app::Windows::Find("EXMain"));
    QTimer::singleShot(0, &window, [&] { window.RunCommand("exit"); });
    emit window.Timer2->Tick();
    EXPECT_TRUE(window.isUnloaded());
}

TEST_F(ExplorerTree, TheWindowMayGoWhileAllContentsAreRead) {
    EXMain& window = rig.open();
    QTimer::singleShot(0, &window, [&] { window.RunCommand("exit"); });
    window.MenuBar1->item("Showall").trigger();
    EXPECT_TRUE(window.isUnloaded());
}

// ---- Keyboard and pop-up

TEST_F(ExplorerTree, ArrowsAndTypingGoFromNodeToNode) {
    EXMain& window = openGames();
    window.tvwdb->setFocus();
    QTest::keyClick(window.tvwdb, Qt::Key_Down);
    EXPECT_EQ(window.tvwdb->selectedNode(), 2);
    EXPECT_EQ(window.lvwdb->rows().count(), 4);
    QTest::keyClick(window.tvwdb, Qt::Key_P);
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1S2"));
    EXPECT_EQ(window.Label2->text(), "D:\\Play");
}

TEST_F(ExplorerTree, ADirectoryWithoutDirectoriesKeepsTheClosedPicture) {
    EXMain& window = openGames();
    clickNode(window, "C1D1S2");
    for (const auto key : {Qt::Key_Plus, Qt::Key_Right, Qt::Key_Asterisk}) {
        QTest::keyClick(window.tvwdb, key);
        EXPECT_EQ(image(window, "C1D1S2"), "closed");
    }
    choose(window, "expand");
    EXPECT_EQ(image(window, "C1D1S2"), "closed");
}

TEST_F(ExplorerTree, BackspaceIsAClickOnTheParentUpToTheDisc) {
    EXMain& window = openGames();
    clickNode(window, "C1D1S1");
    for (const char* above : {"C1D1", "R", "R"}) {
        QTest::keyClick(window.tvwdb, Qt::Key_Backspace);
        EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, above));
        EXPECT_EQ(window.focusWidget(), window.tvwdb);
        EXPECT_TRUE(countsAsListed(window, above));
    }
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" DOCS", " PLAY", "readme.txt", "setup.exe"));
    EXPECT_TRUE(window.DriveInfo->isVisible());
}

TEST_F(ExplorerTree, EnterIsADoubleClick) {
    EXMain& window = openGames();
    clickNode(window, "C1D1S2");
    QTest::keyClick(window.tvwdb, Qt::Key_Return);
    EXPECT_EQ(shared::SelectedDirectory, "C1D1S2");
    EXPECT_THAT(rig.shown, Contains("EXDir"));
}

TEST_F(ExplorerTree, TheRightButtonOpensThePopUp) {
    EXMain& window = openGames();
    const QPoint place = window.tvwdb->visualRect(window.tvwdb->nodes().place(3)).center();
    QTest::mousePress(window.tvwdb->viewport(), Qt::RightButton, {}, place);
    EXPECT_TRUE(window.MenuBar1->menu("Treeviewmenu").isVisible());
    EXPECT_EQ(window.tvwdb->selectedNode(), 3);
    window.MenuBar1->menu("Treeviewmenu").close();
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
    QApplication::sendEvent(window.tvwdb->viewport(), &key);
    EXPECT_TRUE(window.MenuBar1->menu("Treeviewmenu").isVisible());
}

} // namespace discaro::test
