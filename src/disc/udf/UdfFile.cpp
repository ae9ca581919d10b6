#include "disc/udf/UdfFile.h"

#include "disc/medium/DiscData.h"
#include "disc/udf/UdfLayout.h"
#include "disc/udf/UdfTag.h"
#include "disc/udf/UdfTime.h"

#include <algorithm>

namespace discaro::disc {

namespace {

// More than the most scattered file of a disc has; they keep an endless chain from being followed.
constexpr size_t kMaxDescriptors = 65536;
constexpr size_t kMaxRuns = 131072;
constexpr uint64_t kMostBytes = uint64_t{1} << 62;

// The kinds of allocation descriptors (ECMA-167, 4/14.6.8) and the types of extents (4/14.14.1.1).
enum AllocationKind : unsigned { kShort = 0, kLong = 1, kEmbedded = 3 };
enum ExtentType : unsigned { kRecorded = 0, kAllocated = 1, kUnallocated = 2, kContinues = 3 };

std::optional<UdfFile> parseEntry(const std::array<std::byte, 2048>& bytes) {
    const Bytes entry(bytes);
    const bool isExtended = hasTag(entry, UdfTag::ExtendedFileEntry);
    if (!isExtended && !hasTag(entry, UdfTag::FileEntry))
        return std::nullopt;
    const auto& layout = isExtended ? kUdfExtendedFileEntry : kUdfFileEntry;
    UdfFile file;
    file.entry = bytes;
    file.type = byteAt(entry, udf_entry::kFileType);
    file.allocationKind = littleEndian<uint16_t>(entry, udf_entry::kFlags) & udf_entry::kAllocationKindMask;
    file.size = littleEndian<uint64_t>(entry, udf_entry::kSize);
    file.modified = udfTime(part(entry, layout.modified, udf_time::kLength));
    const uint64_t start = layout.attributes + uint64_t{littleEndian<uint32_t>(entry, layout.attributesLength)};
    file.allocationAt = std::min<uint64_t>(start, entry.size());
    file.allocationLength =
        std::min<uint64_t>(littleEndian<uint32_t>(entry, layout.allocationLength), entry.size() - file.allocationAt);
    return file;
}

// Follows the allocation descriptors of one file.
class ExtentReader {
public:
    ExtentReader(const ByteSource& medium, const UdfPartitions& partitions, const UdfFile& file)
        : m_medium(medium)
        , m_partitions(partitions)
        , m_file(file)
        , m_left(std::min(file.size, kMostBytes)) {}

    std::vector<Extent> read() {
        const auto allocation = part(m_file.entry, m_file.allocationAt, m_file.allocationLength);
        if (m_file.allocationKind == kEmbedded)
            append(m_file.sector * kSectorSize + m_file.allocationAt, std::min<uint64_t>(m_left, allocation.size()));
        else if (m_file.allocationKind == kShort || m_file.allocationKind == kLong)
            readDescriptors(allocation);
        appendMissing(m_left);
        return std::move(m_extents);
    }

private:
    void readDescriptors(Bytes descriptors) {
        const size_t length =
            m_file.allocationKind == kShort ? udf_allocation::kShortLength : udf_allocation::kLongLength;
        std::array<std::byte, kSectorSize> block{};
        for (size_t i = 0; i < kMaxDescriptors && m_left > 0 && descriptors.size() >= length; ++i) {
            const auto descriptor = descriptors.first(length);
            descriptors = descriptors.subspan(length);
            const auto field = littleEndian<uint32_t>(descriptor, udf_allocation::kLength);
            const uint64_t bytes = field & udf_allocation::kLengthMask;
            if (bytes == 0)
                break;
            const auto type = field >> udf_allocation::kTypeShift;
            if (type == kContinues)
                descriptors = nextDescriptors(addressOf(descriptor), block);
            else if (type == kRecorded)
                appendRecorded(addressOf(descriptor), std::min(bytes, m_left));
            else
                append(Extent::kZeros, std::min(bytes, m_left));
        }
    }

    UdfAddress addressOf(Bytes descriptor) const {
        auto address = longAddress(descriptor, 0);
        if (m_file.allocationKind == kShort)
            address.partition = m_file.partition;
        return address;
    }

    // The descriptors of an allocation extent, kept in the block.
    Bytes nextDescriptors(const UdfAddress& address, std::array<std::byte, kSectorSize>& block) const {
        const auto run = m_partitions.locate(address);
        if (!run || m_medium.read(run->sector * kSectorSize, block) < block.size() ||
            !hasTag(block, UdfTag::AllocationExtent))
            return {};
        return part(block, udf_allocation_extent::kDescriptors,
                    littleEndian<uint32_t>(block, udf_allocation_extent::kLength));
    }

    void appendRecorded(UdfAddress address, uint64_t bytes) {
        while (bytes > 0) {
            const auto run = m_partitions.locate(address, (bytes + kSectorSize - 1) / kSectorSize);
            if (!run || ++m_runs > kMaxRuns) {
                appendMissing(bytes);
                return;
            }
            const auto length = std::min(bytes, run->count * kSectorSize);
            append(run->sector * kSectorSize, length);
            bytes -= length;
            address.block += static_cast<uint32_t>(run->count);
        }
    }

    void append(uint64_t offset, uint64_t length) {
        m_left -= length;
        if (length == 0)
            return;
        const bool goesOn = !m_extents.empty() && offset != Extent::kZeros &&
                            m_extents.back().offset != Extent::kZeros &&
                            m_extents.back().offset + m_extents.back().length == offset;
        if (goesOn)
            m_extents.back().length += length;
        else
            m_extents.push_back({offset, length});
    }

    void appendMissing(uint64_t length) { append(m_medium.size(), length); }

    const ByteSource& m_medium;
    const UdfPartitions& m_partitions;
    const UdfFile& m_file;
    uint64_t m_left; // bytes of the file that are not placed yet
    size_t m_runs = 0;
    std::vector<Extent> m_extents;
};

} // namespace

std::optional<UdfFile> readUdfFileAt(const ByteSource& medium, uint64_t sector, uint16_t partition) {
    std::array<std::byte, kSectorSize> bytes{};
    if (medium.read(sector * kSectorSize, bytes) < bytes.size())
        return std::nullopt;
    auto file = parseEntry(bytes);
    if (file) {
        file->sector = sector;
        file->partition = partition;
    }
    return file;
}

std::optional<UdfFile> readUdfFile(const ByteSource& medium, const UdfPartitions& partitions,
                                   const UdfAddress& address) {
    const auto run = partitions.locate(address);
    if (!run)
        return std::nullopt;
    return readUdfFileAt(medium, run->sector, address.partition);
}

std::vector<Extent> udfExtents(const ByteSource& medium, const UdfPartitions& partitions, const UdfFile& file) {
    return ExtentReader(medium, partitions, file).read();
}

} // namespace discaro::disc
