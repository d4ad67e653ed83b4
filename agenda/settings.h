// The settings, as process-wide variables named like their keys: shared by every agenda view, and
// the last load wins. cell/row_settings.h declares those that a row's layout uses.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "cell/row_settings.h"

namespace quorvel::settings {

extern bool limitMaxHeight;
extern std::optional<std::string> customLaunchAppBundleID; // absent until the first load
extern bool showSeparatorLines;
extern bool onlySelectedCalendars;
extern bool displayLocation;
extern bool sameHeightRows;
extern std::int64_t daysToDisplay;
extern std::int64_t maxEventsToDisplay;     // below 1: no limit
extern std::optional<std::string> iconFile; // absent until the first load
extern bool iconRoundingNeeded;             // derived from iconFile; never turned off again

} // namespace quorvel::settings
