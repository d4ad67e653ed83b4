#include "app/calendar_sources.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <unistd.h>

#include "freedesktop/language/messages.h"
#include "freedesktop/named_calendars.h"

namespace quorvel::app {

using freedesktop::CalendarSource;
using freedesktop::translated;

namespace {

constexpr std::size_t mostInput = 64 << 20U; // bytes

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
    Result<CalendarSource> source = freedesktop::namedCalendars(name);
    if (!source) {
        return usageFailure(source.error());
    }
    return *std::move(source);
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
