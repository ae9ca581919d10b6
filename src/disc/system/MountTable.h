#pragma once

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::disc {

// One mounted file system. The texts are the kernel's bytes, unescaped.
struct Mount {
    std::string number;    // of the device: "major:minor"
    std::string directory; // what of the file system is mounted; "/" is all of it
    std::string point;     // where it is mounted: an absolute path
    std::string type;      // "iso9660", "udf", "ext4", "fuse.sshfs" ...
    std::string source;    // "/dev/sr0", "server:/share" ...
    bool readOnly = false;
};

// An optical drive of the computer, with or without a disc.
struct OpticalDrive {
    std::string device; // "/dev/sr0"
    std::string number; // "11:0"; empty when unknown
};

// What the drive letters are made from.
struct Computer {
    std::vector<Mount> mounts;
    std::vector<OpticalDrive> opticalDrives; // in the order of their numbers
    std::set<std::string> removable;         // block devices that a user can pull out: "/dev/sdb", "/dev/sdb1"
};

// The mounts of a text in the form of /proc/self/mountinfo (proc(5)), without those that another mount at the same
// place hides. Lines of another form are passed over.
std::vector<Mount> parseMountInfo(std::string_view text);

// The drive names ("sr0", "sr1") of a text in the form of /proc/sys/dev/cdrom/info, in the order of their numbers.
std::vector<std::string> parseDriveNames(std::string_view text);

// The mount that holds the absolute path, null when there is none.
const Mount* mountOf(std::span<const Mount> mounts, std::string_view path);

// Read this computer. What cannot be read is left out.
std::vector<Mount> readMounts();
Computer readComputer();

} // namespace discaro::disc
