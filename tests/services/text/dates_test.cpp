#include "services/text/dates.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

using services::calendarDate;
using services::CalendarDate;
using services::dateAndTimeText;
using services::DateValue;
using services::dayText;
using services::durationText;
using services::durationTextOfDigits;
using services::makeDate;

struct Row {
    const char* name;
    DateValue date;
    const char* text;
};

const Row rows[] = {
    {"the beginning", 0, "01.01.1970 00:00:00"},
    {"one second before", -1, "31.12.1969 23:59:59"},
    {"one day before", -86400, "31.12.1969 00:00:00"},
    {"just more than a day before", -86401, "30.12.1969 23:59:59"},
    {"end of the first day", 86399, "01.01.1970 23:59:59"},
    {"leap day of a 400th year", 951782400, "29.02.2000 00:00:00"},
    {"day after the leap day", 951868800, "01.03.2000 00:00:00"},
    {"a training", 1362506649, "05.03.2013 18:04:09"},
    {"a full hour", 64800, "01.01.1970 18:00:00"},
    {"a full minute", 86340, "01.01.1970 23:59:00"},
    {"largest of 32 bits", INT32_MAX, "19.01.2038 03:14:07"},
    {"smallest of 32 bits", INT32_MIN, "13.12.1901 20:45:52"},
    {"no leap day in 2100", 4107542400, "01.03.2100 00:00:00"},
    {"five-digit year", 253402300800, "01.01.10000 00:00:00"},
};

TEST(Dates, AreShownWithTwoDigitFields) {
    for (const Row& row : rows)
        EXPECT_EQ(row.text, dateAndTimeText(row.date)) << row.name;
}

TEST(Dates, TheDayIsTheFirstTenCharacters) {
    EXPECT_EQ("05.03.2013", dayText(1362506649));
    EXPECT_EQ("31.12.1969", dayText(-1));
}

TEST(Dates, AreTakenApartIntoTheirFields) {
    const CalendarDate fields = calendarDate(1362506649);
    EXPECT_EQ(2013, fields.year);
    EXPECT_EQ(3, fields.month);
    EXPECT_EQ(5, fields.day);
    EXPECT_EQ(18, fields.hour);
    EXPECT_EQ(4, fields.minute);
    EXPECT_EQ(9, fields.second);
    EXPECT_EQ(2013, services::year(1362506649));
    EXPECT_EQ(3, services::month(1362506649));
    EXPECT_EQ(5, services::day(1362506649));
}

TEST(Dates, NoTimeZoneIsEverApplied) {
    const char* const zone = std::getenv("TZ");
    const std::string before = zone == nullptr ? "" : zone;
    setenv("TZ", "XYZ-5:30XYD", 1);
    tzset();
    const auto text = dateAndTimeText(1362506649);
    const auto date = makeDate(2013, 7, 5, 18, 4, 9);
    zone == nullptr ? unsetenv("TZ") : setenv("TZ", before.c_str(), 1);
    tzset();
    EXPECT_EQ("05.03.2013 18:04:09", text);
    EXPECT_EQ("05.07.2013 18:04:09", dateAndTimeText(date));
}

TEST(Dates, EveryDayOfEightHundredYearsComesBack) {
    constexpr int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    DateValue expected = makeDate(1600, 1, 1, 0, 0, 0);
    EXPECT_EQ(-11676096000, expected);
    for (int year = 1600; year < 2400; ++year) {
        const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        for (int month = 1; month <= 12; ++month) {
            const int days = lengths[month - 1] + (month == 2 && leap ? 1 : 0);
            for (int day = 1; day <= days; ++day) {
                ASSERT_EQ(expected, makeDate(year, month, day, 0, 0, 0));
                const CalendarDate fields = calendarDate(expected + 86399);
                ASSERT_EQ(year, fields.year);
                ASSERT_EQ(month, fields.month);
                ASSERT_EQ(day, fields.day);
                ASSERT_EQ(23, fields.hour);
                expected += 86400;
            }
        }
    }
}

TEST(Dates, FieldsBeyondTheirRangeCarryOver) {
    EXPECT_EQ(makeDate(2014, 1, 5, 0, 0, 0), makeDate(2013, 13, 5, 0, 0, 0));
    EXPECT_EQ(makeDate(2012, 12, 5, 0, 0, 0), makeDate(2013, 0, 5, 0, 0, 0));
    EXPECT_EQ(makeDate(2011, 11, 5, 0, 0, 0), makeDate(2013, -13, 5, 0, 0, 0));
    for (int month = -100; month <= 100; ++month) {
        const int years = (month + 1199) / 12 - 100;  // January of year 0 is month 1
        EXPECT_EQ(makeDate(2013 + years, month - 12 * years, 5, 0, 0, 0),
                  makeDate(2013, month, 5, 0, 0, 0))
            << month;
    }
    EXPECT_EQ(makeDate(2013, 3, 1, 0, 0, 0), makeDate(2013, 2, 29, 0, 0, 0));
    EXPECT_EQ(makeDate(2013, 2, 28, 0, 0, 0), makeDate(2013, 3, 0, 0, 0, 0));
    EXPECT_EQ(makeDate(2013, 3, 6, 1, 0, 0), makeDate(2013, 3, 5, 25, 0, 0));
    EXPECT_EQ(makeDate(2013, 3, 4, 23, 58, 59), makeDate(2013, 3, 5, 0, -1, -1));
}

TEST(Dates, AnyNumberHasADate) {
    for (const DateValue date : {INT64_MIN, INT64_MIN + 1, INT64_MAX}) {
        const CalendarDate fields = calendarDate(date);
        EXPECT_GE(fields.month, 1);
        EXPECT_LE(fields.month, 12);
        EXPECT_GE(fields.day, 1);
        EXPECT_LE(fields.day, 31);
        EXPECT_EQ(date, makeDate(fields.year, fields.month, fields.day, fields.hour, fields.minute,
                                 fields.second));
    }
}

TEST(Dates, AnyFieldsCanBePutTogether) {
    // What does not fit wraps; the sanitizers see to it that it is nothing worse.
    const auto least = makeDate(INT64_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN);
    const auto most = makeDate(INT64_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX);
    EXPECT_NE(least, most);
}

TEST(Dates, DurationsHaveHoursWithoutPadding) {
    EXPECT_EQ("0:00:00", durationText(0));
    EXPECT_EQ("1:02:05", durationText(3725));
    EXPECT_EQ("0:59:59", durationText(3599));
    EXPECT_EQ("100:00:01", durationText(360001));
    EXPECT_EQ("2562047788015215:30:07", durationText(INT64_MAX));
}

TEST(Dates, NegativeDurationsAreAMinusAndTheirMagnitude) {
    EXPECT_EQ("-0:00:01", durationText(-1));
    EXPECT_EQ("-1:02:05", durationText(-3725));
    EXPECT_EQ("-2562047788015215:30:08", durationText(INT64_MIN));
}

TEST(Dates, DurationsBeyond64BitsAreWrittenInFull) {
    for (const std::int64_t seconds :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{59}, std::int64_t{3599},
          std::int64_t{3600}, std::int64_t{360001}, std::int64_t{-3725}, INT64_MAX, INT64_MIN}) {
        EXPECT_EQ(durationText(seconds), durationTextOfDigits(std::to_string(seconds)));
    }
    EXPECT_EQ("2562047788015215:30:08", durationTextOfDigits("9223372036854775808"));
    EXPECT_EQ("-277777777777777777777777:46:40",
              durationTextOfDigits("-1000000000000000000000000000"));
}

}  // namespace
