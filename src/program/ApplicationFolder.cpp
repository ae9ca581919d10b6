#include "program/ApplicationFolder.h"

#include "catalogue/EmptyCatalogue.h"
#include "db/sqlite/DatabaseFile.h"
#include "db/sqlite/FileNaming.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <compare>
#include <cstdlib>
#include <optional>

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

// A file that may be the catalogue. What is no catalogue to look at still comes before an empty one: it may be one that
// is enciphered or damaged.
struct Parked {
    bool isCatalogue;
    fs::file_time_type changed;
    fs::path path;

    auto operator<=>(const Parked&) const = default;
};

std::optional<Parked> parkedUnder(const fs::path& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error) || fs::file_size(path, error) == 0)
        return std::nullopt;
    return Parked{db::isDatabaseOf(path, catalogue::catalogueFormat()), fs::last_write_time(path, error), path};
}

bool bringBackParked(const fs::path& folder) {
    std::optional<Parked> best;
    for (const char* name : kParked)
        best = std::max(best, parkedUnder(folder / name));
    if (best)
        db::publishFile(best->path, folder / kCatalogue);
    return best.has_value();
}

} // namespace

fs::path findApplicationFolder(const fs::path& executableFolder) {
    std::error_code error;
    if (access(executableFolder.c_str(), W_OK) == 0)
        return executableFolder;
    const fs::path own = userDataFolder();
    const bool isShared = fs::exists(executableFolder / kCatalogue, error);
    return isShared && !fs::exists(own / kCatalogue, error) ? executableFolder : own;
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
