#include "scanner/Scanform.h"
#include "scanner/Texts.h"

// A resource in a static library has to be asked for, from outside all namespaces.
static void loadPictures() {
    Q_INIT_RESOURCE(scanner);
}

// The controls of the scan wizard: member, name, place, text, handler.
namespace discaro::scanner {

using kit::control;

namespace {

constexpr int kPageTop = 64;
constexpr int kPageHeight = 440;
constexpr int kWidth = 640;

// 40 twips, in logical pixels.
constexpr int kShadow = 3;

// The row of buttons at the foot of both screens, and above it that of the scan's own. What ends a scan stands at one
// end of that, and what begins the next at the other: a late click must not hit it.
constexpr int kScanButtonTop = 350;
constexpr int kButtonTop = 394;
constexpr int kButtonWidth = 96;
constexpr int kButtonHeight = 30;
constexpr int kButtonLeft[] = {208, 312, 416, 520};

void light(kit::Label& label) {
    label.setForeColour(QColor(255, 255, 255));
}

void shade(kit::Label& label) {
    label.setForeColour(QColor(9, 24, 46));
    label.makeShadow();
}

// What is dropped on the window is a disc, wherever it falls.
void takeNoDrops(kit::TextBox& box) {
    box.editor().setAcceptDrops(false);
}

constexpr int kCounterTop = 138;
constexpr int kWalkTop = kCounterTop + 2;
constexpr int kTotalsTop = kCounterTop + 32;

kit::Row<Scanform, kit::NumLed, true> counter(int index, const char* counts, const char* tip) {
    return control(&Scanform::NumLED1, "NumLED1", index)
        .at(24, kCounterTop, 190, 58)
        .in(&Scanform::Picture2)
        .tip(tip)
        .says(counts)
        .hidden();
}

kit::Row<Scanform, kit::Picture, true> stage(kit::ControlArray<kit::Picture> Scanform::*array, const char* name,
                                             int index, int top, const char* resource) {
    return control(array, name, index).at(236, top, 24, 24).in(&Scanform::Picture2).picture(resource);
}

} // namespace

const kit::FormTable<Scanform> Scanform::kTable{
    control(&Scanform::Label1, "Label1", 1)
        .at(24 + kShadow, 14 + kShadow, 440, 40)
        .text("Scan a new CD-ROM")
        .size(1.7)
        .bold()
        .set(shade),
    control(&Scanform::Label1, "Label1", 0).at(24, 14, 440, 40).text("Scan a new CD-ROM").size(1.7).bold().set(light),

    // The wizard's pages
    control(&Scanform::Picture1, "Picture1").at(0, kPageTop, kWidth, kPageHeight),
    // Its place is the page's.
    control(&Scanform::Text1, "Text1").in(&Scanform::Picture1).multiLine().readOnly().says("Instructions"),
    control(&Scanform::Label2, "Label2").at(24, 154, 592, 20).in(&Scanform::Picture1).labels(&Scanform::Text2),
    control(&Scanform::Text2, "Text2")
        .at(24, 176, 592, 28)
        .in(&Scanform::Picture1)
        .says("Preferred Name")
        .set(takeNoDrops)
        .when(&kit::TextBox::Enter, &Scanform::Text2_Enter),
    control(&Scanform::Text3, "Text3")
        .at(24, 176, 592, 176)
        .in(&Scanform::Picture1)
        .multiLine()
        .says("Comments")
        .set(takeNoDrops)
        .hidden(),
    control(&Scanform::Text4, "Text4")
        .at(24, 176, 592, 96)
        .in(&Scanform::Picture1)
        .multiLine()
        .readOnly()
        .says("Quick scan")
        .hidden(),
    control(&Scanform::Check1, "Check1")
        .at(24, 210, 400, 26)
        .in(&Scanform::Picture1)
        .text("Use Volume Label as Preferred name")
        .onClick(&Scanform::Check1_Click),
    control(&Scanform::Label3, "Label3")
        .at(24, 248, 592, 20)
        .in(&Scanform::Picture1)
        .text("Drive Name")
        .labels(&Scanform::Drive1),
    control(&Scanform::Drive1, "Drive1")
        .at(24, 270, 444, 30)
        .in(&Scanform::Picture1)
        .onChange(&Scanform::Drive1_Change),
    control(&Scanform::DiscImage, "DiscImage")
        .at(480, 270, 136, 30)
        .in(&Scanform::Picture1)
        .text("Disc &Image...")
        .tip(kDiscImageTip)
        .onClick(&Scanform::DiscImage_Click),
    control(&Scanform::Command4, "Command4")
        .at(24, kButtonTop, 110, kButtonHeight)
        .in(&Scanform::Picture1)
        .text("&Options")
        .onClick(&Scanform::Command4_Click),
    control(&Scanform::Command1, "Command1", 0)
        .at(kButtonLeft[0], kButtonTop, kButtonWidth, kButtonHeight)
        .in(&Scanform::Picture1)
        .text("&Cancel")
        .onClick(&Scanform::Command1_Click),
    control(&Scanform::Command1, "Command1", 1)
        .at(kButtonLeft[1], kButtonTop, kButtonWidth, kButtonHeight)
        .in(&Scanform::Picture1)
        .text("<<&Back")
        .disabled()
        .onClick(&Scanform::Command1_Click),
    control(&Scanform::Command1, "Command1", 2)
        .at(kButtonLeft[2], kButtonTop, kButtonWidth, kButtonHeight)
        .in(&Scanform::Picture1)
        .text("&Next>>")
        .onClick(&Scanform::Command1_Click),
    control(&Scanform::Command1, "Command1", 3)
        .at(kButtonLeft[3], kButtonTop, kButtonWidth, kButtonHeight)
        .in(&Scanform::Picture1)
        .text("&Finish")
        .disabled()
        .onClick(&Scanform::Command1_Click),

    // The options
    control(&Scanform::Picture6, "Picture6").at(0, kPageTop, kWidth, kPageHeight).hidden(),
    control(&Scanform::Label6, "Label6").at(24, 10, 592, 28).in(&Scanform::Picture6).text("Options").size(1.3).bold(),
    control(&Scanform::SSTab1, "SSTab1")
        .at(24, 44, 592, 336)
        .in(&Scanform::Picture6)
        .pages({"Scan Details", "Errors", "Numbering"})
        .says("Options"),
    control(&Scanform::Option1, "Option1")
        .at(20, 19, 24, 24)
        .in(&Scanform::SSTab1, 0)
        .tip("Slow")
        .says("Scan all of the file details")
        .onClick(&Scanform::Option1_Click),
    control(&Scanform::Label10, "Label10")
        .at(52, 24, 510, 60)
        .in(&Scanform::SSTab1, 0)
        .text(kAllDetails)
        .align(Qt::AlignTop | Qt::AlignLeft)
        .onClick(&Scanform::Label10_Click),
    control(&Scanform::Option2, "Option2")
        .at(20, 95, 24, 24)
        .in(&Scanform::SSTab1, 0)
        .tip("Fast")
        .says("Scan the basic file details only")
        .ticked()
        .onClick(&Scanform::Option2_Click),
    control(&Scanform::Label11, "Label11")
        .at(52, 100, 510, 44)
        .in(&Scanform::SSTab1, 0)
        .text(kBasicDetails)
        .align(Qt::AlignTop | Qt::AlignLeft)
        .onClick(&Scanform::Label11_Click),
    control(&Scanform::Option3, "Option3")
        .at(20, 159, 24, 24)
        .in(&Scanform::SSTab1, 0)
        .tip("Very Fast")
        .says("Scan minimal details")
        .onClick(&Scanform::Option3_Click),
    control(&Scanform::Label12, "Label12")
        .at(52, 164, 510, 28)
        .in(&Scanform::SSTab1, 0)
        .text(kMinimalDetails)
        .align(Qt::AlignTop | Qt::AlignLeft)
        .onClick(&Scanform::Label12_Click),
    control(&Scanform::Label7, "Label7")
        .at(20, 20, 548, 44)
        .in(&Scanform::SSTab1, 1)
        .text(kOnError)
        .align(Qt::AlignTop | Qt::AlignLeft),
    control(&Scanform::Option4, "Option4")
        .at(20, 71, 24, 24)
        .in(&Scanform::SSTab1, 1)
        .says("Ignore the error and carry on scanning")
        .ticked()
        .onClick(&Scanform::Option4_Click),
    control(&Scanform::Label13, "Label13")
        .at(52, 76, 510, 28)
        .in(&Scanform::SSTab1, 1)
        .text(kIgnoreErrors)
        .align(Qt::AlignTop | Qt::AlignLeft)
        .onClick(&Scanform::Label13_Click),
    control(&Scanform::Option5, "Option5")
        .at(20, 111, 24, 24)
        .in(&Scanform::SSTab1, 1)
        .says("Cancel the operation and delete the added entries")
        .onClick(&Scanform::Option5_Click),
    control(&Scanform::Label14, "Label14")
        .at(52, 116, 510, 28)
        .in(&Scanform::SSTab1, 1)
        .text(kStopAtErrors)
        .align(Qt::AlignTop | Qt::AlignLeft)
        .onClick(&Scanform::Label14_Click),
    control(&Scanform::Check2, "Check2")
        .at(20, 175, 24, 24)
        .in(&Scanform::SSTab1, 1)
        .says(kLogErrors)
        .ticked()
        .onClick(&Scanform::Check2_Click),
    control(&Scanform::Label15, "Label15")
        .at(52, 180, 510, 28)
        .in(&Scanform::SSTab1, 1)
        .text(kLogErrors)
        .align(Qt::AlignTop | Qt::AlignLeft)
        .onClick(&Scanform::Label15_Click),
    control(&Scanform::Label8, "Label8")
        .at(20, 20, 548, 44)
        .in(&Scanform::SSTab1, 2)
        .text(kNumbering)
        .align(Qt::AlignTop | Qt::AlignLeft),
    control(&Scanform::Option6, "Option6")
        .at(20, 71, 24, 24)
        .in(&Scanform::SSTab1, 2)
        .says("Any free number")
        .onClick(&Scanform::Option6_Click),
    control(&Scanform::Label17, "Label17")
        .at(52, 76, 510, 28)
        .in(&Scanform::SSTab1, 2)
        .text(kFreeNumber)
        .align(Qt::AlignTop | Qt::AlignLeft)
        .onClick(&Scanform::Label17_Click),
    control(&Scanform::Option7, "Option7")
        .at(20, 111, 24, 24)
        .in(&Scanform::SSTab1, 2)
        .says("The next number in the list")
        .ticked()
        .onClick(&Scanform::Option7_Click),
    control(&Scanform::Label16, "Label16")
        .at(52, 116, 510, 28)
        .in(&Scanform::SSTab1, 2)
        .text(kNextNumber)
        .align(Qt::AlignTop | Qt::AlignLeft)
        .onClick(&Scanform::Label16_Click),
    control(&Scanform::Command3, "Command3")
        .at(520, kButtonTop, kButtonWidth, kButtonHeight)
        .in(&Scanform::Picture6)
        .text("&OK")
        .onClick(&Scanform::Command3_Click),

    // Scanning
    control(&Scanform::Picture2, "Picture2").at(0, kPageTop, kWidth, kPageHeight).hidden(),
    control(&Scanform::Text5, "Text5")
        .at(24, 10, 592, 114)
        .in(&Scanform::Picture2)
        .multiLine()
        .readOnly()
        .says("Instructions"),
    counter(0, "Files done", kSeeFilesToCome).onClick(&Scanform::NumLED1_Click),
    counter(1, "Files to come", kSeeFilesDone).onClick(&Scanform::NumLED1_Click),
    stage(&Scanform::Picture3, "Picture3", 0, kWalkTop, ":/scan/waiting.svg").says("Not started"),
    stage(&Scanform::Picture3, "Picture3", 1, kWalkTop, ":/scan/running.svg").says("Running").hidden(),
    stage(&Scanform::Picture3, "Picture3", 2, kWalkTop, ":/scan/finished.svg").says("Finished").hidden(),
    control(&Scanform::Label5, "Label5", 0).at(268, kWalkTop, 142, 24).in(&Scanform::Picture2).text("Scanning CD-ROM"),
    stage(&Scanform::Picture4, "Picture4", 0, kTotalsTop, ":/scan/waiting.svg").says("Not started"),
    stage(&Scanform::Picture4, "Picture4", 1, kTotalsTop, ":/scan/running.svg").says("Running").hidden(),
    stage(&Scanform::Picture4, "Picture4", 2, kTotalsTop, ":/scan/finished.svg").says("Finished").hidden(),
    stage(&Scanform::Picture4, "Picture4", 3, kTotalsTop, ":/scan/finished.svg").says("Finished").hidden(),
    control(&Scanform::Label5, "Label5", 1)
        .at(268, kTotalsTop, 142, 24)
        .in(&Scanform::Picture2)
        .text("Calculating Totals"),
    control(&Scanform::NumLED2, "NumLED2")
        .at(426, kCounterTop, 190, 58)
        .in(&Scanform::Picture2)
        .tip(kSeeRemainingTime)
        .says("Elapsed Time")
        .hidden()
        .onClick(&Scanform::NumLED2_Click),
    control(&Scanform::NumLED3, "NumLED3")
        .at(426, kCounterTop, 190, 58)
        .in(&Scanform::Picture2)
        .tip(kSeeElapsedTime)
        .says("Remaining Time")
        .hidden()
        .onClick(&Scanform::NumLED3_Click),
    control(&Scanform::Label9, "Label9")
        .at(426, kCounterTop + 60, 190, 20)
        .in(&Scanform::Picture2)
        .text("Elapsed Time")
        .align(Qt::AlignCenter)
        .hidden(),
    control(&Scanform::Label4, "Label4")
        .at(24, 212, 380, 20)
        .in(&Scanform::Picture2)
        .text("Directory")
        .labels(&Scanform::Text6),
    control(&Scanform::Text6, "Text6").at(24, 234, 592, 28).in(&Scanform::Picture2).readOnly(),
    control(&Scanform::ProgressBar1, "ProgressBar1").at(24, 274, 592, 24).in(&Scanform::Picture2).says("Whole CD-ROM"),
    control(&Scanform::ProgressBar2, "ProgressBar2")
        .at(24, 308, 592, 24)
        .in(&Scanform::Picture2)
        .says("Current directory"),
    control(&Scanform::Command2, "Command2")
        .at(24, kScanButtonTop, 160, kButtonHeight)
        .in(&Scanform::Picture2)
        .text("&Start Scanning")
        .onClick(&Scanform::Command2_Click),
    control(&Scanform::Command6, "Command6")
        .at(24, kScanButtonTop, 160, kButtonHeight)
        .in(&Scanform::Picture2)
        .text("Cance&l Scanning")
        .hidden()
        .onClick(&Scanform::Command6_Click),
    control(&Scanform::Command5, "Command5")
        .at(440, kScanButtonTop, 176, kButtonHeight)
        .in(&Scanform::Picture2)
        .text("Scan &Another CD-ROM")
        .hidden()
        .onClick(&Scanform::Command5_Click),
    control(&Scanform::Command1, "Command1", 4)
        .at(kButtonLeft[0], kButtonTop, kButtonWidth, kButtonHeight)
        .in(&Scanform::Picture2)
        .text("&Cancel")
        .onClick(&Scanform::Command1_Click),
    control(&Scanform::Command1, "Command1", 5)
        .at(kButtonLeft[1], kButtonTop, kButtonWidth, kButtonHeight)
        .in(&Scanform::Picture2)
        .text("<<&Back")
        .disabled()
        .onClick(&Scanform::Command1_Click),
    control(&Scanform::Command1, "Command1", 6)
        .at(kButtonLeft[2], kButtonTop, kButtonWidth, kButtonHeight)
        .in(&Scanform::Picture2)
        .text("&Next>>")
        .disabled()
        .onClick(&Scanform::Command1_Click),
    control(&Scanform::Command1, "Command1", 7)
        .at(kButtonLeft[3], kButtonTop, kButtonWidth, kButtonHeight)
        .in(&Scanform::Picture2)
        .text("&Finish")
        .disabled()
        .onClick(&Scanform::Command1_Click),

    control(&Scanform::Timer1, "Timer1").every(1000).enabled().onTick(&Scanform::Timer1_Timer),
    control(&Scanform::Timer2, "Timer2").every(1500).onTick(&Scanform::Timer2_Timer),
    control(&Scanform::TrayIcon1, "TrayIcon1")
        .set([](kit::TrayIcon& icon) { icon.setVisible(false); })
        .when(&kit::TrayIcon::Restore, &Scanform::TrayIcon_Restore)
        .when(&kit::TrayIcon::Minimise, &Scanform::TrayIcon_Minimise),
    control(&Scanform::TrayIcon2, "TrayIcon2")
        .set([](kit::TrayIcon& icon) { icon.setTrueClick(false); })
        .when(&kit::TrayIcon::Restore, &Scanform::TrayIcon_Restore)
        .when(&kit::TrayIcon::Minimise, &Scanform::TrayIcon_Minimise),
};

Scanform::Scanform(disc::DriveTable& drives)
    : Form({.name = "Scanform", .caption = "Discaro - Scan a new CD-ROM", .size = {kWidth, kPageTop + kPageHeight}})
    , m_drives(drives)
    , Dir1(drives)
    , m_quickScan(Dir1) {
    loadPictures();
    kTable.build(*this);
    m_display = std::make_unique<ScanDisplay>(scanControls(), m_clock);
    setAcceptDrops(true);
}

ScanDisplay::Controls Scanform::scanControls() {
    return {.window = *this,
            .title = FormTitle,
            .what = *Text5,
            .walkStages = Picture3,
            .totalsStages = Picture4,
            .done = NumLED1(0),
            .left = NumLED1(1),
            .elapsed = *NumLED2,
            .remaining = *NumLED3,
            .timeCaption = *Label9,
            .discBar = *ProgressBar1,
            .directoryBar = *ProgressBar2,
            .start = *Command2,
            .another = *Command5,
            .cancel = *Command6,
            .leave = Command1(4),
            .finish = Command1(7),
            .clockTimer = *Timer2,
            .running = *TrayIcon1,
            .resting = *TrayIcon2};
}

} // namespace discaro::scanner
