#include "kit/SampleForm.h"

namespace discaro::test {

using kit::control;

const kit::FormTable<SampleForm> SampleForm::kTable{
    control(&SampleForm::Label1, "Label1").at(10, 10, 100, 20).text("&Name :").labels(&SampleForm::Text1),
    control(&SampleForm::Text1, "Text1")
        .at(110, 10, 180, 24)
        .tip("Any <b>name</b>")
        .onChange(&SampleForm::Text1_Change)
        .when(&kit::TextBox::Enter, &SampleForm::Text1_Enter),
    control(&SampleForm::Text2, "Text2", 4).at(10, 40, 280, 60).multiLine().says("Remarks"),
    control(&SampleForm::Command1, "Command1", 0).at(10, 110, 90, 28).text("&OK").onClick(&SampleForm::Command1_Click),
    control(&SampleForm::Command1, "Command1", 3)
        .at(110, 110, 90, 28)
        .text("_")
        .tip("Minimize")
        .onClick(&SampleForm::Command1_Click),
    control(&SampleForm::Check1, "Check1")
        .at(10, 145, 120, 22)
        .text("Tick")
        .ticked()
        .onClick(&SampleForm::Check1_Click),
    control(&SampleForm::Option1, "Option1").at(10, 170, 120, 22).text("One").ticked(),
    control(&SampleForm::Option2, "Option2").at(140, 170, 120, 22).text("Two").onClick(&SampleForm::Option2_Click),
    control(&SampleForm::Combo1, "Combo1")
        .at(10, 200, 120, 24)
        .says("Comparison")
        .set([](kit::ComboBox& box) {
            box.addItems({"=", ">", "<"});
        })
        .onClick(&SampleForm::Combo1_Click)
        .onChange(&SampleForm::Combo1_Change),
    control(&SampleForm::Picture1, "Picture1").at(10, 230, 280, 40),
    control(&SampleForm::Label2, "Label2").at(5, 5, 100, 20).in(&SampleForm::Picture1).text("inside").disabled(),
    control(&SampleForm::Frame1, "Frame1").at(10, 270, 280, 40).text("Framed").hidden(),
    control(&SampleForm::SSTab1, "SSTab1")
        .at(10, 310, 280, 80)
        .pages({"First", "Second"})
        .onChange(&SampleForm::SSTab1_Change),
    control(&SampleForm::Label3, "Label3").at(5, 5, 100, 20).in(&SampleForm::SSTab1, 1).text("on a page").bold(),
    control(&SampleForm::ProgressBar1, "ProgressBar1").at(10, 395, 280, 16).says("Progress"),
    control(&SampleForm::Image1, "Image1")
        .at(300, 10, 64, 64)
        .picture(":/pictures/tray-idle.svg")
        .when(&kit::Picture::MouseDown, &SampleForm::Image1_MouseDown),
    control(&SampleForm::Timer1, "Timer1").every(1).onTick(&SampleForm::Timer1_Timer),
    control(&SampleForm::TrayIcon1, "TrayIcon1")
        .when(&kit::TrayIcon::Restore, &SampleForm::TrayIcon1_Restore)
        .when(&kit::TrayIcon::Minimise, &SampleForm::TrayIcon1_Minimise),
};

SampleForm::SampleForm()
    : Form({.name = "SampleForm", .caption = "A sample", .size = {400, 420}}) {
    kTable.build(*this);
}

void SampleForm::Form_Load() {
    note("load");
    if (onLoad)
        onLoad();
}

void SampleForm::Form_Unload() {
    note("unload");
    if (onUnload)
        onUnload();
}

void SampleForm::Command1_Click(int index) {
    note("click " + std::to_string(index));
    if (onCommand)
        onCommand();
    note("clicked " + std::to_string(index));
}

void SampleForm::Text1_Change() {
    note("text " + Text1->text().toStdString());
}

void SampleForm::Text1_Enter() {
    note("enter");
}

void SampleForm::Check1_Click() {
    note(Check1->value() ? "ticked" : "unticked");
}

void SampleForm::Option2_Click() {
    note("two");
}

void SampleForm::Combo1_Click() {
    note("chosen " + Combo1->text().toStdString());
}

void SampleForm::Combo1_Change() {
    note("shows " + Combo1->text().toStdString());
}

void SampleForm::SSTab1_Change() {
    note("page " + std::to_string(SSTab1->currentIndex()));
}

void SampleForm::Image1_MouseDown(QPoint position) {
    note("down " + std::to_string(position.x()) + "," + std::to_string(position.y()));
}

void SampleForm::Timer1_Timer() {
    note("timer");
    if (onTimer)
        onTimer();
}

void SampleForm::TrayIcon1_Restore() {
    note("restore");
}

void SampleForm::TrayIcon1_Minimise() {
    note("minimise");
}

} // namespace discaro::test
