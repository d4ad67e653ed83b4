#include "freedesktop/launch/calendar_applications.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <string>

#include "base/ascii_text.h"

namespace quorvel::freedesktop {

namespace {

std::string formatted(const std::tm& time, const char* format) {
    std::array<char, 256> text{};
    return {text.data(), std::strftime(text.data(), text.size(), format, &time)};
}

std::time_t unixTime(platform::NSDate date) {
    return static_cast<std::time_t>(std::floor(platform::timeIntervalSince1970(date)));
}

// Noon, because no clock change moves it to another day.
std::tm noonOf(const DayLink& day) {
    std::tm time{};
    time.tm_year = day.year - 1900;
    time.tm_mon = day.month - 1;
    time.tm_mday = day.day;
    time.tm_hour = 12;
    time.tm_isdst = -1;
    return time;
}

std::tm localDay(const CalendarLink& link) {
    std::tm time{};
    if (const auto* event = std::get_if<EventLink>(&link)) {
        const std::time_t start = unixTime(event->start);
        localtime_r(&start, &time);
        return time;
    }
    time = noonOf(std::get<DayLink>(link));
    const std::time_t noon = std::mktime(&time);
    localtime_r(&noon, &time);
    return time;
}

std::string utcInstant(const CalendarLink& link) {
    std::tm day = localDay(link);
    const auto* event = std::get_if<EventLink>(&link);
    const std::time_t instant = event != nullptr ? unixTime(event->start) : std::mktime(&day);
    std::tm utc{};
    gmtime_r(&instant, &utc);
    // strftime() does not pad the year to four digits.
    constexpr std::size_t length = std::string_view("20140307T174500Z").size();
    const std::string text = formatted(utc, "%Y%m%dT%H%M%SZ");
    return std::string(length - std::min(length, text.size()), '0') + text;
}

bool isUnreserved(char c) {
    return isAsciiLetterOrDigit(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

std::string percentEncoded(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        if (isUnreserved(c)) {
            encoded += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            encoded += {'%', digits[byte >> 4U], digits[byte & 0xFU]};
        }
    }
    return encoded;
}

LaunchArguments evolutionArguments(const CalendarLink& link, const EventLink* event,
                                   bool isRunning) {
    const std::string start = "calendar:///?";
    LaunchArguments arguments;
    if (event == nullptr || !isRunning) {
        arguments.links.push_back(start + "startdate=" + utcInstant(link));
    }
    if (event != nullptr) {
        arguments.links.push_back(start + "source-uid=" + percentEncoded(event->calendar) +
                                  "&comp-uid=" + percentEncoded(event->uid));
    }
    return arguments;
}

LaunchArguments gnomeCalendarArguments(const CalendarLink& link, const EventLink* event) {
    if (event != nullptr) {
        return {{}, {"--uuid", event->calendar + ':' + event->uid}, {}};
    }
    return {{}, {"--date", formatted(localDay(link), "%x")}, {}};
}

} // namespace

CalendarApplication calendarApplicationOfEntry(std::string_view desktopEntryName) {
    if (desktopEntryName == "org.gnome.Evolution.desktop") {
        return CalendarApplication::evolution;
    }
    if (desktopEntryName == "org.gnome.Calendar.desktop") {
        return CalendarApplication::gnomeCalendar;
    }
    return CalendarApplication::other;
}

LaunchArguments argumentsToOpen(const CalendarLink& link, CalendarApplication application,
                                CalendarApplicationState state) {
    const EventLink* event = state.knowsCalendar ? std::get_if<EventLink>(&link) : nullptr;
    switch (application) {
    case CalendarApplication::evolution:
        return evolutionArguments(link, event, state.isRunning);
    case CalendarApplication::gnomeCalendar:
        return gnomeCalendarArguments(link, event);
    case CalendarApplication::other:
        break;
    }
    return {};
}

} // namespace quorvel::freedesktop
