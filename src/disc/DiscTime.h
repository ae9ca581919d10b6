#pragma once

#include "disc/DiscBytes.h"

#include <ctime>

namespace discaro::disc {

// Stamps as discs write them. A stamp that is no date (all zero, a 13th month, the 30th of February) gives 0.

// ISO 9660 directory record: years since 1900, month, day, hour, minute, second, one byte each, and the offset from
// GMT in quarters of an hour. 7 bytes.
std::time_t recordTime(Bytes stamp);

// ISO 9660 volume descriptor and Rock Ridge's long form: "YYYYMMDDhhmmsscc" and the offset as above. 17 bytes.
std::time_t digitsTime(Bytes stamp);

// UDF: kind and offset from UTC in minutes (12 bits signed, -2047 for none), year (16 bits, signed), then month, day,
// hour, minute, second, one byte each, and fractions. 12 bytes, little-endian.
std::time_t udfTime(Bytes stamp);

} // namespace discaro::disc
