#include "disc/iso/IsoDirectory.h"

#include "disc/medium/DirectoryClaims.h"
#include "disc/medium/UnlessGone.h"

#include <algorithm>

namespace discaro::disc {

namespace {

// A drive takes seconds for each.
constexpr unsigned kMaxFailures = 16;

} // namespace

IsoDirectoryReader::IsoDirectoryReader(const ByteSource& medium, const IsoGeometry& geometry, uint64_t start,
                                       uint64_t size)
    : m_medium(medium)
    , m_geometry(geometry)
    , m_start(start)
    , m_end(start + std::min(size, kMaxDirectorySize))
    , m_position(start) {
    if (size > kMaxDirectorySize)
        noteDamage("the directory is too large to be one");
    if (m_end > geometry.size)
        noteDamage("the disc ends before the directory does");
    m_end = std::min(m_end, geometry.size);
}

void IsoDirectoryReader::goTo(uint64_t address) {
    m_sectorSize = 0;
    m_position = std::max(m_start, address - (address - m_start) % kSectorSize);
    if (enterSector())
        m_within = std::min<size_t>(address - m_position, m_sectorSize);
}

std::optional<IsoRecord> IsoDirectoryReader::next() {
    while (m_sectorSize > 0 || enterSector()) {
        const auto bytes = rest();
        // A length of zero is the padding at a sector's end.
        if (byteAt(bytes, 0) == 0) {
            leaveSector();
            continue;
        }
        auto record = parseIsoRecord(bytes, m_geometry);
        if (!record) {
            noteDamage("a record of the directory is damaged");
            leaveSector();
            continue;
        }
        record->address = m_position + m_within;
        m_within += byteAt(bytes, 0);
        return record;
    }
    return std::nullopt;
}

Bytes IsoDirectoryReader::rest() const {
    return part(Bytes(m_sector).first(m_sectorSize), m_within);
}

void IsoDirectoryReader::leaveSector() {
    m_sectorSize = 0;
    m_position += kSectorSize;
}

bool IsoDirectoryReader::enterSector() {
    for (; m_position < m_end && m_failures < kMaxFailures; m_position += kSectorSize) {
        if (!readSector())
            continue;
        if (!isOtherDirectory())
            return true;
        noteDamage("the directory runs into another one");
        break;
    }
    m_sectorSize = 0;
    m_position = m_end;
    return false;
}

bool IsoDirectoryReader::readSector() {
    const auto wanted = std::span(m_sector).first(std::min(kSectorSize, m_end - m_position));
    m_within = 0;
    m_sectorSize = 0;
    skipErrorsUnlessGone([&] { m_sectorSize = m_medium.read(m_position, wanted); });
    if (m_sectorSize < wanted.size())
        noteDamage("a part of the directory could not be read");
    m_failures = m_sectorSize == 0 ? m_failures + 1 : 0;
    m_sectorsRead += m_sectorSize > 0 ? 1 : 0;
    return m_sectorSize > 0;
}

// A directory begins with a record of itself.
bool IsoDirectoryReader::isOtherDirectory() const {
    if (m_position == m_start)
        return false;
    const auto record = parseIsoRecord(rest(), m_geometry);
    return record && record->isSelf() && record->isDirectory() && record->block * m_geometry.blockSize == m_position;
}

void IsoDirectoryReader::noteDamage(const char* what) {
    if (m_damage.empty())
        m_damage = what;
}

} // namespace discaro::disc
