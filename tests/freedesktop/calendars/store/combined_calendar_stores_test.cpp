#include "freedesktop/calendars/store/combined_calendar_stores.h"

#include <gmock/gmock.h>

#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop {
namespace {

using testing::ElementsAre;

class CombinedCalendarStoresTest : public StoreFixture {
protected:
    CombinedCalendarStoresTest()
        : others(zone, nullptr) {
        useText(eventText("UID:a|SUMMARY:First|DTSTART:20260310T080000Z") +
                eventText("UID:c|SUMMARY:Third|DTSTART:20260310T100000Z"));
        others.setSources({CalendarSource::inMemory(
            "other", calendarText(eventText("UID:b|SUMMARY:Second|DTSTART:20260310T090000Z") +
                                  eventText("UID:d|SUMMARY:Day|DTSTART;VALUE=DATE:20260310")))});
        combined.setStores({&stores, &others});
    }

    std::vector<std::string> calendarTitles() {
        std::vector<std::string> result;
        for (const auto& calendar : combined.makeEventStore()->calendars()) {
            result.push_back(calendar->title);
        }
        return result;
    }
    std::vector<std::string> eventTitles(bool onlyOthers = false) {
        const auto store = combined.makeEventStore();
        platform::EKCalendars calendars = store->calendars();
        if (onlyOthers) {
            calendars.erase(calendars.begin());
        }
        calendars.push_back(nullptr);
        std::vector<std::string> result;
        for (const auto& event : store->eventsMatchingPredicate(
                 {date("20260310T000000"), date("20260311T000000"), calendars})) {
            result.push_back(event->title.value_or("-"));
        }
        return result;
    }

    FileCalendarStores others;
    CombinedCalendarStores combined;
};

TEST_F(CombinedCalendarStoresTest, CalendarsComeByStoreAndEventsInTheirOrder) {
    EXPECT_THAT(calendarTitles(), ElementsAre("test", "other"));
    EXPECT_THAT(eventTitles(), ElementsAre("Day", "First", "Second", "Third"));
    EXPECT_THAT(eventTitles(true), ElementsAre("Day", "Second"));
    combined.setStores({&others, &stores});
    EXPECT_THAT(calendarTitles(), ElementsAre("other", "test"));
    EXPECT_THAT(eventTitles(), ElementsAre("Day", "First", "Second", "Third"));
}

TEST_F(CombinedCalendarStoresTest, ACalendarIsFoundInWhicheverStoreHasIt) {
    const auto store = combined.makeEventStore();
    for (const auto& calendar : store->calendars()) {
        EXPECT_EQ(store->calendarWithIdentifier(calendar->calendarIdentifier), calendar);
    }
    EXPECT_EQ(store->calendarWithIdentifier("nobody"), nullptr);
}

TEST_F(CombinedCalendarStoresTest, OfTwoCalendarsOfOneIdentifierTheFirstHolds) {
    FileCalendarStores twin(zone, nullptr);
    twin.setSources({CalendarSource::inMemory(
        "test", calendarText(eventText("UID:x|SUMMARY:Twin|DTSTART:20260310T080000Z")))});
    combined.setStores({&stores, &twin});
    EXPECT_THAT(calendarTitles(), ElementsAre("test"));
    EXPECT_THAT(eventTitles(), ElementsAre("First", "Third"));
}

TEST_F(CombinedCalendarStoresTest, OneStoreAndNoneAreStoresToo) {
    combined.setStores({&others});
    EXPECT_THAT(eventTitles(), ElementsAre("Day", "Second"));
    combined.setStores({});
    EXPECT_THAT(calendarTitles(), ElementsAre());
    EXPECT_THAT(eventTitles(), ElementsAre());
}

} // namespace
} // namespace quorvel::freedesktop
