#include "disc/iso/IsoPlace.h"

#include <utility>

namespace discaro::disc {

namespace {

// Of the second number: 40 bits of stamp, then marks; a directory's has the address of its record instead.
constexpr uint64_t kStampMask = (uint64_t{1} << 40) - 1;
constexpr std::time_t kStampBias = std::time_t{1} << 39;
constexpr uint64_t kHidden = uint64_t{1} << 40;
constexpr uint64_t kMoreExtents = uint64_t{1} << 41;
constexpr uint64_t kDirectory = uint64_t{1} << 63;

uint64_t joined(uint32_t block, uint32_t size) {
    return uint64_t{size} << 32 | block;
}

} // namespace

bool isDirectoryPlace(const Place& place) {
    return (place.detail & kDirectory) != 0;
}

IsoDirectoryPlace IsoDirectoryPlace::of(const Place& place) {
    return {static_cast<uint32_t>(place.number), static_cast<uint32_t>(place.number >> 32), place.detail & ~kDirectory};
}

Place IsoDirectoryPlace::toPlace(std::string raw) const {
    return {joined(block, size), recordAddress | kDirectory, std::move(raw)};
}

IsoFilePlace IsoFilePlace::of(const Place& place) {
    IsoFilePlace file;
    file.modified = static_cast<std::time_t>(place.detail & kStampMask) - kStampBias;
    file.isHidden = (place.detail & kHidden) != 0;
    file.hasMoreExtents = (place.detail & kMoreExtents) != 0;
    if (file.hasMoreExtents) {
        file.recordAddress = place.number;
    } else {
        file.block = static_cast<uint32_t>(place.number);
        file.size = static_cast<uint32_t>(place.number >> 32);
    }
    return file;
}

Place IsoFilePlace::toPlace(std::string raw) const {
    uint64_t detail = static_cast<uint64_t>(modified + kStampBias) & kStampMask;
    detail |= isHidden ? kHidden : 0;
    detail |= hasMoreExtents ? kMoreExtents : 0;
    return {hasMoreExtents ? recordAddress : joined(block, size), detail, std::move(raw)};
}

} // namespace discaro::disc
