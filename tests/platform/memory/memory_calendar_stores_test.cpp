#include "platform/memory/memory_calendar_stores.h"

#include <gtest/gtest.h>

namespace quorvel::platform::memory {
namespace {

EKEvent event(const char* title, double start, double end,
              std::shared_ptr<const EKCalendar> calendar) {
    EKEvent made;
    made.title = title;
    made.startDate = {start};
    made.endDate = {end};
    made.calendar = std::move(calendar);
    return made;
}

std::string titles(const EKEvents& events) {
    std::string joined;
    for (const auto& one : events) {
        joined += one ? *one->title : "null";
        joined += ' ';
    }
    return joined;
}

TEST(MemoryCalendarStoresTest, FindsWhatOverlapsInTheOrderGiven) {
    MemoryCalendarStores stores;
    const auto work = stores.addCalendar("w", "Work");
    stores.addEvent(event("endsAtStart", 50, 100, work));
    stores.addEvent(event("startsAtEnd", 200, 250, work));
    stores.addEvent(event("startsAfter", 201, 250, work));
    stores.addEvent(event("endsWithin", 50, 101, work));
    stores.addEvent(event("pointAtStart", 100, 100, work));
    stores.addEvent(event("around", 0, 1000, work));
    stores.addEvent(event("noCalendar", 150, 160, nullptr));
    stores.events.push_back(nullptr);
    const auto store = stores.makeEventStore();
    EXPECT_EQ(titles(store->eventsMatchingPredicate({{100}, {200}, {work}})),
              "startsAtEnd endsWithin pointAtStart around null ");
}

TEST(MemoryCalendarStoresTest, BelongsToOneOfTheCalendarsByIdentifier) {
    MemoryCalendarStores stores;
    const auto work = stores.addCalendar("w", "Work");
    const auto home = stores.addCalendar("h", "Home");
    stores.addEvent(event("work", 0, 10, work));
    stores.addEvent(event("home", 0, 10, home));
    const auto store = stores.makeEventStore();
    const auto twin = std::make_shared<const EKCalendar>(EKCalendar{"h", "", std::nullopt});
    EXPECT_EQ(titles(store->eventsMatchingPredicate({{0}, {5}, {nullptr, twin}})), "home ");
    EXPECT_EQ(titles(store->eventsMatchingPredicate({{0}, {5}, {}})), "");
}

TEST(MemoryCalendarStoresTest, CutsARangeToFourYears) {
    MemoryCalendarStores stores;
    const auto work = stores.addCalendar("w", "Work");
    stores.addEvent(event("early", 126230400, 126230401, work));
    stores.addEvent(event("late", 126230401, 126230402, work));
    EXPECT_EQ(titles(stores.makeEventStore()->eventsMatchingPredicate({{0}, {1e12}, {work}})),
              "early ");
}

TEST(MemoryCalendarStoresTest, RecordsWhatIsAsked) {
    MemoryCalendarStores stores;
    const auto work = stores.addCalendar("w", "Work", UIColor::redColor());
    stores.calendars.push_back(nullptr);
    EXPECT_EQ(stores.storesMade, 0U);
    const auto store = stores.makeEventStore();
    stores.makeEventStore();
    EXPECT_EQ(stores.storesMade, 2U);
    store->eventsMatchingPredicate({{1}, {2}, {work}});
    ASSERT_EQ(stores.predicates.size(), 1U);
    EXPECT_EQ(stores.predicates[0].endDate, NSDate{2});
    EXPECT_EQ(stores.predicates[0].calendars, EKCalendars{work});
    EXPECT_EQ(store->calendarWithIdentifier("w"), work);
    EXPECT_EQ(store->calendarWithIdentifier("x"), nullptr);
    EXPECT_EQ(store->calendars(), (EKCalendars{work, nullptr}));
}

TEST(MemoryCalendarStoresTest, AStoreHasTheListsOfItsMaking) {
    MemoryCalendarStores stores;
    const auto store = stores.makeEventStore();
    stores.addCalendar("w", "Work");
    EXPECT_TRUE(store->calendars().empty());
    EXPECT_EQ(stores.makeEventStore()->calendars().size(), 1U);
}

TEST(MemoryCalendarStoresTest, GivesASetAnswerWhateverIsAsked) {
    MemoryCalendarStores stores;
    stores.answer = EKEvents{nullptr};
    EXPECT_EQ(titles(stores.makeEventStore()->eventsMatchingPredicate({{1}, {2}, {}})), "null ");
}

} // namespace
} // namespace quorvel::platform::memory
