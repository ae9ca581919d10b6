#pragma once

#include "db/DataSource.h"
#include "kit/controls/Divider.h"
#include "kit/controls/Toolbar.h"
#include "kit/display/ElidedLabel.h"
#include "kit/display/ImageList.h"
#include "kit/display/ProgressBar.h"
#include "kit/display/StatusBar.h"
#include "kit/form/FormTable.h"
#include "kit/form/MenuBar.h"
#include "kit/form/TrayIcon.h"
#include "kit/lists/ListView.h"
#include "kit/lists/TreeView.h"

#include <memory>
#include <string>
#include <vector>

namespace discaro::explorer {

class CatalogueLoad;
class Commands;
class DiscTree;
class Division;
class Listing;

// The catalogue explorer: one disc as a tree of its directories beside a listing, or every disc at once. Menus,
// toolbar and double clicks end in RunCommand.
//
// The window has the controls, their handlers and the data sources; what happens to them is done by its parts, each of
// which knows the controls that it is given and no others.
class EXMain : public kit::Form {
    Q_OBJECT
public:
    EXMain();
    ~EXMain() override;

    // See Commands.
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

protected:
    void Form_Load() override;
    void Form_Unload() override;
    void Form_Resize() override;
    void changeEvent(QEvent* event) override;

private:
    static const kit::FormTable<EXMain> kTable;
    static const std::vector<kit::MenuLine> kMenus;

    void makeParts();

    // Handlers
    void Timer2_Timer();
    void TrayIcon1_Restore();
    void TrayIcon1_Minimise();
    void Divider1_Moved(int left);
    void Divider1_DblClick();
    void Combo1_Click();
    void Command1_Click();
    void tvwdb_NodeClick();
    void tvwdb_Expand(int node);
    void tvwdb_Collapse(int node);
    void tvwdb_DblClick();
    void tvwdb_MouseDown(QPoint global);
    void lvwdb_Click();
    void lvwdb_DblClick();
    void lvwdb_ColumnClick(int column);
    void lvwdb_Backspace();
    void lvwdb_MouseDown(QPoint global);
    void DriveInfo_DblClick();
    void DriveInfo_MouseDown(QPoint global);
    void Dirinfo_DblClick();
    void Dirinfo_MouseDown(QPoint global);
    void Toolbar1_ButtonClick(const QString& key);
    void Showall_Click();
    void refreshall_Click();
    void expand_Click();
    void collapse_Click();
    void SimDir_Click();
    void CustomizetheToolbar_Click();
    void propInTree();
    void tagInTree();

    std::unique_ptr<Division> m_division;
    std::unique_ptr<Listing> m_listing;
    std::unique_ptr<DiscTree> m_tree;
    std::unique_ptr<Commands> m_commands;
    std::unique_ptr<CatalogueLoad> m_load;
};

} // namespace discaro::explorer
