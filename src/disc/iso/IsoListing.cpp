#include "disc/iso/IsoListing.h"

#include "base/Text.h"
#include "disc/iso/IsoPlace.h"
#include "disc/medium/DiscTime.h"
#include "disc/medium/ShownNames.h"
#include "disc/medium/UnlessGone.h"

#include <array>
#include <utility>

namespace discaro::disc {

namespace {

// Continuation areas hold long names and the targets of links, some of them many times a record's length.
uint64_t continuationAllowance(uint64_t directorySize) {
    return directorySize * 16 + 65536;
}

// A directory that was moved is known by its block alone; its size stands in its record of itself.
uint32_t sizeOfDirectory(const ByteSource& medium, const IsoGeometry& geometry, uint32_t block) {
    std::array<std::byte, 255> bytes{};
    size_t got = 0;
    skipErrorsUnlessGone([&] { got = medium.read(block * geometry.blockSize, bytes); });
    const auto self = parseIsoRecord(Bytes(bytes).first(got), geometry);
    return self && self->isSelf() ? self->size : static_cast<uint32_t>(kSectorSize);
}

} // namespace

std::time_t modificationTime(const IsoRecord& record, const RockRidgeFacts& facts) {
    const auto modified = facts.modified.value_or(0);
    return modified != 0 ? modified : recordTime(record.stamp);
}

IsoListing::IsoListing(const ByteSource& medium, const IsoVolume& volume, uint64_t directorySize)
    : m_medium(medium)
    , m_volume(volume)
    , m_rockRidge(medium, volume.geometry.blockSize, volume.systemUseSkip, continuationAllowance(directorySize)) {}

void IsoListing::add(const IsoRecord& record) {
    const bool isOrdinary = !record.isSelf() && !record.isParent();
    if (!isOrdinary || (record.flags & iso_flag::kAssociated) != 0 || continuesFile(record))
        return;
    RockRidgeFacts facts;
    if (m_volume.names == IsoNames::RockRidge)
        facts = m_rockRidge.read(record.systemUse);
    if (facts.isRelocated)
        return;
    auto names = namesOf(record, facts);
    if (record.isDirectory() || facts.isDirectory()) {
        auto place = directoryPlace(record, facts, std::move(names.raw));
        m_listing.directories.push_back({std::move(names.shown), std::move(place), true});
        return;
    }
    IsoFilePlace file;
    if (!facts.isSymbolicLink()) {
        file.block = record.block;
        file.size = record.size;
    }
    file.modified = modificationTime(record, facts);
    file.isHidden = (record.flags & iso_flag::kHidden) != 0;
    file.hasMoreExtents = (record.flags & iso_flag::kMoreExtents) != 0;
    file.recordAddress = record.address;
    if (file.hasMoreExtents)
        m_openFile = record.identifier;
    m_listing.files.push_back({std::move(names.shown), file.toPlace(std::move(names.raw)), false});
}

// Whether the record is a further extent of the file before it.
bool IsoListing::continuesFile(const IsoRecord& record) {
    if (m_openFile.empty())
        return false;
    const bool same = record.identifier == m_openFile && !record.isDirectory();
    if (!same)
        noteDamage("a file lacks its last part");
    if (!same || (record.flags & iso_flag::kMoreExtents) == 0)
        m_openFile.clear();
    return same;
}

IsoListing::Names IsoListing::namesOf(const IsoRecord& record, const RockRidgeFacts& facts) const {
    if (m_volume.names == IsoNames::Joliet) {
        auto text = base::decodeUtf16Be(record.identifier);
        auto shown = shownName(withoutVersion(text));
        return {std::move(text), std::move(shown)};
    }
    if (!facts.name.empty())
        return {facts.name, shownName(facts.name)};
    return {std::string(record.identifier), shownName(plainIsoName(record.identifier))};
}

Place IsoListing::directoryPlace(const IsoRecord& record, const RockRidgeFacts& facts, std::string raw) const {
    IsoDirectoryPlace place{record.block, record.size, record.address};
    if (facts.relocatedTo) {
        place.block = *facts.relocatedTo;
        place.size = sizeOfDirectory(m_medium, m_volume.geometry, place.block);
    }
    return place.toPlace(std::move(raw));
}

void IsoListing::noteDamage(const char* what) {
    if (m_listing.damage.empty())
        m_listing.damage = what;
}

Listing IsoListing::take() {
    if (!m_openFile.empty())
        noteDamage("a file lacks its last part");
    if (m_rockRidge.incomplete())
        noteDamage("a continuation of the directory's records could not be read");
    return std::move(m_listing);
}

} // namespace discaro::disc
