#include "agenda/swipe_action.h"

#include <string>
#include <string_view>

#include "agenda/ek_event_qrv.h"
#include "agenda/settings.h"
#include "platform/date_services.h"
#include "platform/home_screen_shell.h"
#include "platform/ui_application.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr CGFloat pullThreshold = -80; // points
constexpr std::string_view dayLinkStart = "fantastical2://show?date=";

std::string unsignedText(const std::optional<int>& field) {
    return std::to_string(static_cast<unsigned long>(field.value_or(0)));
}

void open(UIApplication& application, const std::optional<NSURL>& url) {
    if (url) {
        application.openURL(*url);
    }
}

void openDay(const EKEventQRV& event, const Platform& platform) {
    if (event.startDate()) {
        open(platform.application, dayLink(platform.dateServices, *event.startDate()));
    }
}

// Activates the result of the lookup even if it is null: the shell then brings nothing to the
// front.
void launchApplication(HomeScreenShell& shell, const std::string& identifier) {
    SBApplicationController* applications = shell.applicationController();
    if (applications == nullptr) {
        return;
    }
    const auto application = applications->applicationWithDisplayIdentifier(identifier);
    if (SBUIController* controller = shell.uiController()) {
        controller->activateApplicationAnimated(application);
    }
}

} // namespace

bool isPulledFarEnough(const CGPoint& contentOffset) {
    return contentOffset.x < pullThreshold;
}

std::optional<NSURL> dayLink(const DateServices& dateServices, NSDate date) {
    const NSDateComponents day =
        dateServices.components(NSYearCalendarUnit | NSMonthCalendarUnit | NSDayCalendarUnit |
                                    NSHourCalendarUnit | NSMinuteCalendarUnit,
                                date);
    return NSURL::URLWithString(std::string(dayLinkStart) + unsignedText(day.year) + '-' +
                                unsignedText(day.month) + '-' + unsignedText(day.day));
}

bool hasEffect(SwipeAction action, const std::optional<std::string>& application) {
    if (action == SwipeAction::launchApplication) {
        return application && !application->empty();
    }
    return action != SwipeAction::none;
}

void runSwipeAction(SwipeAction action, const EKEventQRV& event, const Platform& platform) {
    if (!hasEffect(action, settings::customLaunchAppBundleID)) {
        return;
    }
    switch (action) {
    case SwipeAction::none:
        break;
    case SwipeAction::openEvent:
        open(platform.application, event.URL());
        break;
    case SwipeAction::openDay:
        openDay(event, platform);
        break;
    case SwipeAction::launchApplication:
        launchApplication(platform.homeScreenShell, *settings::customLaunchAppBundleID);
        break;
    }
}

} // namespace quorvel
