#include "disc/executable/ExecutableNe.h"

#include <algorithm>

namespace discaro::disc {

namespace {

constexpr uint16_t kNumber = 0x8000; // the bit of a type or name that is a number
constexpr uint16_t kTypeGroupIcon = kNumber | 14;
constexpr uint16_t kTypeVersion = kNumber | 16;
constexpr uint16_t kUsualVersionName = kNumber | 1;
constexpr uint64_t kLongestVersionResource = 0x10000; // its length is told in 16 bits

// Offsets from the letters "NE", and what stands there is counted from them too.
constexpr uint64_t kResourceTable = 0x24;
constexpr uint64_t kResidentNames = 0x26;

constexpr uint16_t kLargestShift = 16;
constexpr uint64_t kBlockHeaderLength = 8;
constexpr uint64_t kEntryLength = 12;

} // namespace

NeResources::NeResources(ExecutableReader& reader, uint64_t header)
    : m_reader(reader) {
    const auto table = reader.word(header + kResourceTable);
    const auto names = reader.word(header + kResidentNames);
    if (!table || *table == 0 || table == names)
        return;
    const auto shift = reader.word(header + *table);
    if (!shift || *shift > kLargestShift)
        return;
    m_table = header + *table;
    m_shift = *shift;
}

int64_t NeResources::iconGroups() {
    int64_t count = 0;
    forEachResource(kTypeGroupIcon, [&](uint64_t entry) { count += dataSpan(entry).length > 0 ? 1 : 0; });
    return count;
}

std::string NeResources::versionResource() {
    FileSpan chosen;
    bool usual = false;
    forEachResource(kTypeVersion, [&](uint64_t entry) {
        const auto span = dataSpan(entry);
        const bool isUsual = m_reader.word(entry + 6) == kUsualVersionName;
        if (span.length == 0 || (chosen.length > 0 && (usual || !isUsual)))
            return;
        chosen = span;
        usual = isUsual;
    });
    return m_reader.bytes(chosen.offset, static_cast<size_t>(std::min(chosen.length, kLongestVersionResource)));
}

// Calls the visitor with the place of each entry of the type. Blocks of other types are passed
// over; each step goes forward in the file, so the walk ends.
template <typename Visitor>
void NeResources::forEachResource(uint16_t type, Visitor visit) {
    if (m_table == 0)
        return;
    for (uint64_t block = m_table + 2; m_reader.mayVisit();) {
        const auto blockType = m_reader.word(block).value_or(0);
        const auto count = m_reader.word(block + 2).value_or(0);
        if (blockType == 0)
            return;
        block += kBlockHeaderLength;
        const uint64_t end = block + count * kEntryLength;
        for (uint64_t entry = block; blockType == type && entry < end && m_reader.mayVisit(); entry += kEntryLength)
            visit(entry);
        block = end;
    }
}

// Where the entry's data is, as far as the file holds it.
FileSpan NeResources::dataSpan(uint64_t entry) {
    const uint64_t offset = uint64_t{m_reader.word(entry).value_or(0)} << m_shift;
    const uint64_t length = uint64_t{m_reader.word(entry + 2).value_or(0)} << m_shift;
    if (offset == 0 || offset >= m_reader.size())
        return {};
    return {offset, std::min(length, m_reader.size() - offset)};
}

} // namespace discaro::disc
