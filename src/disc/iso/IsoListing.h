#pragma once

#include "disc/iso/IsoDirectory.h"
#include "disc/iso/IsoVolume.h"
#include "disc/iso/RockRidge.h"
#include "disc/medium/Medium.h"

#include <string>
#include <string_view>

namespace discaro::disc {

// Turns the records of one directory of an ISO 9660 volume into entries.
class IsoListing {
public:
    // The directory's size is what continuation areas are measured by.
    IsoListing(const ByteSource& medium, const IsoVolume& volume, uint64_t directorySize);

    void add(const IsoRecord& record);

    // The entries of all records, with what was wrong with them.
    Listing take();

private:
    struct Names {
        std::string raw;
        std::string shown;
    };

    bool continuesFile(const IsoRecord& record);
    Names namesOf(const IsoRecord& record, const RockRidgeFacts& facts) const;
    Place directoryPlace(const IsoRecord& record, const RockRidgeFacts& facts, std::string raw) const;
    void noteDamage(const char* what);

    const ByteSource& m_medium;
    const IsoVolume& m_volume;
    RockRidgeReader m_rockRidge;
    std::string m_openFile; // identifier of the file whose next extent is due, or empty
    Listing m_listing;
};

// The stamp of a record, the Rock Ridge one where that is a date.
std::time_t modificationTime(const IsoRecord& record, const RockRidgeFacts& facts);

} // namespace discaro::disc
