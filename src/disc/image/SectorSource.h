#pragma once

#include "disc/medium/DiscData.h"

#include <filesystem>
#include <memory>

namespace discaro::disc {

// The data of an image file or of a block device such as an optical drive. Recognised are images of plain 2048-byte
// sectors, of raw sectors (2352, 2336 and 2448 bytes, mode 1 and mode 2 form 1), cue sheets with their files, and
// .nrg images. Throws base::RuntimeError: PathMissing, DriveNotReady, ReadFailure, FileSystemUnknown (nothing of
// these), FileSystemUnsupported (recognised, and no data that can be read).
DiscData openSectors(const std::filesystem::path& path);

// The same for an image of one file that is open already.
DiscData recogniseImage(std::shared_ptr<const ByteSource> file);

} // namespace discaro::disc
