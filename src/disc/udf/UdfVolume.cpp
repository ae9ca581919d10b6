#include "disc/udf/UdfVolume.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "disc/medium/DiscData.h"
#include "disc/udf/UdfFile.h"
#include "disc/udf/UdfTag.h"

#include <algorithm>
#include <map>
#include <vector>

namespace discaro::disc {

namespace {

using Sector = std::array<std::byte, kSectorSize>;

constexpr uint64_t kSystemSectors = 16;
constexpr uint64_t kRecognitionSectors = 48;
constexpr uint64_t kAnchor = 256;
constexpr uint64_t kMaxDescriptors = 256;
constexpr uint64_t kMaxMaps = 16;
constexpr uint64_t kMaxTableSize = uint64_t{16} << 20;
constexpr uint64_t kLargestDisc = uint64_t{1} << 38;

// A packet written disc ends in a few sectors that hold nothing.
constexpr uint64_t kTableSearch = 64;

bool readSector(const ByteSource& medium, uint64_t sector, Sector& bytes) {
    bool whole = false;
    base::skipErrors([&] { whole = medium.read(sector * kSectorSize, bytes) == bytes.size(); });
    return whole;
}

[[noreturn]] void fail(const char* what) {
    throw base::RuntimeError(base::ErrorNumber::FileSystemUnsupported, what);
}

// The fixed field of a label: the last byte has its length.
std::string fieldText(Bytes field) {
    const auto length = byteAt(field, field.size() - 1);
    auto text = decodeUdfText(part(field, 0, std::min<size_t>(length, field.size() - 1)));
    std::ranges::replace(text, '\0', ' ');
    return std::string(base::trimBlanks(text));
}

// The descriptors that say what is where: one logical volume and its partitions, by number. Of several with the same
// purpose the one with the highest sequence number prevails.
struct Descriptors {
    std::optional<Sector> logicalVolume;
    std::map<uint16_t, Sector> partitions;
};

bool isNewer(const Sector& descriptor, const Sector& known, size_t sequenceNumber) {
    return littleEndian<uint32_t>(descriptor, sequenceNumber) >= littleEndian<uint32_t>(known, sequenceNumber);
}

void keepVolume(Descriptors& found, const Sector& volume) {
    auto& kept = found.logicalVolume;
    if (!kept || isNewer(volume, *kept, udf_logical_volume::kSequenceNumber))
        kept = volume;
}

void keepPartition(Descriptors& found, const Sector& partition) {
    const auto number = littleEndian<uint16_t>(partition, udf_partition::kNumber);
    const auto known = found.partitions.find(number);
    if (known == found.partitions.end() || isNewer(partition, known->second, udf_partition::kSequenceNumber))
        found.partitions[number] = partition;
}

struct SectorExtent {
    uint64_t start;
    uint64_t count; // a last one that is not whole is left out
};

SectorExtent extentAt(const Sector& descriptor, size_t at) {
    return {littleEndian<uint32_t>(descriptor, at + udf_extent::kSector),
            littleEndian<uint32_t>(descriptor, at + udf_extent::kLength) / kSectorSize};
}

Descriptors readDescriptors(const ByteSource& medium, const SectorExtent& sequence) {
    Descriptors found;
    Sector sector{};
    uint64_t left = std::min(sequence.count, kMaxDescriptors);
    for (uint64_t at = sequence.start, seen = 0; left > 0 && seen < kMaxDescriptors; ++at, --left, ++seen) {
        if (!readSector(medium, at, sector) || hasTag(sector, UdfTag::Terminator))
            break;
        if (hasTag(sector, UdfTag::LogicalVolume))
            keepVolume(found, sector);
        if (hasTag(sector, UdfTag::Partition))
            keepPartition(found, sector);
        if (hasTag(sector, UdfTag::VolumePointer)) {
            const auto next = extentAt(sector, udf_volume_pointer::kNextSequence);
            left = next.count + 1;
            at = next.start - 1;
        }
    }
    return found;
}

// The main sequence, or where that is damaged the reserve.
std::optional<Descriptors> readSequences(const ByteSource& medium, const Sector& anchor) {
    for (const size_t sequence : {udf_anchor::kMainSequence, udf_anchor::kReserveSequence}) {
        auto found = readDescriptors(medium, extentAt(anchor, sequence));
        if (found.logicalVolume && !found.partitions.empty())
            return found;
    }
    return std::nullopt;
}

Descriptors findDescriptors(const ByteSource& medium, uint64_t sessionStart) {
    const uint64_t sectors = medium.size() / kSectorSize;
    std::vector<uint64_t> places = {sessionStart + kAnchor, sessionStart + 2 * kAnchor};
    if (sectors > kAnchor + 1) {
        places.push_back(sectors - 1);
        places.push_back(sectors - 1 - kAnchor);
    }
    Sector anchor{};
    for (const auto place : places) {
        if (!readSector(medium, place, anchor) || !hasTag(anchor, UdfTag::Anchor) || tagLocation(anchor) != place)
            continue;
        if (auto found = readSequences(medium, anchor))
            return *std::move(found);
    }
    fail("UDF, its volume descriptors can't be found");
}

// Reads a file that the volume itself needs.
std::vector<std::byte> readWhole(const ByteSource& medium, const UdfPartitions& partitions, const UdfFile& file) {
    const ExtentBytes content({std::shared_ptr<void>(), &medium}, udfExtents(medium, partitions, file));
    std::vector<std::byte> bytes(std::min(file.size, kMaxTableSize));
    bytes.resize(content.read(0, bytes));
    return bytes;
}

class PartitionReader {
public:
    PartitionReader(const ByteSource& medium, const Descriptors& descriptors, UdfPartitions& partitions)
        : m_medium(medium)
        , m_descriptors(descriptors)
        , m_partitions(partitions) {}

    // Physical partitions first: the tables of the others lie in them.
    void read() {
        using namespace udf_logical_volume;
        const auto& volume = *m_descriptors.logicalVolume;
        const auto length = littleEndian<uint32_t>(volume, kMapsLength);
        const auto count = std::min<uint64_t>(littleEndian<uint32_t>(volume, kMapCount), kMaxMaps);
        auto table = part(volume, kMaps, length);
        std::vector<Bytes> maps;
        for (uint64_t i = 0; i < count && byteAt(table, udf_map::kLength) > 0; ++i) {
            maps.push_back(part(table, 0, byteAt(table, udf_map::kLength)));
            m_partitions.maps.push_back(physical(maps.back()));
            table = part(table, byteAt(table, udf_map::kLength));
        }
        for (size_t i = 0; i < maps.size(); ++i)
            readKind(static_cast<uint16_t>(i), maps[i]);
    }

private:
    UdfPartition physical(Bytes map) const {
        const auto number = littleEndian<uint16_t>(map, byteAt(map, udf_map::kType) == 1 ? udf_map::kPartitionOfType1
                                                                                         : udf_map::kPartitionOfType2);
        const auto known = m_descriptors.partitions.find(number);
        UdfPartition partition;
        if (known != m_descriptors.partitions.end()) {
            partition.start = littleEndian<uint32_t>(known->second, udf_partition::kStart);
            partition.length = littleEndian<uint32_t>(known->second, udf_partition::kLength);
        }
        return partition;
    }

    void readKind(uint16_t index, Bytes map) {
        constexpr size_t kKind = udf_map::kKindOfType2 + udf_entity::kText;
        if (byteAt(map, udf_map::kType) != 2)
            return;
        if (holdsText(map, kKind, "*UDF Sparable Partition"))
            readSpares(m_partitions.maps[index], map);
        else if (holdsText(map, kKind, "*UDF Virtual Partition"))
            readVirtual(index);
        else if (holdsText(map, kKind, "*UDF Metadata Partition"))
            readMetadata(index, map);
        else
            fail("UDF, a partition is of a kind that can't be read");
    }

    void readSpares(UdfPartition& partition, Bytes map) {
        using namespace udf_sparable_map;
        partition.packetLength = littleEndian<uint16_t>(map, kPacketLength);
        Sector table{};
        for (size_t i = 0; i < byteAt(map, kTableCount) && i < kMostTables; ++i) {
            if (readSector(m_medium, littleEndian<uint32_t>(map, kTables + 4 * i), table) &&
                takeSpares(partition, table))
                return;
        }
    }

    static bool takeSpares(UdfPartition& partition, const Sector& table) {
        using namespace udf_sparing_table;
        if (!hasTag(table, UdfTag::SparingTable) ||
            !holdsText(table, kIdentifier + udf_entity::kText, "*UDF Sparing Table"))
            return false;
        auto entries = part(table, kEntries);
        for (size_t left = littleEndian<uint16_t>(table, kEntryCount); left > 0 && entries.size() >= kEntryLength;
             --left) {
            partition.spares[littleEndian<uint32_t>(entries, kOriginal)] =
                littleEndian<uint32_t>(entries, kReplacement);
            entries = entries.subspan(kEntryLength);
        }
        return true;
    }

    // The table is the file whose entry was written last.
    void readVirtual(uint16_t index) {
        const uint64_t sectors = m_medium.size() / kSectorSize;
        for (uint64_t back = 1; back <= kTableSearch && back < sectors; ++back) {
            bool found = false;
            base::skipErrors([&] { found = readTable(index, sectors - back); });
            if (found)
                return;
        }
        fail("UDF, its virtual allocation table can't be found");
    }

    bool readTable(uint16_t index, uint64_t sector) {
        auto& partition = m_partitions.maps[index];
        const auto file = readUdfFileAt(m_medium, sector, index);
        if (!file || tagLocation(file->entry) + partition.start != sector ||
            (file->type != UdfFile::kVirtualTable && file->type != 0))
            return false;
        takeTable(partition, readWhole(m_medium, m_partitions, *file), file->type);
        return true;
    }

    // UDF 2.x puts a header in front of the table, UDF 1.50 an identifier and a number behind it.
    static void takeTable(UdfPartition& partition, Bytes table, unsigned type) {
        using namespace udf_virtual_table;
        if (type == UdfFile::kVirtualTable)
            table = part(table, littleEndian<uint16_t>(table, kHeaderLength));
        else
            table = part(table, 0, table.size() - std::min(table.size(), kOldEnding));
        for (size_t at = 0; at + kEntryLength <= table.size(); at += kEntryLength)
            partition.virtualBlocks.push_back(littleEndian<uint32_t>(table, at));
        partition.isVirtual = true;
    }

    void readMetadata(uint16_t index, Bytes map) {
        for (const size_t place : {udf_metadata_map::kFile, udf_metadata_map::kMirrorFile}) {
            const UdfAddress address{littleEndian<uint32_t>(map, place), index};
            std::optional<UdfFile> file;
            base::skipErrors([&] { file = readUdfFile(m_medium, m_partitions, address); });
            if (!file)
                continue;
            uint64_t block = 0;
            auto& partition = m_partitions.maps[index];
            for (const auto& extent : udfExtents(m_medium, m_partitions, *file)) {
                const auto count = (extent.length + kSectorSize - 1) / kSectorSize;
                if (extent.offset < m_medium.size())
                    partition.runs.push_back({block, extent.offset / kSectorSize, count});
                block += count;
            }
            partition.isMetadata = true;
            return;
        }
        fail("UDF, its metadata file can't be read");
    }

    const ByteSource& m_medium;
    const Descriptors& m_descriptors;
    UdfPartitions& m_partitions;
};

uint64_t totalBytes(const Descriptors& descriptors, uint64_t mediumSize) {
    uint64_t blocks = 0;
    for (const auto& [number, descriptor] : descriptors.partitions)
        blocks += littleEndian<uint32_t>(descriptor, udf_partition::kLength);
    const auto bytes = blocks * kSectorSize;
    return bytes > 0 && bytes <= std::max(mediumSize, kLargestDisc) ? bytes : mediumSize;
}

void readFileSet(const ByteSource& medium, const UdfAddress& address, UdfVolume& volume) {
    const auto run = volume.partitions.locate(address);
    Sector sector{};
    if (!run || !readSector(medium, run->sector, sector) || !hasTag(sector, UdfTag::FileSet))
        fail("UDF, its file set can't be found");
    std::ranges::copy(std::span(sector).first(volume.fileSet.size()), volume.fileSet.begin());
    volume.root = longAddress(sector, udf_file_set::kRoot);
    const auto root = readUdfFile(medium, volume.partitions, volume.root);
    if (!root || root->type != UdfFile::kDirectory)
        fail("UDF, its root directory can't be read");
}

} // namespace

bool announcesUdf(const ByteSource& medium, uint64_t sessionStart) {
    Sector sector{};
    for (uint64_t i = 0; i < kRecognitionSectors; ++i) {
        if (!readSector(medium, sessionStart + kSystemSectors + i, sector))
            return false;
        if (holdsText(sector, udf_structure::kIdentifier, "NSR02") ||
            holdsText(sector, udf_structure::kIdentifier, "NSR03"))
            return true;
    }
    return false;
}

UdfVolume readUdfVolume(const ByteSource& medium, uint64_t sessionStart) {
    const auto descriptors = findDescriptors(medium, sessionStart);
    const auto& logical = *descriptors.logicalVolume;
    if (littleEndian<uint32_t>(logical, udf_logical_volume::kBlockSize) != kSectorSize)
        fail("UDF, its blocks are not of 2048 bytes");
    UdfVolume volume;
    volume.label = fieldText(part(logical, udf_logical_volume::kLabel, udf_logical_volume::kLabelLength));
    volume.totalBytes = totalBytes(descriptors, medium.size());
    PartitionReader(medium, descriptors, volume.partitions).read();
    readFileSet(medium, longAddress(logical, udf_logical_volume::kFileSet), volume);
    return volume;
}

std::string decodeUdfText(Bytes text) {
    constexpr unsigned kOneByte = 8;
    constexpr unsigned kTwoBytes = 16;
    const auto kind = byteAt(text, 0);
    const auto characters = textOf(part(text, 1));
    if (kind == kTwoBytes)
        return base::decodeUtf16Be(characters);
    if (kind != kOneByte)
        return base::decodeUnlabelled(textOf(text));
    std::string wide;
    for (const char c : characters)
        wide.append({'\0', c});
    return base::decodeUtf16Be(wide);
}

} // namespace discaro::disc
