// Rules within a window, and rules that would never end.
#include "freedesktop/calendar/recurrence_expansion.h"

#include <gtest/gtest.h>

#include "freedesktop/calendar/ics_values.h"

namespace quorvel::freedesktop::ics {
namespace {

RecurrenceRequest requestFor(std::string_view rule, std::string_view start, std::string_view from,
                             std::string_view to) {
    RecurrenceRequest request;
    request.rule = rule;
    request.start = readTime(start)->civil;
    request.wholeDays = readTime(start)->isDate;
    request.from = readTime(from)->civil;
    request.to = readTime(to)->civil;
    request.deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    return request;
}

std::string shown(const CivilTime& time) {
    char text[32];
    std::snprintf(text, sizeof text, "%04d%02d%02dT%02d%02d", time.year, time.month, time.day,
                  time.hour, time.minute);
    return text;
}

std::string expanded(const RecurrenceRequest& request) {
    std::string result;
    for (const CivilTime& time : expandRecurrence(request).starts) {
        result += (result.empty() ? "" : " ") + shown(time);
    }
    return result;
}

std::string expanded(std::string_view rule, std::string_view start, std::string_view from,
                     std::string_view to) {
    return expanded(requestFor(rule, start, from, to));
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
        const auto walked =
            expandRecurrence(requestFor(rule, "20190114T081500", "20190101", "20230101")).starts;
        auto late = requestFor(rule, "20190114T081500", "20220303", "20230101");
        std::vector<CivilTime> end;
        for (const CivilTime& time : walked) {
            if (civilSeconds(time) >= civilSeconds(late.from)) {
                end.push_back(time);
            }
        }
        EXPECT_EQ(expandRecurrence(late).starts, end) << rule;
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

// The library must be led on in pieces that it takes for the same rule.
TEST(Recurrence, OfSecondsAndHoursGoesOnAcrossPieces) {
    EXPECT_EQ(expanded("FREQ=SECONDLY;COUNT=3;BYMINUTE=1;BYSECOND=0", "20100322T120100", "20100322",
                       "20100323"),
              "20100322T1201 20100322T1301 20100322T1401");
    EXPECT_EQ(expanded("FREQ=HOURLY;INTERVAL=18", "20240101T080000", "20260101", "20260103"),
              "20260101T1400 20260102T0800");
}

TEST(Recurrence, DoesNotCountWhatDoesNotExist) {
    auto request = requestFor("FREQ=DAILY;COUNT=3", "20240101T080000", "20240101", "20250101");
    request.exists = [](const CivilTime& time) { return time.day != 2; };
    EXPECT_EQ(expanded(request), "20240101T0800 20240103T0800 20240104T0800");
}

TEST(Recurrence, EndsWithItsLastReading) {
    auto request = requestFor("FREQ=DAILY", "20240101T080000", "20240101", "20250101");
    request.until = CivilTime{2024, 1, 3, 8, 0, 0};
    EXPECT_EQ(expanded(request), "20240101T0800 20240102T0800 20240103T0800");
    request.until = CivilTime{2023, 12, 31, 0, 0, 0};
    EXPECT_EQ(expanded(request), "");
}

TEST(Recurrence, BeginsWithTheStartEvenOffTheRule) {
    EXPECT_EQ(expanded("FREQ=WEEKLY;BYDAY=TU;COUNT=3", "20240101T080000", "20240101", "20250101"),
              "20240101T0800 20240102T0800 20240109T0800");
    auto request =
        requestFor("FREQ=WEEKLY;BYDAY=TU;COUNT=2", "20240101T080000", "20240101", "20250101");
    request.startCounts = false;
    EXPECT_EQ(expanded(request), "20240102T0800 20240109T0800");
}

TEST(Recurrence, MendsWeekNumbersWithoutWeekdays) {
    EXPECT_EQ(expanded("FREQ=YEARLY;BYWEEKNO=20", "19970512T090000", "19970101", "19991231"),
              "19970512T0900 19980511T0900 19990517T0900");
}

TEST(Recurrence, ThatCannotBeReadLeavesTheStart) {
    for (const char* rule :
         {"", "FREQ=NEVER", "FREQ=DAILY;INTERVAL=0", "FREQ=DAILY;COUNT=0", "FREQ=DAILY;COUNT=x",
          "FREQ=DAILY;BYSETPOS=1", "COUNT=3", "FREQ=DAILY;BYMONTH=99", "FREQ=DAILY;BYDAY",
          "FREQ=DAILY;INTERVAL=99999999999999999999"}) {
        const auto starts =
            expandRecurrence(requestFor(rule, "20240101T080000", "20240101", "20240201"));
        EXPECT_FALSE(starts.problem.empty()) << rule;
        ASSERT_EQ(starts.starts.size(), 1U) << rule;
    }
}

TEST(Recurrence, IsBoundedWhateverItSays) {
    for (const char* rule :
         {"FREQ=SECONDLY", "FREQ=MINUTELY", "FREQ=SECONDLY;COUNT=2000000000",
          "FREQ=HOURLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30",
          "FREQ=HOURLY;COUNT=5;BYMONTH=2;BYMONTHDAY=30", "FREQ=DAILY;BYMONTH=2;BYMONTHDAY=30",
          "FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=MINUTELY;BYHOUR=3;BYMINUTE=3;BYSECOND=3",
          "FREQ=YEARLY;BYHOUR=0,1,2,3,4,5,6,7,8,9;BYMINUTE=0,1,2,3,4,5;BYSECOND=0,1,2,3,4,5",
          "FREQ=DAILY;COUNT=2147483647;INTERVAL=32767"}) {
        auto request = requestFor(rule, "19700101T000000", "20200101", "20240101");
        const auto before = std::chrono::steady_clock::now();
        request.deadline = before + std::chrono::milliseconds(200);
        const auto starts = expandRecurrence(request);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - before;
        EXPECT_LT(taken.count(), 2.0) << rule;
        EXPECT_LE(starts.starts.size(), 100000U) << rule;
    }
}

} // namespace
} // namespace quorvel::freedesktop::ics
