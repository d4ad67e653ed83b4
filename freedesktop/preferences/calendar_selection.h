// Which calendars the widget shows: those of the calendar application, or those of a list.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace quorvel::freedesktop {

inline constexpr std::string_view calendarSelectionFileName = "org.quorvel.quorvel.calendars.plist";

struct CalendarSelection {
    bool followsDesktop = true;           // the setting onlySelectedCalendars
    std::vector<std::string> identifiers; // of the calendar-selection file, also if it is not used
};

// Without files, the widget follows the desktop. The error names the file that cannot be read.
Result<CalendarSelection> readCalendarSelection(const std::string& preferencesFolder);

// Writes the calendar-selection file, then the setting onlySelectedCalendars; each as
// SettingsFile::change() does. Identifiers that the file has already stay in their order.
Result<void> writeCalendarSelection(const std::string& preferencesFolder,
                                    const CalendarSelection& selection);

} // namespace quorvel::freedesktop
