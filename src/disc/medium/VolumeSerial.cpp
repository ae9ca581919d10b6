#include "disc/medium/VolumeSerial.h"

#include <array>

namespace discaro::disc {

std::string volumeSerial(Bytes descriptor) {
    std::array<uint8_t, 4> sums{};
    for (size_t i = 0; i < descriptor.size(); ++i)
        sums[i % 4] = static_cast<uint8_t>(sums[i % 4] + byteAt(descriptor, i));
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (const auto sum : sums) {
        text += kDigits[sum >> 4];
        text += kDigits[sum & 15];
    }
    text.insert(4, "-");
    return text;
}

} // namespace discaro::disc
