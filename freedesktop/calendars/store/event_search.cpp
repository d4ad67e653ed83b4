#include "freedesktop/calendars/store/event_search.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "freedesktop/calendars/store/event_order.h"
#include "freedesktop/calendars/store/reported_problems.h"
#include "freedesktop/calendars/store/stored_results.h"

namespace quorvel::freedesktop::calendars {
namespace {

Signature keyOfSearch(const SearchRequest& request, const icalendar::Window& window) {
    SignatureHash key;
    key.add(request.snapshot->signature);
    key.add(std::string_view(request.userZone->identifier()));
    key.add(std::llround(window.from));
    key.add(std::llround(window.to));
    for (const auto& calendar : request.calendars) {
        key.add(std::string_view(calendar->calendarIdentifier));
    }
    return key.value();
}

} // namespace

EventSearch::EventSearch(SnapshotReader& snapshots, DeferredIndex& index)
    : m_snapshots(snapshots)
    , m_index(index) {}

std::shared_ptr<const SearchResult> EventSearch::search(const SearchRequest& request) {
    if (m_snapshots.isSettled(request.snapshot)) {
        if (auto stored = storedResult(request)) {
            return std::make_shared<const SearchResult>(*std::move(stored));
        }
    }
    auto result = std::make_shared<const SearchResult>(expand(request));
    if (m_snapshots.isSettled(request.snapshot)) {
        const icalendar::Window& window = result->isNarrow ? request.narrow : request.window;
        m_index.storeLater({IndexKind::search, keyOfSearch(request, window),
                            [result, calendars = request.calendars] {
                                return bytesOfSearch(*result, calendars);
                            }});
    }
    return result;
}

std::optional<SearchResult> EventSearch::storedResult(const SearchRequest& request) {
    auto transaction = m_index.transaction();
    if (!transaction) {
        return std::nullopt;
    }
    for (const icalendar::Window* const window : {&request.window, &request.narrow}) {
        const auto bytes = transaction->find(IndexKind::search, keyOfSearch(request, *window));
        auto result = bytes ? searchFromBytes(*bytes, request.calendars) : std::nullopt;
        if (result) {
            result->isNarrow = window == &request.narrow;
            return result;
        }
    }
    return std::nullopt;
}

SearchResult EventSearch::expand(const SearchRequest& request) {
    SearchResult result;
    if (!expandWithin(request.window, request)) {
        result.isNarrow = true;
        expandWithin(request.narrow, request);
    }
    for (const CachedCalendar& cached : m_cached) {
        const auto& [events, problems, cost] = cached.expanded;
        result.events.insert(result.events.end(), events.begin(), events.end());
        result.problems.insert(result.problems.end(), problems.begin(), problems.end());
    }
    std::sort(result.events.begin(), result.events.end(), comesBefore);
    limitProblems(result.problems);
    return result;
}

// False where a calendar has more events in the window than its share.
bool EventSearch::expandWithin(const icalendar::Window& window, const SearchRequest& request) {
    const bool isSameSearch = m_zone == request.userZone && m_window == window;
    auto previous = std::exchange(m_cached, {});
    useTimeZone(request.userZone);
    m_window = window;
    if (!isSameSearch) {
        previous.clear();
    }
    if (!expandCalendars(request, std::move(previous))) {
        m_cached.clear();
        expandCalendars(request, {});
    }
    return std::none_of(m_cached.begin(), m_cached.end(), [](const CachedCalendar& cached) {
        return cached.expanded.cost.isTruncated;
    });
}

void EventSearch::useTimeZone(const std::shared_ptr<const TimeZone>& zone) {
    if (m_zone != zone) {
        m_zone = zone;
        m_userZone = std::make_unique<icalendar::ZoneClock>(zone);
    }
}

// Reuses those of the previous calendars that are unchanged. False where the calendars together
// cost so much that a reused one could have been expanded differently now.
bool EventSearch::expandCalendars(const SearchRequest& request,
                                  std::vector<CachedCalendar> previous) {
    const auto loaded = m_snapshots.calendarsOf(request.snapshot);
    icalendar::SearchCost cost;
    bool isAnyReused = false;
    bool isAllowed = true;
    for (const auto& owner : request.calendars) {
        const auto calendar =
            std::find_if(loaded->calendars.begin(), loaded->calendars.end(), [&](const auto& one) {
                return one->calendar->calendarIdentifier == owner->calendarIdentifier;
            });
        if (calendar == loaded->calendars.end()) {
            continue;
        }
        const auto known = std::find_if(previous.begin(), previous.end(), [&](const auto& one) {
            return one.calendar == *calendar && one.owner == owner;
        });
        if (known != previous.end()) {
            isAnyReused = true;
            isAllowed = isAllowed && cost.allows(known->expanded.cost);
            cost.calendar = known->expanded.cost;
            m_cached.push_back(std::move(*known));
            previous.erase(known);
        } else {
            m_cached.push_back(
                {*calendar, owner,
                 expandCalendar({m_window, *m_userZone, m_zones, cost}, **calendar, owner)});
        }
        cost.endCalendar();
    }
    return !isAnyReused || (isAllowed && !cost.hasSpentSteps());
}

} // namespace quorvel::freedesktop::calendars
