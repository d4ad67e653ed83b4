#include "shells/headless/script.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "freedesktop/dates/time_zone.h"
#include "shells/headless/usage_error.h"

namespace quorvel::headless {
namespace {

Step parsed(const std::string& text) {
    return parseStep(text, *freedesktop::TimeZone::named("Europe/Berlin"));
}

TEST(ParseStep, KnowsEveryStep) {
    EXPECT_TRUE(std::holds_alternative<PresentStep>(parsed("present").action));
    EXPECT_TRUE(std::holds_alternative<DismissStep>(parsed("dismiss").action));
    EXPECT_TRUE(std::holds_alternative<SizeStep>(parsed("size").action));
    EXPECT_EQ(std::get<LayoutStep>(parsed("layout:320,-1.5").action).size,
              (platform::CGSize{320, -1.5}));
    EXPECT_EQ(std::get<ScrollStep>(parsed("scroll:1e3").action).offset, 1000);
    EXPECT_EQ(std::get<PreferencesStep>(parsed("preferences:a:b").action).folder, "a:b");
    EXPECT_EQ(std::get<CalendarsStep>(parsed("calendars:x.ics").action).source, "x.ics");
}

TEST(ParseStep, KeepsTheTextAsItWasWritten) {
    EXPECT_EQ(parsed("layout:1,2.50").text, "layout:1,2.50");
}

TEST(ParseStep, ReadsInstantsWithAndWithoutAnOffset) {
    const auto seconds = [](const std::string& text) {
        return std::get<NowStep>(parsed(text).action).date.timeIntervalSinceReferenceDate;
    };
    EXPECT_EQ(seconds("now:2001-01-01T00:00:00Z"), 0);
    EXPECT_EQ(seconds("now:2001-01-01T00:00:00"), -3600);
}

TEST(ParseStep, RefusesEverythingElse) {
    for (const char* text :
         {"",           "presents",    "present:",     "present:1",   "size:1",
          "layout",     "layout:",     "layout:1",     "layout:1,",   "layout:1,2,3",
          "layout:a,b", "layout:1, 2", "layout:inf,1", "scroll:",     "scroll:nan",
          "scroll:1x",  "scroll:+1",   "preferences:", "preferences", "calendars:",
          "now:",       "now:today",   "now",          "pull:0:90",   "drag:1,1:2,2",
          "tap:1,1",    "full-view",   "placeholder",  "unload",      " present",
          "Present"}) {
        EXPECT_THROW(parsed(text), UsageError) << text;
    }
}

TEST(ParseStep, NamesTheStepAndTheRemedy) {
    try {
        parsed("layout:12");
        FAIL();
    } catch (const UsageError& error) {
        EXPECT_STREQ(error.what(),
                     "the step 'layout:12' cannot be run: write it as layout:WIDTH,HEIGHT");
    }
}

} // namespace
} // namespace quorvel::headless
