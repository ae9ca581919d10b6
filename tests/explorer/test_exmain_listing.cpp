#include "base/RuntimeError.h"
#include "catalogue/EmptyCatalogue.h"
#include "db/sqlite/Connection.h"
#include "explorer/ExplorerRig.h"
#include "support/windows/ScriptedMsgBox.h"

#include <QtGui/QClipboard>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeView>

namespace discaro::test {

using explorer::EXMain;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
namespace shared = app::Module1;

namespace {

class ExplorerListing : public ExplorerTest {
protected:
    static std::string panel(const EXMain& window, int number) {
        return window.StatusBar1->panelText(number).toStdString();
    }
    static QHeaderView& header(EXMain& window) { return *static_cast<QTreeView&>(window.lvwdb->shown()).header(); }
};

} // namespace

// ---- Rows

TEST_F(ExplorerListing, DirectoriesStandBeforeFilesInCapitals) {
    EXMain& window = openOn("C1D1");
    const kit::ListItem& directory = window.lvwdb->rows().item(1);
    EXPECT_EQ(directory.key, "C1D1S2");
    EXPECT_EQ(directory.text, " PLAY");
    EXPECT_EQ(directory.icon, "folder");
    EXPECT_EQ(directory.tag, "2");
    EXPECT_TRUE(directory.subItems.empty());
    const kit::ListItem& file = window.lvwdb->rows().item(3);
    EXPECT_EQ(file.key, "2id");
    EXPECT_EQ(file.tag, "2");
    EXPECT_EQ(file.icon, "setup");
    EXPECT_EQ(file.column(1), "1,526 Kb");
    EXPECT_EQ(file.column(8), "000,000,000,003");
}

TEST_F(ExplorerListing, AnEmptyDirectoryIsEmpty) {
    rig.catalogue.run("UPDATE Directories SET Size = 2048 WHERE \"id number\" = 'C1D1S2'");
    EXMain& window = openOn("C1D1S2");
    EXPECT_EQ(window.lvwdb->rows().count(), 0);
    EXPECT_EQ(panel(window, 1), "0 File(s)");
    EXPECT_EQ(panel(window, 2), "Total Size = 2.00 MB");
    EXPECT_FALSE(window.prgload->isVisible());
}

TEST_F(ExplorerListing, InInfoViewTheListingIsHiddenButFilled) {
    EXMain& window = openOn("C1D1");
    window.RunCommand("info view");
    clickNode(window, "C1D1S1");
    EXPECT_FALSE(window.lvwdb->isVisible());
    EXPECT_TRUE(window.Dirinfo->isVisible());
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" OLD", "manual.doc"));
    window.RunCommand("file view");
    EXPECT_TRUE(window.lvwdb->isVisible());
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" OLD", "manual.doc"));
}

TEST_F(ExplorerListing, TheMissingExtensionOfOneListingDoesNotReachTheNext) {
    rig.catalogue.add(FileRow{.directory = "C1D1S1", .name = "a.zip", .extension = ""});
    rig.catalogue.add(FileRow{.directory = "C1D1S1", .name = "b", .extension = ""});
    rig.catalogue.add(FileRow{.directory = "C1D1S2", .name = "c", .extension = ""});
    EXMain& window = openOn("C1D1S1");
    EXPECT_EQ(window.lvwdb->rows().item(3).column(3), ".zip File");
    clickNode(window, "C1D1S2");
    EXPECT_EQ(window.lvwdb->rows().item(0).column(3), ". File");
    EXPECT_EQ(window.lvwdb->rows().item(0).icon, "file");
}

TEST_F(ExplorerListing, AnEmptyDirectorySaysSo) {
    rig.catalogue.run("DELETE FROM Files WHERE \"directory number\" = 'C1D1'");
    EXMain& window = openOn("C1D1S2");
    const auto says = [&window] { return window.lvwdb->shown().accessibleDescription(); };
    EXPECT_EQ(says(), "This directory is empty");
    clickNode(window, "C1D1S1");
    EXPECT_EQ(says(), "");
    clickNode(window, "C1D1S2");
    window.Combo1->setListIndex(0);
    EXPECT_EQ(says(), "") << "nothing is listed";
    choose(window, "Showall");
    window.RunCommand("file view");
    clickNode(window, "C1D1");
    EXPECT_EQ(says(), "No files in this directory") << "it has directories, which are not listed";
}

// By a number with a wildcard, the rows are found before the first of them is read.
TEST_F(ExplorerListing, ADirectoryWhoseRowsAreDamagedIsNotCalledEmpty) {
    rig.catalogue.add(DirectoryRow{.number = "C2D1S?", .name = "ODD"});
    const auto number = [this](const char* sql) { return std::stoll(rig.catalogue.text(sql)); };
    const auto page = number("SELECT rootpage FROM sqlite_master WHERE name = 'Files'");
    const auto size = number("PRAGMA page_size");
    overwriteFile(rig.catalogue.path(), (page - 1) * size, std::string(static_cast<size_t>(size), '\xff'));
    EXMain& window = openOn("C1D1S2");
    const auto says = [&window] { return window.lvwdb->shown().accessibleDescription(); };
    EXPECT_EQ(says(), "This directory is empty");
    window.Combo1->setListIndex(0);
    clickNode(window, "C2D1S?");
    EXPECT_EQ(window.lvwdb->rows().count(), 0);
    EXPECT_EQ(says(), "") << "it has files that can't be read";
}

TEST_F(ExplorerListing, ADirectoryThatCannotBeReadIsNotCalledEmpty) {
    db::Connection::setLockWait(0);
    EXMain& window = openOn("C1D1");
    RawDatabase other(rig.catalogue.path());
    other.execute("BEGIN EXCLUSIVE");
    clickNode(window, "C1D1S2");
    EXPECT_EQ(window.lvwdb->shown().accessibleDescription(), "");
    other.execute("ROLLBACK");
}

// ---- The selected item

TEST_F(ExplorerListing, TheFirstRowIsTheSelectedItemAndLooksIt) {
    EXMain& window = openOn("C1D1");
    EXPECT_EQ(window.lvwdb->selectedPlaces(), std::vector<int>{0});
    EXPECT_EQ(panel(window, 1), "4 File(s)") << "the panels still tell of the directory";
    window.lvwdb->setFocus();
    window.RunCommand("prop");
    EXPECT_THAT(rig.shown, Contains("EXDir"));
    EXPECT_EQ(shared::SelectedDirectory, "C1D1S1");
    clickRow(*window.lvwdb, 3);
    EXPECT_EQ(window.lvwdb->selectedPlaces(), std::vector<int>{3});
    clickNode(window, "C1D1S1");
    EXPECT_EQ(window.lvwdb->selectedPlaces(), std::vector<int>{0});
}

TEST_F(ExplorerListing, TheFirstRowCountsWithAnotherThatIsClickedWithControl) {
    EXMain& window = rig.open();
    clickNode(window, "C2D1S1");
    clickRow(*window.lvwdb, 1, Qt::ControlModifier);
    EXPECT_EQ(panel(window, 1), "2 File(s)");
    EXPECT_EQ(panel(window, 2), "File Size = 30 KB");
}

TEST_F(ExplorerListing, BackspaceGoesUpToTheDisc) {
    EXMain& window = openOn("C1D1S1S1");
    window.lvwdb->setFocus();
    for (const char* above : {"C1D1S1", "C1D1"}) {
        QTest::keyClick(&window.lvwdb->shown(), Qt::Key_Backspace);
        EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, above));
    }
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" DOCS", " PLAY", "readme.txt", "setup.exe"));
    EXPECT_EQ(window.focusWidget(), &window.lvwdb->shown());
    QTest::keyClick(&window.lvwdb->shown(), Qt::Key_Backspace);
    EXPECT_EQ(window.tvwdb->selectedNode(), 1);
    EXPECT_TRUE(window.DriveInfo->isVisible());
    EXPECT_EQ(window.focusWidget(), &window.DriveInfo->shown()) << "the keyboard goes along";
    EXPECT_TRUE(countsAsListed(window, "R"));
}

TEST_F(ExplorerListing, NamesAndFactsAreCopied) {
    rig.catalogue.add(FileRow{.directory = "C1D1", .name = "R&D  x.txt", .extension = ".txt"});
    EXMain& window = openOn("C1D1");
    const auto copied = [](kit::ListView& list) {
        QTest::keyClick(&list.shown(), Qt::Key_C, Qt::ControlModifier);
        return QApplication::clipboard()->text().toStdString();
    };
    EXPECT_EQ(copied(*window.lvwdb), "DOCS");
    clickRow(*window.lvwdb, 1);
    clickRow(*window.lvwdb, 4, Qt::ControlModifier);
    EXPECT_EQ(copied(*window.lvwdb), "Play\nR&D  x.txt") << "a directory's own name";
    window.RunCommand("info view");
    clickRow(*window.Dirinfo, 8);
    EXPECT_EQ(copied(*window.Dirinfo), "1,536 Kb");
    clickNode(window, "R");
    clickRow(*window.DriveInfo, 1);
    EXPECT_EQ(copied(*window.DriveInfo), "Games");
}

// ---- Double clicks

TEST_F(ExplorerListing, ADoubleClickOnADirectoryWalksDown) {
    EXMain& window = openOn("C1D1");
    doubleClickRow(*window.lvwdb, 0);
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1S1"));
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" OLD", "manual.doc"));
    EXPECT_EQ(window.Label2->text(), "D:\\DOCS");
    EXPECT_TRUE(countsAsListed(window, "C1D1S1"));
}

TEST_F(ExplorerListing, ADoubleClickOnAnEmptyDirectoryShowsItEmpty) {
    EXMain& window = openOn("C1D1");
    doubleClickRow(*window.lvwdb, 1);
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1S2"));
    EXPECT_EQ(window.lvwdb->rows().count(), 0);
    EXPECT_EQ(panel(window, 1), "0 File(s)");
}

TEST_F(ExplorerListing, ADoubleClickOnAFileShowsItsProperties) {
    EXMain& window = openOn("C1D1");
    doubleClickRow(*window.lvwdb, 2);
    EXPECT_THAT(rig.shown, Contains("EXFile"));
    EXPECT_EQ(shared::SelectedFile, "1");
    EXPECT_EQ(shared::SelectedDirectory, "C1D1");
}

TEST_F(ExplorerListing, ADirectoryThatTheTreeDoesNotHaveGoesNowhere) {
    EXMain& window = openOn("C1D1");
    rig.catalogue.add(DirectoryRow{.number = "C1D1S3", .name = "New"});
    clickNode(window, "R");
    clickNode(window, "C1D1");
    ASSERT_EQ(window.lvwdb->rows().item(2).text, " NEW");
    doubleClickRow(*window.lvwdb, 2);
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1"));
    EXPECT_EQ(window.lvwdb->rows().count(), 5);
}

TEST_F(ExplorerListing, EnterIsADoubleClick) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 1);
    QTest::keyClick(&window.lvwdb->shown(), Qt::Key_Return);
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1S2"));
}

TEST_F(ExplorerListing, TypingABeginningFindsDirectoriesAndFiles) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 0);
    QTest::keyClick(&window.lvwdb->shown(), Qt::Key_S);
    EXPECT_EQ(window.lvwdb->selectedItem(), 3);
    EXMain& again = window;
    QTest::keyClick(&again.lvwdb->shown(), Qt::Key_Home);
    EXPECT_EQ(again.lvwdb->selectedItem(), 0);
}

TEST_F(ExplorerListing, TheRightButtonOpensThePopUpOnTheRow) {
    EXMain& window = openOn("C1D1");
    const QRect row = window.lvwdb->shown().visualRect(window.lvwdb->rows().index(2, 0));
    QTest::mousePress(window.lvwdb->shown().viewport(), Qt::RightButton, {}, row.center());
    EXPECT_TRUE(window.MenuBar1->menu("Listviewmenu").isVisible());
    EXPECT_EQ(window.lvwdb->selectedItem(), 2);
}

// ---- Status bar

TEST_F(ExplorerListing, ThePanelsTellOfTheDirectory) {
    EXMain& window = openOn("C1D1");
    EXPECT_EQ(panel(window, 1), "4 File(s)") << "directories count too";
    EXPECT_EQ(panel(window, 2), "Total Size = 1.50 MB") << "the directory's own files";
}

TEST_F(ExplorerListing, ASelectionOfFilesIsAddedUp) {
    EXMain& window = rig.open();
    clickNode(window, "C2D1S1");
    clickRow(*window.lvwdb, 0);
    EXPECT_EQ(panel(window, 1), "1 File(s)");
    EXPECT_EQ(panel(window, 2), "File Size = 10 KB");
    clickRow(*window.lvwdb, 1, Qt::ControlModifier);
    EXPECT_EQ(panel(window, 1), "2 File(s)");
    EXPECT_EQ(panel(window, 2), "File Size = 30 KB");
}

TEST_F(ExplorerListing, DirectoriesInASelectionCountButHaveNoSize) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 0);
    clickRow(*window.lvwdb, 2, Qt::ControlModifier);
    EXPECT_EQ(panel(window, 1), "2 File(s)");
    EXPECT_EQ(panel(window, 2), "File Size = 10 KB");
}

TEST_F(ExplorerListing, AClickOnADirectoryTellsOfTheListingAgain) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 2);
    EXPECT_EQ(panel(window, 1), "1 File(s)");
    clickRow(*window.lvwdb, 1);
    EXPECT_EQ(panel(window, 1), "4 File(s)");
    EXPECT_EQ(panel(window, 2), "Total Size = 1.50 MB");
}

TEST_F(ExplorerListing, AFileThatIsClearedTellsOfTheListingAgain) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 2);
    clickRow(*window.lvwdb, 2, Qt::ControlModifier);
    EXPECT_TRUE(window.lvwdb->selectedPlaces().empty());
    EXPECT_EQ(panel(window, 1), "4 File(s)");
    EXPECT_EQ(panel(window, 2), "Total Size = 1.50 MB");
}

TEST_F(ExplorerListing, TheKeyboardKeepsThePanelsInStep) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 2);
    QTest::keyClick(&window.lvwdb->shown(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(panel(window, 1), "2 File(s)");
    EXPECT_EQ(panel(window, 2), "File Size = 1536 KB");
}

TEST_F(ExplorerListing, AClickBesideTheRowsIsNoError) {
    EXMain& window = openOn("C1D1");
    QWidget& room = *window.lvwdb->shown().viewport();
    QTest::mouseClick(&room, Qt::LeftButton, {}, QPoint(5, room.height() - 5));
    EXPECT_EQ(panel(window, 1), "4 File(s)");
}

TEST_F(ExplorerListing, AClickIntoAnEmptyListingEndsTheProgram) {
    EXMain& window = openOn("C1D1S2");
    const ThrowingEnd end;
    ScriptedMsgBox answers;
    answers.expect("Run-time error 3601:\n\n" +
                       QString::fromStdString(
                           base::RuntimeError(base::ErrorNumber::InvalidValue, "the list has no row").description()),
                   kit::Buttons::Ok, kit::Icon::Critical, QCoreApplication::applicationName());
    EXPECT_THROW(asHandler([&window] { emit window.lvwdb->Click(); }), ProgramEnded);
    EXPECT_EQ(answers.asked(), 1);
    // That is what a click with the mouse comes to. The handler rests: no exception may pass through the mouse.
    window.lvwdb->disconnect(&window);
    QSignalSpy clicks(window.lvwdb, &kit::ListView::Click);
    QTest::mouseClick(window.lvwdb->shown().viewport(), Qt::LeftButton, {}, QPoint(20, 20));
    EXPECT_EQ(clicks.size(), 1);
}

// ---- Panes

TEST_F(ExplorerListing, TheFactsOfADiscHaveTheirPictures) {
    EXMain& window = rig.open();
    EXPECT_THAT(textsOf(*window.DriveInfo),
                ElementsAre("CD-ROM Number", "Preferred Name", "Volume Label", "Serial Number", "File System",
                            "Total Size", "Free Size", "", "Comments", "Autorun"));
    EXPECT_THAT(columnOf(*window.DriveInfo, 1),
                ElementsAre("2", "Atlas", "LABEL", "1A2B-3C4D", "CDFS", "650 Mb", "0 Mb", "", "Scanned.", ""));
    for (int place = 0; place < 10; ++place) {
        const QVariant picture = window.DriveInfo->rows().index(place, 0).data(Qt::DecorationRole);
        EXPECT_EQ(picture.value<QIcon>().isNull(), place == 7) << place;
    }
}

TEST_F(ExplorerListing, TheFactsOfADirectoryStandInOrder) {
    EXMain& window = openOn("C1D1");
    EXPECT_THAT(columnOf(*window.Dirinfo, 1),
                ElementsAre("1", "D:\\", "D:\\", "", "2", "3", "2", "3", "1,536 Kb", "2,048 Kb", "", ""));
    EXPECT_EQ(window.Dirinfo->rows().columns()[0].header, "Inforamtion");
    EXPECT_EQ(window.DriveInfo->rows().columns()[0].header, "Information");
}

TEST_F(ExplorerListing, DoubleClicksOnFactsShowThePropertiesOfTheTree) {
    EXMain& window = openOn("C1D1S1");
    window.RunCommand("info view");
    doubleClickRow(*window.Dirinfo, 1);
    EXPECT_THAT(rig.shown, Contains("EXDir"));
    EXPECT_EQ(shared::SelectedDirectory, "C1D1S1");
    EXPECT_EQ(window.focusWidget(), window.tvwdb);
    clickNode(window, "R");
    doubleClickRow(*window.DriveInfo, 1);
    EXPECT_THAT(rig.shown, Contains("EXCDROM"));
    EXPECT_EQ(shared::SelectedDisc, "1");
}

TEST_F(ExplorerListing, DoubleClicksBesideTheFactsAreForThePaneToo) {
    EXMain& window = openOn("C1D1S1");
    rig.shown.clear();
    window.RunCommand("info view");
    const auto doubleClickBelow = [](kit::ListView& pane) {
        QWidget& room = *pane.shown().viewport();
        doubleClick(room, QPoint(room.width() / 2, room.height() - 4));
    };
    doubleClickBelow(*window.Dirinfo);
    EXPECT_EQ(window.focusWidget(), window.tvwdb);
    clickNode(window, "R");
    doubleClickBelow(*window.DriveInfo);
    EXPECT_EQ(window.focusWidget(), window.tvwdb);
    clickNode(window, "C1D1");
    window.RunCommand("file view");
    doubleClickBelow(*window.lvwdb);
    EXPECT_THAT(rig.shown, ElementsAre("EXDir", "EXCDROM")) << "the listing has no row there";
}

TEST_F(ExplorerListing, FactsHavePopUpsOfTheirOwn) {
    EXMain& window = rig.open();
    QTest::mousePress(window.DriveInfo->shown().viewport(), Qt::RightButton);
    EXPECT_TRUE(window.MenuBar1->menu("Driveview").isVisible());
    window.MenuBar1->menu("Driveview").close();
    clickNode(window, "C2D1S1");
    window.RunCommand("info view");
    QTest::mousePress(window.Dirinfo->shown().viewport(), Qt::RightButton);
    EXPECT_TRUE(window.MenuBar1->menu("Dirview").isVisible());
}

// ---- Order

TEST_F(ExplorerListing, SizesSortByTheHiddenColumnWithDirectoriesFirst) {
    rig.catalogue.add(FileRow{.directory = "C1D1", .name = "a.txt", .extension = ".txt", .size = 1000.0});
    rig.catalogue.add(FileRow{.directory = "C1D1", .name = "b.txt", .extension = ".txt", .size = 999.0});
    EXMain& window = openOn("C1D1");
    choose(window, "thefilesize");
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" DOCS", " PLAY", "readme.txt", "b.txt", "a.txt", "setup.exe"));
    EXPECT_TRUE(window.MenuBar1->isMarked("thefilesize"));
    EXPECT_TRUE(window.MenuBar1->isMarked("lsize"));
    EXPECT_FALSE(window.MenuBar1->isMarked("thefilename"));
    EXPECT_FALSE(window.MenuBar1->isMarked("lname"));
    EXPECT_TRUE(window.Toolbar1->isPressed("filesize"));
    EXPECT_FALSE(window.Toolbar1->isPressed("filename"));
}

TEST_F(ExplorerListing, TheOrderStaysFromOneDirectoryToTheNext) {
    EXMain& window = openOn("C1D1S1");
    choose(window, "thefilesize");
    choose(window, "DescendingOrder");
    clickNode(window, "C1D1");
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre("setup.exe", "readme.txt", " DOCS", " PLAY"));
    EXPECT_EQ(window.lvwdb->rows().sortKey(), 2);
    EXPECT_TRUE(window.Toolbar1->isPressed("descending"));
    EXPECT_TRUE(window.MenuBar1->isMarked("ldescorder"));
    EXPECT_FALSE(window.MenuBar1->isMarked("AscendingOrder"));
}

TEST_F(ExplorerListing, KeyAndOrderAreIndependent) {
    EXMain& window = openOn("C1D1");
    choose(window, "DescendingOrder");
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre("setup.exe", "readme.txt", " PLAY", " DOCS"));
    choose(window, "lext");
    EXPECT_EQ(window.lvwdb->rows().sortOrder(), Qt::DescendingOrder);
    choose(window, "lascorder");
    EXPECT_EQ(window.lvwdb->rows().sortKey(), 3);
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre(" DOCS", " PLAY", "setup.exe", "readme.txt"));
}

TEST_F(ExplorerListing, AClickOnAHeaderPicksTheKeyAndNeverTurnsTheOrder) {
    EXMain& window = openOn("C1D1");
    for (int click = 0; click < 2; ++click) {
        QHeaderView& headers = header(window);
        QTest::mouseClick(headers.viewport(), Qt::LeftButton, {},
                          QPoint(headers.sectionViewportPosition(1) + 20, headers.height() / 2));
        EXPECT_EQ(window.lvwdb->rows().sortKey(), 2);
        EXPECT_EQ(window.lvwdb->rows().sortOrder(), Qt::AscendingOrder);
    }
    EXPECT_TRUE(window.Toolbar1->isPressed("filesize"));
}

TEST_F(ExplorerListing, ThreeColumnsAreNeverSeen) {
    EXMain& window = openOn("C1D1");
    ASSERT_EQ(header(window).count(), 6);
    std::vector<std::string> headers;
    for (int section = 0; section < 6; ++section)
        headers.push_back(
            window.lvwdb->rows().headerData(section, Qt::Horizontal, Qt::DisplayRole).toString().toStdString());
    EXPECT_THAT(headers, ElementsAre("File Name", "Size", "Extension", "Modified", "Attributes", "No. of Icons"));
}

TEST_F(ExplorerListing, DatesSortByYearThenMonthThenDay) {
    for (const char* date : {"01/05/99", "12/31/98", "02/01/99"})
        rig.catalogue.add(FileRow{.directory = "C1D1S2", .name = date, .extension = "", .date = date});
    EXMain& window = openOn("C1D1S2");
    window.RunCommand("filedate");
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre("12/31/98", "01/05/99", "02/01/99"));
}

TEST_F(ExplorerListing, DatesSortRightWithinACenturyOnly) {
    for (const char* date : {"06/01/99", "03/02/01"})
        rig.catalogue.add(FileRow{.directory = "C1D1S2", .name = date, .extension = "", .date = date});
    EXMain& window = openOn("C1D1S2");
    window.RunCommand("filedate");
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre("03/02/01", "06/01/99"));
}

TEST_F(ExplorerListing, ExtensionsInCapitalsKeepThemAndAreKnown) {
    rig.catalogue.add(FileRow{.directory = "C1D1S2", .name = "GAME.EXE", .extension = ".EXE"});
    EXMain& window = openOn("C1D1S2");
    EXPECT_EQ(window.lvwdb->rows().item(0).icon, "exe");
    EXPECT_EQ(window.lvwdb->rows().item(0).column(3), ".EXE File");
}

TEST_F(ExplorerListing, TheLookStaysFromOneDirectoryToTheNext) {
    EXMain& window = openOn("C1D1");
    window.RunCommand("small icons");
    clickNode(window, "C1D1S1");
    EXPECT_EQ(window.lvwdb->view(), kit::ListView::View::SmallIcons);
    window.Combo1->setListIndex(0);
    clickNode(window, "C2D1S1");
    EXPECT_EQ(window.lvwdb->view(), kit::ListView::View::SmallIcons);
    EXPECT_TRUE(window.Toolbar1->isPressed("Small Icons"));
}

TEST_F(ExplorerListing, TheUsersColumnWidthsStay) {
    EXMain& window = openOn("C1D1");
    header(window).resizeSection(1, 77);
    clickNode(window, "C1D1S1");
    EXPECT_EQ(header(window).sectionSize(1), 77);
    window.RunCommand("large icons");
    clickNode(window, "C1D1");
    window.RunCommand("report view");
    EXPECT_EQ(header(window).sectionSize(1), 77);
    EXPECT_EQ(header(window).count(), 6);
}

TEST_F(ExplorerListing, TheSelectionStaysOnItsFilesWhenTheyAreSorted) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 2);
    window.RunCommand("descending");
    EXPECT_EQ(window.lvwdb->selectedRow().text, "readme.txt");
    EXPECT_EQ(window.lvwdb->selectedPlaces(), std::vector<int>{1});
}

// ---- Rows that no scan would write, and a catalogue that others use

TEST_F(ExplorerListing, NamesOfAnyCharactersKeepToTheirRow) {
    for (const char* name :
         {"", "tab\tname", "two\r\nlines", "\u202Egnp.exe", "\xff\xfe", "'; drop", "<b>bold</b>", "%1 & %2"})
        rig.catalogue.add(FileRow{.directory = "C1D1S2", .name = name, .extension = ""});
    EXMain& window = openOn("C1D1S2");
    kit::ListModel& rows = window.lvwdb->rows();
    ASSERT_EQ(rows.count(), 8);
    EXPECT_EQ(rows.index(1, 0).data(Qt::DisplayRole), "tab name");
    EXPECT_EQ(rows.index(2, 0).data(Qt::DisplayRole), "two lines");
    EXPECT_EQ(rows.index(3, 0).data(Qt::DisplayRole), "gnp.exe");
    EXPECT_EQ(rows.item(2).text, "two\r\nlines");
    EXPECT_EQ(rows.index(6, 0).data(Qt::DisplayRole), "<b>bold</b>");
    for (const char* word : {"large icons", "small icons", "list view", "report view"}) {
        window.RunCommand(word);
        window.lvwdb->shown().grab();
    }
    doubleClickRow(*window.lvwdb, 0);
    EXPECT_THAT(rig.shown, Contains("EXFile"));
}

TEST_F(ExplorerListing, SizesBeyondThirtyTwoBitsAreShownWhole) {
    rig.catalogue.add(FileRow{.directory = "C1D1S2", .name = "big.iso", .extension = ".iso", .size = 8589934592.0});
    rig.catalogue.run("UPDATE Directories SET Size = 8589934592, \"number of files\" = 5000000000 "
                      "WHERE \"id number\" "
                      "= 'C1D1S2'");
    EXMain& window = openOn("C1D1S2");
    EXPECT_EQ(window.lvwdb->rows().item(0).column(1), "8,589,934,592 Kb");
    EXPECT_EQ(panel(window, 2), "Total Size = 8,388,608.00 MB");
    EXPECT_EQ(columnOf(*window.Dirinfo, 1)[4], "5,000,000,000");
    clickRow(*window.lvwdb, 0);
    EXPECT_EQ(panel(window, 2), "File Size = 8589934592 KB");
}

TEST_F(ExplorerListing, ADirectoryNumberWithWildcardsFindsNoMoreThanASmallListing) {
    rig.catalogue.add(DirectoryRow{.number = "*", .name = "Star", .parent = "C1D1", .disc = 1});
    rig.catalogue.add(DirectoryRow{.number = "C1D1S?", .name = "Any", .parent = "*"});
    rig.catalogue.run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) "
                      "INSERT INTO Files(\"directory number\", \"file name\") "
                      "SELECT 'C1D1S2', 'f' || i FROM n");
    EXMain& window = openOn("C1D1S?");
    EXPECT_EQ(window.lvwdb->rows().count(), 1000);
    clickNode(window, "*");
    EXPECT_LE(window.lvwdb->rows().count(), 2000);
    clickNode(window, "C1D1S2");
    EXPECT_EQ(window.lvwdb->rows().count(), 3000);
}

TEST_F(ExplorerListing, ADirectoryNumberWithAQuotationMarkIsPassedOver) {
    rig.catalogue.add(DirectoryRow{.number = "C1D1S3'x", .name = "Quote", .parent = "C1D1"});
    EXMain& window = openOn("C1D1");
    clickNode(window, "C1D1S3'x");
    EXPECT_EQ(window.lvwdb->rows().count(), 0);
    EXPECT_EQ(window.Label2->text(), "D:\\") << "the directory that was found last";
}

TEST_F(ExplorerListing, ACatalogueLockedByAnotherProgramShowsWhatItCan) {
    db::Connection::setLockWait(0);
    EXMain& window = openOn("C1D1");
    {
        RawDatabase other(rig.catalogue.path());
        other.execute("BEGIN EXCLUSIVE");
        clickNode(window, "C1D1S1");
        EXPECT_EQ(window.lvwdb->rows().count(), 0);
        EXPECT_FALSE(window.prgload->isVisible());
        window.Combo1->setListIndex(0);
        EXPECT_EQ(window.tvwdb->nodes().count(), 1);
        other.execute("ROLLBACK");
    }
    window.Combo1->setListIndex(1);
    EXPECT_EQ(window.tvwdb->nodes().count(), 5);
    clickNode(window, "C1D1S1");
    clickNode(window, "C1D1");
    EXPECT_EQ(window.lvwdb->rows().count(), 4);
}

TEST_F(ExplorerListing, ACatalogueReplacedUnderTheWindowIsLeftAlone) {
    EXMain& window = openOn("C1D1S1");
    const auto before = rig.catalogue.text("SELECT count(*) FROM Files");
    std::filesystem::rename("kvt.mde", "old.mde");
    catalogue::createEmptyCatalogue(rig.catalogue.path());
    rig.catalogue.add(DirectoryRow{.number = "C1D1", .name = "D:\\", .path = "D:\\"});
    rig.catalogue.add(FileRow{.directory = "C1D1", .name = "new.txt", .extension = ".txt"});
    clickNode(window, "C1D1");
    EXPECT_THAT(textsOf(*window.lvwdb), Not(Contains("new.txt"))) << "the one that was opened is shown";
    std::filesystem::remove("kvt.mde");
    clickNode(window, "C1D1S2");
    window.Combo1->setListIndex(0);
    choose(window, "Showall");
    choose(window, "refreshall");
    EXPECT_TRUE(window.isLoaded());
    std::filesystem::rename("old.mde", "kvt.mde");
    EXPECT_EQ(rig.catalogue.text("SELECT count(*) FROM Files"), before);
}

TEST_F(ExplorerListing, AMissingCatalogueOpensNothingAndHarmsNothing) {
    std::filesystem::rename("kvt.mde", "away.mde");
    EXMain& window = rig.open();
    EXPECT_EQ(window.Combo1->count(), 0);
    EXPECT_FALSE(rig.isUp("Loading"));
    for (const char* word : {"prop", "tag", "info view", "file view", "filesize"})
        window.RunCommand(word);
    choose(window, "Showall");
    choose(window, "SimDir");
    EXPECT_FALSE(std::filesystem::exists("kvt.mde"));
}

} // namespace discaro::test
