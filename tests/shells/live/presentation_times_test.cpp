// Exact instants, across the clock changes of real time zones.
#include "shells/live/presentation_times.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "freedesktop/dates/clocks.h"
#include "freedesktop/dates/icu_date_services.h"
#include "freedesktop/dates/instant_text.h"

namespace quorvel::shells {
namespace {

using freedesktop::localTime;
using freedesktop::namedTimeZone;
using freedesktop::TimeZone;
using platform::NSDate;

class PresentationTimesTest : public testing::Test {
protected:
    void useZone(const char* name) {
        zone = namedTimeZone(name);
        dates.setTimeZone(zone);
    }
    NSDate at(std::string_view text) const {
        return freedesktop::parseInstant(text, *zone).value();
    }
    NSDate midnightAfter(std::string_view text) const { return nextMidnight(dates, at(text)); }
    static RowDescription row(std::optional<NSDate> start, std::optional<NSDate> end,
                              bool isAllDay = false) {
        RowDescription made;
        made.start = start;
        made.end = end;
        made.isAllDay = isAllDay;
        return made;
    }
    NSDate next(std::string_view now, const std::vector<RowDescription>& rows) const {
        return nextPresentation(dates, at(now), rows);
    }

    freedesktop::AdjustableClock clock;
    std::shared_ptr<const TimeZone> zone = namedTimeZone("Europe/Berlin");
    freedesktop::IcuDateServices dates{clock, zone, "de_DE"};
};

TEST_F(PresentationTimesTest, MidnightIsLocal) {
    EXPECT_EQ(midnightAfter("2026-03-10T10:00:00"), at("2026-03-11T00:00:00"));
    EXPECT_EQ(midnightAfter("2026-03-10T00:00:00"), at("2026-03-11T00:00:00"));
    EXPECT_EQ(midnightAfter("2026-03-10T23:59:59"), at("2026-03-11T00:00:00"));
    EXPECT_EQ(nextMidnight(dates, at("2026-03-10T23:59:59").dateByAddingTimeInterval(0.9)),
              at("2026-03-11T00:00:00"));
    EXPECT_EQ(midnightAfter("2026-12-31T10:00:00"), at("2027-01-01T00:00:00"));
    EXPECT_EQ(midnightAfter("2028-02-28T10:00:00"), at("2028-02-29T00:00:00"));
    useZone("Pacific/Auckland");
    EXPECT_EQ(midnightAfter("2026-03-10T11:00:00Z"), at("2026-03-11T11:00:00Z"));
    EXPECT_EQ(midnightAfter("2026-03-10T10:59:59Z"), at("2026-03-10T11:00:00Z"));
}

TEST_F(PresentationTimesTest, DaysWithClockChangesHaveTheirOwnLength) {
    EXPECT_EQ(midnightAfter("2026-03-29T00:00:00").timeIntervalSinceDate(at("2026-03-29T00:00:00")),
              82800);
    EXPECT_EQ(midnightAfter("2026-10-25T00:00:00").timeIntervalSinceDate(at("2026-10-25T00:00:00")),
              90000);
    EXPECT_EQ(midnightAfter("2026-10-25T00:30:00Z"), at("2026-10-25T23:00:00Z"));
    EXPECT_EQ(midnightAfter("2026-10-25T01:30:00Z"), at("2026-10-25T23:00:00Z"));
}

TEST_F(PresentationTimesTest, ADayWithoutMidnightBeginsWithItsFirstInstant) {
    useZone("America/Sao_Paulo");
    EXPECT_EQ(midnightAfter("2018-11-03T12:00:00"), at("2018-11-04T03:00:00Z"));
    useZone("Asia/Beirut");
    EXPECT_EQ(midnightAfter("2022-03-26T23:59:59"), at("2022-03-26T22:00:00Z"));
}

TEST_F(PresentationTimesTest, TheFirstOfTwoMidnightsCounts) {
    useZone("America/Havana"); // at 01:00 the clocks go back to midnight
    EXPECT_EQ(midnightAfter("2025-11-01T12:00:00"), at("2025-11-02T04:00:00Z"));
    EXPECT_EQ(midnightAfter("2025-11-02T04:30:00Z"), at("2025-11-03T05:00:00Z"));
    EXPECT_EQ(midnightAfter("2025-11-02T05:30:00Z"), at("2025-11-03T05:00:00Z"));
}

TEST_F(PresentationTimesTest, ARepeatedHourBeforeMidnightEndsOnce) {
    useZone("Asia/Beirut"); // at midnight the clocks go back to 23:00
    EXPECT_EQ(midnightAfter("2022-10-29T20:30:00Z"), at("2022-10-29T22:00:00Z"));
    EXPECT_EQ(midnightAfter("2022-10-29T21:30:00Z"), at("2022-10-29T22:00:00Z"));
}

TEST_F(PresentationTimesTest, ADayThatAZoneSkippedIsSkipped) {
    useZone("Pacific/Apia");
    EXPECT_EQ(midnightAfter("2011-12-29T12:00:00"), at("2011-12-31T00:00:00"));
}

TEST_F(PresentationTimesTest, EveryMidnightOfAYearIsTheFirstInstantOfAnotherDay) {
    for (const char* const name :
         {"Europe/Berlin", "America/Havana", "Asia/Beirut", "Africa/Cairo", "America/Scoresbysund",
          "Asia/Tehran", "America/Asuncion", "Atlantic/Azores", "Australia/Lord_Howe"}) {
        SCOPED_TRACE(name);
        useZone(name);
        NSDate now = at("2022-01-01T12:00:00");
        for (int i = 0; i < 366; ++i) {
            const NSDate midnight = nextMidnight(dates, now);
            ASSERT_GT(midnight, now);
            const auto before = localTime(*zone, midnight.dateByAddingTimeInterval(-1));
            const auto after = localTime(*zone, midnight);
            ASSERT_NE(before.day, after.day);
            ASSERT_LE(midnight.timeIntervalSinceDate(now), 25 * 3600.0);
            now = midnight;
        }
    }
}

TEST_F(PresentationTimesTest, WithoutRowsMidnightIsNext) {
    EXPECT_EQ(next("2026-03-10T10:00:00", {}), at("2026-03-11T00:00:00"));
}

TEST_F(PresentationTimesTest, TheEarliestStartOrEndCounts) {
    const std::vector<RowDescription> rows = {
        row(at("2026-03-10T09:00:00"), at("2026-03-10T11:30:00")),
        row(at("2026-03-10T11:00:00"), at("2026-03-10T12:00:00")),
        row(at("2026-03-10T14:00:00"), at("2026-03-12T12:00:00"))};
    EXPECT_EQ(next("2026-03-10T10:00:00", rows), at("2026-03-10T11:00:00"));
    EXPECT_EQ(next("2026-03-10T11:00:00", rows), at("2026-03-10T11:30:00"));
    EXPECT_EQ(next("2026-03-10T11:30:00", rows), at("2026-03-10T12:00:00"));
    EXPECT_EQ(next("2026-03-10T12:00:00", rows), at("2026-03-10T14:00:00"));
    EXPECT_EQ(next("2026-03-10T14:00:00", rows), at("2026-03-11T00:00:00"));
    EXPECT_EQ(next("2026-03-12T00:00:00", rows), at("2026-03-12T12:00:00"));
}

TEST_F(PresentationTimesTest, PastAndMissingTimesDoNotCount) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<RowDescription> rows = {
        row(at("2026-03-09T09:00:00"), at("2026-03-10T10:00:00")), row({}, {}),
        row(NSDate{-infinity}, NSDate{infinity}), row(NSDate{std::nan("")}, {}),
        row(at("2026-03-11T09:00:00"), {})};
    EXPECT_EQ(next("2026-03-10T10:00:00", rows), at("2026-03-11T00:00:00"));
}

TEST_F(PresentationTimesTest, FractionsOfASecondCount) {
    const NSDate end = at("2026-03-10T10:00:00").dateByAddingTimeInterval(0.25);
    EXPECT_EQ(next("2026-03-10T10:00:00", {row({}, end)}), end);
}

TEST_F(PresentationTimesTest, AllDayRowsChangeAtMidnight) {
    const std::vector<RowDescription> rows = {
        row(at("2026-03-10T00:00:00"), at("2026-03-10T23:59:59"), true),
        row(at("2026-03-11T00:00:00"), at("2026-03-12T23:59:59"), true)};
    EXPECT_EQ(next("2026-03-10T10:00:00", rows), at("2026-03-11T00:00:00"));
    EXPECT_EQ(next("2026-03-10T23:59:58", rows), at("2026-03-11T00:00:00"));
    EXPECT_EQ(next("2026-03-10T10:00:00", {row({}, at("2026-03-10T23:59:59"))}),
              at("2026-03-10T23:59:59"))
        << "a row that is not all-day ends at its own end";
}

TEST_F(PresentationTimesTest, ClockChangesDoNotMoveEnds) {
    const std::vector<RowDescription> rows = {
        row(at("2026-03-29T00:30:00Z"), at("2026-03-29T01:30:00Z"))};
    EXPECT_EQ(next("2026-03-29T01:00:00Z", rows), at("2026-03-29T01:30:00Z"));
}

} // namespace
} // namespace quorvel::shells
