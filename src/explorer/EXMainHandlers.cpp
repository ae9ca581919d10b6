#include "explorer/CatalogueLoad.h"
#include "explorer/Commands.h"
#include "explorer/Division.h"
#include "explorer/EXMain.h"
#include "kit/common/Strings.h"

// The handlers of the explorer: which part does what.
namespace discaro::explorer {

void EXMain::RunCommand(const std::string& word) {
    m_commands->RunCommand(word);
}

void EXMain::Toolbar1_ButtonClick(const QString& key) {
    RunCommand(kit::utf8(key));
}

// ---- The disc list and the tree

void EXMain::Timer2_Timer() {
    m_load->load();
}

void EXMain::refreshall_Click() {
    m_load->refresh();
}

void EXMain::Combo1_Click() {
    m_tree->chooseDisc();
}

void EXMain::Command1_Click() {
    m_tree->buildChosenDisc();
}

void EXMain::Showall_Click() {
    m_commands->showAllContents();
}

void EXMain::expand_Click() {
    m_tree->expandAll(true);
}

void EXMain::collapse_Click() {
    m_tree->expandAll(false);
}

void EXMain::tvwdb_NodeClick() {
    m_tree->nodeClicked();
}

void EXMain::tvwdb_Expand(int node) {
    m_tree->nodeExpanded(node);
}

void EXMain::tvwdb_Collapse(int node) {
    m_tree->nodeCollapsed(node);
}

void EXMain::tvwdb_DblClick() {
    m_commands->openNode();
}

void EXMain::tvwdb_MouseDown(QPoint global) {
    MenuBar1->popUp("Treeviewmenu", global);
}

// ---- The listing and the panes

void EXMain::lvwdb_Click() {
    m_listing->rowClicked();
}

void EXMain::lvwdb_DblClick() {
    m_commands->openRow();
}

void EXMain::lvwdb_ColumnClick(int column) {
    m_commands->orderByHeader(column + 1);
}

// From a directory to the one that holds it, up to the disc.
void EXMain::lvwdb_Backspace() {
    tvwdb->clickParent();
}

void EXMain::lvwdb_MouseDown(QPoint global) {
    MenuBar1->popUp("Listviewmenu", global);
}

void EXMain::DriveInfo_DblClick() {
    m_commands->propInTree();
}

void EXMain::DriveInfo_MouseDown(QPoint global) {
    MenuBar1->popUp("Driveview", global);
}

void EXMain::Dirinfo_DblClick() {
    m_commands->propInTree();
}

void EXMain::Dirinfo_MouseDown(QPoint global) {
    MenuBar1->popUp("Dirview", global);
}

// ---- Menus

void EXMain::SimDir_Click() {
    m_commands->simulateDirectory();
}

void EXMain::CustomizetheToolbar_Click() {
    m_commands->customizeToolbar();
}

void EXMain::propInTree() {
    m_commands->propInTree();
}

void EXMain::tagInTree() {
    m_commands->tagInTree();
}

// ---- The window

void EXMain::Divider1_Moved(int left) {
    m_division->divideAt(left);
}

void EXMain::Divider1_DblClick() {
    m_division->share();
}

void EXMain::TrayIcon1_Restore() {
    setState(State::Normal);
    Show();
    TrayIcon1->setFlashEnabled(false);
}

void EXMain::TrayIcon1_Minimise() {
    setState(State::Minimised);
    TrayIcon1->setFlashEnabled(true);
}

} // namespace discaro::explorer
