#include "explorer/EXDir.h"

#include "app/Module1.h"
#include "catalogue/Names.h"
#include "explorer/PropertiesKeys.h"
#include "explorer/PropertiesRules.h"
#include "kit/Yield.h"

namespace discaro::explorer {

void EXDir::bindFields() {
    namespace directories = catalogue::directories;
    constexpr std::string_view kShown[] = {directories::kDirectoryName,
                                           directories::kDriveIdNumber,
                                           directories::kDirectoryPath,
                                           directories::kNumberOfFiles,
                                           directories::kNumberOfSubdirectories,
                                           directories::kSize,
                                           directories::kTotalNumberOfFiles,
                                           directories::kTotalNumberOfSubdirectories,
                                           directories::kTotalSize};
    for (int index = 0; const std::string_view field : kShown)
        m_bound.show(field,
                     [&box = lblFields(index++)](const QString& text) { box.setText(text); });
    m_bound.bind(*Text1, directories::kComments);
    connect(&m_bound, &kit::BoundFields::Reposition, this, &EXDir::Data1_Reposition);
    connect(&m_bound, &kit::BoundFields::Shown, this, &EXDir::Data1_Shown);
}

void EXDir::Form_Load() {
    Data1.SetDatabaseName(app::Module1::cataloguePath());
    Data1.SetRecordSource("Directories");
    atUnload([this] { Data1.Close(); });
    Data1.Refresh();
}

void EXDir::Timer1_Timer() {
    Data1.Recordset().FindFirst(idCondition(app::Module1::SelectedDirectory));
    m_bound.attach(Data1);
    Timer1->setEnabled(false);
}

void EXDir::Data1_Reposition() {
    Command1->setEnabled(false);
}

void EXDir::Data1_Shown() {
    Command1->setEnabled(false);
}

void EXDir::Text1_Change() {
    Command1->setEnabled(true);
}

void EXDir::Command1_Click() {
    Data1.UpdateRecord();
    Command1->setEnabled(false);
}

void EXDir::Command2_Click() {
    if (Command1->isEnabled())
        Command1_Click();
    Unload();
}

void EXDir::Timer2_Timer() {
    kit::yield();
    m_ground.change(*this);
}

void EXDir::keyPressEvent(QKeyEvent* event) {
    if (!obeyKey(*this, *event))
        Form::keyPressEvent(event);
}

bool EXDir::isLeftByEscape() const {
    return !m_bound.isTouched(*Text1);
}

void EXDir::paintEvent(QPaintEvent*) {
    m_ground.paint(*this);
}

} // namespace discaro::explorer
