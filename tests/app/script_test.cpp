#include "shells/headless/script.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "freedesktop/dates/time_zone.h"

namespace quorvel::headless {
namespace {

Result<Step> resultOf(const std::string& text) {
    return parseStep(text, *freedesktop::namedTimeZone("Europe/Berlin"));
}

Step parsed(const std::string& text) {
    return resultOf(text).value();
}

std::string errorOf(const std::string& text) {
    const Result<Step> result = resultOf(text);
    return result ? "no error" : message(result.error());
}

TEST(ParseStep, KnowsEveryStep) {
    EXPECT_TRUE(std::holds_alternative<PresentStep>(parsed("present").action));
    EXPECT_TRUE(std::holds_alternative<DismissStep>(parsed("dismiss").action));
    EXPECT_TRUE(std::holds_alternative<SizeStep>(parsed("size").action));
    EXPECT_EQ(std::get<LayoutStep>(parsed("layout:320,-1.5").action).size,
              (platform::CGSize{320, -1.5}));
    EXPECT_EQ(std::get<ScrollStep>(parsed("scroll:1e3").action).offset, 1000);
    EXPECT_TRUE(std::holds_alternative<FullViewStep>(parsed("full-view").action));
    EXPECT_TRUE(std::holds_alternative<PlaceholderStep>(parsed("placeholder").action));
    EXPECT_TRUE(std::holds_alternative<UnloadStep>(parsed("unload").action));
    EXPECT_EQ(std::get<PreferencesStep>(parsed("preferences:a:b").action).folder, "a:b");
    EXPECT_EQ(std::get<CalendarsStep>(parsed("calendars:x.ics").action).source, "x.ics");
}

TEST(ParseStep, ReadsRowsLocationsAndDistances) {
    const auto pull = std::get<PullStep>(parsed("pull:12:80.5").action);
    EXPECT_EQ(pull.row, 12U);
    EXPECT_EQ(pull.distance, 80.5);
    EXPECT_EQ(std::get<PullStep>(parsed("pull:0:-1e2").action).distance, -100);
    const auto drag = std::get<DragStep>(parsed("drag:1,-2.5:1e6,-1e6").action);
    EXPECT_EQ(drag.start, (platform::CGPoint{1, -2.5}));
    EXPECT_EQ(drag.distance, (platform::CGSize{1e6, -1e6}));
    EXPECT_EQ(std::get<TapStep>(parsed("tap:0.5,7").action).location, (platform::CGPoint{0.5, 7}));
}

TEST(ParseStep, AcceptsARowBeyondEveryList) {
    EXPECT_EQ(std::get<PullStep>(parsed("pull:18446744073709551615:80").action).row,
              18446744073709551615U);
}

TEST(ParseStep, StoresTheTextAsTheUserWroteIt) {
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
         {"", "presents", "present:", "present:1", "size:1", " present", "Present",
          // numbers that are missing or too many
          "layout", "layout:", "layout:1", "layout:1,", "layout:,1", "layout:1,2,3",
          "scroll:", "pull", "pull:", "pull:0", "pull:0:", "pull::80", "pull:0:80:1", "pull:0,80",
          "drag", "drag:", "drag:1,1", "drag:1,1:", "drag:1,1:2", "drag:1:2,2", "drag:1,1:2,2,2",
          "drag:1,1:2,2:3", "drag:,:,", "tap", "tap:", "tap:1", "tap:1,", "tap:1,1,1", "tap:1:1",
          // no numbers
          "layout:a,b", "layout:1, 2", "layout:inf,1", "scroll:nan", "scroll:1x", "scroll:+1",
          "pull:0:nan", "pull:0:inf", "pull:0:-inf", "pull:0:0x10", "pull:0: 80", "pull:0:1,5",
          "drag:nan,1:2,2", "drag:1,1:2,-nan", "tap:inf,1", "tap:1,one",
          // rows count from 0
          "pull:-1:80", "pull:+1:80", "pull:1.0:80", "pull:1e1:80", "pull: 1:80", "pull:first:80",
          "pull:18446744073709551616:80",
          // farther than any finger
          "pull:0:1000001", "pull:0:-1e300", "pull:0:1e400", "drag:1e7,1:2,2", "drag:1,1:1e7,2",
          "tap:1,-1000000.5", "preferences:", "preferences", "calendars:", "now:", "now:today",
          "now", "full-view:", "full-view:1", "placeholder:", "unload:", "unload:now",
          "fullview"}) {
        EXPECT_FALSE(resultOf(text)) << text;
    }
}

TEST(ParseStep, ReportsTheStepAndTheRemedy) {
    EXPECT_EQ(errorOf("layout:12"),
              "the step 'layout:12' cannot be run: write it as layout:WIDTH,HEIGHT");
    EXPECT_EQ(errorOf("pull:-1:80"), "the step 'pull:-1:80' cannot be run: count the rows from 0");
    EXPECT_EQ(errorOf("tap:1"), "the step 'tap:1' cannot be run: write it as tap:X,Y");
    EXPECT_EQ(errorOf("pull:0:2e6"),
              "the step 'pull:0:2e6' cannot be run: give points from -1000000 to 1000000");
    EXPECT_EQ(errorOf("drag:1,x:2,2"),
              "a number of the step 'drag:1,x:2,2' cannot be 'x': give a decimal number");
}

} // namespace
} // namespace quorvel::headless
