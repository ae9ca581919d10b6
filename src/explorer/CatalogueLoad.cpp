#include "explorer/CatalogueLoad.h"

#include "app/Module1.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "db/sqlite/WaitOnce.h"
#include "explorer/Texts.h"
#include "explorer/Yielding.h"
#include "kit/common/Beep.h"
#include "kit/program/MsgBox.h"

namespace discaro::explorer {

using base::skipErrors;

void CatalogueLoad::load() {
    const db::WaitOnce once;
    m_controls.timer.setEnabled(false);
    const bool again = m_tree.isLocked();
    const bool afresh = !again || DiscTree::isJumpWanted();
    refreshSources();
    if (catalogueIsEmpty())
        return leaveEmptyCatalogue();
    showCatalogue(afresh);
    yield();
    if (m_controls.window.isUnloaded())
        return DiscTree::forgetJumps();
    if (afresh)
        m_commands.restoreToolbar();
    if (!m_tree.isLocked()) {
        m_tree.jumpToDirectory();
        m_listing.jumpToFile();
    } else if (!again) {
        tellLocked();
    }
}

void CatalogueLoad::refreshSources() {
    for (db::DataSource* source : {&m_sources.discs, &m_sources.directories})
        if (!source->HasRecordset())
            skipErrors([source] { source->Refresh(); });
}

void CatalogueLoad::showCatalogue(bool afresh) {
    skipErrors([] { app::Module1::OpenCatalogue(); });
    m_tree.addFirstNode();
    if (afresh) {
        m_controls.list.rows().setSortOrder(Qt::AscendingOrder);
        m_listing.ViewMode = "file";
    }
    m_tree.FillDiscList();
    if (!m_tree.isLocked()) // else the tree that stands is not built anew, and the user's choice stays
        m_tree.selectCurrentNode();
    app::Windows::Unload("Loading");
    m_controls.discs.setListIndex(0);
}

bool CatalogueLoad::catalogueIsEmpty() {
    bool empty = false;
    skipErrors([&] { empty = m_sources.discs.Recordset().RecordCount() == 0; });
    return empty;
}

void CatalogueLoad::leaveEmptyCatalogue() {
    const db::WaitOnce::Pause pause;
    kit::Beep();
    m_controls.window.Unload();
    app::Windows::Show("Switch");
    app::Windows::Unload("Loading");
}

void CatalogueLoad::refresh() {
    const db::WaitOnce once;
    m_tree.emptyDiscList();
    yield();
    if (m_controls.window.isUnloaded())
        return;
    skipErrors([] { app::Module1::OpenCatalogue(); });
    m_tree.FillDiscList();
    m_controls.discs.setListIndex(0); // which yields
    if (m_controls.window.isUnloaded())
        return;
    skipErrors([this] { m_controls.tree.selectNode(m_controls.tree.selectedNode()); });
    skipErrors([this] { m_sources.discs.Refresh(); });
    if (m_tree.isLocked())
        tellLocked();
}

void CatalogueLoad::tellLocked() {
    const db::WaitOnce::Pause pause;
    kit::MsgBox(kCatalogueLocked, kit::Buttons::Ok, kit::Icon::Exclamation, kCatalogueLockedTitle, &m_controls.window);
}

} // namespace discaro::explorer
