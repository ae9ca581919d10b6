#pragma once

#include "disc/medium/DiscBytes.h"

#include <ctime>

namespace discaro::disc {

// Stamps as discs write them. A stamp that is no date (all zero, a 13th month, the 30th of February) gives 0.

// A date and time of day as a disc writes them, in any order.
struct Date {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0;
};

// The stamp of a date at an offset from GMT.
std::time_t secondsOf(const Date& date, int minutesFromGmt);

// ISO 9660 directory record: years since 1900, month, day, hour, minute, second, one byte each, and the offset from
// GMT in quarters of an hour. 7 bytes.
std::time_t recordTime(Bytes stamp);

// ISO 9660 volume descriptor and Rock Ridge's long form: "YYYYMMDDhhmmsscc" and the offset as above. 17 bytes.
std::time_t digitsTime(Bytes stamp);

} // namespace discaro::disc
