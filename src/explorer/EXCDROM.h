#pragma once

#include "explorer/PropertiesForm.h"

#include <string>

namespace discaro::explorer {

// The properties of the disc that SelectedDisc names: its facts, its comments, its autorun file and
// its name.
class EXCDROM : public PropertiesForm {
    Q_OBJECT
public:
    EXCDROM();

    kit::TextBox* Text2 = nullptr; // comments
    kit::TextBox* Text3 = nullptr; // preferred name

    std::string OpeningName; // the disc's name when the window opened
    std::string ApplyResult; // "not" after a refused name, "exit" after an accepted one

protected:
    void Form_Load() override;
    void prepareSave() override;
    bool mayClose() const override { return ApplyResult != "not"; }

private:
    static const kit::FormTable<EXCDROM> kTable;

    void bindFields();
    void refuseName();

    void Text2_Change();
    void Text3_Change();
    void Timer1_Timer();
};

} // namespace discaro::explorer
