#pragma once

#include "db/DataSource.h"
#include "kit/BlendGround.h"
#include "kit/BoundFields.h"
#include "kit/FormTable.h"
#include "kit/Plate.h"
#include "kit/ValueBox.h"

#include <string>

namespace discaro::explorer {

// The properties of the disc that SelectedDisc names: its facts, its comments, its autorun file and
// its name.
class EXCDROM : public kit::Form {
    Q_OBJECT
public:
    EXCDROM();

    kit::Plate* Picture1 = nullptr;             // the disc's name and number
    kit::ControlArray<kit::Label> lblLabels;    // captions of the values and boxes
    kit::ControlArray<kit::ValueBox> lblFields; // the values that can't be changed
    kit::Tabs* SSTab1 = nullptr;                // the pages
    kit::TextBox* Text2 = nullptr;              // comments
    kit::TextBox* Text1 = nullptr;              // lines of the autorun file
    kit::TextBox* Text3 = nullptr;              // preferred name
    kit::Button* Command1 = nullptr;            // saves
    kit::Button* Command2 = nullptr;            // saves and closes
    kit::Timer* Timer1 = nullptr;               // finds the disc
    kit::Timer* Timer2 = nullptr;               // blends the background

    db::DataSource Data1; // the discs

    std::string OpeningName; // the disc's name when the window opened
    std::string ApplyResult; // "not" after a refused name, "exit" after an accepted one

protected:
    void Form_Load() override;
    void keyPressEvent(QKeyEvent* event) override;
    bool isLeftByEscape() const override;
    void paintEvent(QPaintEvent* event) override;

private:
    static const kit::FormTable<EXCDROM> kTable;

    void bindFields();
    void applyName();
    void refuseName();

    void Text2_Change();
    void Text3_Change();
    void Command1_Click();
    void Command2_Click();
    void Timer1_Timer();
    void Timer2_Timer();
    void Data1_Reposition();
    void Data1_Shown();

    kit::BoundFields m_bound;
    kit::BlendGround m_ground;
};

} // namespace discaro::explorer
