#include "disc/iso/IsoMedium.h"

#include "base/RuntimeError.h"
#include "disc/iso/IsoDirectory.h"
#include "disc/iso/IsoListing.h"
#include "disc/iso/RockRidge.h"
#include "disc/medium/VolumeSerial.h"

#include <algorithm>
#include <array>

namespace discaro::disc {

IsoMedium::IsoMedium(std::shared_ptr<const ByteSource> sectors, const IsoVolume& volume)
    : m_sectors(std::move(sectors))
    , m_volume(volume)
    , m_claims(volume.geometry.size) {
    m_claims.listed(m_volume.rootBlock, m_volume.rootAddress, 0);
}

VolumeFacts IsoMedium::facts() const {
    return {.label = m_volume.label(),
            .fileSystem = "CDFS",
            .serial = volumeSerial(m_volume.descriptor),
            .totalBytes = m_volume.totalBytes(),
            .freeBytes = 0};
}

Place IsoMedium::root() const {
    return IsoDirectoryPlace{m_volume.rootBlock, m_volume.rootSize, m_volume.rootAddress}.toPlace({});
}

Listing IsoMedium::list(const Place&, const Place& directory) const {
    const auto place = IsoDirectoryPlace::of(directory);
    if (place.size == 0)
        return {};
    if (auto refusal = m_claims.refusal(place.block, place.recordAddress); !refusal.empty())
        return {.directories = {}, .files = {}, .damage = std::move(refusal)};
    IsoDirectoryReader reader(*m_sectors, m_volume.geometry, byteOf(place.block), place.size);
    IsoListing entries(*m_sectors, m_volume, place.size);
    bool isEmpty = true;
    for (auto record = reader.next(); record; record = reader.next(), isEmpty = false)
        entries.add(*record);
    if (reader.bytesRead() == 0)
        throw base::RuntimeError(base::ErrorNumber::DirectoryDamaged, reader.damage());
    m_claims.listed(place.block, place.recordAddress, reader.bytesRead());
    auto listing = entries.take();
    if (!reader.damage().empty())
        listing.damage = reader.damage();
    else if (isEmpty)
        listing.damage = "the directory has no record of itself";
    return listing;
}

FileFacts IsoMedium::fileFacts(const Place& directory, const Place& file) const {
    if (isDirectoryPlace(file))
        return directoryFacts(IsoDirectoryPlace::of(file));
    const auto place = IsoFilePlace::of(file);
    FileFacts facts;
    facts.size = place.size;
    if (place.hasMoreExtents)
        for (const auto& extent : extentsOf(directory, file))
            facts.size += extent.length;
    facts.modified = place.modified;
    facts.attributes = attribute::kReadOnly | (place.isHidden ? attribute::kHidden : 0);
    return facts;
}

FileFacts IsoMedium::directoryFacts(const IsoDirectoryPlace& place) const {
    std::array<std::byte, 255> bytes{};
    const auto inSector = std::min<uint64_t>(bytes.size(), kSectorSize - place.recordAddress % kSectorSize);
    const auto got = m_sectors->read(place.recordAddress, std::span(bytes).first(inSector));
    FileFacts facts;
    facts.attributes = attribute::kReadOnly | attribute::kDirectory;
    const auto record = parseIsoRecord(Bytes(bytes).first(got), m_volume.geometry);
    if (!record)
        return facts;
    RockRidgeReader rockRidge(*m_sectors, m_volume.geometry.blockSize, m_volume.systemUseSkip, kSectorSize);
    const bool isRockRidge = m_volume.names == IsoNames::RockRidge;
    facts.modified = modificationTime(*record, isRockRidge ? rockRidge.read(record->systemUse) : RockRidgeFacts());
    facts.attributes |= (record->flags & iso_flag::kHidden) != 0 ? attribute::kHidden : 0;
    return facts;
}

// The records of a file's extents stand one behind the other; all but the last say that more follow.
std::vector<Extent> IsoMedium::extentsOf(const Place& directory, const Place& file) const {
    const auto place = IsoFilePlace::of(file);
    if (!place.hasMoreExtents)
        return {{byteOf(place.block), place.size}};
    const auto within = IsoDirectoryPlace::of(directory);
    IsoDirectoryReader reader(*m_sectors, m_volume.geometry, byteOf(within.block), within.size);
    reader.goTo(place.recordAddress);
    std::vector<Extent> extents;
    std::string identifier;
    for (auto record = reader.next(); record; record = reader.next()) {
        if ((record->flags & iso_flag::kAssociated) != 0)
            continue;
        if (!extents.empty() && record->identifier != identifier)
            break;
        identifier = record->identifier;
        extents.push_back({byteOf(record->block), record->size});
        if ((record->flags & iso_flag::kMoreExtents) == 0)
            break;
    }
    return extents;
}

std::unique_ptr<ByteSource> IsoMedium::open(const Place& directory, const Place& file) const {
    if (isDirectoryPlace(file))
        throw base::RuntimeError(base::ErrorNumber::PathMissing, file.raw);
    return std::make_unique<ExtentBytes>(m_sectors, extentsOf(directory, file));
}

} // namespace discaro::disc
