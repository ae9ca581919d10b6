#include "app/Module1.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "base/Text.h"
#include "db/WaitOnce.h"
#include "explorer/Division.h"
#include "explorer/EXMain.h"
#include "explorer/ListingOrder.h"
#include "explorer/ListingRows.h"
#include "explorer/TagHandOver.h"
#include "kit/Beep.h"
#include "kit/Strings.h"
#include "kit/UnhandledErrors.h"
#include "kit/UserSettings.h"
#include "kit/Yield.h"

#include <map>
#include <string_view>

// The command words of the explorer, and what it hands over to other windows.
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

// Where the user's own toolbar is kept, and size and division of the window.
const QString kStoreKey = QStringLiteral("2");
const QString kStoreSubkey = QStringLiteral("Software\\Quorlen\\Discaro");
const QString kStoreValue = QStringLiteral("Toolbar Settings");

} // namespace

void EXMain::RunCommand(const std::string& given) {
    static const std::map<std::string_view, void (EXMain::*)()> kCommands{
        {"file view", &EXMain::showFiles},
        {"info view", &EXMain::showInfo},
        {"ascending", &EXMain::AscendingOrder_Click},
        {"descending", &EXMain::DescendingOrder_Click},
        {"exit", &EXMain::exitToMenu},
        {"scan", &EXMain::scan},
        {"delete", &EXMain::deleteDisc},
        {"workshop", &EXMain::workshop},
        {"prog", &EXMain::programs},
        {"search", &EXMain::search},
        {"about", &EXMain::about},
        {"prop", &EXMain::prop},
        {"tag", &EXMain::tag},
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

void EXMain::Toolbar1_ButtonClick(QString key) {
    RunCommand(utf8(key));
}

// ---- Views

void EXMain::showFiles() {
    showPane(*lvwdb);
    ViewMode = "file";
    markMode(true);
}

void EXMain::showInfo() {
    showPane(*Dirinfo);
    ViewMode = "info";
    markMode(false);
}

void EXMain::markMode(bool file) {
    for (const char* item : {"listviewFileView", "lfile"})
        MenuBar1->setMarked(item, file);
    for (const char* item : {"listviewInfoView", "linfo"})
        MenuBar1->setMarked(item, !file);
    Toolbar1->setPressed(file ? "File View" : "Info View");
}

void EXMain::showView(const ViewChoice& choice) {
    lvwdb->setView(choice.view);
    for (const ViewChoice& each : kViews) {
        MenuBar1->setMarked(each.menuItem, &each == &choice);
        MenuBar1->setMarked(each.popUpItem, &each == &choice);
    }
    Toolbar1->setPressed(choice.button);
}

void EXMain::CustomizetheToolbar_Click() {
    Toolbar1->Customize();
    Toolbar1->SaveToolbar(kStoreKey, kStoreSubkey, kStoreValue);
}

void EXMain::restoreToolbar() {
    Toolbar1->RestoreToolbar(kStoreKey, kStoreSubkey, kStoreValue);
}

void EXMain::saveDivision() {
    QSettings settings = kit::userSettings(kStoreSubkey);
    m_division->save(settings);
}

void EXMain::restoreDivision() {
    m_division->restore(kit::userSettings(kStoreSubkey));
}

// ---- Other windows

// The menu comes up from the unload. Were its error skipped, no window would be left, and nobody would know why.
void EXMain::exitToMenu() {
    SkipMark = "don't skip";
    kit::reportingErrors([this] { Unload(); });
}

// The same for a window that follows: its error would leave nothing but the notice that it is loading.
void EXMain::leaveTo(const app::Move& move, const std::function<void()>& setVariables) {
    kit::reportingErrors([&] { app::handOver(move, setVariables); });
}

void EXMain::handOverTo(const char* window, const std::function<void()>& setVariables) {
    if (!Windows::Exists(window))
        return;
    SkipMark = "skip";
    leaveTo({.from = "EXMain", .to = window, .returnTo = "explore"}, setVariables);
}

void EXMain::scan() {
    handOverTo("Scanform", [] { shared::ScanCancelled = 0; });
}

void EXMain::deleteDisc() {
    handOverTo("DeleteCD");
}

void EXMain::workshop() {
    handOverTo("Workshop");
}

void EXMain::programs() {
    handOverTo("Programs");
}

void EXMain::search() {
    leaveTo({.from = "EXMain", .to = "Search", .returnTo = "explore", .keepFrom = true});
}

void EXMain::about() {
    kit::yield();
    Windows::Show("About", Modality::Modal);
}

// Without a selected node the data sources stand on something else.
void EXMain::SimDir_Click() {
    const int node = tvwdb->selectedNode();
    if (node == 0 || node == kFirst) {
        kit::Beep();
        return;
    }
    {
        const db::WaitOnce once;
        simulateDirectory(Data2, utf8(Combo1->text()));
    }
    Windows::Show("DirSim", Modality::Modal);
}

// ---- Properties

// What the control is for that the user is in. The panes of facts have a tag of their own.
std::string EXMain::activeTag() const {
    for (const QWidget* widget = focusWidget(); widget && widget != this;
         widget = widget->parentWidget())
        if (const QVariant tag = widget->property("Tag"); tag.isValid())
            return utf8(tag.toString());
    return {};
}

void EXMain::prop() {
    const std::string active = activeTag();
    if (active == "lvwdb")
        propOfRow();
    else if (active == "tvwdb")
        propOfSelected();
    else if (active == "driveinfo")
        propOfDisc();
}

void EXMain::propInTree() {
    tvwdb->setFocus();
    RunCommand("prop");
}

void EXMain::propOfRow() {
    const kit::ListItem row = lvwdb->selectedRow();
    if (!isFileKey(utf8(row.key))) {
        shared::SelectedDirectory = utf8(row.key);
        return Windows::Show("EXDir", Modality::Modal);
    }
    shared::SelectedFile = utf8(row.tag);
    chooseNodesDirectory();
    Windows::Show("EXFile", Modality::Modal);
}

void EXMain::chooseNodesDirectory() {
    skipErrors(
        [this] { shared::SelectedDirectory = utf8(tvwdb->nodes().tag(tvwdb->selectedNode())); });
}

void EXMain::propOfNode() {
    chooseNodesDirectory();
    Windows::Show("EXDir", Modality::Modal);
}

void EXMain::propOfSelected() {
    const int node = tvwdb->selectedNode();
    if (node == kFirst)
        propOfDisc();
    else if (node != 0)
        propOfNode();
}

void EXMain::propOfDisc() {
    skipErrors([this] { shared::SelectedDisc = discNumber(); });
    Windows::Show("EXCDROM", Modality::Modal);
}

// ---- Program tags

void EXMain::tag() {
    const std::string active = base::lowerAscii(activeTag());
    if (active == "tvwdb" && tvwdb->selectedNode() == 0)
        return;
    prepareTag(active);
    if (!isUnloaded())
        Windows::Show("ProgTag", Modality::Modal);
}

// Tells the window that tags what there is to tag.
void EXMain::prepareTag(const std::string& active) {
    const db::WaitOnce once;
    if (active == "lvwdb")
        tagRow();
    else if (active == "tvwdb")
        tagNode();
    else if (active == "driveinfo")
        tagDisc(Data1);
}

void EXMain::tagInTree() {
    tvwdb->setFocus();
    RunCommand("tag");
}

void EXMain::tagNode() {
    if (tvwdb->selectedNode() == kFirst)
        tagDisc(Data1);
    else
        tagDirectory(Data1, Data2);
}

// A directory is tagged where it is listed; one that the tree does not have leaves the directory that is.
void EXMain::tagRow() {
    const kit::ListItem row = lvwdb->selectedRow();
    if (isFileKey(utf8(row.key)))
        return tagFile({.number = utf8(row.tag),
                        .name = utf8(row.text),
                        .size = utf8(row.column(kSizeColumn))},
                       Data1, Data2);
    skipErrors([&] {
        if (goToListedDirectory(row))
            yield();
    });
    tagDirectory(Data1, Data2);
}

} // namespace discaro::explorer
