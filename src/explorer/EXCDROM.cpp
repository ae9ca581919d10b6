#include "explorer/EXCDROM.h"

#include "app/Module1.h"
#include "base/RuntimeError.h"
#include "catalogue/Names.h"
#include "explorer/PropertiesKeys.h"
#include "explorer/PropertiesRules.h"
#include "kit/MsgBox.h"
#include "kit/Strings.h"
#include "kit/Yield.h"

namespace discaro::explorer {

using app::Module1::SelectedDisc;
using base::skipErrors;

void EXCDROM::bindFields() {
    namespace drive = catalogue::drive;
    constexpr std::string_view kShown[] = {
        drive::kPreferedName, drive::kIdNumber,  drive::kFileSystem, drive::kSerialNumber,
        drive::kVolumeName,   drive::kTotalSize, drive::kFreeSize};
    for (int index = 0; const std::string_view field : kShown)
        m_bound.show(field,
                     [&box = lblFields(index++)](const QString& text) { box.setText(text); });
    m_bound.bind(*Text2, drive::kComments);
    m_bound.bind(*Text1, drive::kAutorun);
    m_bound.bind(*Text3, drive::kPreferedName);
    connect(&m_bound, &kit::BoundFields::Reposition, this, &EXCDROM::Data1_Reposition);
    connect(&m_bound, &kit::BoundFields::Shown, this, &EXCDROM::Data1_Shown);
}

void EXCDROM::Form_Load() {
    Data1.SetDatabaseName(app::Module1::cataloguePath());
    Data1.SetRecordSource("Drive");
    atUnload([this] { Data1.Close(); });
    Data1.Refresh();
}

void EXCDROM::Timer1_Timer() {
    skipErrors([this] { Data1.Recordset().FindFirst(idCondition(SelectedDisc)); });
    skipErrors([this] { m_bound.attach(Data1); });
    skipErrors([this] { OpeningName = Data1.Recordset()(catalogue::drive::kPreferedName).Text(); });
    Timer1->setEnabled(false);
}

void EXCDROM::Data1_Reposition() {
    Command1->setEnabled(false);
}

void EXCDROM::Data1_Shown() {
    Command1->setEnabled(false);
}

void EXCDROM::Text2_Change() {
    Command1->setEnabled(true);
}

void EXCDROM::Text3_Change() {
    Command1->setEnabled(true);
}

void EXCDROM::Command1_Click() {
    applyName();
    Data1.UpdateRecord();
    Command1->setEnabled(false);
}

// What else was typed stays in its box while the other discs are looked at.
void EXCDROM::applyName() {
    const kit::BoundFields::Hold hold(m_bound);
    const NameChange change{SelectedDisc, OpeningName, m_bound.text(*Text3)};
    const auto tell = [this](const std::string& message) {
        kit::MsgBox(kit::qt(message), kit::Buttons::Ok, kit::Icon::Exclamation,
                    "Duplicate Preferred Name", this);
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

void EXCDROM::Command2_Click() {
    if (Command1->isEnabled())
        Command1_Click();
    if (ApplyResult != "not")
        Unload();
}

void EXCDROM::Timer2_Timer() {
    kit::yield();
    m_ground.change(*this);
}

void EXCDROM::keyPressEvent(QKeyEvent* event) {
    if (!obeyKey(*this, *event))
        Form::keyPressEvent(event);
}

bool EXCDROM::isLeftByEscape() const {
    return !m_bound.isTouched(*Text1) && !m_bound.isTouched(*Text2) && !m_bound.isTouched(*Text3);
}

void EXCDROM::paintEvent(QPaintEvent*) {
    m_ground.paint(*this);
}

} // namespace discaro::explorer
