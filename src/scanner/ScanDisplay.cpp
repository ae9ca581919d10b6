#include "scanner/ScanDisplay.h"

#include "app/Windows.h"
#include "kit/Beep.h"
#include "kit/MsgBox.h"
#include "kit/Strings.h"
#include "kit/Yield.h"
#include "scanner/Scanform.h"
#include "scanner/Texts.h"

#include <array>
#include <charconv>

namespace discaro::scanner {

namespace {

void showOnly(const kit::ControlArray<kit::Picture>& pictures, int shown) {
    for (const auto& [index, picture] : pictures)
        picture->setVisible(index == shown);
}

// Counts of files are whole, and put together a hundred thousand times in a scan.
QString counterText(double count, char sign) {
    std::array<char, 24> text;
    char* end = std::to_chars(text.begin(), text.end() - 1, static_cast<int64_t>(count)).ptr;
    *end++ = sign;
    return QString::fromLatin1(text.data(), end - text.data());
}

// "" is no reason.
void tellUnsaved(const std::string& reason) {
    if (!reason.empty())
        kit::MsgBox("The scan could not be saved. The catalogue stands as it was before.\n\n" +
                        kit::qt(reason),
                    kit::Buttons::Ok, kit::Icon::Critical, "Error during Scan");
}

} // namespace

void ScanDisplay::yield() {
    m_walks ? kit::yieldOften() : kit::yield();
}

bool ScanDisplay::askStopOnError() {
    return kit::MsgBox("An error was found during the scan process. The scan operation will be "
                       "stopped and the "
                       "scanned enteries will be deleted. Press OK to proceed with deletion or "
                       "press Cancel to "
                       "ignore this error.",
                       kit::Buttons::OkCancel, kit::Icon::Critical, "Error during Scan",
                       &m_form) == kit::Answer::Ok;
}

void ScanDisplay::scanStarted(double files) {
    m_walks = true;
    m_form.Command2->hide();
    m_form.Command6->show();
    m_form.Command6->setFocus();
    m_form.Command1(4).setEnabled(false);
    showWalkStage(Stage::Running);
    m_form.NumLED1(0).show();
    m_form.NumLED2->show();
    m_form.Label9->show();
    m_form.startClock();
    m_form.TrayIcon2->setVisible(false);
    m_form.TrayIcon1->setVisible(true);
    m_form.TrayIcon1->setFlashEnabled(true);
    m_form.ProgressBar1->setMax(static_cast<int64_t>(files));
    m_form.ProgressBar1->setValue(0);
    m_form.ProgressBar2->setValue(0);
}

void ScanDisplay::directoryEntered(int64_t files) {
    m_form.ProgressBar2->setMax(files);
}

void ScanDisplay::directoryBarReset() {
    m_form.ProgressBar2->setValue(0);
}

void ScanDisplay::showCounters(double done, double left) {
    m_form.NumLED1(0).setCaption(counterText(done, '+'));
    m_form.NumLED1(1).setCaption(counterText(left, '-'));
}

void ScanDisplay::advanceDiscBar(double done) {
    m_form.ProgressBar1->setValue(static_cast<int64_t>(done));
}

void ScanDisplay::showDiscBarTip() {
    showPercent(*m_form.ProgressBar1, m_discPercent);
}

void ScanDisplay::advanceDirectoryBar() {
    m_form.ProgressBar2->setValue(m_form.ProgressBar2->value() + 1);
}

void ScanDisplay::showDirectoryBarTip() {
    showPercent(*m_form.ProgressBar2, m_directoryPercent);
}

// A bar's percentage as its tool tip, put together when it is another one.
void ScanDisplay::showPercent(kit::ProgressBar& bar, std::optional<int64_t>& shown) {
    const int64_t percent = bar.percent();
    if (shown == percent)
        return;
    shown = percent;
    bar.setToolTip(QString::number(percent) + " %");
}

void ScanDisplay::showPercentage() {
    const QString done = m_form.ProgressBar1->toolTip();
    if (m_inCaption == done)
        return;
    m_inCaption = done;
    const QString caption = m_form.FormTitle + "  (" + done + " Done)";
    if (caption == m_form.caption())
        return;
    m_form.setCaption(caption);
    m_form.TrayIcon1->setToolTipText(m_form.caption());
}

void ScanDisplay::walkFinished() {
    m_walks = false;
    showWalkStage(Stage::Finished);
}

void ScanDisplay::remainingTimeZero() {
    m_form.NumLED3->setCaption("-00:00");
}

void ScanDisplay::cancelImpossible() {
    m_form.Command6->setEnabled(false);
}

// One yield often lets nothing be painted, and no event runs after it until the totals are there.
void ScanDisplay::totalsStarted() {
    showTotalsStage(Stage::Running);
    m_form.repaint();
}

void ScanDisplay::totalsBarSized(int64_t directories) {
    m_form.ProgressBar1->setToolTip({});
    m_discPercent.reset();
    m_form.ProgressBar1->setMax(directories);
    m_form.ProgressBar1->setValue(0);
}

void ScanDisplay::advanceTotalsBar() {
    kit::ProgressBar& bar = *m_form.ProgressBar1;
    bar.setValue(bar.value() + 1);
    if (m_discPercent == bar.percent())
        return;
    m_discPercent = bar.percent();
    bar.paintNow();
}

void ScanDisplay::totalsFinished() {
    showTotalsStage(Stage::Finished);
}

void ScanDisplay::clockStopped() {
    m_form.Timer2->setEnabled(false);
}

void ScanDisplay::beep() {
    kit::Beep();
}

void ScanDisplay::scanFinished() {
    m_form.Command1(7).setEnabled(true);
    m_form.TrayIcon1->setVisible(false);
    m_form.TrayIcon1->setFlashEnabled(false);
    m_form.TrayIcon2->setVisible(true);
    m_form.Text5->setText(
        "* Your CD-ROM was successfully scanned. Press Finish to return to the Main Menu.");
    m_form.Command6->hide();
    m_form.Command5->show();
    m_form.Command1(7).setFocus();
}

void ScanDisplay::discLost(double kept, double counted, bool logged) {
    kit::MsgBox(kit::qt(discLostText(kept, counted, logged)), kit::Buttons::Ok,
                kit::Icon::Exclamation, "Error during Scan", &m_form);
}

// The box stands over the menu: by then the transaction is over, and other programs may have the catalogue. It comes
// also where the menu can't, as when the catalogue has been removed.
void ScanDisplay::scanStopped(const std::string& reason) {
    m_form.Unload();
    kit::yield();
    try {
        app::Windows::Show("Switch");
    } catch (const base::RuntimeError&) {
        tellUnsaved(reason);
        throw;
    }
    kit::yield();
    tellUnsaved(reason);
}

void ScanDisplay::showWalkStage(Stage stage) {
    showOnly(m_form.Picture3, static_cast<int>(stage));
}

void ScanDisplay::showTotalsStage(Stage stage) {
    showOnly(m_form.Picture4, static_cast<int>(stage));
}

} // namespace discaro::scanner
