#include "scanner/core/ScanRig.h"

#include "app/Module1.h"
#include "catalogue/EmptyCatalogue.h"
#include "db/DBEngine.h"
#include "disc/drives/DriveTable.h"
#include "scanner/QuickScan.h"
#include "scanner/Texts.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

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

std::filesystem::path makeFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "discaro-scan-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    return name;
}

void openSource(db::DataSource& source, const char* table) {
    source.SetDatabaseName(app::Module1::cataloguePath());
    source.SetRecordSource(table);
    source.Refresh();
}

std::string statement(const std::string& table, const std::string& condition) {
    return "select * from [" + table + "]" + (condition.empty() ? "" : " where " + condition);
}

} // namespace

ScanRig::ScanRig()
    : drives([] { return disc::Computer{}; })
    , lister(drives)
    , m_folder(makeFolder()) {
    db::DBEngine::SetFormat(catalogue::catalogueFormat());
    app::Module1::ApplicationPath = m_folder;
    app::Module1::ScanCancelled = 0;
    catalogue::createEmptyCatalogue(app::Module1::cataloguePath());
    watcher.whenStopped = [this] { close(); };
    open();
}

ScanRig::~ScanRig() {
    close();
    app::Module1::CatalogueDb.reset();
    std::filesystem::remove_all(m_folder);
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

int64_t ScanRig::count(const std::string& table) {
    return db::DBEngine::OpenDatabase(app::Module1::cataloguePath())
        ->OpenRecordset(statement(table, {}))
        ->RecordCount();
}

std::string ScanRig::field(const std::string& table, const std::string& condition, std::string_view field) {
    auto rows = db::DBEngine::OpenDatabase(app::Module1::cataloguePath())->OpenRecordset(statement(table, condition));
    if (rows->Eof()) {
        ADD_FAILURE() << "no row of " << table << " with " << condition;
        return {};
    }
    return rows->Fields(field).Text();
}

bool ScanRig::isNull(const std::string& table, const std::string& condition, std::string_view field) {
    auto rows = db::DBEngine::OpenDatabase(app::Module1::cataloguePath())->OpenRecordset(statement(table, condition));
    EXPECT_FALSE(rows->Eof()) << "no row of " << table << " with " << condition;
    return !rows->Eof() && rows->Fields(field).IsNull();
}

std::vector<std::string> ScanRig::column(const std::string& table, std::string_view field,
                                         const std::string& condition) {
    auto rows = db::DBEngine::OpenDatabase(app::Module1::cataloguePath())->OpenRecordset(statement(table, condition));
    std::vector<std::string> texts;
    for (; !rows->Eof(); rows->MoveNext())
        texts.push_back(rows->Fields(field).Text());
    return texts;
}

} // namespace discaro::test
