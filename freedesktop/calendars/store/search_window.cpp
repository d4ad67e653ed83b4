#include "freedesktop/calendars/store/search_window.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>

#include "base/time_units.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr int longestRangeYears = 4;
constexpr double farthest = 2.54e11; // seconds since 1970: the end of the year 9999

std::int64_t wholeSeconds(platform::NSDate date) {
    return std::llround(platform::timeIntervalSince1970(date));
}

icalendar::Window roundedWindow(const icalendar::Window& window, double unit) {
    return {std::floor(window.from / unit) * unit, std::ceil(window.to / unit) * unit};
}

} // namespace

std::optional<icalendar::Window> searchWindow(const platform::EKEventPredicate& predicate,
                                              const TimeZone& userZone) {
    icalendar::Window window{platform::timeIntervalSince1970(predicate.startDate),
                             platform::timeIntervalSince1970(predicate.endDate)};
    if (!(window.from <= window.to)) {
        return std::nullopt;
    }
    window.from = std::clamp(window.from, -farthest, farthest);
    window.to = std::clamp(window.to, -farthest, farthest);
    CivilTime last = userZone.localTime(static_cast<std::int64_t>(std::trunc(window.from)));
    last.year += longestRangeYears;
    window.to = std::min(window.to, static_cast<double>(userZone.instant(last)));
    return window;
}

icalendar::Window wholeWeeks(const icalendar::Window& window) {
    return roundedWindow(window, static_cast<double>(secondsPerWeek));
}

icalendar::Window wholeHours(const icalendar::Window& window) {
    return roundedWindow(window, static_cast<double>(secondsPerHour));
}

void addEventsWithin(const icalendar::Window& window, const platform::EKEvents& events,
                     platform::EKEvents& result) {
    std::copy_if(events.begin(), events.end(), std::back_inserter(result), [&](const auto& event) {
        return icalendar::belongsTo(window, wholeSeconds(event->startDate),
                                    wholeSeconds(event->endDate));
    });
}

} // namespace quorvel::freedesktop::calendars
