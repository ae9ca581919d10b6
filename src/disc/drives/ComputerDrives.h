#pragma once

#include "disc/system/MountTable.h"

#include <string>
#include <vector>

namespace discaro::disc {

// The kinds of drives, with the values that callers compare.
enum class DriveType { Unknown = 0, NoRoot = 1, Removable = 2, Fixed = 3, Network = 4, CdRom = 5 };

// One thing of the computer that gets a drive letter.
struct ComputerDrive {
    std::string key; // the same for the same drive whenever the computer is read
    DriveType type = DriveType::Unknown;
    std::string point;  // where it is mounted; empty for an optical drive that is not
    std::string device; // of a disc: where its volume descriptors can be read
};

// In the order of the letters: the root file system; the optical drives; other mounted ISO 9660 and UDF file
// systems; removable disks; network shares. A file system that is mounted at several places counts once.
std::vector<ComputerDrive> drivesOf(const Computer& computer);

} // namespace discaro::disc
