#include "disc/OpticalDrive.h"

#include "base/RuntimeError.h"
#include "disc/ShownNames.h"

#include <cdio/cdio.h>
#include <cdio/logging.h>

#include <memory>

namespace discaro::disc {

namespace {

using Drive = std::unique_ptr<CdIo_t, decltype(&cdio_destroy)>;

// The library's own handler writes to the console, and ends the program on an error.
void ignoreLog(cdio_log_level_t, const char*) {}

bool isOpticalDrive(const CdIo_t* drive) {
    cdio_drive_read_cap_t canRead = 0;
    cdio_drive_write_cap_t canWrite = 0;
    cdio_drive_misc_cap_t other = 0;
    cdio_get_drive_cap(drive, &canRead, &canWrite, &other);
    return canRead != CDIO_DRIVE_CAP_ERROR && canRead != CDIO_DRIVE_CAP_UNKNOWN;
}

bool hasDataTrack(const CdIo_t* drive, track_t count) {
    const int first = cdio_get_first_track_num(drive);
    for (int track = first; track < first + count; ++track)
        if (cdio_get_track_format(drive, static_cast<track_t>(track)) != TRACK_FORMAT_AUDIO)
            return true;
    return false;
}

} // namespace

uint64_t lastSessionStart(const std::filesystem::path& device) {
    cdio_log_set_handler(ignoreLog);
    const Drive drive(cdio_open_cd(device.c_str()), &cdio_destroy);
    if (!drive || !isOpticalDrive(drive.get()))
        return 0;
    const auto tracks = cdio_get_num_tracks(drive.get());
    if (tracks == 0 || tracks == CDIO_INVALID_TRACK)
        throw base::RuntimeError(base::ErrorNumber::DriveNotReady, shownPath(device));
    if (!hasDataTrack(drive.get(), tracks))
        throw base::RuntimeError(base::ErrorNumber::FileSystemUnsupported,
                                 "the disc holds audio tracks alone");
    lsn_t start = 0;
    const bool known = cdio_get_last_session(drive.get(), &start) == DRIVER_OP_SUCCESS;
    return known && start > 0 ? static_cast<uint64_t>(start) : 0;
}

} // namespace discaro::disc
