#include "scanner/core/ScanRig.h"

#include "app/Module1.h"
#include "disc/drives/DriveTable.h"
#include "scanner/QuickScan.h"
#include "scanner/Texts.h"

namespace discaro::test {

void TestWatcher::yield() {
    ++yields;
    if (atYield)
        atYield(yields);
}

bool TestWatcher::userWantsStop() {
    const auto number = static_cast<size_t>(prompts++);
    return number < answers.size() && answers[number];
}

void TestWatcher::scanStarted(double files) {
    log.push_back("started " + std::to_string(static_cast<int>(files)));
}
void TestWatcher::directoryEntered(int64_t files) {
    log.push_back("directory of " + std::to_string(files));
}
void TestWatcher::showCounters(double done, double left) {
    counters.push_back(done);
    counters.push_back(left);
}
void TestWatcher::advanceDiscBar(double) {
    if (atDiscBar)
        atDiscBar();
    bars.emplace_back("disc");
}
void TestWatcher::showDiscBarTip() {
    if (atDiscBarTip)
        atDiscBarTip();
    bars.emplace_back("disc tip");
}
void TestWatcher::advanceDirectoryBar() {
    bars.emplace_back("directory");
}
void TestWatcher::showDirectoryBarTip() {
    bars.emplace_back("directory tip");
}
void TestWatcher::walkFinished() {
    log.emplace_back("walk finished");
}
void TestWatcher::remainingTimeZero() {
    log.emplace_back("remaining time zero");
}
void TestWatcher::cancelImpossible() {
    log.emplace_back("cancel impossible");
}
void TestWatcher::totalsStarted() {
    log.emplace_back("totals started");
}
void TestWatcher::totalsBarSized(int64_t directories) {
    totalsBarSize = directories;
}
void TestWatcher::advanceTotalsBar() {
    ++totalsSteps;
}
void TestWatcher::totalsFinished() {
    log.emplace_back("totals finished");
}
void TestWatcher::clockStopped() {
    log.emplace_back("clock stopped");
}
void TestWatcher::beep() {
    log.emplace_back("beep");
}
void TestWatcher::scanFinished() {
    log.emplace_back("finished");
}
void TestWatcher::discLost(double kept, double counted, bool logged) {
    log.push_back("disc lost: " + scanner::discLostText(kept, counted, logged));
}
void TestWatcher::scanStopped(const std::string& reason) {
    if (!reason.empty())
        log.push_back("not saved: " + reason);
    log.emplace_back("stopped");
    if (whenStopped)
        whenStopped();
}

namespace {

void openSource(db::DataSource& source, const char* table) {
    source.SetDatabaseName(app::Module1::cataloguePath());
    source.SetRecordSource(table);
    source.Refresh();
}

} // namespace

ScanRig::ScanRig()
    : drives([] { return disc::Computer{}; })
    , lister(drives) {
    watcher.whenStopped = [this] { close(); };
    open();
}

ScanRig::~ScanRig() {
    close();
}

void ScanRig::open() {
    openSource(masterSource, "master table");
    openSource(discs, "drive");
    openSource(directories, "directories");
    openSource(files, "files");
}

void ScanRig::close() {
    for (db::DataSource* source : {&masterSource, &discs, &directories, &files})
        source->Close();
}

MemoryMedium& ScanRig::insert(MemoryNode node) {
    auto medium = std::make_unique<MemoryMedium>(std::move(node));
    MemoryMedium& inserted = *medium;
    letter = drives.addMedium(std::move(medium));
    root = std::string(1, letter) + ":\\";
    return inserted;
}

void ScanRig::scan(scanner::ScanOptions options, const std::string& name, const std::string& comments) {
    scanner::QuickScan quick(lister);
    quick.begin(letter);
    quick.countBelow([](const std::string&) { return true; });
    scanner::ScanEngine running({masterSource, discs, directories, files}, drives, lister, watcher,
                                {.driveLetter = letter,
                                 .preferredName = name,
                                 .comments = comments,
                                 .quickFiles = quickFiles < 0 ? quick.files() : quickFiles,
                                 .quickDamagedDirectories = quick.damagedDirectories(),
                                 .options = std::move(options)});
    engine = &running;
    running.begin();
    running.run();
    errorLog = running.ErrorLog();
    engine = nullptr;
}

} // namespace discaro::test
