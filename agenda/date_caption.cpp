#include "agenda/date_caption.h"

#include <cmath>
#include <limits>

#include "agenda/days.h"
#include "base/time_units.h"
#include "platform/clock.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr std::int32_t lastDayNamedByWeekday = 7;

const char* weekdayPattern(bool isAllDay, bool twelveHourClock) {
    if (isAllDay) {
        return "EEEE";
    }
    return twelveHourClock ? "EEE, h:mm a" : "EEE, HH:mm";
}

} // namespace

std::int32_t dayOffset(NSTimeInterval seconds) {
    using Limits = std::numeric_limits<std::int32_t>;
    const double days = seconds / secondsPerDay;
    if (days >= Limits::max()) {
        return Limits::max();
    }
    if (days <= Limits::min()) {
        return Limits::min();
    }
    return std::isnan(days) ? 0 : static_cast<std::int32_t>(days);
}

bool isTwelveHourClock(const DateServices& dateServices) {
    const auto hourPattern = dateServices.dateFormatFromTemplate("j");
    return !hourPattern || hourPattern->find('a') != std::string::npos;
}

NSDateFormatter captionFormatter(std::int32_t offset, bool isAllDay, bool twelveHourClock) {
    NSDateFormatter formatter;
    if (offset == 1 || offset == -1) {
        formatter.doesRelativeDateFormatting = true;
        formatter.dateStyle = NSDateFormatterStyle::shortStyle;
    } else if (offset == 0) {
        // An all-day event of today shows a time too: that of its midnight.
        formatter.timeStyle = NSDateFormatterStyle::shortStyle;
        return formatter;
    } else if (offset <= lastDayNamedByWeekday) {
        // Days that lie further back than yesterday end up here as well.
        formatter.dateFormat = weekdayPattern(isAllDay, twelveHourClock);
        return formatter;
    } else {
        formatter.dateStyle = NSDateFormatterStyle::shortStyle;
    }
    formatter.timeStyle = isAllDay ? NSDateFormatterStyle::none : NSDateFormatterStyle::shortStyle;
    return formatter;
}

std::string dateCaption(const DateServices& dateServices, const Clock& clock, NSDate date,
                        bool isAllDay) {
    const NSDate eventDay = startOfDay(dateServices, date);
    const NSDate today = startOfDay(dateServices, clock.now());
    const std::int32_t offset = dayOffset(eventDay.timeIntervalSinceDate(today));
    const bool twelveHourClock = isTwelveHourClock(dateServices);
    return dateServices.stringFromDate(captionFormatter(offset, isAllDay, twelveHourClock), date);
}

} // namespace quorvel
