#include "freedesktop/launch/calendar_opener.h"

#include <utility>

#include "freedesktop/launch/application_start.h"
#include "freedesktop/launch/calendar_applications.h"
#include "freedesktop/launch/calendar_sources.h"
#include "freedesktop/launch/installed_calendars.h"

namespace quorvel::freedesktop {

using launch::EntryHandle;

namespace {

constexpr double longestStart = 10; // seconds

// An application that the bus activates has been told when this returns.
std::string startAndWait(EntryHandle application, CalendarOpening opening) {
    std::optional<std::string> answer;
    const auto underWay = launch::startApplication(
        std::move(application), {std::move(opening.link), std::move(opening.arguments)},
        longestStart, [&answer](const std::string& problem) { answer = problem; });
    while (!answer) {
        g_main_context_iteration(nullptr, TRUE);
    }
    return *answer;
}

} // namespace

OpeningOutcome openInCalendarApplication(const CalendarLink& link) {
    EntryHandle application = launch::installedCalendarApplication();
    if (!application) {
        return {false, "there is no calendar application: install Evolution or GNOME Calendar"};
    }
    const std::string name = launch::nameOf(application.get());
    const CalendarApplication kind = calendarApplicationOfEntry(name);
    const auto* event = std::get_if<EventLink>(&link);
    const bool isKnown =
        event != nullptr && kind != CalendarApplication::other && isDesktopSource(event->calendar);
    const std::string problem =
        startAndWait(std::move(application), openingOf(link, kind, isKnown));
    if (!problem.empty()) {
        return {false, "the application " + name + " could not be started (" + problem +
                           "): try it by hand"};
    }
    return {true, ""};
}

} // namespace quorvel::freedesktop
