#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

namespace discaro::disc {

// Where the last data session of the disc in a drive begins, in sectors: 0 for a disc of one session, and for a
// device that is no optical drive. Throws base::RuntimeError: DriveNotReady when the drive holds no disc (asking
// does not close its tray), FileSystemUnsupported when the disc holds audio alone.
uint64_t lastSessionStart(const std::filesystem::path& device);

// How a drive is asked: with a request of linux/cdrom.h and the structure that it fills; false when it fails.
using DriveRequest = std::function<bool(unsigned long request, void* answer)>;

// The same for a device that is open; its path is for the description of an error.
uint64_t lastSessionStart(const DriveRequest& ask, const std::filesystem::path& device);

} // namespace discaro::disc
