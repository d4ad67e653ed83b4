#include "freedesktop/freedesktop_platform.h"

#include <atomic>
#include <future>
#include <memory>
#include <mutex>
#include <utility>

#include <gmock/gmock.h>

#include "freedesktop/dates/instant_text.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "platform/calendar_store.h"
#include "platform/clock.h"
#include "platform/date_services.h"
#include "platform/screen.h"
#include "platform/text_measurer.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::freedesktop {
namespace {

using platform::NSDate;
using platform::NSDateFormatter;
using platform::NSDateFormatterStyle;
using testing::ElementsAre;
using testing::Field;

class FreedesktopPlatformTest : public testing::Test {
protected:
    FreedesktopPlatformTest() {
        options.timeZone = namedTimeZone("Europe/Berlin");
        options.locale = "en_US";
        options.preferencesFolder = "/nonexistent/Preferences";
        options.makeRendering = makeLinkedRendering;
    }

    void make() { made = std::make_unique<FreedesktopPlatform>(options); }
    NSDate at(std::string_view text) const { return *parseInstant(text, *options.timeZone); }
    NSDate now() const { return made->platform().clock.now(); }
    std::string relative(std::string_view date) const {
        const NSDateFormatter formatter{
            true, NSDateFormatterStyle::shortStyle, NSDateFormatterStyle::shortStyle, {}};
        return made->platform().dateServices.stringFromDate(formatter, at(date));
    }

    FreedesktopOptions options;
    std::unique_ptr<FreedesktopPlatform> made;
};

TEST_F(FreedesktopPlatformTest, TheClockIsTheSystemsOrStandsOrRunsFromAnInstant) {
    make();
    EXPECT_EQ(made->systemInstant({1000}), NSDate{1000});
    options.now = at("2031-07-15T23:59:59");
    make();
    EXPECT_EQ(now(), options.now);
    EXPECT_EQ(made->systemInstant({1000}), std::nullopt);
    options.clockRuns = true;
    make();
    EXPECT_GE(now(), *options.now);
    EXPECT_LT(now().timeIntervalSinceDate(*options.now), 5);
    ASSERT_TRUE(made->systemInstant(*options.now).has_value());
    made->setNow(at("2040-01-01T12:00"));
    EXPECT_EQ(now(), at("2040-01-01T12:00"));
}

TEST_F(FreedesktopPlatformTest, AMovedClockMovesTheRelativeWords) {
    options.now = at("2031-07-15T12:00");
    options.clockRuns = true;
    make();
    EXPECT_EQ(relative("2031-07-16T14:30"), "Tomorrow, 2:30 PM");
}

TEST_F(FreedesktopPlatformTest, ZoneLocaleAndClockFormatMayChange) {
    options.now = at("2031-07-15T12:00");
    options.clockFormat = ClockFormat::twentyFourHours;
    make();
    EXPECT_EQ(relative("2031-07-16T14:30"), "Tomorrow, 14:30");
    made->setLocale("de_DE");
    EXPECT_EQ(relative("2031-07-16T14:30"), "morgen, 14:30");
    made->setClockFormat(ClockFormat::twelveHours);
    EXPECT_EQ(relative("2031-07-16T14:30"), "morgen, 2:30 PM");
    made->setClockFormat(ClockFormat::ofLocale);
    EXPECT_EQ(relative("2031-07-16T14:30"), "morgen, 14:30");
    made->setTimeZone(namedTimeZone("Asia/Tokyo"));
    EXPECT_EQ(relative("2031-07-16T14:30"), "morgen, 21:30");
    EXPECT_EQ(made->locale(), "de_DE");
    EXPECT_EQ(made->timeZone()->identifier(), "Asia/Tokyo");
    EXPECT_EQ(made->clockFormat(), ClockFormat::ofLocale);
}

TEST_F(FreedesktopPlatformTest, WholeDaysFollowTheZone) {
    options.calendars = {CalendarSource::inMemory(
        "home", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:1\r\n"
                "DTSTART;VALUE=DATE:20310716\r\nSUMMARY:Holiday\r\nEND:VEVENT\r\n"
                "END:VCALENDAR\r\n")};
    make();
    const auto start = [this] {
        const auto store = made->platform().calendarStores.makeEventStore();
        return store
            ->eventsMatchingPredicate(
                {at("2031-07-15T00:00"), at("2031-07-18T00:00"), store->calendars()})
            .at(0)
            ->startDate;
    };
    EXPECT_EQ(start(), at("2031-07-16T00:00"));
    made->setTimeZone(namedTimeZone("UTC"));
    EXPECT_EQ(start(), at("2031-07-16T02:00"));
}

// A desktop whose search for the calendar server ends when answer() is called.
class HeldDesktop final : public Desktop {
public:
    ClockFormat clockFormat() override { return ClockFormat::ofLocale; }
    std::unique_ptr<eds::SourcesSearch> makeSourcesSearch() const override {
        return std::make_unique<Search>(m_future);
    }
    void answer() { m_answer.set_value("nobody answers"); }

private:
    class Search final : public eds::SourcesSearch {
    public:
        explicit Search(std::shared_future<std::string> answer)
            : m_answer(std::move(answer)) {}
        Result<std::string, TranslatableText> find() override {
            return TranslatableText::verbatim(m_answer.get());
        }
        void cancel() override {}

    private:
        std::shared_future<std::string> m_answer;
    };

    std::promise<std::string> m_answer;
    std::shared_future<std::string> m_future = m_answer.get_future().share();
};

// Nobody waits for it, so that it is not known at first that there is none.
TEST_F(FreedesktopPlatformTest, AServerThatIsReadInTheBackgroundIsReportedLater) {
    const testing_session::EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS",
                                                       "unix:path=/nonexistent/bus");
    std::mutex mutex;
    std::vector<std::string> problems;
    const auto desktop = std::make_shared<HeldDesktop>();
    options.desktop = desktop;
    options.dataServerModule = "/dev/null"; // exists, and is not loaded
    options.calendars = {CalendarSource::at("eds:")};
    options.backgroundServerWaits = DataServerWaits{0, 0};
    options.calendarProblemHandler = [&](const CalendarProblem& problem) {
        const std::lock_guard lock(mutex);
        problems.push_back(problem.file + ": " + problem.what.english());
    };
    make();
    bool isChanged = false;
    made->setCalendarsChangedHandler([&] { isChanged = true; });
    EXPECT_THAT(made->platform().calendarStores.makeEventStore()->calendars(), testing::IsEmpty());
    desktop->answer();
    EXPECT_TRUE(testing_session::runUntil([&] { return isChanged; }));
    EXPECT_FALSE(made->hasReadableCalendars());
    made.reset();
    EXPECT_THAT(problems, ElementsAre("Evolution Data Server: nobody answers"));
}

TEST_F(FreedesktopPlatformTest, AServerInTheBackgroundMayBeMissing) {
    const testing_session::EnvironmentVariable noAddress("DBUS_SESSION_BUS_ADDRESS", nullptr);
    const testing_session::EnvironmentVariable noFolder("XDG_RUNTIME_DIR", nullptr);
    CalendarSource server = CalendarSource::at("eds:");
    server.isOptional = true;
    options.calendars = {server,
                         CalendarSource::inMemory("home", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"
                                                          "END:VCALENDAR\r\n")};
    options.backgroundServerWaits = DataServerWaits{10, 0};
    std::atomic<int> problems = 0;
    options.calendarProblemHandler = [&](const CalendarProblem&) { ++problems; };
    make();
    const auto store = made->platform().calendarStores.makeEventStore();
    ASSERT_EQ(store->calendars().size(), 1U);
    EXPECT_EQ(made->storeOfCalendar(store->calendars()[0]->calendarIdentifier), "in memory");
    EXPECT_TRUE(made->hasReadableCalendars());
    made.reset();
    EXPECT_EQ(problems, 0);
}

// Only with fonts do wide and narrow texts have different widths.
TEST_F(FreedesktopPlatformTest, AHostThatPrintsReadsNoFonts) {
    const auto width = [this](std::string_view text) {
        return made->platform()
            .textMeasurer.sizeWithFont(text, platform::UIFont::systemFontOfSize(16))
            .width;
    };
    make();
    EXPECT_GT(width("WWWWWWWW"), width("iiiiiiii"));
    options.makeRendering = nullptr;
    make();
    EXPECT_EQ(width("WWWWWWWW"), width("iiiiiiii"));
    EXPECT_GT(width("iiiiiiii"), 0);
}

TEST_F(FreedesktopPlatformTest, TheScreensScaleMayChange) {
    options.scale = 2;
    make();
    EXPECT_EQ(made->platform().screen.scale(), 2);
    made->setScale(1.5);
    EXPECT_EQ(made->platform().screen.scale(), 1.5);
}

TEST_F(FreedesktopPlatformTest, TheTextScaleMayChange) {
    const auto font = platform::UIFont::systemFontOfSize(14);
    make();
    const auto height = [&] {
        return made->platform().textMeasurer.sizeWithFont("A", font).height;
    };
    const double plain = height();
    made->setTextScale(2);
    EXPECT_EQ(height(), 2 * plain);
    made->reloadFonts();
    made->setLocale("ja_JP");
    EXPECT_EQ(height(), 2 * plain);
    options.textScale = 1.5;
    make();
    EXPECT_EQ(height(), 1.5 * plain);
}

TEST_F(FreedesktopPlatformTest, ReturnsTheChoicesOfTheUser) {
    make();
    EXPECT_TRUE(made->followsTimeZone());
    EXPECT_TRUE(made->followsLocale());
    options.followsTimeZone = false;
    options.followsLocale = false;
    make();
    EXPECT_FALSE(made->followsTimeZone());
    EXPECT_FALSE(made->followsLocale());
}

TEST_F(FreedesktopPlatformTest, NamesWhatCannotBeReadWithoutItsFolder) {
    options.calendars = {CalendarSource::at("/nonexistent/work.ics"),
                         CalendarSource::inMemory("home", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"
                                                          "END:VCALENDAR\r\n")};
    std::vector<std::string> reported;
    options.calendarProblemHandler = [&](const CalendarProblem& problem) {
        reported.push_back(problem.file);
    };
    make();
    for (int time = 0; time < 2; ++time) {
        made->platform().calendarStores.makeEventStore();
        EXPECT_THAT(made->unreadableCalendars(),
                    ElementsAre(CalendarProblem{"work.ics", 0, "there is no such file or folder"}));
    }
    EXPECT_TRUE(made->hasReadableCalendars());
    EXPECT_FALSE(made->areCalendarsLate());
    EXPECT_THAT(reported, ElementsAre("/nonexistent/work.ics")) << "once, with its folder";
}

TEST_F(FreedesktopPlatformTest, ListsTheFilesOfSettingsAndCalendars) {
    options.calendars = {CalendarSource::at("/nonexistent/calendars"),
                         CalendarSource::inMemory("text", ""), CalendarSource::at("a.ics")};
    make();
    const std::vector<WatchedPath> paths = made->watchedPaths();
    EXPECT_THAT(paths, ElementsAre(Field(&WatchedPath::path, "/nonexistent/Preferences"),
                                   Field(&WatchedPath::path, "/nonexistent/calendars"),
                                   Field(&WatchedPath::path, "a.ics")));
    EXPECT_EQ(paths[0].depth, 0);
    EXPECT_TRUE(paths[0].matters("org.quorvel.quorvelprefs.plist"));
    for (const char* const name : {".plist", "a.plist~", "plist", "a.ics"}) {
        EXPECT_FALSE(paths[0].matters(name)) << name;
    }
    EXPECT_EQ(paths[1].depth, 16);
    for (const char* const name : {"a.ics", "A.ICS", "color", "displayname"}) {
        EXPECT_TRUE(paths[1].matters(name)) << name;
    }
    for (const char* const name : {".ics", "a.ics.tmp", "a.txt", "colors"}) {
        EXPECT_FALSE(paths[1].matters(name)) << name;
    }
    made->setCalendars({CalendarSource::at("thunderbird:/profile")});
    EXPECT_THAT(made->watchedPaths(),
                ElementsAre(Field(&WatchedPath::path, "/nonexistent/Preferences"),
                            Field(&WatchedPath::path, "/profile/calendar-data"),
                            Field(&WatchedPath::path, "/profile")));
    made->setPreferencesFolder("/elsewhere");
    made->setCalendars({});
    EXPECT_THAT(made->watchedPaths(), ElementsAre(Field(&WatchedPath::path, "/elsewhere")));
}

} // namespace
} // namespace quorvel::freedesktop
