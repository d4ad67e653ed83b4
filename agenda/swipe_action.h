// The action that runs when a row that was pulled aside is released.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

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

// Whether the action does anything at all. `application`: the identifier that
// customLaunchAppBundleID names; an absent one counts as empty.
bool hasEffect(SwipeAction action, const std::optional<std::string>& application);

// Opens a link or launches the application that customLaunchAppBundleID names. Nothing happens
// where the action has no effect, the event lacks its link or start, or the home-screen shell lacks
// one of its two classes. The result of the opening or launching is ignored.
void runSwipeAction(SwipeAction action, const EKEventQRV& event,
                    const platform::Platform& platform);

} // namespace quorvel
