// Thunderbird's calendars as the store shows them.
#include <cstdlib>

#include "freedesktop/io/file_version.h"

#include "tests/freedesktop/calendars/thunderbird/profile_fixture.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

constexpr int allDay = 8;
constexpr int repeats = 16;

class ThunderbirdCalendarsTest : public ProfileFixture {
protected:
    std::string march() { return found("20260301T000000", "20260331T235959"); }
    std::vector<std::string> identifiers() {
        std::vector<std::string> result;
        for (const auto& calendar : stores.makeEventStore()->calendars()) {
            result.push_back(calendar->calendarIdentifier);
        }
        return result;
    }
};

TEST_F(ThunderbirdCalendarsTest, EventsAreAsTheyAreStored) {
    homeDatabase()
        .addEvent("home", "1", "Meeting", "2026-03-10 09:00", "2026-03-10 10:00", "Europe/Berlin")
        .addEvent("home", "2", "Call", "2026-03-11 09:00", "2026-03-11 09:30")
        .addEvent("home", "3", "Lunch", "2026-03-12 12:00", "2026-03-12 13:00", "floating")
        .addEvent("home", "4", "Trip", "2026-03-13 00:00", "2026-03-15 00:00", "floating", allDay)
        .addEvent("home", "5", "No end", "2026-03-16 09:00", "")
        .addEvent("other", "6", "Not this one", "2026-03-10 09:00", "2026-03-10 10:00");
    EXPECT_EQ(march(), "Meeting 20260310T100000-20260310T110000\n"
                       "Call 20260311T100000-20260311T103000\n"
                       "Lunch 20260312T120000-20260312T130000\n"
                       "Trip D 20260313T000000-20260314T235959\n"
                       "No end 20260316T100000-20260316T100000\n");
    EXPECT_EQ(problems, "");
}

TEST_F(ThunderbirdCalendarsTest, LocationsBelongToTheirEventsAndOccurrences) {
    homeDatabase()
        .addEvent("home", "1", "Class", "2026-03-02 09:00", "2026-03-02 10:00", "UTC", repeats)
        .addRule("home", "1", "RRULE:FREQ=WEEKLY;COUNT=2")
        .addEvent("home", "1", "Class", "2026-03-09 09:00", "2026-03-09 10:00", "UTC", 0,
                  "2026-03-09 09:00")
        .addLocation("home", "1", "Room 1")
        .addLocation("home", "1", "Room 2, upstairs; left", "2026-03-09 09:00")
        .addLocation("other", "1", "elsewhere");
    const auto all = events("20260301T000000", "20260331T235959");
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0]->location, "Room 1");
    EXPECT_EQ(all[1]->location, "Room 2, upstairs; left");
}

TEST_F(ThunderbirdCalendarsTest, RepeatedEventsFollowTheirRulesAndChanges) {
    homeDatabase()
        // 10:00 in Berlin, also after the clock has changed on the 29th.
        .addEvent("home", "1", "Weekly", "2026-03-09 09:00", "2026-03-09 10:00", "Europe/Berlin",
                  repeats)
        .addRule("home", "1", "RRULE:FREQ=WEEKLY;COUNT=4")
        .addRule("home", "1", "EXDATE;TZID=Europe/Berlin:20260316T100000")
        .addEvent("home", "1", "Moved", "2026-03-24 14:00", "2026-03-24 15:00", "Europe/Berlin", 0,
                  "2026-03-23 09:00");
    EXPECT_EQ(march(), "Weekly 20260309T100000-20260309T110000\n"
                       "Moved 20260324T150000-20260324T160000\n"
                       "Weekly 20260330T100000-20260330T110000\n");
    EXPECT_EQ(problems, "");
}

TEST_F(ThunderbirdCalendarsTest, ACancelledOrDeletedEventIsNotShown) {
    homeDatabase()
        .addEvent("home", "1", "Cancelled", "2026-03-10 09:00", "")
        .addEvent("home", "2", "Deleted while offline", "2026-03-10 09:00", "")
        .addEvent("home", "3", "Made while offline", "2026-03-10 09:00", "")
        .run("UPDATE cal_events SET ical_status = 'CANCELLED' WHERE id = '1'")
        .run("UPDATE cal_events SET offline_journal = 4 WHERE id = '2'")
        .run("UPDATE cal_events SET offline_journal = 1 WHERE id = '3'");
    EXPECT_EQ(march(), "Made while offline 20260310T100000-20260310T100000\n");
}

TEST_F(ThunderbirdCalendarsTest, CalendarsHaveTheirNamesColoursAndOrder) {
    registerCalendar("b-2", "Work", "caldav", "color\", \"#00ff00\"\ncache.enabled\", true");
    registerCalendar("a-1", "Home", "storage",
                     "color\", \"#ff0000\"\ncalendar-main-in-composite\", true");
    registerCalendar("c-3", "Off", "storage", "disabled\", true");
    m_preferences += "user_pref(\"calendar.list.sortOrder\", \"b-2 a-1\");\n";
    write("profile/prefs.js", m_preferences);
    Database(local()).run(calendarTables).addEvent("a-1", "1", "Local", "2026-03-10 09:00", "");
    Database(cache()).run(calendarTables).addEvent("b-2", "1", "Remote", "2026-03-11 09:00", "");
    const auto calendars = stores.makeEventStore()->calendars();
    ASSERT_EQ(calendars.size(), 2U);
    EXPECT_EQ(calendars[0]->title, "Work");
    EXPECT_EQ(calendars[0]->CGColor, (platform::UIColor{0, 1, 0, 1}));
    EXPECT_EQ(calendars[1]->title, "Home");
    EXPECT_EQ(march(), "Local 20260310T100000-20260310T100000\n"
                       "Remote 20260311T100000-20260311T100000\n");
    EXPECT_EQ(stores.deselectedCalendars(),
              std::vector<std::string>{calendars[0]->calendarIdentifier});
    EXPECT_EQ(stores.storeOf(calendars[0]->calendarIdentifier), "Thunderbird: " + profile());
    EXPECT_TRUE(stores.anyReadable());
}

TEST_F(ThunderbirdCalendarsTest, AnIdentifierComesFromTheCalendarAlone) {
    homeDatabase();
    const std::vector<std::string> before = identifiers();
    m_preferences.replace(m_preferences.find("Home"), 4, "Casa");
    write("profile/prefs.js", m_preferences);
    EXPECT_EQ(titles(), "Casa");
    EXPECT_EQ(identifiers(), before);
    std::filesystem::rename(profile(), folder / "moved");
    stores.setSources({CalendarSource::at("thunderbird:" + (folder / "moved").string())});
    EXPECT_EQ(identifiers(), before);
}

TEST_F(ThunderbirdCalendarsTest, ChangesShowInTheNextStore) {
    homeDatabase().addEvent("home", "1", "Old", "2026-03-10 09:00", "");
    EXPECT_EQ(march(), "Old 20260310T100000-20260310T100000\n");
    Database(local()).run("UPDATE cal_events SET title = 'New'");
    EXPECT_EQ(march(), "New 20260310T100000-20260310T100000\n");
    registerCalendar("more", "More");
    Database(local()).addEvent("more", "1", "Added", "2026-03-11 09:00", "");
    EXPECT_EQ(march(), "New 20260310T100000-20260310T100000\n"
                       "Added 20260311T100000-20260311T100000\n");
    std::filesystem::remove(local());
    EXPECT_EQ(march(), "");
    EXPECT_EQ(titles(), "Home,More");
    std::filesystem::remove_all(profile());
    EXPECT_EQ(titles(), "");
    EXPECT_FALSE(stores.anyReadable());
    EXPECT_EQ(problems,
              "thunderbird:" + profile() + ":0: there is no file prefs.js in that folder\n");
}

// As Thunderbird does while it runs.
TEST_F(ThunderbirdCalendarsTest, ReadsWhatAnotherConnectionHoldsLocked) {
    registerCalendar("home", "Home");
    Database running(local());
    running.run("PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = WAL")
        .run(calendarTables)
        .addEvent("home", "1", "In the log alone", "2026-03-10 09:00", "");
    ASSERT_TRUE(std::filesystem::exists(local().string() + "-wal"));
    EXPECT_EQ(march(), "In the log alone 20260310T100000-20260310T100000\n");
    running.run("BEGIN IMMEDIATE; DELETE FROM cal_events");
    EXPECT_EQ(march(), "In the log alone 20260310T100000-20260310T100000\n");
    running.run("COMMIT");
    EXPECT_EQ(march(), "");
    EXPECT_EQ(problems, "");
}

TEST_F(ThunderbirdCalendarsTest, ReadsTheLastCommitWhileAJournalIsWritten) {
    homeDatabase().addEvent("home", "1", "Committed", "2026-03-10 09:00", "");
    Database running(local());
    running.run("PRAGMA cache_size = 1; PRAGMA cache_spill = 1; BEGIN EXCLUSIVE");
    for (int index = 0; index < 200; ++index) { // more than the cache holds
        running.addEvent("home", "x" + std::to_string(index), std::string(500, 'x'),
                         "2026-03-11 09:00", "");
    }
    ASSERT_TRUE(std::filesystem::exists(local().string() + "-journal"));
    EXPECT_EQ(march(), "Committed 20260310T100000-20260310T100000\n");
    running.run("ROLLBACK");
    EXPECT_EQ(problems, "");
}

TEST_F(ThunderbirdCalendarsTest, WritesNothingIntoTheProfile) {
    homeDatabase()
        .run("PRAGMA journal_mode = WAL")
        .addEvent("home", "1", "A", "2026-03-10 09:00", "");
    Database(cache()).run(calendarTables);
    const std::string before = profileState();
    EXPECT_EQ(march(), "A 20260310T100000-20260310T100000\n");
    EXPECT_EQ(profileState(), before);
}

TEST_F(ThunderbirdCalendarsTest, LeavesNoCopyBehind) {
    homeDatabase().addEvent("home", "1", "A", "2026-03-10 09:00", "");
    std::filesystem::create_directory(folder / "temporary");
    const std::string before = std::getenv("TMPDIR") != nullptr ? std::getenv("TMPDIR") : "";
    setenv("TMPDIR", (folder / "temporary").c_str(), 1);
    EXPECT_EQ(march(), "A 20260310T100000-20260310T100000\n");
    write("profile/calendar-data/local.sqlite", "no database");
    EXPECT_EQ(march(), "A 20260310T100000-20260310T100000\n");
    before.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", before.c_str(), 1);
    EXPECT_TRUE(std::filesystem::is_empty(folder / "temporary"));
}

TEST_F(ThunderbirdCalendarsTest, AProfileWithoutDatabasesHasEmptyCalendars) {
    registerCalendar("home", "Home");
    EXPECT_EQ(titles(), "Home");
    write("profile/calendar-data/local.sqlite", "");
    EXPECT_EQ(march(), "");
    EXPECT_EQ(titles(), "Home");
    EXPECT_EQ(problems, "");
}

TEST_F(ThunderbirdCalendarsTest, NamesACalendarThatIsOnAServerAlone) {
    registerCalendar("far", "Far", "caldav", "cache.enabled\", false");
    Database(cache()).run(calendarTables);
    EXPECT_EQ(titles(), "Far");
    EXPECT_EQ(problems, "the calendar 'Far' of Thunderbird:0: its events are on a server alone: "
                        "switch on 'Offline Support' in its properties in Thunderbird\n");
}

TEST_F(ThunderbirdCalendarsTest, TheIndexHasThemToo) {
    homeDatabase()
        .addEvent("home", "1", "A", "2026-03-10 09:00", "")
        .run("PRAGMA user_version = 1");
    const auto anHourLater = [] { return fileClock() + 3'600'000'000'000; };
    const auto read = [&] {
        FileCalendarStores others(zone, [](const CalendarProblem&) {});
        others.setIndex((folder / "index").string(), [](const std::string&) {});
        others.setFileClock(anHourLater);
        others.setSources({CalendarSource::at("thunderbird:" + profile())});
        const auto store = others.makeEventStore();
        const auto all = store->eventsMatchingPredicate(
            {date("20260301T000000"), date("20260331T000000"), store->calendars()});
        return all.size() == 1 ? all[0]->title.value_or("") + ", " +
                                     others.storeOf(store->calendars()[0]->calendarIdentifier)
                               : "none";
    };
    const std::string expected = "A, Thunderbird: " + profile();
    EXPECT_EQ(read(), expected);
    EXPECT_EQ(read(), expected);
    Database(local()).run("UPDATE cal_events SET title = 'B'");
    EXPECT_EQ(read(), "B, Thunderbird: " + profile());
}

} // namespace
} // namespace quorvel::freedesktop::thunderbird
