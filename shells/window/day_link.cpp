#include "shells/window/day_link.h"

#include <string>

#include "platform/date_services.h"

namespace quorvel::window {

std::optional<platform::NSURL> dayLink(const platform::DateServices& dates, platform::NSDate date) {
    const platform::NSDateComponents day = dates.components(
        platform::NSYearCalendarUnit | platform::NSMonthCalendarUnit | platform::NSDayCalendarUnit,
        date);
    if (!day.year || !day.month || !day.day) {
        return std::nullopt;
    }
    return platform::NSURL::URLWithString("fantastical2://show?date=" + std::to_string(*day.year) +
                                          '-' + std::to_string(*day.month) + '-' +
                                          std::to_string(*day.day));
}

} // namespace quorvel::window
