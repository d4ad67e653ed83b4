#include "shells/live/presentation_times.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>

namespace quorvel::shells {

using platform::DateServices;
using platform::NSDate;
using platform::NSDateComponents;

namespace {

constexpr unsigned dayUnits =
    platform::NSYearCalendarUnit | platform::NSMonthCalendarUnit | platform::NSDayCalendarUnit;

bool isSameDay(const NSDateComponents& a, const NSDateComponents& b) {
    return std::tie(a.year, a.month, a.day) == std::tie(b.year, b.month, b.day);
}

} // namespace

// Where midnight occurs twice, the date services return the second one. A binary search finds the
// first second of the day then.
NSDate nextMidnight(const DateServices& dateServices, NSDate now) {
    const NSDateComponents today = dateServices.components(dayUnits, now);
    const auto isToday = [&](NSDate date) {
        return isSameDay(dateServices.components(dayUnits, date), today);
    };
    NSDateComponents tomorrow = today;
    tomorrow.day = today.day.value_or(1) + 1;
    const NSDate midnight = dateServices.dateFromComponents(tomorrow);
    if (isToday(midnight.dateByAddingTimeInterval(-1))) {
        return midnight;
    }
    double lastOfToday = std::floor(now.timeIntervalSinceReferenceDate);
    double firstOfTomorrow = midnight.timeIntervalSinceReferenceDate;
    while (firstOfTomorrow - lastOfToday > 1) {
        const double middle = std::floor((lastOfToday + firstOfTomorrow) / 2);
        (isToday({middle}) ? lastOfToday : firstOfTomorrow) = middle;
    }
    return {firstOfTomorrow};
}

NSDate nextPresentation(const DateServices& dateServices, NSDate now,
                        const std::vector<RowDescription>& rows) {
    NSDate next = nextMidnight(dateServices, now);
    for (const RowDescription& row : rows) {
        for (const std::optional<NSDate>& boundary : {row.start, row.end}) {
            if (boundary && !row.isAllDay && *boundary > now && *boundary < next) {
                next = *boundary;
            }
        }
    }
    return next;
}

} // namespace quorvel::shells
