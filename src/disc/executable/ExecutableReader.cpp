#include "disc/executable/ExecutableReader.h"

#include <algorithm>
#include <span>

namespace discaro::disc {

namespace {

// The window begins on a sector of the medium.
constexpr uint64_t kSectorSize = 2048;

} // namespace

// The window's bytes are left as they are: clearing them costs more than all the rest for a file
// that is no executable.
ExecutableReader::ExecutableReader(const ByteSource& source)
    : m_source(source)
    , m_size(source.size()) {}

std::optional<uint16_t> ExecutableReader::word(uint64_t offset) {
    const auto* bytes = at(offset, 2);
    if (bytes == nullptr)
        return std::nullopt;
    return static_cast<uint16_t>(bytes[0] | bytes[1] << 8);
}

std::optional<uint32_t> ExecutableReader::doubleWord(uint64_t offset) {
    const auto* bytes = at(offset, 4);
    if (bytes == nullptr)
        return std::nullopt;
    return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

std::string ExecutableReader::bytes(uint64_t offset, size_t length) {
    if (offset >= m_size)
        return {};
    const auto there = static_cast<size_t>(std::min<uint64_t>(length, m_size - offset));
    if (!mayRead(there))
        return {};
    std::string result(there, '\0');
    result.resize(m_source.read(offset, std::as_writable_bytes(std::span(result))));
    return result;
}

bool ExecutableReader::mayVisit() {
    return m_visits < kEntryLimit && ++m_visits > 0;
}

// The value's bytes in the window, or null.
const unsigned char* ExecutableReader::at(uint64_t offset, size_t length) {
    if (offset >= m_size || m_size - offset < length)
        return nullptr;
    const auto inWindow = [&] { return offset >= m_windowStart && offset - m_windowStart + length <= m_windowLength; };
    if (!inWindow())
        moveWindow(offset);
    if (!inWindow())
        return nullptr;
    return reinterpret_cast<const unsigned char*>(m_window) + (offset - m_windowStart);
}

void ExecutableReader::moveWindow(uint64_t offset) {
    m_windowLength = 0;
    m_windowStart = offset - offset % kSectorSize;
    const auto length = static_cast<size_t>(std::min<uint64_t>(kWindowSize, m_size - m_windowStart));
    if (mayRead(length))
        m_windowLength = m_source.read(m_windowStart, std::span(m_window).first(length));
}

bool ExecutableReader::mayRead(size_t length) {
    if (length > m_allowance)
        return false;
    m_allowance -= length;
    return true;
}

} // namespace discaro::disc
