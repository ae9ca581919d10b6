#include "db/rows/RowNumbers.h"

#include <algorithm>

namespace discaro::db {

RowNumbers::RowNumbers(std::vector<int64_t> numbers) {
    if (numbers.empty())
        return;
    constexpr uint64_t kBitsForOne = 64; // as much as the number itself takes
    const auto [lowest, highest] = std::ranges::minmax(numbers);
    m_lowest = static_cast<uint64_t>(lowest);
    const uint64_t span = static_cast<uint64_t>(highest) - m_lowest;
    if (span / kBitsForOne >= numbers.size()) {
        m_numbers = std::move(numbers);
        std::ranges::sort(m_numbers);
        return;
    }
    m_span = span + 1;
    m_bits.resize(span / 64 + 1);
    for (const int64_t number : numbers) {
        const uint64_t place = static_cast<uint64_t>(number) - m_lowest;
        m_bits[place / 64] |= uint64_t{1} << place % 64;
    }
}

} // namespace discaro::db
