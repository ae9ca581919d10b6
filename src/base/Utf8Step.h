#pragma once

#include <cstddef>
#include <string_view>

namespace discaro::base {

inline bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Bytes of the character at a place: 1 for a byte that is not part of any.
inline size_t lengthAt(std::string_view text, size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0xC2 || lead >= 0xF5)
        return 1;
    const size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (at + length > text.size())
        return 1;
    for (size_t next = at + 1; next < at + length; ++next)
        if (!isContinuation(text[next]))
            return 1;
    return length;
}

} // namespace discaro::base
