#include "freedesktop/named_calendars.h"

#include <utility>
#include <variant>

#include "freedesktop/calendars/server/server_check.h"
#include "freedesktop/calendars/store/server_calendar_stores.h"
#include "freedesktop/calendars/subscriptions/calendar_address.h"
#include "freedesktop/calendars/subscriptions/copied_sources.h"
#include "freedesktop/calendars/thunderbird/profiles.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop {

namespace {

// People leave out the colon of a source that is no file.
std::string sourceHint(const std::string& path) {
    if (path + ':' == dataServerSourceName) {
        return translated("write 'eds:' for those of Evolution Data Server");
    }
    if (path + ':' == thunderbird::sourceName) {
        return translated("write 'thunderbird:' for those of Thunderbird");
    }
    if (path.starts_with(thunderbird::sourceName)) {
        return translated(
            "name a folder of its profiles, as in 'thunderbird:~/.thunderbird/abcd.default'");
    }
    return translated("name a .ics file or a folder of them");
}

Result<void, TranslatableText> checkAnySource(const CalendarSource& source) {
    if (isDataServer(source)) {
        return eds::checkDataServer();
    }
    return thunderbird::isThunderbird(source) ? thunderbird::checkProfiles(source)
                                              : checkSource(source);
}

Result<CalendarSource> localSource(const std::string& name, const std::string& path) {
    CalendarSource source = CalendarSource::at(path);
    const auto check = checkAnySource(source);
    if (!check) {
        return Error{filled(translated("the calendars '{1}' cannot be read ({2})"),
                            {name, translated(check.error())}),
                     {},
                     sourceHint(name)};
    }
    return source;
}

} // namespace

Result<CalendarSource> namedCalendars(const std::string& name) {
    const auto address = parseCalendarAddress(name);
    if (!address) {
        return address.error();
    }
    if (const auto* const remote = std::get_if<RemoteCalendar>(&*address)) {
        return sourceOf(*remote, SubscriptionCache(userSubscriptionFolder()));
    }
    if (const auto* const local = std::get_if<LocalCalendars>(&*address)) {
        return localSource(name, local->path);
    }
    return Error{translated("standard input cannot be read here"),
                 {},
                 translated("name a .ics file or a folder of them")};
}

} // namespace quorvel::freedesktop
