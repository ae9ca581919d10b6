#pragma once

#include "db/DataSource.h"
#include "disc/drives/DriveTable.h"
#include "disc/drives/Lister.h"
#include "disc/system/KeptClosed.h"
#include "scanner/ErrorHandling.h"
#include "scanner/ScanOptions.h"
#include "scanner/ScanWatcher.h"

#include <cstdint>
#include <optional>
#include <string>

namespace discaro::disc {
class Executable;
}

namespace discaro::scanner {

// The data sources of whoever scans, all open on the catalogue. They outlive the engine. A transaction that is not
// committed ends when the last of them closes.
struct ScanSources {
    db::DataSource& master;      // Master Table
    db::DataSource& discs;       // Drive
    db::DataSource& directories; // Directories
    db::DataSource& files;       // Files
};

struct ScanRequest {
    char driveLetter = 0;
    std::string preferredName;
    std::string comments;
    double quickFiles = 0;           // the quick scan's count
    int quickDamagedDirectories = 0; // likewise
    ScanOptions options;
};

// Brings one disc into the catalogue: one row for the disc, one for each directory, one for each file, in one
// transaction. The walk is depth first, parent before child; a directory's row, its files' rows, then its
// subdirectories in the order of their listing. Row order in the tables is that order.
class ScanEngine {
public:
    // The lister walks through the drives of the same table.
    ScanEngine(ScanSources sources, const disc::DriveTable& drives, disc::Lister& lister, ScanWatcher& watcher,
               ScanRequest request);

    // Looks at the disc that is in the drive now. Throws base::RuntimeError where it is gone or nothing of its root can
    // be read.
    void lookAtDisc();

    // Begins the transaction, and looks at the disc first where nobody has yet. Throws base::RuntimeError when one of
    // them fails: then nothing has happened.
    void begin();

    // After begin(): runs the scan to its end, or to the stop that the user asked for; in both cases the watcher hears
    // of it. Failing statements of the walk are handled in the walk, those of the other steps are passed over. Only
    // what the watcher throws when it hears of the end passes on.
    void run();

    const std::string& DirectoryNumber() const { return DirectoryId; }
    std::string ErrorLog() const { return m_desk.ErrorLog(); }

private:
    // The steps before the walk
    void NumberDisc();
    void ClaimDiscNumber();
    int64_t freeDiscNumber(int64_t from, int64_t to);
    void AddDriveRow();
    void fillDriveRow(const disc::DriveFacts& facts);
    void ReadAutorun(const std::string& root);

    // The walk
    void ScanDirectory();
    void ScanSubdirectories();
    void goUp();
    void AddDirectoryRow();
    void ScanFiles();
    bool captureOneFile();
    void showFileDone();
    void CompleteDirectoryRow();
    void cutDirectoryId();

    // One file
    void CaptureFileMinimal();
    void CaptureFile();
    bool captureFacts();
    bool captureResources();
    bool captureVersion(disc::Executable& executable);
    void saveFile();
    void ReadSetupIni();

    // The steps after the walk
    bool stopIfCancelled();
    void UpdateMasterTotals();
    bool moveToDiscRow();
    void WriteFolderSize();
    void LogErrorsToComments();
    void RollUpTotals();
    void finish(bool discLost);
    bool discIsLost();

    bool cancelled() const;
    std::string placeName(ErrorHandler::Place place) const;
    db::Recordset& rows(db::DataSource& source) const;

    ScanSources m_data;
    const disc::DriveTable& m_drives;
    disc::Lister& m_lister;
    ScanWatcher& m_watcher;
    ScanRequest m_request;
    ErrorDesk m_desk;
    const disc::KeptClosed m_catalogue; // so that scanning its folder leaves the transaction its lock

    std::optional<disc::DriveFacts> m_disc; // of the disc in hand, once it was looked at

    int64_t DiscNumber = 0;           // the disc in hand
    std::string DirectoryId;          // number of the directory in hand
    std::string CurrentFileName;      // the name that the enumeration gave last
    std::string CurrentFilePath;      // base, backslash, name
    std::string CurrentDirectoryBase; // the directory's path without a trailing backslash
    double DirectorySize = 0;         // kilobytes of the files seen in this directory
    double DiscSize = 0;              // the same of all directories
    double DirectoriesVisited = 0;    // kept, shown nowhere
    double FilesDone = 0;
    double FilesLeft = 0;
    double FilesKept = 0;     // rows that were saved
    std::string SetupAppName; // goes into the directory's comments
};

} // namespace discaro::scanner
