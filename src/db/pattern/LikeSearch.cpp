#include "db/pattern/LikeSearch.h"

#include "base/Utf8Step.h"

#include <algorithm>

namespace discaro::db {

namespace {

constexpr size_t kWordBits = 64;

void set(uint64_t* bits, size_t at) {
    bits[at / kWordBits] |= uint64_t{1} << at % kWordBits;
}

} // namespace

LikeSearch::LikeSearch(std::string_view part)
    : m_size(part.size())
    , m_words(part.size() / kWordBits + 1)
    , m_any(m_words)
    , m_state(m_words)
    , m_waiting(m_words) {
    uint16_t rows = 1;
    const auto needRow = [&](unsigned char byte) {
        if (m_rowOf[byte] == 0)
            m_rowOf[byte] = rows++;
    };
    for (const char c : part)
        if (c != '?' && c != '#')
            needRow(static_cast<unsigned char>(c));
    if (part.find('#') != kNone)
        for (unsigned char digit = '0'; digit <= '9'; ++digit)
            needRow(digit);
    for (size_t sign = 0; sign < m_size; ++sign)
        if (part[sign] == '?')
            set(m_any.data(), sign);
    m_rows.reserve(rows * m_words);
    for (uint16_t each = 0; each < rows; ++each)
        m_rows.insert(m_rows.end(), m_any.begin(), m_any.end());
    for (size_t sign = 0; sign < m_size; ++sign)
        mark(static_cast<unsigned char>(part[sign]), sign);
}

void LikeSearch::mark(unsigned char byte, size_t sign) {
    if (byte == '#') {
        for (unsigned char digit = '0'; digit <= '9'; ++digit)
            set(row(digit), sign);
    } else if (byte != '?') {
        set(row(byte), sign);
    }
}

// Takes one byte: what stood before an allowed sign stands behind it now.
void LikeSearch::step(const uint64_t* allowed) {
    uint64_t carried = 0;
    for (size_t word = 0; word < m_used; ++word) {
        const uint64_t met = m_state[word] & allowed[word];
        m_state[word] = met << 1 | carried;
        carried = met >> (kWordBits - 1);
    }
    if (carried != 0 && m_used < m_words)
        m_state[m_used++] = carried;
    while (m_used > 1 && m_state[m_used - 1] == 0)
        --m_used;
}

size_t LikeSearch::stepShort(char c) {
    step(row(static_cast<unsigned char>(c)));
    return ended() ? 1 : 0;
}

// A character of several bytes: a ? in front of it takes all of them, any other sign takes one.
size_t LikeSearch::stepLong(std::string_view character) {
    const size_t waiting = std::min(m_used + 1, m_words);
    uint64_t carried = 0;
    for (size_t word = 0; word < waiting; ++word) {
        const uint64_t met = m_state[word] & m_any[word];
        m_state[word] ^= met;
        m_waiting[word] = met << 1 | carried;
        carried = met >> (kWordBits - 1);
    }
    for (size_t at = 0; at < character.size(); ++at)
        if (stepShort(character[at]) != 0)
            return at + 1;
    for (size_t word = 0; word < waiting; ++word)
        m_state[word] |= m_waiting[word];
    m_used = std::max(m_used, waiting);
    return ended() ? character.size() : 0;
}

size_t LikeSearch::findEnd(std::string_view text, size_t from) {
    std::ranges::fill(m_state, 0);
    m_used = 1;
    for (size_t at = from; at < text.size();) {
        m_state[0] |= 1;
        const size_t length = base::lengthAt(text, at);
        const size_t end = length == 1 ? stepShort(text[at]) : stepLong(text.substr(at, length));
        if (end != 0)
            return at + end;
        at += length;
    }
    return kNone;
}

} // namespace discaro::db
