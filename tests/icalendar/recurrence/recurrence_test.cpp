// Rules within a window, and rules that would never end.
#include "icalendar/recurrence/recurrence.h"

#include <chrono>

#include <gtest/gtest.h>

#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

std::int64_t localTime(std::string_view text) {
    return civilSeconds(parseTime(text)->civil);
}

RecurrenceRule ruleOf(std::string_view text) {
    const auto rule = parseRecurrenceRule(text);
    EXPECT_TRUE(rule.hasValue()) << text << ": " << (rule ? "" : rule.error().what.english());
    return rule ? *rule : RecurrenceRule();
}

// Owns the rule that the request refers to.
struct Asked {
    Asked(std::string_view text, std::string_view start, std::string_view from, std::string_view to)
        : rule(ruleOf(text)) {
        request.start = localTime(start);
        request.wholeDays = parseTime(start)->isDate;
        request.from = localTime(from);
        request.to = localTime(to);
    }
    RecurrenceStarts expanded() const { return expandRecurrence(request); }

    RecurrenceRule rule;
    RecurrenceRequest request{rule};
};

std::string textOf(std::int64_t seconds) {
    const CivilTime time = civilFromSeconds(seconds);
    char text[32];
    std::snprintf(text, sizeof text, "%04d%02d%02dT%02d%02d", time.year, time.month, time.day,
                  time.hour, time.minute);
    return text;
}

std::string textOf(const RecurrenceStarts& starts) {
    std::string result;
    for (const std::int64_t seconds : starts.localTimes) {
        result += (result.empty() ? "" : " ") + textOf(seconds);
    }
    return result;
}

std::string expanded(std::string_view rule, std::string_view start, std::string_view from,
                     std::string_view to) {
    return textOf(Asked(rule, start, from, to).expanded());
}

TEST(Recurrence, JumpsToTheWindow) {
    EXPECT_EQ(
        expanded("FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,FR", "20000103T090000", "20260301", "20260331"),
        "20260309T0900 20260313T0900 20260323T0900 20260327T0900");
    EXPECT_EQ(expanded("FREQ=MONTHLY;BYDAY=-1SU", "19970329T100000", "20260101", "20260401"),
              "20260125T1000 20260222T1000 20260329T1000");
    EXPECT_EQ(expanded("FREQ=YEARLY;INTERVAL=4", "20000229", "20230101", "20290101"),
              "20240229T0000 20280229T0000");
    EXPECT_EQ(expanded("FREQ=DAILY;INTERVAL=3", "20240101T080000", "20240110", "20240120"),
              "20240110T0800 20240113T0800 20240116T0800 20240119T0800");
}

// The jump must not change what comes: the same as walking all the way.
TEST(Recurrence, JumpedToIsTheSameAsWalked) {
    for (const char* rule :
         {"FREQ=DAILY;INTERVAL=5", "FREQ=WEEKLY;INTERVAL=3;WKST=SU;BYDAY=SU,WE",
          "FREQ=MONTHLY;INTERVAL=2;BYMONTHDAY=31", "FREQ=MONTHLY;BYDAY=2TU,-1FR",
          "FREQ=YEARLY;INTERVAL=3;BYMONTH=2,7;BYDAY=MO", "FREQ=HOURLY;INTERVAL=7",
          "FREQ=MONTHLY;BYMONTHDAY=-1", "FREQ=YEARLY;BYYEARDAY=1,100,200",
          "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1", "FREQ=MINUTELY;INTERVAL=200"}) {
        const auto walked = Asked(rule, "20190114T081500", "20190101", "20230101").expanded();
        const Asked late(rule, "20190114T081500", "20220303", "20230101");
        std::vector<std::int64_t> end;
        for (const std::int64_t seconds : walked.localTimes) {
            if (seconds >= late.request.from) {
                end.push_back(seconds);
            }
        }
        EXPECT_EQ(late.expanded().localTimes, end) << rule;
        EXPECT_FALSE(end.empty()) << rule;
    }
}

TEST(Recurrence, CountsFromTheStart) {
    EXPECT_EQ(expanded("FREQ=DAILY;COUNT=3", "20240101T080000", "20240102", "20250101"),
              "20240102T0800 20240103T0800");
    EXPECT_EQ(expanded("FREQ=DAILY;COUNT=3", "20240101T080000", "20250102", "20260101"), "");
}

TEST(Recurrence, TakesANegativeCountForNone) {
    EXPECT_EQ(expanded("FREQ=DAILY;COUNT=-1", "20240101T080000", "20240102", "20240104"),
              "20240102T0800 20240103T0800");
}

TEST(Recurrence, OfSecondsAndHoursGoesOnAcrossDays) {
    EXPECT_EQ(expanded("FREQ=SECONDLY;COUNT=3;BYMINUTE=1;BYSECOND=0", "20100322T120100", "20100322",
                       "20100323"),
              "20100322T1201 20100322T1301 20100322T1401");
    EXPECT_EQ(expanded("FREQ=HOURLY;INTERVAL=18", "20240101T080000", "20260101", "20260103"),
              "20260101T1400 20260102T0800");
}

// The clock skips the hour after midnight.
TEST(Recurrence, CountsWhatTheClockShowsAlikeOnce) {
    const auto withSkippedHour = [](std::string_view rule) {
        Asked asked(rule, "20240101T230000", "20240101", "20250101");
        asked.request.existingLocalTime = [](std::int64_t seconds) {
            return civilFromSeconds(seconds).hour == 0 ? seconds + 3600 : seconds;
        };
        return textOf(asked.expanded()) + ", ends " +
               textOf(endOfCount(asked.request).lastLocalTime);
    };
    EXPECT_EQ(withSkippedHour("FREQ=HOURLY;COUNT=3"),
              "20240101T2300 20240102T0000 20240102T0100 20240102T0200, ends 20240102T0200");
    EXPECT_EQ(withSkippedHour("FREQ=HOURLY;INTERVAL=25;COUNT=3"),
              "20240101T2300 20240103T0000 20240104T0100, ends 20240104T0100")
        << "one that meets no other counts";
    EXPECT_EQ(withSkippedHour("FREQ=DAILY;BYHOUR=0,1,23;COUNT=4"),
              "20240101T2300 20240102T0000 20240102T0100 20240102T2300 20240103T0000, "
              "ends 20240103T0000");
}

TEST(Recurrence, EndsAtUntil) {
    Asked asked("FREQ=DAILY", "20240101T080000", "20240101", "20250101");
    asked.request.until = localTime("20240103T080000");
    EXPECT_EQ(textOf(asked.expanded()), "20240101T0800 20240102T0800 20240103T0800");
    asked.request.until = localTime("20231231");
    EXPECT_EQ(textOf(asked.expanded()), "");
}

TEST(Recurrence, BeginsWithTheStartEvenOffTheRule) {
    EXPECT_EQ(expanded("FREQ=WEEKLY;BYDAY=TU;COUNT=3", "20240101T080000", "20240101", "20250101"),
              "20240101T0800 20240102T0800 20240109T0800");
    Asked asked("FREQ=WEEKLY;BYDAY=TU;COUNT=2", "20240101T080000", "20240101", "20250101");
    asked.request.startCounts = false;
    EXPECT_EQ(textOf(asked.expanded()), "20240102T0800 20240109T0800");
}

TEST(Recurrence, TakesTheWeekdayOfAWeekFromTheStart) {
    EXPECT_EQ(expanded("FREQ=YEARLY;BYWEEKNO=20", "19970512T090000", "19970101", "19991231"),
              "19970512T0900 19980511T0900 19990517T0900");
}

TEST(Recurrence, FindsTheEndOfItsCount) {
    const auto endOf = [](const char* rule) {
        const CountEnd end =
            endOfCount(Asked(rule, "20240131T080000", "20300101", "20300102").request);
        return (end.isCounted ? "" : "not ") + textOf(end.lastLocalTime);
    };
    EXPECT_EQ(endOf("FREQ=MONTHLY;COUNT=3"), "20240531T0800")
        << "months without a 31st do not count";
    EXPECT_EQ(endOf("FREQ=DAILY;COUNT=1"), "20240131T0800");
    EXPECT_EQ(endOf("FREQ=HOURLY;COUNT=1000001"), "21380301T0000") << "a matter of arithmetic";
    EXPECT_EQ(endOf("FREQ=MINUTELY;BYSECOND=0;COUNT=1000000").substr(0, 4), "not ");
}

// A rule that takes away has its start as its first local time, and not beside it.
TEST(Recurrence, CountsTheStartThatItGivesItself) {
    Asked asked("FREQ=WEEKLY;COUNT=2", "20240101T080000", "20240102", "20250101");
    asked.request.startCounts = false;
    EXPECT_EQ(textOf(asked.expanded()), "20240108T0800");
    EXPECT_EQ(textOf(endOfCount(asked.request).lastLocalTime), "20240108T0800");
}

TEST(Recurrence, TheEndOfACountIsNotBehindUntil) {
    Asked asked("FREQ=DAILY;COUNT=9", "20240105T080000", "20240101", "20250101");
    asked.request.until = localTime("20240103T080000");
    EXPECT_EQ(textOf(endOfCount(asked.request).lastLocalTime), "20240103T0800")
        << "before the start";
    asked.request.until = localTime("20240107T120000");
    EXPECT_EQ(textOf(endOfCount(asked.request).lastLocalTime), "20240107T0800");
}

TEST(Recurrence, SpendsNoStepBeyondItsBudget) {
    Asked asked("FREQ=YEARLY;BYHOUR=1,2,3,4,5,6,7,8;BYMINUTE=0,10,20,30,40,50;BYSETPOS=1,2,3,-300",
                "20240101T080000", "20240101", "20340101");
    for (const std::int64_t budget : {1, 2, 10, 50, 100, 1000}) {
        asked.request.budget = budget;
        EXPECT_LE(asked.expanded().stepsSpent, budget);
    }
}

TEST(Recurrence, BelowADayIsNothingForWholeDays) {
    const auto starts = Asked("FREQ=HOURLY", "20240101", "20240101", "20250101").expanded();
    EXPECT_EQ(textOf(starts), "20240101T0000");
    EXPECT_FALSE(starts.problem.empty());
    EXPECT_EQ(expanded("FREQ=DAILY;BYHOUR=5;COUNT=2", "20240101", "20240101", "20250101"),
              "20240101T0000 20240102T0000");
}

TEST(Recurrence, ThatNeverComesEndsAtOnce) {
    for (const char* rule :
         {"FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=HOURLY;COUNT=5;BYMONTH=2;BYMONTHDAY=30",
          "FREQ=DAILY;COUNT=2;BYMONTH=2;BYMONTHDAY=30",
          "FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30;COUNT=2",
          "FREQ=MONTHLY;BYMONTH=4;BYMONTHDAY=31;COUNT=2", "FREQ=DAILY;BYSECOND=60;COUNT=2",
          "FREQ=YEARLY;BYWEEKNO=10;BYMONTH=8;COUNT=2", "FREQ=HOURLY;INTERVAL=24;BYHOUR=5;COUNT=2",
          "FREQ=SECONDLY;INTERVAL=2;BYSECOND=1,3,59;COUNT=2",
          "FREQ=MINUTELY;INTERVAL=1440;BYHOUR=1;BYMINUTE=1;COUNT=2",
          "FREQ=SECONDLY;BYSECOND=1;BYSETPOS=2;COUNT=2",
          "FREQ=WEEKLY;BYDAY=MO;BYSETPOS=-8;COUNT=2"}) {
        const auto starts = Asked(rule, "19700101T000000", "19700101", "99991231").expanded();
        EXPECT_EQ(textOf(starts), "19700101T0000") << rule;
        EXPECT_EQ(starts.problem, "") << rule;
        EXPECT_LT(starts.stepsSpent, 10'000) << rule;
    }
}

TEST(Recurrence, ThatComesOnceInCenturiesIsFound) {
    EXPECT_EQ(expanded("FREQ=YEARLY;INTERVAL=100;BYMONTH=2;BYMONTHDAY=29", "20000229T080000",
                       "20000301", "30000101"),
              "24000229T0800 28000229T0800");
    EXPECT_EQ(expanded("FREQ=DAILY;BYMONTH=2;BYMONTHDAY=29;BYDAY=MO;COUNT=2", "20000229T080000",
                       "20000301", "30000101"),
              "20160229T0800")
        << "and the start, which counts";
}

TEST(Recurrence, StandsAtBothEndsOfTime) {
    EXPECT_EQ(expanded("FREQ=YEARLY", "00010101", "00010101", "00030101"),
              "00010101T0000 00020101T0000 00030101T0000");
    EXPECT_EQ(expanded("FREQ=MONTHLY;INTERVAL=7", "00010131T235959", "99990101", "99991231T235959"),
              "99990531T2359 99991231T2359");
    EXPECT_EQ(expanded("FREQ=DAILY;INTERVAL=1000000000", "20240101", "20240101", "99991231"),
              "20240101T0000");
}

TEST(RecurrenceRule, ThatCannotBeReadSaysWhy) {
    for (const char* rule :
         {"", "FREQ=NEVER", "FREQ=DAILY;INTERVAL=0", "FREQ=DAILY;COUNT=0", "FREQ=DAILY;COUNT=x",
          "FREQ=DAILY;BYSETPOS=1", "COUNT=3", "FREQ=DAILY;BYMONTH=99", "FREQ=DAILY;BYDAY",
          "FREQ=DAILY;INTERVAL=99999999999999999999", "FREQ=DAILY;BYHOUR=24", "FREQ=DAILY;BYDAY=XX",
          "FREQ=MONTHLY;BYMONTHDAY=0", "FREQ=MONTHLY;BYDAY=54MO", "FREQ=WEEKLY;WKST=1",
          "RSCALE=HEBREW;FREQ=YEARLY", "FREQ=YEARLY;BYMONTHDAY=", "FREQ=YEARLY;BYMONTHDAY=1,,2"}) {
        const auto parsed = parseRecurrenceRule(rule);
        ASSERT_FALSE(parsed.hasValue()) << rule;
        EXPECT_FALSE(parsed.error().what.empty()) << rule;
    }
}

TEST(RecurrenceRule, IsReadLeniently) {
    for (const char* rule :
         {"freq=daily;interval=2", " FREQ = DAILY ; INTERVAL = 2 ;",
          "INTERVAL=2;FREQ=DAILY;X-OWN=1;;", "RSCALE=GREGORIAN;FREQ=DAILY;INTERVAL=+2"}) {
        EXPECT_EQ(expanded(rule, "20240101T080000", "20240102", "20240104"), "20240103T0800")
            << rule;
    }
}

TEST(Recurrence, IsBoundedWhateverItSays) {
    for (const char* rule :
         {"FREQ=SECONDLY", "FREQ=MINUTELY", "FREQ=SECONDLY;COUNT=2000000000",
          "FREQ=MINUTELY;BYHOUR=3;BYMINUTE=3;BYSECOND=3", "FREQ=SECONDLY;BYSETPOS=1;BYHOUR=1,2,3",
          "FREQ=YEARLY;BYHOUR=0,1,2,3,4,5,6,7,8,9;BYMINUTE=0,1,2,3,4,5;BYSECOND=0,1,2,3,4,5",
          "FREQ=YEARLY;BYDAY=MO,TU,WE,TH,FR,SA,SU;BYHOUR=1,2,3,4,5,6;BYMINUTE=1,2;BYSETPOS=-366",
          "FREQ=DAILY;COUNT=2147483647;INTERVAL=32767"}) {
        const auto starts = Asked(rule, "19700101T000000", "20200101", "20240101").expanded();
        EXPECT_LE(starts.stepsSpent, standardBudget) << rule;
        EXPECT_LE(starts.localTimes.size(), 100000U) << rule;
    }
}

} // namespace
} // namespace quorvel::icalendar
