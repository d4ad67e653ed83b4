// Stored snapshots and searches come back equal, and damaged bytes do no harm.
#include "freedesktop/calendars/store/stored_results.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace quorvel::freedesktop::calendars {
namespace {

TEST(StoredResults, SnapshotAndSearchComeBackEqual) {
    StoreSnapshot snapshot;
    snapshot.isAnyReadable = true;
    auto calendar = std::make_shared<platform::EKCalendar>();
    calendar->calendarIdentifier = "work-1";
    calendar->title = "Work";
    calendar->CGColor = platform::UIColor{0.1, 1.0 / 3, -2, 0.5};
    snapshot.calendars = {std::make_shared<platform::EKCalendar>(), calendar};
    snapshot.stores = {"", "/home/me/work.ics"};
    snapshot.deselected = {"work-1"};
    snapshot.problems = {{{"a.ics", 7, "is odd"}, 99}, {{"b.ics", 0, "is gone"}, 0, true}};
    const auto back = snapshotFromBytes(bytesOfSnapshot(snapshot));
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->isAnyReadable);
    EXPECT_FALSE(back->isAnyCalendar);
    ASSERT_EQ(back->calendars.size(), 2U);
    EXPECT_EQ(back->calendars[0]->CGColor, std::nullopt);
    EXPECT_EQ(back->calendars[1]->title, "Work");
    EXPECT_EQ(back->calendars[1]->CGColor, calendar->CGColor);
    EXPECT_EQ(back->stores, snapshot.stores);
    EXPECT_EQ(back->deselected, snapshot.deselected);
    EXPECT_EQ(back->problems, snapshot.problems);

    SearchResult result;
    auto event = std::make_shared<platform::EKEvent>();
    event->title = "";
    event->startDate = platform::dateWithTimeIntervalSince1970(-5);
    event->endDate = platform::dateWithTimeIntervalSince1970(2.5e11);
    event->isAllDay = true;
    event->calendar = calendar;
    event->persistentEvent.eventIdentifier = "work-1:x";
    result.events = {event};
    result.problems = {{{"b.ics", 0, "?"}, 0}};
    const std::string bytes = bytesOfSearch(result, snapshot.calendars);
    const auto found = searchFromBytes(bytes, snapshot.calendars);
    ASSERT_TRUE(found);
    ASSERT_EQ(found->events.size(), 1U);
    EXPECT_EQ(found->events[0]->title, "");
    EXPECT_EQ(found->events[0]->location, std::nullopt);
    EXPECT_EQ(found->events[0]->startDate, event->startDate);
    EXPECT_EQ(found->events[0]->endDate, event->endDate);
    EXPECT_TRUE(found->events[0]->isAllDay);
    EXPECT_EQ(found->events[0]->calendar, calendar);
    EXPECT_EQ(found->events[0]->persistentEvent.eventIdentifier, "work-1:x");
    EXPECT_EQ(found->problems, result.problems);
    EXPECT_FALSE(searchFromBytes(bytes, {}));
}

} // namespace
} // namespace quorvel::freedesktop::calendars
