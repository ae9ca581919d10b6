#pragma once

#include "disc/medium/Medium.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace discaro::disc {

// Bytes of user data in a sector, and the unit in which a disc is addressed.
constexpr uint64_t kSectorSize = 2048;

// What a disc, or the image of one, holds as data.
struct DiscData {
    std::shared_ptr<const ByteSource> sectors; // user data, sector n at byte n * kSectorSize
    std::vector<uint64_t> sessions;            // first data sectors of the sessions, the last session first
};

} // namespace discaro::disc
