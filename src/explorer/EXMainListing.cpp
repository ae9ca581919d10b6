#include "app/Module1.h"
#include "app/Windows.h"
#include "base/Number.h"
#include "base/RuntimeError.h"
#include "catalogue/Names.h"
#include "db/WaitOnce.h"
#include "explorer/EXMain.h"
#include "explorer/InfoRows.h"
#include "explorer/ListingOrder.h"
#include "explorer/ListingRows.h"
#include "explorer/Queries.h"
#include "explorer/StatusTexts.h"
#include "explorer/UnlessLocked.h"
#include "kit/Strings.h"

#include <limits>
#include <optional>

// The listing, the panes, the status bar and the order of the explorer.
namespace discaro::explorer {

using base::skipErrors;
using kit::qt;
using kit::utf8;
namespace shared = app::Module1;

namespace {

constexpr int kCountPanel = 1;
constexpr int kSizePanel = 2;

// A directory's number with wildcards can find all rows that there are. Nobody looks for them in one directory, and a
// listing is read in one go.
constexpr int64_t kMostOfOthers = 1000;

int64_t mostRows(const std::string& directoryNumber) {
    return findsOthers(directoryNumber) ? kMostOfOthers : std::numeric_limits<int64_t>::max();
}

bool isFile(const kit::ListItem& item) {
    return isFileKey(utf8(item.key));
}

// Directories stand apart from files by their capitals, and in front of them by the blank.
QString shownText(const ListingRow& row) {
    return row.kind == "folder" ? u' ' + qt(row.text).toUpper() : qt(row.text);
}

kit::ListItem itemOf(const ListingRow& row) {
    kit::ListItem item{.key = qt(row.key),
                       .text = shownText(row),
                       .icon = qt(row.kind),
                       .tag = qt(row.tag),
                       .subItems = {}};
    item.subItems.reserve(row.subItems.size());
    for (const std::string& subItem : row.subItems)
        item.subItems.push_back(qt(subItem));
    return item;
}

void fill(kit::ListView& pane, const std::vector<InfoRow>& facts) {
    pane.clear();
    for (const InfoRow& fact : facts)
        pane.add({.key = {},
                  .text = qt(fact.text),
                  .icon = qt(fact.icon),
                  .tag = {},
                  .subItems = {qt(fact.value)}});
}

} // namespace

// ---- Panes

// The keyboard goes with the user from one pane to the other.
void EXMain::showPane(kit::ListView& pane) {
    pane.show();
    for (kit::ListView* other : {lvwdb, DriveInfo, Dirinfo}) {
        if (other == &pane)
            continue;
        if (focusWidget() && other->isAncestorOf(focusWidget()))
            pane.setFocus();
        other->hide();
    }
}

void EXMain::ShowDiscInfo() {
    const db::WaitOnce once;
    DriveInfo->clear();
    showPane(*DriveInfo);
    skipErrors([this] { Data1.Recordset().FindFirst(rowCondition(discNumber())); });
    fill(*DriveInfo, discInfo(Data1));
}

void EXMain::ShowDirectoryInfo() {
    Dirinfo->clear();
    skipErrors([this] {
        const QString& key = tvwdb->nodes().key(tvwdb->selectedNode());
        Data2.Recordset().FindFirst(rowCondition(utf8(key)));
    });
    fill(*Dirinfo, directoryInfo(Data2));
}

void EXMain::DriveInfo_DblClick() {
    propInTree();
}

void EXMain::Dirinfo_DblClick() {
    propInTree();
}

void EXMain::DriveInfo_MouseDown(QPoint global) {
    MenuBar1->popUp("Driveview", global);
}

void EXMain::Dirinfo_MouseDown(QPoint global) {
    MenuBar1->popUp("Dirview", global);
}

// ---- The listing

void EXMain::ShowDirectory() {
    const db::WaitOnce once;
    skipErrors([] { shared::OpenCatalogue(); });
    const int node = tvwdb->selectedNode();
    if (node == 0)
        return;
    if (node == kFirst)
        return ShowDiscInfo();
    showPane(ViewMode == "file" ? *lvwdb : *Dirinfo);
    ShowDirectoryInfo();
    prgload->show();
    lvwdb->clear();
    lvwdb->setEmptyText({});
    std::optional<int64_t> directories;
    skipErrors([&] { directories = listDirectories(node); });
    skipErrors([this] {
        Label2->setText(qt(Data2.Recordset()(catalogue::directories::kDirectoryPath).Text()));
    });
    skipErrors([&] {
        if (listFiles(node) == 0 && directories == 0)
            tellEmpty(node);
    });
    prgload->hide();
    showCount();
    skipErrors([this] { showTotal(); });
}

// How many rows there are, those that can't be read and are not listed among them.
int64_t EXMain::listDirectories(int node) {
    const kit::TreeModel& nodes = tvwdb->nodes();
    if (nodes.childCount(node) == 0)
        return 0;
    const std::string key = utf8(nodes.key(node));
    const auto rows = catalogue()->OpenRecordset(subdirectoriesQuery(key));
    const int64_t most = mostRows(key);
    int64_t met = 0;
    for (; met < most && !rows->Eof(); rows->MoveNext(), ++met)
        skipErrorsUnlessLocked([&] { addRow(directoryRow(*rows, node)); });
    return met;
}

int64_t EXMain::listFiles(int node) {
    const std::string key = utf8(tvwdb->nodes().key(node));
    const auto rows = catalogue()->OpenRecordset(filesQuery(key));
    FileRows files(*rows);
    const int64_t most = mostRows(key);
    int64_t met = 0;
    for (; met < most && !rows->Eof(); rows->MoveNext(), ++met) {
        skipErrorsUnlessLocked(
            [&] { prgload->setValue(static_cast<int64_t>(rows->PercentPosition())); });
        skipErrorsUnlessLocked([&] { addRow(files.row()); });
    }
    return met;
}

void EXMain::addRow(const ListingRow& row) {
    lvwdb->add(itemOf(row));
}

// Of a disc among all discs only the files are listed.
void EXMain::tellEmpty(int node) {
    const bool amongDiscs = tvwdb->nodes().image(node) == u"cdrom";
    lvwdb->setEmptyText(amongDiscs ? "No files in this directory" : "This directory is empty");
}

// A directory is listed in capitals; its own name is the node's.
QString EXMain::nameOf(const kit::ListItem& row) const {
    const int node = isFile(row) ? 0 : tvwdb->nodes().find(row.key);
    return node == 0 ? row.text : tvwdb->nodes().text(node);
}

// From a directory to the one that holds it, up to the disc.
void EXMain::lvwdb_Backspace() {
    tvwdb->clickParent();
}

void EXMain::lvwdb_DblClick() {
    skipErrors([this] {
        const kit::ListItem row = lvwdb->selectedRow();
        if (isFile(row))
            propOfRow();
        else
            goToListedDirectory(row);
    });
}

void EXMain::lvwdb_MouseDown(QPoint global) {
    MenuBar1->popUp("Listviewmenu", global);
}

// ---- The status bar

void EXMain::showCount() {
    StatusBar1->setPanelText(kCountPanel, qt(fileCountText(lvwdb->rows().count())));
}

void EXMain::showTotal() {
    const db::Value size = Data2.Recordset()(catalogue::directories::kSize).Value();
    StatusBar1->setPanelText(kSizePanel, qt(totalSizeText(size)));
}

// Errors are not skipped here: a click into an empty listing ends the program.
void EXMain::lvwdb_Click() {
    const bool file = isFile(lvwdb->selectedRow());
    if (file && lvwdb->isSelected(lvwdb->selectedItem()))
        return showSelection();
    showCount();
    showTotal();
}

void EXMain::showSelection() {
    const auto selected = lvwdb->selectedPlaces();
    double sum = 0;
    for (const int place : selected)
        sum += base::leadingNumber(utf8(lvwdb->rows().item(place).column(kSortSizeColumn)));
    StatusBar1->setPanelText(kCountPanel, qt(fileCountText(static_cast<int64_t>(selected.size()))));
    StatusBar1->setPanelText(kSizePanel, qt(fileSizeSumText(sum)));
}

// ---- Order

void EXMain::lvwdb_ColumnClick(int column) {
    if (const OrderKey* key = orderKeyOfHeader(column + 1))
        orderBy(*key);
}

void EXMain::orderBy(const OrderKey& key) {
    lvwdb->rows().setSortKey(key.sortColumn);
    lvwdb->rows().setSorted(true);
    for (const OrderKey& each : orderKeys()) {
        MenuBar1->setMarked(each.menuItem, &each == &key);
        MenuBar1->setMarked(each.popUpItem, &each == &key);
    }
    Toolbar1->setPressed(qt(key.word));
}

void EXMain::setOrder(Qt::SortOrder order) {
    lvwdb->rows().setSortOrder(order);
    lvwdb->rows().setSorted(true);
    const bool ascending = order == Qt::AscendingOrder;
    for (const char* item : {"AscendingOrder", "lascorder"})
        MenuBar1->setMarked(item, ascending);
    for (const char* item : {"DescendingOrder", "ldescorder"})
        MenuBar1->setMarked(item, !ascending);
    Toolbar1->setPressed(ascending ? "ascending" : "descending");
}

void EXMain::AscendingOrder_Click() {
    setOrder(Qt::AscendingOrder);
}

void EXMain::DescendingOrder_Click() {
    setOrder(Qt::DescendingOrder);
}

} // namespace discaro::explorer
