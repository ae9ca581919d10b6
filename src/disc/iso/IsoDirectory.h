#pragma once

#include "disc/iso/IsoRecord.h"
#include "disc/medium/DiscData.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace discaro::disc {

// Reads the records of one directory one after the other, those of "." and ".." too. A directory that is damaged
// gives what can be read of it: a record that contradicts itself ends its sector, a sector that cannot be read is
// passed over, and the end of the medium, kMaxDirectorySize or the beginning of another directory end the reading.
class IsoDirectoryReader {
public:
    // The directory begins at a byte of the medium and takes up size bytes.
    IsoDirectoryReader(const ByteSource& medium, const IsoGeometry& geometry, uint64_t start, uint64_t size);

    // Goes to the record with this address, which one of the directory's records had.
    void goTo(uint64_t address);

    // The record's views hold until the next call.
    std::optional<IsoRecord> next();

    // Bytes of the directory that could be read, in whole sectors.
    uint64_t bytesRead() const { return m_sectorsRead * kSectorSize; }

    // Empty, or what was wrong first.
    const std::string& damage() const { return m_damage; }

private:
    bool enterSector();
    bool readSector();
    void leaveSector();
    bool isOtherDirectory() const;
    Bytes rest() const;
    void noteDamage(const char* what);

    const ByteSource& m_medium;
    IsoGeometry m_geometry;
    uint64_t m_start;
    uint64_t m_end;
    uint64_t m_position;     // of the sector in hand
    size_t m_within = 0;     // of the next record in it
    size_t m_sectorSize = 0; // bytes of it; 0 when no sector is in hand
    uint64_t m_sectorsRead = 0;
    unsigned m_failures = 0; // sectors in a row that could not be read
    std::array<std::byte, kSectorSize> m_sector{};
    std::string m_damage;
};

} // namespace discaro::disc
