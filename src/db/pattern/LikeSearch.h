#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace discaro::db {

// Searches texts for a part of a `like` pattern that holds ? or # but no *, both folded. All places where the part may
// have begun are followed at once, a bit for each sign of it, so that a text takes time in proportion to its length
// times a sixty-fourth of the part's, whatever they hold.
class LikeSearch {
public:
    static constexpr size_t kNone = std::string_view::npos;

    explicit LikeSearch(std::string_view part);

    // Where the first occurrence from a place on ends, kNone when there is none.
    size_t findEnd(std::string_view text, size_t from);

private:
    using Bits = std::vector<uint64_t>;

    uint64_t* row(unsigned char byte) { return &m_rows[m_rowOf[byte] * m_words]; }
    void mark(unsigned char byte, size_t sign);
    void step(const uint64_t* allowed);
    // These take a character and return in which of its bytes the part has ended, 0 for none.
    size_t stepShort(char c);
    size_t stepLong(std::string_view character);
    bool ended() const { return (m_state[m_size / 64] >> m_size % 64 & 1U) != 0; }

    size_t m_size;
    size_t m_words;
    std::array<uint16_t, 256> m_rowOf{}; // row 0 serves all bytes that the part does not hold
    Bits m_rows;                         // the signs that a byte meets, for each byte in the part
    Bits m_any;                          // the signs that are ?
    Bits m_state;                        // bit n: the n first signs are met up to here
    size_t m_used = 1;                   // words of it, the rest being 0
    Bits m_waiting;                      // the same behind the character that is being read
};

} // namespace discaro::db
