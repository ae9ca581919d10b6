#include "disc/executable/Executable.h"

#include <string_view>

namespace discaro::disc {

namespace {

// The stub's header, up to and with the place of the new header.
constexpr size_t kHeadLength = 64;
constexpr uint64_t kNewHeader = 0x3C;

constexpr std::string_view kStubLetters = "MZ";
constexpr uint32_t kPeLetters = 0x0000'4550; // "PE", two NULs
constexpr uint16_t kNeLetters = 0x454E;      // "NE"

constexpr uint64_t kIconHeaderLength = 6;
constexpr uint64_t kIconEntryLength = 16;

} // namespace

Executable::Executable(const ByteSource& source)
    : m_reader(source)
    , m_head(m_reader.bytes(0, kHeadLength)) {
    if (m_head.size() == kHeadLength && m_head.starts_with(kStubLetters))
        openResources(m_reader.doubleWord(kNewHeader).value_or(0));
}

void Executable::openResources(uint64_t header) {
    if (m_reader.doubleWord(header) == kPeLetters)
        m_resources.emplace<PeResources>(m_reader, header);
    else if (m_reader.word(header) == kNeLetters)
        m_resources.emplace<NeResources>(m_reader, header);
}

int64_t Executable::icons() {
    if (auto* pe = std::get_if<PeResources>(&m_resources))
        return pe->iconGroups();
    if (auto* ne = std::get_if<NeResources>(&m_resources))
        return ne->iconGroups();
    return isIconFile() ? 1 : 0;
}

std::string Executable::versionResource() {
    if (auto* pe = std::get_if<PeResources>(&m_resources))
        return pe->versionResource();
    if (auto* ne = std::get_if<NeResources>(&m_resources))
        return ne->versionResource();
    return {};
}

// An icon or cursor file has no letters of its own: a reserved 0, its kind, and a list of pictures.
// So all of the list must make sense: each picture has bytes, behind the list and inside the file.
bool Executable::isIconFile() {
    using namespace std::string_view_literals;
    if (!m_head.starts_with("\0\0\1\0"sv) && !m_head.starts_with("\0\0\2\0"sv))
        return false;
    const uint64_t count = m_reader.word(4).value_or(0);
    const uint64_t list = kIconHeaderLength + count * kIconEntryLength;
    for (uint64_t entry = kIconHeaderLength; entry < list; entry += kIconEntryLength) {
        const uint64_t length = m_reader.doubleWord(entry + 8).value_or(0);
        const uint64_t offset = m_reader.doubleWord(entry + 12).value_or(0);
        if (!m_reader.mayVisit() || length == 0 || offset < list || offset + length > m_reader.size())
            return false;
    }
    return count > 0;
}

} // namespace discaro::disc
