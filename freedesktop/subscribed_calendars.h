// The calendars on servers among the user's calendars: those of the list of subscriptions, which
// may change at any time, and what is known about the copies of them.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/calendars/subscriptions/copied_sources.h"
#include "freedesktop/calendars/subscriptions/subscription_cache.h"
#include "freedesktop/glib/child_program.h"

namespace quorvel::freedesktop {

struct SubscriptionOptions {
    std::string cacheFolder; // of the copies; empty: there are none
    // The folder of the list; absent: the list is not read.
    std::optional<std::string> listFolder;
    std::string refreshProgram; // empty: copies are never refreshed
};

// For one thread.
class SubscribedCalendars {
public:
    explicit SubscribedCalendars(SubscriptionOptions options);

    // The list is read only where it was before.
    void setListFolder(const std::string& folder);

    // The named sources and behind them those of the list, as they are now.
    std::vector<CalendarSource> withSubscriptions(const std::vector<CalendarSource>& named);

    // These are about the copies among the sources of the last withSubscriptions().
    // What the user reads about copies that are not current, and a list that cannot be read.
    std::vector<CalendarProblem> problems() const { return problems(ProblemText::reason); }
    // Those that were not reported before, with what the user can do; a problem that ended is
    // reported again.
    std::vector<CalendarProblem> newProblems();
    // The folders with the copies and their states.
    std::vector<std::string> folders() const;
    // Absent: nothing is ever due. Not negative.
    std::optional<double> secondsUntilRefresh() const;
    // Starts the refresh of those that are due; absent: none is.
    std::optional<ProgramCall> refreshCall() const;
    // Likewise, of those that were not asked for within that many seconds, due or not.
    std::optional<ProgramCall> refreshCallForOlderThan(std::int64_t seconds) const;

private:
    std::optional<ProgramCall> callFor(const std::vector<std::string>& urls) const;
    std::vector<CalendarProblem> problems(ProblemText text) const;

    SubscriptionOptions m_options;
    SubscriptionCache m_cache;
    std::vector<CalendarSource> m_sources;
    std::optional<CalendarProblem> m_listProblem;
    std::set<std::pair<std::string, std::string>> m_reported; // label and cause
};

// The call that refreshes these calendars, whether they are due or not.
ProgramCall refreshCall(const SubscriptionOptions& options, const std::vector<std::string>& urls);

} // namespace quorvel::freedesktop
