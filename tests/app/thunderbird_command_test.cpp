// The calendars of Thunderbird, as a user who has some sees them.
#include <gmock/gmock.h>

#include "tests/app/command_fixture.h"
#include "tests/freedesktop/calendars/thunderbird/written_database.h"

namespace quorvel::app {
namespace {

using freedesktop::thunderbird::calendarTables;
using freedesktop::thunderbird::Database;
using testing::ContainsRegex;
using testing::HasSubstr;

class ThunderbirdCommandTest : public CommandTest {
protected:
    // Two calendars, of which Thunderbird shows the first.
    void makeProfile() const {
        write("home/.thunderbird/profiles.ini", "[InstallX]\nDefault=abc.default\n");
        write("home/.thunderbird/abc.default/prefs.js",
              preference("home.name", "\"Home\"") + preference("home.type", "\"storage\"") +
                  preference("home.color", "\"#336699\"") +
                  preference("home.calendar-main-in-composite", "true") +
                  preference("work.name", "\"Work\"") + preference("work.type", "\"caldav\""));
        std::filesystem::create_directory(profile() / "calendar-data");
        Database(profile() / "calendar-data/local.sqlite")
            .run(calendarTables)
            .addEvent("home", "1", "Dentist", "2026-03-10 14:00", "2026-03-10 15:00")
            .addLocation("home", "1", "Main Street");
        Database(profile() / "calendar-data/cache.sqlite")
            .run(calendarTables)
            .addEvent("work", "2", "Review", "2026-03-10 16:00", "2026-03-10 17:00");
    }
    static std::string preference(const std::string& name, const std::string& value) {
        return "user_pref(\"calendar.registry." + name + "\", " + value + ");\n";
    }
    std::filesystem::path profile() const { return path("home/.thunderbird/abc.default"); }
    std::vector<std::string> titles(const RunResult& result) const {
        std::vector<std::string> titles;
        for (const Json& row : result.json()) {
            titles.push_back(row.at("title"));
        }
        return titles;
    }
};

using Titles = std::vector<std::string>;

TEST_F(ThunderbirdCommandTest, AreFoundWithoutBeingNamed) {
    makeProfile();
    for (const std::string round : {"read", "from the index"}) {
        const RunResult agenda = run({"agenda", "--json", "--now", "2026-03-10T10:00:00Z"});
        EXPECT_EQ(agenda.status, 0);
        EXPECT_EQ(agenda.errors, "") << round;
        EXPECT_EQ(titles(agenda), Titles{"Dentist"}) << round; // the other one has no tick
        EXPECT_EQ(agenda.json()[0].at("location"), "Main Street");
        const std::string list = run({"calendars"}).output;
        const std::string store = " +Thunderbird: " + profile().string() + "\n";
        EXPECT_THAT(list, ContainsRegex("thunderbird-[0-9a-f]+ +Home +#336699FF +yes" + store));
        EXPECT_THAT(list, ContainsRegex("thunderbird-[0-9a-f]+ +Work +#[0-9A-F]+ +no" + store));
    }
}

TEST_F(ThunderbirdCommandTest, AreASourceOfTheirOwn) {
    makeProfile();
    const auto agendaOf = [this](const std::string& source) {
        return runHere({"agenda", "--json", "--calendars", source});
    };
    writeCalendar("Files", event("3", "In a file", "DTSTART:20260310T120000Z"));
    EXPECT_EQ(titles(agendaOf("thunderbird:")), Titles{"Dentist"});
    EXPECT_EQ(titles(agendaOf("thunderbird:" + profile().string())), Titles{"Dentist"});
    EXPECT_EQ(titles(agendaOf("thunderbird:~/.thunderbird/abc.default")), Titles{"Dentist"});
    EXPECT_EQ(titles(runHere(
                  {"agenda", "--json", "--calendars", calendars(), "--calendars", "thunderbird:"})),
              (Titles{"In a file", "Dentist"}));
}

TEST_F(ThunderbirdCommandTest, AMissingProfileIsAnErrorWhereItIsNamed) {
    const RunResult none = run({"agenda", "--calendars", "thunderbird:"});
    EXPECT_EQ(none.status, 2);
    EXPECT_THAT(none.errors, HasSubstr("the calendars 'thunderbird:' cannot be read (Thunderbird "
                                       "has no profile here): name a folder of its profiles"));
    const RunResult folder = run({"agenda", "--calendars", "thunderbird:" + path("home").string()});
    EXPECT_EQ(folder.status, 2);
    EXPECT_THAT(folder.errors, HasSubstr("there is no file prefs.js in that folder"));
    const RunResult bare = run({"agenda", "--calendars", "thunderbird"});
    EXPECT_EQ(bare.status, 2);
    EXPECT_THAT(bare.errors, HasSubstr(": write 'thunderbird:' for those of Thunderbird\n"));
}

TEST_F(ThunderbirdCommandTest, ADamagedDatabaseIsNamedAndTheOtherOneShown) {
    makeProfile();
    write("home/.thunderbird/abc.default/calendar-data/cache.sqlite", std::string(5000, 'x'));
    const RunResult agenda = run({"agenda", "--json", "--now", "2026-03-10T10:00:00Z"});
    EXPECT_EQ(agenda.status, 0);
    EXPECT_EQ(titles(agenda), Titles{"Dentist"});
    EXPECT_EQ(agenda.errors, "quorvel: " + (profile() / "calendar-data/cache.sqlite").string() +
                                 ": it cannot be read: file is not a database\n");
}

} // namespace
} // namespace quorvel::app
