#pragma once

#include "db/DataSource.h"
#include "kit/display/ImageList.h"
#include "kit/form/FormTable.h"
#include "kit/form/TrayIcon.h"
#include "kit/lists/ListView.h"

namespace discaro::catalogue {

// Lists the discs, shows the details of the selected one, and deletes it with everything that belongs to it.
class DeleteCD : public kit::Form {
    Q_OBJECT
public:
    DeleteCD();

    kit::Label* Label1 = nullptr;       // heading of the discs
    kit::ListView* ListView1 = nullptr; // the discs
    kit::Label* Label2 = nullptr;       // heading of the details
    kit::ListView* DriveInfo = nullptr; // the selected disc's details
    kit::Button* Command2 = nullptr;    // deletes the disc
    kit::Button* Command1 = nullptr;    // leaves
    kit::Timer* Timer1 = nullptr;       // fills the lists once
    kit::TrayIcon* TrayIcon1 = nullptr;
    kit::ImageList* ImageList1 = nullptr; // the disc's picture
    kit::ImageList* ImageList2 = nullptr; // pictures of the details

    db::DataSource Data1; // Drive; its current row is the disc to delete, once a click has aimed it
    db::DataSource Data2; // Master Table

protected:
    void Form_Load() override;
    void Form_Unload() override;

private:
    static const kit::FormTable<DeleteCD> kTable;

    void Timer1_Timer();
    void ListView1_ItemClick(int place);
    void showFacts();
    void Command1_Click();
    void Command2_Click();
    void TrayIcon_Restore();
    void TrayIcon_Minimise();

    bool m_aimed = false; // the current row of Data1 is the disc whose details are shown
};

} // namespace discaro::catalogue
