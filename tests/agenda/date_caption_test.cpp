#include "agenda/date_caption.h"

#include <gmock/gmock.h>

#include <limits>

#include "agenda/days.h"
#include "agenda/quorvel_view.h"
#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;

TEST(DayOffset, IsCutTowardsZero) {
    EXPECT_EQ(dayOffset(0), 0);
    EXPECT_EQ(dayOffset(86400), 1);
    EXPECT_EQ(dayOffset(82800), 0); // an hour short
    EXPECT_EQ(dayOffset(90000), 1); // an hour long
    EXPECT_EQ(dayOffset(-82800), 0);
    EXPECT_EQ(dayOffset(-86400), -1);
    EXPECT_EQ(dayOffset(-172799), -1);
}

TEST(DayOffset, StaysInItsRange) {
    using Limits = std::numeric_limits<double>;
    EXPECT_EQ(dayOffset(1e300), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(dayOffset(-1e300), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(dayOffset(Limits::infinity()), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(dayOffset(-Limits::infinity()), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(dayOffset(Limits::quiet_NaN()), 0);
}

NSDateFormatter styles(bool relative, NSDateFormatterStyle date, NSDateFormatterStyle time) {
    return {relative, date, time, std::nullopt};
}

NSDateFormatter pattern(const char* text) {
    return {false, NSDateFormatterStyle::none, NSDateFormatterStyle::none, text};
}

TEST(CaptionFormatter, FollowsTheDayOffset) {
    const auto none = NSDateFormatterStyle::none;
    const auto shortStyle = NSDateFormatterStyle::shortStyle;
    for (const int offset : {1, -1}) {
        EXPECT_EQ(captionFormatter(offset, false, true), styles(true, shortStyle, shortStyle));
        EXPECT_EQ(captionFormatter(offset, true, true), styles(true, shortStyle, none));
    }
    EXPECT_EQ(captionFormatter(0, false, false), styles(false, none, shortStyle));
    EXPECT_EQ(captionFormatter(0, true, false), styles(false, none, shortStyle));
    for (const int offset : {2, 7, -2, -400, std::numeric_limits<int>::min()}) {
        EXPECT_EQ(captionFormatter(offset, false, false), pattern("EEE, HH:mm"));
        EXPECT_EQ(captionFormatter(offset, false, true), pattern("EEE, h:mm a"));
        EXPECT_EQ(captionFormatter(offset, true, false), pattern("EEEE"));
        EXPECT_EQ(captionFormatter(offset, true, true), pattern("EEEE"));
    }
    for (const int offset : {8, 400, std::numeric_limits<int>::max()}) {
        EXPECT_EQ(captionFormatter(offset, false, true), styles(false, shortStyle, shortStyle));
        EXPECT_EQ(captionFormatter(offset, true, true), styles(false, shortStyle, none));
    }
}

class DateCaptionTest : public AgendaFixture {
protected:
    DateCaptionTest() { memory.dateServices.useTwentyFourHourClock(); }

    std::string caption(NSDate date, bool isAllDay = false) {
        return view->createPrettyDateFrom(date, isAllDay);
    }

    std::shared_ptr<QuorvelView> view = std::make_shared<QuorvelView>(platform(), CGRect{});
};

TEST_F(DateCaptionTest, IsTheTimeAloneForToday) {
    EXPECT_EQ(caption(at(0, 14, 30)), "14:30");
}

TEST_F(DateCaptionTest, CountsOnlyTheDayNeverTheTimeOfDay) {
    EXPECT_EQ(caption(at(0, 0)), "00:00");
    EXPECT_EQ(caption(at(0, 9, 59)), "09:59");
    EXPECT_EQ(caption(at(0, 23, 59)), "23:59");
    memory.clock.setNow(at(0, 23, 59));
    EXPECT_EQ(caption(at(1, 0)), "Tomorrow, 00:00");
}

TEST_F(DateCaptionTest, ShowsMidnightForAnAllDayEventOfToday) {
    EXPECT_EQ(caption(at(0, 0), true), "00:00");
    memory.dateServices.useTwelveHourClock();
    EXPECT_EQ(caption(at(0, 0), true), "12:00 AM");
}

TEST_F(DateCaptionTest, NamesTomorrowAndYesterday) {
    EXPECT_EQ(caption(at(1, 9)), "Tomorrow, 09:00");
    EXPECT_EQ(caption(at(1, 0), true), "Tomorrow");
    EXPECT_EQ(caption(at(-1, 9)), "Yesterday, 09:00");
    EXPECT_EQ(caption(at(-1, 0), true), "Yesterday");
}

TEST_F(DateCaptionTest, NamesTheWeekdayForTheComingWeek) {
    EXPECT_EQ(caption(at(3, 18, 5)), "Thu, 18:05");
    EXPECT_EQ(caption(at(3, 0), true), "Thursday");
    EXPECT_EQ(caption(at(2, 18, 5)), "Wed, 18:05");
    memory.dateServices.useTwelveHourClock();
    EXPECT_EQ(caption(at(3, 18, 5)), "Thu, 6:05 PM");
    EXPECT_EQ(caption(at(3, 0), true), "Thursday");
}

TEST_F(DateCaptionTest, NamesTodaysWeekdaySevenDaysAhead) {
    EXPECT_EQ(caption(at(7, 8)), "Mon, 08:00");
    EXPECT_EQ(caption(at(7, 0), true), "Monday");
}

TEST_F(DateCaptionTest, IsADateFromTheEighthDayOn) {
    EXPECT_EQ(caption(at(8, 8)), "1/9/01, 08:00");
    EXPECT_EQ(caption(at(8, 0), true), "1/9/01");
}

TEST_F(DateCaptionTest, NamesTheWeekdayOfARunningEvent) {
    EXPECT_EQ(caption(at(-3, 20)), "Fri, 20:00");
    EXPECT_EQ(caption(at(-3, 0), true), "Friday");
    EXPECT_EQ(caption(at(-2, 20)), "Sat, 20:00");
}

TEST_F(DateCaptionTest, CountsAsTwelveHoursWithoutAnHourPattern) {
    memory.dateServices.hourPattern.reset();
    EXPECT_TRUE(isTwelveHourClock(memory.dateServices));
    EXPECT_EQ(caption(at(3, 18, 5)), "Thu, 6:05 PM");
}

TEST_F(DateCaptionTest, FindsTheDayPeriodInTheHourPattern) {
    memory.dateServices.hourPattern = "ah";
    EXPECT_TRUE(isTwelveHourClock(memory.dateServices));
    memory.dateServices.hourPattern = "HH 'A'";
    EXPECT_FALSE(isTwelveHourClock(memory.dateServices));
    memory.dateServices.hourPattern = "";
    EXPECT_FALSE(isTwelveHourClock(memory.dateServices));
}

TEST_F(DateCaptionTest, ProbesTheClockOnEveryCall) {
    caption(at(0, 14));
    caption(at(30, 14));
    EXPECT_THAT(memory.dateServices.skeletons, ElementsAre("j", "j"));
    EXPECT_EQ(memory.dateServices.formatters.size(), 2U);
}

// One hour is lost between day 0 and day 1.
TEST_F(DateCaptionTest, LosesADayWhereTheClocksGoForward) {
    memory.dateServices.changes = {{at(0, 2), 3600}};
    memory.clock.setNow(at(0, 1));
    EXPECT_EQ(caption(at(1, 8)), "09:00");      // tomorrow at 9, local time
    EXPECT_EQ(caption(at(8, 8)), "Tue, 09:00"); // eight days ahead
}

TEST_F(DateCaptionTest, CountsTheSameWhereTheClocksGoBack) {
    memory.dateServices.standardOffset = 3600;
    memory.dateServices.changes = {{at(0, 2), 0}};
    memory.clock.setNow(at(0, 1));
    EXPECT_EQ(caption(at(1, 9)), "Tomorrow, 09:00");
    EXPECT_EQ(caption(at(7, 9)), "Mon, 09:00");
}

TEST_F(DateCaptionTest, StartsDaysAtMidnightOfTheUsersZone) {
    EXPECT_EQ(view->dateWithZeroTimeFromDate(at(0, 14, 30)), at(0, 0));
    memory.dateServices.standardOffset = -5 * 3600;
    EXPECT_EQ(view->dateWithZeroTimeFromDate(at(0, 2)), at(-1, 5));
}

TEST_F(DateCaptionTest, EndsDaysASecondBeforeMidnight) {
    EXPECT_EQ(view->endOfDay(at(0, 14, 30)).timeIntervalSinceReferenceDate, 86399);
    EXPECT_EQ(view->endOfDay({0.75}).timeIntervalSinceReferenceDate, 86399);
    memory.dateServices.standardOffset = 3600;
    EXPECT_EQ(view->endOfDay(at(0, 23, 30)).timeIntervalSinceReferenceDate, 2 * 86400 - 3601);
}

} // namespace
} // namespace quorvel
