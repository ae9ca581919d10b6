#pragma once

#include "disc/medium/DiscBytes.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace discaro::disc {

// A block as UDF names it: within the partition that one of the logical volume's maps describes.
struct UdfAddress {
    uint32_t block = 0;
    uint16_t partition = 0; // index of the map
};

// The one in a long allocation descriptor that stands there.
UdfAddress longAddress(Bytes bytes, size_t at);

// One partition map (ECMA-167, 3/10.7; UDF 2.2.8 to 2.2.10). All but the last members are sectors of the medium.
struct UdfPartition {
    uint64_t start = 0; // of the partition, in sectors of the medium
    uint64_t length = 0;

    // Sparable: packets that were moved. From the first block of a packet to the sector of its replacement.
    uint32_t packetLength = 0;
    std::unordered_map<uint32_t, uint32_t> spares;

    // Virtual: the block of the partition that each block stands for.
    bool isVirtual = false;
    std::vector<uint32_t> virtualBlocks;

    // Metadata: where the blocks of the metadata file lie.
    struct Run {
        uint64_t first = 0; // block of this partition
        uint64_t sector = 0;
        uint64_t count = 0;
    };
    bool isMetadata = false;
    std::vector<Run> runs;
};

// Consecutive sectors of the medium.
struct SectorRun {
    uint64_t sector = 0;
    uint64_t count = 0;
};

// Where the blocks of a logical volume lie on the medium.
class UdfPartitions {
public:
    std::vector<UdfPartition> maps;

    // The sector of the block, and how many of the blocks wanted, at least one, follow each other there. Nothing for
    // a block that is in no partition.
    std::optional<SectorRun> locate(const UdfAddress& address, uint64_t wanted = 1) const;
};

} // namespace discaro::disc
