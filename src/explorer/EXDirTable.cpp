#include "explorer/EXDir.h"
#include "explorer/PropertiesTable.h"

// The controls of the directory's properties: member, name, place, text, handler.
namespace discaro::explorer {

using kit::control;
using namespace properties;

namespace {

using W = EXDir;

constexpr int kLines = 3;
constexpr int kCaption = 212;

// The last part of a path tells more than its middle.
void shortenMiddle(kit::ValueBox& box) {
    box.setElideMode(Qt::ElideMiddle);
}

} // namespace

const kit::FormTable<EXDir> EXDir::kTable{
    headPlate<W>(kLines),
    headCaption<W>(0, 0, "Directory Name :"),
    headValue<W>(0, 0).bold(),
    headCaption<W>(1, 1, "CD-ROM Number :"),
    headValue<W>(1, 1),
    headCaption<W>(2, 2, "Directory Path :"),
    headValue<W>(2, 2).set(shortenMiddle),

    tabPages<W>(kLines, {"General", "Totals", "Comments"}),
    fieldCaption<W>(3, 0, 0, "Number of Files", kCaption),
    fieldValue<W>(3, 0, 0, kCaption),
    fieldCaption<W>(4, 0, 1, "Number of Subdirectories", kCaption),
    fieldValue<W>(4, 0, 1, kCaption),
    fieldCaption<W>(5, 0, 2, "Size (Kb)", kCaption),
    fieldValue<W>(5, 0, 2, kCaption),
    fieldCaption<W>(6, 1, 0, "Total number of Files", kCaption),
    fieldValue<W>(6, 1, 0, kCaption),
    fieldCaption<W>(7, 1, 1, "Total number of Subdirectories", kCaption),
    fieldValue<W>(7, 1, 1, kCaption),
    fieldCaption<W>(8, 1, 2, "Total Size", kCaption),
    fieldValue<W>(8, 1, 2, kCaption),
    areaCaption<W>(9, 2, "Comments", &W::Text1),
    areaBox<W>(&W::Text1, "Text1", 2, kWholePage).onChange(&W::Text1_Change),

    applyButton<W>(kLines, &W::Command1_Click),
    okButton<W>(kLines, &W::Command2_Click),
    control<W>(&W::Timer1, "Timer1").every(1).enabled().onTick(&W::Timer1_Timer),
    control<W>(&W::Timer2, "Timer2").every(1000).enabled().onTick(&W::Timer2_Timer),
};

EXDir::EXDir()
    : PropertiesForm({.name = "EXDir", .caption = "Discaro - Directory Properties", .size = windowSize(kLines)}) {
    kTable.build(*this);
    bindFields();
}

} // namespace discaro::explorer
