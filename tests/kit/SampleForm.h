#pragma once

#include "kit/display/ProgressBar.h"
#include "kit/form/FormTable.h"
#include "kit/form/TrayIcon.h"

#include <functional>
#include <string>
#include <vector>

namespace discaro::test {

// A window with a control of every class, which notes what its handlers hear.
class SampleForm : public kit::Form {
    Q_OBJECT
public:
    SampleForm();

    // What happened, in order: "load", "click 1", "timer" and so on.
    std::vector<std::string> heard;
    std::function<void()> onLoad;
    std::function<void()> onUnload;
    std::function<void()> onCommand;
    std::function<void()> onTimer;
    bool holdsTyped = false;

    kit::Label* Label1 = nullptr;
    kit::TextBox* Text1 = nullptr;
    kit::ControlArray<kit::TextBox> Text2;
    kit::ControlArray<kit::Button> Command1;
    kit::CheckBox* Check1 = nullptr;
    kit::OptionButton* Option1 = nullptr;
    kit::OptionButton* Option2 = nullptr;
    kit::ComboBox* Combo1 = nullptr;
    kit::Panel* Picture1 = nullptr;
    kit::Label* Label2 = nullptr;
    kit::Frame* Frame1 = nullptr;
    kit::Tabs* SSTab1 = nullptr;
    kit::Label* Label3 = nullptr;
    kit::ProgressBar* ProgressBar1 = nullptr;
    kit::Picture* Image1 = nullptr;
    kit::Timer* Timer1 = nullptr;
    kit::TrayIcon* TrayIcon1 = nullptr;

    using Form::atUnload;
    using Form::openAt;

protected:
    void Form_Load() override;
    void Form_Unload() override;
    bool isLeftByEscape() const override { return !holdsTyped; }

private:
    static const kit::FormTable<SampleForm> kTable;

    void note(const std::string& what) { heard.push_back(what); }
    void Command1_Click(int index);
    void Text1_Change();
    void Text1_Enter();
    void Check1_Click();
    void Option2_Click();
    void Combo1_Click();
    void Combo1_Change();
    void SSTab1_Change();
    void Image1_MouseDown(QPoint position);
    void Timer1_Timer();
    void TrayIcon1_Restore();
    void TrayIcon1_Minimise();
};

} // namespace discaro::test
