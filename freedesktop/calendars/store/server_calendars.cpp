#include "freedesktop/calendars/store/server_calendars.h"

#include <algorithm>
#include <cmath>

#include "freedesktop/calendars/files/calendar_colours.h"
#include "icalendar/text/property_values.h"

namespace quorvel::freedesktop::eds {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

bool mayStandInIdentifier(char letter) {
    const auto code = static_cast<unsigned char>(letter);
    return letter != ':' && letter != '/' && letter != '%' && code > 0x20 && code != 0x7F;
}

// Turns "#RRRRGGGGBBBB" into "#RRGGBB".
std::string shortened(std::string_view text) {
    std::string result;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        result += text.substr(1 + 4 * channel, 2);
    }
    return "#" + result;
}

} // namespace

std::string calendarIdentifier(std::string_view serverIdentifier) {
    std::string identifier;
    for (const char letter : icalendar::validUtf8(serverIdentifier)) {
        if (mayStandInIdentifier(letter)) {
            identifier += letter;
        } else {
            const auto code = static_cast<unsigned char>(letter);
            identifier += {'%', hexDigits[code / 16U], hexDigits[code % 16U]};
        }
    }
    return identifier;
}

std::optional<platform::UIColor> serverColour(std::string_view text) {
    constexpr std::size_t longForm = 13;
    const bool isLong = text.size() == longForm && text.front() == '#' &&
                        text.find_first_not_of("0123456789abcdefABCDEF", 1) == text.npos;
    return calendars::calendarColour(isLong ? shortened(text) : text);
}

std::shared_ptr<const platform::EKCalendar> makeCalendar(const ServerCalendar& calendar) {
    auto result = std::make_shared<platform::EKCalendar>();
    result->calendarIdentifier = calendarIdentifier(calendar.identifier);
    result->title =
        icalendar::validUtf8(calendar.title.empty() ? calendar.identifier : calendar.title);
    const auto colour = serverColour(calendar.colour);
    result->CGColor = colour ? *colour : calendars::stableColour(result->calendarIdentifier);
    return result;
}

std::optional<SearchedRange> searchedRange(const platform::EKEventPredicate& predicate) {
    constexpr double farthest = 2.5e11; // seconds, some 8,000 years either way
    constexpr double longest =
        (4 * 366.0 + 1) * 86'400; // seconds; searchWindow() limits it to the day
    const double from = platform::timeIntervalSince1970(predicate.startDate);
    const double to = platform::timeIntervalSince1970(predicate.endDate);
    if (!(from <= to)) {
        return std::nullopt;
    }
    const double begin = std::clamp(from, -farthest, farthest);
    const double end = std::min(std::clamp(to, -farthest, farthest), begin + longest);
    return SearchedRange{static_cast<std::int64_t>(std::floor(begin)),
                         static_cast<std::int64_t>(std::ceil(end))};
}

} // namespace quorvel::freedesktop::eds
