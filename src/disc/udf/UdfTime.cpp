#include "disc/udf/UdfTime.h"

#include "disc/medium/DiscTime.h"
#include "disc/udf/UdfLayout.h"

namespace discaro::disc {

std::time_t udfTime(Bytes stamp) {
    constexpr int kNoOffset = -2047;
    constexpr int kMostOffset = 1440;
    const auto low = littleEndian<uint16_t>(stamp, udf_time::kZone) & 0xFFF;
    int offset = low >= 0x800 ? low - 0x1000 : low;
    if (offset == kNoOffset || offset > kMostOffset || offset < -kMostOffset)
        offset = 0;
    const auto year = static_cast<int16_t>(littleEndian<uint16_t>(stamp, udf_time::kYear));
    if (year < 1 || year > 9999)
        return 0;
    const Date date{year,
                    byteAt(stamp, udf_time::kMonth),
                    byteAt(stamp, udf_time::kDay),
                    byteAt(stamp, udf_time::kHour),
                    byteAt(stamp, udf_time::kMinute),
                    byteAt(stamp, udf_time::kSecond)};
    return secondsOf(date, offset);
}

} // namespace discaro::disc
