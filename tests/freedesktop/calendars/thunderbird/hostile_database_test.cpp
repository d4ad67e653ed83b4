// Databases that are damaged, of another form, or made to do harm.
#include <chrono>
#include <random>

#include <sys/stat.h>

#include "freedesktop/calendars/thunderbird/calendar_database.h"
#include "tests/freedesktop/calendars/thunderbird/profile_fixture.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

constexpr std::string_view foreign =
    "it is no calendar database of Thunderbird, or one of another version";

class HostileDatabaseTest : public ProfileFixture {
protected:
    std::string march() { return found("20260301T000000", "20260331T235959"); }
    void expectProblem(std::string_view what) {
        march();
        EXPECT_EQ(problems, local().string() + ":0: " + std::string(what) + "\n");
        ASSERT_EQ(stores.unreadable().size(), 1U);
        EXPECT_EQ(stores.unreadable()[0].what.english(), what);
    }
    std::string contents() const {
        std::ifstream file(local(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
};

TEST_F(HostileDatabaseTest, WhatIsNoDatabaseIsNamed) {
    registerCalendar("home", "Home");
    write("profile/calendar-data/local.sqlite", std::string(5000, 'x'));
    expectProblem("it cannot be read: file is not a database");
    EXPECT_FALSE(stores.anyCalendar());
}

TEST_F(HostileDatabaseTest, AFolderInItsPlaceIsNamed) {
    registerCalendar("home", "Home");
    std::filesystem::create_directory(local());
    expectProblem("it is not a regular file");
}

TEST_F(HostileDatabaseTest, APipeInItsPlaceIsNotWaitedFor) {
    registerCalendar("home", "Home");
    ASSERT_EQ(mkfifo(local().c_str(), 0600), 0);
    expectProblem("it is not a regular file");
}

TEST_F(HostileDatabaseTest, AnotherFormIsNamed) {
    registerCalendar("home", "Home");
    Database(local()).run("CREATE TABLE notes(text)");
    expectProblem(foreign);
}

TEST_F(HostileDatabaseTest, MissingColumnsAreNamed) {
    registerCalendar("home", "Home");
    Database(local()).run("CREATE TABLE cal_events(cal_id, id); CREATE TABLE cal_recurrence(cal_id,"
                          " item_id, icalString); CREATE TABLE cal_properties(cal_id)");
    expectProblem(foreign);
}

TEST_F(HostileDatabaseTest, AViewInPlaceOfATableIsRefused) {
    homeDatabase().run("DROP TABLE cal_recurrence;"
                       "CREATE VIEW cal_recurrence(cal_id, item_id, icalString) AS"
                       " WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n)"
                       " SELECT 'home', '1', i FROM n WHERE i < 0");
    expectProblem(foreign);
}

TEST_F(HostileDatabaseTest, ReadingEndsAtItsDeadline) {
    homeDatabase().run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 50000)"
                       " INSERT INTO cal_events(cal_id, id) SELECT 'other', i FROM n");
    const std::function<bool(std::string_view)> noZone = [](std::string_view) { return false; };
    DatabaseLimits limits{noZone};
    limits.longest = 0;
    const auto read = readCalendars(local().string(), {"home"}, limits);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error(), "reading it takes too long");
    const std::atomic<bool> isCancelled = true;
    EXPECT_FALSE(readCalendars(local().string(), {"home"}, {noZone, &isCancelled}));
    EXPECT_TRUE(readCalendars(local().string(), {"home"}, {noZone}));
}

TEST_F(HostileDatabaseTest, EventsThatTakeTooMuchMemoryAreLeftOut) {
    homeDatabase().run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 20000)"
                       " INSERT INTO cal_events(cal_id, id, title, event_start)"
                       " SELECT 'home', i, printf('%.200c', 'x'), 1773133200000000 FROM n");
    const std::function<bool(std::string_view)> noZone = [](std::string_view) { return false; };
    DatabaseLimits limits{noZone};
    limits.mostBytes = std::size_t{1} << 20U;
    const auto read = readCalendars(local().string(), {"home", "more"}, limits);
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->at("home").isTruncated);
    EXPECT_GT(read->at("home").events.size(), 1000U);
    EXPECT_LT(read->at("home").events.size(), 10000U);
    EXPECT_EQ(read->at("more").events.size(), 0U);
}

TEST_F(HostileDatabaseTest, ValuesOfOtherTypesAreLeftOut) {
    homeDatabase()
        .run("INSERT INTO cal_events(cal_id, id, title, flags, event_start) VALUES"
             "('home', 1, 2, 'many', 'soon'), ('home', NULL, NULL, NULL, NULL),"
             "('home', '3', x'FF00FE', 0, 1773133200000000), ('home', x'00', 'nan', 0, 9e999),"
             "('home', '5', 'real', 0, 1773133200000000.5),"
             "('home', '6', 'before 1970', 0, 18446744073609551616.0),"
             "('home', '7', 'far', 0, 9223372036854775807), ('home', '8', 'no tz', 0, "
             "1773133201000000)")
        .run("INSERT INTO cal_recurrence VALUES(NULL, 'home', NULL), ('8', 'home', 7),"
             " ('8', 'home', x'FF'), ('8', 'home', 'RRULE')");
    EXPECT_EQ(march(), "real 20260310T090000-20260310T090000\n"
                       "\xC3\xBF \xC3\xBE 20260310T090000-20260310T090000\n"
                       "no tz 20260310T090001-20260310T090001\n");
    EXPECT_EQ(stores.unreadable().size(), 0U);
}

TEST_F(HostileDatabaseTest, ATextInUtf16IsReadAsWell) {
    registerCalendar("home", "Home");
    Database(local())
        .run("PRAGMA encoding = 'UTF-16'")
        .run(calendarTables)
        .addEvent("home", "1", "Grüße", "2026-03-10 09:00", "");
    EXPECT_EQ(march(), "Grüße 20260310T100000-20260310T100000\n");
}

TEST_F(HostileDatabaseTest, WhatWasReadBeforeStaysWhileTheDatabaseIsDamaged) {
    homeDatabase().addEvent("home", "1", "A", "2026-03-10 09:00", "");
    EXPECT_EQ(march(), "A 20260310T100000-20260310T100000\n");
    const std::string whole = contents();
    write("profile/calendar-data/local.sqlite", whole.substr(0, 100));
    EXPECT_EQ(march(), "A 20260310T100000-20260310T100000\n");
    EXPECT_EQ(stores.unreadable().size(), 1U);
    write("profile/calendar-data/local.sqlite", whole);
    EXPECT_EQ(march(), "A 20260310T100000-20260310T100000\n");
    EXPECT_EQ(stores.unreadable().size(), 0U);
}

// None of these may crash, hang, or do anything but show some of the events.
TEST_F(HostileDatabaseTest, TornAndScribbledDatabasesDoNoHarm) {
    Database database = homeDatabase();
    for (int index = 0; index < 100; ++index) {
        database.addEvent("home", std::to_string(index), "Event", "2026-03-10 09:00",
                          "2026-03-10 10:00", "Europe/Berlin");
    }
    const std::string whole = contents();
    ASSERT_GT(whole.size(), 20000U);
    std::mt19937 random(7);
    for (int round = 0; round < 150; ++round) {
        std::string bytes = whole;
        if (round % 3 == 0) {
            bytes.resize(random() % bytes.size());
        }
        for (int count = 0; count < round % 20 && !bytes.empty(); ++count) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        write("profile/calendar-data/local.sqlite", bytes);
        EXPECT_LE(events("20260301T000000", "20260331T235959").size(), 200U);
    }
}

TEST_F(HostileDatabaseTest, ScribbledPreferencesDoNoHarm) {
    homeDatabase().addEvent("home", "1", "A", "2026-03-10 09:00", "");
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        std::string bytes = m_preferences;
        for (int count = 0; count < 5; ++count) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        write("profile/prefs.js", bytes);
        EXPECT_LE(stores.makeEventStore()->calendars().size(), 2U);
    }
}

TEST_F(HostileDatabaseTest, TheLogOfAnotherDatabaseIsIgnored) {
    homeDatabase().addEvent("home", "1", "A", "2026-03-10 09:00", "");
    write("profile/calendar-data/local.sqlite-wal", std::string(5000, '\x37'));
    write("profile/calendar-data/local.sqlite-journal", std::string(5000, '\x37'));
    EXPECT_EQ(march(), "A 20260310T100000-20260310T100000\n");
    EXPECT_EQ(problems, "");
}

} // namespace
} // namespace quorvel::freedesktop::thunderbird
