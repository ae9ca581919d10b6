#include "disc/iso/IsoVolume.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "disc/iso/RockRidge.h"
#include "disc/medium/DiscData.h"

#include <algorithm>
#include <vector>

namespace discaro::disc {

namespace {

constexpr uint64_t kSystemSectors = 16;
constexpr uint64_t kMaxDescriptors = 64;
constexpr size_t kLabel = 40;
constexpr size_t kLabelLength = 32;
constexpr size_t kVolumeBlocks = 80;
constexpr size_t kEscapes = 88;
constexpr size_t kBlockSize = 128;
constexpr size_t kRoot = 156;
constexpr size_t kRootLength = 34;

// More than any optical disc holds.
constexpr uint64_t kLargestDisc = uint64_t{1} << 38;

enum DescriptorType : unsigned { kPrimary = 1, kSupplementary = 2, kTerminator = 255 };

// The escape sequences of the three levels of UCS-2 (Joliet).
bool isJoliet(Bytes descriptor) {
    return holdsText(descriptor, kEscapes, "%/@") || holdsText(descriptor, kEscapes, "%/C") ||
           holdsText(descriptor, kEscapes, "%/E");
}

bool readSector(const ByteSource& medium, uint64_t offset, std::span<std::byte> sector) {
    return medium.read(offset, sector) == sector.size();
}

IsoVolume volumeOf(const std::array<std::byte, 2048>& descriptor, uint64_t address, uint64_t mediumSize) {
    IsoVolume volume;
    volume.descriptor = descriptor;
    volume.geometry.size = mediumSize;
    const auto blockSize = littleEndian<uint16_t>(descriptor, kBlockSize);
    if (blockSize == 512 || blockSize == 1024)
        volume.geometry.blockSize = blockSize;
    volume.rootAddress = address + kRoot;
    if (const auto root = parseIsoRecord(part(descriptor, kRoot, kRootLength), volume.geometry)) {
        volume.rootBlock = root->block;
        volume.rootSize = root->size;
    }
    return volume;
}

// Reads the root's own record, which begins its directory; false when it is none. Finds Rock Ridge on the way.
bool enterRoot(const ByteSource& medium, IsoVolume& volume) {
    std::array<std::byte, kSectorSize> sector{};
    if (volume.rootSize == 0)
        return false;
    const auto got = medium.read(volume.rootBlock * volume.geometry.blockSize, sector);
    const auto self = parseIsoRecord(Bytes(sector).first(got), volume.geometry);
    if (!self || !self->isSelf() || !self->isDirectory())
        return false;
    if (volume.names == IsoNames::Joliet)
        return true;
    if (const auto skip = systemUseSkip(self->systemUse)) {
        volume.names = IsoNames::RockRidge;
        volume.systemUseSkip = *skip;
    }
    return true;
}

} // namespace

std::string IsoVolume::label() const {
    const auto field = textOf(part(descriptor, kLabel, kLabelLength));
    auto text = names == IsoNames::Joliet ? base::decodeUtf16Be(field) : base::decodeUnlabelled(field);
    std::ranges::replace(text, '\0', ' ');
    return std::string(base::trimBlanks(text));
}

uint64_t IsoVolume::totalBytes() const {
    const auto rootEnd = rootBlock * geometry.blockSize + rootSize;
    const auto limit = std::max(geometry.size, kLargestDisc);
    for (const uint64_t blocks :
         {littleEndian<uint32_t>(descriptor, kVolumeBlocks), bigEndian<uint32_t>(descriptor, kVolumeBlocks + 4)}) {
        const auto bytes = blocks * geometry.blockSize;
        if (bytes >= rootEnd && bytes <= limit)
            return bytes;
    }
    return geometry.size;
}

std::optional<IsoVolume> readIsoVolume(const ByteSource& medium, uint64_t sessionStart) {
    std::optional<IsoVolume> primary;
    std::optional<IsoVolume> joliet;
    std::array<std::byte, kSectorSize> sector{};
    for (uint64_t i = 0; i < kMaxDescriptors; ++i) {
        const auto address = (sessionStart + kSystemSectors + i) * kSectorSize;
        if (!readSector(medium, address, sector) || !holdsText(sector, 1, "CD001"))
            break;
        const auto type = byteAt(sector, 0);
        if (type == kTerminator)
            break;
        if (type == kPrimary && !primary)
            primary = volumeOf(sector, address, medium.size());
        if (type == kSupplementary && !joliet && isJoliet(sector)) {
            joliet = volumeOf(sector, address, medium.size());
            joliet->names = IsoNames::Joliet;
        }
    }
    for (auto* volume : {&joliet, &primary}) {
        bool readable = false;
        base::skipErrors([&] { readable = volume->has_value() && enterRoot(medium, **volume); });
        if (readable)
            return *volume;
    }
    return std::nullopt;
}

} // namespace discaro::disc
