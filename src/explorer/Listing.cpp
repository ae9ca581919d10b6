#include "explorer/Listing.h"

#include "app/Module1.h"
#include "base/Number.h"
#include "base/RuntimeError.h"
#include "catalogue/Discs.h"
#include "catalogue/Names.h"
#include "db/sqlite/WaitOnce.h"
#include "explorer/InfoRows.h"
#include "explorer/ListingRows.h"
#include "explorer/NodeSearch.h"
#include "explorer/Queries.h"
#include "explorer/Texts.h"
#include "explorer/UnlessLocked.h"
#include "explorer/Yielding.h"
#include "kit/common/Strings.h"

#include <limits>
#include <optional>

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
    kit::ListItem item{
        .key = qt(row.key), .text = shownText(row), .icon = qt(row.kind), .tag = qt(row.tag), .subItems = {}};
    item.subItems.reserve(row.subItems.size());
    for (const std::string& subItem : row.subItems)
        item.subItems.push_back(qt(subItem));
    return item;
}

void fill(kit::ListView& pane, const std::vector<InfoRow>& facts) {
    pane.clear();
    for (const InfoRow& fact : facts)
        pane.add({.key = {}, .text = qt(fact.text), .icon = qt(fact.icon), .tag = {}, .subItems = {qt(fact.value)}});
}

} // namespace

// ---- Panes

// The keyboard goes with the user from one pane to the other.
void Listing::showPane(kit::ListView& pane) {
    pane.show();
    const QWidget* const focus = pane.window()->focusWidget();
    for (kit::ListView* other : {&m_controls.list, &m_controls.discFacts, &m_controls.directoryFacts}) {
        if (other == &pane)
            continue;
        if (focus && other->isAncestorOf(focus))
            pane.setFocus();
        other->hide();
    }
}

void Listing::showRows() {
    showPane(m_controls.list);
    ViewMode = "file";
}

void Listing::showFacts() {
    showPane(m_controls.directoryFacts);
    ViewMode = "info";
}

void Listing::ShowDiscInfo() {
    const db::WaitOnce once;
    m_controls.discFacts.clear();
    showPane(m_controls.discFacts);
    skipErrors([this] { m_sources.discs.Recordset().FindFirst(catalogue::rowCondition(m_discNumber())); });
    fill(m_controls.discFacts, discInfo(m_sources.discs));
}

void Listing::ShowDirectoryInfo() {
    m_controls.directoryFacts.clear();
    skipErrors([this] {
        const QString& key = m_controls.tree.nodes().key(m_controls.tree.selectedNode());
        m_sources.directories.Recordset().FindFirst(catalogue::rowCondition(utf8(key)));
    });
    fill(m_controls.directoryFacts, directoryInfo(m_sources.directories));
}

// ---- The listing

void Listing::clear() {
    m_controls.list.clear();
    m_controls.list.setEmptyText({});
}

void Listing::ShowDirectory() {
    const db::WaitOnce once;
    skipErrors([] { shared::OpenCatalogue(); });
    const int node = m_controls.tree.selectedNode();
    if (node == 0)
        return;
    if (node == kFirst)
        return ShowDiscInfo();
    showPane(ViewMode == "file" ? m_controls.list : m_controls.directoryFacts);
    ShowDirectoryInfo();
    m_controls.progress.show();
    clear();
    std::optional<int64_t> directories;
    skipErrors([&] { directories = listDirectories(node); });
    skipErrors([this] {
        m_controls.path.setText(qt(m_sources.directories.Recordset()(catalogue::directories::kDirectoryPath).Text()));
    });
    skipErrors([&] {
        if (listFiles(node) == 0 && directories == 0)
            tellEmpty(node);
    });
    m_controls.progress.hide();
    showCount();
    skipErrors([this] { showTotal(); });
}

// How many rows there are, those that can't be read and are not listed among them.
int64_t Listing::listDirectories(int node) {
    const kit::TreeModel& nodes = m_controls.tree.nodes();
    if (nodes.childCount(node) == 0)
        return 0;
    const std::string key = utf8(nodes.key(node));
    const auto rows = sharedCatalogue()->OpenRecordset(subdirectoriesQuery(key));
    const int64_t most = mostRows(key);
    int64_t met = 0;
    for (; met < most && !rows->Eof(); rows->MoveNext(), ++met)
        skipErrorsUnlessLocked([&] { addRow(directoryRow(*rows, node)); });
    return met;
}

int64_t Listing::listFiles(int node) {
    const std::string key = utf8(m_controls.tree.nodes().key(node));
    const auto rows = sharedCatalogue()->OpenRecordset(filesQuery(key));
    FileRows files(*rows);
    const int64_t most = mostRows(key);
    int64_t met = 0;
    for (; met < most && !rows->Eof(); rows->MoveNext(), ++met) {
        skipErrorsUnlessLocked([&] { m_controls.progress.setValue(static_cast<int64_t>(rows->PercentPosition())); });
        skipErrorsUnlessLocked([&] { addRow(files.row()); });
    }
    return met;
}

void Listing::addRow(const ListingRow& row) {
    m_controls.list.add(itemOf(row));
}

// Of a disc among all discs only the files are listed.
void Listing::tellEmpty(int node) {
    const bool amongDiscs = m_controls.tree.nodes().image(node) == u"cdrom";
    m_controls.list.setEmptyText(amongDiscs ? kNoFiles : kEmptyDirectory);
}

// A directory is listed in capitals; its own name is the node's.
QString Listing::nameOf(const kit::ListItem& row) const {
    const int node = isFile(row) ? 0 : m_controls.tree.nodes().find(row.key);
    return node == 0 ? row.text : m_controls.tree.nodes().text(node);
}

// ---- The status bar

void Listing::showCount() {
    m_controls.statusBar.setPanelText(kCountPanel, qt(fileCountText(m_controls.list.rows().count())));
}

void Listing::showTotal() {
    const db::Value size = m_sources.directories.Recordset()(catalogue::directories::kSize).Value();
    m_controls.statusBar.setPanelText(kSizePanel, qt(totalSizeText(size)));
}

// Errors are not skipped here: a click into an empty listing ends the program.
void Listing::rowClicked() {
    const bool file = isFile(m_controls.list.selectedRow());
    if (file && m_controls.list.isSelected(m_controls.list.selectedItem()))
        return showSelection();
    showCount();
    showTotal();
}

void Listing::showSelection() {
    const auto selected = m_controls.list.selectedPlaces();
    double sum = 0;
    for (const int place : selected)
        sum += base::leadingNumber(utf8(m_controls.list.rows().item(place).column(kSortSizeColumn)));
    m_controls.statusBar.setPanelText(kCountPanel, qt(fileCountText(static_cast<int64_t>(selected.size()))));
    m_controls.statusBar.setPanelText(kSizePanel, qt(fileSizeSumText(sum)));
}

// ---- Jumps

// A directory's row has a node's index for its tag, which can equal a file's number: rows are looked at in the order
// of the listing.
void Listing::jumpToFile() {
    if (shared::JumpFile.empty())
        return;
    const QString wanted = qt(shared::JumpFile);
    kit::ListModel& rows = m_controls.list.rows();
    for (int place = 0; place < rows.count(); ++place)
        if (rows.item(place).tag == wanted) {
            m_controls.list.select(place);
            m_controls.list.ensureVisible(place);
            break;
        }
    shared::JumpFile.clear();
}

} // namespace discaro::explorer
