#include "platform/memory/memory_date_services.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/memory/fixed_clock.h"

namespace quorvel::platform::memory {
namespace {

constexpr unsigned dayUnits = NSYearCalendarUnit | NSMonthCalendarUnit | NSDayCalendarUnit;
constexpr unsigned allUnits =
    dayUnits | NSHourCalendarUnit | NSMinuteCalendarUnit | NSSecondCalendarUnit;

class MemoryDateServicesTest : public testing::Test {
protected:
    // Central Europe in 2026: summer time from March 29, 01:00 UTC to October 25, 01:00 UTC.
    void useBerlin() {
        dates.standardOffset = 3600;
        dates.changes = {{dateWithTimeIntervalSince1970(1774746000), 7200},
                         {dateWithTimeIntervalSince1970(1792890000), 3600}};
    }

    NSDate at(int year, int month, int day, int hour = 0, int minute = 0) const {
        NSDateComponents parts;
        parts.year = year;
        parts.month = month;
        parts.day = day;
        parts.hour = hour;
        parts.minute = minute;
        return dates.dateFromComponents(parts);
    }

    std::string with(const char* pattern, NSDate date) const {
        NSDateFormatter formatter;
        formatter.dateFormat = pattern;
        return dates.stringFromDate(formatter, date);
    }

    FixedClock clock;
    MemoryDateServices dates{clock};
};

TEST_F(MemoryDateServicesTest, TakesADateApart) {
    const NSDateComponents parts =
        dates.components(allUnits | NSWeekdayCalendarUnit, NSDate{86400 + 3661.9});
    EXPECT_EQ(parts.year, 2001);
    EXPECT_EQ(parts.month, 1);
    EXPECT_EQ(parts.day, 2);
    EXPECT_EQ(parts.weekday, 3); // a Tuesday
    EXPECT_EQ(parts.hour, 1);
    EXPECT_EQ(parts.minute, 1);
    EXPECT_EQ(parts.second, 1);
    const NSDateComponents before = dates.components(allUnits, NSDate{-0.5});
    EXPECT_EQ(before.year, 2000);
    EXPECT_EQ(before.month, 12);
    EXPECT_EQ(before.second, 59);
    EXPECT_EQ(dates.components(NSDayCalendarUnit, NSDate{0}).year, std::nullopt);
    EXPECT_EQ(dates.units, (std::vector<unsigned>{allUnits | NSWeekdayCalendarUnit, allUnits,
                                                  NSDayCalendarUnit}));
}

TEST_F(MemoryDateServicesTest, PutsADateTogether) {
    EXPECT_EQ(at(2001, 1, 1), NSDate{0});
    EXPECT_EQ(at(2000, 2, 30), at(2000, 3, 1));
    EXPECT_EQ(at(2000, 14, 1), at(2001, 2, 1));
    EXPECT_EQ(at(2001, 0, 1), at(2000, 12, 1));
    NSDateComponents year;
    year.year = 2001;
    EXPECT_EQ(dates.dateFromComponents(year), NSDate{0});
}

TEST_F(MemoryDateServicesTest, FollowsClockChanges) {
    useBerlin();
    EXPECT_EQ(at(2026, 3, 29, 1, 59), dateWithTimeIntervalSince1970(1774745940));
    EXPECT_EQ(at(2026, 3, 29, 3, 0), dateWithTimeIntervalSince1970(1774746000));
    EXPECT_EQ(at(2026, 3, 29, 2, 30), dateWithTimeIntervalSince1970(1774746000 + 1800)); // 3:30
    EXPECT_EQ(at(2026, 10, 25, 1, 59), dateWithTimeIntervalSince1970(1792890000 - 3660));
    EXPECT_EQ(at(2026, 10, 25, 2, 30), dateWithTimeIntervalSince1970(1792890000 + 1800)); // second
    EXPECT_EQ(at(2026, 10, 25, 3, 0), dateWithTimeIntervalSince1970(1792890000 + 3600));
    EXPECT_EQ(with("HH:mm", dateWithTimeIntervalSince1970(1774745940)), "01:59");
    EXPECT_EQ(with("HH:mm", dateWithTimeIntervalSince1970(1774746000)), "03:00");
}

TEST_F(MemoryDateServicesTest, SurvivesEveryInstant) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double instant : {infinity, -infinity, std::nan(""), 1e300, -1e300}) {
        EXPECT_TRUE(dates.components(dayUnits, NSDate{instant}).year.has_value());
    }
    EXPECT_LT(at(std::numeric_limits<int>::min(), std::numeric_limits<int>::min(), 1), NSDate{0});
}

TEST_F(MemoryDateServicesTest, WritesPatterns) {
    const NSDate date = at(2026, 3, 5, 15, 7); // a Thursday
    EXPECT_EQ(with("EEEE", date), "Thursday");
    EXPECT_EQ(with("EEE", date), "Thu");
    EXPECT_EQ(with("HH:mm", date), "15:07");
    EXPECT_EQ(with("h:mm a", date), "3:07 PM");
    EXPECT_EQ(with("hh a", at(2026, 3, 5, 0, 0)), "12 AM");
    EXPECT_EQ(with("yyyy-MM-dd, MMM MMMM yy s", date), "2026-03-05, Mar March 26 0");
    EXPECT_EQ(with("H 'o''clock' '' 'open", date), "15 o'clock ' open");
    EXPECT_EQ(with("", date), "");
}

TEST_F(MemoryDateServicesTest, WritesStyles) {
    const NSDate date = at(2026, 3, 5, 15, 7);
    NSDateFormatter formatter;
    formatter.dateStyle = NSDateFormatterStyle::shortStyle;
    EXPECT_EQ(dates.stringFromDate(formatter, date), "3/5/26");
    formatter.timeStyle = NSDateFormatterStyle::shortStyle;
    EXPECT_EQ(dates.stringFromDate(formatter, date), "3/5/26, 3:07 PM");
    dates.useTwentyFourHourClock();
    EXPECT_EQ(dates.stringFromDate(formatter, date), "3/5/26, 15:07");
    formatter.dateStyle = NSDateFormatterStyle::none;
    EXPECT_EQ(dates.stringFromDate(formatter, date), "15:07");
    EXPECT_EQ(dates.stringFromDate({}, date), "");
    ASSERT_EQ(dates.formatters.size(), 5U);
    EXPECT_EQ(dates.formatters[3], formatter);
}

TEST_F(MemoryDateServicesTest, UsesRelativeWordsAroundTheClockWithADate) {
    clock.setNow(at(2026, 3, 5, 23, 59));
    NSDateFormatter formatter;
    formatter.doesRelativeDateFormatting = true;
    formatter.dateStyle = NSDateFormatterStyle::shortStyle;
    formatter.timeStyle = NSDateFormatterStyle::shortStyle;
    EXPECT_EQ(dates.stringFromDate(formatter, at(2026, 3, 5, 1, 0)), "Today, 1:00 AM");
    EXPECT_EQ(dates.stringFromDate(formatter, at(2026, 3, 6, 12, 0)), "Tomorrow, 12:00 PM");
    EXPECT_EQ(dates.stringFromDate(formatter, at(2026, 3, 4)), "Yesterday, 12:00 AM");
    EXPECT_EQ(dates.stringFromDate(formatter, at(2026, 3, 7)), "3/7/26, 12:00 AM");
    formatter.dateFormat = "d";
    EXPECT_EQ(dates.stringFromDate(formatter, at(2026, 3, 5)), "5");
}

TEST_F(MemoryDateServicesTest, GivesTheHourPattern) {
    EXPECT_EQ(dates.dateFormatFromTemplate("j"), "h a");
    dates.useTwentyFourHourClock();
    EXPECT_EQ(dates.dateFormatFromTemplate("j"), "HH");
    dates.hourPattern.reset();
    EXPECT_EQ(dates.dateFormatFromTemplate("j"), std::nullopt);
    EXPECT_EQ(dates.dateFormatFromTemplate("yMd"), std::nullopt);
    EXPECT_EQ(dates.skeletons, (std::vector<std::string>{"j", "j", "j", "yMd"}));
}

} // namespace
} // namespace quorvel::platform::memory
