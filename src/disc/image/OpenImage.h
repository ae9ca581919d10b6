#pragma once

#include "disc/medium/DiscData.h"

#include <filesystem>
#include <memory>

namespace discaro::disc {

// Opens an image file, or a device such as an optical drive's, as a medium. A disc with several sessions is read from
// the last one that can be. A bridge disc is read as ISO 9660; as UDF where there is no ISO 9660 side, or where that
// side is just a note: no directory and at most two files, fewer than the UDF side holds.
// Throws base::RuntimeError: PathMissing, DriveNotReady, ReadFailure, FileSystemUnknown (the file is no image),
// FileSystemUnsupported (it is one, of something that can't be read, and the description says what). Every
// description names the file.
std::unique_ptr<Medium> openImage(const std::filesystem::path& path);

// The same for data that is at hand.
std::unique_ptr<Medium> openMedium(const DiscData& data);

} // namespace discaro::disc
