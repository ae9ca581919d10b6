#include "explorer/PropertiesForm.h"

#include "explorer/PropertiesKeys.h"
#include "kit/program/Yield.h"

namespace discaro::explorer {

void PropertiesForm::showFields(std::span<const std::string_view> fields) {
    for (int index = 0; const std::string_view field : fields)
        m_bound.follow(field, [&box = lblFields(index++)](const QString& text) { box.setText(text); });
    connect(&m_bound, &kit::BoundFields::Reposition, this, &PropertiesForm::Data1_Reposition);
    connect(&m_bound, &kit::BoundFields::RowShown, this, &PropertiesForm::Data1_RowShown);
    SSTab1->setFocus();
}

void PropertiesForm::Data1_Reposition() {
    Command1->setEnabled(false);
}

void PropertiesForm::Data1_RowShown() {
    Command1->setEnabled(false);
}

void PropertiesForm::Text1_Change() {
    Command1->setEnabled(true);
}

void PropertiesForm::Command1_Click() {
    prepareSave();
    Data1.UpdateRecord();
    Command1->setEnabled(false);
}

void PropertiesForm::Command2_Click() {
    if (Command1->isEnabled())
        Command1_Click();
    if (mayClose())
        Unload();
}

void PropertiesForm::Timer2_Timer() {
    kit::yield();
    m_ground.blendAnew(*this);
}

void PropertiesForm::keyPressEvent(QKeyEvent* event) {
    const PropertiesKey key = propertiesKey(*event);
    if (key == PropertiesKey::Ok)
        Command2->click();
    else if (key != PropertiesKey::None)
        turnPage(*SSTab1, key);
    else
        Form::keyPressEvent(event);
}

void PropertiesForm::paintEvent(QPaintEvent*) {
    m_ground.paint(*this);
}

} // namespace discaro::explorer
