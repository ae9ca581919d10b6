#include "disc/image/SectorSource.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "disc/image/CueSheet.h"
#include "disc/image/NrgImage.h"
#include "disc/medium/BufferedBytes.h"
#include "disc/medium/DiscBytes.h"
#include "disc/medium/ShownNames.h"
#include "disc/medium/TrackBytes.h"
#include "disc/system/FileBytes.h"
#include "disc/system/OpticalDrive.h"
#include "disc/udf/UdfLayout.h"

#include <algorithm>
#include <array>
#include <optional>

namespace discaro::disc {

namespace {

// The first sector where a file system names itself, and how many are looked at.
constexpr uint64_t kFirstDescriptor = 16;
constexpr uint64_t kDescriptorsToLookAt = 4;

struct Layout {
    uint64_t stride;
    uint64_t dataOffset;
};

// How image files keep their sectors: user data alone; whole sectors of mode 1 and mode 2; those with subchannel
// data; mode 2 without synchronisation and header.
constexpr std::array kLayouts = {Layout{2048, 0},  Layout{2352, 16}, Layout{2352, 24},
                                 Layout{2448, 16}, Layout{2448, 24}, Layout{2336, 8}};

// Enough of a sector to see what it says of itself.
using SectorHead = std::array<std::byte, 16>;

SectorHead headAt(const ByteSource& file, uint64_t offset) {
    SectorHead head{};
    file.read(offset, head);
    return head;
}

// UDF has the structures of ISO 9660 here.
bool namesFileSystem(const SectorHead& head) {
    constexpr std::array kNames = {"CD001", "BEA01", "NSR02", "NSR03"};
    return std::ranges::any_of(kNames,
                               [&](const char* name) { return holdsText(head, udf_structure::kIdentifier, name); });
}

bool fits(const ByteSource& file, const Layout& layout) {
    for (uint64_t i = 0; i < kDescriptorsToLookAt; ++i) {
        const auto sector = kFirstDescriptor + i;
        if (namesFileSystem(headAt(file, sector * layout.stride + layout.dataOffset)))
            return true;
    }
    return false;
}

// File systems of discs that are known by name only.
const char* otherFileSystem(const ByteSource& file) {
    constexpr uint64_t kDescriptor = kFirstDescriptor * kSectorSize;
    if (holdsText(headAt(file, kDescriptor), 9, "CDROM"))
        return "High Sierra";
    const auto partitions = headAt(file, 512);
    const auto volume = headAt(file, 1024);
    const bool isMacVolume = holdsText(volume, 0, "BD") || holdsText(volume, 0, "H+");
    if (isMacVolume || (holdsText(headAt(file, 0), 0, "ER") && holdsText(partitions, 0, "PM")))
        return "HFS";
    return nullptr;
}

std::shared_ptr<const ByteSource> userData(std::shared_ptr<const ByteSource> file, const Layout& layout) {
    if (layout.stride == kSectorSize)
        return file;
    Track track;
    track.sectorCount = file->size() / layout.stride;
    track.file = std::move(file);
    track.stride = layout.stride;
    track.dataOffset = layout.dataOffset;
    return std::make_shared<TrackBytes>(std::vector{track});
}

DiscData openDevice(const std::filesystem::path& path) {
    const auto start = lastSessionStart(path);
    const auto device = std::make_shared<FileBytes>(path);
    if (device->size() == 0)
        throw base::RuntimeError(base::ErrorNumber::DriveNotReady, shownPath(path));
    DiscData data{device, {start}};
    if (start > 0)
        data.sessions.push_back(0);
    return data;
}

bool isCueSheet(const std::filesystem::path& path) {
    return base::equalAscii(path.extension().string(), ".cue");
}

DiscData openRegular(const std::filesystem::path& path) {
    if (isCueSheet(path))
        return openCueSheet(path);
    return recogniseImage(std::make_shared<FileBytes>(path));
}

} // namespace

DiscData recogniseImage(std::shared_ptr<const ByteSource> file) {
    if (auto image = openNrg(file))
        return *std::move(image);
    for (const auto& layout : kLayouts)
        if (fits(*file, layout))
            return {userData(std::move(file), layout), {0}};
    if (const auto* name = otherFileSystem(*file))
        throw base::RuntimeError(base::ErrorNumber::FileSystemUnsupported, name);
    throw base::RuntimeError(base::ErrorNumber::FileSystemUnknown);
}

DiscData openSectors(const std::filesystem::path& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const auto status = fs::status(path, error);
    if (!fs::exists(status))
        throw base::RuntimeError(base::ErrorNumber::PathMissing, shownPath(path));
    const bool isDevice = fs::is_block_file(status);
    if (!isDevice && !fs::is_regular_file(status))
        throw base::RuntimeError(base::ErrorNumber::FileSystemUnknown);
    auto data = isDevice ? openDevice(path) : openRegular(path);
    data.sectors = std::make_shared<BufferedBytes>(std::move(data.sectors));
    return data;
}

} // namespace discaro::disc
