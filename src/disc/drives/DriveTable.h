#pragma once

#include "disc/drives/ComputerDrives.h"
#include "disc/medium/Medium.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace discaro::disc {

// What a drive's disc says of itself. Megabytes are bytes / 1048576, unrounded.
struct DriveFacts {
    std::string root; // "D:\"
    DriveType type = DriveType::Unknown;
    std::string label;
    std::string serial;     // "XXXX-XXXX"
    std::string fileSystem; // "CDFS", "UDF", or the kernel's name of the type
    double totalMegabytes = 0;
    double freeMegabytes = 0;
    bool isFolder = false; // whose size is the sum of what it holds; the total is 0
};

// Gives each thing that can be read a drive letter. C: is the root file system; from D: on come, in order, the
// computer's optical drives with or without a disc, other mounted ISO 9660 and UDF file systems, removable and
// network mounts, and what the user adds. What has a letter keeps it until it is gone. What the user added keeps it as
// long as there are others free; then the one that was added or asked for longest ago gives its letter to the next.
// Z: is the last; what of the computer finds no letter is left out.
//
// A drive is named by its letter, in either case; where a text is taken, its first character counts. For one thread.
class DriveTable {
public:
    DriveTable();
    // With another way to look at the computer.
    explicit DriveTable(std::function<Computer()> readComputer);
    ~DriveTable();
    DriveTable(const DriveTable&) = delete;
    DriveTable& operator=(const DriveTable&) = delete;

    // "D:\".
    static std::string rootText(char letter);

    // Looks at the computer's drives anew.
    void refresh();

    // All letters in order, such as "CDEF".
    std::string letters() const;

    // Makes a disc of a folder or of an image file and returns its letter. The same path again gives the same
    // letter, also that of an optical drive or mounted disc that the computer has there, and an image that has
    // changed since is opened anew. Throws base::RuntimeError and changes nothing: PathMissing, TooManyDrives when
    // the computer's own drives have all letters, and what openImage throws.
    char addImageOrFolder(const std::filesystem::path& path);

    // Takes a medium that was made elsewhere. Throws TooManyDrives.
    char addMedium(std::unique_ptr<Medium> medium, DriveType type = DriveType::CdRom);

    // NoRoot when there is no such drive.
    DriveType type(std::string_view root) const;

    // Looks at the disc that is in the drive now. A drive that can't be read has empty texts and sizes of 0.
    // Throws PathMissing when there is no such drive, and nothing else.
    DriveFacts facts(std::string_view drive) const;

    // What a drive list shows: "D: [LABEL]" when the disc has a label, else "D:\". Never waits for a network.
    std::string shownText(char letter) const;

    // The image file or folder that the user added as this drive; empty for any other.
    // Throws PathMissing when there is no such drive.
    const std::filesystem::path& addedPath(char letter) const;

    // Opened on first use, and kept open by the caller however the table changes. A disc, image or folder is open as
    // long as someone keeps it, so that it can be taken out, unmounted or written anew afterwards.
    // Throws PathMissing when there is no such drive or what was added has gone, DriveNotReady when it has no disc that
    // can be read, FileSystemUnknown or FileSystemUnsupported when it has one of an unknown kind.
    std::shared_ptr<const Medium> share(char letter) const;

private:
    struct Drive;

    char freeLetter() const;
    char oldestAdded() const;
    Drive& driveOf(char letter) const;
    void locate(Drive& drive) const;
    std::shared_ptr<const Medium> openFile(Drive& drive) const;
    VolumeFacts lookAgain(Drive& drive) const;
    char letterOf(const std::string& path) const;
    char add(std::unique_ptr<Drive> drive);

    std::function<Computer()> m_readComputer;
    std::map<char, std::unique_ptr<Drive>> m_drives;
    uint64_t m_turn = 0; // counts what the user adds or asks for again
};

// The process's one table.
DriveTable& driveTable();

} // namespace discaro::disc
