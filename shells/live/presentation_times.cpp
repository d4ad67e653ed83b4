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

// Of a midnight that comes twice the date services give the second; the day begins with the first.
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
    double last = std::floor(now.timeIntervalSinceReferenceDate);
    double first = midnight.timeIntervalSinceReferenceDate;
    while (first - last > 1) {
        const double between = std::floor((last + first) / 2);
        (isToday({between}) ? last : first) = between;
    }
    return {first};
}

NSDate nextPresentation(const DateServices& dateServices, NSDate now,
                        const std::vector<RowDescription>& rows) {
    NSDate next = nextMidnight(dateServices, now);
    for (const RowDescription& row : rows) {
        for (const std::optional<NSDate>& change : {row.start, row.end}) {
            if (change && !row.isAllDay && *change > now && *change < next) {
                next = *change;
            }
        }
    }
    return next;
}

} // namespace quorvel::shells
