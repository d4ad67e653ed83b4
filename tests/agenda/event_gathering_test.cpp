#include "agenda/event_gathering.h"

#include <gmock/gmock.h>

#include <limits>

#include "agenda/event_link.h"
#include "agenda/quorvel_view.h"
#include "platform/date_services.h"
#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(EventLink, NamesTheStoredEventAndTheStart) {
    EXPECT_EQ(eventLink("AB:CD:RID=7", {500000000})->absoluteString(),
              "x-apple-calevent://AB/CD?o=500000000.0");
    EXPECT_EQ(eventLink("AB:CD", {500000000.5})->absoluteString(),
              "x-apple-calevent://AB/CD?o=500000000.5");
}

TEST(EventLink, CutsAtTheFirstOccurrenceMark) {
    EXPECT_EQ(eventLinkPath("A:B:C"), "A/B/C");
    EXPECT_EQ(eventLinkPath("A:RID=1:RID=2"), "A");
    EXPECT_EQ(eventLinkPath("A/RIDE:B"), "A");
    EXPECT_EQ(eventLinkPath("ARID:B"), "ARID/B");
    EXPECT_EQ(eventLinkPath(":RID"), "");
    EXPECT_EQ(eventLinkPath(""), "");
}

TEST(EventLink, AlwaysHasOneDecimal) {
    const auto start = [](double seconds) {
        const std::string link = eventLink("A", {seconds})->absoluteString();
        return link.substr(link.find('=') + 1);
    };
    EXPECT_EQ(start(0), "0.0");
    EXPECT_EQ(start(-86400), "-86400.0");
    EXPECT_EQ(start(1.25), "1.2"); // to even
    EXPECT_EQ(start(0.96), "1.0");
    EXPECT_EQ(start(1e20), "100000000000000000000.0");
    EXPECT_EQ(start(std::numeric_limits<double>::lowest()).size(), 312U);
}

TEST(EventLink, IsAbsentForAnIdentifierThatNoLinkMayHold) {
    EXPECT_EQ(eventLink("A B", {0}), std::nullopt);
    EXPECT_EQ(eventLink("A\n", {0}), std::nullopt);
    EXPECT_EQ(eventLink("\xC3\xA9", {0}), std::nullopt);
    EXPECT_EQ(eventLink("100%", {0}), std::nullopt);
}

class GatheringTest : public AgendaFixture {
protected:
    GatheringTest() { settings::onlySelectedCalendars = true; }

    EventRecords gather() { return view->getCalendarEventsEK(); }

    std::vector<std::string> titles() {
        std::vector<std::string> titles;
        for (const auto& record : gather()) {
            titles.push_back(record->title().value_or("(none)"));
        }
        return titles;
    }

    std::vector<std::string> searchedCalendars() {
        std::vector<std::string> identifiers;
        for (const auto& calendar : memory.calendarStores.predicates.back().calendars) {
            identifiers.push_back(calendar->calendarIdentifier);
        }
        return identifiers;
    }

    void addCalendars() {
        for (const char* identifier : {"home", "work", "team"}) {
            memory.calendarStores.addCalendar(identifier, identifier);
        }
    }

    std::shared_ptr<QuorvelView> view = std::make_shared<QuorvelView>(platform(), CGRect{});
};

// Which calendars.

TEST_F(GatheringTest, LeavesOutWhatTheStockApplicationHasSwitchedOff) {
    addCalendars();
    setStockPreferences({{"LastDeselectedCalendars", {PropertyListArray{plist("work")}}}});
    gather();
    EXPECT_THAT(searchedCalendars(), ElementsAre("home", "team"));
    EXPECT_THAT(memory.systemLog.lines, IsEmpty());
}

TEST_F(GatheringTest, ComparesIdentifiersExactly) {
    addCalendars();
    setStockPreferences({{"LastDeselectedCalendars",
                          {PropertyListArray{plist("Work"), plist("hom"), plist("nobody")}}}});
    gather();
    EXPECT_THAT(searchedCalendars(), ElementsAre("home", "work", "team"));
}

TEST_F(GatheringTest, SearchesAllCalendarsWithoutADeselectedOne) {
    addCalendars();
    setStockPreferences();
    gather();
    EXPECT_THAT(searchedCalendars(), ElementsAre("home", "work", "team"));
    setStockPreferences({{"LastDeselectedCalendars", {PropertyListArray{}}}});
    gather();
    EXPECT_THAT(searchedCalendars(), ElementsAre("home", "work", "team"));
}

TEST_F(GatheringTest, PassesOddEntriesOver) {
    addCalendars();
    setStockPreferences({{"LastDeselectedCalendars", plist("work")}});
    gather();
    EXPECT_THAT(searchedCalendars(), ElementsAre("home", "work", "team"));
    setStockPreferences({{"LastDeselectedCalendars",
                          {PropertyListArray{plist(4), {PropertyListArray{}}, plist("team")}}}});
    gather();
    EXPECT_THAT(searchedCalendars(), ElementsAre("home", "work"));
}

TEST_F(GatheringTest, SearchesNoCalendarWithoutTheStockPreferences) {
    addEvent("Lunch", at(0, 12));
    EXPECT_THAT(gather(), IsEmpty());
    ASSERT_THAT(memory.calendarStores.predicates, SizeIs(1));
    EXPECT_THAT(memory.calendarStores.predicates[0].calendars, IsEmpty());
    EXPECT_THAT(memory.systemLog.lines, IsEmpty());
}

TEST_F(GatheringTest, SearchesTheSelectionInItsOrder) {
    addCalendars();
    settings::onlySelectedCalendars = false;
    setSelection({plist("team"), plist("gone"), plist("home")});
    gather();
    EXPECT_THAT(searchedCalendars(), ElementsAre("team", "home"));
    EXPECT_THAT(memory.systemLog.lines,
                ElementsAre("QRV: unable to find calendar with UUID gone, skipping"));
    EXPECT_THAT(memory.preferences.reads, ElementsAre("array /var/mobile/Library/Preferences/"
                                                      "org.quorvel.quorvel.calendars.plist"));
}

TEST_F(GatheringTest, SearchesEvenWhereTheSelectionIsUnknown) {
    addCalendars();
    settings::onlySelectedCalendars = false;
    setSelection({plist("gone"), plist("lost")});
    EXPECT_THAT(gather(), IsEmpty());
    EXPECT_THAT(memory.systemLog.lines,
                ElementsAre("QRV: unable to find calendar with UUID gone, skipping",
                            "QRV: unable to find calendar with UUID lost, skipping"));
    ASSERT_THAT(memory.calendarStores.predicates, SizeIs(1));
    EXPECT_THAT(memory.calendarStores.predicates[0].calendars, IsEmpty());
}

TEST_F(GatheringTest, DoesNotSearchWithoutASelection) {
    addEvent("Lunch", at(0, 12));
    settings::onlySelectedCalendars = false;
    EXPECT_THAT(gather(), IsEmpty());
    setSelection({});
    EXPECT_THAT(gather(), IsEmpty());
    EXPECT_THAT(memory.systemLog.lines,
                ElementsAre("QRV: no enabled calendars found, not searching the DB!",
                            "QRV: no enabled calendars found, not searching the DB!"));
    EXPECT_THAT(memory.calendarStores.predicates, IsEmpty());
    EXPECT_EQ(memory.calendarStores.storesMade, 2U);
}

TEST_F(GatheringTest, NamesSelectionEntriesThatAreNoTexts) {
    addCalendars();
    settings::onlySelectedCalendars = false;
    setSelection({plist(12), {PropertyListDictionary{}}, plist("home")});
    gather();
    EXPECT_THAT(searchedCalendars(), ElementsAre("home"));
    EXPECT_THAT(memory.systemLog.lines,
                ElementsAre("QRV: unable to find calendar with UUID 12, skipping",
                            "QRV: unable to find calendar with UUID , skipping"));
}

TEST_F(GatheringTest, MakesAStoreForEveryGathering) {
    setStockPreferences();
    gather();
    gather();
    EXPECT_EQ(memory.calendarStores.storesMade, 2U);
}

// Which days.

TEST_F(GatheringTest, SearchesFromNowToTheEndOfTheLastDay) {
    setStockPreferences();
    settings::daysToDisplay = 2;
    gather();
    const EKEventPredicate& predicate = memory.calendarStores.predicates.back();
    EXPECT_EQ(predicate.startDate, at(0, 10));
    EXPECT_EQ(predicate.endDate.timeIntervalSinceReferenceDate, 3 * 86400 - 1);
}

TEST_F(GatheringTest, CountsDaysOfFixedLength) {
    setStockPreferences();
    memory.dateServices.changes = {{at(1, 2), 3600}};
    settings::daysToDisplay = 2;
    gather();
    // 23:59:59 of today and 48 hours more: 00:59:59 on the clock of that day.
    EXPECT_EQ(memory.calendarStores.predicates.back().endDate.timeIntervalSinceReferenceDate,
              3 * 86400 - 1);
}

TEST_F(GatheringTest, PutsNoBoundOnTheDays) {
    setStockPreferences();
    settings::daysToDisplay = std::numeric_limits<std::int32_t>::max();
    gather();
    EXPECT_EQ(memory.calendarStores.predicates.back().endDate.timeIntervalSinceReferenceDate,
              2147483647.0 * 86400 + 86399);
    settings::daysToDisplay = std::numeric_limits<std::int32_t>::min();
    gather();
    EXPECT_EQ(memory.calendarStores.predicates.back().endDate.timeIntervalSinceReferenceDate,
              -2147483648.0 * 86400 + 86399);
}

TEST_F(GatheringTest, FindsWhatIsStillRunning) {
    setStockPreferences();
    settings::daysToDisplay = 0;
    EKEvent allDay = event("All day", at(0, 0));
    allDay.endDate = {86399};
    allDay.isAllDay = true;
    memory.calendarStores.addEvent(allDay);
    EKEvent running = event("Running", at(0, 9));
    running.endDate = at(0, 11);
    memory.calendarStores.addEvent(running);
    EKEvent over = event("Over", at(0, 9));
    over.endDate = at(0, 9, 30);
    memory.calendarStores.addEvent(over);
    addEvent("Tonight", at(0, 23));
    addEvent("Tomorrow", at(1, 0));
    EXPECT_THAT(titles(), ElementsAre("All day", "Running", "Tonight"));
    settings::daysToDisplay = 1;
    EXPECT_THAT(titles(), ElementsAre("All day", "Running", "Tonight", "Tomorrow"));
}

// What becomes of the events.

TEST_F(GatheringTest, CopiesTheEventIntoItsRecord) {
    setStockPreferences();
    EKEvent made = event("Lunch", at(0, 12));
    made.location = "Canteen";
    made.isAllDay = true;
    made.persistentEvent.eventIdentifier = "home:7:RID=43200";
    memory.calendarStores.addEvent(made);
    const EventRecords records = gather();
    ASSERT_THAT(records, SizeIs(1));
    const EKEventQRV& record = *records[0];
    EXPECT_EQ(record.title(), "Lunch");
    EXPECT_EQ(record.startDate(), at(0, 12));
    EXPECT_EQ(record.endDate(), at(0, 13));
    EXPECT_EQ(record.location(), "Canteen");
    EXPECT_TRUE(record.isAllDay());
    EXPECT_EQ(record.calendarColor(), homeColor);
    EXPECT_EQ(record.URL()->absoluteString(), "x-apple-calevent://home/7?o=43200.0");
}

TEST_F(GatheringTest, LeavesAbsentWhatTheEventLacks) {
    EKEvent bare;
    bare.persistentEvent.eventIdentifier = "not a link";
    memory.calendarStores.answer = {{std::make_shared<const EKEvent>(bare)}};
    const EventRecords records = gather();
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records[0]->title(), std::nullopt);
    EXPECT_EQ(records[0]->location(), std::nullopt);
    EXPECT_EQ(records[0]->URL(), std::nullopt);
    EXPECT_EQ(records[0]->calendarColor(), std::nullopt);
    EXPECT_FALSE(records[0]->isAllDay());
}

TEST_F(GatheringTest, CopiesTheLocationWhetherItIsShownOrNot) {
    setStockPreferences();
    EKEvent made = event("Lunch", at(0, 12));
    made.location = "Canteen";
    memory.calendarStores.addEvent(made);
    settings::displayLocation = false;
    EXPECT_EQ(gather().at(0)->location(), "Canteen");
}

TEST_F(GatheringTest, PreservesTheStoresOrderAndItsDuplicates) {
    setStockPreferences();
    addEvent("Late", at(0, 20));
    addEvent("Early", at(0, 11));
    addEvent("Late", at(0, 20));
    EXPECT_THAT(titles(), ElementsAre("Late", "Early", "Late"));
}

class CapTest : public GatheringTest {
protected:
    CapTest() {
        EKEvents events{nullptr};
        for (const char* title : {"2", "3", "4", "5"}) {
            events.push_back(std::make_shared<const EKEvent>(event(title, at(0, 12))));
        }
        memory.calendarStores.answer = events;
    }
};

TEST_F(CapTest, CountsNoNullEvent) {
    settings::maxEventsToDisplay = 3;
    EXPECT_THAT(titles(), ElementsAre("2", "3", "4"));
    EXPECT_THAT(memory.systemLog.lines, ElementsAre("QRV: skipping nil event..."));
}

TEST_F(CapTest, LimitsNothingBelowOne) {
    settings::maxEventsToDisplay = 0;
    EXPECT_THAT(gather(), SizeIs(4));
    settings::maxEventsToDisplay = -5;
    EXPECT_THAT(gather(), SizeIs(4));
    settings::maxEventsToDisplay = 4;
    EXPECT_THAT(gather(), SizeIs(4));
    settings::maxEventsToDisplay = 1;
    EXPECT_THAT(titles(), ElementsAre("2"));
}

TEST_F(CapTest, IgnoresEventsBehindTheLast) {
    memory.calendarStores.answer->push_back(nullptr);
    settings::maxEventsToDisplay = 4;
    gather();
    EXPECT_THAT(memory.systemLog.lines, SizeIs(1));
}

TEST(EventRecord, StartsEmpty) {
    const EKEventQRV record;
    for (const auto key : record.keys()) {
        if (key != "isAllDay") {
            EXPECT_EQ(record.valueForKey(key).index(), 0U) << key;
        }
    }
    EXPECT_FALSE(record.isAllDay());
}

TEST(EventRecord, NamesItsValues) {
    EKEventQRV record;
    EXPECT_EQ(record.className(), "EKEventQRV");
    EXPECT_THAT(record.keys(), ElementsAre("title", "location", "URL", "isAllDay", "startDate",
                                           "endDate", "calendarColor"));
    record.setTitle("Lunch");
    record.setLocation("Canteen");
    record.setURL(NSURL::URLWithString("a:b"));
    record.setAllDay(true);
    record.setStartDate(NSDate{1});
    record.setEndDate(NSDate{2});
    record.setCalendarColor(UIColor::redColor());
    EXPECT_EQ(std::get<std::string>(record.valueForKey("title")), "Lunch");
    EXPECT_EQ(std::get<std::string>(record.valueForKey("location")), "Canteen");
    EXPECT_EQ(std::get<NSURL>(record.valueForKey("URL")).absoluteString(), "a:b");
    EXPECT_TRUE(std::get<bool>(record.valueForKey("isAllDay")));
    EXPECT_EQ(std::get<NSDate>(record.valueForKey("startDate")), NSDate{1});
    EXPECT_EQ(std::get<NSDate>(record.valueForKey("endDate")), NSDate{2});
    EXPECT_EQ(std::get<UIColor>(record.valueForKey("calendarColor")), UIColor::redColor());
    EXPECT_EQ(record.valueForKey("colour").index(), 0U);
}

} // namespace
} // namespace quorvel
