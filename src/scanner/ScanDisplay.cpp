#include "scanner/ScanDisplay.h"

#include "app/Windows.h"
#include "kit/common/Beep.h"
#include "kit/common/Strings.h"
#include "kit/program/MsgBox.h"
#include "kit/program/Yield.h"
#include "scanner/Texts.h"

#include <array>
#include <charconv>

namespace discaro::scanner {

namespace {

// The totals of a small disc take less time than a hundred paintings.
constexpr int64_t kTotalsStep = 5; // per cent

void showOnly(const kit::ControlArray<kit::Picture>& pictures, int shown) {
    for (const auto& [index, picture] : pictures)
        picture->setVisible(index == shown);
}

// Counts of files are whole, and put together a hundred thousand times in a scan.
QString counterText(double count, char sign) {
    std::array<char, 24> text{};
    char* end = std::to_chars(text.begin(), text.end() - 1, static_cast<int64_t>(count)).ptr;
    *end++ = sign;
    return QString::fromLatin1(text.data(), end - text.data());
}

// "" is no reason.
void tellUnsaved(const std::string& reason) {
    if (!reason.empty())
        kit::MsgBox(kit::qt(unsavedText(reason)), kit::Buttons::Ok, kit::Icon::Critical, kScanErrorTitle);
}

} // namespace

void ScanDisplay::yield() {
    m_walks ? kit::yieldOften() : kit::yield();
}

bool ScanDisplay::userWantsStop() {
    return kit::MsgBox(kStopOnErrorQuestion, kit::Buttons::OkCancel, kit::Icon::Critical, kScanErrorTitle,
                       &m_controls.window) == kit::Answer::Ok;
}

void ScanDisplay::scanStarted(double files) {
    m_walks = true;
    m_controls.start.hide();
    m_controls.cancel.show();
    m_controls.cancel.setFocus();
    m_controls.leave.setEnabled(false);
    showWalkStage(Stage::Running);
    m_controls.done.show();
    m_controls.elapsed.show();
    m_controls.timeCaption.show();
    startClock();
    m_controls.resting.setVisible(false);
    m_controls.running.setVisible(true);
    m_controls.running.setFlashEnabled(true);
    m_controls.discBar.setMax(static_cast<int64_t>(files));
    m_controls.discBar.setValue(0);
    m_controls.directoryBar.setValue(0);
}

void ScanDisplay::startClock() {
    m_clock.start();
    m_controls.elapsed.setCaption(kit::qt(m_clock.elapsed()));
    m_controls.clockTimer.setEnabled(true);
}

void ScanDisplay::directoryEntered(int64_t files) {
    m_controls.directoryBar.setMax(files);
}

void ScanDisplay::directoryBarReset() {
    m_controls.directoryBar.setValue(0);
}

void ScanDisplay::showCounters(double done, double left) {
    m_controls.done.setCaption(counterText(done, '+'));
    m_controls.left.setCaption(counterText(left, '-'));
}

void ScanDisplay::advanceDiscBar(double done) {
    m_controls.discBar.setValue(static_cast<int64_t>(done));
}

void ScanDisplay::showDiscBarTip() {
    showPercent(m_controls.discBar, m_discPercent);
}

void ScanDisplay::advanceDirectoryBar() {
    m_controls.directoryBar.setValue(m_controls.directoryBar.value() + 1);
}

void ScanDisplay::showDirectoryBarTip() {
    showPercent(m_controls.directoryBar, m_directoryPercent);
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
    const QString done = m_controls.discBar.toolTip();
    if (m_inCaption == done)
        return;
    m_inCaption = done;
    const QString caption = kit::qt(progressCaption(kit::utf8(m_controls.title), kit::utf8(done)));
    if (caption == m_controls.window.caption())
        return;
    m_controls.window.setCaption(caption);
    m_controls.running.setToolTipText(m_controls.window.caption());
}

void ScanDisplay::walkFinished() {
    m_walks = false;
    showWalkStage(Stage::Finished);
}

void ScanDisplay::remainingTimeZero() {
    m_controls.remaining.setCaption("-00:00");
}

void ScanDisplay::cancelImpossible() {
    m_controls.cancel.setEnabled(false);
}

// One yield often lets nothing be painted, and no event runs after it until the totals are there.
void ScanDisplay::totalsStarted() {
    showTotalsStage(Stage::Running);
    m_controls.window.repaint();
}

void ScanDisplay::totalsBarSized(int64_t directories) {
    m_controls.discBar.setToolTip({});
    m_discPercent.reset();
    m_controls.discBar.setMax(directories);
    m_controls.discBar.setValue(0);
}

void ScanDisplay::advanceTotalsBar() {
    kit::ProgressBar& bar = m_controls.discBar;
    const int64_t before = bar.percent() / kTotalsStep;
    bar.setValue(bar.value() + 1);
    if (bar.percent() / kTotalsStep != before)
        bar.paintNow();
}

void ScanDisplay::totalsFinished() {
    showTotalsStage(Stage::Finished);
}

void ScanDisplay::clockStopped() {
    m_controls.clockTimer.setEnabled(false);
}

void ScanDisplay::beep() {
    kit::Beep();
}

void ScanDisplay::scanFinished() {
    m_controls.finish.setEnabled(true);
    m_controls.running.setVisible(false);
    m_controls.running.setFlashEnabled(false);
    m_controls.resting.setVisible(true);
    m_controls.what.setText(kFinishedText);
    m_controls.cancel.hide();
    m_controls.another.show();
    m_controls.finish.setFocus();
}

void ScanDisplay::discLost(double kept, double counted, bool logged) {
    kit::MsgBox(kit::qt(discLostText(kept, counted, logged)), kit::Buttons::Ok, kit::Icon::Exclamation, kScanErrorTitle,
                &m_controls.window);
}

// The box stands over the menu: by then the transaction is over, and other programs may have the catalogue. It comes
// also where the menu can't, as when the catalogue has been removed.
void ScanDisplay::scanStopped(const std::string& reason) {
    m_controls.window.Unload();
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
    showOnly(m_controls.walkStages, static_cast<int>(stage));
}

void ScanDisplay::showTotalsStage(Stage stage) {
    showOnly(m_controls.totalsStages, static_cast<int>(stage));
}

} // namespace discaro::scanner
