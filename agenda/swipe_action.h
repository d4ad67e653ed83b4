// What a row that was pulled aside and let go does.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/geometry.h"
#include "platform/ns_date.h"
#include "platform/ns_url.h"
#include "platform/platform.h"

namespace quorvel {

class EKEventQRV;

enum class SwipeAction : std::int64_t {
    none = 0,
    openEvent = 1,         // in the calendar application, by the event's own link
    openDay = 2,           // the day of the event's start, in an outside calendar application
    launchApplication = 3, // the one that customLaunchAppBundleID names
};

// By more than 80 points to the right. `contentOffset`: of the row's scroll view, in points.
bool isPulledFarEnough(const platform::CGPoint& contentOffset);

// The day in the user's calendar and time zone, to be opened by the outside calendar application.
std::optional<platform::NSURL> dayLink(const platform::DateServices& dateServices,
                                       platform::NSDate date);

// Opens a link or launches an application; nothing where the event lacks what it takes, where no
// application is named, or where the home-screen shell lacks one of its two classes. What comes of
// it is not looked at.
void runSwipeAction(SwipeAction action, const EKEventQRV& event,
                    const platform::Platform& platform);

} // namespace quorvel
