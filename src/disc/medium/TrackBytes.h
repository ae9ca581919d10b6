#pragma once

#include "disc/medium/DiscData.h"

#include <memory>
#include <vector>

namespace discaro::disc {

// Consecutive sectors of a disc in an image file that keeps more of each sector than its user data, or keeps other
// things around them.
struct Track {
    std::shared_ptr<const ByteSource> file;
    uint64_t fileOffset = 0;       // of the first sector
    uint64_t stride = kSectorSize; // bytes of the file that a sector takes, at least dataOffset + 2048
    uint64_t dataOffset = 0;       // where in them the user data begins
    uint64_t firstSector = 0;      // address on the disc
    uint64_t sectorCount = 0;
};

// The user data of one or more tracks under the addresses that they have on the disc: sector n is at byte n * 2048.
// Reading where no track is, between two of them for example, is a ReadFailure.
class TrackBytes : public ByteSource {
public:
    // Tracks that go beyond their file, that overlap an earlier one or that hold nothing are cut or left out.
    explicit TrackBytes(std::vector<Track> tracks);

    uint64_t size() const override;
    size_t read(uint64_t offset, std::span<std::byte> buffer) const override;

private:
    const Track& trackOf(uint64_t sector) const;

    std::vector<Track> m_tracks; // by address
};

} // namespace discaro::disc
