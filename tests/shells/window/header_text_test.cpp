// The texts and links that the window makes of dates.
#include <gtest/gtest.h>

#include "freedesktop/dates/clocks.h"
#include "freedesktop/dates/icu_date_services.h"
#include "freedesktop/dates/instant_text.h"
#include "freedesktop/dates/time_zone.h"
#include "freedesktop/freedesktop_platform.h"
#include "platform/clock.h"
#include "shells/window/day_link.h"
#include "shells/window/today_text.h"

namespace quorvel::window {
namespace {

freedesktop::FreedesktopOptions optionsAt(const char* instant, const char* zone,
                                          const char* locale) {
    freedesktop::FreedesktopOptions options;
    options.timeZone = freedesktop::namedTimeZone(zone);
    options.followsTimeZone = false;
    options.locale = locale;
    options.followsLocale = false;
    options.now = freedesktop::parseInstant(instant, *options.timeZone);
    return options;
}

std::string todayAt(const char* instant, const char* zone, const char* locale) {
    const freedesktop::FreedesktopPlatform platform(optionsAt(instant, zone, locale));
    return todayText(platform.platform());
}

TEST(TodayText, IsTheDateInTheUsersWords) {
    EXPECT_EQ(todayAt("2026-03-10T12:00:00Z", "UTC", "en_US"), "Tuesday, March 10");
    EXPECT_EQ(todayAt("2026-03-10T12:00:00Z", "UTC", "de_DE"), "Dienstag, 10. März");
    EXPECT_EQ(todayAt("2026-03-10T12:00:00Z", "UTC", "ja_JP"), "3月10日火曜日");
}

TEST(TodayText, IsTheDateInTheUsersZone) {
    EXPECT_EQ(todayAt("2026-03-10T23:30:00Z", "Europe/Berlin", "en_US"), "Wednesday, March 11");
    EXPECT_EQ(todayAt("2026-03-10T02:30:00Z", "America/New_York", "en_US"), "Monday, March 9");
}

TEST(DayLink, NamesTheDayInTheUsersZone) {
    const freedesktop::FreedesktopPlatform platform(
        optionsAt("2026-03-10T23:30:00Z", "Europe/Berlin", "en_US"));
    const auto link = dayLink(platform.platform().dateServices, platform.platform().clock.now());
    ASSERT_TRUE(link);
    EXPECT_EQ(link->absoluteString(), "fantastical2://show?date=2026-3-11");
}

} // namespace
} // namespace quorvel::window
