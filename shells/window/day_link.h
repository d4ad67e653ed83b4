// The link to the day of an event.
#pragma once

#include <optional>

#include "platform/ns_date.h"
#include "platform/ns_url.h"

namespace quorvel::platform {
class DateServices;
} // namespace quorvel::platform

namespace quorvel::window {

// Of the day in the user's time zone: "fantastical2://show?date=2026-3-10". Absent where the day
// has no components.
std::optional<platform::NSURL> dayLink(const platform::DateServices& dates, platform::NSDate date);

} // namespace quorvel::window
