#include "app/settings_calendars.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "app/messages.h"
#include "base/ascii_text.h"
#include "base/likeliest_name.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/calendar_selection.h"

namespace quorvel::app {

using freedesktop::CalendarSelection;
using freedesktop::translated;
using headless::ListedCalendar;

namespace {

using Calendars = std::vector<ListedCalendar>;
using Identifiers = std::vector<std::string>;

const std::string& identifierOf(const ListedCalendar& calendar) {
    return calendar.calendar->calendarIdentifier;
}

const std::string& titleOf(const ListedCalendar& calendar) {
    return calendar.calendar->title;
}

template <class Condition>
Identifiers identifiersWhere(const Calendars& calendars, Condition condition) {
    Identifiers found;
    for (const ListedCalendar& calendar : calendars) {
        if (condition(calendar)) {
            found.push_back(identifierOf(calendar));
        }
    }
    return found;
}

Identifiers matches(const std::string& name, const Calendars& calendars) {
    Identifiers found = identifiersWhere(
        calendars, [&](const ListedCalendar& calendar) { return identifierOf(calendar) == name; });
    if (found.empty()) {
        found = identifiersWhere(
            calendars, [&](const ListedCalendar& calendar) { return titleOf(calendar) == name; });
    }
    if (found.empty()) {
        found = identifiersWhere(calendars, [&](const ListedCalendar& calendar) {
            return asciiLowerCase(titleOf(calendar)) == asciiLowerCase(name);
        });
    }
    return found;
}

Failure unknownCalendar(const std::string& name, const Calendars& calendars) {
    std::vector<std::string_view> names;
    for (const ListedCalendar& calendar : calendars) {
        names.push_back(titleOf(calendar));
        names.push_back(identifierOf(calendar));
    }
    const auto likeliest = likeliestName(name, names);
    return usageFailure(
        {filled(translated("there is no calendar '{1}'"), {name}),
         {},
         likeliest ? filled(translated("did you mean '{1}'?"), {*likeliest})
                   : std::string(translated("'quorvel settings calendars' lists the calendars"))});
}

Failure ambiguousCalendar(const std::string& name, const Identifiers& identifiers) {
    std::string list;
    for (const std::string& identifier : identifiers) {
        list += (list.empty() ? "" : ", ") + identifier;
    }
    return usageFailure({filled(translated("several calendars have the title '{1}'"), {name}),
                         {},
                         filled(translated("give one of the identifiers {1}"), {list})});
}

CommandResult<void> writeSelection(const std::string& folder, const CalendarSelection& selection) {
    const Result<void> written = freedesktop::writeCalendarSelection(folder, selection);
    return written ? CommandResult<void>() : operationFailure(written.error());
}

CommandResult<void> followDesktop(const std::string& folder) {
    Result<CalendarSelection> selection = freedesktop::readCalendarSelection(folder);
    if (!selection) {
        return operationFailure(selection.error());
    }
    selection->followsDesktop = true;
    return writeSelection(folder, *selection);
}

CommandResult<void> chooseAll(const std::string& folder, const Calendars& calendars) {
    if (calendars.empty()) {
        return operationFailure(
            {translated("there are no calendars"), {}, translated("name them with --calendars")});
    }
    return writeSelection(folder,
                          {false, identifiersWhere(calendars, [](const auto&) { return true; })});
}

CommandResult<void> choose(const CommandLine& line, const std::string& folder,
                           const Calendars& calendars) {
    CommandResult<Identifiers> identifiers =
        identifiersOfCalendars(line.chosenCalendars, calendars);
    return identifiers ? writeSelection(folder, {false, *std::move(identifiers)})
                       : CommandResult<void>(identifiers.error());
}

void noteMissingCalendars(const CalendarSelection& selection, const Calendars& calendars) {
    for (const std::string& identifier : selection.identifiers) {
        if (!selection.followsDesktop &&
            std::ranges::find(calendars, identifier, identifierOf) == calendars.end()) {
            printError({filled(translated("the chosen calendar '{1}' is not there"), {identifier}),
                        {},
                        translated("choose others with --choose")});
        }
    }
}

CommandResult<void> list(const CommandLine& line, const std::string& folder,
                         const Calendars& calendars,
                         const std::function<std::string(std::string_view)>& storeOf) {
    const Result<CalendarSelection> selection = freedesktop::readCalendarSelection(folder);
    std::string text = line.json ? headless::calendarsDocument(calendars, storeOf)
                                 : headless::calendarsText(calendars, storeOf);
    if (!line.json && selection) {
        text += '\n';
        text += selection->followsDesktop
                    ? translated("Shown are those that the calendar application has switched on.\n")
                    : translated("Shown are those that were chosen.\n");
    }
    const Result<void> printed = print(text);
    if (selection) {
        noteMissingCalendars(*selection, calendars);
    }
    return printed ? CommandResult<void>() : operationFailure(printed.error());
}

} // namespace

CommandResult<Identifiers> identifiersOfCalendars(const std::vector<std::string>& names,
                                                  const Calendars& calendars) {
    std::set<std::string> chosen;
    for (const std::string& name : names) {
        const Identifiers found = matches(name, calendars);
        if (found.empty()) {
            return unknownCalendar(name, calendars);
        }
        if (found.size() > 1) {
            return ambiguousCalendar(name, found);
        }
        chosen.insert(found.front());
    }
    return identifiersWhere(calendars, [&](const ListedCalendar& calendar) {
        return chosen.contains(identifierOf(calendar));
    });
}

CommandResult<void>
runSettingsCalendars(const CommandLine& line, const std::string& folder, const Calendars& calendars,
                     const std::function<std::string(std::string_view)>& storeOf) {
    if (line.followsDesktop) {
        return followDesktop(folder);
    }
    if (line.choosesAll) {
        return chooseAll(folder, calendars);
    }
    return line.chosenCalendars.empty() ? list(line, folder, calendars, storeOf)
                                        : choose(line, folder, calendars);
}

} // namespace quorvel::app
