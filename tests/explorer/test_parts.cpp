#include "base/RuntimeError.h"
#include "explorer/CatalogueRig.h"
#include "explorer/Commands.h"
#include "explorer/DiscTree.h"
#include "explorer/Listing.h"
#include "explorer/ListingOrder.h"
#include "kit/common/Strings.h"
#include "support/windows/FreshWindows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The parts of the explorer on bare controls, without its window.
namespace discaro::test {
namespace {

using explorer::DiscTree;
using explorer::Listing;
using testing::ElementsAre;

class BareWindow : public kit::Form {
public:
    BareWindow()
        : Form({.name = "Bare", .caption = "Bare", .size = {400, 300}}) {
        rows->setColumns({{"Name", 100}, {"Size", 50}, {"Real Size", 0}});
        for (kit::ListView* pane : {discFacts, directoryFacts})
            pane->setColumns({{"Fact", 100}, {"Value", 100}});
        statusBar->setPanels({{.width = 120, .spoken = {}}, {.width = 220, .spoken = {}}});
    }

    kit::ComboBox* discs = new kit::ComboBox(this);
    kit::ListView* sorter = new kit::ListView(this);
    kit::Label* number = new kit::Label(this);
    kit::ElidedLabel* path = new kit::ElidedLabel(this);
    kit::TreeView* tree = new kit::TreeView(this);
    kit::ListView* rows = new kit::ListView(this);
    kit::ListView* discFacts = new kit::ListView(this);
    kit::ListView* directoryFacts = new kit::ListView(this);
    kit::StatusBar* statusBar = new kit::StatusBar(this);
    kit::ProgressBar* progress = new kit::ProgressBar(this);
};

// Two discs; the first has a directory with one file.
class PartsTest : public testing::Test {
protected:
    PartsTest() {
        catalogue.add(DiscRow{.number = 1, .name = "Games"});
        catalogue.add(DiscRow{.number = 2, .name = "Atlas"});
        catalogue.addRoot(1);
        catalogue.addRoot(2);
        catalogue.add(DirectoryRow{.number = "C1D1S1", .name = "docs", .size = 512});
        catalogue.add(FileRow{.directory = "C1D1S1", .name = "a.txt", .extension = ".txt", .size = 512.0});
        window = new BareWindow;
        window->Load();
    }
    ~PartsTest() override { window->Unload(); }

    CatalogueRig catalogue;
    const FreshWindows windows;
    BareWindow* window;
};

class NotedRightSide : public explorer::RightSide {
public:
    void clear() override { told.emplace_back("clear"); }
    void ShowDiscInfo() override { told.emplace_back("disc"); }
    void ShowDirectory() override { told.emplace_back("directory"); }

    std::vector<std::string> told;
};

class DiscTreeAlone : public PartsTest {
protected:
    NotedRightSide right;
    DiscTree tree{
        {*window, *window->discs, *window->sorter, *window->number, *window->path, *window->tree, *window->progress},
        right};
};

class ListingAlone : public PartsTest {
protected:
    ListingAlone() {
        for (auto [source, table] : {std::pair{&discs, "drive"}, {&directories, "directories"}}) {
            source->SetDatabaseName(catalogue.path().string());
            source->SetRecordSource(table);
            source->Refresh();
        }
        window->tree->nodes().add({}, "R", "Games");
        window->tree->nodes().add("R", "C1D1", "D:\\");
        window->tree->nodes().add("C1D1", "C1D1S1", "docs");
    }

    std::vector<std::string> listed() const {
        std::vector<std::string> texts;
        for (int place = 0; place < window->rows->rows().count(); ++place)
            texts.push_back(kit::utf8(window->rows->rows().item(place).text));
        return texts;
    }

    db::DataSource discs;
    db::DataSource directories;
    std::string chosen = "2";
    Listing listing{{*window->tree, *window->path, *window->rows, *window->discFacts, *window->directoryFacts,
                     *window->statusBar, *window->progress},
                    {discs, directories},
                    [this] { return chosen; }};
};

// Menus with the lines that the commands mark, and a toolbar without buttons.
class CommandsAlone : public ListingAlone {
protected:
    CommandsAlone() {
        std::vector<kit::MenuLine> lines;
        const auto add = [&lines](const char* name) {
            lines.push_back(kit::item(name, name, [](kit::Form&) {}).mark().separated());
        };
        for (const explorer::OrderKey& key : explorer::orderKeys())
            for (const char* name : {key.menuItem, key.popUpItem})
                add(name);
        for (const char* name :
             {"AscendingOrder", "lascorder", "DescendingOrder", "ldescorder", "listviewFileView", "lfile",
              "listviewInfoView", "linfo", "listviewLargeIcons", "llarge", "listviewSmallIcons", "lsmall",
              "listviewListView", "llist", "listviewDetails", "ldetails"})
            add(name);
        menus->build({kit::menu("All", "All", std::move(lines))}, *window);
    }

    bool isMarked(const char* item) const { return menus->item(item).isChecked(); }

    kit::MenuBar* menus = new kit::MenuBar(window);
    kit::Toolbar* toolbar = new kit::Toolbar(window);
    NotedRightSide right;
    DiscTree tree{
        {*window, *window->discs, *window->sorter, *window->number, *window->path, *window->tree, *window->progress},
        right};
    explorer::Commands commands{
        {*window, *menus, *toolbar, *window->discs, *window->tree, *window->rows}, {discs, directories}, tree, listing};
};

} // namespace

TEST_F(DiscTreeAlone, FillsTheListOfDiscsByNameAndChoosesNone) {
    tree.FillDiscList();
    ASSERT_EQ(window->discs->count(), 2);
    EXPECT_THAT(window->discs->itemText(0).toStdString(), testing::StartsWith("Atlas"));
    EXPECT_EQ(window->discs->listIndex(), -1);
    EXPECT_FALSE(tree.isLocked());
    EXPECT_THROW(tree.discNumber(), base::RuntimeError);
}

TEST_F(DiscTreeAlone, ShowsTheChosenDiscBesideItsTree) {
    tree.FillDiscList();
    window->discs->setListIndex(1);
    tree.chooseDisc();
    EXPECT_EQ(tree.discNumber(), "1");
    EXPECT_EQ(window->tree->nodes().count(), 3);
    EXPECT_EQ(window->tree->selectedNode(), 1);
    EXPECT_EQ(window->caption(), window->discs->currentText());
    EXPECT_THAT(right.told, ElementsAre("clear", "disc"));
}

TEST_F(DiscTreeAlone, ListsANodeOnceHoweverOftenItIsClicked) {
    tree.FillDiscList();
    window->discs->setListIndex(1);
    tree.buildChosenDisc();
    right.told.clear();
    window->tree->selectNode(3);
    tree.nodeClicked();
    tree.nodeClicked();
    EXPECT_THAT(right.told, ElementsAre("directory"));
    EXPECT_EQ(tree.LastNode, 3);
}

TEST_F(DiscTreeAlone, ATreeOfAllDiscsHasTheirRootsUnderTheNames) {
    EXPECT_TRUE(tree.buildAllContents());
    EXPECT_EQ(window->tree->nodes().text(1), "All CDs");
    EXPECT_EQ(window->tree->nodes().childCount(1), 2);
    EXPECT_EQ(window->number->text(), "All Contents");
}

TEST_F(ListingAlone, ShowsTheRowsOfTheSelectedNode) {
    window->tree->selectNode(3);
    listing.ShowDirectory();
    EXPECT_THAT(listed(), ElementsAre("a.txt"));
    EXPECT_FALSE(window->rows->isHidden());
    EXPECT_TRUE(window->directoryFacts->isHidden());
    EXPECT_EQ(window->path->text(), "D:\\docs");
}

TEST_F(ListingAlone, ShowsADirectoryInCapitalsAndKnowsItsName) {
    window->tree->selectNode(2);
    listing.ShowDirectory();
    EXPECT_THAT(listed(), ElementsAre(" DOCS"));
    EXPECT_EQ(listing.nameOf(window->rows->rows().item(0)), "docs");
}

TEST_F(ListingAlone, ShowsFactsInTheOtherView) {
    listing.showFacts();
    window->tree->selectNode(3);
    listing.ShowDirectory();
    EXPECT_TRUE(window->rows->isHidden());
    EXPECT_FALSE(window->directoryFacts->isHidden());
    EXPECT_GT(window->directoryFacts->rows().count(), 0);
}

TEST_F(ListingAlone, OfTheFirstNodeShowsTheChosenDisc) {
    window->tree->selectNode(1);
    listing.ShowDirectory();
    EXPECT_FALSE(window->discFacts->isHidden());
    EXPECT_EQ(discs.Recordset()("prefered name").Text(), "Atlas");
}

TEST_F(ListingAlone, AClickWithoutARowIsAnError) {
    EXPECT_THROW(listing.rowClicked(), base::RuntimeError);
}

TEST_F(CommandsAlone, AWordInAnyCaseChoosesTheOrderAndMarksItInBothMenus) {
    commands.RunCommand("FileSize");
    const explorer::OrderKey& size = *explorer::orderKeyOf("filesize");
    EXPECT_EQ(window->rows->rows().sortKey(), size.sortColumn);
    EXPECT_TRUE(isMarked(size.menuItem));
    EXPECT_TRUE(isMarked(size.popUpItem));
    EXPECT_FALSE(isMarked(explorer::orderKeyOf("filename")->menuItem));
    commands.RunCommand("descending");
    EXPECT_EQ(window->rows->rows().sortOrder(), Qt::DescendingOrder);
    EXPECT_TRUE(isMarked("ldescorder"));
}

TEST_F(CommandsAlone, AWordThatIsNoneDoesNothing) {
    commands.RunCommand("format c:");
    EXPECT_EQ(listing.ViewMode, "file");
    EXPECT_EQ(window->rows->view(), kit::ListView::View::Report);
}

TEST_F(CommandsAlone, AViewIsShownAndMarked) {
    commands.RunCommand("info view");
    EXPECT_EQ(listing.ViewMode, "info");
    EXPECT_TRUE(isMarked("linfo"));
    commands.RunCommand("small icons");
    EXPECT_EQ(window->rows->view(), kit::ListView::View::SmallIcons);
    EXPECT_TRUE(isMarked("lsmall"));
}

TEST_F(CommandsAlone, ADoubleClickOnADirectorysRowGoesToItsNode) {
    window->tree->selectNode(2);
    listing.ShowDirectory();
    window->rows->select(0);
    commands.openRow();
    EXPECT_EQ(window->tree->selectedNode(), 3);
    EXPECT_THAT(right.told, ElementsAre("directory"));
}

} // namespace discaro::test
