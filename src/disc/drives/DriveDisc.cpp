#include "disc/drives/DriveDisc.h"

#include "base/RuntimeError.h"
#include "disc/folder/FolderMedium.h"
#include "disc/image/OpenImage.h"
#include "disc/medium/ShownNames.h"

#include <system_error>
#include <tuple>

namespace discaro::disc {

using base::ErrorNumber;
using base::RuntimeError;

namespace {

namespace fs = std::filesystem;

bool isFolder(const fs::path& path) {
    std::error_code failure;
    return fs::is_directory(path, failure);
}

std::shared_ptr<const Medium> openDevice(const std::string& device) {
    try {
        return openImage(device);
    } catch (const RuntimeError& error) {
        if (error.is(ErrorNumber::FileSystemUnknown) || error.is(ErrorNumber::FileSystemUnsupported))
            throw;
        throw RuntimeError(ErrorNumber::DriveNotReady, shownPath(device));
    }
}

} // namespace

std::shared_ptr<const Medium> openDrive(const ComputerDrive& drive) {
    if (drive.point.empty())
        return openDevice(drive.device);
    if (!isFolder(drive.point))
        throw RuntimeError(ErrorNumber::DriveNotReady, shownPath(drive.point));
    return std::make_shared<FolderMedium>(drive.point, FolderMedium::Use::Mount);
}

VolumeFacts driveFacts(const ComputerDrive& drive, const Medium& medium) {
    VolumeFacts facts = medium.facts();
    if (drive.point.empty() || drive.device.empty())
        return facts;
    base::skipErrors([&] {
        const auto descriptors = openImage(drive.device)->facts();
        facts.label = descriptors.label;
        facts.serial = descriptors.serial;
    });
    return facts;
}

std::shared_ptr<const Medium> openAdded(const fs::path& path) {
    if (isFolder(path))
        return std::make_shared<FolderMedium>(path, FolderMedium::Use::Disc);
    std::error_code failure;
    const auto type = fs::status(path, failure).type();
    if (type != fs::file_type::regular && type != fs::file_type::block)
        throw RuntimeError(ErrorNumber::FileSystemUnknown).about(shownPath(path));
    return openImage(path);
}

bool isSameDisc(const VolumeFacts& left, const VolumeFacts& right) {
    const auto key = [](const VolumeFacts& facts) {
        return std::tie(facts.label, facts.serial, facts.fileSystem, facts.totalBytes);
    };
    return key(left) == key(right);
}

} // namespace discaro::disc
