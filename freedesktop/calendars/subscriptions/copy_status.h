// When a copy of a calendar is fetched again, and what the user reads about one that is not
// current.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "freedesktop/calendars/subscriptions/subscription_cache.h"

namespace quorvel::freedesktop {

inline constexpr std::int64_t refreshInterval = 3600; // seconds
inline constexpr std::int64_t retryInterval = 900;    // after an error

// The seconds since 1970 of the system's clock, which nothing but the system sets.
std::int64_t systemSeconds();

// When the calendar is to be fetched again, in seconds since 1970. A time before `now` is due.
std::int64_t nextRefresh(const CopyState& state, bool hasCopy, std::int64_t now);

// "a minute", "3 hours", "2 days", in the user's language.
std::string ageText(std::int64_t seconds);

// A sentence about "it", the calendar. Absent: the copy is what the server had when it was last
// asked.
std::optional<TranslatableText> copyProblem(const CopyState& state, bool hasCopy, std::int64_t now);

} // namespace quorvel::freedesktop
