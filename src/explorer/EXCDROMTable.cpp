#include "explorer/EXCDROM.h"
#include "explorer/PropertiesTable.h"

// The controls of the disc's properties: member, name, place, text, handler.
namespace discaro::explorer {

using kit::control;
using namespace properties;

namespace {

using W = EXCDROM;

constexpr int kLines = 2;
constexpr int kCaption = 132;
constexpr int kNameTop = kPageHeight - kPagePadding - 28;

} // namespace

const kit::FormTable<EXCDROM> EXCDROM::kTable{
    headPlate<W>(kLines),
    headCaption<W>(0, 0, "Preferred Name :"),
    headValue<W>(0, 0).bold(),
    headCaption<W>(1, 1, "CD-ROM Number :"),
    headValue<W>(1, 1),

    tabPages<W>(kLines, {"General", "Comments", "Autorun"}),
    fieldCaption<W>(2, 0, 0, "File System", kCaption),
    fieldValue<W>(2, 0, 0, kCaption),
    fieldCaption<W>(3, 0, 1, "Serial Number", kCaption),
    fieldValue<W>(3, 0, 1, kCaption),
    fieldCaption<W>(4, 0, 2, "Volume Name", kCaption),
    fieldValue<W>(4, 0, 2, kCaption),
    fieldCaption<W>(5, 0, 3, "Total Size", kCaption),
    fieldValue<W>(5, 0, 3, kCaption),
    fieldCaption<W>(6, 0, 4, "Free Size", kCaption),
    fieldValue<W>(6, 0, 4, kCaption),
    areaCaption<W>(7, 1, "Comments", &W::Text2),
    areaBox<W>(&W::Text2, "Text2", 1, kWholePage).onChange(&W::Text2_Change),
    areaCaption<W>(8, 2, "Autorun", &W::Text1),
    areaBox<W>(&W::Text1, "Text1", 2, kNameTop - kPagePadding - 20 - 12),
    control<W>(&W::lblLabels, "lblLabels", 9)
        .at(kPagePadding, kNameTop, kCaption, 28)
        .in(&W::SSTab1, 2)
        .text("Preferred Name")
        .align(kLeft)
        .labels(&W::Text3),
    control(&W::Text3, "Text3")
        .at(kPagePadding + kCaption, kNameTop, kPageInner - kCaption, 28)
        .in(&W::SSTab1, 2)
        .onChange(&W::Text3_Change),

    applyButton<W>(kLines, &W::Command1_Click),
    okButton<W>(kLines, &W::Command2_Click),
    control<W>(&W::Timer1, "Timer1").every(1).enabled().onTick(&W::Timer1_Timer),
    control<W>(&W::Timer2, "Timer2").every(1000).enabled().onTick(&W::Timer2_Timer),
};

EXCDROM::EXCDROM()
    : PropertiesForm({.name = "EXCDROM", .caption = "Discaro - CD-ROM Properties", .size = windowSize(kLines)}) {
    kTable.build(*this);
    bindFields();
}

} // namespace discaro::explorer
