#pragma once

#include "db/DataSource.h"
#include "kit/controls/ValueBox.h"
#include "kit/display/BlendGround.h"
#include "kit/display/Plate.h"
#include "kit/form/BoundFields.h"
#include "kit/form/FormTable.h"

#include <span>
#include <string_view>

namespace discaro::explorer {

// What the three properties windows have in common: values that can't be changed, comments that can, the button that
// saves and the one that saves and closes. Enter presses the latter, Ctrl with Tab or Page Down turns the pages, and
// Escape leaves the window where nothing typed would be lost.
class PropertiesForm : public kit::Form {
    Q_OBJECT
public:
    kit::Plate* Picture1 = nullptr;             // the most important values
    kit::ControlArray<kit::Label> lblLabels;    // captions of the values and boxes
    kit::ControlArray<kit::ValueBox> lblFields; // the values that can't be changed
    kit::Tabs* SSTab1 = nullptr;                // the pages
    kit::TextBox* Text1 = nullptr;              // comments; of a disc the lines of its autorun file
    kit::Button* Command1 = nullptr;            // saves
    kit::Button* Command2 = nullptr;            // saves and closes
    kit::Timer* Timer1 = nullptr;               // finds the row
    kit::Timer* Timer2 = nullptr;               // blends the background

    db::DataSource Data1; // the rows of which one is shown

protected:
    using Form::Form;

    // To be called by a window once its controls stand: the fields that lblFields show, in the order of the indexes.
    void showFields(std::span<const std::string_view> fields);
    kit::BoundFields& bound() { return m_bound; }
    const kit::BoundFields& bound() const { return m_bound; }

    void keyPressEvent(QKeyEvent* event) override;
    bool isLeftByEscape() const override { return !m_bound.isAnyTouched(); }
    void paintEvent(QPaintEvent* event) override;

    void Text1_Change();
    void Command1_Click();
    void Command2_Click();
    void Timer2_Timer();
    virtual void Data1_Reposition();
    void Data1_RowShown();

    // Before the row is saved; and whether the window may close when it is.
    virtual void prepareSave() {}
    virtual bool mayClose() const { return true; }

private:
    kit::BoundFields m_bound;
    kit::BlendGround m_ground;
};

} // namespace discaro::explorer
