#include "freedesktop/launch/calendar_link.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>

#include "base/number_text.h"

namespace quorvel::freedesktop {

using platform::NSDate;

namespace {

constexpr std::string_view eventPrefix = "x-apple-calevent://";
constexpr std::string_view startKey = "?o=";
constexpr std::string_view dayPrefix = "fantastical2://show?date=";
// The first seconds of the years 1 and 10000, since the reference date.
constexpr double earliestStart = -63113904000.0;
constexpr double endOfStarts = 252423993600.0;

std::optional<unsigned> countOf(std::string_view text) {
    unsigned number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = result.ec == std::errc() && result.ptr == text.data() + text.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

std::optional<CalendarLink> parseEventLink(std::string_view text) {
    const std::size_t query = text.rfind(startKey);
    const std::size_t slash = text.find('/');
    if (query == std::string_view::npos || slash == 0 || slash >= query - 1) {
        return std::nullopt;
    }
    const auto start = wholeNumber(text.substr(query + startKey.size()));
    if (!start || !(*start >= earliestStart && *start < endOfStarts)) {
        return std::nullopt;
    }
    return EventLink{std::string(text.substr(0, slash)),
                     std::string(text.substr(slash + 1, query - slash - 1)), NSDate{*start}};
}

std::optional<CalendarLink> parseDayLink(std::string_view text) {
    const std::size_t first = text.find('-');
    const std::size_t second = first == std::string_view::npos ? first : text.find('-', first + 1);
    if (second == std::string_view::npos) {
        return std::nullopt;
    }
    const auto year = countOf(text.substr(0, first));
    const auto month = countOf(text.substr(first + 1, second - first - 1));
    const auto day = countOf(text.substr(second + 1));
    constexpr unsigned latestYear = 9999;
    if (!year || !month || !day || *year < 1 || *year > latestYear) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(*year)),
                                           std::chrono::month(*month), std::chrono::day(*day)};
    if (!date.ok()) {
        return std::nullopt;
    }
    return DayLink{static_cast<int>(*year), static_cast<int>(*month), static_cast<int>(*day)};
}

} // namespace

std::optional<CalendarLink> parseCalendarLink(std::string_view text) {
    if (text.starts_with(eventPrefix)) {
        return parseEventLink(text.substr(eventPrefix.size()));
    }
    if (text.starts_with(dayPrefix)) {
        return parseDayLink(text.substr(dayPrefix.size()));
    }
    return std::nullopt;
}

} // namespace quorvel::freedesktop
