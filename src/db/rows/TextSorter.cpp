#include "db/rows/TextSorter.h"

#include "base/Text.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace discaro::db {

namespace {

uint64_t firstBytes(std::string_view key) {
    uint64_t first = 0;
    std::memcpy(&first, key.data(), std::min(key.size(), sizeof(first)));
    if constexpr (std::endian::native == std::endian::little)
        first = __builtin_bswap64(first);
    return first;
}

} // namespace

void TextSorter::add(int64_t number, const RowText& text) {
    const size_t begin = m_keys.size();
    if (m_buffer.lowerAscii(text.bytes))
        m_keys += m_buffer.view();
    else
        base::appendOrderKey(m_keys, text.bytes);
    const std::string_view key = std::string_view(m_keys).substr(begin);
    m_rows.push_back({firstBytes(key), number, begin, static_cast<uint32_t>(key.size()), !text.null});
}

void TextSorter::sort() {
    std::ranges::sort(m_rows, [this](const Row& left, const Row& right) {
        if (left.text != right.text)
            return right.text;
        if (left.first != right.first)
            return left.first < right.first;
        const int order = keyOf(left).compare(keyOf(right));
        return order != 0 ? order < 0 : left.number < right.number;
    });
}

std::vector<int64_t> TextSorter::numbers() const {
    std::vector<int64_t> numbers(m_rows.size());
    std::ranges::transform(m_rows, numbers.begin(), &Row::number);
    return numbers;
}

} // namespace discaro::db
