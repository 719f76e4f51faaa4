// Date values: whole seconds since 1970-01-01 00:00:00, wall-clock time counted as if it were UTC.
// No conversion ever applies a time zone or daylight saving. Dates before 1970 are floored, so that
// -1 is 31.12.1969 23:59:59. The calendar is the proleptic Gregorian one.
#pragma once

#include <cstdint>

#include "services/text/latin1.h"

namespace services {

using DateValue = std::int64_t;

struct CalendarDate {
    std::int64_t year = 1970;
    int month = 1;  // 1 to 12
    int day = 1;    // 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0;
};

CalendarDate calendarDate(DateValue date);

// Fields beyond their range carry over (month 13 is January of the next year, hour 25 one o'clock
// of the next day).
DateValue makeDate(std::int64_t year, int month, int day, int hour, int minute, int second);

std::int64_t year(DateValue date);
int month(DateValue date);
int day(DateValue date);

// "05.03.2013 18:04:09": every field but the year two digits with a leading zero.
Text dateAndTimeText(DateValue date);

// "05.03.2013": the first ten characters of the text above (for years of four digits).
Text dayText(DateValue date);

// Seconds as "1:02:05": hours without padding, minutes and seconds two digits. A negative duration
// is a "-" and the text of its magnitude.
Text durationText(std::int64_t seconds);

// The same of seconds beyond 64 bits, given as decimal digits behind an optional "-".
Text durationTextOfDigits(TextView seconds);

}  // namespace services
