#include "app/Windows.h"
#include "explorer/ExplorerRig.h"
#include "explorer/ListingOrder.h"
#include "kit/common/Strings.h"
#include "kit/controls/ToolbarDialog.h"
#include "kit/program/Ground.h"

#include <QtCore/QTimer>
#include <QtGui/QActionGroup>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeView>

#include <set>

namespace discaro::test {

using explorer::EXMain;

namespace {

// An entry of a menu, a pop-up or the toolbar, and what is different after it was chosen.
struct Entry {
    const char* name;
    const char* effect;
};

constexpr Entry kItems[] = {
    {"fileProperties", "EXDir"},
    {"fileProgramTag", "ProgTag"},
    {"exitexmain", "Switch"},
    {"listviewLargeIcons", "view 0"},
    {"listviewSmallIcons", "view 1"},
    {"listviewListView", "view 2"},
    {"listviewDetails", "view 3"},
    {"listviewFileView", "pane lvwdb"},
    {"listviewInfoView", "pane Dirinfo"},
    {"thefilename", "key 0"},
    {"thefilesize", "key 2"},
    {"thefileExtension", "key 3"},
    {"thefiledate", "key 5"},
    {"thefileAttributes", "key 6"},
    {"thefileNumberofIcons", "key 8"},
    {"AscendingOrder", "order 0"},
    {"DescendingOrder", "order 1"},
    {"Showall", "All Contents, pane Dirinfo"},
    {"newsearsh", "Loading Search"},
    {"scannewcd", "Loading Scanform"},
    {"Deletecdromentry", "Loading DeleteCD"},
    {"programsexplorer", "Loading Programs"},
    {"dbaseworkshop", "Loading Workshop"},
    {"SimDir", "DirSim"},
    {"refreshall", "CD-ROM Number : 2, pane DriveInfo"},
    {"CustomizetheToolbar", "CustomizeToolbar"},
    {"aboutbox", "About"},
    {"diprop", "EXDir"},
    {"diprogtag", "ProgTag"},
    {"lfile", "pane lvwdb"},
    {"drprop", "EXDir"},
    {"drprogtag", "ProgTag"},
    {"lprop", "EXDir"},
    {"lprogtag", "ProgTag"},
    {"linfo", "pane Dirinfo"},
    {"llarge", "view 0"},
    {"lsmall", "view 1"},
    {"llist", "view 2"},
    {"ldetails", "view 3"},
    {"lname", "key 0"},
    {"lsize", "key 2"},
    {"lext", "key 3"},
    {"ldate", "key 5"},
    {"lattrib", "key 6"},
    {"licons", "key 8"},
    {"lascorder", "order 0"},
    {"ldescorder", "order 1"},
    {"tprop", "EXDir"},
    {"tprogtag", "ProgTag"},
    {"DirSim2", "DirSim"},
    {"expand", "expanded"},
    {"collapse", "collapsed"},
};

constexpr Entry kButtons[] = {
    {"Large Icons", "view 0"},
    {"Small Icons", "view 1"},
    {"List View", "view 2"},
    {"Report View", "view 3"},
    {"File View", "pane lvwdb"},
    {"Info View", "pane Dirinfo"},
    {"prop", "EXDir"},
    {"tag", "ProgTag"},
    {"Search", "Loading Search"},
    {"Scan", "Loading Scanform"},
    {"Delete", "Loading DeleteCD"},
    {"prog", "Loading Programs"},
    {"Workshop", "Loading Workshop"},
    {"About", "About"},
    {"ascending", "order 0"},
    {"descending", "order 1"},
    {"filename", "key 0"},
    {"filesize", "key 2"},
    {"filedate", "key 5"},
    {"fileattrib", "key 6"},
    {"fileext", "key 3"},
    {"numoficons", "key 8"},
    {"Exit", "Switch"},
};

class ExplorerEntries : public ExplorerTest {
protected:
    // On a directory, and such that the entry makes a difference.
    EXMain& openFor(const std::string& effect) {
        EXMain& window = rig.open();
        window.Combo1->setListIndex(1);
        clickNode(window, "C1D1");
        const std::pair<const char*, const char*> kOpposites[] = {
            {"view 3", "list view"}, {"pane lvwdb", "info view"}, {"key 0", "filesize"}, {"order 0", "descending"}};
        for (const auto& [made, opposite] : kOpposites)
            if (effect == made)
                window.RunCommand(opposite);
        rig.shown.clear();
        m_before = facts(window);
        return window;
    }
    std::string effectOn(EXMain& window) {
        std::string effect;
        const auto add = [&effect](const std::string& what, const char* between) {
            effect += (effect.empty() ? "" : between) + what;
        };
        for (const std::string& name : rig.shown)
            add(name, " ");
        if (window.isUnloaded())
            return effect;
        const auto now = facts(window);
        for (size_t fact = 0; fact < now.size(); ++fact)
            if (now[fact] != m_before[fact])
                add(now[fact], ", ");
        return effect;
    }
    void leave(EXMain& window) {
        if (!window.isUnloaded())
            window.RunCommand("exit");
        for (const char* name : {"Switch", "Loading", "Search", "Scanform", "DeleteCD", "Programs", "Workshop"})
            app::Windows::Unload(name);
        kit::runGroundActions();
    }
    static QHeaderView& header(EXMain& window) { return *static_cast<QTreeView&>(window.lvwdb->shown()).header(); }
    static void clickHeader(EXMain& window, int column) {
        auto& report = static_cast<QTreeView&>(window.lvwdb->shown());
        const int section = window.lvwdb->rows().sectionOf(column);
        report.scrollTo(window.lvwdb->rows().index(0, section));
        QHeaderView& headers = header(window);
        QTest::mouseClick(headers.viewport(), Qt::LeftButton, {},
                          QPoint(headers.sectionViewportPosition(section) + 20, headers.height() / 2));
    }
    // Whether this key and no other is marked in both menus and pressed.
    static void expectKey(EXMain& window, const explorer::OrderKey& wanted) {
        EXPECT_EQ(window.lvwdb->rows().sortKey(), wanted.sortColumn);
        for (const explorer::OrderKey& key : explorer::orderKeys()) {
            const bool same = &key == &wanted;
            EXPECT_EQ(window.MenuBar1->isMarked(key.menuItem), same) << key.menuItem;
            EXPECT_EQ(window.MenuBar1->isMarked(key.popUpItem), same) << key.popUpItem;
            EXPECT_EQ(window.Toolbar1->isPressed(kit::qt(key.word)), same) << key.word;
        }
    }

private:
    static std::vector<std::string> facts(EXMain& window) {
        const kit::ListModel& rows = window.lvwdb->rows();
        const bool deep = window.tvwdb->nodes().count() > 3 && window.tvwdb->nodes().isExpanded(3);
        return {kit::utf8(window.Label3->text()),
                "view " + std::to_string(static_cast<int>(window.lvwdb->view())),
                "pane " + shownPane(window),
                "key " + std::to_string(rows.sortKey()),
                "order " + std::to_string(static_cast<int>(rows.sortOrder())),
                window.tvwdb->nodes().isExpanded(1) ? "" : "collapsed",
                deep ? "expanded" : ""};
    }

    std::vector<std::string> m_before;
};

} // namespace

TEST_F(ExplorerEntries, EveryMenuItemDoesWhatItSays) {
    for (const Entry& entry : kItems) {
        EXMain& window = openFor(entry.effect);
        const bool dialog = std::string(entry.effect) == "CustomizeToolbar";
        if (dialog)
            QTimer::singleShot(0, &window, [this] {
                QWidget* shown = QApplication::activeModalWidget();
                ASSERT_NE(shown, nullptr);
                rig.shown.push_back(kit::utf8(shown->objectName()));
                shown->close();
            });
        choose(window, entry.name);
        EXPECT_EQ(effectOn(window), entry.effect) << entry.name;
        leave(window);
    }
}

TEST_F(ExplorerEntries, NoMenuItemIsForgottenAbove) {
    std::set<std::string> known;
    for (const Entry& entry : kItems)
        known.insert(entry.name);
    EXMain& window = rig.open();
    int items = 0;
    for (const QAction* item : window.findChildren<QAction*>()) {
        if (item->menu() || item->isSeparator() || item->objectName().isEmpty())
            continue;
        ++items;
        EXPECT_TRUE(known.contains(kit::utf8(item->objectName()))) << kit::utf8(item->objectName());
    }
    EXPECT_EQ(items, static_cast<int>(known.size()));
}

TEST_F(ExplorerEntries, EveryToolbarButtonDoesWhatItSays) {
    EXPECT_EQ(std::size(kButtons), 23U);
    for (const Entry& entry : kButtons) {
        EXMain& window = openFor(entry.effect);
        pressButton(window, entry.name);
        EXPECT_EQ(effectOn(window), entry.effect) << entry.name;
        leave(window);
    }
}

TEST_F(ExplorerEntries, EveryOrderItemMarksItsTwinAndItsButton) {
    EXMain& window = openFor("");
    for (const explorer::OrderKey& key : explorer::orderKeys())
        for (const char* item : {key.menuItem, key.popUpItem}) {
            window.RunCommand(key.word == "filename" ? "filesize" : "filename");
            choose(window, item);
            expectKey(window, key);
        }
}

TEST_F(ExplorerEntries, ChoicesThatExcludeEachOtherLookLikeIt) {
    EXMain& window = openFor("");
    for (const QAction* item : window.findChildren<QAction*>())
        if (item->isCheckable()) {
            ASSERT_NE(item->actionGroup(), nullptr) << kit::utf8(item->objectName());
            EXPECT_TRUE(item->actionGroup()->isExclusive());
        }
    choose(window, "listviewDetails");
    EXPECT_TRUE(window.MenuBar1->isMarked("listviewDetails")) << "chosen again it stays";
}

TEST_F(ExplorerEntries, EveryHeaderInSightPicksItsKeyAndBearsTheMark) {
    EXMain& window = openFor("");
    EXPECT_FALSE(header(window).isSortIndicatorShown()) << "nothing was chosen yet";
    for (const int number : {2, 1, 4, 5, 7, 8}) {
        clickHeader(window, number - 1);
        EXPECT_TRUE(header(window).isSortIndicatorShown());
        EXPECT_EQ(header(window).sortIndicatorSection(), window.lvwdb->rows().sectionOf(number - 1));
        EXPECT_EQ(header(window).sortIndicatorOrder(), Qt::AscendingOrder);
        expectKey(window, *explorer::orderKeyOfHeader(number));
        EXPECT_EQ(window.lvwdb->rows().sortOrder(), Qt::AscendingOrder);
    }
}

} // namespace discaro::test
