#include "explorer/Commands.h"

#include "app/Module1.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "base/Text.h"
#include "db/sqlite/WaitOnce.h"
#include "explorer/ListingOrder.h"
#include "explorer/ListingRows.h"
#include "explorer/NodeSearch.h"
#include "explorer/TagHandOver.h"
#include "explorer/Yielding.h"
#include "kit/common/Beep.h"
#include "kit/common/Strings.h"
#include "kit/controls/ToolbarDialog.h"
#include "kit/program/UnhandledErrors.h"

#include <map>
#include <string_view>

namespace discaro::explorer {

using base::skipErrors;
using kit::qt;
using kit::utf8;
namespace shared = app::Module1;
namespace Windows = app::Windows;

// One of the four looks of the listing.
struct ViewChoice {
    std::string_view word;
    kit::ListView::View view;
    const char* menuItem;
    const char* popUpItem;
    const char* button;
};

namespace {

using View = kit::ListView::View;

constexpr ViewChoice kViews[] = {
    {"large icons", View::LargeIcons, "listviewLargeIcons", "llarge", "Large Icons"},
    {"small icons", View::SmallIcons, "listviewSmallIcons", "lsmall", "Small Icons"},
    {"list view", View::List, "listviewListView", "llist", "List View"},
    {"report view", View::Report, "listviewDetails", "ldetails", "Report View"},
};

// Menu items that only lead to another window, and the toolbar button of the same command.
struct Way {
    const char* window = nullptr;
    const char* item = nullptr;
    const char* button = nullptr;
};

constexpr Way kWays[] = {
    {"Search", "newsearsh", "Search"},
    {"Scanform", "scannewcd", "Scan"},
    {"DeleteCD", "Deletecdromentry", "Delete"},
    {"Programs", "programsexplorer", "prog"},
    {"Workshop", "dbaseworkshop", "Workshop"},
    {"About", "aboutbox", "About"},
    {"ProgTag", "fileProgramTag", "tag"},
    {"ProgTag", "diprogtag"},
    {"ProgTag", "drprogtag"},
    {"ProgTag", "lprogtag"},
    {"ProgTag", "tprogtag"},
    {"DirSim", "SimDir"},
    {"DirSim", "DirSim2"},
};

// Where the user's own toolbar is kept.
const QString kStoreKey = QStringLiteral("2");
const QString kStoreValue = QStringLiteral("Toolbar Settings");

} // namespace

void Commands::RunCommand(const std::string& given) {
    static const std::map<std::string_view, void (Commands::*)()> kCommands{
        {"file view", &Commands::showFiles},
        {"info view", &Commands::showInfo},
        {"ascending", &Commands::ascending},
        {"descending", &Commands::descending},
        {"exit", &Commands::exitToMenu},
        {"scan", &Commands::scan},
        {"delete", &Commands::deleteDisc},
        {"workshop", &Commands::workshop},
        {"prog", &Commands::programs},
        {"search", &Commands::search},
        {"about", &Commands::about},
        {"prop", &Commands::prop},
        {"tag", &Commands::tag},
    };
    const std::string word = base::lowerAscii(given);
    skipErrors([&] {
        if (const auto command = kCommands.find(word); command != kCommands.end())
            (this->*command->second)();
        else if (const OrderKey* key = orderKeyOf(word))
            orderBy(*key);
        else
            for (const ViewChoice& choice : kViews)
                if (choice.word == word)
                    showView(choice);
    });
}

// ---- Views

void Commands::showFiles() {
    m_listing.showRows();
    markMode(true);
}

void Commands::showInfo() {
    m_listing.showFacts();
    markMode(false);
}

void Commands::markMode(bool file) {
    for (const char* item : {"listviewFileView", "lfile"})
        m_controls.menus.setMarked(item, file);
    for (const char* item : {"listviewInfoView", "linfo"})
        m_controls.menus.setMarked(item, !file);
    m_controls.toolbar.setPressed(file ? "File View" : "Info View");
}

void Commands::showView(const ViewChoice& choice) {
    m_controls.list.setView(choice.view);
    for (const ViewChoice& each : kViews) {
        m_controls.menus.setMarked(each.menuItem, &each == &choice);
        m_controls.menus.setMarked(each.popUpItem, &each == &choice);
    }
    m_controls.toolbar.setPressed(choice.button);
}

void Commands::customizeToolbar() {
    kit::Customize(m_controls.toolbar);
    m_controls.toolbar.SaveToolbar(kStoreKey, kSettingsPlace, kStoreValue);
}

void Commands::restoreToolbar() {
    m_controls.toolbar.RestoreToolbar(kStoreKey, kSettingsPlace, kStoreValue);
}

void Commands::orderBy(const OrderKey& key) {
    m_controls.list.rows().setSortKey(key.sortColumn);
    m_controls.list.rows().setSorted(true);
    for (const OrderKey& each : orderKeys()) {
        m_controls.menus.setMarked(each.menuItem, &each == &key);
        m_controls.menus.setMarked(each.popUpItem, &each == &key);
    }
    m_controls.toolbar.setPressed(qt(key.word));
}

void Commands::setOrder(Qt::SortOrder order) {
    m_controls.list.rows().setSortOrder(order);
    m_controls.list.rows().setSorted(true);
    const bool ascending = order == Qt::AscendingOrder;
    for (const char* item : {"AscendingOrder", "lascorder"})
        m_controls.menus.setMarked(item, ascending);
    for (const char* item : {"DescendingOrder", "ldescorder"})
        m_controls.menus.setMarked(item, !ascending);
    m_controls.toolbar.setPressed(ascending ? "ascending" : "descending");
}

void Commands::orderByHeader(int header) {
    if (const OrderKey* key = orderKeyOfHeader(header))
        orderBy(*key);
}

void Commands::ascending() {
    setOrder(Qt::AscendingOrder);
}

void Commands::descending() {
    setOrder(Qt::DescendingOrder);
}

void Commands::showAllContents() {
    if (m_tree.buildAllContents())
        RunCommand("info view");
}

// ---- Other windows

void Commands::disableMissingWindows() {
    for (const Way& way : kWays) {
        const bool known = Windows::Exists(way.window);
        m_controls.menus.item(way.item).setEnabled(known);
        if (way.button)
            m_controls.toolbar.setButtonEnabled(way.button, known);
    }
}

// The menu comes up from the unload. Were its error skipped, no window would be left, and nobody would know why.
void Commands::exitToMenu() {
    SkipMark = "don't skip";
    kit::reportingErrors([this] { m_controls.window.Unload(); });
}

// The same for a window that follows: its error would leave nothing but the notice that it is loading.
void Commands::leaveTo(const app::Move& move, const std::function<void()>& setVariables) {
    kit::reportingErrors([&] { app::handOver(move, setVariables); });
}

void Commands::handOverTo(const char* window, const std::function<void()>& setVariables) {
    if (!Windows::Exists(window))
        return;
    SkipMark = "skip";
    leaveTo({.from = "EXMain", .to = window, .returnTo = "explore"}, setVariables);
}

void Commands::scan() {
    handOverTo("Scanform", [] { shared::ScanCancelled = 0; });
}

void Commands::deleteDisc() {
    handOverTo("DeleteCD");
}

void Commands::workshop() {
    handOverTo("Workshop");
}

void Commands::programs() {
    handOverTo("Programs");
}

void Commands::search() {
    leaveTo({.from = "EXMain", .to = "Search", .returnTo = "explore", .keepFrom = true});
}

void Commands::about() {
    yield();
    Windows::Show("About", kit::Form::Modality::Modal);
}

// Without a selected node the data sources stand on something else.
void Commands::simulateDirectory() {
    const int node = m_controls.tree.selectedNode();
    if (node == 0 || node == kFirst) {
        kit::Beep();
        return;
    }
    {
        const db::WaitOnce once;
        explorer::simulateDirectory(m_sources.directories, utf8(m_controls.discs.text()));
    }
    Windows::Show("DirSim", kit::Form::Modality::Modal);
}

// ---- Properties

// What the control is for that the user is in. The panes of facts have a tag of their own.
std::string Commands::activeTag() const {
    for (const QWidget* widget = m_controls.window.focusWidget(); widget && widget != &m_controls.window;
         widget = widget->parentWidget())
        if (const QVariant tag = widget->property("Tag"); tag.isValid())
            return utf8(tag.toString());
    return {};
}

void Commands::prop() {
    const std::string active = activeTag();
    if (active == "lvwdb")
        propOfRow();
    else if (active == "tvwdb")
        propOfSelected();
    else if (active == "driveinfo")
        propOfDisc();
}

void Commands::propInTree() {
    m_controls.tree.setFocus();
    RunCommand("prop");
}

void Commands::propOfRow() {
    const kit::ListItem row = m_controls.list.selectedRow();
    if (!isFileKey(utf8(row.key))) {
        shared::SelectedDirectory = utf8(row.key);
        return Windows::Show("EXDir", kit::Form::Modality::Modal);
    }
    shared::SelectedFile = utf8(row.tag);
    chooseNodesDirectory();
    Windows::Show("EXFile", kit::Form::Modality::Modal);
}

void Commands::chooseNodesDirectory() {
    skipErrors(
        [this] { shared::SelectedDirectory = utf8(m_controls.tree.nodes().tag(m_controls.tree.selectedNode())); });
}

void Commands::propOfNode() {
    chooseNodesDirectory();
    Windows::Show("EXDir", kit::Form::Modality::Modal);
}

void Commands::propOfSelected() {
    const int node = m_controls.tree.selectedNode();
    if (node == kFirst)
        propOfDisc();
    else if (node != 0)
        propOfNode();
}

void Commands::propOfDisc() {
    shared::SelectedDisc = m_tree.discNumber(); // none is chosen where a lock keeps the list empty: then none is shown
    Windows::Show("EXCDROM", kit::Form::Modality::Modal);
}

// ---- Program tags

void Commands::tag() {
    const std::string active = base::lowerAscii(activeTag());
    if (active == "tvwdb" && m_controls.tree.selectedNode() == 0)
        return;
    prepareTag(active);
    if (!m_controls.window.isUnloaded())
        Windows::Show("ProgTag", kit::Form::Modality::Modal);
}

// Tells the window that tags what there is to tag.
void Commands::prepareTag(const std::string& active) {
    const db::WaitOnce once;
    if (active == "lvwdb")
        tagRow();
    else if (active == "tvwdb")
        tagNode();
    else if (active == "driveinfo")
        handOverDisc(m_sources.discs);
}

void Commands::tagInTree() {
    m_controls.tree.setFocus();
    RunCommand("tag");
}

void Commands::tagNode() {
    if (m_controls.tree.selectedNode() == kFirst)
        handOverDisc(m_sources.discs);
    else
        handOverDirectory(m_sources.discs, m_sources.directories);
}

// A directory is tagged where it is listed; one that the tree does not have leaves the directory that is.
void Commands::tagRow() {
    const kit::ListItem row = m_controls.list.selectedRow();
    if (isFileKey(utf8(row.key)))
        return handOverFile({.number = utf8(row.tag), .name = utf8(row.text), .size = utf8(row.column(kSizeColumn))},
                            m_sources.discs, m_sources.directories);
    skipErrors([&] {
        if (m_tree.goToListedDirectory(row))
            yield();
    });
    handOverDirectory(m_sources.discs, m_sources.directories);
}

// ---- Double clicks

void Commands::openRow() {
    skipErrors([this] {
        const kit::ListItem row = m_controls.list.selectedRow();
        if (isFileKey(utf8(row.key)))
            propOfRow();
        else
            m_tree.goToListedDirectory(row);
    });
}

void Commands::openNode() {
    const bool first = m_controls.tree.selectedNode() == kFirst;
    skipErrors([this] { propOfSelected(); });
    if (first && !m_controls.window.isUnloaded())
        skipErrors([this] { m_controls.tree.nodes().setExpanded(m_controls.tree.selectedNode(), true); });
}

} // namespace discaro::explorer
