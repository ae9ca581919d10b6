#pragma once

#include "disc/medium/DiscData.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::disc {

// One TRACK of a cue sheet. Frames are sectors counted from the beginning of the track's file.
struct CueTrack {
    size_t file = 0; // index in CueSheet::files
    bool isData = false;
    uint64_t stride = 2352;  // bytes of a sector in the file
    uint64_t dataOffset = 0; // of the user data in them
    uint64_t begin = 0;      // first frame in the file: INDEX 00 where there is one, else INDEX 01
    uint64_t start = 0;      // INDEX 01
    uint64_t gap = 0;        // PREGAP: sectors in front that are on the disc and not in the file
    unsigned session = 1;
};

struct CueFile {
    std::string name; // as written
    std::string type; // BINARY, WAVE, ...
};

struct CueSheet {
    std::vector<CueFile> files;
    std::vector<CueTrack> tracks; // in the order of the disc
};

// Reads the text of a cue sheet; what is not understood is passed over. Any text gives a sheet, at worst one without
// tracks. The format is that of the CDRWIN manual, with the usual "REM SESSION nn".
CueSheet parseCueSheet(std::string_view text);

// The data tracks of the disc that a cue sheet describes, read from the files beside it. Throws base::RuntimeError:
// FileSystemUnknown (no cue sheet), FileSystemUnsupported (no data track), PathMissing (a file is not there).
DiscData openCueSheet(const std::filesystem::path& path);

} // namespace discaro::disc
