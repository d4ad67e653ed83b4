#include "agenda/days.h"

#include "platform/date_services.h"

namespace quorvel {

using namespace platform;

namespace {

void setTime(NSDateComponents& components, int hour, int minute, int second) {
    components.hour = hour;
    components.minute = minute;
    components.second = second;
}

} // namespace

NSDate startOfDay(const DateServices& dateServices, NSDate date) {
    NSDateComponents components = dateServices.components(
        NSYearCalendarUnit | NSMonthCalendarUnit | NSDayCalendarUnit | NSWeekdayCalendarUnit, date);
    setTime(components, 0, 0, 0);
    return dateServices.dateFromComponents(components);
}

NSDate lastSecondOfDay(const DateServices& dateServices, NSDate date) {
    NSDateComponents components = dateServices.components(
        NSYearCalendarUnit | NSMonthCalendarUnit | NSDayCalendarUnit | NSHourCalendarUnit |
            NSMinuteCalendarUnit | NSSecondCalendarUnit,
        date);
    setTime(components, 23, 59, 59);
    return dateServices.dateFromComponents(components);
}

} // namespace quorvel
