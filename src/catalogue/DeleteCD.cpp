#include "catalogue/DeleteCD.h"

#include "app/HandOver.h"
#include "app/OpenSource.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "catalogue/DiscDeletion.h"
#include "catalogue/Discs.h"
#include "catalogue/Names.h"
#include "catalogue/Texts.h"
#include "db/DBEngine.h"
#include "kit/common/Beep.h"
#include "kit/common/Strings.h"
#include "kit/program/MsgBox.h"

namespace discaro::catalogue {

using kit::qt;

void DeleteCD::Form_Load() {
    app::openSource(*this, Data1, "Drive");
    app::openSource(*this, Data2, "Master Table");
    app::Windows::Unload("Loading");
}

// With no disc left there is nothing to explore either.
void DeleteCD::Form_Unload() {
    const bool empty = Data1.Recordset().RecordCount() == 0;
    // The next window opens the catalogue that is there, be it another than the one that was open here.
    giveBack();
    if (empty)
        app::Windows::Show("Switch");
    else
        app::showReturnWindow();
}

void DeleteCD::Timer1_Timer() {
    ListView1->clear();
    DriveInfo->clear();
    m_aimed = false;
    db::Recordset& discs = Data1.Recordset();
    if (discs.RecordCount() != 0) {
        for (discs.MoveFirst(); !discs.Eof(); discs.MoveNext())
            ListView1->add({.key = {},
                            .text = qt(discs.Fields(drive::kPreferedName).Text()),
                            .icon = "cdrom",
                            .tag = qt(discs.Fields(drive::kIdNumber).Text()),
                            .subItems = {}});
        ListView1->select(0);
        ListView1_ItemClick(0);
    }
    Timer1->setEnabled(false);
}

// The click aims the deletion. Where the disc is not found the row of an earlier click is still current, and nothing
// may be deleted.
void DeleteCD::ListView1_ItemClick(int place) {
    DriveInfo->clear();
    m_aimed = false;
    base::skipErrors([&] {
        const std::string number = kit::utf8(ListView1->rows().item(place).tag);
        Data1.Recordset().FindFirst(rowCondition(number));
        m_aimed = !Data1.Recordset().NoMatch();
    });
    if (m_aimed)
        base::skipErrors([this] { showFacts(); });
}

void DeleteCD::showFacts() {
    for (const DiscFact& fact : discFacts())
        DriveInfo->add({.key = {},
                        .text = qt(fact.text),
                        .icon = qt(fact.icon),
                        .tag = {},
                        .subItems = {qt(factValue(fact, Data1.Recordset()))}});
}

// Only the deletion itself hangs on the answer; all else follows either way, so a Cancel spares the disc and ends at
// the commit that has no transaction.
void DeleteCD::Command2_Click() {
    db::Recordset& discs = Data1.Recordset();
    if (!m_aimed || discs.RecordCount() == 0) {
        kit::Beep();
        return;
    }
    const auto number = static_cast<int64_t>(discs.Fields(drive::kIdNumber).Number());
    const auto question = deletionQuestion(discs.Fields(drive::kPreferedName).Text());
    if (kit::MsgBox(qt(question), kit::Buttons::OkCancel, kit::Icon::Question, kDeletionQuestionTitle, this) ==
        kit::Answer::Ok)
        deleteCurrentDisc(discs);
    m_aimed = false;
    deleteTagsOfDisc(number);
    RefreshMasterTotals(Data2);
    db::DBEngine::CommitTrans();
    Timer1->setEnabled(true);
    kit::MsgBox(kDeletionDone, kit::Buttons::Ok, kit::Icon::Information, kDeletionDoneTitle, this);
}

void DeleteCD::Command1_Click() {
    Unload();
}

void DeleteCD::TrayIcon_Restore() {
    setState(State::Normal);
    Show();
    TrayIcon1->setFlashEnabled(false);
}

void DeleteCD::TrayIcon_Minimise() {
    setState(State::Minimised);
    TrayIcon1->setFlashEnabled(true);
}

} // namespace discaro::catalogue
