#pragma once

#include "db/DataSource.h"
#include "disc/drives/Lister.h"
#include "scanner/ScanEngine.h"
#include "support/MemoryMedium.h"
#include "support/catalogue/ScratchCatalogue.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace discaro::test {

// A watcher that answers prompts from a list and can act at the n-th yield.
class TestWatcher : public scanner::ScanWatcher {
public:
    std::vector<bool> answers; // to the prompts, in order; true stops the scan; false when there are no more
    int prompts = 0;
    int yields = 0;
    std::function<void(int yieldNumber)> atYield;
    std::vector<std::string> log; // what the display was told, in order, the counters and bars left out
    std::vector<double> counters; // files done, then files left, for each file
    int64_t totalsBarSize = -1;
    int totalsSteps = 0;

    void yield() override;
    bool userWantsStop() override;
    void scanStarted(double files) override;
    void directoryEntered(int64_t files) override;
    void showCounters(double done, double left) override;
    void advanceDiscBar(double done) override;
    void showDiscBarTip() override;
    void advanceDirectoryBar() override;
    void showDirectoryBarTip() override;
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

    std::function<void()> whenStopped;
    std::function<void()> atDiscBar;    // may throw, as a bar does that refuses a value
    std::function<void()> atDiscBarTip; // may throw too
    std::vector<std::string> bars;      // what the bars were told without refusing it
};

// A catalogue, the four data sources of a scan, and discs in memory to scan into it.
class ScanRig : public ScratchCatalogue {
public:
    ScanRig();
    ~ScanRig();

    // Opens the data sources, as loading the scan window does; done by the constructor.
    void open();
    // Closes them, as unloading the scan window does.
    void close();

    // Puts a disc into a drive of its own.
    MemoryMedium& insert(MemoryNode root);

    // Counts and scans the disc inserted last.
    void scan(scanner::ScanOptions options = {}, const std::string& name = "Disc", const std::string& comments = {});

    std::string master(std::string_view field) { return this->field("Master Table", {}, field); }

    db::DataSource masterSource;
    db::DataSource discs;
    db::DataSource directories;
    db::DataSource files;
    disc::DriveTable drives;
    disc::Lister lister;
    TestWatcher watcher;
    char letter = 0;
    std::string root;                            // of the disc inserted last, such as "D:\"
    std::string errorLog;                        // of the scan before
    const scanner::ScanEngine* engine = nullptr; // while a scan runs
    double quickFiles = -1;                      // what the quick scan is made to have counted; -1 leaves its own count
};

} // namespace discaro::test
