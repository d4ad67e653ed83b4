#include "shells/widget/appearance.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "platform/memory/recording_context.h"
#include "platform/ui/ui_label.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_window.h"
#include "shells/headless/recording_host.h"
#include "shells/widget/hosted_widget.h"
#include "tests/shells/widget/shell_fixture.h"

namespace quorvel::shells {
namespace {

using namespace platform;

constexpr AppearanceKind kinds[] = {AppearanceKind::dark, AppearanceKind::light,
                                    AppearanceKind::highContrastDark,
                                    AppearanceKind::highContrastLight};

// The relative luminance and the contrast ratio of WCAG 2.

double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const UIColor& color) {
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrast(const UIColor& a, const UIColor& b) {
    const double brighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (brighter + 0.05) / (darker + 0.05);
}

UIColor over(const UIColor& front, const UIColor& back) {
    const auto mix = [&](double above, double below) {
        return above * front.alpha + below * (1 - front.alpha);
    };
    return {mix(front.red, back.red), mix(front.green, back.green), mix(front.blue, back.blue), 1};
}

bool isHighContrast(AppearanceKind kind) {
    return kind == AppearanceKind::highContrastDark || kind == AppearanceKind::highContrastLight;
}

TEST(ContrastRatio, HasTheExtremesOfWcag) {
    EXPECT_NEAR(contrast(UIColor::whiteColor(), UIColor::blackColor()), 21, 1e-9);
    EXPECT_NEAR(contrast(UIColor::whiteColor(), UIColor::whiteColor()), 1, 1e-9);
    EXPECT_NEAR(contrast(UIColor{119 / 255.0, 119 / 255.0, 119 / 255.0, 1}, UIColor::whiteColor()),
                4.48, 0.01);
}

TEST(Appearance, EveryTextCanBeReadOnItsBackdrop) {
    for (const AppearanceKind kind : kinds) {
        const Appearance appearance = standardAppearance(kind);
        const double least = isHighContrast(kind) ? 7 : 4.5;
        for (const UIColor& text : {appearance.title, appearance.caption}) {
            EXPECT_GE(contrast(text, appearance.backdrop), least) << static_cast<int>(kind);
            for (const UIColor& desktop : {UIColor::blackColor(), UIColor::whiteColor()}) {
                EXPECT_GE(contrast(text, over(windowBackdrop(appearance), desktop)), least)
                    << static_cast<int>(kind);
            }
        }
        EXPECT_EQ(appearance.backdrop.alpha, 1);
    }
}

TEST(Appearance, HighContrastIsBlackAndWhite) {
    const Appearance dark = standardAppearance(AppearanceKind::highContrastDark);
    EXPECT_EQ(windowBackdrop(dark), UIColor::blackColor());
    EXPECT_EQ(dark.title, UIColor::whiteColor());
    EXPECT_EQ(dark.caption, UIColor::whiteColor());
    const Appearance light = standardAppearance(AppearanceKind::highContrastLight);
    EXPECT_EQ(windowBackdrop(light), UIColor::whiteColor());
    EXPECT_EQ(light.title, UIColor::blackColor());
    EXPECT_EQ(light.caption, UIColor::blackColor());
}

TEST(Appearance, FollowsThePreferencesOfTheDesktop) {
    using freedesktop::ColorScheme;
    EXPECT_EQ(appearanceKind(ColorScheme::noPreference, false), AppearanceKind::dark);
    EXPECT_EQ(appearanceKind(ColorScheme::dark, false), AppearanceKind::dark);
    EXPECT_EQ(appearanceKind(ColorScheme::light, false), AppearanceKind::light);
    EXPECT_EQ(appearanceKind(ColorScheme::noPreference, true), AppearanceKind::highContrastDark);
    EXPECT_EQ(appearanceKind(ColorScheme::dark, true), AppearanceKind::highContrastDark);
    EXPECT_EQ(appearanceKind(ColorScheme::light, true), AppearanceKind::highContrastLight);
}

class AppliedAppearanceTest : public ShellFixture {
protected:
    AppliedAppearanceTest() {
        memory.dateServices.useTwentyFourHourClock();
        EKEvent lunch = event("Lunch", at(0, 12));
        lunch.location = "Garden";
        memory.calendarStores.addEvent(lunch);
        memory.calendarStores.addEvent(event("Dinner", at(0, 19)));
    }

    void present(PropertyListDictionary settings) {
        settings["displayLocation"] = {true};
        setSettings(std::move(settings));
        widget.view();
        widget.present();
        applyAppearance(appearance, widget);
        window->layoutIfNeeded();
    }

    // The colour in which a text is painted, as it stands in the record of painting.
    std::string paintedColor(const std::string& text) {
        memory::RecordingContext context;
        window->render(context);
        for (const std::string& operation : context.operations) {
            const std::string start = "drawText \"" + text + "\" 14 ";
            if (operation.starts_with(start)) {
                return operation.substr(start.size());
            }
        }
        return "not painted";
    }
    static std::string textOf(const UIColor& color) {
        memory::RecordingContext context;
        context.setFillColor(color);
        return context.operations[0].substr(std::string("setFillColor ").size());
    }

    Appearance appearance = standardAppearance(AppearanceKind::light);
    headless::RecordingHost host;
    std::shared_ptr<UIWindow> window =
        std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 300), memory.screen);
    HostedWidget widget{bundle, notificationController, memory.platform(), host, *window};
};

TEST_F(AppliedAppearanceTest, ReplacesTheColoursThatTheUserHasNotChosen) {
    present({});
    EXPECT_THAT(paintedColor("Lunch"), testing::StartsWith(textOf(appearance.title)));
    EXPECT_THAT(paintedColor("Garden"), testing::StartsWith(textOf(appearance.caption)));
    EXPECT_THAT(paintedColor("12:00"), testing::StartsWith(textOf(appearance.caption)));
}

TEST_F(AppliedAppearanceTest, LeavesTheColoursThatTheUserHasChosen) {
    present({{"textColor", {std::int64_t{3}}}, {"dateTextColor", {std::int64_t{2}}}});
    EXPECT_THAT(paintedColor("Lunch"), testing::StartsWith(textOf(UIColor::whiteColor())))
        << "the colour of the default, but chosen";
    EXPECT_THAT(paintedColor("12:00"), testing::StartsWith(textOf(UIColor::grayColor())));
    EXPECT_THAT(paintedColor("Garden"), testing::StartsWith(textOf(appearance.caption)));
}

TEST_F(AppliedAppearanceTest, ChangesNoLabel) {
    present({});
    const auto cell = widget.table()->visibleCells().at(0);
    const auto view = std::get<std::shared_ptr<UIView>>(cell->valueForKey("relevanceDateLabel"));
    EXPECT_EQ(dynamic_cast<UILabel&>(*view).textColor(), UIColor::grayColor());
}

TEST_F(AppliedAppearanceTest, TitlesInTheColoursOfCalendarsStay) {
    present({{"textColor", {std::int64_t{999}}}});
    const std::string own = paintedColor("Lunch");
    EXPECT_THAT(own, testing::Not(testing::StartsWith(textOf(appearance.title))));
    present({});
    EXPECT_EQ(paintedColor("Lunch"), own) << "the missing key leaves the calendars' colours";
    present({{"textColor", {std::int64_t{0}}}});
    present({});
    EXPECT_THAT(paintedColor("Lunch"), testing::StartsWith(textOf(appearance.title)));
}

TEST_F(AppliedAppearanceTest, SeparatorsHaveTheColourOfTheTitles) {
    present({});
    UIColor expected = appearance.title;
    expected.alpha = 0.18;
    EXPECT_EQ(widget.table()->separatorColor(), expected);
    present({{"textColor", {std::int64_t{0}}}});
    EXPECT_EQ(widget.table()->separatorColor(), (UIColor{1, 0, 0, 0.18}));
    present({{"textColor", {std::int64_t{999}}}});
    EXPECT_EQ(widget.table()->separatorColor(), expected);
    present({{"textColor", {std::int64_t{0}}}}); // the calendars' colours would stay
}

TEST_F(AppliedAppearanceTest, NoSeparatorLiesBelowTheLastRow) {
    present({});
    const auto cells = widget.table()->visibleCells();
    ASSERT_EQ(cells.size(), 2U);
    EXPECT_TRUE(cells[0]->separator()->isPainted);
    EXPECT_FALSE(cells[1]->separator()->isPainted);
}

TEST_F(AppliedAppearanceTest, AWidgetWithoutAViewStaysWithoutOne) {
    applyAppearance(appearance, widget);
    EXPECT_FALSE(widget.hasView());
}

} // namespace
} // namespace quorvel::shells
