// `quorvel settings calendars --subscribe` and `--unsubscribe`: calendars on servers.
#pragma once

#include "app/command_line.h"
#include "app/failure.h"

namespace quorvel::app {

bool isAboutSubscriptions(const CommandLine& line);

// Subscribing fetches the calendar at once. What is no calendar is not subscribed to; a server that
// cannot be reached now is, with a warning.
CommandResult<void> runSubscriptionCommand(const CommandLine& line);

} // namespace quorvel::app
