#include "freedesktop/calendars/store/server_calendar_events.h"

#include <vector>

#include "freedesktop/calendars/store/search_window.h"
#include "icalendar/model/ics_file_parser.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t mostReportedProblems = 100;

} // namespace

ServerCalendarEvents::ServerCalendarEvents(std::shared_ptr<const TimeZone> userZone,
                                           CalendarProblemHandler onProblem)
    : m_zone(std::move(userZone))
    , m_userZone(m_zone)
    , m_zones(zoneDirectory())
    , m_onProblem(std::move(onProblem)) {}

void ServerCalendarEvents::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    m_zone = std::move(userZone);
    m_userZone = icalendar::ZoneClock(m_zone);
    for (auto& [identifier, cached] : m_cached) {
        cached.isExpanded = false;
    }
}

void ServerCalendarEvents::removeUnless(
    const std::function<bool(const std::string& identifier)>& isListed) {
    std::erase_if(m_cached, [&](const auto& entry) { return !isListed(entry.first); });
}

void ServerCalendarEvents::addEvents(const ServerAnswer& answer,
                                     const platform::EKEventPredicate& predicate,
                                     platform::EKEvents& result) {
    const auto window = searchWindow(predicate, *m_zone);
    if (!window) {
        return;
    }
    CachedCalendar& cached = m_cached[answer.calendar->calendarIdentifier];
    parse(answer, cached);
    expand(answer, *window, cached);
    platform::EKEvents events;
    addEventsWithin(*window, cached.expanded.events, events);
    for (auto& event : events) {
        if (event->calendar != answer.calendar) { // it was listed again meanwhile
            auto copy = std::make_shared<platform::EKEvent>(*event);
            copy->calendar = answer.calendar;
            event = std::move(copy);
        }
        result.push_back(std::move(event));
    }
}

void ServerCalendarEvents::parse(const ServerAnswer& answer, CachedCalendar& cached) {
    const bool isUnchanged =
        cached.calendar && (cached.text == answer.text || *cached.text == *answer.text);
    cached.text = answer.text;
    if (isUnchanged) {
        return;
    }
    const auto file = std::make_shared<icalendar::LoadedFile>(
        answer.displayName, 0, icalendar::parseIcsFile(*answer.text, isExactTimeZoneName));
    for (const icalendar::FileProblem& problem : file->ics.problems) {
        report(answer.displayName, problem.what);
    }
    cached.calendar = makeLoadedCalendar(answer.calendar, {file});
    cached.isExpanded = false;
}

void ServerCalendarEvents::expand(const ServerAnswer& answer, const icalendar::Window& window,
                                  CachedCalendar& cached) {
    const icalendar::Window searched = wholeWeeks(window);
    const icalendar::Window narrow = wholeHours(window);
    if (cached.isExpanded && cached.searched == searched &&
        (!cached.isNarrow || cached.narrow == narrow)) {
        return;
    }
    const auto expandWithin = [&](const icalendar::Window& wanted) {
        icalendar::SearchCost cost;
        cached.expanded =
            expandCalendar({wanted, m_userZone, m_zones, cost}, *cached.calendar, answer.calendar);
    };
    expandWithin(searched);
    cached.isNarrow = cached.expanded.cost.isTruncated;
    if (cached.isNarrow) {
        expandWithin(narrow);
    }
    cached.isExpanded = true;
    cached.searched = searched;
    cached.narrow = narrow;
    for (const VersionedProblem& problem : cached.expanded.problems) {
        report(answer.displayName, problem.problem.what);
    }
}

void ServerCalendarEvents::report(const std::string& place, const TranslatableText& what) {
    if (m_reported.size() < mostReportedProblems &&
        m_reported.emplace(place, what.english()).second) {
        m_onProblem({place, 0, what});
    }
}

} // namespace quorvel::freedesktop::calendars
