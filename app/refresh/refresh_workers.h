// Refreshes calendars in processes of their own, so that nothing that a server sends can take more
// than a bounded time and memory, nor harm another calendar.
#pragma once

#include <string>
#include <vector>

#include "app/refresh/calendar_refresh.h"

namespace quorvel::app {

// False: at least one could not be refreshed. Call it before the process has further threads.
bool refreshCalendars(const std::vector<std::string>& urls, const RefreshOptions& options);

} // namespace quorvel::app
