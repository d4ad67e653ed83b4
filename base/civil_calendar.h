// Days and local times of the proleptic Gregorian calendar, whatever calendar the locale prefers.
#pragma once

#include <cstdint>

namespace quorvel {

struct CivilDay {
    std::int64_t year = 1970;
    int month = 1; // from 1
    int day = 1;   // from 1
    bool operator==(const CivilDay&) const = default;
};

// A local time. Month and day count from 1. Fields beyond their range carry over, as in 25:00 on
// the 31st.
struct CivilTime {
    int year = 1;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    bool operator==(const CivilTime&) const = default;
};

constexpr bool isLeapYear(std::int64_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}
// The month counts from 1.
constexpr int daysInMonth(std::int64_t year, int month) {
    constexpr int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear(year) ? 29 : lengths[month - 1];
}

// Days since 1970-01-01. A month or day beyond its range carries over.
std::int64_t dayNumber(std::int64_t year, std::int64_t month, std::int64_t day);
CivilDay civilDay(std::int64_t dayNumber);
int weekdayOf(std::int64_t dayNumber); // 1 is Sunday

// A local time as a number: the seconds since 1970 as if it were one of UTC.
std::int64_t civilSeconds(const CivilTime& time);
CivilTime civilFromSeconds(std::int64_t seconds); // of a year that an int holds
std::int64_t civilDays(const CivilTime& time);    // since 1970-01-01
std::int64_t dayOf(std::int64_t seconds);         // likewise

} // namespace quorvel
