#pragma once

#include "kit/ProgressBar.h"
#include "scanner/ScanWatcher.h"

#include <QtCore/QString>

#include <optional>

namespace discaro::scanner {

class Scanform;

// Shows a running scan on the scanning screen of its window.
class ScanDisplay : public ScanWatcher {
public:
    explicit ScanDisplay(Scanform& form)
        : m_form(form) {}

    void yield() override;
    bool askStopOnError() override;
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

    void showWalkStage(Stage stage);
    void showTotalsStage(Stage stage);

    static void showPercent(kit::ProgressBar& bar, std::optional<int64_t>& shown);

    Scanform& m_form;
    bool m_walks = false;                 // and yields at every file
    std::optional<int64_t> m_discPercent; // in the bar's tool tip; of the totals the one painted
    std::optional<int64_t> m_directoryPercent; // the same
    std::optional<QString> m_inCaption;        // the part done, as the window's caption has it
};

} // namespace discaro::scanner
