#include "explorer/EXMain.h"

#include "app/OpenSource.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "db/sqlite/WaitOnce.h"
#include "explorer/Commands.h"
#include "explorer/Division.h"
#include "explorer/Yielding.h"
#include "kit/common/UserSettings.h"

// Load and unload of the explorer.
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

// A disc list that a lock has kept empty is filled by the delayed load.
void EXMain::changeEvent(QEvent* event) {
    Form::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && isLoaded() && m_tree->isLocked())
        Timer2->setEnabled(true);
}

} // namespace discaro::explorer
