#pragma once

#include "disc/medium/Medium.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::disc {

// How much of a text file is read at most, in bytes.
constexpr size_t kTextLimit = size_t{1} << 20;

// The lines of a small text file such as autorun.inf, one after the other, as UTF-8.
//
// A line ends with CR LF, LF or CR; what follows the last end is a line too unless it is empty. The
// byte 0x1A, the end mark of old text files, ends the text. A file that begins with a byte order
// mark of UTF-8 or UTF-16 is read so; of any other each line is UTF-8 when it is well formed, else
// Windows-1252. NULs stay in the line.
//
// The text also ends where the limit of bytes is reached: the line there is cut, at a whole
// character. So memory is bounded by the limit even for a file without line ends. The source must
// outlive the reader.
class TextLineReader {
public:
    explicit TextLineReader(const ByteSource& source, size_t limit = kTextLimit);
    TextLineReader(const TextLineReader&) = delete;
    TextLineReader& operator=(const TextLineReader&) = delete;

    // The next line without its end, or nothing behind the last one. Throws what the source throws;
    // the whole lines before the damage have been given by then.
    std::optional<std::string> next();

private:
    enum class Encoding { Unlabelled, Utf16Le, Utf16Be };

    size_t unit() const { return m_encoding == Encoding::Unlabelled ? 1 : 2; }
    void readMark();
    bool hold(size_t length);
    std::optional<unsigned> peek();
    void takeLineEnd(unsigned value);
    std::string decoded(std::string_view line) const;

    const ByteSource& m_source;
    uint64_t m_end;          // of the text: the file's size or the limit
    bool m_cut;              // the limit ends it
    uint64_t m_position = 0; // of what is read next
    char m_buffer[8192];
    std::string_view m_held; // read but not taken yet, in the buffer
    Encoding m_encoding = Encoding::Unlabelled;
    bool m_markRead = false;
    bool m_behindReturn = false; // a line feed that comes now belongs to the line end before
};

// All lines, or all handed to the callback: each line before the next part of the file is read.
std::vector<std::string> readTextLines(const ByteSource& source, size_t limit = kTextLimit);
void readTextLines(const ByteSource& source, size_t limit, const std::function<void(std::string_view)>& callback);

} // namespace discaro::disc
