#include "explorer/EXFile.h"
#include "explorer/PropertiesTable.h"

// The controls of the file's properties: member, name, place, text, handler.
namespace discaro::explorer {

using kit::control;
using namespace properties;

namespace {

using W = EXFile;

constexpr int kLines = 3;
constexpr int kCaption = 160;

auto head(kit::ElidedLabel* W::*member, const char* name, int line, const char* text) {
    return control(member, name)
        .at(kPlateSide, kPlateTop + line * kLineHeight, kPlateInner, kLineHeight)
        .in(&W::Picture1)
        .text(text)
        .align(kLeft);
}

} // namespace

const kit::FormTable<EXFile> EXFile::kTable{
    headPlate<W>(kLines),
    head(&W::Label1, "Label1", 0, "File Name :").bold(),
    head(&W::Label2, "Label2", 1, "Path :"),
    head(&W::Label3, "Label3", 2, "CD-ROM Number :"),

    tabPages<W>(kLines, {"General", "Internal Information", "Comments"}),
    fieldCaption<W>(0, 0, 0, "Extension", kCaption),
    fieldValue<W>(0, 0, 0, kCaption),
    fieldCaption<W>(1, 0, 1, "Size", kCaption),
    fieldValue<W>(1, 0, 1, kCaption),
    fieldCaption<W>(2, 0, 2, "Date", kCaption),
    fieldValue<W>(2, 0, 2, kCaption),
    fieldCaption<W>(3, 0, 3, "Time", kCaption),
    fieldValue<W>(3, 0, 3, kCaption),
    fieldCaption<W>(4, 0, 4, "Attributes", kCaption),
    fieldValue<W>(4, 0, 4, kCaption),
    fieldCaption<W>(5, 0, 5, "Number of icons in file", kCaption),
    fieldValue<W>(5, 0, 5, kCaption),
    fieldCaption<W>(6, 1, 0, "Company Name", kCaption),
    fieldValue<W>(6, 1, 0, kCaption),
    fieldCaption<W>(7, 1, 1, "Description", kCaption),
    fieldValue<W>(7, 1, 1, kCaption),
    fieldCaption<W>(8, 1, 2, "Copyright", kCaption),
    fieldValue<W>(8, 1, 2, kCaption),
    fieldCaption<W>(9, 1, 3, "Product Name", kCaption),
    fieldValue<W>(9, 1, 3, kCaption),
    fieldCaption<W>(10, 1, 4, "Product Version", kCaption),
    fieldValue<W>(10, 1, 4, kCaption),
    fieldCaption<W>(11, 1, 5, "Internal Name", kCaption),
    fieldValue<W>(11, 1, 5, kCaption),
    fieldCaption<W>(12, 1, 6, "Original Name", kCaption),
    fieldValue<W>(12, 1, 6, kCaption),
    areaCaption<W>(13, 2, "Comments", &W::Text1),
    areaBox<W>(&W::Text1, "Text1", 2, kWholePage).onChange(&W::Text1_Change),

    applyButton<W>(kLines, &W::Command1_Click),
    okButton<W>(kLines, &W::Command2_Click),
    control<W>(&W::Timer1, "Timer1").every(1).enabled().onTick(&W::Timer1_Timer),
    control<W>(&W::Timer2, "Timer2").every(1000).enabled().onTick(&W::Timer2_Timer),
};

EXFile::EXFile()
    : PropertiesForm({.name = "EXFile", .caption = "Discaro - File Properties", .size = windowSize(kLines)}) {
    kTable.build(*this);
    bindFields();
}

} // namespace discaro::explorer
