#include "disc/udf/UdfPartitions.h"

#include "disc/udf/UdfLayout.h"

#include <algorithm>

namespace discaro::disc {

namespace {

std::optional<SectorRun> inPartition(const UdfPartition& map, uint64_t block, uint64_t wanted) {
    if (block >= map.length)
        return std::nullopt;
    return SectorRun{map.start + block, std::min(wanted, map.length - block)};
}

std::optional<SectorRun> inPackets(const UdfPartition& map, uint32_t block, uint64_t wanted) {
    const auto within = block % map.packetLength;
    const auto spare = map.spares.find(block - within);
    wanted = std::min<uint64_t>(wanted, map.packetLength - within);
    if (spare == map.spares.end())
        return inPartition(map, block, wanted);
    return SectorRun{uint64_t{spare->second} + within, wanted};
}

std::optional<SectorRun> inRuns(const UdfPartition& map, uint64_t block, uint64_t wanted) {
    const auto behind = std::ranges::upper_bound(map.runs, block, {}, &UdfPartition::Run::first);
    if (behind == map.runs.begin())
        return std::nullopt;
    const auto& run = *std::prev(behind);
    const auto within = block - run.first;
    if (within >= run.count)
        return std::nullopt;
    return SectorRun{run.sector + within, std::min(wanted, run.count - within)};
}

} // namespace

UdfAddress longAddress(Bytes bytes, size_t at) {
    using namespace udf_allocation;
    return {littleEndian<uint32_t>(bytes, at + kBlock), littleEndian<uint16_t>(bytes, at + kPartition)};
}

std::optional<SectorRun> UdfPartitions::locate(const UdfAddress& address, uint64_t wanted) const {
    if (address.partition >= maps.size())
        return std::nullopt;
    const auto& map = maps[address.partition];
    if (map.isMetadata)
        return inRuns(map, address.block, wanted);
    if (map.isVirtual) {
        if (address.block >= map.virtualBlocks.size())
            return std::nullopt;
        return inPartition(map, map.virtualBlocks[address.block], 1);
    }
    if (!map.spares.empty() && map.packetLength > 0)
        return inPackets(map, address.block, wanted);
    return inPartition(map, address.block, wanted);
}

} // namespace discaro::disc
