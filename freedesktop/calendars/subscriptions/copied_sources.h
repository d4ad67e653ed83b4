// Copies of calendars on servers as sources of calendars.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/calendars/subscriptions/calendar_address.h"
#include "freedesktop/calendars/subscriptions/subscription_cache.h"
#include "freedesktop/calendars/subscriptions/subscription_list.h"

namespace quorvel::freedesktop {

CalendarSource sourceOf(const Subscription& subscription, const SubscriptionCache& cache);
// A calendar that the user has not subscribed to.
CalendarSource sourceOf(const RemoteCalendar& calendar, const SubscriptionCache& cache);

// Of the calendar that the source becomes, in every process the same.
std::string calendarIdentifierOf(const Subscription& subscription);

enum class ProblemText { reason, reasonAndAdvice };

// Of those sources that are copies. The `file` of a problem is the calendar's label.
std::vector<CalendarProblem> copyProblems(const std::vector<CalendarSource>& sources,
                                          const SubscriptionCache& cache, std::int64_t now,
                                          ProblemText text = ProblemText::reason);

// The URLs of the copies that have to be fetched again by then.
std::vector<std::string> dueCopies(const std::vector<CalendarSource>& sources,
                                   const SubscriptionCache& cache, std::int64_t now);

// The URLs of the copies that were not fetched, or tried to be, since that time.
std::vector<std::string> copiesTriedBefore(const std::vector<CalendarSource>& sources,
                                           const SubscriptionCache& cache, std::int64_t since,
                                           std::int64_t now);

// When the next one of the copies is due, in seconds since 1970. Absent: no source is a copy.
std::optional<std::int64_t> nextRefresh(const std::vector<CalendarSource>& sources,
                                        const SubscriptionCache& cache, std::int64_t now);

} // namespace quorvel::freedesktop
