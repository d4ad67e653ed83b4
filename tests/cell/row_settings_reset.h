// Puts the settings that rows use back to how a process starts.
#pragma once

#include "cell/row_settings.h"

namespace quorvel {

inline void resetRowSettings() {
    settings::textColor.reset();
    settings::subtitleTextColor.reset();
    settings::dateTextColor.reset();
    settings::textSize = 0;
    settings::subtitleTextSize = 0;
    settings::dateTextSize = 0;
    settings::titleColorSameAsCalendarColor = false;
    settings::rightAlignedDate = false;
    settings::cellWithoutSubtitleHeight = 0;
    settings::cellWithSubtitleHeight = 0;
}

} // namespace quorvel
