#include "freedesktop/launch/calendar_opener.h"

#include <optional>
#include <string>
#include <utility>

#include "freedesktop/language/messages.h"
#include "freedesktop/launch/application_start.h"
#include "freedesktop/launch/calendar_applications.h"
#include "freedesktop/launch/calendar_sources.h"
#include "freedesktop/launch/installed_calendars.h"

namespace quorvel::freedesktop {

using launch::EntryHandle;

namespace {

constexpr double longestStart = 10; // seconds

// Returns after the application has accepted the link, if it is activated over the bus.
Result<void> startAndWait(EntryHandle application, LaunchArguments arguments) {
    std::optional<Result<void>> answer;
    const auto pending =
        launch::startApplication(std::move(application), std::move(arguments), longestStart,
                                 {[&answer](const Result<void>& result) { answer = result; }, {}});
    while (!answer) {
        g_main_context_iteration(nullptr, TRUE);
    }
    return *answer;
}

} // namespace

Result<void> openInCalendarApplication(const CalendarLink& link,
                                       const std::string& activationToken) {
    EntryHandle application = launch::installedCalendarApplication();
    if (!application) {
        return Error{translated("there is no calendar application"),
                     {},
                     translated("install Evolution or GNOME Calendar")};
    }
    const std::string name = launch::nameOf(application.get());
    const CalendarApplication kind = calendarApplicationOfEntry(name);
    const auto* event = std::get_if<EventLink>(&link);
    CalendarApplicationState state;
    if (event != nullptr && kind != CalendarApplication::other) {
        state.knowsCalendar = isDesktopSource(event->calendar);
        state.isRunning = state.knowsCalendar && launch::isRunning(application.get());
    }
    LaunchArguments arguments = argumentsToOpen(link, kind, state);
    arguments.activationToken = activationToken;
    const auto started = startAndWait(std::move(application), std::move(arguments));
    if (!started) {
        return Error{filled(translated("the application {1} could not be started ({2})"),
                            {name, translated(started.error().what)}),
                     {},
                     translated("try it by hand")};
    }
    return {};
}

} // namespace quorvel::freedesktop
