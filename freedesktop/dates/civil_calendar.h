// Day numbers of the proleptic Gregorian calendar, whatever calendar the locale prefers.
#pragma once

#include <cstdint>

namespace quorvel::freedesktop {

struct CivilDay {
    std::int64_t year = 1970;
    int month = 1; // from 1
    int day = 1;   // from 1
    bool operator==(const CivilDay&) const = default;
};

// Days since 1970-01-01. A month or day beyond its range carries over.
std::int64_t dayNumber(std::int64_t year, std::int64_t month, std::int64_t day);
CivilDay civilDay(std::int64_t dayNumber);
int weekdayOf(std::int64_t dayNumber); // 1 is Sunday

} // namespace quorvel::freedesktop
