#include "disc/iso/IsoRecord.h"

#include <limits>

namespace discaro::disc {

namespace {

constexpr size_t kExtendedLength = 1;
constexpr size_t kBlock = 2;
constexpr size_t kSize = 10;
constexpr size_t kStamp = 18;
constexpr size_t kStampLength = 7;
constexpr size_t kFlags = 25;
constexpr size_t kIdentifierLength = 32;
constexpr size_t kOtherHalf = 4;

// The half of a both-endian number whose value is at most the limit, the little-endian one if neither or both.
uint32_t bothEndian(Bytes bytes, size_t at, uint64_t limit) {
    const auto little = littleEndian<uint32_t>(bytes, at);
    const auto big = bigEndian<uint32_t>(bytes, at + kOtherHalf);
    return little > limit && big <= limit ? big : little;
}

} // namespace

std::optional<IsoRecord> parseIsoRecord(Bytes bytes, const IsoGeometry& geometry) {
    const size_t length = byteAt(bytes, 0);
    const size_t nameLength = byteAt(bytes, kIdentifierLength);
    if (length > bytes.size() || nameLength == 0 || kIsoRecordHead + nameLength > length)
        return std::nullopt;
    const auto record = bytes.first(length);
    IsoRecord result;
    const auto lastBlock = geometry.size / geometry.blockSize;
    const uint64_t block = bothEndian(record, kBlock, lastBlock);
    const auto left = block <= lastBlock ? geometry.size - block * geometry.blockSize : 0;
    result.size = bothEndian(record, kSize, left);
    const uint64_t start = block + byteAt(record, kExtendedLength);
    constexpr uint64_t kMost = std::numeric_limits<uint32_t>::max();
    result.block = static_cast<uint32_t>(start < kMost ? start : kMost);
    result.flags = byteAt(record, kFlags);
    result.stamp = record.subspan(kStamp, kStampLength);
    result.identifier = textOf(record.subspan(kIsoRecordHead, nameLength));
    // The identifier is padded to an odd length, so that what follows begins at an even place.
    result.systemUse = part(record, kIsoRecordHead + nameLength + (nameLength + 1) % 2);
    return result;
}

} // namespace discaro::disc
