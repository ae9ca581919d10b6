#include "base/Text.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace discaro::base {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Windows-1252, bytes 0x80 to 0x9F. Source: the mapping table "cp1252" of the Unicode consortium.
constexpr std::array<char16_t, 32> kWindows1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void appendCodePoint(std::string& text, char32_t codePoint) {
    std::array<utf8proc_uint8_t, 4> buffer{};
    const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(codePoint), buffer.data());
    text.append(reinterpret_cast<const char*>(buffer.data()), static_cast<size_t>(length));
}

const utf8proc_uint8_t* bytesOf(std::string_view text) {
    return reinterpret_cast<const utf8proc_uint8_t*>(text.data());
}

char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// A run of combining marks longer than any real one: ordering a run costs the square of its length, and text from a
// disc may hold nothing else. The limit is that of the Unicode Stream-Safe Text Format (UAX #15).
constexpr int kLongestRun = 30;

// What canonical forms would turn into ASCII: the sign for kelvin, the Greek question mark, the Greek accent varia.
// They stay as they are, so that what begins with ASCII in its folded form does so as it is stored.
bool standsForAscii(utf8proc_int32_t codePoint) {
    return codePoint == 0x212A || codePoint == 0x37E || codePoint == 0x1FEF;
}

int combiningClass(utf8proc_int32_t codePoint) {
    return utf8proc_get_property(codePoint)->combining_class;
}

// A beginning of the text that can be composed by itself, or that stays as it is.
struct Piece {
    size_t length;
    bool asItIs;
};

Piece firstPiece(std::string_view text) {
    int run = 0;
    for (size_t at = 0; at < text.size();) {
        utf8proc_int32_t codePoint = 0;
        const auto length =
            utf8proc_iterate(bytesOf(text) + at, static_cast<utf8proc_ssize_t>(text.size() - at), &codePoint);
        if (length <= 0)
            return {text.size(), true};
        if (standsForAscii(codePoint))
            return at == 0 ? Piece{static_cast<size_t>(length), true} : Piece{at, false};
        run = combiningClass(codePoint) == 0 ? 0 : run + 1;
        if (run > kLongestRun)
            return {at, false};
        at += static_cast<size_t>(length);
    }
    return {text.size(), false};
}

std::string composedPiece(std::string_view text) {
    utf8proc_uint8_t* result = nullptr;
    const auto length = utf8proc_map(bytesOf(text), static_cast<utf8proc_ssize_t>(text.size()), &result,
                                     static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE));
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(result, &std::free);
    if (length < 0)
        return std::string(text);
    return {reinterpret_cast<const char*>(result), static_cast<size_t>(length)};
}

std::string composed(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto [length, asItIs] = firstPiece(text);
        const auto piece = text.substr(0, length);
        if (asItIs)
            result += piece;
        else
            result += composedPiece(piece);
        text.remove_prefix(length);
    }
    return result;
}

// A character's simple lower case, which is never an ASCII one for a character outside ASCII.
utf8proc_int32_t lowered(utf8proc_int32_t codePoint) {
    const auto lower = utf8proc_tolower(codePoint);
    return codePoint >= 0x80 && lower < 0x80 ? codePoint : lower;
}

// A character with the marks behind it, put into their canonical order and made small as it is appended. The last one
// is to be flushed.
class Cluster {
public:
    explicit Cluster(std::string& text)
        : m_text(text) {}
    Cluster(const Cluster&) = delete;
    Cluster& operator=(const Cluster&) = delete;

    void add(utf8proc_int32_t codePoint) {
        const int order = combiningClass(codePoint);
        if (order == 0 || m_size == m_marks.size())
            flush();
        size_t place = m_size++;
        for (; place > 0 && m_marks[place - 1].order > order; --place)
            m_marks[place] = m_marks[place - 1];
        m_marks[place] = {codePoint, order};
    }

    void flush() {
        for (size_t place = 0; place < m_size; ++place)
            appendCodePoint(m_text, static_cast<char32_t>(lowered(m_marks[place].codePoint)));
        m_size = 0;
    }

private:
    struct Mark {
        utf8proc_int32_t codePoint;
        int order;
    };

    std::string& m_text;
    std::array<Mark, kLongestRun + 2> m_marks{};
    size_t m_size = 0;
};

void addDecomposed(Cluster& cluster, utf8proc_int32_t codePoint) {
    if (standsForAscii(codePoint))
        return cluster.add(codePoint);
    // The longest canonical decomposition of a character has four code points.
    std::array<utf8proc_int32_t, 8> parts{};
    const auto count = utf8proc_decompose_char(codePoint, parts.data(), parts.size(), UTF8PROC_DECOMPOSE, nullptr);
    for (utf8proc_ssize_t part = 0; part < count; ++part)
        cluster.add(parts[static_cast<size_t>(part)]);
}

std::string decodeUtf16(std::string_view bytes, size_t highByte) {
    std::string result;
    result.reserve(bytes.size());
    const auto unitAt = [&](size_t at) {
        const auto high = static_cast<uint8_t>(bytes[at + highByte]);
        const auto low = static_cast<uint8_t>(bytes[at + 1 - highByte]);
        return static_cast<char32_t>(high << 8 | low);
    };
    for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
        char32_t unit = unitAt(at);
        const bool high = unit >= 0xD800 && unit < 0xDC00;
        if (high && at + 3 < bytes.size() && (unitAt(at + 2) & 0xFC00) == 0xDC00) {
            unit = 0x10000 + ((unit & 0x3FF) << 10) + (unitAt(at + 2) & 0x3FF);
            at += 2;
        } else if (unit >= 0xD800 && unit < 0xE000) {
            unit = kReplacement;
        }
        appendCodePoint(result, unit);
    }
    return result;
}

} // namespace

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isValidUtf8(std::string_view bytes) {
    for (size_t at = 0; at < bytes.size();) {
        if (static_cast<unsigned char>(bytes[at]) < 0x80) {
            ++at;
            continue;
        }
        utf8proc_int32_t codePoint = 0;
        const auto length =
            utf8proc_iterate(bytesOf(bytes) + at, static_cast<utf8proc_ssize_t>(bytes.size() - at), &codePoint);
        if (length <= 0)
            return false;
        at += static_cast<size_t>(length);
    }
    return true;
}

std::string decodeWindows1252(std::string_view bytes) {
    std::string result;
    result.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        appendCodePoint(result, byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80] : byte);
    }
    return result;
}

std::string decodeUnlabelled(std::string_view bytes) {
    return isValidUtf8(bytes) ? std::string(bytes) : decodeWindows1252(bytes);
}

std::string decodeUtf16Le(std::string_view bytes) {
    return decodeUtf16(bytes, 1);
}

std::string decodeUtf16Be(std::string_view bytes) {
    return decodeUtf16(bytes, 0);
}

std::string lowerCase(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        utf8proc_int32_t codePoint = 0;
        const auto length =
            utf8proc_iterate(bytesOf(text) + at, static_cast<utf8proc_ssize_t>(text.size() - at), &codePoint);
        if (length <= 0) {
            result += text[at++];
            continue;
        }
        appendCodePoint(result, static_cast<char32_t>(lowered(codePoint)));
        at += static_cast<size_t>(length);
    }
    return result;
}

std::string foldedForComparison(std::string_view text) {
    if (isAscii(text))
        return lowerAscii(text);
    return lowerCase(composed(text));
}

void appendOrderKey(std::string& key, std::string_view text) {
    Cluster cluster(key);
    for (size_t at = 0; at < text.size();) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            cluster.flush();
            key += asciiLower(text[at++]);
            continue;
        }
        utf8proc_int32_t codePoint = 0;
        const auto length =
            utf8proc_iterate(bytesOf(text) + at, static_cast<utf8proc_ssize_t>(text.size() - at), &codePoint);
        if (length <= 0) {
            cluster.flush();
            key += text[at++];
            continue;
        }
        addDecomposed(cluster, codePoint);
        at += static_cast<size_t>(length);
    }
    cluster.flush();
}

std::string orderKey(std::string_view text) {
    std::string key;
    key.reserve(text.size());
    appendOrderKey(key, text);
    return key;
}

bool equalFolded(std::string_view left, std::string_view right) {
    if (isAscii(left) && isAscii(right))
        return equalAscii(left, right);
    return foldedForComparison(left) == foldedForComparison(right);
}

std::string lowerAscii(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), asciiLower);
    return result;
}

bool equalAscii(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, asciiLower, asciiLower);
}

std::string_view trimBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace discaro::base
