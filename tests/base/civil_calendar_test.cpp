// Day numbers against known days, and against each other over ten thousand years.
#include "base/civil_calendar.h"

#include <gtest/gtest.h>

namespace quorvel {
namespace {

TEST(CivilCalendar, KnowsKnownDays) {
    EXPECT_EQ(dayNumber(1970, 1, 1), 0);
    EXPECT_EQ(dayNumber(2001, 1, 1), 11323);
    EXPECT_EQ(dayNumber(1, 1, 1), -719162);
    EXPECT_EQ(dayNumber(9999, 12, 31), 2932896);
    EXPECT_EQ(dayNumber(2024, 2, 29), dayNumber(2024, 3, 1) - 1);
    EXPECT_EQ(dayNumber(1900, 2, 28), dayNumber(1900, 3, 1) - 1);
}

TEST(CivilCalendar, CarriesMonthsAndDaysOver) {
    EXPECT_EQ(dayNumber(2025, 13, 1), dayNumber(2026, 1, 1));
    EXPECT_EQ(dayNumber(2026, 0, 1), dayNumber(2025, 12, 1));
    EXPECT_EQ(dayNumber(2026, 2, 31), dayNumber(2026, 3, 3));
    EXPECT_EQ(dayNumber(2026, 1, 0), dayNumber(2025, 12, 31));
}

TEST(CivilCalendar, GoesThereAndBack) {
    const std::int64_t first = dayNumber(0, 1, 1);
    const std::int64_t last = dayNumber(10001, 1, 1);
    CivilDay before = civilDay(first - 1);
    EXPECT_EQ(before, (CivilDay{-1, 12, 31}));
    for (std::int64_t number = first; number < last; ++number) {
        const CivilDay day = civilDay(number);
        ASSERT_EQ(dayNumber(day.year, day.month, day.day), number);
        ASSERT_TRUE(day.day == before.day + 1 || day.day == 1) << number;
        before = day;
    }
}

TEST(CivilCalendar, CountsTheSecondsOfLocalTimes) {
    EXPECT_EQ(civilSeconds({1970, 1, 1, 0, 0, 0}), 0);
    EXPECT_EQ(civilSeconds({2001, 1, 1, 0, 0, 0}), 978307200);
    EXPECT_EQ(civilSeconds({1969, 12, 31, 23, 59, 59}), -1);
    EXPECT_EQ(civilFromSeconds(-1), (CivilTime{1969, 12, 31, 23, 59, 59}));
    EXPECT_EQ(civilFromSeconds(978307200), (CivilTime{2001, 1, 1, 0, 0, 0}));
    EXPECT_EQ(civilSeconds({2026, 1, 31, 25, 0, -1}), civilSeconds({2026, 2, 1, 0, 59, 59}));
    EXPECT_EQ(dayOf(-1), -1);
    EXPECT_EQ(dayOf(0), 0);
}

TEST(CivilCalendar, KnowsWeekdays) {
    EXPECT_EQ(weekdayOf(dayNumber(1970, 1, 1)), 5);
    EXPECT_EQ(weekdayOf(dayNumber(2026, 3, 10)), 3);
    EXPECT_EQ(weekdayOf(dayNumber(1, 1, 1)), 2);
    EXPECT_EQ(weekdayOf(dayNumber(2026, 3, 15)), 1);
}

TEST(DaysInMonth, ReachFromOneFirstDayToTheNext) {
    for (const std::int64_t year : {-400, -1, 0, 1, 1900, 1970, 2000, 2023, 2024, 2100}) {
        for (int month = 1; month <= 12; ++month) {
            EXPECT_EQ(daysInMonth(year, month),
                      dayNumber(year, month + 1, 1) - dayNumber(year, month, 1))
                << year << "-" << month;
        }
    }
}

} // namespace
} // namespace quorvel
