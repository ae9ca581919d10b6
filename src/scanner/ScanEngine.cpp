#include "scanner/ScanEngine.h"

#include "app/Module1.h"
#include "catalogue/Names.h"
#include "catalogue/Totals.h"
#include "db/DBEngine.h"
#include "disc/drives/DriveTable.h"
#include "scanner/DiscFiles.h"
#include "scanner/Texts.h"

#include <limits>
#include <variant>

namespace discaro::scanner {

using base::skipErrors;
namespace drive = catalogue::drive;
namespace masterTable = catalogue::masterTable;

namespace {

constexpr int64_t kHighestFreeNumber = 1000000;
constexpr int64_t kHighestNumber = std::numeric_limits<int64_t>::max();
constexpr double kKilobytesInMegabyte = 1024;

} // namespace

ScanEngine::ScanEngine(ScanSources sources, const disc::DriveTable& drives, disc::Lister& lister, ScanWatcher& watcher,
                       ScanRequest request)
    : m_data(sources)
    , m_drives(drives)
    , m_lister(lister)
    , m_watcher(watcher)
    , m_request(std::move(request))
    , m_desk(m_request.options, watcher, [this](ErrorHandler::Place place) { return placeName(place); })
    , m_catalogue(app::Module1::cataloguePath()) {}

void ScanEngine::lookAtDisc() {
    const std::string root = disc::DriveTable::rootText(m_request.driveLetter);
    const disc::DriveFacts facts = m_drives.facts(root);
    readRoot(m_lister, root); // which may be another disc's than the quick scan's
    m_disc = facts;
}

void ScanEngine::begin() {
    if (!m_disc)
        lookAtDisc();
    db::DBEngine::BeginTrans();
}

void ScanEngine::run() {
    FilesDone = 0;
    FilesLeft = m_request.quickFiles;
    skipErrors([&] { m_watcher.scanStarted(m_request.quickFiles); });
    const std::string start = m_lister.path();
    NumberDisc();
    AddDriveRow();
    DirectoryId = "C" + std::to_string(DiscNumber) + "D1";
    ScanDirectory();
    if (stopIfCancelled())
        return;
    const bool discLost = discIsLost(); // from here on it may be taken out
    skipErrors([&] { m_lister.setPath(start); });
    skipErrors([&] { UpdateMasterTotals(); });
    skipErrors([&] { WriteFolderSize(); });
    skipErrors([&] { m_watcher.walkFinished(); });
    skipErrors([&] { rows(m_data.master).Edit(); });
    skipErrors([&] { rows(m_data.master)(masterTable::kScanError) = "no error"; });
    skipErrors([&] { rows(m_data.master).Update(); });
    if (m_request.options.LogErrors == "true")
        skipErrors([&] { LogErrorsToComments(); });
    skipErrors([&] { m_watcher.remainingTimeZero(); });
    skipErrors([&] { m_watcher.cancelImpossible(); });
    RollUpTotals();
    if (!stopIfCancelled())
        finish(discLost);
}

void ScanEngine::finish(bool discLost) {
    skipErrors([&] { m_watcher.clockStopped(); });
    m_watcher.yield();
    m_watcher.beep();
    try {
        db::DBEngine::CommitTrans();
    } catch (const base::RuntimeError& error) {
        m_desk.giveUp(error.description());
    }
    if (stopIfCancelled())
        return;
    skipErrors([&] { m_watcher.scanFinished(); });
    if (discLost)
        m_watcher.discLost(FilesKept, m_request.quickFiles, m_request.options.LogErrors == "true");
}

// A disc that has gone leaves a walk that tells every file and directory by itself, as unreadable ones do. It is gone
// when it says so, when its root can't be read any more, and when counted files are missing with directories that could
// be read at the count. Files that were deleted since are missing, too.
bool ScanEngine::discIsLost() {
    if (!m_desk.discFailed())
        return false;
    const bool fewer = FilesDone < m_request.quickFiles;
    const bool worse = m_desk.damagedDirectories() > m_request.quickDamagedDirectories;
    return m_desk.discGone() || (fewer && worse) ||
           !skipErrors([&] { readRoot(m_lister, disc::DriveTable::rootText(m_request.driveLetter)); });
}

bool ScanEngine::stopIfCancelled() {
    if (!cancelled())
        return false;
    m_watcher.scanStopped(m_desk.reason());
    return true;
}

// The lowest number that no disc has; the last one where all are taken.
int64_t ScanEngine::freeDiscNumber(int64_t from, int64_t to) {
    int64_t number = from;
    for (; number < to; ++number) {
        rows(m_data.discs).FindFirst("[id number] = " + std::to_string(number));
        if (rows(m_data.discs).NoMatch())
            break;
    }
    return number;
}

void ScanEngine::ClaimDiscNumber() {
    const bool free = m_request.options.UseFreeNumber == "true";
    db::Recordset& master = rows(m_data.master);
    const db::Value last = master.Fields(masterTable::kScannedCdRoms).Value();
    const auto* const number = std::get_if<int64_t>(&last);
    const int64_t next = !free && number != nullptr && *number < kHighestNumber ? *number + 1 : 1;
    DiscNumber = freeDiscNumber(next, free ? kHighestFreeNumber : kHighestNumber);
    master.Edit();
    if (!free)
        master(masterTable::kScannedCdRoms) = DiscNumber;
    master(masterTable::kScanError) = "error";
    m_data.master.UpdateRecord();
}

// Without a number of its own the disc could not be told from others.
void ScanEngine::NumberDisc() {
    try {
        ClaimDiscNumber();
    } catch (const base::RuntimeError& error) {
        if (DiscNumber == 0)
            m_desk.giveUp(error.description());
    }
}

// Without the disc's row nothing of the disc can be kept.
void ScanEngine::AddDriveRow() {
    try {
        fillDriveRow(*m_disc);
        m_data.discs.UpdateRecord();
    } catch (const base::RuntimeError& error) {
        m_desk.giveUp(error.description());
    }
}

void ScanEngine::fillDriveRow(const disc::DriveFacts& facts) {
    db::Recordset& disc = rows(m_data.discs);
    disc.AddNew();
    skipErrors([&] { disc(drive::kIdNumber) = DiscNumber; });
    skipErrors([&] { disc(drive::kDriveLetter) = facts.root; });
    skipErrors([&] { disc(drive::kVolumeName) = facts.label; });
    skipErrors([&] { disc(drive::kSerialNumber) = facts.serial; });
    skipErrors([&] { disc(drive::kFileSystem) = facts.fileSystem; });
    skipErrors([&] { disc(drive::kTotalSize) = facts.totalMegabytes; });
    skipErrors([&] { disc(drive::kFreeSize) = facts.freeMegabytes; });
    skipErrors([&] { disc(drive::kPreferedName) = m_request.preferredName; });
    skipErrors([&] { disc(drive::kComments) = initialComments(m_request.options, m_request.comments); });
    skipErrors([&] { ReadAutorun(facts.root); });
}

// The lines read before a failure stay.
void ScanEngine::ReadAutorun(const std::string& root) {
    std::string lines;
    skipErrors([&] {
        readAutorunLines(m_lister, root, [&](const std::string& line) { lines.append(kLineEnd).append(line); });
    });
    if (!lines.empty())
        rows(m_data.discs)(drive::kAutorun) = lines;
}

void ScanEngine::UpdateMasterTotals() {
    app::Module1::OpenCatalogue();
    db::Recordset& master = rows(m_data.master);
    master.Edit();
    catalogue::writeMasterTotals(master, {.directories = rows(m_data.directories).RecordCount(),
                                          .files = rows(m_data.files).RecordCount(),
                                          .kilobytes = catalogue::totalFileSize(*app::Module1::CatalogueDb),
                                          .discs = rows(m_data.discs).RecordCount()});
    m_data.master.UpdateRecord();
}

bool ScanEngine::moveToDiscRow() {
    db::Recordset& disc = rows(m_data.discs);
    disc.MoveLast();
    return db::numberOf(disc.Fields(drive::kIdNumber).Value()) == static_cast<double>(DiscNumber);
}

// What a folder holds is known when it has been walked.
void ScanEngine::WriteFolderSize() {
    if (!m_disc->isFolder || !moveToDiscRow())
        return;
    rows(m_data.discs).Edit();
    rows(m_data.discs)(drive::kTotalSize) = DiscSize / kKilobytesInMegabyte;
    m_data.discs.UpdateRecord();
}

void ScanEngine::LogErrorsToComments() {
    if (!moveToDiscRow())
        return;
    db::Recordset& disc = rows(m_data.discs);
    disc.Edit();
    disc(drive::kComments) = db::textOf(disc.Fields(drive::kComments).Value()).append(kLineEnd).append(ErrorLog());
    m_data.discs.UpdateRecord();
}

void ScanEngine::RollUpTotals() {
    if (cancelled())
        return;
    skipErrors([&] { m_watcher.totalsStarted(); });
    m_watcher.yield();
    skipErrors([] { app::Module1::OpenCatalogue(); });
    db::Recordset& directories = rows(m_data.directories);
    skipErrors([&] { directories.MoveFirst(); });
    skipErrors([&] { directories.FindFirst("[drive id number] = " + std::to_string(DiscNumber)); });
    skipErrors([&] { m_watcher.totalsBarSized(directories.RecordCount() - directories.AbsolutePosition()); });
    while (directories.IsOpen() && !directories.Eof()) {
        if (cancelled())
            return;
        skipErrors([&] { m_watcher.advanceTotalsBar(); });
        catalogue::rollUpCurrentDirectory(app::Module1::CatalogueDb.get(), directories);
        if (!skipErrors([&] { directories.MoveNext(); }))
            break;
    }
    skipErrors([&] { m_watcher.totalsFinished(); });
}

bool ScanEngine::cancelled() const {
    return app::Module1::ScanCancelled == 1;
}

std::string ScanEngine::placeName(ErrorHandler::Place place) const {
    return place == ErrorHandler::Place::File ? CurrentFileName : m_lister.path();
}

} // namespace discaro::scanner
