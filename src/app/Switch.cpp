#include "app/Switch.h"

#include "app/HandOver.h"
#include "app/Module1.h"
#include "app/OpenSource.h"
#include "app/Texts.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "kit/common/Colour.h"
#include "kit/controls/DroppedFiles.h"
#include "kit/display/Shape.h"
#include "kit/program/EndProgram.h"
#include "kit/program/Yield.h"

#include <QtGui/QDropEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QWindow>

#include <optional>

namespace discaro::app {

namespace {

constexpr int kEntries = 8;
constexpr int kNoLabel = 9;
constexpr int kScan = 0;
constexpr int kAbout = 5;
constexpr int kExit = 6;

// The circle, in a corner-to-corner rectangle of the window's logical pixels.
constexpr int kCircleStart = 2;
constexpr int kCircleEnd = 479;

// The entries that an empty catalogue does not offer.
constexpr int kNeedDiscs[] = {1, 2, 3, 7};

// Where the menu was when it was left last.
std::optional<QPoint> g_lastPlace;

// The pale pill on which the hovered entry's dark red reads.
const QColor kHoverGround(230, 233, 250);

// The window behind an entry; Exit has none.
const char* windowOf(int index) {
    static constexpr const char* kWindows[kEntries] = {"Scanform", "DeleteCD", "EXMain", "Search",
                                                       "Workshop", "About",    "",       "Programs"};
    return kWindows[index];
}

void setFurtherVariables(int index) {
    if (index == kScan)
        Module1::ScanCancelled = 0;
    else if (index == 2)
        Module1::JumpDisc.clear();
}

} // namespace

void Switch::Form_Load() {
    cutToCircle();
    if (g_lastPlace)
        openAt(*g_lastPlace);
    LabelColour = std::to_string(kit::numberOf(Label1(0).foreColour()));
    LastLabel = kNoLabel;
    openSource(*this, Data1, "drive");
    disableMissingWindows();
}

void Switch::Form_Unload() {
    g_lastPlace = pos();
}

void Switch::cutToCircle() {
    const int start = scaled(kCircleStart);
    const int end = scaled(kCircleEnd);
    setMask(kit::roundRectRegion(start, start, end, end, end, end));
}

void Switch::disableMissingWindows() {
    for (const auto& [index, label] : Label1)
        if (index != kExit && !Windows::Exists(windowOf(index)))
            grey(index, kNotThere);
}

void Switch::grey(int index, const char* reason) {
    if (!Label1(index).isEnabled())
        return;
    Label1(index).setEnabled(false);
    Label1(index).setToolTip(reason);
}

void Switch::Timer1_Timer() {
    Timer1->setEnabled(false);
    base::skipErrors([this] {
        if (Data1.Recordset().RecordCount() != 0)
            return;
        for (const int index : kNeedDiscs)
            grey(index, kNoDisc);
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
    handOver({.from = "Switch", .to = windowOf(index), .returnTo = "switch"}, [index] { setFurtherVariables(index); });
}

// The menu may have been left meanwhile by one of its entries.
void Switch::openWizard(const std::vector<std::filesystem::path>& discs) {
    if (isUnloaded())
        return;
    Module1::DroppedDiscs = discs;
    openWindow(kScan);
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

// By the place on the screen: the one in the picture is that of the picture before the moves that are still under way.
void Switch::Image1_MouseMove(QPoint, QPoint global) {
    if (!Dragging)
        return;
    move(global - QPoint(static_cast<int>(DragX), static_cast<int>(DragY)));
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

void Switch::dragEnterEvent(QDragEnterEvent* event) {
    const bool takes = Windows::Exists(windowOf(kScan));
    event->setAccepted(takes && !kit::droppedFiles(*event->mimeData()).empty());
}

// Whoever drags waits for the drop to end, which the move to the wizard would hold up.
void Switch::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction); // the files stay where they are
    event->accept();
    QMetaObject::invokeMethod(
        this, [this, discs = kit::droppedFiles(*event->mimeData())] { openWizard(discs); }, Qt::QueuedConnection);
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
