#include "catalogue/DeleteCD.h"

// The controls of the window that deletes a disc's entry: member, name, place, text, handler.
namespace discaro::catalogue {

using kit::control;

const kit::FormTable<DeleteCD> DeleteCD::kTable{
    control(&DeleteCD::ImageList1, "ImageList1").set([](kit::ImageList& list) {
        list.setPictures(":/pictures/commands", {"cdrom"});
    }),
    control(&DeleteCD::ImageList2, "ImageList2").set([](kit::ImageList& list) {
        list.setPictures(":/pictures/facts", {"cdnum", "pname", "label", "snum", "fsys", "size", "comment", "autrun"});
    }),
    control(&DeleteCD::Label1, "Label1").at(16, 14, 236, 22).text("Preferred Name").bold().labels(&DeleteCD::ListView1),
    control(&DeleteCD::ListView1, "ListView1")
        .at(16, 40, 236, 328)
        .set([](kit::ListView& list) {
            list.setColumns({{"Preferred Name", 214, Qt::AlignLeft}});
            list.hideHeaders();
        })
        .when(&kit::ListView::ItemClick, &DeleteCD::ListView1_ItemClick),
    control(&DeleteCD::Label2, "Label2")
        .at(268, 14, 396, 22)
        .text("CD-ROM Information")
        .bold()
        .labels(&DeleteCD::DriveInfo),
    control(&DeleteCD::DriveInfo, "DriveInfo").at(268, 40, 396, 328).set([](kit::ListView& list) {
        list.setColumns({{"Information", 150, Qt::AlignLeft}, {"Value", 224, Qt::AlignLeft}});
        list.hideHeaders();
    }),
    control(&DeleteCD::Command2, "Command2").at(456, 384, 100, 30).text("&Delete").onClick(&DeleteCD::Command2_Click),
    control(&DeleteCD::Command1, "Command1").at(564, 384, 100, 30).text("&Exit").onClick(&DeleteCD::Command1_Click),
    control(&DeleteCD::Timer1, "Timer1").every(1).enabled().onTick(&DeleteCD::Timer1_Timer),
    control(&DeleteCD::TrayIcon1, "TrayIcon1")
        .set([](kit::TrayIcon& icon) { icon.setToolTipText("Discaro - Delete CD-ROM Entry"); })
        .when(&kit::TrayIcon::Restore, &DeleteCD::TrayIcon_Restore)
        .when(&kit::TrayIcon::Minimise, &DeleteCD::TrayIcon_Minimise),
};

DeleteCD::DeleteCD()
    : Form({.name = "DeleteCD", .caption = "Discaro - Delete CD-ROM Entry", .size = {680, 430}}) {
    kTable.build(*this);
    ListView1->setPictures(ImageList1->pictures());
    DriveInfo->setPictures(ImageList2->pictures());
}

} // namespace discaro::catalogue
