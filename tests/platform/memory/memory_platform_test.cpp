// The smaller services in memory.
#include "platform/memory/memory_platform.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/memory/recording_context.h"

namespace quorvel::platform::memory {
namespace {

PropertyListValue number(std::int64_t value) {
    return {value};
}

TEST(MemoryPlatformTest, HandsOutItsOwnServices) {
    MemoryPlatform memory;
    const Platform& platform = memory.platform();
    memory.clock.setNow({5});
    EXPECT_EQ(platform.clock.now(), NSDate{5});
    memory.screen.setScale(3);
    EXPECT_EQ(platform.screen.scale(), 3);
    platform.systemLog.log("a line");
    EXPECT_EQ(memory.systemLog.lines, std::vector<std::string>{"a line"});
    EXPECT_EQ(&platform.dateServices, &memory.dateServices);
    EXPECT_EQ(&platform.calendarStores, &memory.calendarStores);
    EXPECT_EQ(&platform.preferences, &memory.preferences);
    EXPECT_EQ(&platform.application, &memory.application);
    EXPECT_EQ(&platform.homeScreenShell, &memory.homeScreenShell);
}

TEST(MemoryPlatformTest, RecordsTheLinks) {
    MemoryApplication application;
    EXPECT_TRUE(application.opened.empty());
    application.openURL(*NSURL::URLWithString("one://a?b=c"));
    application.openURL(*NSURL::URLWithString(""));
    application.openURL(*NSURL::URLWithString("one://a?b=c"));
    EXPECT_EQ(application.opened, (std::vector<std::string>{"one://a?b=c", "", "one://a?b=c"}));
}

TEST(MemoryPlatformTest, ActivatesInstalledApplications) {
    MemoryHomeScreenShell memory;
    memory.installed = {"org.example.App"};
    HomeScreenShell& shell = memory;
    SBApplicationController* applications = shell.applicationController();
    SBUIController* controller = shell.uiController();
    ASSERT_NE(applications, nullptr);
    ASSERT_NE(controller, nullptr);
    const auto application = applications->applicationWithDisplayIdentifier("org.example.App");
    EXPECT_NE(application, nullptr);
    const auto other = applications->applicationWithDisplayIdentifier("org.example.Other");
    EXPECT_EQ(other, nullptr);
    controller->activateApplicationAnimated(application);
    controller->activateApplicationAnimated(other);
    EXPECT_EQ(memory.lookedUp, (std::vector<std::string>{"org.example.App", "org.example.Other"}));
    EXPECT_EQ(memory.activated, (std::vector<std::string>{"org.example.App", ""}));
}

TEST(MemoryPlatformTest, AShellMayLackEitherClass) {
    MemoryHomeScreenShell shell;
    shell.hasApplicationController = false;
    EXPECT_EQ(shell.applicationController(), nullptr);
    EXPECT_NE(shell.uiController(), nullptr);
    shell.hasApplicationController = true;
    shell.hasUIController = false;
    EXPECT_NE(shell.applicationController(), nullptr);
    EXPECT_EQ(shell.uiController(), nullptr);
}

TEST(MemoryPlatformTest, MeasuresCodePoints) {
    FixedWidthTextMeasurer measurer;
    EXPECT_EQ(measurer.sizeWithFont("abcd", UIFont::systemFontOfSize(14)), (CGSize{28, 17.5}));
    EXPECT_EQ(measurer.sizeWithFont("\u00E9\U0001F600", UIFont::systemFontOfSize(8)),
              (CGSize{8, 10}));
    EXPECT_EQ(measurer.sizeWithFont("", UIFont::systemFontOfSize(8)), CGSize{});
    EXPECT_EQ(measurer.sizeWithFont("a", UIFont::systemFontOfSize(0)), CGSize{});
    EXPECT_EQ(measurer.sizeWithFont("a", UIFont::systemFontOfSize(-4)), CGSize{});
    EXPECT_EQ(measurer.calls, 5U);
    measurer.lineHeightRatio = 1;
    measurer.widthRatio = 1;
    EXPECT_EQ(measurer.sizeWithFont("ab", UIFont::systemFontOfSize(10)), (CGSize{20, 10}));
}

TEST(MemoryPlatformTest, ReadsPropertyListsOfTheRightKind) {
    MemoryPreferences preferences;
    preferences.files["/d"] = PropertyListDictionary{{"a", number(1)}};
    preferences.files["/a"] = PropertyListArray{number(1), number(2)};
    ASSERT_TRUE(preferences.dictionaryWithContentsOfFile("/d"));
    EXPECT_EQ(preferences.arrayWithContentsOfFile("/a")->size(), 2U);
    EXPECT_FALSE(preferences.dictionaryWithContentsOfFile("/a"));
    EXPECT_FALSE(preferences.arrayWithContentsOfFile("/none"));
    EXPECT_EQ(preferences.reads, (std::vector<std::string>{"dictionary /d", "array /a",
                                                           "dictionary /a", "array /none"}));
}

TEST(MemoryPlatformTest, AnswersForDomains) {
    MemoryPreferences preferences;
    preferences.setDomain("full", {{"a", number(1)}, {"b", number(2)}});
    preferences.setDomain("empty", {});
    preferences.domains["keys only"].keyList = {"a"};
    EXPECT_EQ(preferences.copyKeyList("full"), (std::vector<std::string>{"a", "b"}));
    const auto copied = preferences.copyMultiple({"b", "c"}, "full");
    ASSERT_TRUE(copied);
    EXPECT_EQ(copied->size(), 1U);
    EXPECT_EQ(integerValue(copied->at("b")), 2);
    EXPECT_FALSE(preferences.copyKeyList("empty"));
    EXPECT_FALSE(preferences.copyKeyList("absent"));
    EXPECT_TRUE(preferences.copyKeyList("keys only"));
    EXPECT_FALSE(preferences.copyMultiple({"a"}, "keys only"));
    EXPECT_EQ(preferences.reads.front(), "keyList full");
    EXPECT_EQ(preferences.reads[1], "multiple full");
}

TEST(MemoryPlatformTest, GivesPicturesByPath) {
    MemoryImageFiles files;
    const auto picture = makeImage({30, 40}, 2);
    files.images["/p"] = picture;
    EXPECT_EQ(files.imageWithContentsOfFile("/p"), picture);
    EXPECT_EQ(files.imageWithContentsOfFile("/q"), nullptr);
    EXPECT_EQ(files.reads, (std::vector<std::string>{"/p", "/q"}));
}

TEST(MemoryPlatformTest, FindsBundlesAndResources) {
    MemoryBundles bundles;
    const auto bundle = std::make_shared<MemoryBundle>();
    bundle->path = "/b";
    bundle->resources["Background.png"] = "/b/Background@2x.png";
    bundles.bundles["Class"] = bundle;
    ASSERT_EQ(bundles.bundleForClass("Class"), bundle);
    EXPECT_EQ(bundles.bundleForClass("Other"), nullptr);
    EXPECT_EQ(bundle->bundlePath(), "/b");
    EXPECT_EQ(bundle->pathForResource("Background", "png"), "/b/Background@2x.png");
    EXPECT_EQ(bundle->pathForResource("Background", ""), std::nullopt);
}

TEST(MemoryPlatformTest, WritesDownWhatIsPainted) {
    RecordingContext context;
    context.beginPath();
    context.saveGState();
    context.translateCTM(0, 0.5);
    context.scaleCTM(3, 3);
    context.moveToPoint(1, 2);
    context.addArcToPoint(1, 2, 3, 4, 5);
    context.restoreGState();
    context.closePath();
    context.clip();
    context.clipToRect(CGRectMake(1, 2, 3, 4));
    context.setLineWidth(2);
    context.setStrokeColor(UIColor::blackColor());
    context.setFillColor({1, 0.5, 0, 0.1});
    context.strokeEllipseInRect(CGRectMake(25, 25, 30, 30));
    context.fillEllipseInRect(CGRectMake(25, 25, 30, 30));
    context.fillRect(CGRectMake(-1, 0, 1e6, 1));
    context.drawImage(*makeImage({60, 60}, 2), CGRectMake(0, 0, 20, 20));
    context.drawText("Hi", UIFont::systemFontOfSize(14), UIColor::whiteColor(),
                     CGRectMake(1, 2, 3, 4));
    context.drawText("Hi", {"Inter", 9}, UIColor::whiteColor(), CGRectMake(1, 2, 3, 4));
    EXPECT_EQ(
        context.operations,
        (std::vector<std::string>{
            "beginPath", "saveGState", "translateCTM 0 0.5", "scaleCTM 3 3", "moveToPoint 1 2",
            "addArcToPoint 1 2 3 4 5", "restoreGState", "closePath", "clip", "clipToRect 1 2 3 4",
            "setLineWidth 2", "setStrokeColor 0 0 0 1", "setFillColor 1 0.5 0 0.1",
            "strokeEllipseInRect 25 25 30 30", "fillEllipseInRect 25 25 30 30",
            "fillRect -1 0 1e+06 1", "drawImage 60x60@2 0 0 20 20",
            "drawText \"Hi\" 14 1 1 1 1 1 2 3 4", "drawText \"Hi\" Inter:9 1 1 1 1 1 2 3 4"}));
}

TEST(MemoryPlatformTest, APictureHoldsWhatWasPaintedSoFar) {
    FixedScreen screen;
    screen.setScale(2);
    MemoryGraphicsContexts contexts(screen);
    const auto drawing = contexts.beginImageContext({10, 20}, true, 0);
    ASSERT_TRUE(drawing);
    drawing->context().fillRect(CGRectMake(0, 0, 1, 1));
    const auto picture = drawing->image();
    drawing->context().clip();
    EXPECT_EQ(picture->size(), (CGSize{10, 20}));
    EXPECT_EQ(picture->scale(), 2);
    ASSERT_NE(recordedPixels(*picture), nullptr);
    EXPECT_EQ(recordedPixels(*picture)->operations, std::vector<std::string>{"fillRect 0 0 1 1"});
    EXPECT_TRUE(recordedPixels(*picture)->opaque);
    EXPECT_EQ(recordedPixels(*drawing->image())->operations.size(), 2U);
    EXPECT_EQ(recordedPixels(UIImage(nullptr, {1, 1}, 1)), nullptr);
    EXPECT_EQ(contexts.contextsMade, 1U);
}

TEST(MemoryPlatformTest, MakesNoContextOfASizeThatCannotBe) {
    FixedScreen screen;
    MemoryGraphicsContexts contexts(screen);
    EXPECT_FALSE(contexts.beginImageContext({0, 10}, false, 1));
    EXPECT_FALSE(contexts.beginImageContext({10, -1}, false, 1));
    EXPECT_FALSE(contexts.beginImageContext({20000, 10}, false, 2));
    EXPECT_FALSE(
        contexts.beginImageContext({std::numeric_limits<double>::quiet_NaN(), 1}, false, 1));
    EXPECT_TRUE(contexts.beginImageContext({20000, 10}, false, 1));
    EXPECT_EQ(contexts.contextsMade, 1U);
}

} // namespace
} // namespace quorvel::platform::memory
