#include "agenda/settings.h"

namespace quorvel::settings {

bool limitMaxHeight = false;
std::optional<std::string> customLaunchAppBundleID;
bool showSeparatorLines = false;
bool onlySelectedCalendars = false;
bool displayLocation = false;
bool sameHeightRows = false;
std::int64_t daysToDisplay = 0;
std::int64_t maxEventsToDisplay = 0;
std::optional<std::string> iconFile;
bool iconRoundingNeeded = false;

} // namespace quorvel::settings
