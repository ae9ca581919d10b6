#pragma once

#include "disc/medium/DiscBytes.h"
#include "disc/udf/UdfLayout.h"

#include <cstdint>

namespace discaro::disc {

// Descriptor tags (ECMA-167, 3/7.2 and 4/7.2).
enum class UdfTag : uint16_t {
    SparingTable = 0,
    PrimaryVolume = 1,
    Anchor = 2,
    VolumePointer = 3,
    Partition = 5,
    LogicalVolume = 6,
    Terminator = 8,
    FileSet = 256,
    FileIdentifier = 257,
    AllocationExtent = 258,
    FileEntry = 261,
    ExtendedFileEntry = 266,
};

// Whether the bytes begin with a tag of this kind whose checksum is right.
inline bool hasTag(Bytes descriptor, UdfTag tag) {
    using namespace udf_tag;
    if (descriptor.size() < kLength || littleEndian<uint16_t>(descriptor, kIdentifier) != static_cast<uint16_t>(tag))
        return false;
    unsigned sum = 0;
    for (size_t i = 0; i < kLength; ++i)
        sum += i == kChecksum ? 0U : byteAt(descriptor, i);
    return (sum & 0xFF) == byteAt(descriptor, kChecksum);
}

// The address that a tag says it stands at.
inline uint32_t tagLocation(Bytes descriptor) {
    return littleEndian<uint32_t>(descriptor, udf_tag::kLocation);
}

} // namespace discaro::disc
