#include "explorer/ExplorerRig.h"
#include "kit/controls/ToolbarDialog.h"

#include <QtCore/QSettings>
#include <QtCore/QTimer>
#include <QtWidgets/QDialog>
#include <QtWidgets/QListWidget>

namespace discaro::test {

using explorer::EXMain;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
namespace shared = app::Module1;

namespace {

class ExplorerCommands : public ExplorerTest {};

using View = kit::ListView::View;

} // namespace

// ---- Words

TEST_F(ExplorerCommands, WordsAreTakenInAnyCaseAndOthersDoNothing) {
    EXMain& window = openOn("C1D1");
    window.RunCommand("Info View");
    clickNode(window, "C1D1S1");
    EXPECT_EQ(shownPane(window), "Dirinfo");
    window.RunCommand("FILE VIEW");
    clickNode(window, "C1D1");
    EXPECT_EQ(shownPane(window), "lvwdb");
    for (const char* word : {"", "info", "report", "file view ", "\xff", "R"})
        window.RunCommand(word);
    clickNode(window, "C1D1S1");
    EXPECT_EQ(shownPane(window), "lvwdb");
    EXPECT_THAT(rig.shown, IsEmpty());
}

TEST_F(ExplorerCommands, TheFourLooksOfTheListingExcludeEachOther) {
    EXMain& window = openOn("C1D1");
    const std::tuple<const char*, View, const char*, const char*, const char*> kLooks[] = {
        {"large icons", View::LargeIcons, "listviewLargeIcons", "llarge", "Large Icons"},
        {"small icons", View::SmallIcons, "listviewSmallIcons", "lsmall", "Small Icons"},
        {"list view", View::List, "listviewListView", "llist", "List View"},
        {"report view", View::Report, "listviewDetails", "ldetails", "Report View"}};
    for (const auto& [word, view, item, popUpItem, button] : kLooks) {
        window.RunCommand(word);
        EXPECT_EQ(window.lvwdb->view(), view);
        for (const auto& other : kLooks) {
            const bool same = std::get<0>(other) == word;
            EXPECT_EQ(window.MenuBar1->isMarked(std::get<2>(other)), same) << word;
            EXPECT_EQ(window.MenuBar1->isMarked(std::get<3>(other)), same) << word;
            EXPECT_EQ(window.Toolbar1->isPressed(std::get<4>(other)), same) << word;
        }
        EXPECT_EQ(window.lvwdb->rows().count(), 4);
    }
}

TEST_F(ExplorerCommands, ReportViewTwiceChangesNothing) {
    EXMain& window = openOn("C1D1");
    window.RunCommand("report view");
    choose(window, "listviewDetails");
    EXPECT_EQ(window.lvwdb->view(), View::Report);
    EXPECT_TRUE(window.MenuBar1->isMarked("listviewDetails"));
    EXPECT_TRUE(window.MenuBar1->isMarked("ldetails"));
    EXPECT_TRUE(window.Toolbar1->isPressed("Report View"));
}

TEST_F(ExplorerCommands, FilesAndFactsTakeTurns) {
    EXMain& window = openOn("C1D1");
    window.RunCommand("info view");
    EXPECT_TRUE(window.Dirinfo->isVisible());
    EXPECT_FALSE(window.lvwdb->isVisible());
    EXPECT_TRUE(window.MenuBar1->isMarked("linfo"));
    EXPECT_FALSE(window.MenuBar1->isMarked("lfile"));
    EXPECT_TRUE(window.Toolbar1->isPressed("Info View"));
    window.RunCommand("file view");
    EXPECT_TRUE(window.MenuBar1->isMarked("listviewFileView"));
    EXPECT_FALSE(window.MenuBar1->isMarked("listviewInfoView"));
    EXPECT_TRUE(window.Toolbar1->isPressed("File View"));
}

TEST_F(ExplorerCommands, OnTheFirstNodeAPaneAppearsWithWhatItLastHeld) {
    EXMain& window = openOn("C1D1S1");
    clickNode(window, "R");
    EXPECT_TRUE(window.DriveInfo->isVisible());
    window.RunCommand("file view");
    EXPECT_FALSE(window.DriveInfo->isVisible());
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" OLD", "manual.doc"));
}

TEST_F(ExplorerCommands, ToolbarKeysReachTheSameCommands) {
    EXMain& window = openOn("C1D1");
    for (const char* key : {"List View", "descending", "fileext", "Info View"})
        pressButton(window, key);
    EXPECT_EQ(window.lvwdb->view(), View::List);
    EXPECT_EQ(window.lvwdb->rows().sortOrder(), Qt::DescendingOrder);
    EXPECT_EQ(window.lvwdb->rows().sortKey(), 3);
    EXPECT_EQ(shownPane(window), "Dirinfo");
    pressButton(window, "Exit");
    EXPECT_TRUE(rig.isUp("Switch"));
}

TEST_F(ExplorerCommands, AToolbarButtonLeavesTheKeyboardWhereItWas) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 2);
    pressButton(window, "prop");
    EXPECT_THAT(rig.shown, ElementsAre("EXFile"));
}

// ---- Properties

TEST_F(ExplorerCommands, PropertiesOfARowAreThoseOfTheFileOrDirectory) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 3);
    choose(window, "lprop");
    EXPECT_THAT(rig.shown, ElementsAre("EXFile"));
    EXPECT_EQ(shared::SelectedFile, "2");
    EXPECT_EQ(shared::SelectedDirectory, "C1D1");
    clickRow(*window.lvwdb, 1);
    window.RunCommand("prop");
    EXPECT_THAT(rig.shown, ElementsAre("EXFile", "EXDir"));
    EXPECT_EQ(shared::SelectedDirectory, "C1D1S2");
}

TEST_F(ExplorerCommands, PropertiesInTheTreeAreThoseOfTheNode) {
    EXMain& window = openOn("C1D1S1");
    choose(window, "fileProperties");
    EXPECT_THAT(rig.shown, ElementsAre("EXDir"));
    EXPECT_EQ(shared::SelectedDirectory, "C1D1S1");
    clickNode(window, "R");
    choose(window, "tprop");
    EXPECT_THAT(rig.shown, ElementsAre("EXDir", "EXCDROM"));
    EXPECT_EQ(shared::SelectedDisc, "1");
}

TEST_F(ExplorerCommands, ThePaneOfADirectoryCountsAsTheTree) {
    EXMain& window = openOn("C1D1S1");
    window.RunCommand("info view");
    window.Dirinfo->setFocus();
    window.RunCommand("prop");
    EXPECT_THAT(rig.shown, ElementsAre("EXDir"));
    EXPECT_EQ(shared::SelectedDirectory, "C1D1S1");
}

TEST_F(ExplorerCommands, ThePaneOfADiscShowsTheDisc) {
    EXMain& window = openOn("C1D1S1");
    clickNode(window, "R");
    window.DriveInfo->setFocus();
    window.RunCommand("prop");
    EXPECT_THAT(rig.shown, ElementsAre("EXCDROM"));
}

TEST_F(ExplorerCommands, PropertiesElsewhereAndOfNothingShowNothing) {
    EXMain& window = openOn("C1D1S2");
    window.Combo1->setFocus();
    window.RunCommand("prop");
    window.lvwdb->setFocus();
    window.RunCommand("prop");
    EXPECT_THAT(rig.shown, IsEmpty());
}

TEST_F(ExplorerCommands, PopUpsOfThePanesActOnTheTree) {
    EXMain& window = openOn("C1D1S1");
    window.RunCommand("info view");
    window.Combo1->setFocus();
    choose(window, "diprop");
    EXPECT_THAT(rig.shown, ElementsAre("EXDir"));
    EXPECT_EQ(window.focusWidget(), window.tvwdb);
    clickNode(window, "R");
    window.Combo1->setFocus();
    choose(window, "drprop");
    choose(window, "drprogtag");
    EXPECT_THAT(rig.shown, ElementsAre("EXDir", "EXCDROM", "ProgTag"));
    EXPECT_EQ(shared::TagKey, "CD1");
}

// ---- Program tags

TEST_F(ExplorerCommands, AFileIsTagged) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 3);
    choose(window, "lprogtag");
    EXPECT_THAT(rig.shown, ElementsAre("ProgTag"));
    EXPECT_EQ(shared::TagKey, "FILE2");
    EXPECT_EQ(shared::TagDisc, "1");
    EXPECT_EQ(shared::TagDiscName, "Games");
    EXPECT_EQ(shared::TagDirectory, "C1D1");
    EXPECT_EQ(shared::TagDirectoryPath, "D:\\");
    EXPECT_EQ(shared::TagFile, "2");
    EXPECT_EQ(shared::TagFileName, "setup.exe");
    EXPECT_EQ(shared::TagSize, "1,526 Kb");
    EXPECT_EQ(shared::TagFileCount, "1");
}

TEST_F(ExplorerCommands, ADirectoryRowIsGoneToAndTagged) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 0);
    window.RunCommand("tag");
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1S1"));
    EXPECT_EQ(shared::TagKey, "DIRC1D1S1");
    EXPECT_EQ(shared::TagDirectory, "C1D1S1");
    EXPECT_EQ(shared::TagFile, "");
    EXPECT_EQ(shared::TagFileCount, "0");
    EXPECT_TRUE(countsAsListed(window, "C1D1S1"));
}

TEST_F(ExplorerCommands, ADirectoryRowThatTheTreeDoesNotHaveTagsTheListedDirectory) {
    EXMain& window = openOn("C1D1S1");
    rig.catalogue.add(DirectoryRow{.number = "C1D1S1S2", .name = "New"});
    clickNode(window, "R");
    clickNode(window, "C1D1S1");
    ASSERT_EQ(window.lvwdb->rows().item(1).text, " NEW");
    clickRow(*window.lvwdb, 1);
    window.RunCommand("tag");
    EXPECT_EQ(shared::TagKey, "DIRC1D1S1");
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1S1"));
}

TEST_F(ExplorerCommands, NodesAndTheDiscAreTagged) {
    EXMain& window = openOn("C1D1");
    choose(window, "fileProgramTag");
    EXPECT_EQ(shared::TagKey, "DIRC1D1");
    EXPECT_EQ(shared::TagSize, "2048");
    EXPECT_EQ(shared::TagFileCount, "3");
    clickNode(window, "R");
    choose(window, "tprogtag");
    EXPECT_EQ(shared::TagKey, "CD1");
    EXPECT_EQ(shared::TagSize, "665856");
    EXPECT_EQ(shared::TagDirectory, "");
    window.DriveInfo->setFocus();
    window.RunCommand("tag");
    EXPECT_THAT(rig.shown, ElementsAre("ProgTag", "ProgTag", "ProgTag"));
}

TEST_F(ExplorerCommands, ElsewhereTheTagWindowComesWithWhatWasThere) {
    EXMain& window = openOn("C1D1");
    shared::TagKey = "FILE77";
    window.Combo1->setFocus();
    window.RunCommand("tag");
    EXPECT_THAT(rig.shown, ElementsAre("ProgTag"));
    EXPECT_EQ(shared::TagKey, "FILE77");
}

TEST_F(ExplorerCommands, NothingIsTaggedInAnEmptyListing) {
    EXMain& window = openOn("C1D1S2");
    window.lvwdb->setFocus();
    window.RunCommand("tag");
    EXPECT_THAT(rig.shown, IsEmpty());
}

TEST_F(ExplorerCommands, TheWindowMayGoWhileItTags) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 0);
    QTimer::singleShot(0, &window, [&] { window.RunCommand("exit"); });
    window.RunCommand("tag");
    EXPECT_TRUE(window.isUnloaded());
    EXPECT_THAT(rig.shown, Not(Contains("ProgTag")));
}

// ---- The directory simulator

TEST_F(ExplorerCommands, TheSimulatorGetsTheListedDirectory) {
    EXMain& window = openOn("C1D1");
    choose(window, "SimDir");
    EXPECT_THAT(rig.shown, ElementsAre("DirSim"));
    EXPECT_EQ(shared::SimDirectory, "C1D1");
    EXPECT_EQ(shared::SimParent, "R");
    EXPECT_EQ(shared::SimSubdirectories, "3");
    EXPECT_EQ(shared::SimFiles, "3");
    EXPECT_EQ(shared::SimSize, "2048");
    EXPECT_EQ(shared::SimDiscName, "Games       (CD-ROM No. 1)");
    EXPECT_EQ(rig.beeps.count(), 0);
}

TEST_F(ExplorerCommands, TheSimulatorRefusesTheFirstNode) {
    EXMain& window = openOn("C1D1");
    clickNode(window, "R");
    choose(window, "DirSim2");
    EXPECT_THAT(rig.shown, IsEmpty());
    EXPECT_EQ(rig.beeps.count(), 1);
}

TEST_F(ExplorerCommands, ACatalogueHandleThatAnotherWindowClosedIsOpenedAgain) {
    EXMain& window = openOn("C1D1");
    shared::CatalogueDb->Close();
    window.Combo1->setListIndex(0);
    EXPECT_EQ(window.tvwdb->nodes().count(), 3);
}

// ---- The user's own toolbar

TEST_F(ExplorerCommands, TheToolbarIsKeptOnlyWhenItIsCustomized) {
    EXMain& window = openOn("C1D1");
    window.Toolbar1->setArrangement({"Exit", "prop"});
    window.RunCommand("exit");
    EXMain& again = rig.open();
    EXPECT_EQ(again.Toolbar1->arrangement(), again.Toolbar1->declaredArrangement());
}

TEST_F(ExplorerCommands, ACustomizedToolbarComesBack) {
    EXMain& window = openOn("C1D1");
    QTimer::singleShot(0, &window, [] {
        auto* dialog = qobject_cast<kit::ToolbarDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->present->setCurrentRow(0);
        dialog->remove->click();
        dialog->remove->click();
        dialog->moveDown->click();
        dialog->accept();
    });
    choose(window, "CustomizetheToolbar");
    const QStringList layout = window.Toolbar1->arrangement();
    EXPECT_EQ(layout.mid(0, 2), (QStringList{"Report View", "List View"}));
    EXPECT_FALSE(window.Toolbar1->button("Large Icons").isVisible());
    QSettings settings("Quorlen", "Discaro");
    EXPECT_TRUE(settings.childGroups().contains("Toolbar Settings"));
    window.RunCommand("exit");
    EXMain& again = rig.open();
    EXPECT_EQ(again.Toolbar1->arrangement(), layout);
    again.RunCommand("large icons");
    EXPECT_TRUE(again.Toolbar1->isPressed("Large Icons")) << "a button taken away keeps its state";
}

TEST_F(ExplorerCommands, AToolbarFromWhichAllWasRemovedStaysEmpty) {
    EXMain& window = openOn("C1D1");
    QTimer::singleShot(0, &window, [] {
        auto* dialog = qobject_cast<kit::ToolbarDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->present->setCurrentRow(0);
        while (dialog->present->count() > 0)
            dialog->remove->click();
        dialog->accept();
    });
    choose(window, "CustomizetheToolbar");
    EXPECT_TRUE(window.Toolbar1->arrangement().isEmpty());
    window.RunCommand("exit");
    EXPECT_TRUE(rig.open().Toolbar1->arrangement().isEmpty());
}

} // namespace discaro::test
