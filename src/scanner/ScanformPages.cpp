#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "catalogue/Discs.h"
#include "kit/common/Beep.h"
#include "kit/common/Strings.h"
#include "kit/program/MsgBox.h"
#include "kit/program/Yield.h"
#include "scanner/NameChecks.h"
#include "scanner/Scanform.h"
#include "scanner/Texts.h"

#include <QtCore/QScopedValueRollback>

#include <algorithm>

// The wizard's pages: what each shows, what leads from one to the next, and the quick scan between them.
namespace discaro::scanner {

using kit::qt;
using kit::utf8;

namespace {

// Gives a control of the window.
using ControlOf = QWidget* (*)(Scanform&);

template <auto Member>
QWidget* only(Scanform& wizard) {
    return wizard.*Member;
}

template <int Index>
QWidget* button(Scanform& wizard) {
    return &wizard.Command1(Index);
}

// What the pages take turns in showing.
constexpr ControlOf kTurns[] = {only<&Scanform::Picture1>, only<&Scanform::Picture2>, only<&Scanform::Text2>,
                                only<&Scanform::Text3>,    only<&Scanform::Text4>,    only<&Scanform::Label2>,
                                only<&Scanform::Label3>,   only<&Scanform::Drive1>,   only<&Scanform::DiscImage>,
                                only<&Scanform::Check1>,   only<&Scanform::Command4>};

// Text1 where entries stand below it, and where it has the page to itself.
constexpr QRect kTextAboveEntries(24, 16, 592, 128);
constexpr QRect kTextAlone(24, 16, 592, 362);

} // namespace

struct Scanform::Page {
    std::vector<ControlOf> shown; // of kTurns
    std::string (*text)(const Scanform&);
    kit::TextBox* Scanform::*textBox = &Scanform::Text1;
    QRect textPlace = kTextAboveEntries; // of Text1
    const char* caption = "";            // of the entry in use
    ControlOf focus;
    // Where Cancel, Back, Next and Finish lead; a button that leads nowhere can't be pressed.
    void (Scanform::*ways[4])() = {};
};

// In the order of PageNumber.
const Scanform::Page Scanform::kPages[] = {
    {.shown = {only<&Scanform::Picture1>, only<&Scanform::Command4>},
     .text = [](const Scanform&) { return welcomeText(); },
     .textPlace = kTextAlone,
     .focus = button<2>,
     .ways = {&Scanform::closeAndReturn, nullptr, &Scanform::ShowNamePage, nullptr}},
    {.shown = {only<&Scanform::Picture1>, only<&Scanform::Text2>, only<&Scanform::Label2>, only<&Scanform::Label3>,
               only<&Scanform::Drive1>, only<&Scanform::DiscImage>, only<&Scanform::Check1>},
     .text = [](const Scanform&) { return nameText(); },
     .caption = "Preferred Name",
     .focus = only<&Scanform::Text2>,
     .ways = {&Scanform::closeAndReturn, &Scanform::ShowWelcomePage, &Scanform::leaveNamePage, nullptr}},
    {.shown = {only<&Scanform::Picture1>, only<&Scanform::Text3>, only<&Scanform::Label2>},
     .text = [](const Scanform&) -> std::string { return kCommentsText; },
     .caption = "Comments",
     .focus = only<&Scanform::Text3>,
     .ways = {&Scanform::closeAndReturn, &Scanform::ShowNamePage, &Scanform::countOnCheckPage, nullptr}},
    {.shown = {only<&Scanform::Picture1>, only<&Scanform::Text4>, only<&Scanform::Label2>},
     .text = [](const Scanform&) -> std::string { return kCheckText; },
     .focus = button<2>,
     .ways = {&Scanform::closeAndReturn, &Scanform::ShowCommentsPage, &Scanform::ShowSettingsPage, nullptr}},
    {.shown = {only<&Scanform::Picture1>, only<&Scanform::Label2>},
     .text =
         [](const Scanform& wizard) {
             return settingsText({.preferredName = utf8(wizard.Text2->text()),
                                  .driveName = wizard.drive(),
                                  .comments = utf8(wizard.Text3->text()),
                                  .options = wizard.m_options,
                                  .directories = wizard.m_quickScan.directories(),
                                  .files = wizard.m_quickScan.files()});
         },
     .textPlace = kTextAlone,
     .focus = button<3>,
     .ways = {&Scanform::closeAndReturn, &Scanform::returnToCheckPage, nullptr, &Scanform::ShowStartPage}},
    {.shown = {only<&Scanform::Picture2>},
     .text = [](const Scanform&) { return startText(); },
     .textBox = &Scanform::Text5,
     .focus = only<&Scanform::Command2>},
    {.shown = {only<&Scanform::Picture1>, only<&Scanform::Text4>, only<&Scanform::Label2>},
     .text = [](const Scanform&) -> std::string { return kCheckText; },
     .focus = only<&Scanform::Text1>},
};

void Scanform::showPage(PageNumber number) {
    const Page& page = kPages[number - 1];
    m_shown = number;
    if (number <= Settings)
        ScanPage = number;
    (this->*page.textBox)->setText(qt(page.text(*this)));
    place(*Text1, page.textPlace);
    Text1->raise(); // over the caption, which may stand empty on its ground
    Label2->setText(page.caption);
    for (const ControlOf each : kTurns)
        each(*this)->setVisible(std::ranges::find(page.shown, each) != page.shown.end());
    for (int index = 0; index < 4; ++index)
        Command1(index).setEnabled(page.ways[index] != nullptr);
    page.focus(*this)->setFocus();
}

// ---- The pages

void Scanform::ShowWelcomePage() {
    showPage(Welcome);
}

void Scanform::ShowNamePage() {
    m_drives.refresh();
    loadDrives();
    chooseDiscDrive();
    Check1->setValue(false);
    Text2->setText({});
    showPage(Name);
}

void Scanform::ShowCommentsPage() {
    showPage(Comments);
}

// A disc of a kind that can't be read leads back to the page before.
void Scanform::ShowCheckPage() {
    if (!QuickScanDone) {
        showPage(Counting);
        if (!beginQuickScan())
            return ShowCommentsPage();
        runQuickScan();
    }
    showPage(Check);
}

void Scanform::countOnCheckPage() {
    QuickScanDone = false;
    ShowCheckPage();
}

void Scanform::returnToCheckPage() {
    QuickScanDone = true;
    ShowCheckPage();
}

void Scanform::ShowSettingsPage() {
    showPage(Settings);
}

void Scanform::ShowStartPage() {
    showPage(Start);
}

// ---- The quick scan

// A disc of a kind that can't be read, and an image or folder that has gone or can't be read, are told of, and the
// user may choose another. A drive without a disc ends the program like any error that nobody expects.
bool Scanform::beginQuickScan() {
    try {
        m_quickScan.begin(drive()[0]);
        return true;
    } catch (const base::RuntimeError& error) {
        if (!error.is(base::ErrorNumber::FileSystemUnknown) && !error.is(base::ErrorNumber::FileSystemUnsupported) &&
            !error.is(base::ErrorNumber::PathMissing) && addedPath().empty())
            throw;
        sayDiscFails(error);
        return false;
    }
}

void Scanform::runQuickScan() {
    const QScopedValueRollback running(m_quickScanRuns, true);
    try {
        const bool whole = m_quickScan.countBelow([this](const std::string& path) {
            Text4->showText(qt(path));
            kit::yield();
            return !isUnloaded();
        });
        if (whole)
            Text4->setText(qt(m_quickScan.text()));
        Dir1.letGo();
    } catch (const base::RuntimeError&) {
        say(kQuickScanFailed, kit::Icon::Critical, kQuickScanFailedTitle);
        Unload();
        app::Windows::Show("Switch");
    }
}

// ---- The buttons of the pages

// Those of the scanning screen lead out.
void Scanform::Command1_Click(int index) {
    if (const auto way = index < 4 ? kPages[m_shown - 1].ways[index] : &Scanform::closeAndReturn)
        (this->*way)();
}

void Scanform::leaveNamePage() {
    if (namePagePasses())
        ShowCommentsPage();
}

// The four checks of page 2, in order.
bool Scanform::namePagePasses() {
    if (Text2->text().isEmpty()) {
        say(kNoName, kit::Icon::Exclamation, kErrorTitle);
        Text2->setFocus();
        return false;
    }
    lookAtDisc();
    if (DrvFact1.type != disc::DriveType::CdRom) {
        kit::Beep();
        say(kNoDiscDrive, kit::Icon::Exclamation, kErrorTitle);
        return false;
    }
    if (const auto message = takenNameMessage(Data2.Recordset(), utf8(Text2->text()))) {
        say(qt(*message), kit::Icon::Exclamation, catalogue::kDuplicateNameTitle);
        return false;
    }
    return duplicateSerialsPassed(Data2.Recordset(), DrvFact1.serial, [this](const std::string& text) {
        return kit::MsgBox(qt(text), kit::Buttons::OkCancel, kit::Icon::Exclamation, kDuplicateSerialTitle, this) ==
               kit::Answer::Ok;
    });
}

void Scanform::Text2_Enter() {
    Command1(2).click();
}

// The disc may have been changed since the drive was chosen.
void Scanform::Check1_Click() {
    lookAtDisc();
    Text2->setText(Check1->value() ? qt(DrvFact1.label) : QString());
}

} // namespace discaro::scanner
