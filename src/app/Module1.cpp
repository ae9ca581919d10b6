#include "app/Module1.h"

#include "base/RuntimeError.h"
#include "db/DBEngine.h"
#include "disc/drives/Lister.h"

namespace discaro::app::Module1 {

std::shared_ptr<db::Database> CatalogueDb;
std::string ReturnTo;
int16_t ScanCancelled = 0;
std::string SelectedDisc;
std::string SelectedDirectory;
std::string SelectedFile;
std::string JumpDisc;
std::string JumpDirectory;
std::string JumpFile;
std::string TagKey;
std::string TagDisc;
std::string TagDiscName;
std::string TagDirectory;
std::string TagDirectoryPath;
std::string TagFile;
std::string TagFileName;
std::string TagSize;
std::string TagFileCount;
std::string SimDirectory;
std::string SimParent;
std::string SimSubdirectories;
std::string SimFiles;
std::string SimSize;
std::string SimDiscName;
std::vector<std::filesystem::path> DroppedDiscs;
std::string ResultKind;
std::string SearchSql;
std::filesystem::path ApplicationPath;

namespace {

bool isDrivePath(std::string_view path) {
    return path.size() >= 3 && path[1] == ':' && path[2] == '\\';
}

bool existsOnDrive(const std::string& path, const disc::DriveTable& drives) {
    disc::Lister lister(drives);
    const auto folder = path.substr(0, std::max<size_t>(path.rfind('\\'), 3));
    if (!base::skipErrors([&] { lister.setPath(folder); }) || lister.takeDamage())
        return true;
    if (lister.hasFile(path))
        return true;
    try {
        lister.setPath(path);
        return true;
    } catch (const base::RuntimeError& error) {
        return !error.is(base::ErrorNumber::PathMissing);
    }
}

bool existsOnComputer(const std::filesystem::path& path) {
    std::error_code error;
    const auto status = std::filesystem::symlink_status(path, error);
    if (status.type() != std::filesystem::file_type::not_found)
        return true;
    const auto folder = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
    return !std::filesystem::is_directory(folder, error);
}

} // namespace

std::filesystem::path cataloguePath() {
    return ApplicationPath / "kvt.mde";
}

void OpenCatalogue() {
    CatalogueDb = db::DBEngine::OpenDatabase(cataloguePath());
}

bool FileExists(const std::string& path, const disc::DriveTable& drives) {
    return isDrivePath(path) ? existsOnDrive(path, drives) : existsOnComputer(path);
}

int32_t ColourByte(int32_t colour, int16_t index) {
    if (index < 1 || index > 3 || colour < 0 || colour >= 16777216)
        return -1;
    return (colour >> (8 * (index - 1))) & 255;
}

} // namespace discaro::app::Module1
