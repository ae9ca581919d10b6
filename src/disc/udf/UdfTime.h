#pragma once

#include "disc/medium/DiscBytes.h"

#include <ctime>

namespace discaro::disc {

// UDF: kind and offset from UTC in minutes (12 bits signed, -2047 for none), year (16 bits, signed), then month, day,
// hour, minute, second, one byte each, and fractions. 12 bytes, little-endian. A stamp that
// is no date gives 0. ECMA-167 1/7.3.
std::time_t udfTime(Bytes stamp);

} // namespace discaro::disc
