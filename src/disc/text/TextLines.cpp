#include "disc/text/TextLines.h"

#include "base/Text.h"
#include "base/Utf8Step.h"

#include <algorithm>
#include <span>

namespace discaro::disc {

namespace {

constexpr std::string_view kMarkUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kMarkUtf16Le = "\xFF\xFE";
constexpr std::string_view kMarkUtf16Be = "\xFE\xFF";
constexpr unsigned kEndMark = 0x1A;

// The bytes that the first byte of a UTF-8 character announces; 1 for a byte that begins none.
size_t announcedLength(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
}

// Without the beginning of a UTF-8 character whose end is missing.
std::string_view withoutHalfCharacter(std::string_view text) {
    size_t lead = text.size();
    while (lead > 0 && text.size() - lead < 3 && base::isContinuation(text[lead - 1]))
        --lead;
    if (lead == 0 || announcedLength(text[lead - 1]) <= text.size() - lead + 1)
        return text;
    const auto whole = text.substr(0, lead - 1);
    return base::isValidUtf8(whole) ? whole : text;
}

} // namespace

TextLineReader::TextLineReader(const ByteSource& source, size_t limit)
    : m_source(source)
    , m_end(std::min<uint64_t>(source.size(), limit))
    , m_cut(source.size() > limit) {}

std::optional<std::string> TextLineReader::next() {
    readMark();
    std::string line;
    for (auto value = peek(); value; value = peek()) {
        if (*value == '\r' || *value == '\n') {
            takeLineEnd(*value);
            return decoded(line);
        }
        line.append(m_held.substr(0, unit()));
        m_held.remove_prefix(unit());
    }
    const auto last = m_cut && m_encoding == Encoding::Unlabelled ? withoutHalfCharacter(line) : line;
    return last.empty() ? std::nullopt : std::optional(decoded(last));
}

void TextLineReader::readMark() {
    if (m_markRead)
        return;
    hold(kMarkUtf8.size());
    m_markRead = true;
    const auto begins = [this](std::string_view mark) {
        const bool found = m_held.starts_with(mark);
        m_held.remove_prefix(found ? mark.size() : 0);
        return found;
    };
    if (begins(kMarkUtf16Le))
        m_encoding = Encoding::Utf16Le;
    else if (begins(kMarkUtf16Be))
        m_encoding = Encoding::Utf16Be;
    else
        begins(kMarkUtf8);
}

// Reads on until the length is held; false at the end of the text.
bool TextLineReader::hold(size_t length) {
    while (m_held.size() < length) {
        std::ranges::copy(m_held, m_buffer);
        const auto room = std::span(m_buffer).subspan(m_held.size());
        const auto wanted = static_cast<size_t>(std::min<uint64_t>(room.size(), m_end - m_position));
        const auto count = wanted > 0 ? m_source.read(m_position, std::as_writable_bytes(room.first(wanted))) : 0;
        m_held = std::string_view(m_buffer, m_held.size() + count);
        m_position += count;
        if (count == 0)
            return false;
    }
    return true;
}

// The next character of the text as far as line ends and the end mark are concerned; nothing at the
// end.
std::optional<unsigned> TextLineReader::peek() {
    if (!hold(unit()))
        return std::nullopt;
    const auto first = static_cast<unsigned char>(m_held[0]);
    const unsigned second = unit() == 2 ? static_cast<unsigned char>(m_held[1]) : 0U;
    const unsigned value = m_encoding == Encoding::Utf16Be ? first << 8 | second : second << 8 | first;
    if (m_behindReturn) {
        m_behindReturn = false;
        if (value == '\n') {
            m_held.remove_prefix(unit());
            return peek();
        }
    }
    if (value != kEndMark)
        return value;
    m_cut = false;
    return std::nullopt;
}

void TextLineReader::takeLineEnd(unsigned value) {
    m_held.remove_prefix(unit());
    m_behindReturn = value == '\r';
}

std::string TextLineReader::decoded(std::string_view line) const {
    switch (m_encoding) {
    case Encoding::Utf16Le:
        return base::decodeUtf16Le(line);
    case Encoding::Utf16Be:
        return base::decodeUtf16Be(line);
    case Encoding::Unlabelled:
        break;
    }
    return base::decodeUnlabelled(line);
}

std::vector<std::string> readTextLines(const ByteSource& source, size_t limit) {
    std::vector<std::string> lines;
    TextLineReader reader(source, limit);
    for (auto line = reader.next(); line; line = reader.next())
        lines.push_back(std::move(*line));
    return lines;
}

void readTextLines(const ByteSource& source, size_t limit, const std::function<void(std::string_view)>& callback) {
    TextLineReader reader(source, limit);
    for (auto line = reader.next(); line; line = reader.next())
        callback(*line);
}

} // namespace discaro::disc
