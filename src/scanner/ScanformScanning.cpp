#include "app/Module1.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "catalogue/Names.h"
#include "disc/medium/ShownNames.h"
#include "kit/common/Strings.h"
#include "kit/program/MsgBox.h"
#include "kit/program/Yield.h"
#include "scanner/Scanform.h"
#include "scanner/Texts.h"

#include <QtCore/QScopeGuard>
#include <QtCore/QTime>

// The options, and the screen of a scan with its buttons and clock.
namespace discaro::scanner {

using kit::qt;
using kit::utf8;

namespace {

// The focus goes along, so that the next key press swaps them back; one that is elsewhere stays there.
void giveWay(kit::NumLed& shown, kit::NumLed& other) {
    const bool focused = shown.window()->focusWidget() == &shown;
    other.show();
    if (focused)
        other.setFocus();
    shown.hide();
}

} // namespace

// ---- The options

void Scanform::Command4_Click() {
    Picture6->show();
    Picture1->hide();
    Picture2->hide();
    SSTab1->setFocus();
}

void Scanform::Command3_Click() {
    Picture6->hide();
    Picture1->show();
    Command4->setFocus();
}

// The box works against the usual way, and is meant to: a click on the ticked box means "false", every later one
// ticks it, unticks it at once in a nested click, and means "true".
void Scanform::Check2_Click() {
    if (!Check2->value()) {
        m_options.LogErrors = "false";
        return;
    }
    Check2->setValue(false);
    m_options.LogErrors = "true";
}

void Scanform::Option1_Click() {
    m_options.DetailLevel = "all";
}
void Scanform::Option2_Click() {
    m_options.DetailLevel = "basic";
}
void Scanform::Option3_Click() {
    m_options.DetailLevel = "minimal";
}
void Scanform::Option4_Click() {
    m_options.ErrorAction = "ignore";
}
void Scanform::Option5_Click() {
    m_options.ErrorAction = "cancel";
}
void Scanform::Option6_Click() {
    m_options.UseFreeNumber = "true";
}
void Scanform::Option7_Click() {
    m_options.UseFreeNumber.clear();
}

// A click on a caption is a click on its button.
void Scanform::Label10_Click() {
    Option1->click();
}
void Scanform::Label11_Click() {
    Option2->click();
}
void Scanform::Label12_Click() {
    Option3->click();
}
void Scanform::Label13_Click() {
    Option4->click();
}
void Scanform::Label14_Click() {
    Option5->click();
}
void Scanform::Label15_Click() {
    Check2->click();
}
void Scanform::Label16_Click() {
    Option7->click();
}
void Scanform::Label17_Click() {
    Option6->click();
}

// ---- The scan

ScanRequest Scanform::request() {
    return {.driveLetter = drive()[0],
            .preferredName = utf8(Text2->text()),
            .comments = utf8(Text3->text()),
            .quickFiles = m_quickScan.files(),
            .quickDamagedDirectories = m_quickScan.damagedDirectories(),
            .options = m_options};
}

void Scanform::Command2_Click() {
    if (scanIsRunning())
        return;
    const auto over = qScopeGuard([this] {
        m_engine.reset();
        Dir1.letGo();
    });
    m_engine =
        std::make_unique<ScanEngine>(ScanSources{Data1, Data2, Data3, Data4}, m_drives, Dir1, *m_display, request());
    if (scanBegins())
        m_engine->run();
}

// The image or folder that stands for the drive in hand; empty for a real drive.
std::filesystem::path Scanform::addedPath() const {
    std::filesystem::path path;
    base::skipErrors([&] { path = m_drives.addedPath(drive()[0]); });
    return path;
}

void Scanform::sayDiscFails(const base::RuntimeError& error) {
    const auto path = addedPath();
    const auto told = path.empty() ? error : error.about(disc::shownPath(path));
    say(qt(told.description()), kit::Icon::Exclamation, kErrorTitle);
}

// What keeps a scan from beginning is told, the disc as at the quick scan, and it can be started again.
bool Scanform::scanBegins() {
    try {
        m_engine->lookAtDisc();
    } catch (const base::RuntimeError& error) {
        sayDiscFails(error);
        return false;
    }
    try {
        m_engine->begin();
        return true;
    } catch (const base::RuntimeError& error) {
        say(qt(error.description()), kit::Icon::Critical, kErrorTitle);
        return false;
    }
}

void Scanform::Command6_Click() {
    const auto answer =
        kit::MsgBox(kStopQuestion, kit::Buttons::OkCancel, kit::Icon::Critical, kStopQuestionTitle, this);
    if (answer != kit::Answer::Ok)
        return;
    app::Module1::ScanCancelled = 1;
    kit::yield();
}

void Scanform::Command5_Click() {
    Unload();
    kit::yield();
    app::Windows::Show("Scanform");
}

// A scan that was started meanwhile has set the mark itself.
void Scanform::Timer1_Timer() {
    Timer1->setEnabled(false);
    if (scanIsRunning() || Data1.Recordset().Eof())
        return;
    const auto state = Data1.Recordset().Fields(catalogue::masterTable::kScanError).Text();
    if (state == "error")
        say(kUnfinishedScan, kit::Icon::Critical, kErrorTitle);
}

// ---- The scanning screen

void Scanform::Timer2_Timer() {
    m_clock.tick(QTime::currentTime().second());
    kit::yield();
    m_clock.carryMinute();
    kit::yield();
    if (const auto remaining = m_clock.estimate(utf8(NumLED1(0).caption()), utf8(NumLED1(1).caption()))) {
        NumLED3->setCaption(qt(*remaining));
        kit::yield();
    }
    NumLED2->setCaption(qt(m_clock.elapsed()));
    kit::yield();
}

// Each counter gives way to its other side.
void Scanform::NumLED1_Click(int index) {
    giveWay(NumLED1(index), NumLED1(1 - index));
}

void Scanform::NumLED2_Click() {
    giveWay(*NumLED2, *NumLED3);
    Label9->setText("Remaining Time");
}

void Scanform::NumLED3_Click() {
    giveWay(*NumLED3, *NumLED2);
    Label9->setText("Elapsed Time");
}

void Scanform::TrayIcon_Restore() {
    setState(State::Normal);
    Show();
}

void Scanform::TrayIcon_Minimise() {
    setState(State::Minimised);
}

} // namespace discaro::scanner
