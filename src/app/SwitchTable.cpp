#include "app/Switch.h"
#include "kit/common/Colour.h"
#include "kit/display/ImageList.h"

// The controls of the main menu: member, name, place, text, handler.
namespace discaro::app {

using kit::control;

namespace {

constexpr int kSide = 480;
constexpr int32_t kRestingColour = 16744576;
constexpr int32_t kHoverColour = 192;
const QColor kDisabledColour(112, 114, 150);
const QColor kFocusMark(214, 220, 255);
const QColor kMarqueeColour(196, 202, 255);

// Four entries above the hub and four below it, centred on the disc; the outermost are shorter, as
// the disc is.
constexpr int kWide = 288;
constexpr int kNarrow = 228;
constexpr int kEntryHeight = 26;
constexpr int kUpperTop = 80;
constexpr int kLowerTop = 296;

void makeEntry(kit::Label& label) {
    label.setForeColour(kit::colourOf(kRestingColour));
    label.setDisabledColour(kDisabledColour);
    label.makeEntry(kFocusMark);
    label.setWordWrap(false);
}

void makeSmallAndRound(kit::Button& button) {
    button.setStyleSheet("QPushButton { color: #d6dcff; background: #20254c; border: 1px solid #6a70c8;"
                         " border-radius: 6px; padding: 0px; }"
                         "QPushButton:hover { background: #343b78; }"
                         "QPushButton:pressed { background: #12152e; }"
                         "QPushButton:focus { border: 2px solid #d6dcff; }");
}

void dressMarquee(kit::Marquee& marquee) {
    QPalette colours = marquee.palette();
    colours.setColor(QPalette::WindowText, kMarqueeColour);
    marquee.setPalette(colours);
    marquee.setScrolling(true);
}

void dressTrayIcon(kit::TrayIcon& icon) {
    icon.setToolTipText("Discaro");
    icon.setIcon(kit::pictureIcon(":/pictures/tray-idle.svg"));
    icon.setFlashEnabled(true);
}

auto entry(int index, int width, int top, const char* text) {
    return control(&Switch::Label1, "Label1", index)
        .at((kSide - width) / 2, top, width, kEntryHeight)
        .text(text)
        .size(1.25)
        .bold()
        .align(Qt::AlignCenter)
        .set(makeEntry);
}

} // namespace

const kit::FormTable<Switch> Switch::kTable{
    control(&Switch::Image1, "Image1")
        .at(0, 0, kSide, kSide)
        .picture(":/pictures/face.svg")
        .when(&kit::Picture::MouseDown, &Switch::Image1_MouseDown)
        .when(&kit::Picture::MouseMove, &Switch::Image1_MouseMove)
        .when(&kit::Picture::MouseUp, &Switch::Image1_MouseUp),
    entry(0, kNarrow, kUpperTop, "Scan a new CD-ROM")
        .onClick(&Switch::Label1_Click)
        .when(&kit::Label::MouseMove, &Switch::Label1_MouseMove),
    entry(1, kWide, kUpperTop + kEntryHeight, "Delete an Existing CD-ROM Entry")
        .onClick(&Switch::Label1_Click)
        .when(&kit::Label::MouseMove, &Switch::Label1_MouseMove),
    entry(2, kWide, kUpperTop + 2 * kEntryHeight, "Explore")
        .onClick(&Switch::Label1_Click)
        .when(&kit::Label::MouseMove, &Switch::Label1_MouseMove),
    entry(3, kWide, kUpperTop + 3 * kEntryHeight, "Search the Database")
        .onClick(&Switch::Label1_Click)
        .when(&kit::Label::MouseMove, &Switch::Label1_MouseMove),
    entry(7, kWide, kLowerTop, "Program Explorer")
        .onClick(&Switch::Label1_Click)
        .when(&kit::Label::MouseMove, &Switch::Label1_MouseMove),
    entry(4, kWide, kLowerTop + kEntryHeight, "Database Workshop")
        .onClick(&Switch::Label1_Click)
        .when(&kit::Label::MouseMove, &Switch::Label1_MouseMove),
    entry(5, kWide, kLowerTop + 2 * kEntryHeight, "About")
        .onClick(&Switch::Label1_Click)
        .when(&kit::Label::MouseMove, &Switch::Label1_MouseMove),
    entry(6, kNarrow, kLowerTop + 3 * kEntryHeight, "Exit")
        .onClick(&Switch::Label1_Click)
        .when(&kit::Label::MouseMove, &Switch::Label1_MouseMove),
    control(&Switch::Label2, "Label2").at(0, 0, 60, 20).text("Label2").hidden().set([](kit::Label& label) {
        label.setForeColour(kit::colourOf(kHoverColour));
    }),
    control(&Switch::Command1, "Command1")
        .at(227, 44, 26, 20)
        .text("_")
        .tip("Minimize")
        .font("Arial")
        .set(makeSmallAndRound)
        .onClick(&Switch::Command1_Click),
    control(&Switch::Picture1, "Picture1").at(165, 407, 150, 24),
    control(&Switch::AXMarquee1, "AXMarquee1")
        .at(0, 0, 150, 24)
        .in(&Switch::Picture1)
        .text("Tavo         Discaro")
        .set(dressMarquee),
    control(&Switch::Timer1, "Timer1").every(1).enabled().onTick(&Switch::Timer1_Timer),
    control(&Switch::TrayIcon1, "TrayIcon1")
        .set(dressTrayIcon)
        .when(&kit::TrayIcon::Restore, &Switch::TrayIcon1_Restore)
        .when(&kit::TrayIcon::Minimise, &Switch::TrayIcon1_Minimise),
};

Switch::Switch()
    : Form({.name = "Switch", .caption = "Discaro", .size = {kSide, kSide}, .border = Border::None}) {
    setAttribute(Qt::WA_TranslucentBackground);
    kTable.build(*this);
    setAcceptDrops(true);
}

} // namespace discaro::app
