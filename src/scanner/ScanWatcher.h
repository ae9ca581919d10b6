#pragma once

#include <cstdint>
#include <string>

namespace discaro::scanner {

// What a scan needs from whoever runs it: a moment for pending events, an answer, a display. Every function of the
// display may throw base::RuntimeError; the scan treats that as any other failing statement.
// The defaults do nothing, so a scan runs without a window.
class ScanWatcher {
public:
    virtual ~ScanWatcher() = default;

    // Lets pending events run. Anything may happen meanwhile, a request to stop included.
    virtual void yield() {}

    // An error was found: true when the user wants the scan stopped.
    virtual bool userWantsStop() { return true; }

    // The scan begins; the disc holds this many files by the quick scan's count.
    virtual void scanStarted(double /*files*/) {}

    // A directory with this many files is entered; called only for one that has files.
    virtual void directoryEntered(int64_t /*files*/) {}
    virtual void directoryBarReset() {}

    // After each file, in this order. A bar's value and its tool tip are two statements: when the bar refuses one,
    // the other is shown all the same.
    virtual void showCounters(double /*done*/, double /*left*/) {}
    virtual void advanceDiscBar(double /*done*/) {}
    virtual void showDiscBarTip() {}
    virtual void advanceDirectoryBar() {}
    virtual void showDirectoryBarTip() {}
    virtual void showPercentage() {}

    virtual void walkFinished() {}
    virtual void remainingTimeZero() {}
    virtual void cancelImpossible() {}

    // The totals: a bar with one step a directory.
    virtual void totalsStarted() {}
    virtual void totalsBarSized(int64_t /*directories*/) {}
    virtual void advanceTotalsBar() {}
    virtual void totalsFinished() {}

    virtual void clockStopped() {}
    virtual void beep() {}
    virtual void scanFinished() {}

    // The scan was committed, but the disc went away during the walk: so many of the files that the quick scan
    // counted are in the catalogue.
    virtual void discLost(double /*kept*/, double /*counted*/, bool /*logged*/) {}

    // The scan was stopped, and the catalogue stands as before. The window closes, which ends the transaction with its
    // data sources, and the main menu comes back; then the reason is told. It is empty where the user wanted the stop,
    // else what kept the catalogue from taking the scan.
    virtual void scanStopped(const std::string& /*reason*/) {}
};

} // namespace discaro::scanner
