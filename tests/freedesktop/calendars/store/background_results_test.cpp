#include "freedesktop/calendars/store/background_results.h"

#include <functional>
#include <string>

#include <gmock/gmock.h>

namespace quorvel::freedesktop::calendars {
namespace {

using platform::EKCalendar;
using platform::EKCalendars;
using platform::EKEvent;
using platform::EKEventPredicate;
using platform::EKEvents;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double hour = 3600; // seconds
constexpr double year = 365.25 * 24 * hour;

std::shared_ptr<const EKCalendar> calendar(const std::string& identifier) {
    return std::make_shared<const EKCalendar>(
        EKCalendar{identifier, "Calendar " + identifier, platform::UIColor::redColor()});
}

std::shared_ptr<const EKEvent> event(const std::string& title, double start,
                                     std::shared_ptr<const EKCalendar> owner) {
    EKEvent event;
    event.title = title;
    event.startDate = {start};
    event.endDate = {start + hour};
    event.calendar = std::move(owner);
    event.persistentEvent = {title};
    return std::make_shared<const EKEvent>(event);
}

class BackgroundResults : public testing::Test {
protected:
    BackgroundSearch search(double start, double end, EKCalendars calendars) const {
        return {{{start}, {end}, std::move(calendars)}, zone};
    }
    BackgroundSearch all() const { return search(0, 24 * hour, {home, work}); }

    BackgroundResult result() const {
        return {{home, work},
                {"work"},
                true,
                all(),
                {event("early", 1 * hour, home), event("late", 20 * hour, work)}};
    }
    static std::vector<std::string> titles(const EKEvents& events) {
        std::vector<std::string> titles;
        for (const auto& event : events) {
            titles.push_back(event->title.value_or("-"));
        }
        return titles;
    }
    std::vector<std::string> within(const BackgroundSearch& search) const {
        const BackgroundResult from = result();
        return titles(eventsWithin(&from, search));
    }
    // Whether the change makes a result differ from the one that a store had and returned.
    bool differsAfter(const std::function<void(BackgroundResult&)>& change) const {
        const auto before = std::make_shared<const BackgroundResult>(result());
        BackgroundResult now = result();
        change(now);
        return differsFromGiven(now, {before, all(), before});
    }

    std::shared_ptr<const TimeZone> zone = utcTimeZone();
    std::shared_ptr<const EKCalendar> home = calendar("home");
    std::shared_ptr<const EKCalendar> work = calendar("work");
};

TEST_F(BackgroundResults, EventsAreCutToTheRange) {
    EXPECT_THAT(within(all()), ElementsAre("early", "late"));
    EXPECT_THAT(within(search(2 * hour, 24 * hour, {home, work})), ElementsAre("late"));
    EXPECT_THAT(within(search(1.5 * hour, 20 * hour, {home, work})), ElementsAre("early", "late"));
    EXPECT_THAT(within(search(0, 19 * hour, {home, work})), ElementsAre("early"));
    EXPECT_THAT(within(search(24 * hour, 0, {home, work})), IsEmpty());
}

TEST_F(BackgroundResults, ALongRangeIsCutToFourYears) {
    BackgroundResult from = result();
    from.events.push_back(event("far", 4.5 * year, home));
    EXPECT_THAT(titles(eventsWithin(&from, search(0, 5 * year, {home, work}))),
                ElementsAre("early", "late"));
    EXPECT_THAT(titles(eventsWithin(&from, search(year, 5 * year, {home, work}))),
                ElementsAre("far"));
}

TEST_F(BackgroundResults, EventsAreCutToTheCalendarsByTheirIdentifiers) {
    EXPECT_THAT(within(search(0, 24 * hour, {calendar("work"), nullptr})), ElementsAre("late"));
    EXPECT_THAT(within(search(0, 24 * hour, {})), IsEmpty());
    BackgroundResult from = result();
    from.events.push_back(event("of no calendar", hour, nullptr));
    EXPECT_THAT(titles(eventsWithin(&from, all())), ElementsAre("early", "late"));
}

TEST_F(BackgroundResults, BeforeTheFirstResultThereAreNoEvents) {
    EXPECT_THAT(eventsWithin(nullptr, all()), IsEmpty());
}

TEST_F(BackgroundResults, APredicateNamesTheCalendarsThatAreListedNow) {
    const auto newHome = calendar("home");
    const auto added = calendar("added");
    BackgroundSearch asked = search(1, 2, {home, work});
    EKEventPredicate predicate = predicateFor(asked, {newHome, added});
    EXPECT_THAT(predicate.calendars, ElementsAre(newHome));
    EXPECT_EQ(predicate.startDate.timeIntervalSinceReferenceDate, 1);
    EXPECT_EQ(predicate.endDate.timeIntervalSinceReferenceDate, 2);
    asked.isOfAllCalendars = true;
    EXPECT_THAT(predicateFor(asked, {newHome, added}).calendars, ElementsAre(newHome, added));
}

TEST_F(BackgroundResults, AllCalendarsAreNamedOrNot) {
    EXPECT_TRUE(namesAll(all().predicate, {calendar("work"), home}));
    EXPECT_TRUE(namesAll(all().predicate, {}));
    EXPECT_TRUE(namesAll({}, {}));
    EXPECT_FALSE(namesAll(all().predicate, {home, calendar("added")}));
    EXPECT_FALSE(namesAll({}, {home}));
}

TEST_F(BackgroundResults, EqualValuesDoNotDiffer) {
    EXPECT_FALSE(differsAfter([](BackgroundResult&) {}));
    EXPECT_FALSE(differsAfter([](BackgroundResult& now) {
        now.calendars = {calendar("home"), calendar("work")};
        now.events = {event("early", 1 * hour, now.calendars[0]),
                      event("late", 20 * hour, now.calendars[1])};
    }));
}

TEST_F(BackgroundResults, EachValueOfTheListingMatters) {
    EXPECT_TRUE(differsAfter([](BackgroundResult& now) { now.isAnyReadable = false; }));
    EXPECT_TRUE(differsAfter([](BackgroundResult& now) { now.deselected.clear(); }));
    EXPECT_TRUE(differsAfter([](BackgroundResult& now) { now.calendars.pop_back(); }));
    EXPECT_TRUE(
        differsAfter([](BackgroundResult& now) { now.calendars.push_back(calendar("added")); }));
    for (const auto& change : std::vector<std::function<void(EKCalendar&)>>{
             [](EKCalendar& one) { one.calendarIdentifier += "x"; },
             [](EKCalendar& one) { one.title += "x"; },
             [](EKCalendar& one) { one.CGColor = platform::UIColor::blueColor(); },
             [](EKCalendar& one) { one.CGColor = std::nullopt; }}) {
        EXPECT_TRUE(differsAfter([&](BackgroundResult& now) {
            EKCalendar changed = *now.calendars[0];
            change(changed);
            now.calendars[0] = std::make_shared<const EKCalendar>(changed);
        }));
    }
}

TEST_F(BackgroundResults, EachValueOfAnEventMatters) {
    EXPECT_TRUE(differsAfter([](BackgroundResult& now) { now.events.pop_back(); }));
    for (const auto& change : std::vector<std::function<void(EKEvent&)>>{
             [](EKEvent& one) { one.title = std::nullopt; },
             [](EKEvent& one) { one.location = "x"; },
             [](EKEvent& one) { one.startDate = one.startDate.dateByAddingTimeInterval(1); },
             [](EKEvent& one) { one.endDate = one.endDate.dateByAddingTimeInterval(1); },
             [](EKEvent& one) { one.isAllDay = true; },
             [this](EKEvent& one) { one.calendar = work; },
             [](EKEvent& one) { one.persistentEvent.eventIdentifier += "x"; }}) {
        EXPECT_TRUE(differsAfter([&](BackgroundResult& now) {
            EKEvent changed = *now.events[0];
            change(changed);
            now.events[0] = std::make_shared<const EKEvent>(changed);
        }));
    }
}

// The store was given events of an earlier and longer range, whose first one has ended meanwhile.
TEST_F(BackgroundResults, AnEventThatHasEndedIsNoDifference) {
    const auto before = std::make_shared<const BackgroundResult>(result());
    const BackgroundSearch later = search(3 * hour, 24 * hour, {home, work});
    BackgroundResult now = result();
    now.search = later;
    now.events.erase(now.events.begin());
    EXPECT_FALSE(differsFromGiven(now, {before, later, before}));
    now.events.push_back(event("new", 23 * hour, home));
    EXPECT_TRUE(differsFromGiven(now, {before, later, before}));
}

TEST_F(BackgroundResults, EventsOfAnotherSearchAreNotCompared) {
    const auto before = std::make_shared<const BackgroundResult>(result());
    BackgroundResult now = result();
    now.events.clear();
    EXPECT_TRUE(differsFromGiven(now, {before, all(), before}));
    EXPECT_FALSE(differsFromGiven(now, {before, search(1, 24 * hour, {home, work}), before}));
    EXPECT_FALSE(differsFromGiven(now, {before, search(0, 24 * hour, {home}), before}));
    EXPECT_FALSE(differsFromGiven(now, {before, std::nullopt, nullptr}));
    now.search = std::nullopt;
    EXPECT_FALSE(differsFromGiven(now, {before, all(), before}));
}

TEST_F(BackgroundResults, TheFirstAnswerDiffersUnlessThereIsNothing) {
    const GivenResults unknown;
    EXPECT_TRUE(differsFromGiven(result(), unknown));
    BackgroundResult nothing;
    EXPECT_TRUE(differsFromGiven(nothing, unknown)); // it cannot be read
    nothing.isAnyReadable = true;
    EXPECT_FALSE(differsFromGiven(nothing, unknown));
    EXPECT_TRUE(differsFromGiven(result(), {std::make_shared<const BackgroundResult>(nothing),
                                            search(0, 24 * hour, {}), nullptr}));
}

} // namespace
} // namespace quorvel::freedesktop::calendars
