#pragma once

#include "kit/display/NumLed.h"
#include "kit/display/ProgressBar.h"
#include "kit/form/FormTable.h"
#include "kit/form/TrayIcon.h"
#include "scanner/ScanClock.h"
#include "scanner/ScanWatcher.h"

#include <QtCore/QString>

#include <optional>

namespace discaro::scanner {

// Shows a running scan on the scanning screen of its window.
class ScanDisplay : public ScanWatcher {
public:
    struct Controls {
        kit::Form& window;
        const QString& title;                                // FormTitle
        kit::TextBox& what;                                  // Text5
        const kit::ControlArray<kit::Picture>& walkStages;   // Picture3
        const kit::ControlArray<kit::Picture>& totalsStages; // Picture4
        kit::NumLed& done;                                   // NumLED1(0)
        kit::NumLed& left;                                   // NumLED1(1)
        kit::NumLed& elapsed;                                // NumLED2
        kit::NumLed& remaining;                              // NumLED3
        kit::Label& timeCaption;                             // Label9
        kit::ProgressBar& discBar;                           // ProgressBar1
        kit::ProgressBar& directoryBar;                      // ProgressBar2
        kit::Button& start;                                  // Command2
        kit::Button& another;                                // Command5
        kit::Button& cancel;                                 // Command6
        kit::Button& leave;                                  // Command1(4)
        kit::Button& finish;                                 // Command1(7)
        kit::Timer& clockTimer;                              // Timer2
        kit::TrayIcon& running;                              // TrayIcon1
        kit::TrayIcon& resting;                              // TrayIcon2
    };

    // The controls and the clock, which starts with the scan, outlive it.
    ScanDisplay(const Controls& controls, ScanClock& clock)
        : m_controls(controls)
        , m_clock(clock) {}

    void yield() override;
    bool userWantsStop() override;
    void scanStarted(double files) override;
    void directoryEntered(int64_t files) override;
    void directoryBarReset() override;
    void showCounters(double done, double left) override;
    void advanceDiscBar(double done) override;
    void showDiscBarTip() override;
    void advanceDirectoryBar() override;
    void showDirectoryBarTip() override;
    void showPercentage() override;
    void walkFinished() override;
    void remainingTimeZero() override;
    void cancelImpossible() override;
    void totalsStarted() override;
    void totalsBarSized(int64_t directories) override;
    void advanceTotalsBar() override;
    void totalsFinished() override;
    void clockStopped() override;
    void beep() override;
    void scanFinished() override;
    void discLost(double kept, double counted, bool logged) override;
    void scanStopped(const std::string& reason) override;

private:
    enum class Stage { NotStarted, Running, Finished };

    void startClock();
    void showWalkStage(Stage stage);
    void showTotalsStage(Stage stage);
    static void showPercent(kit::ProgressBar& bar, std::optional<int64_t>& shown);

    Controls m_controls;
    ScanClock& m_clock;
    bool m_walks = false;                      // and yields at every file
    std::optional<int64_t> m_discPercent;      // in the bar's tool tip; of the totals the one painted
    std::optional<int64_t> m_directoryPercent; // the same
    std::optional<QString> m_inCaption;        // the part done, as the window's caption has it
};

} // namespace discaro::scanner
