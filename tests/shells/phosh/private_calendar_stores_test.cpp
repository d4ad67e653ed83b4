#include "shells/phosh/private_calendar_stores.h"

#include <gmock/gmock.h>

#include "platform/memory/memory_calendar_stores.h"

namespace quorvel::phosh {
namespace {

using namespace platform;

class PrivateCalendarStoresTest : public testing::Test {
protected:
    PrivateCalendarStoresTest() {
        EKEvent event;
        event.title = "Dentist";
        event.location = "Main Street 12";
        event.startDate = {3600};
        event.endDate = {7200};
        event.calendar = memory.addCalendar("home", "Home");
        event.persistentEvent.eventIdentifier = "home:1";
        memory.addEvent(event);
    }
    EKEvents find() {
        const auto store = stores.makeEventStore();
        return store->eventsMatchingPredicate({{0}, {86400}, store->calendars()});
    }

    memory::MemoryCalendarStores memory;
    bool showsDetails = true;
    PrivateCalendarStores stores{memory, [this] { return showsDetails; }};
};

TEST_F(PrivateCalendarStoresTest, PassesEventsOnWhereDetailsAreShown) {
    const EKEvents events = find();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0]->title, "Dentist");
    EXPECT_EQ(events[0]->location, "Main Street 12");
}

TEST_F(PrivateCalendarStoresTest, ReplacesTitlesAndDropsLocationsElsewhere) {
    showsDetails = false;
    const EKEvents events = find();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0]->title, "Busy");
    EXPECT_EQ(events[0]->location, std::nullopt);
    EXPECT_EQ(events[0]->startDate, NSDate{3600});
    EXPECT_EQ(events[0]->endDate, NSDate{7200});
    EXPECT_EQ(events[0]->persistentEvent.eventIdentifier, "home:1");
    EXPECT_EQ(events[0]->calendar->title, "Home");
}

TEST_F(PrivateCalendarStoresTest, FollowsTheSettingAtEachSearch) {
    const auto store = stores.makeEventStore();
    showsDetails = false;
    EXPECT_EQ(store->eventsMatchingPredicate({{0}, {86400}, store->calendars()})[0]->title, "Busy");
    showsDetails = true;
    EXPECT_EQ(store->eventsMatchingPredicate({{0}, {86400}, store->calendars()})[0]->title,
              "Dentist");
}

TEST_F(PrivateCalendarStoresTest, PassesCalendarsOn) {
    showsDetails = false;
    const auto store = stores.makeEventStore();
    ASSERT_EQ(store->calendars().size(), 1U);
    EXPECT_EQ(store->calendarWithIdentifier("home")->title, "Home");
    EXPECT_EQ(store->calendarWithIdentifier("none"), nullptr);
}

} // namespace
} // namespace quorvel::phosh
