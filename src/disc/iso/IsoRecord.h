#pragma once

#include "disc/medium/DiscBytes.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace discaro::disc {

// File flags of a directory record (ECMA-119, 9.1.6).
namespace iso_flag {
constexpr unsigned kHidden = 1;
constexpr unsigned kDirectory = 2;
constexpr unsigned kAssociated = 4;
constexpr unsigned kMoreExtents = 128;
} // namespace iso_flag

// How a volume counts: its logical block in bytes, and its end.
struct IsoGeometry {
    uint64_t blockSize = 2048;
    uint64_t size = 0; // bytes that the medium holds
};

// One directory record (ECMA-119, 9.1). The views are into the bytes that it was read from.
struct IsoRecord {
    uint64_t address = 0; // of the record, in bytes of the medium
    uint32_t block = 0;   // first logical block of the data, behind an extended attribute record
    uint32_t size = 0;    // of the data, in bytes
    unsigned flags = 0;
    Bytes stamp;
    std::string_view identifier; // never empty
    Bytes systemUse;

    bool isDirectory() const { return (flags & iso_flag::kDirectory) != 0; }
    bool isSelf() const { return identifier == std::string_view("\0", 1); }
    bool isParent() const { return identifier == std::string_view("\1", 1); }
};

constexpr size_t kIsoRecordHead = 33;

// Reads the record at the beginning of the bytes, which go to the end of its sector. Nothing when its lengths
// contradict each other. Numbers are taken from their little-endian half, or from the other one where only that
// gives a place on the medium.
std::optional<IsoRecord> parseIsoRecord(Bytes bytes, const IsoGeometry& geometry);

} // namespace discaro::disc
