#include "disc/system/OpticalDrive.h"

#include "base/Descriptor.h"
#include "base/RuntimeError.h"
#include "disc/medium/ShownNames.h"

#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>

namespace discaro::disc {

using base::ErrorNumber;
using base::RuntimeError;

namespace {

// Whether one of the tracks holds data; throws where the drive can't tell, as without a disc.
bool hasDataTrack(const DriveRequest& ask, const std::filesystem::path& device) {
    cdrom_tochdr tracks{};
    if (!ask(CDROMREADTOCHDR, &tracks) || tracks.cdth_trk0 > tracks.cdth_trk1)
        throw RuntimeError(ErrorNumber::DriveNotReady, shownPath(device));
    bool found = false;
    for (unsigned number = tracks.cdth_trk0; number <= tracks.cdth_trk1; ++number) {
        cdrom_tocentry track{};
        track.cdte_track = static_cast<uint8_t>(number);
        track.cdte_format = CDROM_LBA;
        if (!ask(CDROMREADTOCENTRY, &track))
            throw RuntimeError(ErrorNumber::DriveNotReady, shownPath(device));
        found = found || (track.cdte_ctrl & CDROM_DATA_TRACK) != 0;
    }
    return found;
}

} // namespace

uint64_t lastSessionStart(const DriveRequest& ask, const std::filesystem::path& device) {
    // Nothing else than an optical drive knows what it can do.
    if (!ask(CDROM_GET_CAPABILITY, nullptr))
        return 0;
    if (!hasDataTrack(ask, device))
        throw RuntimeError(ErrorNumber::FileSystemUnsupported, "the disc holds audio tracks alone");
    cdrom_multisession last{};
    last.addr_format = CDROM_LBA;
    const bool known = ask(CDROMMULTISESSION, &last);
    return known && last.addr.lba > 0 ? static_cast<uint64_t>(last.addr.lba) : 0;
}

uint64_t lastSessionStart(const std::filesystem::path& device) {
    // One that waits for a disc would close the tray.
    const base::Descriptor drive(::open(device.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!drive)
        return 0;
    const auto ask = [&](unsigned long request, void* answer) { return ::ioctl(drive.number(), request, answer) >= 0; };
    return lastSessionStart(ask, device);
}

} // namespace discaro::disc
