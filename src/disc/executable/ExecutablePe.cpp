#include "disc/executable/ExecutablePe.h"

#include <algorithm>

namespace discaro::disc {

namespace {

constexpr uint32_t kTypeGroupIcon = 14;
constexpr uint32_t kTypeVersion = 16;
constexpr uint32_t kUsualVersionName = 1;
constexpr uint32_t kHighBit = 0x8000'0000;
constexpr size_t kLongestVersionResource = 0x10000; // its length is told in 16 bits

// Offsets from the letters "PE".
constexpr uint64_t kSectionCount = 6;
constexpr uint64_t kOptionalHeaderLength = 20;
constexpr uint64_t kOptionalHeader = 24;

// Offsets in the optional header.
constexpr uint64_t kSectionAlignment = 32;
constexpr uint16_t kMagic32 = 0x10B;
constexpr uint16_t kMagic64 = 0x20B;
constexpr uint64_t kDirectoryCount32 = 92;
constexpr uint64_t kDirectoryCount64 = 108;

constexpr uint64_t kResourceDirectory = 2;
constexpr uint64_t kSectionHeaderLength = 40;
constexpr uint64_t kDirectoryHeaderLength = 16;
constexpr uint64_t kDirectoryEntryLength = 8;

// Files whose sections are laid out in pages keep them on sectors of this size in the file,
// whatever the header says.
constexpr uint64_t kFileSector = 512;
constexpr uint32_t kPageSize = 4096;

} // namespace

PeResources::PeResources(ExecutableReader& reader, uint64_t header)
    : m_reader(reader) {
    const uint64_t optional = header + kOptionalHeader;
    const auto magic = reader.word(optional).value_or(0);
    if (magic != kMagic32 && magic != kMagic64)
        return;
    const auto directories = optional + (magic == kMagic64 ? kDirectoryCount64 : kDirectoryCount32);
    if (reader.doubleWord(directories).value_or(0) <= kResourceDirectory)
        return;
    const auto address = reader.doubleWord(directories + 4 + 8 * kResourceDirectory).value_or(0);
    if (address == 0)
        return;
    const bool inPages = reader.doubleWord(optional + kSectionAlignment).value_or(0) >= kPageSize;
    readSections(optional + reader.word(header + kOptionalHeaderLength).value_or(0),
                 reader.word(header + kSectionCount).value_or(0), inPages);
    m_tree = fileSpan(address);
}

int64_t PeResources::iconGroups() {
    const auto groups = entriesOfType(kTypeGroupIcon);
    return std::ranges::count_if(groups, [this](const Entry& entry) { return leadsIntoTree(entry); });
}

std::string PeResources::versionResource() {
    auto names = entriesOfType(kTypeVersion);
    std::stable_partition(names.begin(), names.end(),
                          [](const Entry& entry) { return entry.name == kUsualVersionName; });
    for (const auto& name : names) {
        if (auto data = firstReadable(name); !data.empty())
            return data;
    }
    return {};
}

void PeResources::readSections(uint64_t table, uint16_t count, bool sectorsInFile) {
    const uint64_t sector = sectorsInFile ? kFileSector : 1;
    for (uint64_t at = table; m_sections.size() < count && m_reader.mayVisit(); at += kSectionHeaderLength) {
        const auto offset = m_reader.doubleWord(at + 20);
        if (!offset)
            return;
        const uint64_t inMemory = m_reader.doubleWord(at + 8).value_or(0);
        const uint64_t inFile = m_reader.doubleWord(at + 16).value_or(0);
        m_sections.push_back({.address = m_reader.doubleWord(at + 12).value_or(0),
                              .extent = std::max(inMemory, inFile),
                              .offset = *offset - *offset % sector,
                              .length = (inFile + sector - 1) / sector * sector});
    }
}

// From the address to the end of its section in the file. Empty when the file does not hold it.
FileSpan PeResources::fileSpan(uint64_t address) const {
    for (const auto& section : m_sections) {
        if (address < section.address || address - section.address >= section.extent)
            continue;
        const uint64_t within = address - section.address;
        const uint64_t offset = section.offset + within;
        if (within >= section.length || offset >= m_reader.size())
            return {};
        return {offset, std::min(section.length - within, m_reader.size() - offset)};
    }
    return {};
}

// The entries of a directory as far as they lie in the tree and may be visited.
std::vector<PeResources::Entry> PeResources::entries(uint32_t directory) {
    std::vector<Entry> result;
    if (directory + kDirectoryHeaderLength > m_tree.length)
        return result;
    const uint64_t start = m_tree.offset + directory;
    const auto count = m_reader.word(start + 12).value_or(0) + m_reader.word(start + 14).value_or(0);
    const auto room = (m_tree.length - directory - kDirectoryHeaderLength) / kDirectoryEntryLength;
    const auto held = std::min<uint64_t>(static_cast<uint64_t>(count), room);
    for (uint64_t index = 0; index < held && m_reader.mayVisit(); ++index) {
        const auto at = start + kDirectoryHeaderLength + index * kDirectoryEntryLength;
        const auto name = m_reader.doubleWord(at);
        const auto target = m_reader.doubleWord(at + 4);
        if (!name || !target)
            break;
        result.push_back({*name, *target});
    }
    return result;
}

std::vector<PeResources::Entry> PeResources::entriesOfType(uint32_t type) {
    for (const auto& entry : entries(0)) {
        if (entry.name == type && (entry.target & kHighBit) != 0)
            return entries(entry.target & ~kHighBit);
    }
    return {};
}

bool PeResources::leadsIntoTree(const Entry& entry) const {
    return (entry.target & ~kHighBit) + kDirectoryHeaderLength <= m_tree.length;
}

// The data of the first language, or of the entry itself where a linker left the level of languages
// out.
std::string PeResources::firstReadable(const Entry& entry) {
    if ((entry.target & kHighBit) == 0)
        return leafData(entry.target);
    for (const auto& language : entries(entry.target & ~kHighBit)) {
        if ((language.target & kHighBit) != 0)
            continue;
        if (auto data = leafData(language.target); !data.empty())
            return data;
    }
    return {};
}

std::string PeResources::leafData(uint32_t leaf) {
    const auto address = m_reader.doubleWord(m_tree.offset + leaf);
    const auto length = m_reader.doubleWord(m_tree.offset + leaf + 4);
    if (!address || !length)
        return {};
    const auto span = fileSpan(*address);
    const auto held = std::min({span.length, uint64_t{*length}, uint64_t{kLongestVersionResource}});
    return m_reader.bytes(span.offset, static_cast<size_t>(held));
}

} // namespace discaro::disc
