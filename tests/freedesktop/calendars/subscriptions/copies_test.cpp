// The cache of copies, the list of subscriptions, and what both amount to as sources.
#include "freedesktop/calendars/subscriptions/copied_sources.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "freedesktop/calendars/subscriptions/copy_status.h"

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t now = 1'800'000'000;
const std::string url = "https://example.org/team.ics";

class CopiesTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = fs::temp_directory_path() / "quorvel-copies-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        cache = SubscriptionCache((folder / "cache/subscriptions").string());
    }
    void TearDown() override { fs::remove_all(folder); }

    void writeList(const std::string& text) const {
        std::ofstream(folder / subscriptionListName)
            << "<?xml version=\"1.0\"?><plist version=\"1.0\">" << text << "</plist>";
    }
    void writeCopy(const CopyState& state) const {
        ASSERT_TRUE(cache.makeFolder(url));
        std::ofstream(cache.calendarFile(url)) << "BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n";
        ASSERT_TRUE(cache.writeState(url, state));
    }
    std::vector<Subscription> list() const { return *readSubscriptions(folder.string()); }

    fs::path folder;
    SubscriptionCache cache{""};
};

unsigned permissionsOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 0777;
}

TEST_F(CopiesTest, FoldersOfUrlsAreOfTheUserAlone) {
    ASSERT_TRUE(cache.makeFolder(url));
    EXPECT_EQ(permissionsOf(cache.folder()), 0700U);
    EXPECT_EQ(permissionsOf(cache.folderOf(url)), 0700U);
    EXPECT_NE(cache.folderOf(url), cache.folderOf(url + "?"));
    EXPECT_EQ(cache.folderOf(url).find("example"), std::string::npos);
    cache.remove(url);
    EXPECT_FALSE(fs::exists(cache.folderOf(url)));
}

TEST_F(CopiesTest, FolderThatCannotBeMadeIsNamed) {
    std::ofstream(folder / "cache") << "a file";
    const Result<void> made = cache.makeFolder(url);
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error().what,
              "the folder '" + cache.folder() + "' cannot be written (Not a directory)");
}

TEST_F(CopiesTest, StateIsReadAsItWasWritten) {
    const CopyState state{now,      now + 1,     "the server cannot be reached",  "try later", true,
                          "Team 1", "W/\"a b\"", "Sun, 22 Nov 2026 15:00:00 GMT", 42};
    writeCopy(state);
    EXPECT_EQ(cache.readState(url), state);
    EXPECT_TRUE(cache.hasCopy(url));
    EXPECT_FALSE(cache.hasCopy(url + "2"));
    EXPECT_EQ(cache.readState(url + "2"), CopyState());
}

TEST(CopyStateText, LineEndsCannotAddLines) {
    CopyState state;
    state.calendarName = "Team\nsize 7\r\nerror x";
    const CopyState read = stateOfText(textOfState(state));
    EXPECT_EQ(read.size, 0U);
    EXPECT_TRUE(read.error.empty());
    EXPECT_EQ(read.calendarName, "Team size 7  error x");
}

TEST(CopyStateText, ErrorsHaveNoParticularLanguage) {
    CopyState state;
    state.error = {"the server has an error (status {1})", {TranslatableText::verbatim("500")}};
    const TranslatableText error = stateOfText(textOfState(state)).error;
    EXPECT_EQ(error.text(), "the server has an error (status {1})");
    EXPECT_EQ(error.english(), "the server has an error (status 500)");
}

TEST(CopyStateText, AnythingElseIsNoKnowledge) {
    EXPECT_EQ(stateOfText(""), CopyState());
    EXPECT_EQ(stateOfText("size\nconfirmed x\ntried 99999999999999999999\nsize -1\n\n "),
              CopyState());
    EXPECT_EQ(stateOfText("unknown 3\nsize 5").size, 5U);
}

TEST_F(CopiesTest, ListIsEmptyWithoutAFile) {
    EXPECT_TRUE(list().empty());
}

TEST_F(CopiesTest, ListHasValidAddressesOnce) {
    writeList("<array>"
              "<dict><key>url</key><string>webcal://example.org/team.ics</string>"
              "<key>title</key><string>Team</string><key>color</key><string>#ff0000</string></dict>"
              "<dict><key>url</key><string>https://example.org/team.ics</string></dict>"
              "<dict><key>url</key><string>ftp://example.org/a</string></dict>"
              "<dict><key>url</key><string>https://me:pw@example.org/a</string></dict>"
              "<dict><key>url</key><integer>3</integer></dict><string>x</string><dict/>"
              "<dict><key>url</key><string>https://b.example/</string>"
              "<key>title</key><string></string></dict>"
              "</array>");
    const std::vector<Subscription> expected{
        {url, "example.org", "Team", "#ff0000", false},
        {"https://b.example/", "b.example", std::nullopt, std::nullopt, false}};
    EXPECT_EQ(list(), expected);
}

TEST_F(CopiesTest, ListThatCannotBeReadIsAnError) {
    writeList("<dict/>");
    EXPECT_EQ(readSubscriptions(folder.string()).error().what, "it is not a list of subscriptions");
    writeList("<array>");
    EXPECT_FALSE(readSubscriptions(folder.string()));
}

TEST_F(CopiesTest, SubscriptionsAreStoredForTheUserAlone) {
    const std::string preferences = folder / "new/Preferences";
    const Subscription first{url, "example.org", std::nullopt, std::nullopt, false};
    const Subscription second{"https://b.example/?a=<&>", "b.example", "B & \"C\" ä", "#ff0000",
                              true};
    ASSERT_TRUE(storeSubscription(preferences, first));
    ASSERT_TRUE(storeSubscription(preferences, second));
    EXPECT_EQ(*readSubscriptions(preferences), (std::vector<Subscription>{first, second}));
    EXPECT_EQ(permissionsOf(preferences + "/" + std::string(subscriptionListName)), 0600U);
    EXPECT_EQ(permissionsOf(preferences), 0700U);
    Subscription titled = first;
    titled.title = "Team";
    ASSERT_TRUE(storeSubscription(preferences, titled));
    ASSERT_TRUE(storeSubscription(preferences, first));
    EXPECT_EQ(*readSubscriptions(preferences), (std::vector<Subscription>{titled, second}))
        << "what is not said anew stays";
    ASSERT_TRUE(removeSubscription(preferences, second.url));
    ASSERT_TRUE(removeSubscription(preferences, second.url));
    EXPECT_EQ(*readSubscriptions(preferences), std::vector<Subscription>{titled});
}

TEST_F(CopiesTest, RestOfTheListStays) {
    const std::string before = "<array>\n"
                               "  <!-- mine -->\n"
                               "  <string>unknown</string>\n"
                               "  <dict><key>url</key><string>https://a.example/</string>"
                               "<key>other</key><integer>3</integer></dict>\n";
    writeList(before + "</array>");
    ASSERT_TRUE(storeSubscription(folder.string(), {url, "example.org", {}, {}, false}));
    std::ifstream file(folder / subscriptionListName);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(text.find(before), std::string::npos) << text;
    ASSERT_EQ(list().size(), 2U);
    EXPECT_EQ(list()[1].url, url);
    ASSERT_TRUE(storeSubscription(folder.string(), {"https://a.example/", "", "A", {}, false}));
    std::ifstream again(folder / subscriptionListName);
    const std::string changed{std::istreambuf_iterator<char>(again), {}};
    EXPECT_NE(changed.find("<key>other</key><integer>3</integer>"), std::string::npos) << changed;
}

TEST_F(CopiesTest, ListThatCannotBeReadIsNotChanged) {
    writeList("<dict/>");
    EXPECT_FALSE(storeSubscription(folder.string(), {url, "example.org", {}, {}, false}));
    EXPECT_FALSE(removeSubscription(folder.string(), url));
    std::ifstream file(folder / subscriptionListName);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(text.find("<dict/>"), std::string::npos);
}

TEST_F(CopiesTest, SourceIsLabelledByItsTitleElseItsOwnNameElseItsHost) {
    const Subscription titled{url, "example.org", "Mine", "#ff0000", false};
    EXPECT_EQ(sourceOf(titled, cache).copy,
              (CopiedCalendar{url, "example.org", "Mine", "#ff0000", "Mine"}));
    const RemoteCalendar remote{url, "example.org"};
    EXPECT_EQ(sourceOf(remote, cache).copy->label, "example.org");
    CopyState state;
    state.calendarName = "Team";
    writeCopy(state);
    EXPECT_EQ(sourceOf(remote, cache).copy->label, "Team");
    EXPECT_EQ(sourceOf(remote, cache).name, cache.calendarFile(url));
}

TEST_F(CopiesTest, ProblemsAreOfCopiesThatAreNotCurrent) {
    const std::vector<CalendarSource> sources{CalendarSource::at("/a.ics"),
                                              sourceOf(RemoteCalendar{url, "example.org"}, cache)};
    const auto problem = [&] {
        const std::vector<CalendarProblem> problems = copyProblems(sources, cache, now);
        return problems.empty() ? std::string()
                                : problems.at(0).file + ": " + problems[0].what.english();
    };
    EXPECT_EQ(problem(), "example.org: it has not been fetched yet");
    CopyState state;
    state.error = "the server cannot be reached";
    state.triedAt = now - 10;
    ASSERT_TRUE(cache.makeFolder(url));
    ASSERT_TRUE(cache.writeState(url, state));
    EXPECT_EQ(problem(), "example.org: it cannot be read: the server cannot be reached");
    state.confirmedAt = now - 7300;
    writeCopy(state);
    EXPECT_EQ(problem(), "example.org: it is 2 hours old: the server cannot be reached");
    state.error = {};
    writeCopy(state);
    EXPECT_EQ(problem(), "");
}

TEST_F(CopiesTest, DueCopiesAreFetchedAgain) {
    const std::vector<CalendarSource> sources{CalendarSource::at("/a.ics"),
                                              sourceOf(RemoteCalendar{url, "example.org"}, cache)};
    EXPECT_EQ(nextRefresh({CalendarSource::at("/a.ics")}, cache, now), std::nullopt);
    EXPECT_EQ(nextRefresh(sources, cache, now), now);
    EXPECT_EQ(dueCopies(sources, cache, now), std::vector<std::string>{url});
    CopyState state;
    state.confirmedAt = state.triedAt = now - 100;
    writeCopy(state);
    EXPECT_EQ(nextRefresh(sources, cache, now), now - 100 + 3600);
    EXPECT_EQ(dueCopies(sources, cache, now), std::vector<std::string>());
    EXPECT_EQ(dueCopies(sources, cache, now + 3500), std::vector<std::string>{url});
}

TEST(CopyStatus, RefreshIsHourlyAndSoonerAfterAnError) {
    CopyState state;
    EXPECT_EQ(nextRefresh(state, false, now), now);
    state.triedAt = now - 100;
    EXPECT_EQ(nextRefresh(state, true, now), now + 3500);
    EXPECT_EQ(nextRefresh(state, false, now), now) << "the copy was deleted";
    state.error = "x";
    EXPECT_EQ(nextRefresh(state, true, now), now + 800);
    EXPECT_EQ(nextRefresh(state, false, now), now + 800);
    state.triedAt = now + 1;
    EXPECT_EQ(nextRefresh(state, true, now), now) << "the clock was set back";
}

TEST(CopyStatus, AgeIsInWholeUnits) {
    EXPECT_EQ(ageText(-5), "1 minute");
    EXPECT_EQ(ageText(0), "1 minute");
    EXPECT_EQ(ageText(119), "1 minute");
    EXPECT_EQ(ageText(120), "2 minutes");
    EXPECT_EQ(ageText(3599), "59 minutes");
    EXPECT_EQ(ageText(3600), "1 hour");
    EXPECT_EQ(ageText(7200), "2 hours");
    EXPECT_EQ(ageText(86399), "23 hours");
    EXPECT_EQ(ageText(86400), "1 day");
    EXPECT_EQ(ageText(864000), "10 days");
}

} // namespace
} // namespace quorvel::freedesktop
