#pragma once

#include "disc/medium/ExtentBytes.h"
#include "disc/udf/UdfPartitions.h"

#include <array>
#include <ctime>
#include <optional>
#include <vector>

namespace discaro::disc {

// A file or directory as its file entry describes it (ECMA-167, 4/14.9 and 4/14.17).
struct UdfFile {
    // Of the file types (4/14.6.6), those that matter here.
    static constexpr unsigned kDirectory = 4;
    static constexpr unsigned kSymbolicLink = 12;
    static constexpr unsigned kVirtualTable = 248;

    uint64_t sector = 0;    // where the entry stands
    uint16_t partition = 0; // in which short allocation descriptors count
    unsigned type = 0;
    uint64_t size = 0;
    std::time_t modified = 0;
    unsigned allocationKind = 0; // short, long, extended descriptors, or the content itself
    size_t allocationAt = 0;     // in the entry
    size_t allocationLength = 0;
    std::array<std::byte, 2048> entry{};
};

// Nothing when there is no file entry at the address. Throws base::RuntimeError (ReadFailure).
std::optional<UdfFile> readUdfFile(const ByteSource& medium, const UdfPartitions& partitions,
                                   const UdfAddress& address);

// The file entry in a sector of the medium whose allocation descriptors count in the partition.
std::optional<UdfFile> readUdfFileAt(const ByteSource& medium, uint64_t sector, uint16_t partition);

// The stretches that hold the content: together as long as the file's size. What the descriptors leave out, or place
// outside the disc, lies behind the end of the medium, so that reading it fails.
std::vector<Extent> udfExtents(const ByteSource& medium, const UdfPartitions& partitions, const UdfFile& file);

} // namespace discaro::disc
