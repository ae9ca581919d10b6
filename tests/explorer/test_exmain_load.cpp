#include "app/Windows.h"
#include "explorer/ExplorerRig.h"

namespace discaro::test {

using explorer::EXMain;
using testing::Contains;
using testing::Not;
namespace shared = app::Module1;

class ExplorerLoad : public ExplorerTest {};

TEST_F(ExplorerLoad, TheLoadHandlerOnlyStartsTheDelayedLoad) {
    app::Windows::Show("EXMain");
    const auto& window = *static_cast<EXMain*>(app::Windows::Find("EXMain"));
    EXPECT_TRUE(window.Timer2->isEnabled());
    EXPECT_EQ(window.Timer2->interval(), 100);
    EXPECT_EQ(window.tvwdb->nodes().count(), 0);
    EXPECT_EQ(window.Combo1->count(), 0);
}

TEST_F(ExplorerLoad, OpensOnTheFactsOfTheFirstDiscByName) {
    EXMain& window = rig.open();
    EXPECT_FALSE(window.Timer2->isEnabled());
    EXPECT_FALSE(rig.isUp("Loading"));
    EXPECT_EQ(window.Combo1->text(), "Atlas       (CD-ROM No. 2)");
    EXPECT_EQ(window.caption(), "Atlas       (CD-ROM No. 2)");
    EXPECT_EQ(window.Label3->text(), "CD-ROM Number : 2");
    EXPECT_EQ(window.tvwdb->selectedNode(), 1);
    EXPECT_TRUE(window.DriveInfo->isVisible());
    EXPECT_FALSE(window.lvwdb->isVisible());
    EXPECT_FALSE(window.Dirinfo->isVisible());
    EXPECT_EQ(columnOf(*window.DriveInfo, 1)[1], "Atlas");
    EXPECT_EQ(window.focusWidget(), window.tvwdb);
    clickNode(window, "C2D1");
    EXPECT_EQ(shownPane(window), "lvwdb");
}

TEST_F(ExplorerLoad, TheProgressBarStandsInTheThirdPanel) {
    EXMain& window = rig.open();
    EXPECT_EQ(window.prgload->parentWidget(), window.StatusBar1);
    const QRect panel = window.StatusBar1->panelPlace(3);
    EXPECT_EQ(window.prgload->geometry(), QRect(panel.left() + 3, 3, panel.width() - 6, panel.height() - 3));
    EXPECT_FALSE(window.StatusBar1->isAutoSize(3));
    EXPECT_FALSE(window.prgload->isVisible());
    EXPECT_EQ(window.prgload->min(), 0);
}

TEST(ExplorerEmpty, AnEmptyCatalogueBeepsAndGoesBackToTheMenu) {
    ExplorerRig rig;
    app::Windows::Show("Loading");
    app::Windows::Show("EXMain");
    rig.load(*static_cast<EXMain*>(app::Windows::Find("EXMain")));
    EXPECT_EQ(rig.beeps.count(), 1);
    EXPECT_TRUE(rig.isUp("Switch"));
    EXPECT_FALSE(rig.isUp("EXMain"));
    EXPECT_FALSE(rig.isUp("Loading"));
}

TEST_F(ExplorerLoad, EscapeShowsTheMenuFromTreeListingAndDiscList) {
    for (const int place : {0, 1, 2}) {
        app::Windows::Unload("Switch");
        auto& window = rig.open();
        QWidget* const focus[] = {window.tvwdb, window.lvwdb, window.Combo1};
        QTest::keyClick(focus[place], Qt::Key_Escape);
        EXPECT_FALSE(rig.isUp("EXMain")) << place;
        EXPECT_TRUE(rig.isUp("Switch")) << place;
    }
}

TEST_F(ExplorerLoad, ExitAndTheFrameBothShowTheMenu) {
    rig.open().RunCommand("exit");
    EXPECT_TRUE(rig.isUp("Switch"));
    EXPECT_FALSE(rig.isUp("EXMain"));
    app::Windows::Unload("Switch");
    rig.open().close();
    EXPECT_TRUE(rig.isUp("Switch"));
    EXPECT_FALSE(rig.isUp("EXMain"));
}

TEST_F(ExplorerLoad, TaskWindowsGetTheExplorerAsTheWayBack) {
    const std::pair<const char*, const char*> kCommands[] = {
        {"scan", "Scanform"}, {"delete", "DeleteCD"}, {"workshop", "Workshop"}, {"prog", "Programs"}};
    for (const auto& [word, target] : kCommands) {
        shared::ReturnTo.clear();
        shared::ScanCancelled = 1;
        rig.open().RunCommand(word);
        EXPECT_TRUE(rig.isUp(target)) << word;
        EXPECT_FALSE(rig.isUp("EXMain")) << word;
        EXPECT_FALSE(rig.isUp("Switch")) << word;
        EXPECT_TRUE(rig.isUp("Loading")) << "the new window takes it away";
        EXPECT_EQ(shared::ReturnTo, "explore");
        EXPECT_EQ(shared::ScanCancelled, std::string(word) == "scan" ? 0 : 1);
        app::Windows::Unload(target);
    }
    shared::ScanCancelled = 0;
}

TEST_F(ExplorerLoad, AScanDoesNotShowTheMenu) {
    EXMain& window = rig.open();
    pressButton(window, "Scan");
    EXPECT_THAT(rig.shown, Contains("Scanform"));
    EXPECT_THAT(rig.shown, Not(Contains("Switch")));
    EXPECT_FALSE(rig.isUp("Switch"));
}

TEST_F(ExplorerLoad, TheSearchOnlyHidesTheExplorer) {
    EXMain& window = rig.open();
    clickNode(window, "C2D1S1");
    const auto rows = textsOf(*window.lvwdb);
    // Whatever is written meanwhile: nothing is read again.
    rig.catalogue.add(FileRow{.directory = "C2D1S1", .name = "late.gif", .extension = ".gif"});
    window.RunCommand("search");
    EXPECT_TRUE(rig.isUp("Search"));
    EXPECT_TRUE(rig.isUp("EXMain"));
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(shared::ReturnTo, "explore");
    app::Windows::Unload("Search");
    app::Windows::Show("EXMain");
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C2D1S1"));
    EXPECT_EQ(textsOf(*window.lvwdb), rows);
    EXPECT_TRUE(window.lvwdb->isVisible());
    window.Unload();
    EXPECT_TRUE(rig.isUp("Switch")) << "not handed over";
}

TEST_F(ExplorerLoad, AboutIsModalAndLeavesTheExplorer) {
    EXMain& window = rig.open();
    window.RunCommand("About");
    EXPECT_THAT(rig.shown, Contains("About"));
    EXPECT_TRUE(window.isLoaded());
}

TEST_F(ExplorerLoad, AHandOverToAWindowThatDoesNotExistDoesNothing) {
    app::Windows::Clear();
    app::Windows::Register("EXMain", [] { return new EXMain; });
    app::Windows::Show("EXMain");
    auto& window = *static_cast<EXMain*>(app::Windows::Find("EXMain"));
    rig.load(window);
    for (const char* word : {"scan", "delete", "workshop", "prog", "search", "about", "prop", "tag"})
        window.RunCommand(word);
    EXPECT_TRUE(window.isVisible());
    for (const char* item :
         {"newsearsh", "scannewcd", "Deletecdromentry", "programsexplorer", "dbaseworkshop", "aboutbox",
          "fileProgramTag", "diprogtag", "drprogtag", "lprogtag", "tprogtag", "SimDir", "DirSim2"})
        EXPECT_FALSE(window.MenuBar1->item(item).isEnabled()) << item;
    for (const char* key : {"tag", "Search", "Scan", "Delete", "prog", "Workshop", "About"})
        EXPECT_FALSE(window.Toolbar1->isButtonEnabled(key)) << key;
    EXPECT_TRUE(window.Toolbar1->isButtonEnabled("Exit"));
    app::Windows::Register("Switch", [this] { return new StubWindow("Switch", StubWindow::Stay::Up, rig.shown); });
    window.Unload();
    EXPECT_TRUE(rig.isUp("Switch")) << "not handed over";
}

TEST_F(ExplorerLoad, TheTrayIconFlashesWhileMinimised) {
    EXMain& window = rig.open();
    EXPECT_EQ(window.TrayIcon1->toolTipText(), "Discaro - Explorer View");
    emit window.TrayIcon1->Minimise();
    EXPECT_EQ(window.state(), kit::Form::State::Minimised);
    EXPECT_TRUE(window.TrayIcon1->flashEnabled());
    emit window.TrayIcon1->Restore();
    EXPECT_EQ(window.state(), kit::Form::State::Normal);
    EXPECT_FALSE(window.TrayIcon1->flashEnabled());
}

// ---- Jumps

class ExplorerJump : public ExplorerTest {
protected:
    EXMain& jump(const char* disc, const char* directory, const char* file) {
        shared::JumpDisc = disc;
        shared::JumpDirectory = directory;
        shared::JumpFile = file;
        EXMain& window = rig.open();
        EXPECT_EQ(shared::JumpDisc, "");
        EXPECT_EQ(shared::JumpDirectory, "");
        EXPECT_EQ(shared::JumpFile, "");
        return window;
    }
};

TEST_F(ExplorerJump, GoesToDiscDirectoryAndFile) {
    EXMain& window = jump("1", "C1D1S1S1", "");
    EXPECT_EQ(window.Combo1->text(), "Games       (CD-ROM No. 1)");
    EXPECT_EQ(window.caption(), "Games       (CD-ROM No. 1)");
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1S1S1"));
    EXPECT_EQ(window.Label2->text(), "D:\\DOCS\\OLD");
    EXPECT_FALSE(countsAsListed(window, "C1D1S1S1"));
}

TEST_F(ExplorerJump, SelectsTheFile) {
    EXMain& window = jump("1", "C1D1", "2");
    const int place = window.lvwdb->selectedItem();
    EXPECT_EQ(window.lvwdb->rows().item(place).text, " DOCS")
        << "a directory's row holds the node that is listed, here 2, and comes first";
    EXPECT_TRUE(window.lvwdb->isSelected(place));
}

TEST_F(ExplorerJump, SelectsTheFileWhereNoDirectoryRowHasItsNumber) {
    EXMain& window = jump("1", "C1D1S1", "3");
    EXPECT_EQ(window.lvwdb->selectedRow().text, " OLD") << "DOCS is node 3";
    EXMain& other = *static_cast<EXMain*>(app::Windows::Find("EXMain"));
    shared::JumpDisc = "2";
    shared::JumpDirectory = "C2D1S1";
    shared::JumpFile = "5";
    rig.load(other);
    EXPECT_EQ(other.lvwdb->selectedRow().text, "africa.gif");
    EXPECT_EQ(other.lvwdb->selectedPlaces(), std::vector<int>{other.lvwdb->selectedItem()});
}

TEST_F(ExplorerJump, ADiscThatIsNotThereLeavesTheFirstLine) {
    EXMain& window = jump("99", "", "");
    EXPECT_EQ(window.Combo1->listIndex(), 0);
    EXPECT_EQ(window.Label3->text(), "CD-ROM Number : 2");
}

TEST_F(ExplorerJump, ADirectoryThatIsNotThereLeavesTheFirstNode) {
    EXMain& window = jump("1", "C1D1S77", "12345");
    EXPECT_EQ(window.tvwdb->selectedNode(), 1);
    EXPECT_TRUE(window.DriveInfo->isVisible());
}

TEST_F(ExplorerJump, ReachesAHiddenExplorerAndPutsItBackToFiles) {
    EXMain& window = rig.open();
    window.RunCommand("info view");
    window.RunCommand("search");
    shared::JumpDisc = "1";
    shared::JumpDirectory = "C1D1S1";
    app::Windows::Unload("Search");
    app::Windows::Show("EXMain");
    rig.load(window);
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1S1"));
    EXPECT_TRUE(window.lvwdb->isVisible());
    EXPECT_TRUE(window.MenuBar1->isMarked("listviewInfoView")) << "marks and state may differ";
    EXPECT_TRUE(window.Toolbar1->isPressed("Info View"));
    EXPECT_EQ(window.Combo1->count(), 2);
    EXPECT_EQ(window.tvwdb->nodes().count(), 5);
}

TEST_F(ExplorerJump, TheDelayedLoadPutsTheOrderBackToAscending) {
    EXMain& window = rig.open();
    window.RunCommand("descending");
    rig.load(window);
    EXPECT_EQ(window.lvwdb->rows().sortOrder(), Qt::AscendingOrder);
    EXPECT_TRUE(window.Toolbar1->isPressed("descending"));
}

} // namespace discaro::test
