#include "explorer/EXMain.h"
#include "explorer/ListingOrder.h"

// The explorer's menus and pop-ups: name, caption, marks, and the command word or the handler.
namespace discaro::explorer {

using kit::item;
using kit::menu;
using kit::MenuLine;

namespace {

// An item that gives a command word.
MenuLine word(const char* name, const char* caption, const char* command) {
    return item(name, caption, [command](kit::Form& window) { static_cast<EXMain&>(window).RunCommand(command); });
}

// The six keys of the listing's order; the first is marked at the start.
std::vector<MenuLine> orderLines(const char* OrderKey::*name) {
    const auto line = [name](const char* caption, const char* command) {
        const OrderKey& key = *orderKeyOf(command);
        return word(key.*name, caption, command);
    };
    return {line("&Name", "filename").mark(true),     line("&Size", "filesize").mark(),
            line("&Extension", "fileext").mark(),     line("&Date", "filedate").mark(),
            line("&Attributes", "fileattrib").mark(), line("Number of &Icons", "numoficons").mark()};
}

std::vector<MenuLine> arrangeLines(const char* OrderKey::*name, const char* ascending, const char* descending) {
    std::vector<MenuLine> lines = orderLines(name);
    lines.push_back(word(ascending, "As&cending Order", "ascending").mark(true).separated());
    lines.push_back(word(descending, "D&escending Order", "descending").mark());
    return lines;
}

} // namespace

const std::vector<MenuLine> EXMain::kMenus{
    menu("MainMenu", "File",
         {
             word("fileProperties", "&Properties", "prop"),
             word("fileProgramTag", "Program &Tag", "tag"),
             word("exitexmain", "E&xit", "exit").separated(),
         }),
    menu("Viewmenu", "View",
         {
             word("listviewLargeIcons", "&Large Icons", "large icons").mark(),
             word("listviewSmallIcons", "&Small Icons", "small icons").mark(),
             word("listviewListView", "L&ist View", "list view").mark(),
             word("listviewDetails", "&Details", "report view").mark(true),
             word("listviewFileView", "&File View", "file view").mark(true).separated(),
             word("listviewInfoView", "&Info View", "info view").mark(),
             menu("ArrangeIconsmenu", "&Arrange Icons",
                  arrangeLines(&OrderKey::menuItem, "AscendingOrder", "DescendingOrder"))
                 .separated(),
             item("Showall", "Show All &Contents", &EXMain::Showall_Click).separated(),
         }),
    menu("searchmenu", "&Search", {word("newsearsh", "&New Search", "search")}),
    menu("toolsmenu", "&Tools",
         {
             word("scannewcd", "&Scan a new CD-ROM", "scan"),
             word("Deletecdromentry", "&Delete a CD-ROM Entry", "delete"),
             word("programsexplorer", "&Program Explorer", "prog"),
             word("dbaseworkshop", "Database &Workshop", "workshop"),
             item("SimDir", "Directory S&imulator", &EXMain::SimDir_Click),
             item("refreshall", "Refresh All Values", &EXMain::refreshall_Click).separated(),
             item("CustomizetheToolbar", "&Customize the Toolbar", &EXMain::CustomizetheToolbar_Click).separated(),
         }),
    menu("helpmenu", "&Help", {word("aboutbox", "&About", "about")}),
    menu("Dirview", "",
         {
             item("diprop", "&Properties", &EXMain::propInTree),
             item("diprogtag", "Program &Tag", &EXMain::tagInTree),
             menu("diview", "&View", {word("lfile", "&File View", "file view").mark(true)}).separated(),
         })
        .hidden(),
    menu("Driveview", "",
         {
             item("drprop", "&Properties", &EXMain::propInTree),
             item("drprogtag", "Program &Tag", &EXMain::tagInTree),
         })
        .hidden(),
    menu("Listviewmenu", "",
         {
             word("lprop", "File &Properties", "prop"),
             word("lprogtag", "File Program &Tag", "tag"),
             menu("lview", "&View",
                  {
                      word("linfo", "&Info View", "info view").mark(),
                      word("llarge", "&Large Icons", "large icons").mark().separated(),
                      word("lsmall", "&Small Icons", "small icons").mark(),
                      word("llist", "&List View", "list view").mark(),
                      word("ldetails", "&Details", "report view").mark(true),
                  })
                 .separated(),
             menu("larrange", "&Arrange Icons", arrangeLines(&OrderKey::popUpItem, "lascorder", "ldescorder"))
                 .separated(),
         })
        .hidden(),
    menu("Treeviewmenu", "",
         {
             word("tprop", "&Properties", "prop"),
             word("tprogtag", "Program &Tag", "tag"),
             item("DirSim2", "&Directory Simulator", &EXMain::SimDir_Click),
             item("expand", "&Expand All", &EXMain::expand_Click).separated(),
             item("collapse", "&Collapse All", &EXMain::collapse_Click),
         })
        .hidden(),
};

} // namespace discaro::explorer
