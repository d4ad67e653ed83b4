#include "base/civil_calendar.h"

#include "base/integer_division.h"
#include "base/time_units.h"

namespace quorvel {
namespace {

constexpr std::int64_t daysPerEra = 146097; // of 400 years
constexpr std::int64_t yearsPerEra = 400;
constexpr std::int64_t monthsPerYear = 12;
constexpr std::int64_t daysPerWeek = 7;
constexpr std::int64_t lastPlainYear = 9999;
constexpr std::int64_t marchFirstYearZero = 719468; // days before 1970-01-01

// Days from 1 March to the first of a month that counts from March.
std::int64_t daysBeforeMonthFromMarch(std::int64_t monthFromMarch) {
    return (153 * monthFromMarch + 2) / 5;
}

// In small numbers, as nearly all dates are such ones.
std::int64_t dayNumberOfPlainDate(std::uint32_t year, std::uint32_t month, std::int64_t day) {
    const bool isBeforeMarch = month < 3;
    const std::uint32_t marchYear = year - (isBeforeMarch ? 1 : 0);
    const std::uint32_t monthFromMarch = isBeforeMarch ? month + 9 : month - 3;
    const std::uint32_t centuries = marchYear / 100;
    const std::uint32_t firstOfMonth = marchYear * 365 + marchYear / 4 - centuries + centuries / 4 +
                                       (153 * monthFromMarch + 2) / 5;
    return firstOfMonth + day - 1 - marchFirstYearZero;
}

} // namespace

// Years begin in March here, so that the leap day is the last day of its year.
std::int64_t dayNumber(std::int64_t year, std::int64_t month, std::int64_t day) {
    if (year >= 1 && year <= lastPlainYear && month >= 1 && month <= monthsPerYear) {
        return dayNumberOfPlainDate(static_cast<std::uint32_t>(year),
                                    static_cast<std::uint32_t>(month), day);
    }
    const std::int64_t monthsFromMarch = year * monthsPerYear + month - 3;
    const std::int64_t marchYear = floorDivision(monthsFromMarch, monthsPerYear);
    const std::int64_t monthFromMarch = monthsFromMarch - marchYear * monthsPerYear;
    const std::int64_t era = floorDivision(marchYear, yearsPerEra);
    const std::int64_t yearOfEra = marchYear - era * yearsPerEra;
    const std::int64_t firstOfMonth = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 +
                                      daysBeforeMonthFromMarch(monthFromMarch);
    return era * daysPerEra + firstOfMonth + day - 1 - marchFirstYearZero;
}

CivilDay civilDay(std::int64_t number) {
    const std::int64_t shifted = number + marchFirstYearZero;
    const std::int64_t era = floorDivision(shifted, daysPerEra);
    const std::int64_t dayOfEra = shifted - era * daysPerEra;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const std::int64_t day = dayOfYear - daysBeforeMonthFromMarch(monthFromMarch) + 1;
    const bool nextYear = monthFromMarch >= 10;
    return {era * yearsPerEra + yearOfEra + (nextYear ? 1 : 0),
            static_cast<int>(nextYear ? monthFromMarch - 9 : monthFromMarch + 3),
            static_cast<int>(day)};
}

// 1970-01-01 was a Thursday.
int weekdayOf(std::int64_t number) {
    const std::int64_t fromSunday = number + 4;
    return static_cast<int>(fromSunday - floorDivision(fromSunday, daysPerWeek) * daysPerWeek) + 1;
}

std::int64_t civilDays(const CivilTime& time) {
    return dayNumber(time.year, time.month, time.day);
}

std::int64_t civilSeconds(const CivilTime& time) {
    return civilDays(time) * secondsPerDay + time.hour * secondsPerHour +
           time.minute * secondsPerMinute + time.second;
}

std::int64_t dayOf(std::int64_t seconds) {
    return floorDivision(seconds, secondsPerDay);
}

CivilTime civilFromSeconds(std::int64_t seconds) {
    const std::int64_t days = dayOf(seconds);
    const CivilDay day = civilDay(days);
    const int ofDay = static_cast<int>(seconds - days * secondsPerDay);
    return {
        static_cast<int>(day.year), day.month, day.day, ofDay / 3600, ofDay / 60 % 60, ofDay % 60};
}

} // namespace quorvel
