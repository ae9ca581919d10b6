#pragma once

#include "disc/medium/Medium.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace discaro::disc {

// A stretch of a file, in bytes.
struct FileSpan {
    uint64_t offset = 0;
    uint64_t length = 0;
};

// A bounded look into a file whose bytes are not trusted. Small values come out of one window of
// the file that moves to where it is wanted; no offset is too wild to ask for. What was allowed for
// a file being used up looks like the end of the file, so a walk along hostile offsets ends. Values
// are little-endian. Only the source's own errors are thrown. The source must outlive the reader.
class ExecutableReader {
public:
    static constexpr uint64_t kReadLimit = uint64_t{4} << 20; // bytes asked of the source
    static constexpr int kEntryLimit = 10'000;                // visits, see mayVisit

    explicit ExecutableReader(const ByteSource& source);

    uint64_t size() const { return m_size; }

    // Nothing where the value does not lie in the file.
    std::optional<uint16_t> word(uint64_t offset);
    std::optional<uint32_t> doubleWord(uint64_t offset);

    // The bytes from the offset on, read past the window: at most the length, fewer at the end of
    // the file. The caller has bounded the length.
    std::string bytes(uint64_t offset, size_t length);

    // Counts one table entry that a walk comes to; false once a file has had all the visits it may
    // have.
    bool mayVisit();

private:
    static constexpr size_t kWindowSize = 4096;

    const unsigned char* at(uint64_t offset, size_t length);
    void moveWindow(uint64_t offset);
    bool mayRead(size_t length);

    const ByteSource& m_source;
    uint64_t m_size;
    uint64_t m_allowance = kReadLimit;
    int m_visits = 0;
    uint64_t m_windowStart = 0;
    size_t m_windowLength = 0;
    std::byte m_window[kWindowSize]; // its first m_windowLength bytes are valid
};

} // namespace discaro::disc
