#pragma once

#include "app/HandOver.h"
#include "db/DataSource.h"
#include "kit/Divider.h"
#include "kit/ElidedLabel.h"
#include "kit/FormTable.h"
#include "kit/ImageList.h"
#include "kit/ListView.h"
#include "kit/MenuBar.h"
#include "kit/ProgressBar.h"
#include "kit/StatusBar.h"
#include "kit/Toolbar.h"
#include "kit/TrayIcon.h"
#include "kit/TreeView.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace discaro::explorer {

class Division;
struct ListingRow;
struct OrderKey;
struct ViewChoice;

// The tree's first node: the disc, or all of them.
inline constexpr int kFirst = 1;

// The catalogue explorer: one disc as a tree of its directories beside a listing, or every disc at once. Menus,
// toolbar and double clicks end in RunCommand.
//
// Its data sources have a position that later steps rely on: Data1 stands on the disc whose facts were shown last,
// Data2 on the directory that was listed last.
class EXMain : public kit::Form {
    Q_OBJECT
public:
    EXMain();
    ~EXMain() override;

    // Carries out a command word, in any case; a word that is none does nothing. Failing statements are skipped, but
    // a window that follows in the explorer's place and can't be loaded is reported as an unhandled error.
    void RunCommand(const std::string& word);

    kit::MenuBar* MenuBar1 = nullptr;     // menus and pop-ups
    kit::Panel* ClientArea = nullptr;     // everything below the menu bar
    kit::Panel* Picture1 = nullptr;       // behind the top row
    kit::ComboBox* Combo1 = nullptr;      // the discs
    kit::Label* Label3 = nullptr;         // the disc's number
    kit::Toolbar* Toolbar1 = nullptr;     // commands
    kit::Label* Label1 = nullptr;         // heading of the tree
    kit::ElidedLabel* Label2 = nullptr;   // path of the directory that is listed
    kit::TreeView* tvwdb = nullptr;       // the tree
    kit::Divider* Divider1 = nullptr;     // handle between tree and listing, beyond the first size
    kit::ListView* lvwdb = nullptr;       // the listing
    kit::ListView* DriveInfo = nullptr;   // facts of a disc
    kit::ListView* Dirinfo = nullptr;     // facts of a directory
    kit::ListView* ListView1 = nullptr;   // brings the discs into order, never seen
    kit::Button* Command1 = nullptr;      // its click builds the tree, never seen
    kit::StatusBar* StatusBar1 = nullptr; // count, size, progress
    kit::ProgressBar* prgload = nullptr;  // progress of loading tree and listing
    kit::Timer* Timer2 = nullptr;         // the delayed load, started again for a jump
    kit::TrayIcon* TrayIcon1 = nullptr;
    kit::ImageList* ImageList1 = nullptr; // toolbar and tree
    kit::ImageList* ImageList2 = nullptr; // the fact panes
    kit::ImageList* ImageList3 = nullptr; // the listing, large
    kit::ImageList* ImageList4 = nullptr; // the listing, small
    db::DataSource Data1;                 // Drive
    db::DataSource Data2;                 // Directories

    std::string ViewMode = "file"; // "file" or "info": what a directory shows on the right
    std::string SkipMark;          // "skip" while the window unloads to hand over
    int LastNode = 0;              // the node listed last, so that a click on it does nothing

protected:
    void Form_Load() override;
    void Form_Unload() override;
    void Form_Resize() override;
    void changeEvent(QEvent* event) override;

private:
    static const kit::FormTable<EXMain> kTable;
    static const std::vector<kit::MenuLine> kMenus;

    // Load and unload
    void FitProgressBar(kit::ProgressBar& bar, kit::StatusBar& statusBar, int panel,
                        int marginTwips);
    void seatProgressBar(kit::ProgressBar& bar, kit::StatusBar& statusBar, int panel,
                         int marginTwips);
    void Divider1_Moved(int left);
    void Divider1_DblClick();
    void Timer2_Timer();
    void tellLocked();
    void TrayIcon1_Restore();
    void TrayIcon1_Minimise();
    void openSource(db::DataSource& source, const char* table);
    void disableMissingWindows();
    bool catalogueIsEmpty();
    // The shared handle, opened again if another window has closed it. Whoever yields keeps it: another handler may
    // put a new one in its place. Throws as OpenCatalogue does.
    static std::shared_ptr<db::Database> catalogue();
    static void yield();
    void leaveEmptyCatalogue();

    // The disc list and the tree
    void ResetViews();
    void FillDiscList();
    void Combo1_Click();
    void Command1_Click();
    void Showall_Click();
    void refreshall_Click();
    void expand_Click();
    void collapse_Click();
    void tvwdb_NodeClick();
    void tvwdb_Expand(int node);
    void tvwdb_Collapse(int node);
    void tvwdb_DblClick();
    void tvwdb_MouseDown(QPoint global);
    void addFirstNode();
    static bool isJumpWanted();
    void jumpToDisc();
    void jumpToDirectory();
    void jumpToFile();
    void buildDiscTree();
    void buildAllContentsTree();
    void expandAll(bool expanded);
    std::string discNumber() const;
    bool overtaken(int build) const;

    // The listing and the panes
    void ShowDirectory();
    void ShowDiscInfo();
    void ShowDirectoryInfo();
    void lvwdb_Click();
    void lvwdb_DblClick();
    void lvwdb_ColumnClick(int column);
    void lvwdb_Backspace();
    void lvwdb_MouseDown(QPoint global);
    void DriveInfo_DblClick();
    void DriveInfo_MouseDown(QPoint global);
    void Dirinfo_DblClick();
    void Dirinfo_MouseDown(QPoint global);
    void showPane(kit::ListView& pane);
    int64_t listDirectories(int node);
    int64_t listFiles(int node);
    void addRow(const ListingRow& row);
    void tellEmpty(int node);
    QString nameOf(const kit::ListItem& row) const;
    void showCount();
    void showTotal();
    void showSelection();
    bool goToListedDirectory(const kit::ListItem& row);

    // Order
    void AscendingOrder_Click();
    void DescendingOrder_Click();
    void orderBy(const OrderKey& key);
    void setOrder(Qt::SortOrder order);

    // Commands
    void Toolbar1_ButtonClick(QString key);
    void CustomizetheToolbar_Click();
    void restoreToolbar();
    void saveDivision();
    void restoreDivision();
    void SimDir_Click();
    void showView(const ViewChoice& choice);
    void showFiles();
    void showInfo();
    void markMode(bool file);
    void exitToMenu();
    void scan();
    void search();
    void about();
    void deleteDisc();
    void workshop();
    void programs();
    void leaveTo(const app::Move& move, const std::function<void()>& setVariables = {});
    void handOverTo(const char* window, const std::function<void()>& setVariables = {});
    void prop();
    void propOfRow();
    void chooseNodesDirectory();
    void propOfNode();
    void propOfDisc();
    void propOfSelected();
    void tag();
    void prepareTag(const std::string& active);
    void tagRow();
    void tagNode();
    std::string activeTag() const;
    void propInTree();
    void tagInTree();

    std::unique_ptr<Division> m_division;
    bool m_locked = false; // the disc list is still to be filled: the catalogue was locked
    QWidget* ProgressParent = nullptr; // where prgload stood before it moved into the status bar
    int CurrentNode = 0;               // the node that a routine works on
    int m_builds = 0;                  // how often a tree was begun
};

} // namespace discaro::explorer
