#pragma once

#include "disc/medium/Medium.h"

#include <cstdint>
#include <ctime>
#include <string>

namespace discaro::disc {

// What an ISO 9660 medium packs into the two numbers of a Place.

// A directory: its content, and the record that leads to it, which is what tells two places of the tree apart.
struct IsoDirectoryPlace {
    uint32_t block = 0;
    uint32_t size = 0;          // bytes
    uint64_t recordAddress = 0; // below 2^62

    static IsoDirectoryPlace of(const Place& place);
    Place toPlace(std::string raw) const;
};

// A file: all that its facts are made of. One in several extents has the address of its first record in place of
// block and size.
struct IsoFilePlace {
    uint32_t block = 0;
    uint32_t size = 0;        // bytes
    std::time_t modified = 0; // years 1 to 9999
    bool isHidden = false;
    bool hasMoreExtents = false;
    uint64_t recordAddress = 0; // when hasMoreExtents

    static IsoFilePlace of(const Place& place);
    Place toPlace(std::string raw) const;
};

bool isDirectoryPlace(const Place& place);

} // namespace discaro::disc
