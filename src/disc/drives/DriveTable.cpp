#include "disc/drives/DriveTable.h"

#include "base/RuntimeError.h"
#include "disc/drives/DriveDisc.h"
#include "disc/folder/FolderMedium.h"
#include "disc/medium/ShownNames.h"

#include <sys/stat.h>

#include <algorithm>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

namespace discaro::disc {

using base::ErrorNumber;
using base::RuntimeError;

namespace {

namespace fs = std::filesystem;

constexpr double kMegabyte = 1048576;

char upperLetter(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

char letterIn(std::string_view text) {
    return text.empty() ? '\0' : upperLetter(text.front());
}

// Changes when the file is written again or replaced. Zeros for a folder, which is read anew each time anyway.
using Version = std::tuple<uint64_t, uint64_t, int64_t, int64_t>;

Version versionOf(const fs::path& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0 || S_ISDIR(facts.st_mode))
        return {};
    return {facts.st_ino, static_cast<uint64_t>(facts.st_size), facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec};
}

} // namespace

// One drive. One of the computer has a key, one that was added a path or a medium of its own from the beginning. But
// for that medium a disc is open as long as someone shares it.
struct DriveTable::Drive {
    ComputerDrive computer;
    fs::path addedPath;
    Version addedVersion;
    uint64_t turn = 0; // the higher, the later it was added or asked for
    std::shared_ptr<const Medium> own;
    std::weak_ptr<const Medium> shared;
    VolumeFacts disc; // of the one that is shared, when it can be changed for another

    bool isAdded() const { return computer.key.empty(); }
    bool hasFile() const { return !addedPath.empty(); }
    bool isChangeable() const { return computer.type == DriveType::CdRom && !isAdded(); }
};

DriveTable::DriveTable()
    : DriveTable(readComputer) {}

DriveTable::DriveTable(std::function<Computer()> readComputer)
    : m_readComputer(std::move(readComputer)) {
    refresh();
}

DriveTable::~DriveTable() = default;

std::string DriveTable::rootText(char letter) {
    return {upperLetter(letter), ':', '\\'};
}

void DriveTable::refresh() {
    const auto present = drivesOf(m_readComputer());
    const auto find = [&](const Drive& drive) {
        return std::ranges::find(present, drive.computer.key, &ComputerDrive::key);
    };
    std::erase_if(m_drives,
                  [&](const auto& item) { return !item.second->isAdded() && find(*item.second) == present.end(); });
    for (auto& [letter, drive] : m_drives) {
        if (!drive->isAdded())
            drive->computer = *find(*drive);
    }
    for (const auto& found : present) {
        const auto same = [&](const auto& item) { return item.second->computer.key == found.key; };
        if (freeLetter() == '\0' || std::ranges::any_of(m_drives, same))
            continue;
        auto drive = std::make_unique<Drive>();
        drive->computer = found;
        add(std::move(drive));
    }
}

std::string DriveTable::letters() const {
    std::string letters;
    for (const auto& [letter, drive] : m_drives)
        letters += letter;
    return letters;
}

char DriveTable::freeLetter() const {
    for (char letter = 'C'; letter <= 'Z'; ++letter) {
        if (!m_drives.contains(letter))
            return letter;
    }
    return '\0';
}

char DriveTable::add(std::unique_ptr<Drive> drive) {
    const char letter = freeLetter();
    if (letter == '\0')
        throw RuntimeError(ErrorNumber::TooManyDrives);
    m_drives.emplace(letter, std::move(drive));
    return letter;
}

// The drive of a disc that is known by the path, be it added, a mount point or a device.
char DriveTable::letterOf(const std::string& path) const {
    for (const auto& [letter, drive] : m_drives) {
        const auto& own = drive->computer;
        const bool disc = own.type == DriveType::CdRom;
        if (drive->addedPath == path || (disc && !drive->isAdded() && (own.point == path || own.device == path)))
            return letter;
    }
    return '\0';
}

char DriveTable::addImageOrFolder(const fs::path& path) {
    std::error_code failure;
    const auto whole = fs::canonical(path, failure);
    if (failure)
        throw RuntimeError(ErrorNumber::PathMissing, shownPath(path));
    if (const char known = letterOf(whole); known != '\0') {
        auto& drive = driveOf(known);
        if (drive.hasFile())
            openFile(drive);
        drive.turn = ++m_turn;
        return known;
    }
    const char given = freeLetter() == '\0' ? oldestAdded() : '\0';
    auto drive = std::make_unique<Drive>();
    drive->computer.type = DriveType::CdRom;
    drive->turn = ++m_turn;
    drive->addedPath = whole;
    openFile(*drive);
    if (given != '\0')
        m_drives.erase(given);
    return add(std::move(drive));
}

char DriveTable::oldestAdded() const {
    const auto rank = [](const auto& item) { return std::pair(item.second->addedPath.empty(), item.second->turn); };
    const auto oldest = std::ranges::min_element(m_drives, {}, rank);
    if (oldest == m_drives.end() || oldest->second->addedPath.empty())
        throw RuntimeError(ErrorNumber::TooManyDrives);
    return oldest->first;
}

char DriveTable::addMedium(std::unique_ptr<Medium> medium, DriveType type) {
    auto drive = std::make_unique<Drive>();
    drive->computer.type = type;
    drive->own = std::move(medium);
    return add(std::move(drive));
}

DriveTable::Drive& DriveTable::driveOf(char letter) const {
    const auto found = m_drives.find(upperLetter(letter));
    if (found == m_drives.end())
        throw RuntimeError(ErrorNumber::PathMissing, shownName({&letter, 1}) + ":");
    return *found->second;
}

DriveType DriveTable::type(std::string_view root) const {
    const auto found = m_drives.find(letterIn(root));
    return found == m_drives.end() ? DriveType::NoRoot : found->second->computer.type;
}

DriveFacts DriveTable::facts(std::string_view text) const {
    const char letter = letterIn(text);
    auto& drive = driveOf(letter);
    DriveFacts result;
    result.root = rootText(letter);
    result.type = drive.computer.type;
    base::skipErrors([&] {
        const auto volume = drive.isAdded() ? share(letter)->facts() : lookAgain(drive);
        result.label = volume.label;
        result.serial = volume.serial;
        result.fileSystem = volume.fileSystem;
        result.totalMegabytes = static_cast<double>(volume.totalBytes) / kMegabyte;
        result.freeMegabytes = static_cast<double>(volume.freeBytes) / kMegabyte;
        result.isFolder = volume.isFolder;
    });
    return result;
}

// Who shares a disc keeps what it was; a file that was written anew since is another disc to the next.
std::shared_ptr<const Medium> DriveTable::openFile(Drive& drive) const {
    std::error_code failure;
    if (!fs::exists(drive.addedPath, failure))
        throw RuntimeError(ErrorNumber::PathMissing, shownPath(drive.addedPath));
    const auto version = versionOf(drive.addedPath);
    auto medium = version == drive.addedVersion ? drive.shared.lock() : nullptr;
    if (!medium)
        medium = openAdded(drive.addedPath);
    drive.addedVersion = version;
    drive.shared = medium;
    return medium;
}

// A disc can be mounted, unmounted or changed at any time.
VolumeFacts DriveTable::lookAgain(Drive& drive) const {
    locate(drive);
    try {
        auto facts = driveFacts(drive.computer, *openDrive(drive.computer));
        if (drive.isChangeable() && !isSameDisc(facts, drive.disc))
            drive.shared.reset();
        return facts;
    } catch (const RuntimeError&) {
        drive.shared.reset();
        throw;
    }
}

void DriveTable::locate(Drive& drive) const {
    if (!drive.isChangeable())
        return;
    const auto present = drivesOf(m_readComputer());
    const auto found = std::ranges::find(present, drive.computer.key, &ComputerDrive::key);
    if (found == present.end())
        throw RuntimeError(ErrorNumber::DriveNotReady, shownPath(drive.computer.point));
    drive.computer = *found;
}

std::string DriveTable::shownText(char letter) const {
    const auto& drive = driveOf(letter);
    const bool remote = drive.computer.type == DriveType::Network && !drive.isAdded();
    const auto label = remote ? folderLabel(drive.computer.point) : facts({&letter, 1}).label;
    const auto root = rootText(letter);
    return label.empty() ? root : root.substr(0, 2) + " [" + label + "]";
}

const fs::path& DriveTable::addedPath(char letter) const {
    return driveOf(letter).addedPath;
}

std::shared_ptr<const Medium> DriveTable::share(char letter) const {
    auto& drive = driveOf(letter);
    if (drive.hasFile())
        return openFile(drive);
    if (drive.own)
        return drive.own;
    if (auto open = drive.shared.lock())
        return open;
    locate(drive);
    auto medium = openDrive(drive.computer);
    if (drive.isChangeable())
        drive.disc = driveFacts(drive.computer, *medium);
    drive.shared = medium;
    return medium;
}

DriveTable& driveTable() {
    static DriveTable table;
    return table;
}

} // namespace discaro::disc
