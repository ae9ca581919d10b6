#pragma once

#include <cstddef>
#include <cstdint>

// Where the fields that are read stand in the structures of UDF, in bytes from the beginning of each. The numbers
// behind a structure are part and clause of ECMA-167 (third edition), or with "UDF" the clause of OSTA's Universal
// Disk Format (2.60). All numbers on the disc are little-endian.

namespace discaro::disc {

// Timestamp (1/7.3).
namespace udf_time {
constexpr size_t kZone = 0; // with the kind of time in the upper four bits
constexpr size_t kYear = 2;
constexpr size_t kMonth = 4;
constexpr size_t kDay = 5;
constexpr size_t kHour = 6;
constexpr size_t kMinute = 7;
constexpr size_t kSecond = 8;
constexpr size_t kLength = 12;
} // namespace udf_time

// Entity identifier (1/7.4).
namespace udf_entity {
constexpr size_t kText = 1;
} // namespace udf_entity

// Volume structure descriptor (2/9.1).
namespace udf_structure {
constexpr size_t kIdentifier = 1;
} // namespace udf_structure

// Extent (3/7.1): its length in bytes, its first sector.
namespace udf_extent {
constexpr size_t kLength = 0;
constexpr size_t kSector = 4;
} // namespace udf_extent

// Descriptor tag (3/7.2).
namespace udf_tag {
constexpr size_t kIdentifier = 0;
constexpr size_t kChecksum = 4;
constexpr size_t kLocation = 12;
constexpr size_t kLength = 16;
} // namespace udf_tag

// Anchor volume descriptor pointer (3/10.2).
namespace udf_anchor {
constexpr size_t kMainSequence = 16;
constexpr size_t kReserveSequence = 24;
} // namespace udf_anchor

// Volume descriptor pointer (3/10.3).
namespace udf_volume_pointer {
constexpr size_t kNextSequence = 20;
} // namespace udf_volume_pointer

// Partition descriptor (3/10.5).
namespace udf_partition {
constexpr size_t kSequenceNumber = 16;
constexpr size_t kNumber = 22;
constexpr size_t kStart = 188;
constexpr size_t kLength = 192; // in sectors
} // namespace udf_partition

// Logical volume descriptor (3/10.6).
namespace udf_logical_volume {
constexpr size_t kSequenceNumber = 16;
constexpr size_t kLabel = 84;
constexpr size_t kLabelLength = 128;
constexpr size_t kBlockSize = 212;
constexpr size_t kFileSet = 248; // a long allocation descriptor (4/3.1)
constexpr size_t kMapsLength = 264;
constexpr size_t kMapCount = 268;
constexpr size_t kMaps = 440;
} // namespace udf_logical_volume

// Partition map (3/10.7), one of type 2 as UDF 2.2.8 has it.
namespace udf_map {
constexpr size_t kType = 0;
constexpr size_t kLength = 1;
constexpr size_t kPartitionOfType1 = 4;
constexpr size_t kKindOfType2 = 4; // an entity identifier
constexpr size_t kPartitionOfType2 = 38;
} // namespace udf_map

// Sparable partition map (UDF 2.2.9).
namespace udf_sparable_map {
constexpr size_t kPacketLength = 40;
constexpr size_t kTableCount = 42;
constexpr size_t kTables = 48; // sectors, four bytes each
constexpr size_t kMostTables = 4;
} // namespace udf_sparable_map

// Metadata partition map (UDF 2.2.10): the blocks of the file's entries.
namespace udf_metadata_map {
constexpr size_t kFile = 40;
constexpr size_t kMirrorFile = 44;
} // namespace udf_metadata_map

// Virtual allocation table: with a header in UDF 2.2.11; in UDF 1.50, 2.2.10, with an identifier and the place of the
// table before it behind the entries. An entry is a block number.
namespace udf_virtual_table {
constexpr size_t kHeaderLength = 0;
constexpr size_t kOldEnding = 36;
constexpr size_t kEntryLength = 4;
} // namespace udf_virtual_table

// Sparing table (UDF 2.2.12), and one of its entries.
namespace udf_sparing_table {
constexpr size_t kIdentifier = 16; // an entity identifier
constexpr size_t kEntryCount = 48;
constexpr size_t kEntries = 56;
constexpr size_t kEntryLength = 8;
constexpr size_t kOriginal = 0;
constexpr size_t kReplacement = 4;
} // namespace udf_sparing_table

// File set descriptor (4/14.1).
namespace udf_file_set {
constexpr size_t kRoot = 400; // a long allocation descriptor
constexpr size_t kLength = 512;
} // namespace udf_file_set

// File identifier descriptor (4/14.4). Behind the head come bytes of the writer's own, then the name.
namespace udf_identifier {
constexpr size_t kCharacteristics = 18;
constexpr size_t kNameLength = 19;
constexpr size_t kEntry = 20; // a long allocation descriptor
constexpr size_t kOwnLength = 36;
constexpr size_t kHead = 38;
} // namespace udf_identifier

// Allocation extent descriptor (4/14.5).
namespace udf_allocation_extent {
constexpr size_t kLength = 20;
constexpr size_t kDescriptors = 24;
} // namespace udf_allocation_extent

// File entry (4/14.9) and extended file entry (4/14.17): what stands at the same place in both, the first two in their
// ICB tag (4/14.6.6 and 4/14.6.8).
namespace udf_entry {
constexpr size_t kFileType = 27;
constexpr size_t kFlags = 34;
constexpr unsigned kAllocationKindMask = 7; // of the flags
constexpr size_t kSize = 56;
} // namespace udf_entry

// What does not: the time of the last modification, the lengths of the two fields at the end, and the first of these,
// the extended attributes. The allocation descriptors follow them.
struct UdfEntryLayout {
    size_t modified;
    size_t attributesLength;
    size_t allocationLength;
    size_t attributes;
};
constexpr UdfEntryLayout kUdfFileEntry{84, 168, 172, 176};
constexpr UdfEntryLayout kUdfExtendedFileEntry{92, 208, 212, 216};

// Allocation descriptors (4/14.14.1, 4/14.14.2). The two highest bits of the length are the type of the extent
// (4/14.14.1.1); only a long one names the partition (4/7.1).
namespace udf_allocation {
constexpr size_t kLength = 0;
constexpr uint32_t kLengthMask = 0x3FFFFFFF;
constexpr unsigned kTypeShift = 30;
constexpr size_t kBlock = 4;
constexpr size_t kPartition = 8;
constexpr size_t kShortLength = 8;
constexpr size_t kLongLength = 16;
} // namespace udf_allocation

} // namespace discaro::disc
