#include "app/calendar_sources.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>
#include <variant>

#include <unistd.h>

#include "freedesktop/calendars/server/sources_service.h"
#include "freedesktop/calendars/store/server_calendar_stores.h"
#include "freedesktop/calendars/subscriptions/calendar_address.h"
#include "freedesktop/calendars/subscriptions/copied_sources.h"
#include "freedesktop/calendars/thunderbird/profiles.h"
#include "freedesktop/language/messages.h"

namespace quorvel::app {

using freedesktop::CalendarSource;
using freedesktop::SubscriptionCache;
using freedesktop::translated;

namespace {

constexpr std::size_t mostInput = 64 << 20U; // bytes

// People leave out the colon of a source that is no file.
std::string sourceHint(const std::string& path) {
    if (path + ':' == freedesktop::dataServerSourceName) {
        return translated("write 'eds:' for those of Evolution Data Server");
    }
    if (path + ':' == freedesktop::thunderbird::sourceName) {
        return translated("write 'thunderbird:' for those of Thunderbird");
    }
    if (path.starts_with(freedesktop::thunderbird::sourceName)) {
        return translated(
            "name a folder of its profiles, as in 'thunderbird:~/.thunderbird/abcd.default'");
    }
    return translated("name a .ics file or a folder of them");
}

Result<void, TranslatableText> checkAnySource(const CalendarSource& source) {
    if (freedesktop::isDataServer(source)) {
        return freedesktop::eds::checkDataServer();
    }
    return freedesktop::thunderbird::isThunderbird(source)
               ? freedesktop::thunderbird::checkProfiles(source)
               : freedesktop::checkSource(source);
}

CommandResult<CalendarSource> localSource(const std::string& name, const std::string& path) {
    CalendarSource source = CalendarSource::at(path);
    const auto check = checkAnySource(source);
    if (!check) {
        return usageFailure({filled(translated("the calendars '{1}' cannot be read ({2})"),
                                    {name, translated(check.error())}),
                             {},
                             sourceHint(name)});
    }
    return source;
}

CommandResult<CalendarSource> standardInput() {
    std::string text;
    std::array<char, 65536> piece{};
    while (text.size() <= mostInput) {
        const ssize_t count = ::read(STDIN_FILENO, piece.data(), piece.size());
        if (count == 0) {
            return CalendarSource::inMemory(translated("standard input"), std::move(text));
        }
        if (count < 0 && errno != EINTR) {
            return operationFailure(
                {filled(translated("standard input cannot be read ({1})"), {std::strerror(errno)}),
                 {},
                 translated("name a .ics file or a folder of them")});
        }
        text.append(piece.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return operationFailure({translated("there are more than 64 MB on standard input"),
                             {},
                             translated("store them in a file and name that")});
}

} // namespace

CommandResult<CalendarSource> namedSource(const std::string& name) {
    const auto address = freedesktop::parseCalendarAddress(name);
    if (!address) {
        return usageFailure(address.error());
    }
    if (const auto* const remote = std::get_if<freedesktop::RemoteCalendar>(&*address)) {
        return sourceOf(*remote, SubscriptionCache(freedesktop::userSubscriptionFolder()));
    }
    if (const auto* const local = std::get_if<freedesktop::LocalCalendars>(&*address)) {
        return localSource(name, local->path);
    }
    return usageFailure({translated("standard input cannot be read here"),
                         {},
                         translated("name a .ics file or a folder of them")});
}

CommandResult<std::vector<CalendarSource>> namedSources(const std::vector<std::string>& names) {
    std::vector<CalendarSource> sources;
    bool hasReadInput = false;
    for (const std::string& name : names) {
        const bool isInput = name == "-";
        if (isInput && std::exchange(hasReadInput, true)) {
            return usageFailure({translated("standard input can be read only once"),
                                 {},
                                 translated("give '-' once")});
        }
        CommandResult<CalendarSource> source = isInput ? standardInput() : namedSource(name);
        if (!source) {
            return source.error();
        }
        sources.push_back(*std::move(source));
    }
    return sources;
}

} // namespace quorvel::app
