#include "app/Switch.h"

#include "app/HandOver.h"
#include "app/Module1.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "kit/Colour.h"
#include "kit/EndProgram.h"
#include "kit/Shape.h"
#include "kit/Yield.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QWindow>

namespace discaro::app {

namespace {

constexpr int kEntries = 8;
constexpr int kNoLabel = 9;
constexpr int kAbout = 5;
constexpr int kExit = 6;

// The circle, in a corner-to-corner rectangle of the window's logical pixels.
constexpr int kCircleStart = 2;
constexpr int kCircleEnd = 479;

// The entries that an empty catalogue does not offer.
constexpr int kNeedDiscs[] = {1, 2, 3, 7};

// The pale pill on which the hovered entry's dark red reads.
const QColor kHoverGround(230, 233, 250);

// The window behind an entry; Exit has none.
const char* windowOf(int index) {
    static constexpr const char* kWindows[kEntries] = {
        "Scanform", "DeleteCD", "EXMain", "Search", "Workshop", "About", "", "Programs"};
    return kWindows[index];
}

void setFurtherVariables(int index) {
    if (index == 0)
        Module1::ScanCancelled = 0;
    else if (index == 2)
        Module1::JumpDisc.clear();
}

} // namespace

void Switch::Form_Load() {
    cutToCircle();
    LabelColour = std::to_string(kit::numberOf(Label1(0).foreColour()));
    LastLabel = kNoLabel;
    Data1.SetDatabaseName(Module1::cataloguePath());
    Data1.SetRecordSource("drive");
    atUnload([this] { Data1.Close(); });
    Data1.Refresh();
    disableMissingWindows();
}

void Switch::cutToCircle() {
    const int start = scaled(kCircleStart);
    const int end = scaled(kCircleEnd);
    setMask(kit::roundRectRegion(start, start, end, end, end, end));
}

void Switch::disableMissingWindows() {
    for (const auto& [index, label] : Label1)
        if (index != kExit && !Windows::Exists(windowOf(index)))
            label->setEnabled(false);
}

void Switch::Timer1_Timer() {
    Timer1->setEnabled(false);
    base::skipErrors([this] {
        if (Data1.Recordset().RecordCount() != 0)
            return;
        for (const int index : kNeedDiscs)
            Label1(index).setEnabled(false);
    });
}

void Switch::Label1_Click(int index) {
    if (index < 0 || index >= kEntries)
        return;
    if (index == kExit)
        kit::EndProgram();
    else if (index == kAbout)
        showAbout();
    else
        openWindow(index);
}

void Switch::openWindow(int index) {
    handOver({.from = "Switch", .to = windowOf(index), .returnTo = "switch"},
             [index] { setFurtherVariables(index); });
}

void Switch::showAbout() {
    if (!Windows::Exists("About"))
        return;
    showLoading();
    Module1::ReturnTo = "switch";
    Windows::Show("About", Modality::Modal);
}

void Switch::Label1_MouseMove(int index) {
    if (index == LastLabel)
        return;
    const QColor resting = kit::colourOf(std::stoi(LabelColour));
    for (const auto& [each, label] : Label1) {
        label->setForeColour(resting);
        label->setGround({});
    }
    Label1(index).setForeColour(Label2->foreColour());
    Label1(index).setGround(kHoverGround);
    LastLabel = index;
}

void Switch::Image1_MouseDown(QPoint position) {
    Dragging = 1;
    DragX = position.x();
    DragY = position.y();
    // A desktop that does not let windows place themselves drags them on request.
    if (QGuiApplication::platformName().startsWith("wayland") && windowHandle())
        windowHandle()->startSystemMove();
}

void Switch::Image1_MouseMove(QPoint position) {
    if (!Dragging)
        return;
    move(x() + position.x() - static_cast<int>(DragX),
         y() + position.y() - static_cast<int>(DragY));
    kit::yield();
}

void Switch::Image1_MouseUp() {
    Dragging = 0;
}

void Switch::Command1_Click() {
    setState(State::Minimised);
}

void Switch::TrayIcon1_Restore() {
    setState(State::Normal);
    Show();
}

void Switch::TrayIcon1_Minimise() {
    setState(State::Minimised);
}

void Switch::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Down || key == Qt::Key_Right)
        focusNextChild();
    else if (key == Qt::Key_Up || key == Qt::Key_Left)
        focusPreviousChild();
    else
        Form::keyPressEvent(event);
}

} // namespace discaro::app
