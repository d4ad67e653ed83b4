// Files, folders and vdir collections, and what changes in them between two stores.
#include "tests/freedesktop/calendars/store/store_fixture.h"

#include <sys/fsuid.h>
#include <sys/stat.h>

namespace quorvel::freedesktop {
namespace {

class SourceFilesTest : public StoreFixture {
protected:
    void use(const std::string& name = "") {
        stores.setSources({CalendarSource::at(name.empty() ? folder : folder / name)});
    }
    static std::string one(const std::string& uid) {
        return calendarText(
            eventText("UID:" + uid + "|SUMMARY:" + uid + "|DTSTART:20260310T100000Z"));
    }
    std::string today() { return found("20260310", "20260311"); }
};

// The superuser may read everything; as nobody this thread may not.
class AsNobody {
public:
    AsNobody()
        : m_user(setfsuid(nobody)) {}
    ~AsNobody() { setfsuid(static_cast<uid_t>(m_user)); }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

private:
    static constexpr uid_t nobody = 65534;
    int m_user;
};

TEST_F(SourceFilesTest, FileIsOneCalendar) {
    write("Home Office.ics", one("a"));
    use("Home Office.ics");
    EXPECT_EQ(titles(), "Home Office");
    EXPECT_EQ(today(), "a 20260310T110000-20260310T110000\n");
    EXPECT_TRUE(stores.anyReadable());
}

TEST_F(SourceFilesTest, FolderHoldsACalendarAFile) {
    write("work.ics", one("a"));
    write("home.ics", calendarText("X-WR-CALNAME:Family\r\nX-APPLE-CALENDAR-COLOR:#FF0000\r\n" +
                                   eventText("UID:b|DTSTART:20260310T090000Z")));
    write(".hidden.ics", one("c"));
    write("notes.txt", "no calendar");
    use();
    EXPECT_EQ(titles(), "Family,work");
    EXPECT_EQ(stores.makeEventStore()->calendars()[0]->CGColor, platform::UIColor::redColor());
    EXPECT_EQ(problems, "");
}

TEST_F(SourceFilesTest, FoldersWithinAreACalendarEach) {
    write("personal/color", "#0000ff\n");
    write("personal/displayname", "My life\n");
    write("personal/1.ics", one("a"));
    write("personal/2.ics", one("b"));
    write("work/x.ics", one("c"));
    write("account/shared/y.ics", one("d"));
    write("pictures/z.png", "x");
    use();
    EXPECT_EQ(titles(), "shared,My life,work");
    EXPECT_EQ(stores.makeEventStore()->calendars()[1]->CGColor, platform::UIColor::blueColor());
    EXPECT_EQ(events("20260310", "20260311").size(), 4U);
}

TEST_F(SourceFilesTest, FolderOfEventsIsOneCalendar) {
    write("cal/uid-1.ics", one("uid-1"));
    write("cal/uid-2.ics", one("uid-2"));
    use("cal");
    EXPECT_EQ(titles(), "cal");
    write("named/displayname", "By name");
    write("named/1.ics", one("a"));
    use("named/");
    EXPECT_EQ(titles(), "By name");
    for (int i = 0; i < 30; ++i) {
        write("many/" + std::to_string(i + 100) + ".ics", one("event" + std::to_string(i)));
    }
    use("many");
    EXPECT_EQ(titles(), "many");
}

TEST_F(SourceFilesTest, ChangesShowInTheNextStore) {
    write("a.ics", one("a"));
    use();
    const auto before = stores.makeEventStore();
    write("a.ics", one("changed"));
    write("b.ics", one("b"));
    EXPECT_EQ(today(), "b 20260310T110000-20260310T110000\n"
                       "changed 20260310T110000-20260310T110000\n");
    const auto seen =
        before->eventsMatchingPredicate({date("20260310"), date("20260311"), before->calendars()});
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0]->title, "a");
    std::filesystem::remove(folder / "a.ics");
    EXPECT_EQ(today(), "b 20260310T110000-20260310T110000\n");
    std::filesystem::remove_all(folder);
    EXPECT_EQ(today(), "");
    EXPECT_FALSE(stores.anyReadable());
    EXPECT_EQ(problems, folder.string() + ":0: there is no such file or folder\n");
}

TEST_F(SourceFilesTest, NamesWhatCannotBeReadAtAllForAsLongAsItCannot) {
    const auto unreadable = [this] {
        stores.makeEventStore();
        std::string text;
        for (const CalendarProblem& problem : stores.unreadable()) {
            text += std::filesystem::path(problem.file).filename().string() + ": " +
                    problem.what.english() + "\n";
        }
        return text;
    };
    write("a.ics", one("a"));
    write("b.ics", "hello");
    write("c.ics", "");
    write("d.ics", calendarText(eventText("UID:a|DTSTART:20261301")));
    use();
    const std::string both = "b.ics: no calendar: BEGIN:VCALENDAR is missing\n"
                             "c.ics: the file is empty\n";
    EXPECT_EQ(unreadable(), both);
    EXPECT_EQ(unreadable(), both) << "not only when it is new";
    EXPECT_FALSE(stores.isLate());
    write("b.ics", one("b"));
    EXPECT_EQ(unreadable(), "c.ics: the file is empty\n");
    std::filesystem::remove_all(folder);
    EXPECT_EQ(unreadable(), folder.filename().string() + ": there is no such file or folder\n");
}

TEST_F(SourceFilesTest, ChangedMetadataShows) {
    write("cal/color", "red");
    write("cal/1.ics", one("a"));
    use();
    EXPECT_EQ(titles(), "cal");
    write("cal/displayname", "Renamed");
    write("cal/color", "#00ff00");
    const auto calendar = stores.makeEventStore()->calendars().at(0);
    EXPECT_EQ(calendar->title, "Renamed");
    EXPECT_EQ(calendar->CGColor, platform::UIColor::greenColor());
}

TEST_F(SourceFilesTest, ProblemIsNamedOnceAVersion) {
    write("a.ics", calendarText(eventText("UID:a|DTSTART:20261301")));
    use();
    const std::string problem =
        (folder / "a.ics").string() +
        ":5: an event is left out, its DTSTART cannot be read: \"20261301\"\n";
    stores.makeEventStore();
    stores.makeEventStore();
    EXPECT_EQ(problems, problem);
    write("a.ics", calendarText("X-A:1\r\n" + eventText("UID:a|DTSTART:20261301")));
    stores.makeEventStore();
    EXPECT_NE(problems, problem);
}

TEST_F(SourceFilesTest, OpensNothingButFiles) {
    ASSERT_EQ(mkfifo((folder / "pipe.ics").c_str(), 0600), 0);
    std::filesystem::create_directory(folder / "folder.ics");
    std::filesystem::create_symlink(folder, folder / "loop");
    std::filesystem::create_symlink("/dev/zero", folder / "zero.ics");
    std::filesystem::create_symlink("nowhere", folder / "broken.ics");
    write("a.ics", one("a"));
    std::filesystem::create_symlink(folder / "a.ics", folder / "link.ics");
    use();
    EXPECT_EQ(titles(), "a,link");
    EXPECT_EQ(checkSource(CalendarSource::at(folder / "pipe.ics")).error(),
              "it is neither a file nor a folder");
}

TEST_F(SourceFilesTest, SameCalendarIsShownOnce) {
    write("cal/uid-1.ics", one("uid-1"));
    stores.setSources({CalendarSource::at(folder / "cal"), CalendarSource::at(folder)});
    EXPECT_EQ(titles(), "cal");
}

TEST_F(SourceFilesTest, IdentifiersAreStableAndPlain) {
    write("Über: alles?.ics", one("a"));
    use();
    const auto first = stores.makeEventStore()->calendars().at(0);
    FileCalendarStores others(zone, nullptr);
    others.setSources({CalendarSource::at(folder / "Über: alles?.ics")});
    EXPECT_EQ(others.makeEventStore()->calendars().at(0)->calendarIdentifier,
              first->calendarIdentifier);
    EXPECT_EQ(first->calendarIdentifier.find_first_not_of(
                  "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_."),
              std::string::npos);
    EXPECT_EQ(first->title, "Über: alles?");
}

TEST_F(SourceFilesTest, ManyFilesAreAllReadAndProblemsComeInOrder) {
    constexpr int files = 450;
    std::string expected;
    for (int i = 0; i < files; ++i) {
        const std::string name = "many/" + std::to_string(1000 + i) + ".ics";
        if (i % 100 == 50) {
            write(name, "garbage");
            expected += (folder / name).string() + ":1: no calendar: BEGIN:VCALENDAR is missing\n";
        } else {
            write(name, calendarText(eventText("UID:" + std::to_string(1000 + i) +
                                               "|SUMMARY:e|DTSTART:20260310T100000")));
        }
    }
    stores.setSources({CalendarSource::at(folder)});
    EXPECT_EQ(events("20260310", "20260311").size(), 446U);
    EXPECT_EQ(problems, expected);
    write("many/1400.ics", calendarText(eventText("UID:1400|SUMMARY:moved|DTSTART:20270101")));
    std::filesystem::remove(folder / "many/1000.ics");
    EXPECT_EQ(events("20260310", "20260311").size(), 444U);
    EXPECT_EQ(problems, expected);
}

TEST_F(SourceFilesTest, WhatMayNotBeReadIsNamedAndTheRestIsShown) {
    write("shut.ics", one("shut"));
    write("closed/a.ics", one("closed"));
    write("good.ics", one("good"));
    chmod(folder.c_str(), 0755);
    chmod((folder / "shut.ics").c_str(), 0);
    chmod((folder / "closed").c_str(), 0);
    use();
    {
        const AsNobody nobody;
        EXPECT_EQ(today(), "good 20260310T110000-20260310T110000\n");
        const std::string denied = ":0: it cannot be read: Permission denied\n";
        EXPECT_EQ(problems,
                  (folder / "shut.ics").string() + denied + (folder / "closed").string() + denied);
    }
    chmod((folder / "shut.ics").c_str(), 0644);
    chmod((folder / "closed").c_str(), 0755);
    const AsNobody nobody;
    EXPECT_EQ(today(), "closed 20260310T110000-20260310T110000\n"
                       "good 20260310T110000-20260310T110000\n"
                       "shut 20260310T110000-20260310T110000\n");
}

TEST_F(SourceFilesTest, SourceThatMayNotBeReadIsNamed) {
    write("closed/a.ics", one("a"));
    chmod(folder.c_str(), 0755);
    chmod((folder / "closed").c_str(), 0);
    use("closed");
    {
        const AsNobody nobody;
        EXPECT_EQ(today(), "");
        EXPECT_EQ(problems,
                  (folder / "closed").string() + ":0: it cannot be read: Permission denied\n");
        EXPECT_FALSE(stores.anyReadable());
    }
    chmod((folder / "closed").c_str(), 0755);
}

TEST_F(SourceFilesTest, MissingSourceIsNamed) {
    use("nowhere");
    EXPECT_EQ(today(), "");
    EXPECT_EQ(problems, (folder / "nowhere").string() + ":0: there is no such file or folder\n");
    EXPECT_FALSE(stores.anyReadable());
    write("nowhere", one("a"));
    EXPECT_EQ(titles(), "nowhere");
    EXPECT_TRUE(stores.anyReadable());
}

TEST_F(SourceFilesTest, DefaultSourcesAreTwoFolders) {
    const std::string home = folder;
    const auto sources = defaultCalendarSources("", home);
    ASSERT_EQ(sources.size(), 2U);
    EXPECT_EQ(sources[0].name, home + "/.local/share/calendars");
    EXPECT_EQ(sources[1].name, home + "/.calendars");
    EXPECT_EQ(defaultCalendarSources(home + "/data", "").at(0).name, home + "/data/calendars");
    EXPECT_TRUE(defaultCalendarSources("relative", "relative").empty());
}

TEST_F(SourceFilesTest, DefaultSourcesNeedNotExist) {
    stores.setSources(defaultCalendarSources("", folder.string()));
    EXPECT_EQ(titles(), "");
    EXPECT_FALSE(stores.anyReadable());
    write(".calendars", "no folder");
    EXPECT_EQ(titles(), "");
    EXPECT_FALSE(stores.anyReadable());
    write(".local/share/calendars/home.ics", one("a"));
    EXPECT_EQ(titles(), "home") << "it has come up meanwhile";
    EXPECT_TRUE(stores.anyReadable());
    std::filesystem::remove_all(folder / ".local");
    EXPECT_EQ(titles(), "");
    EXPECT_FALSE(stores.anyReadable());
    EXPECT_EQ(problems, "");
}

TEST(CalendarSource, OfAKindThatIsNotReadIsNamed) {
    EXPECT_FALSE(checkSource(CalendarSource::at("eds:")));
    EXPECT_FALSE(checkSource(CalendarSource::at("")));
    EXPECT_TRUE(checkSource(CalendarSource::inMemory("x", "")));
}

} // namespace
} // namespace quorvel::freedesktop
