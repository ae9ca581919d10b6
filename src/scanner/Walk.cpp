#include "base/Stamp.h"
#include "base/Text.h"
#include "catalogue/Names.h"
#include "disc/executable/Executable.h"
#include "disc/executable/VersionResource.h"
#include "scanner/DiscFiles.h"
#include "scanner/FileCapture.h"
#include "scanner/ScanEngine.h"

#include <memory>
#include <optional>

namespace discaro::scanner {

using base::skipErrors;
namespace directories = catalogue::directories;
namespace files = catalogue::files;

db::Recordset& ScanEngine::rows(db::DataSource& source) const {
    return source.Recordset();
}

void ScanEngine::ScanDirectory() {
    if (cancelled())
        return;
    DirectorySize = 0;
    ++DirectoriesVisited;
    const bool goesOn = runStatements(
        m_desk, kScanDirectoryHandler, [&] { m_lister.setFilePath(m_lister.path()); }, [&] { m_watcher.yield(); },
        [&] { AddDirectoryRow(); });
    if (goesOn)
        ScanSubdirectories();
}

void ScanEngine::ScanSubdirectories() {
    const int count = m_lister.listCount();
    for (int i = 0; i < count; ++i) {
        if (!runStatement(m_desk, kScanDirectoryHandler, [&] { m_lister.setPath(m_lister.list(i)); }))
            return;
        DirectoryId.append("S").append(std::to_string(i + 1));
        m_watcher.yield();
        ScanDirectory();
    }
    goUp();
}

void ScanEngine::goUp() {
    const bool goesOn = runStatements(
        m_desk, kScanDirectoryHandler, [&] { m_lister.setPath(m_lister.list(-2)); },
        [&] { m_lister.setFilePath(m_lister.path()); });
    if (goesOn)
        cutDirectoryId();
}

void ScanEngine::cutDirectoryId() {
    const auto last = DirectoryId.rfind('S');
    if (last != std::string::npos)
        DirectoryId.resize(last);
}

void ScanEngine::AddDirectoryRow() {
    db::Recordset& directory = rows(m_data.directories);
    directory.AddNew();
    directory(directories::kDriveIdNumber) = DiscNumber;
    directory(directories::kIdNumber) = DirectoryId;
    m_data.directories.UpdateRecord();
    if (m_lister.fileCount() >= 1)
        m_watcher.directoryEntered(m_lister.fileCount());
    m_watcher.directoryBarReset();
    ScanFiles();
    CompleteDirectoryRow();
}

void ScanEngine::ScanFiles() {
    CurrentDirectoryBase = m_lister.path();
    if (CurrentDirectoryBase.ends_with('\\'))
        CurrentDirectoryBase.pop_back();
    runStatement(m_desk, kDamagedDirectoryHandler, [&] {
        if (const auto damage = m_lister.takeDamage())
            throw *damage;
    });
    const bool goesOn = runStatements(
        m_desk, kScanFilesHandler, [&] { CurrentFileName = m_lister.firstFile(m_lister.path()); },
        [&] { m_watcher.yield(); });
    while (goesOn && !CurrentFileName.empty() && !cancelled())
        if (!captureOneFile())
            return;
}

bool ScanEngine::captureOneFile() {
    CurrentFilePath.assign(CurrentDirectoryBase).append("\\").append(CurrentFileName);
    if (m_request.options.DetailLevel == "minimal") {
        CaptureFileMinimal();
    } else {
        m_watcher.yield();
        CaptureFile();
    }
    showFileDone();
    return runStatements(
        m_desk, kScanFilesHandler,
        [&] {
            const double kilobytes = static_cast<double>(m_lister.fileLength(CurrentFilePath)) / 1024;
            DirectorySize += kilobytes;
            DiscSize += kilobytes;
        },
        [&] { CurrentFileName = m_lister.nextFile(); });
}

void ScanEngine::showFileDone() {
    ++FilesDone;
    --FilesLeft;
    runStatements(
        m_desk, kScanFilesHandler, [&] { m_watcher.showCounters(FilesDone, FilesLeft); },
        [&] { m_watcher.advanceDiscBar(FilesDone); }, [&] { m_watcher.showDiscBarTip(); },
        [&] { m_watcher.advanceDirectoryBar(); }, [&] { m_watcher.showDirectoryBarTip(); },
        [&] { m_watcher.showPercentage(); }, [&] { m_watcher.yield(); });
}

void ScanEngine::CompleteDirectoryRow() {
    if (cancelled())
        return;
    db::Recordset& directory = rows(m_data.directories);
    const std::string& path = m_lister.path();
    const auto parentEnd = DirectoryId.rfind('S');
    const auto parent = parentEnd == std::string::npos ? "R" : DirectoryId.substr(0, parentEnd);
    auto name = path.substr(path.rfind('\\') + 1);
    if (name.empty())
        name = path;
    runStatements(
        m_desk, kCompleteDirectoryHandler, [&] { directory.MoveLast(); }, [&] { directory.Edit(); },
        [&] { directory(directories::kParentId) = parent; }, [&] { directory(directories::kDirectoryPath) = path; },
        [&] { m_watcher.yield(); }, [&] { directory(directories::kNumberOfFiles) = m_lister.fileCount(); },
        [&] { m_watcher.yield(); }, [&] { directory(directories::kNumberOfSubdirectories) = m_lister.listCount(); },
        [&] { m_watcher.yield(); }, [&] { directory(directories::kDirectoryName) = name; },
        [&] { directory(directories::kSize) = DirectorySize; },
        [&] { directory(directories::kComments) = SetupAppName; }, [&] { m_data.directories.UpdateRecord(); });
}

void ScanEngine::CaptureFileMinimal() {
    if (cancelled())
        return;
    db::Recordset& file = rows(m_data.files);
    runStatements(
        m_desk, kCaptureFileMinimalHandler, [&] { file.AddNew(); },
        [&] { file(files::kDirectoryNumber) = DirectoryId; }, [&] { file(files::kFileName) = CurrentFileName; },
        [&] {
            if (const auto extension = extensionOf(CurrentFilePath); !extension.empty())
                file(files::kFileExtension) = extension;
        },
        [&] { saveFile(); });
}

void ScanEngine::saveFile() {
    m_data.files.UpdateRecord();
    ++FilesKept;
}

void ScanEngine::CaptureFile() {
    if (cancelled())
        return;
    db::Recordset& file = rows(m_data.files);
    const bool goesOn = runStatements(
        m_desk, kCaptureFileHandler, [&] { file.AddNew(); }, [&] { file(files::kDirectoryNumber) = DirectoryId; },
        [&] { file(files::kFileName) = CurrentFileName; },
        [&] {
            if (const auto extension = extensionOf(CurrentFilePath); !extension.empty())
                file(files::kFileExtension) = extension;
        },
        [&] { file(files::kFileSize) = static_cast<double>(m_lister.fileLength(CurrentFilePath)) / 1024; });
    if (!goesOn || !captureFacts())
        return;
    if (m_request.options.DetailLevel != "basic" && !captureResources())
        return;
    runStatement(m_desk, kCaptureFileHandler, [&] { saveFile(); });
}

bool ScanEngine::captureFacts() {
    db::Recordset& file = rows(m_data.files);
    StampParts stamp;
    unsigned attributes = 0;
    return runStatements(
        m_desk, kCaptureFileHandler, [&] { stamp = splitStamp(base::stampText(m_lister.fileTime(CurrentFilePath))); },
        [&] { attributes = m_lister.fileAttributes(CurrentFilePath); },
        [&] { file(files::kAttributes) = attributeLetters(attributes); },
        [&] {
            if (stamp.split)
                file(files::kFileDate) = stamp.date;
        },
        [&] {
            if (stamp.split)
                file(files::kFileTime) = stamp.time;
        });
}

// The file is opened once for both its texts and its icons.
bool ScanEngine::captureResources() {
    std::unique_ptr<disc::ByteSource> content;
    std::optional<disc::Executable> executable;
    return runStatements(
               m_desk, kCaptureFileHandler, [&] { content = m_lister.openFile(CurrentFilePath); },
               [&] {
                   if (content)
                       executable.emplace(*content);
               }) &&
           (!executable || captureVersion(*executable)) &&
           runStatements(
               m_desk, kCaptureFileHandler,
               [&] {
                   if (executable)
                       rows(m_data.files)(files::kNumberOfIcons) = executable->icons();
               },
               [&] { ReadSetupIni(); });
}

bool ScanEngine::captureVersion(disc::Executable& executable) {
    std::optional<disc::VersionTexts> texts;
    const auto write = [&](std::string_view field, std::string disc::VersionTexts::*text) {
        return [&, field, text] {
            if (texts)
                rows(m_data.files)(field) = (*texts).*text;
        };
    };
    using Texts = disc::VersionTexts;
    return runStatements(
        m_desk, kCaptureFileHandler, [&] { texts = disc::versionTexts(executable.versionResource()); },
        write(files::kCompanyName, &Texts::companyName), write(files::kDescription, &Texts::fileDescription),
        write(files::kCopyright, &Texts::legalCopyright), write(files::kProductName, &Texts::productName),
        write(files::kProductVersion, &Texts::productVersion), write(files::kInternalName, &Texts::internalName),
        write(files::kOriginalFileName, &Texts::originalFileName));
}

// The directory's last file decides: any other name clears what an earlier setup.ini gave.
void ScanEngine::ReadSetupIni() {
    std::string name;
    if (base::lowerAscii(CurrentFileName) == "setup.ini")
        skipErrors([&] { name = readSetupName(m_lister, setupPath(m_lister.path())); });
    SetupAppName = name;
}

} // namespace discaro::scanner
