#include "explorer/CatalogueLoad.h"
#include "explorer/Commands.h"
#include "explorer/Division.h"
#include "explorer/EXMain.h"
#include "explorer/FileKinds.h"

#include <QtWidgets/QAbstractItemView>

// The controls of the explorer: member, name, place, text, handler. Places are those of the client area below the menu
// bar.
namespace discaro::explorer {

using kit::control;

namespace {

constexpr int kMenuHeight = 24;
constexpr QSize kClient(620, 430);

// The right side, where the listing and the panes take turns.
constexpr QRect kRight(152, 69, 466, 339);

// Widths of columns.
constexpr int kListing = 169;
constexpr int kFact = 225;
constexpr int kFactValue = 235;

constexpr int kHeadingIndent = 4;

template <typename View>
auto tagged(const char* tag) {
    return [tag](View& view) { view.setProperty("Tag", QString::fromLatin1(tag)); };
}

auto pictures(const char* folder, const QStringList& keys) {
    return [folder, keys](kit::ImageList& list) { list.setPictures(QStringLiteral(":/pictures/") + folder, keys); };
}

QStringList kindKeys() {
    QStringList keys;
    for (const std::string_view kind : kKinds)
        keys << QString::fromLatin1(kind.data(), static_cast<qsizetype>(kind.size()));
    return keys;
}

// A list that drops down with a scroll bar, however many discs there are: some styles would cover the screen.
void dressDiscList(kit::ComboBox& discs) {
    discs.setStyleSheet("QComboBox { combobox-popup: 0; }");
    discs.setMaxVisibleItems(16);
    discs.view()->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

void dressListing(kit::ListView& list) {
    constexpr auto kRightSide = Qt::AlignRight;
    list.setColumns({{"File Name", kListing},
                     {"Size", kListing, kRightSide},
                     {"Real Size", 0, kRightSide},
                     {"Extension", kListing},
                     {"Modified", kListing, kRightSide},
                     {"Real Date", 0, kRightSide},
                     {"Attributes", kListing},
                     {"No. of Icons", kListing, kRightSide},
                     {"Real no.", 0, kRightSide}});
    list.fillWithFirstColumn();
    list.setMultiSelect();
    list.setFirstSelected();
}

auto facts(const char* header) {
    return [header](kit::ListView& list) {
        list.setColumns({{header, kFact}, {"Value", kFactValue}});
        list.fillWithLastColumn();
        list.setFirstSelected();
        list.setCopied([](const kit::ListItem& fact) { return fact.column(1); });
    };
}

void dressToolbar(kit::Toolbar& toolbar) {
    const kit::ToolbarButton separator;
    toolbar.setButtons({{"Large Icons", "Large Icons", "large", 1},
                        {"Small Icons", "Small Icons", "small", 1},
                        {"List View", "List View", "list", 1},
                        {"Report View", "Report View", "report", 1, true},
                        separator,
                        {"File View", "File View", "file", 2, true},
                        {"Info View", "Info View", "info", 2},
                        separator,
                        {"prop", "Properties", "prop"},
                        {"tag", "Program Tag", "progtag"},
                        separator,
                        {"Search", "Search", "search"},
                        separator,
                        {"Scan", "Scan a new CD-ROM", "scan"},
                        {"Delete", "Delete a CD-ROM entry", "delete"},
                        {"prog", "Program Explorer", "progexp"},
                        {"Workshop", "Database WorkShop", "workshop"},
                        {"About", "About", "about"},
                        separator,
                        {"ascending", "Sort in ascending order", "asc", 3, true},
                        {"descending", "Sort in descending order", "desc", 3},
                        separator,
                        {"filename", "Sort by Filename", "name", 4, true},
                        {"filesize", "Sort by Filesize", "size", 4},
                        {"filedate", "Sort by File Date", "date", 4},
                        {"fileattrib", "Sort by File Attributes", "attrib", 4},
                        {"fileext", "Sort by File Extension", "ext", 4},
                        {"numoficons", "Sort by Number of Icons", "icons", 4},
                        separator,
                        {"Exit", "Exit", "exit"}});
}

void dressStatusBar(kit::StatusBar& statusBar) {
    statusBar.setPanels({{.width = 120, .spoken = {}}, {.width = 220, .spoken = {}}, {.autoSize = true, .spoken = {}}});
}

auto rightPane(kit::ListView* EXMain::*member, const char* name) {
    return control(member, name).at(kRight.x(), kRight.y(), kRight.width(), kRight.height()).in(&EXMain::ClientArea);
}

} // namespace

const kit::FormTable<EXMain> EXMain::kTable{
    control(&EXMain::ImageList1, "ImageList1")
        .set(pictures("commands",
                      {"large",    "progexp", "progtag", "prop",  "search", "results", "scan",   "exit", "about",
                       "name",     "size",    "icons",   "date",  "ext",    "attrib",  "delete", "asc",  "desc",
                       "workshop", "closed",  "cdrom",   "small", "list",   "report",  "file",   "open", "info"})),
    control(&EXMain::ImageList2, "ImageList2")
        .set(pictures("facts", {"bigfile", "nsub", "tfile", "nfile", "tsub", "tsize", "dpath", "dname", "biginfo",
                                "fsys", "pname", "autrun", "snum", "cdnum", "label", "comment", "size"})),
    control(&EXMain::ImageList3, "ImageList3").set(pictures("kinds", kindKeys())),
    control(&EXMain::ImageList4, "ImageList4").set(pictures("kinds", kindKeys())),
    control(&EXMain::MenuBar1, "MenuBar1").at(0, 0, kClient.width(), kMenuHeight).says("Menus"),
    control(&EXMain::ClientArea, "ClientArea").at(0, kMenuHeight, kClient.width(), kClient.height()),
    control(&EXMain::Picture1, "Picture1").at(0, 0, 620, 24).in(&EXMain::ClientArea),
    control(&EXMain::Combo1, "Combo1")
        .at(0, 0, 403, 24)
        .in(&EXMain::Picture1)
        .font("Arial")
        .says("CD-ROM")
        .set(dressDiscList)
        .onClick(&EXMain::Combo1_Click),
    control(&EXMain::Label3, "Label3").at(409, 0, 208, 25).in(&EXMain::ClientArea).font("Arial").bold(),
    control(&EXMain::Toolbar1, "Toolbar1")
        .at(0, 24, 617, 28)
        .in(&EXMain::ClientArea)
        .says("Toolbar")
        .set(dressToolbar)
        .when(&kit::Toolbar::ButtonClick, &EXMain::Toolbar1_ButtonClick),
    control(&EXMain::Label1, "Label1")
        .at(0, 52, 152, 17)
        .in(&EXMain::ClientArea)
        .text("Directories")
        .set([](kit::Label& label) { label.setIndent(kHeadingIndent); })
        .labels(&EXMain::tvwdb),
    control(&EXMain::Label2, "Label2").at(151, 52, 466, 17).in(&EXMain::ClientArea).set([](kit::ElidedLabel& label) {
        label.setIndent(kHeadingIndent);
    }),
    control(&EXMain::tvwdb, "tvwdb")
        .at(0, 69, 152, 339)
        .in(&EXMain::ClientArea)
        .set(tagged<kit::TreeView>("tvwdb"))
        .when(&kit::TreeView::NodeClick, &EXMain::tvwdb_NodeClick)
        .when(&kit::TreeView::Expand, &EXMain::tvwdb_Expand)
        .when(&kit::TreeView::Collapse, &EXMain::tvwdb_Collapse)
        .when(&kit::TreeView::DblClick, &EXMain::tvwdb_DblClick)
        .when(&kit::TreeView::MenuWanted, &EXMain::tvwdb_MouseDown),
    rightPane(&EXMain::lvwdb, "lvwdb")
        .font("Arial")
        .says("Files and directories")
        .set(dressListing)
        .set(tagged<kit::ListView>("lvwdb"))
        .onClick(&EXMain::lvwdb_Click)
        .when(&kit::ListView::DblClick, &EXMain::lvwdb_DblClick)
        .when(&kit::ListView::ColumnClick, &EXMain::lvwdb_ColumnClick)
        .when(&kit::ListView::Backspace, &EXMain::lvwdb_Backspace)
        .when(&kit::ListView::MenuWanted, &EXMain::lvwdb_MouseDown),
    rightPane(&EXMain::DriveInfo, "DriveInfo")
        .says("CD-ROM information")
        .set(facts("Information"))
        .set(tagged<kit::ListView>("driveinfo"))
        .hidden()
        .when(&kit::ListView::DblClick, &EXMain::DriveInfo_DblClick)
        .when(&kit::ListView::DblClickBeside, &EXMain::DriveInfo_DblClick)
        .when(&kit::ListView::MenuWanted, &EXMain::DriveInfo_MouseDown),
    rightPane(&EXMain::Dirinfo, "Dirinfo")
        .says("Directory information")
        .set(facts("Inforamtion"))
        .set(tagged<kit::ListView>("tvwdb"))
        .hidden()
        .when(&kit::ListView::DblClick, &EXMain::Dirinfo_DblClick)
        .when(&kit::ListView::DblClickBeside, &EXMain::Dirinfo_DblClick)
        .when(&kit::ListView::MenuWanted, &EXMain::Dirinfo_MouseDown),
    control(&EXMain::ListView1, "ListView1").at(8, 80, 60, 40).in(&EXMain::ClientArea).hidden(),
    control(&EXMain::Command1, "Command1")
        .at(8, 128, 96, 28)
        .in(&EXMain::ClientArea)
        .text("Command1")
        .hidden()
        .onClick(&EXMain::Command1_Click),
    control(&EXMain::StatusBar1, "StatusBar1").at(0, 410, 620, 20).in(&EXMain::ClientArea).set(dressStatusBar),
    control(&EXMain::prgload, "prgload").at(0, 0, 120, 17).in(&EXMain::ClientArea).says("Loading").hidden(),
    control(&EXMain::Divider1, "Divider1")
        .at(152, 52, 5, 356)
        .in(&EXMain::ClientArea)
        .says("Divider between directories and files")
        .hidden()
        .when(&kit::Divider::Moved, &EXMain::Divider1_Moved)
        .when(&kit::Divider::DblClick, &EXMain::Divider1_DblClick),
    control(&EXMain::Timer2, "Timer2").every(100).onTick(&EXMain::Timer2_Timer),
    control(&EXMain::TrayIcon1, "TrayIcon1")
        .set([](kit::TrayIcon& icon) { icon.setToolTipText("Discaro - Explorer View"); })
        .when(&kit::TrayIcon::Restore, &EXMain::TrayIcon1_Restore)
        .when(&kit::TrayIcon::Minimise, &EXMain::TrayIcon1_Minimise),
};

EXMain::EXMain()
    : Form({.name = "EXMain",
            .caption = "Discaro - Explorer View",
            .size = {kClient.width(), kMenuHeight + kClient.height()},
            .border = Border::Sizable}) {
    kTable.build(*this);
    makeParts();
    MenuBar1->build(kMenus, *this);
    Toolbar1->setPictures(ImageList1->pictures());
    tvwdb->nodes().setPictures(ImageList1->pictures());
    lvwdb->setPictures([this](const QString& key) {
        const bool large = lvwdb->view() == kit::ListView::View::LargeIcons;
        return (large ? ImageList3 : ImageList4)->icon(key);
    });
    lvwdb->setCopied([this](const kit::ListItem& row) { return m_listing->nameOf(row); });
    DriveInfo->setPictures(ImageList2->pictures());
    Dirinfo->setPictures(ImageList2->pictures());
    m_commands->disableMissingWindows();
}

void EXMain::makeParts() {
    const Sources sources{Data1, Data2};
    m_listing = std::make_unique<Listing>(
        Listing::Controls{*tvwdb, *Label2, *lvwdb, *DriveInfo, *Dirinfo, *StatusBar1, *prgload}, sources,
        [this] { return m_tree->discNumber(); });
    m_tree = std::make_unique<DiscTree>(
        DiscTree::Controls{*this, *Combo1, *ListView1, *Label3, *Label2, *tvwdb, *prgload}, *m_listing);
    m_commands = std::make_unique<Commands>(Commands::Controls{*this, *MenuBar1, *Toolbar1, *Combo1, *tvwdb, *lvwdb},
                                            sources, *m_tree, *m_listing);
    m_load = std::make_unique<CatalogueLoad>(CatalogueLoad::Controls{*this, *Timer2, *Combo1, *tvwdb, *lvwdb}, sources,
                                             *m_tree, *m_listing, *m_commands);
    m_division = std::make_unique<Division>(*this, Division::Parts{.wide = {MenuBar1, Picture1, Toolbar1},
                                                                   .area = ClientArea,
                                                                   .discs = Combo1,
                                                                   .number = Label3,
                                                                   .heading = Label1,
                                                                   .path = Label2,
                                                                   .tree = tvwdb,
                                                                   .right = {lvwdb, DriveInfo, Dirinfo},
                                                                   .statusBar = StatusBar1,
                                                                   .handle = Divider1});
}

EXMain::~EXMain() = default;

} // namespace discaro::explorer
