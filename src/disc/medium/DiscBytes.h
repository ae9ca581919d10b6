#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace discaro::disc {

// Fields of on-disc structures. Bytes that lie outside the span read as 0, so that a structure cut short is read
// without a check at every field.

using Bytes = std::span<const std::byte>;

inline uint8_t byteAt(Bytes bytes, size_t at) {
    return at < bytes.size() ? static_cast<uint8_t>(bytes[at]) : uint8_t{0};
}

template <std::unsigned_integral T>
T littleEndian(Bytes bytes, size_t at) {
    T value = 0;
    for (size_t i = sizeof(T); i-- > 0;)
        value = static_cast<T>(value << 8 | byteAt(bytes, at + i));
    return value;
}

template <std::unsigned_integral T>
T bigEndian(Bytes bytes, size_t at) {
    T value = 0;
    for (size_t i = 0; i < sizeof(T); ++i)
        value = static_cast<T>(value << 8 | byteAt(bytes, at + i));
    return value;
}

// The part of the span that begins at the offset, at most length bytes; what lies outside is left out.
inline Bytes part(Bytes bytes, size_t at, size_t length = std::dynamic_extent) {
    if (at >= bytes.size())
        return {};
    return bytes.subspan(at, length < bytes.size() - at ? length : bytes.size() - at);
}

inline std::string_view textOf(Bytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline bool holdsText(Bytes bytes, size_t at, std::string_view text) {
    return textOf(part(bytes, at, text.size())) == text;
}

} // namespace discaro::disc
