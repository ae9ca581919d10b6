#include "disc/UdfVolume.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "disc/DiscData.h"
#include "disc/UdfFile.h"
#include "disc/UdfTag.h"

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
    throw base::RuntimeError(base::ErrorNumber::FileSystemUnsupported, std::string("UDF, ") + what);
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

uint32_t sequenceNumber(const Sector& descriptor) {
    return littleEndian<uint32_t>(descriptor, 16);
}

void keepNewest(std::optional<Sector>& kept, const Sector& descriptor) {
    if (!kept || sequenceNumber(descriptor) >= sequenceNumber(*kept))
        kept = descriptor;
}

Descriptors readDescriptors(const ByteSource& medium, uint64_t start, uint64_t count) {
    Descriptors found;
    Sector sector{};
    uint64_t left = std::min(count, kMaxDescriptors);
    for (uint64_t at = start, seen = 0; left > 0 && seen < kMaxDescriptors; ++at, --left, ++seen) {
        if (!readSector(medium, at, sector) || hasTag(sector, UdfTag::Terminator))
            break;
        if (hasTag(sector, UdfTag::LogicalVolume))
            keepNewest(found.logicalVolume, sector);
        if (hasTag(sector, UdfTag::Partition)) {
            const auto number = littleEndian<uint16_t>(sector, 22);
            const auto known = found.partitions.find(number);
            if (known == found.partitions.end() ||
                sequenceNumber(sector) >= sequenceNumber(known->second))
                found.partitions[number] = sector;
        }
        if (hasTag(sector, UdfTag::VolumePointer)) {
            left = littleEndian<uint32_t>(sector, 20) / kSectorSize + 1;
            at = uint64_t{littleEndian<uint32_t>(sector, 24)} - 1;
        }
    }
    return found;
}

// The main sequence, or where that is damaged the reserve.
std::optional<Descriptors> readSequences(const ByteSource& medium, const Sector& anchor) {
    for (const size_t extent : {16, 24}) {
        const auto length = littleEndian<uint32_t>(anchor, extent);
        auto found = readDescriptors(medium, littleEndian<uint32_t>(anchor, extent + 4),
                                     length / kSectorSize);
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
        if (!readSector(medium, place, anchor) || !hasTag(anchor, UdfTag::Anchor) ||
            tagLocation(anchor) != place)
            continue;
        if (auto found = readSequences(medium, anchor))
            return *std::move(found);
    }
    fail("its volume descriptors can't be found");
}

// Reads a file that the volume itself needs.
std::vector<std::byte> readWhole(const ByteSource& medium, const UdfPartitions& partitions,
                                 const UdfFile& file) {
    const ExtentBytes content({std::shared_ptr<void>(), &medium},
                              udfExtents(medium, partitions, file));
    std::vector<std::byte> bytes(std::min(file.size, kMaxTableSize));
    bytes.resize(content.read(0, bytes));
    return bytes;
}

class PartitionReader {
public:
    PartitionReader(const ByteSource& medium, const Descriptors& descriptors,
                    UdfPartitions& partitions)
        : m_medium(medium)
        , m_descriptors(descriptors)
        , m_partitions(partitions) {}

    // Physical partitions first: the tables of the others lie in them.
    void read() {
        const auto& volume = *m_descriptors.logicalVolume;
        const auto length = littleEndian<uint32_t>(volume, 264);
        const auto count = std::min<uint64_t>(littleEndian<uint32_t>(volume, 268), kMaxMaps);
        auto table = part(volume, 440, length);
        std::vector<Bytes> maps;
        for (uint64_t i = 0; i < count && byteAt(table, 1) > 0; ++i) {
            maps.push_back(part(table, 0, byteAt(table, 1)));
            m_partitions.maps.push_back(physical(maps.back()));
            table = part(table, byteAt(table, 1));
        }
        for (uint16_t i = 0; i < maps.size(); ++i)
            readKind(i, maps[i]);
    }

private:
    UdfPartition physical(Bytes map) const {
        const auto number = littleEndian<uint16_t>(map, byteAt(map, 0) == 1 ? 4 : 38);
        const auto known = m_descriptors.partitions.find(number);
        UdfPartition partition;
        if (known != m_descriptors.partitions.end()) {
            partition.start = littleEndian<uint32_t>(known->second, 188);
            partition.length = littleEndian<uint32_t>(known->second, 192);
        }
        return partition;
    }

    void readKind(uint16_t index, Bytes map) {
        constexpr size_t kKind = 5;
        if (byteAt(map, 0) != 2)
            return;
        if (holdsText(map, kKind, "*UDF Sparable Partition"))
            readSpares(m_partitions.maps[index], map);
        else if (holdsText(map, kKind, "*UDF Virtual Partition"))
            readVirtual(index);
        else if (holdsText(map, kKind, "*UDF Metadata Partition"))
            readMetadata(index, map);
        else
            fail("a partition is of a kind that can't be read");
    }

    void readSpares(UdfPartition& partition, Bytes map) {
        constexpr size_t kFirstEntry = 56;
        partition.packetLength = littleEndian<uint16_t>(map, 40);
        Sector table{};
        for (size_t i = 0; i < byteAt(map, 42) && i < 4; ++i) {
            if (!readSector(m_medium, littleEndian<uint32_t>(map, 48 + 4 * i), table) ||
                !hasTag(table, UdfTag::SparingTable) || !holdsText(table, 17, "*UDF Sparing Table"))
                continue;
            const size_t count = littleEndian<uint16_t>(table, 48);
            for (size_t k = 0; k < count && kFirstEntry + 8 * k + 8 <= table.size(); ++k)
                partition.spares[littleEndian<uint32_t>(table, kFirstEntry + 8 * k)] =
                    littleEndian<uint32_t>(table, kFirstEntry + 8 * k + 4);
            return;
        }
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
        fail("its virtual allocation table can't be found");
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
        constexpr size_t kOldEnding = 36;
        if (type == UdfFile::kVirtualTable)
            table = part(table, littleEndian<uint16_t>(table, 0));
        else
            table = part(table, 0, table.size() - std::min(table.size(), kOldEnding));
        for (size_t at = 0; at + 4 <= table.size(); at += 4)
            partition.virtualBlocks.push_back(littleEndian<uint32_t>(table, at));
        partition.isVirtual = true;
    }

    void readMetadata(uint16_t index, Bytes map) {
        for (const size_t place : {40, 44}) {
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
        fail("its metadata file can't be read");
    }

    const ByteSource& m_medium;
    const Descriptors& m_descriptors;
    UdfPartitions& m_partitions;
};

uint64_t totalBytes(const Descriptors& descriptors, uint64_t mediumSize) {
    uint64_t blocks = 0;
    for (const auto& [number, descriptor] : descriptors.partitions)
        blocks += littleEndian<uint32_t>(descriptor, 192);
    const auto bytes = blocks * kSectorSize;
    return bytes > 0 && bytes <= std::max(mediumSize, kLargestDisc) ? bytes : mediumSize;
}

UdfAddress longAddress(Bytes descriptor, size_t at) {
    return {littleEndian<uint32_t>(descriptor, at + 4), littleEndian<uint16_t>(descriptor, at + 8)};
}

void readFileSet(const ByteSource& medium, const UdfAddress& address, UdfVolume& volume) {
    const auto run = volume.partitions.locate(address);
    Sector sector{};
    if (!run || !readSector(medium, run->sector, sector) || !hasTag(sector, UdfTag::FileSet))
        fail("its file set can't be found");
    std::ranges::copy(std::span(sector).first(volume.fileSet.size()), volume.fileSet.begin());
    volume.root = longAddress(sector, 400);
    const auto root = readUdfFile(medium, volume.partitions, volume.root);
    if (!root || root->type != UdfFile::kDirectory)
        fail("its root directory can't be read");
}

} // namespace

bool announcesUdf(const ByteSource& medium, uint64_t sessionStart) {
    Sector sector{};
    for (uint64_t i = 0; i < kRecognitionSectors; ++i) {
        if (!readSector(medium, sessionStart + kSystemSectors + i, sector))
            return false;
        if (holdsText(sector, 1, "NSR02") || holdsText(sector, 1, "NSR03"))
            return true;
    }
    return false;
}

UdfVolume readUdfVolume(const ByteSource& medium, uint64_t sessionStart) {
    const auto descriptors = findDescriptors(medium, sessionStart);
    const auto& logical = *descriptors.logicalVolume;
    if (littleEndian<uint32_t>(logical, 212) != kSectorSize)
        fail("its blocks are not of 2048 bytes");
    UdfVolume volume;
    volume.label = fieldText(part(logical, 84, 128));
    volume.totalBytes = totalBytes(descriptors, medium.size());
    PartitionReader(medium, descriptors, volume.partitions).read();
    readFileSet(medium, longAddress(logical, 248), volume);
    return volume;
}

std::string decodeUdfText(Bytes text) {
    const auto kind = byteAt(text, 0);
    const auto characters = textOf(part(text, 1));
    if (kind == 16)
        return base::decodeUtf16Be(characters);
    if (kind != 8)
        return base::decodeUnlabelled(textOf(text));
    std::string wide;
    for (const char c : characters)
        wide.append({'\0', c});
    return base::decodeUtf16Be(wide);
}

} // namespace discaro::disc
