// The command `settings calendars`: lists the calendars and chooses which of them are shown.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/command_line.h"
#include "app/failure.h"
#include "shells/headless/calendar_list.h"

namespace quorvel::app {

// The identifiers of the calendars with those titles or identifiers, in the order of the calendars.
// A title may be written in upper or lower case unless it then fits several. An unknown name and a
// title of several calendars are wrong usage.
CommandResult<std::vector<std::string>>
identifiersOfCalendars(const std::vector<std::string>& names,
                       const std::vector<headless::ListedCalendar>& calendars);

// Lists `calendars`, or writes the choice of the command line. `folder` is that of the settings.
CommandResult<void>
runSettingsCalendars(const CommandLine& line, const std::string& folder,
                     const std::vector<headless::ListedCalendar>& calendars,
                     const std::function<std::string(std::string_view)>& storeOf);

} // namespace quorvel::app
