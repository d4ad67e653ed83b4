#include "freedesktop/calendars/subscriptions/copied_sources.h"

#include <algorithm>

#include "freedesktop/calendars/files/loaded_calendar.h"
#include "freedesktop/calendars/subscriptions/copy_status.h"

namespace quorvel::freedesktop {

CalendarSource sourceOf(const Subscription& subscription, const SubscriptionCache& cache) {
    const std::string ownName = cache.readState(subscription.url).calendarName;
    const std::string label =
        subscription.title.value_or(ownName.empty() ? subscription.host : ownName);
    CalendarSource source = CalendarSource::at(cache.calendarFile(subscription.url));
    source.copy = CopiedCalendar{subscription.url, subscription.host, subscription.title,
                                 subscription.colour, label};
    return source;
}

CalendarSource sourceOf(const RemoteCalendar& calendar, const SubscriptionCache& cache) {
    return sourceOf(Subscription{calendar.url, calendar.host, {}, {}, false}, cache);
}

std::string calendarIdentifierOf(const Subscription& subscription) {
    return calendars::calendarIdentifier(subscription.host, subscription.url);
}

std::vector<CalendarProblem> copyProblems(const std::vector<CalendarSource>& sources,
                                          const SubscriptionCache& cache, std::int64_t now,
                                          ProblemText text) {
    std::vector<CalendarProblem> problems;
    for (const CalendarSource& source : sources) {
        if (!source.copy) {
            continue;
        }
        const std::string& url = source.copy->origin;
        const CopyState state = cache.readState(url);
        if (auto problem = copyProblem(state, cache.hasCopy(url), now)) {
            if (text == ProblemText::reasonAndAdvice && !state.toDo.empty()) {
                problem = TranslatableText("{1}: {2}", {*problem, state.toDo});
            }
            problems.push_back({source.copy->label, 0, *std::move(problem)});
        }
    }
    return problems;
}

std::vector<std::string> dueCopies(const std::vector<CalendarSource>& sources,
                                   const SubscriptionCache& cache, std::int64_t now) {
    std::vector<std::string> due;
    for (const CalendarSource& source : sources) {
        if (source.copy) {
            const std::string& url = source.copy->origin;
            if (nextRefresh(cache.readState(url), cache.hasCopy(url), now) <= now) {
                due.push_back(url);
            }
        }
    }
    return due;
}

// A time in the future was written before the clock was set back.
std::vector<std::string> copiesTriedBefore(const std::vector<CalendarSource>& sources,
                                           const SubscriptionCache& cache, std::int64_t since,
                                           std::int64_t now) {
    std::vector<std::string> urls;
    for (const CalendarSource& source : sources) {
        if (source.copy) {
            const std::int64_t triedAt = cache.readState(source.copy->origin).triedAt;
            if (triedAt < since || triedAt > now) {
                urls.push_back(source.copy->origin);
            }
        }
    }
    return urls;
}

std::optional<std::int64_t> nextRefresh(const std::vector<CalendarSource>& sources,
                                        const SubscriptionCache& cache, std::int64_t now) {
    std::optional<std::int64_t> next;
    for (const CalendarSource& source : sources) {
        if (source.copy) {
            const std::string& url = source.copy->origin;
            const std::int64_t time = nextRefresh(cache.readState(url), cache.hasCopy(url), now);
            next = std::min(next.value_or(time), time);
        }
    }
    return next;
}

} // namespace quorvel::freedesktop
