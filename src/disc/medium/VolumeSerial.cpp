#include "disc/medium/VolumeSerial.h"

#include <array>

namespace discaro::disc {

std::string serialText(uint32_t serial) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (int shift = 28; shift >= 0; shift -= 4)
        text += kDigits[serial >> shift & 15];
    text.insert(4, "-");
    return text;
}

std::string volumeSerial(Bytes descriptor) {
    std::array<uint8_t, 4> sums{};
    for (size_t i = 0; i < descriptor.size(); ++i)
        sums[i % 4] = static_cast<uint8_t>(sums[i % 4] + byteAt(descriptor, i));
    uint32_t serial = 0;
    for (const auto sum : sums)
        serial = serial << 8 | sum;
    return serialText(serial);
}

} // namespace discaro::disc
