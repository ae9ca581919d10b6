#include "explorer/EXCDROM.h"

#include "app/Module1.h"
#include "app/OpenSource.h"
#include "base/RuntimeError.h"
#include "catalogue/Discs.h"
#include "catalogue/Names.h"
#include "explorer/PropertiesRules.h"
#include "kit/common/Strings.h"
#include "kit/program/MsgBox.h"

namespace discaro::explorer {

using app::Module1::SelectedDisc;
using base::skipErrors;

void EXCDROM::bindFields() {
    namespace drive = catalogue::drive;
    constexpr std::string_view kShown[] = {drive::kPreferedName, drive::kIdNumber,   drive::kFileSystem,
                                           drive::kSerialNumber, drive::kVolumeName, drive::kTotalSize,
                                           drive::kFreeSize};
    showFields(kShown);
    bound().bind(*Text2, drive::kComments);
    bound().bind(*Text1, drive::kAutorun);
    bound().bind(*Text3, drive::kPreferedName);
}

void EXCDROM::Form_Load() {
    app::openSource(*this, Data1, "Drive");
}

void EXCDROM::Timer1_Timer() {
    skipErrors([this] { Data1.Recordset().FindFirst(catalogue::rowCondition(SelectedDisc)); });
    skipErrors([this] { bound().attach(Data1); });
    skipErrors([this] { OpeningName = Data1.Recordset()(catalogue::drive::kPreferedName).Text(); });
    Timer1->setEnabled(false);
}

void EXCDROM::Text2_Change() {
    Command1->setEnabled(true);
}

void EXCDROM::Text3_Change() {
    Command1->setEnabled(true);
}

// What else was typed stays in its box while the other discs are looked at.
void EXCDROM::prepareSave() {
    const kit::BoundFields::Hold hold(bound());
    const NameChange change{SelectedDisc, OpeningName, bound().text(*Text3)};
    const auto tell = [this](const std::string& message) {
        kit::MsgBox(kit::qt(message), kit::Buttons::Ok, kit::Icon::Exclamation, catalogue::kDuplicateNameTitle, this);
    };
    const NameVerdict verdict = judgeName(Data1.Recordset(), change, tell);
    if (verdict == NameVerdict::Taken)
        refuseName();
    else if (verdict == NameVerdict::Free)
        ApplyResult = "exit";
}

void EXCDROM::refuseName() {
    Text3->setText(kit::qt(OpeningName));
    SSTab1->setCurrentWidget(Text3->parentWidget());
    Text3->setFocus();
    Text3->selectAll();
    ApplyResult = "not";
}

} // namespace discaro::explorer
