#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::test {

// Images of 2048-byte sectors in other clothes: whole sectors of mode 1 and of mode 2 form 1 (2352 bytes, more when
// subchannel data follows), and mode 2 without synchronisation (2336 bytes).
std::string rawMode1(std::string_view image, size_t subchannel = 0);
std::string rawMode2(std::string_view image, size_t subchannel = 0);
std::string bareMode2(std::string_view image);

// Chunks of an .nrg image.
struct NrgTrack {
    std::string data; // sectors as the mode has them
    uint8_t mode = 0; // 0 plain, 3 2336 bytes, 5 and 6 whole sectors, 7 audio
    uint16_t sectorSize = 2048;
    uint32_t address = 0; // on the disc
};

// One session after the other, each of some tracks. Version 1 has 32-bit fields, version 2 64-bit ones.
std::string nrgTrackAtOnce(const std::vector<std::vector<NrgTrack>>& sessions, int version = 2);
std::string nrgDiscAtOnce(const std::vector<std::vector<NrgTrack>>& sessions, int version = 2);

} // namespace discaro::test
