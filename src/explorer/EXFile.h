#pragma once

#include "explorer/PropertiesForm.h"
#include "kit/display/ElidedLabel.h"

namespace discaro::explorer {

// The properties of the file that SelectedFile names, in the directory that SelectedDirectory
// names: its facts, what its version resource tells, and its comments.
class EXFile : public PropertiesForm {
    Q_OBJECT
public:
    EXFile();

    kit::ElidedLabel* Label1 = nullptr; // its name
    kit::ElidedLabel* Label2 = nullptr; // its directory's path
    kit::ElidedLabel* Label3 = nullptr; // its disc's number

    QString Data1_Caption; // the number of the file that Data1 stands on
    db::DataSource Data2;  // the directories

protected:
    void Form_Load() override;
    void Data1_Reposition() override;

private:
    static const kit::FormTable<EXFile> kTable;

    void bindFields();
    void findFile();
    void findDirectory();
    void Timer1_Timer();
};

} // namespace discaro::explorer
