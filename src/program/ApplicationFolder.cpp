#include "program/ApplicationFolder.h"

#include "catalogue/EmptyCatalogue.h"

#include <unistd.h>

#include <array>
#include <cstdlib>

namespace discaro::program {

namespace fs = std::filesystem;

namespace {

constexpr auto kCatalogue = "kvt.mde";
constexpr auto kCategories = "kvt.ini";

// Names under which maintenance parks the catalogue while it works on a copy.
constexpr std::array kParked = {"kvt.tmp", "kvt.tmo"};

fs::path userDataFolder() {
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data != nullptr && fs::path(data).is_absolute())
        return fs::path(data) / "Discaro";
    const char* home = std::getenv("HOME");
    return fs::path(home != nullptr ? home : "/") / ".local/share/Discaro";
}

bool bringBackParked(const fs::path& folder) {
    std::error_code error;
    for (const char* name : kParked) {
        if (!fs::is_regular_file(folder / name, error) || fs::file_size(folder / name, error) == 0)
            continue;
        fs::rename(folder / name, folder / kCatalogue);
        return true;
    }
    return false;
}

} // namespace

fs::path findApplicationFolder(const fs::path& executableFolder) {
    std::error_code error;
    if (fs::exists(executableFolder / kCatalogue, error) ||
        access(executableFolder.c_str(), W_OK) == 0)
        return executableFolder;
    return userDataFolder();
}

void prepareApplicationFolder(const fs::path& folder, const fs::path& categoryTemplate) {
    fs::create_directories(folder);
    if (!fs::exists(fs::symlink_status(folder / kCatalogue)) && !bringBackParked(folder))
        catalogue::createEmptyCatalogue(folder / kCatalogue);
    std::error_code error;
    if (!fs::exists(folder / kCategories, error) && fs::exists(categoryTemplate, error))
        fs::copy_file(categoryTemplate, folder / kCategories, error);
}

} // namespace discaro::program
