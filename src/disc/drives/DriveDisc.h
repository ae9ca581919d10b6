#pragma once

#include "disc/drives/ComputerDrives.h"
#include "disc/medium/Medium.h"

#include <filesystem>
#include <memory>

namespace discaro::disc {

// Opens what a drive of the computer holds now: at its mount point, else from its device. Throws base::RuntimeError:
// DriveNotReady, or FileSystemUnknown and FileSystemUnsupported for a disc of an unknown kind.
std::shared_ptr<const Medium> openDrive(const ComputerDrive& drive);

// The facts of what openDrive gave. A mounted disc's label and serial are those of its volume descriptors where the
// device can be read, so that they are the same with and without the mount.
VolumeFacts driveFacts(const ComputerDrive& drive, const Medium& medium);

// Opens what a user adds: a folder, an image file, a device. Throws what openImage throws.
std::shared_ptr<const Medium> openAdded(const std::filesystem::path& path);

// Whether two facts can be of the same disc. Its free space may have changed.
bool isSameDisc(const VolumeFacts& left, const VolumeFacts& right);

} // namespace discaro::disc
