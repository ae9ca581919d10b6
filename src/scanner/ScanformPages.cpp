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

// A control of the window.
using Control = QWidget* (*)(Scanform&);

template <auto Member>
QWidget* only(Scanform& wizard) {
    return wizard.*Member;
}

template <int Index>
QWidget* button(Scanform& wizard) {
    return &wizard.Command1(Index);
}

// What the pages below the text take turns in showing.
constexpr Control kEntries[] = {only<&Scanform::Text2>,     only<&Scanform::Text3>,  only<&Scanform::Text4>,
                                only<&Scanform::Label2>,    only<&Scanform::Label3>, only<&Scanform::Drive1>,
                                only<&Scanform::DiscImage>, only<&Scanform::Check1>, only<&Scanform::Command4>};

struct Page {
    std::vector<Control> entries; // those that show
    const char* caption;          // of the entry in use, null where none has one
    bool wholeText;               // the text has the page to itself
    bool back;                    // whether "Back", "Next" and "Finish" can be pressed
    bool next;
    bool finish;
    Control focus;
};

const Page kWelcome{.entries = {only<&Scanform::Command4>},
                    .caption = nullptr,
                    .wholeText = true,
                    .back = false,
                    .next = true,
                    .finish = false,
                    .focus = button<2>};
const Page kName{.entries = {only<&Scanform::Text2>, only<&Scanform::Label2>, only<&Scanform::Label3>,
                             only<&Scanform::Drive1>, only<&Scanform::DiscImage>, only<&Scanform::Check1>},
                 .caption = "Preferred Name",
                 .wholeText = false,
                 .back = true,
                 .next = true,
                 .finish = false,
                 .focus = only<&Scanform::Text2>};
const Page kComments{.entries = {only<&Scanform::Text3>, only<&Scanform::Label2>},
                     .caption = "Comments",
                     .wholeText = false,
                     .back = true,
                     .next = true,
                     .finish = false,
                     .focus = only<&Scanform::Text3>};
const Page kCheck{.entries = {only<&Scanform::Text4>, only<&Scanform::Label2>},
                  .caption = "",
                  .wholeText = false,
                  .back = true,
                  .next = true,
                  .finish = false,
                  .focus = button<2>};
const Page kSettings{.entries = {only<&Scanform::Label2>},
                     .caption = "",
                     .wholeText = true,
                     .back = true,
                     .next = false,
                     .finish = true,
                     .focus = button<3>};

// Text1 where entries stand below it, and where it has the page to itself; its width and top are the table's.
constexpr QRect kTextAboveEntries(24, 16, 592, 128);
constexpr QRect kTextAlone(24, 16, 592, 362);

void showPage(Scanform& wizard, const Page& page, const std::string& text) {
    wizard.Text1->setText(qt(text));
    wizard.place(*wizard.Text1, page.wholeText ? kTextAlone : kTextAboveEntries);
    wizard.Text1->raise(); // over the caption, which may stand empty on its ground
    if (page.caption)
        wizard.Label2->setText(page.caption);
    for (const Control entry : kEntries)
        entry(wizard)->setVisible(std::ranges::find(page.entries, entry) != page.entries.end());
    wizard.Command1(0).setEnabled(true);
    wizard.Command1(1).setEnabled(page.back);
    wizard.Command1(2).setEnabled(page.next);
    wizard.Command1(3).setEnabled(page.finish);
    page.focus(wizard)->setFocus();
}

} // namespace

// ---- The pages

void Scanform::ShowWelcomePage() {
    showPage(*this, kWelcome, welcomeText());
}

void Scanform::ShowNamePage() {
    m_drives.refresh();
    loadDrives();
    chooseDiscDrive();
    Check1->setValue(false);
    Text2->setText({});
    showPage(*this, kName, nameText());
}

void Scanform::ShowCommentsPage() {
    showPage(*this, kComments, kCommentsText);
}

// Returns whether the page stays: a disc of a kind that can't be read leads back to the page before.
bool Scanform::ShowCheckPage() {
    showPage(*this, kCheck, kCheckText);
    for (const int index : {0, 1, 2})
        Command1(index).setEnabled(false);
    const bool stays = QuickScanDone || beginQuickScan();
    if (stays && !QuickScanDone)
        runQuickScan();
    if (!stays) {
        ShowCommentsPage();
        return false;
    }
    for (const int index : {0, 1, 2})
        Command1(index).setEnabled(true);
    Command1(2).setFocus();
    return true;
}

void Scanform::ShowSettingsPage() {
    showPage(*this, kSettings,
             settingsText({.preferredName = utf8(Text2->text()),
                           .driveName = drive(),
                           .comments = utf8(Text3->text()),
                           .options = m_options,
                           .directories = m_quickScan.directories(),
                           .files = m_quickScan.files()}));
}

void Scanform::ShowStartPage() {
    Picture1->hide();
    Picture2->show();
    Text5->setText(qt(startText()));
    Command2->setFocus();
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

void Scanform::Command1_Click(int index) {
    switch (index) {
    case 1:
        goBack();
        break;
    case 2:
        goNext();
        break;
    case 3:
        ShowStartPage();
        break;
    case 0:
    case 4:
    case 7:
        closeAndReturn();
        break;
    default:
        break;
    }
}

void Scanform::goBack() {
    switch (ScanPage) {
    case 2:
        ShowWelcomePage();
        break;
    case 3:
        ShowNamePage();
        break;
    case 4:
        ShowCommentsPage();
        break;
    case 5:
        QuickScanDone = true;
        ShowCheckPage();
        break;
    default:
        return;
    }
    --ScanPage;
}

void Scanform::goNext() {
    switch (ScanPage) {
    case 1:
        ShowNamePage();
        break;
    case 2:
        if (!namePagePasses())
            return;
        ShowCommentsPage();
        break;
    case 3:
        QuickScanDone = false;
        if (!ShowCheckPage())
            return;
        break;
    case 4:
        ShowSettingsPage();
        break;
    default:
        return;
    }
    ++ScanPage;
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
