#include "services/text/dates.h"

#include "services/text/numbers.h"
#include "services/text/text.h"

namespace services {

namespace {

constexpr std::int64_t secondsOfDay = 86400;

// The calendar repeats every 400 years. Counting years from March puts the leap day at the end, and
// 1970-01-01 is this many days after 0000-03-01.
constexpr std::int64_t daysOfEra = 146097;
constexpr std::int64_t daysToEpoch = 719468;

constexpr std::int64_t floorRemainder(std::int64_t value, std::int64_t divisor) {
    const std::int64_t remainder = value % divisor;
    return remainder < 0 ? remainder + divisor : remainder;
}

constexpr std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

// Days from the start of March to the start of the month, March being 0.
constexpr std::int64_t daysBeforeMonth(std::int64_t monthFromMarch) {
    return (153 * monthFromMarch + 2) / 5;
}

Text twoDigits(std::int64_t number) {
    return rightAlign(integerToText(number), 2, '0');
}

Text dayTextOf(const CalendarDate& date) {
    return concatenate(twoDigits(date.day), '.', twoDigits(date.month), '.',
                       integerToText(date.year));
}

}  // namespace

CalendarDate calendarDate(DateValue date) {
    const std::int64_t days = floorDivide(date, secondsOfDay) + daysToEpoch;
    const std::int64_t seconds = floorRemainder(date, secondsOfDay);
    const std::int64_t dayOfEra = floorRemainder(days, daysOfEra);
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / (daysOfEra - 1)) / 365;
    const std::int64_t dayOfYear =
        dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);  // from 1 March
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const bool nextYear = monthFromMarch >= 10;  // January and February

    CalendarDate result;
    result.year = floorDivide(days, daysOfEra) * 400 + yearOfEra + (nextYear ? 1 : 0);
    result.month = static_cast<int>(nextYear ? monthFromMarch - 9 : monthFromMarch + 3);
    result.day = static_cast<int>(dayOfYear - daysBeforeMonth(monthFromMarch) + 1);
    result.hour = static_cast<int>(seconds / 3600);
    result.minute = static_cast<int>(seconds / 60 % 60);
    result.second = static_cast<int>(seconds % 60);
    return result;
}

DateValue makeDate(std::int64_t year, int month, int day, int hour, int minute, int second) {
    // Sums are unsigned: years beyond what 64 bits of seconds hold wrap instead of overflowing.
    const auto wide = [](std::int64_t number) { return static_cast<std::uint64_t>(number); };
    const std::int64_t monthsFromMarch = std::int64_t{month} - 3;
    const auto marchYear =
        static_cast<std::int64_t>(wide(year) + wide(floorDivide(monthsFromMarch, 12)));
    const std::int64_t yearOfEra = floorRemainder(marchYear, 400);
    const std::int64_t dayOfEra = 365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100 +
                                  daysBeforeMonth(floorRemainder(monthsFromMarch, 12)) + day - 1;
    const std::uint64_t days =
        wide(floorDivide(marchYear, 400)) * wide(daysOfEra) + wide(dayOfEra - daysToEpoch);
    const std::int64_t seconds = std::int64_t{hour} * 3600 + std::int64_t{minute} * 60 + second;
    return static_cast<DateValue>(days * wide(secondsOfDay) + wide(seconds));
}

std::int64_t year(DateValue date) {
    return calendarDate(date).year;
}
int month(DateValue date) {
    return calendarDate(date).month;
}
int day(DateValue date) {
    return calendarDate(date).day;
}

Text dateAndTimeText(DateValue date) {
    const CalendarDate fields = calendarDate(date);
    return concatenate(dayTextOf(fields), ' ', twoDigits(fields.hour), ':',
                       twoDigits(fields.minute), ':', twoDigits(fields.second));
}

Text dayText(DateValue date) {
    return dayTextOf(calendarDate(date));
}

Text durationTextOfDigits(TextView seconds) {
    const bool isNegative = left(seconds, 1) == "-";
    if (isNegative) seconds.remove_prefix(1);
    // Division by hand, digit by digit.
    Text hours;
    int rest = 0;
    for (const char digit : seconds) {
        rest = rest * 10 + (digit - '0');
        const int quotient = rest / 3600;
        if (quotient != 0 || !hours.empty()) hours += static_cast<char>('0' + quotient);
        rest %= 3600;
    }
    if (hours.empty()) hours = "0";
    return concatenate(isNegative ? "-" : "", hours, ':', twoDigits(rest / 60), ':',
                       twoDigits(rest % 60));
}

Text durationText(std::int64_t seconds) {
    // Unsigned, as the smallest number has no positive counterpart.
    const auto bits = static_cast<std::uint64_t>(seconds);
    const std::uint64_t magnitude = seconds < 0 ? 0 - bits : bits;
    return concatenate(seconds < 0 ? "-" : "",
                       integerToText(static_cast<std::int64_t>(magnitude / 3600)), ':',
                       twoDigits(static_cast<std::int64_t>(magnitude / 60 % 60)), ':',
                       twoDigits(static_cast<std::int64_t>(magnitude % 60)));
}

}  // namespace services
