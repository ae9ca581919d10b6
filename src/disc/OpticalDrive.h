#pragma once

#include <cstdint>
#include <filesystem>

namespace discaro::disc {

// Where the last data session of the disc in a drive begins, in sectors: 0 for a disc of one session, and for a
// device that is no optical drive. Throws base::RuntimeError: DriveNotReady when the drive holds no disc (asking
// does not close its tray), FileSystemUnsupported when the disc holds audio alone.
uint64_t lastSessionStart(const std::filesystem::path& device);

} // namespace discaro::disc
