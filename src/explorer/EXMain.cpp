#include "explorer/EXMain.h"

#include "app/Module1.h"
#include "app/OpenSource.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "db/sqlite/WaitOnce.h"
#include "explorer/Commands.h"
#include "explorer/Division.h"
#include "explorer/Texts.h"
#include "explorer/Yielding.h"
#include "kit/common/Beep.h"
#include "kit/common/UserSettings.h"
#include "kit/program/MsgBox.h"

// Load, delayed load and unload of the explorer.
namespace discaro::explorer {

using base::skipErrors;

namespace {

constexpr int kProgressPanel = 3;
constexpr int kProgressMargin = 40; // twips

} // namespace

void EXMain::Form_Load() {
    const db::WaitOnce once;
    skipErrors([this] { app::openSource(*this, Data1, "drive"); });
    yield();
    skipErrors([this] { app::openSource(*this, Data2, "directories"); });
    yield();
    Timer2->setEnabled(true);
    m_division->restore(kit::userSettings(kSettingsPlace));
    m_division->FitProgressBar(*prgload, *StatusBar1, kProgressPanel, kProgressMargin);
    prgload->setValue(0);
}

void EXMain::Form_Resize() {
    if (m_division)
        m_division->lay();
}

void EXMain::Form_Unload() {
    QSettings settings = kit::userSettings(kSettingsPlace);
    m_division->save(settings);
    if (m_commands->SkipMark == "skip") {
        m_commands->SkipMark.clear();
        return;
    }
    m_division->releaseProgressBar();
    // The menu opens the catalogue that is there, be it another than the one that was explored.
    giveBack();
    app::Windows::Show("Switch");
}

// Where it only makes up for a lock, what the user has chosen meanwhile stays.
void EXMain::Timer2_Timer() {
    const db::WaitOnce once;
    Timer2->setEnabled(false);
    const bool again = m_tree->isLocked();
    const bool afresh = !again || DiscTree::isJumpWanted();
    for (db::DataSource* source : {&Data1, &Data2})
        if (!source->HasRecordset())
            skipErrors([source] { source->Refresh(); });
    if (catalogueIsEmpty())
        return leaveEmptyCatalogue();
    skipErrors([] { app::Module1::OpenCatalogue(); });
    m_tree->addFirstNode();
    if (afresh) {
        lvwdb->rows().setSortOrder(Qt::AscendingOrder);
        m_listing->ViewMode = "file";
    }
    m_tree->FillDiscList();
    if (!m_tree->isLocked()) // else the tree that stands is not built anew, and the user's choice stays
        m_tree->selectCurrentNode();
    app::Windows::Unload("Loading");
    Combo1->setListIndex(0);
    yield();
    if (isUnloaded())
        return DiscTree::forgetJumps();
    if (afresh)
        m_commands->restoreToolbar();
    if (!m_tree->isLocked()) {
        m_tree->jumpToDirectory();
        m_listing->jumpToFile();
    } else if (!again) {
        tellLocked();
    }
}

void EXMain::tellLocked() {
    const db::WaitOnce::Pause pause;
    kit::MsgBox(kCatalogueLocked, kit::Buttons::Ok, kit::Icon::Exclamation, kCatalogueLockedTitle, this);
}

// A disc list that a lock has kept empty is filled by the delayed load.
void EXMain::changeEvent(QEvent* event) {
    Form::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && isLoaded() && m_tree->isLocked())
        Timer2->setEnabled(true);
}

void EXMain::refreshall_Click() {
    const db::WaitOnce once;
    m_tree->emptyDiscList();
    yield();
    if (isUnloaded())
        return;
    skipErrors([] { app::Module1::OpenCatalogue(); });
    m_tree->FillDiscList();
    Combo1->setListIndex(0); // which yields
    if (isUnloaded())
        return;
    skipErrors([this] { tvwdb->selectNode(tvwdb->selectedNode()); });
    skipErrors([this] { Data1.Refresh(); });
    if (m_tree->isLocked())
        tellLocked();
}

bool EXMain::catalogueIsEmpty() {
    bool empty = false;
    skipErrors([&] { empty = Data1.Recordset().RecordCount() == 0; });
    return empty;
}

void EXMain::leaveEmptyCatalogue() {
    const db::WaitOnce::Pause pause;
    kit::Beep();
    Unload();
    app::Windows::Show("Switch");
    app::Windows::Unload("Loading");
}

} // namespace discaro::explorer
