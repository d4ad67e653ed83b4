// The library for other programs, as these use it: by its exported names, on real files.
#include "shells/embedding/embedded_agenda.h"

#include <algorithm>
#include <cstdint>
#include <thread>

#include <gmock/gmock.h>

#include "platform/home_screen_shell.h"
#include "platform/ns_url.h"
#include "platform/ui_application.h"
#include "shells/host/row_list.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::embedding {
namespace {

using platform::CGSize;
using platform::NSDate;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing_session::EnvironmentVariable;
using testing_session::RecordedLog;
using testing_session::TemporaryFolder;

constexpr double march10 = 794826000; // 2026-03-10T09:00:00Z, since the reference date

class RecordedLinks final : public platform::UIApplication {
public:
    void openURL(const platform::NSURL& url) override { opened.push_back(url.absoluteString()); }
    std::vector<std::string> opened;
};

std::string event(const std::string& uid, const std::string& title, const std::string& start) {
    return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nSUMMARY:" + title + "\r\nDTSTART:" + start +
           "\r\nDURATION:PT1H\r\nEND:VEVENT\r\n";
}

std::string calendar(const std::string& events) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:test\r\n" + events + "END:VCALENDAR\r\n";
}

const std::string lunch = event("1", "Lunch", "20260310T120000Z");
const std::string dinner = event("2", "Dinner", "20260310T180000Z");

class EmbeddedAgendaTest : public testing::Test {
protected:
    EmbeddedAgendaTest() {
        testing_session::write(folder / "home.ics", calendar(lunch + dinner));
        options.calendars = {folder / "home.ics"};
        options.preferencesFolder = folder / "Preferences";
        options.timeZone = "UTC";
        options.locale = "en_US";
        options.now = NSDate{march10};
        options.width = 320;
        options.application = &links;
        options.log = log;
        options.onChanged = [this] { ++changes; };
    }

    void make() {
        auto made = EmbeddedAgenda::make(options);
        ASSERT_TRUE(made) << message(made.error());
        agenda = *std::move(made);
    }
    void show() {
        make();
        agenda->show();
        ASSERT_TRUE(dispatchUntil([this] { return agenda->rows().rowCount() == 2; }));
    }
    std::string problem() {
        const auto made = EmbeddedAgenda::make(options);
        return made ? "none" : message(made.error());
    }
    template <class Condition>
    bool dispatchUntil(Condition happened) {
        for (int i = 0; i < 500 && !happened(); ++i) {
            agenda->dispatch();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return happened();
    }
    // 0xAARRGGBB, row after row.
    std::vector<std::uint32_t> painted(int width, int height) {
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) *
                                          static_cast<std::size_t>(height));
        agenda->paint({reinterpret_cast<unsigned char*>(pixels.data()), width, height, 4 * width});
        return pixels;
    }
    std::vector<std::uint32_t> painted() {
        const CGSize size = agenda->wantedSize();
        return painted(static_cast<int>(size.width), static_cast<int>(size.height));
    }
    void pullFirstRow(double distance) {
        const platform::CGRect row = agenda->rows().rowFrame(0);
        const double y = row.origin.y + row.size.height / 2;
        const double begin = EmbeddedAgenda::frameTime();
        agenda->press({20, y}, begin);
        agenda->move({20 + distance / 2, y}, begin + 0.1);
        agenda->move({20 + distance, y}, begin + 0.2);
        agenda->lift({20 + distance, y}, begin + 0.5);
    }

    TemporaryFolder folder;
    EnvironmentVariable home{"HOME", folder.path().c_str()};
    EnvironmentVariable cache{"XDG_CACHE_HOME", nullptr};
    RecordedLinks links;
    std::shared_ptr<RecordedLog> log = std::make_shared<RecordedLog>();
    int changes = 0;
    EmbeddedAgendaOptions options;
    std::unique_ptr<EmbeddedAgenda> agenda;
};

TEST_F(EmbeddedAgendaTest, ShowsTheNamedCalendars) {
    show();
    EXPECT_EQ(agenda->rows().rowName(0), "Lunch, 12:00 PM");
    EXPECT_EQ(agenda->rows().rowName(1), "Dinner, 6:00 PM");
    EXPECT_EQ(agenda->wantedSize().width, 320);
    EXPECT_GT(agenda->wantedSize().height, 40);
    EXPECT_GT(changes, 0);
}

TEST_F(EmbeddedAgendaTest, ReportsWhatTheUserMustMend) {
    options.calendars = {folder / "missing.ics"};
    EXPECT_THAT(problem(), HasSubstr("missing.ics' cannot be read"));
    options.calendars = {folder / "home.ics"};
    options.timeZone = "Mars/Olympus";
    EXPECT_EQ(problem(), "unknown time zone 'Mars/Olympus': give a name such as Europe/Berlin");
    options.timeZone = "UTC";
    options.locale = "klingon";
    EXPECT_THAT(problem(), StartsWith("unknown locale 'klingon'"));
    options.locale = "en_US";
    options.controllerName = "NoSuchController";
    EXPECT_THAT(problem(), HasSubstr("the bundle has no controller 'NoSuchController'"));
}

TEST_F(EmbeddedAgendaTest, PaintsTheBackdropAndTheRows) {
    show();
    const std::vector<std::uint32_t> dark = painted();
    EXPECT_EQ(dark.back() >> 24U, 0xFFU);
    EXPECT_GT(std::count_if(dark.begin(), dark.end(),
                            [&](std::uint32_t pixel) { return pixel != dark.back(); }),
              100);
    agenda->setDark(false);
    const std::vector<std::uint32_t> light = painted();
    EXPECT_GT(light.back() & 0xFFU, dark.back() & 0xFFU);
}

TEST_F(EmbeddedAgendaTest, PaintsTheSamePictureLargerAtAnotherScale) {
    show();
    const CGSize size = agenda->wantedSize();
    agenda->setScale(2);
    EXPECT_EQ(agenda->wantedSize(), size);
    const auto width = static_cast<int>(size.width);
    const auto height = static_cast<int>(size.height);
    const std::vector<std::uint32_t> large = painted(2 * width, 2 * height);
    // The lowest row reaches the lower half of the larger picture.
    const auto middle = large.begin() + static_cast<std::ptrdiff_t>(large.size() / 2);
    EXPECT_GT(std::count_if(middle, large.end(),
                            [&](std::uint32_t pixel) { return pixel != large.back(); }),
              100);
}

TEST_F(EmbeddedAgendaTest, LeavesABufferWithoutPixelsAlone) {
    show();
    agenda->paint({});
    std::uint32_t pixel = 0x12345678;
    agenda->paint({reinterpret_cast<unsigned char*>(&pixel), 0, 1, 4});
    EXPECT_EQ(pixel, 0x12345678U);
}

TEST_F(EmbeddedAgendaTest, APulledRowOpensItsLinkInTheProgram) {
    show();
    pullFirstRow(40);
    EXPECT_THAT(links.opened, IsEmpty());
    EXPECT_TRUE(agenda->isMoving()); // back to its place
    agenda->advance(EmbeddedAgenda::frameTime() + 10);
    EXPECT_FALSE(agenda->isMoving());
    pullFirstRow(280);
    EXPECT_THAT(links.opened, ElementsAre(StartsWith("x-apple-calevent://")));
}

TEST_F(EmbeddedAgendaTest, ACancelledPullOpensNothing) {
    show();
    const double begin = EmbeddedAgenda::frameTime();
    agenda->press({20, 20}, begin);
    agenda->move({300, 20}, begin + 0.2);
    agenda->cancelPress(begin + 0.3);
    agenda->lift({300, 20}, begin + 0.4);
    EXPECT_THAT(links.opened, IsEmpty());
}

TEST_F(EmbeddedAgendaTest, KeysReachTheRows) {
    show();
    EXPECT_FALSE(agenda->rows().focusRow(2));
    ASSERT_TRUE(agenda->rows().focusRow(1));
    EXPECT_EQ(agenda->rows().focusedRow(), 1U);
    EXPECT_TRUE(agenda->rows().runRowAction(1));
    EXPECT_THAT(links.opened, SizeIs(1));
}

TEST_F(EmbeddedAgendaTest, ScrollsWhatIsHigherThanItsArea) {
    show();
    const double height = agenda->wantedSize().height;
    agenda->setGreatestHeight(height - 10);
    EXPECT_EQ(agenda->wantedSize().height, height - 10);
    agenda->setSize({320, height - 10});
    const double top = agenda->rows().rowFrame(0).origin.y;
    EXPECT_TRUE(agenda->scroll({20, 20}, 5));
    EXPECT_EQ(agenda->rows().rowFrame(0).origin.y, top - 5);
    EXPECT_TRUE(agenda->scroll({20, 20}, 50));
    EXPECT_NEAR(agenda->rows().rowFrame(0).origin.y, top - 10, 1); // the wanted size is rounded up
    EXPECT_FALSE(agenda->scroll({20, 20}, 50));
}

TEST_F(EmbeddedAgendaTest, FollowsItsCalendarsWhileItIsShown) {
    show();
    const int before = changes;
    testing_session::replace(folder / "home.ics", calendar(dinner));
    EXPECT_TRUE(dispatchUntil([this] { return agenda->rows().rowCount() == 1; }));
    EXPECT_EQ(agenda->rows().rowName(0), "Dinner, 6:00 PM");
    EXPECT_GT(changes, before);
}

TEST_F(EmbeddedAgendaTest, NothingHappensWhileItIsHidden) {
    show();
    agenda->hide();
    const int before = changes;
    testing_session::replace(folder / "home.ics", calendar(dinner));
    EXPECT_FALSE(dispatchUntil([this] { return agenda->rows().rowCount() == 1; }));
    EXPECT_EQ(changes, before);
    agenda->show();
    EXPECT_TRUE(dispatchUntil([this] { return agenda->rows().rowCount() == 1; }));
}

TEST_F(EmbeddedAgendaTest, NothingIsCalledAfterItsEnd) {
    show();
    agenda->press({20, 20});
    agenda->move({200, 20});
    agenda.reset();
    const int before = changes;
    testing_session::replace(folder / "home.ics", calendar(dinner));
    testing_session::runFor(1.5);
    EXPECT_EQ(changes, before);
}

TEST_F(EmbeddedAgendaTest, ADescriptorIsReadyWhenTheCalendarsChange) {
    show();
    dispatchUntil([] { return false; }); // until nothing is due any more
    Wakeup wakeup = agenda->wakeup();
    ASSERT_FALSE(wakeup.descriptors.empty());
    EXPECT_NE(wakeup.milliseconds, 0);
    EXPECT_EQ(poll(wakeup.descriptors.data(), wakeup.descriptors.size(), 0), 0);
    testing_session::replace(folder / "home.ics", calendar(dinner));
    EXPECT_GT(poll(wakeup.descriptors.data(), wakeup.descriptors.size(), 5000), 0);
}

TEST_F(EmbeddedAgendaTest, UnreadableCalendarsAreLogged) {
    testing_session::write(folder / "broken.ics", "no calendar");
    options.calendars.push_back(folder / "broken.ics");
    show();
    EXPECT_TRUE(dispatchUntil([this] {
        const std::vector<std::string> lines = log->lines();
        return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return line.find("broken.ics") != std::string::npos;
        });
    })) << testing::PrintToString(log->lines());
}

} // namespace
} // namespace quorvel::embedding
