#pragma once

#include "db/DataSource.h"
#include "kit/BlendGround.h"
#include "kit/BoundFields.h"
#include "kit/ElidedLabel.h"
#include "kit/FormTable.h"
#include "kit/Plate.h"
#include "kit/ValueBox.h"

namespace discaro::explorer {

// The properties of the file that SelectedFile names, in the directory that SelectedDirectory
// names: its facts, what its version resource tells, and its comments.
class EXFile : public kit::Form {
    Q_OBJECT
public:
    EXFile();

    kit::Plate* Picture1 = nullptr;             // where the file is
    kit::ElidedLabel* Label1 = nullptr;         // its name
    kit::ElidedLabel* Label2 = nullptr;         // its directory's path
    kit::ElidedLabel* Label3 = nullptr;         // its disc's number
    kit::ControlArray<kit::Label> lblLabels;    // captions of the values and the box
    kit::ControlArray<kit::ValueBox> lblFields; // the values that can't be changed
    kit::Tabs* SSTab1 = nullptr;                // the pages
    kit::TextBox* Text1 = nullptr;              // comments
    kit::Button* Command1 = nullptr;            // saves
    kit::Button* Command2 = nullptr;            // saves and closes
    kit::Timer* Timer1 = nullptr;               // finds the file and its directory
    kit::Timer* Timer2 = nullptr;               // blends the background

    db::DataSource Data1;  // the files
    QString Data1_Caption; // the number of the file that Data1 stands on
    db::DataSource Data2;  // the directories

protected:
    void Form_Load() override;
    void keyPressEvent(QKeyEvent* event) override;
    bool isLeftByEscape() const override;
    void paintEvent(QPaintEvent* event) override;

private:
    static const kit::FormTable<EXFile> kTable;

    void bindFields();
    void findFile();
    void findDirectory();

    void Text1_Change();
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
