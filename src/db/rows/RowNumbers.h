#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace discaro::db {

// A set of row numbers: a bit each, where they lie close enough together.
class RowNumbers {
public:
    explicit RowNumbers(std::vector<int64_t> numbers);

    bool contains(int64_t number) const {
        const uint64_t place = static_cast<uint64_t>(number) - m_lowest;
        if (place < m_span) [[likely]]
            return (m_bits[place / 64] >> place % 64 & 1U) != 0;
        return !m_numbers.empty() && std::ranges::binary_search(m_numbers, number);
    }

private:
    uint64_t m_lowest = 0;
    uint64_t m_span = 0; // bits in use
    std::vector<uint64_t> m_bits;
    std::vector<int64_t> m_numbers; // sorted; empty when m_bits serves
};

} // namespace discaro::db
