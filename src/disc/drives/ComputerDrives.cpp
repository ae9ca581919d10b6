#include "disc/drives/ComputerDrives.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <utility>

namespace discaro::disc {

namespace {

constexpr std::array<std::string_view, 2> kDiscTypes = {"iso9660", "udf"};

constexpr std::array<std::string_view, 20> kNetworkTypes = {
    "nfs",           "nfs4",          "cifs",        "smb3",        "smbfs",    "sshfs",
    "davfs",         "afs",           "ncpfs",       "ceph",        "9p",       "fuse.ceph",
    "fuse.sshfs",    "fuse.davfs",    "fuse.davfs2", "fuse.rclone", "fuse.smb", "fuse.curlftpfs",
    "fuse.smbnetfs", "fuse.glusterfs"};

bool isDisc(const Mount& mount) {
    return std::ranges::find(kDiscTypes, mount.type) != kDiscTypes.end();
}

bool isNetwork(const Mount& mount) {
    return std::ranges::find(kNetworkTypes, mount.type) != kNetworkTypes.end();
}

// Walks through the mounts kind by kind; a file system that got a letter is not taken again.
class Collector {
public:
    explicit Collector(const Computer& computer)
        : m_computer(computer) {
        m_drives.push_back({"/", DriveType::Fixed, "/", {}});
        if (const auto* root = mountOf(computer.mounts, "/"))
            m_taken.insert(root->number);
    }

    void takeOpticalDrives() {
        for (const auto& drive : m_computer.opticalDrives) {
            const auto* mount = preferred([&](const Mount& candidate) {
                return candidate.source == drive.device || (!drive.number.empty() && candidate.number == drive.number);
            });
            if (mount)
                m_taken.insert(mount->number);
            m_drives.push_back({drive.device, DriveType::CdRom, mount ? mount->point : "", drive.device});
        }
    }

    template <typename Rule>
    void takeMounts(DriveType type, Rule wanted) {
        for (const auto& mount : m_computer.mounts) {
            if (!wanted(mount) || !m_taken.insert(mount.number).second)
                continue;
            const auto* whole = preferred([&](const Mount& other) { return other.number == mount.number; });
            const bool isFile = type == DriveType::CdRom && mount.source.starts_with('/');
            m_drives.push_back({whole->point, type, whole->point, isFile ? mount.source : ""});
        }
    }

    std::vector<ComputerDrive> drives() && { return std::move(m_drives); }

private:
    // A mount of the whole file system rather than of one of its directories.
    template <typename Rule>
    const Mount* preferred(Rule wanted) const {
        const Mount* best = nullptr;
        for (const auto& mount : m_computer.mounts) {
            if (wanted(mount) && (!best || (mount.directory == "/" && best->directory != "/")))
                best = &mount;
        }
        return best;
    }

    const Computer& m_computer;
    std::vector<ComputerDrive> m_drives;
    std::set<std::string> m_taken;
};

} // namespace

std::vector<ComputerDrive> drivesOf(const Computer& computer) {
    Collector collector(computer);
    collector.takeOpticalDrives();
    collector.takeMounts(DriveType::CdRom, isDisc);
    collector.takeMounts(DriveType::Removable,
                         [&](const Mount& mount) { return computer.removable.contains(mount.source); });
    collector.takeMounts(DriveType::Network, isNetwork);
    return std::move(collector).drives();
}

} // namespace discaro::disc
