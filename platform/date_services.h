// Calendar arithmetic and date formatting in the user's calendar, time zone and locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ns_date.h"

namespace quorvel::platform {

// Units of a date, to be or-ed together.
enum NSCalendarUnit : unsigned {
    NSYearCalendarUnit = 1U << 2U,
    NSMonthCalendarUnit = 1U << 3U,
    NSDayCalendarUnit = 1U << 4U,
    NSHourCalendarUnit = 1U << 5U,
    NSMinuteCalendarUnit = 1U << 6U,
    NSSecondCalendarUnit = 1U << 7U,
    NSWeekdayCalendarUnit = 1U << 9U,
};

// Fields that were not asked for are absent. Month and day count from 1, weekday 1 is Sunday.
struct NSDateComponents {
    std::optional<int> year;
    std::optional<int> month;
    std::optional<int> day;
    std::optional<int> weekday;
    std::optional<int> hour;
    std::optional<int> minute;
    std::optional<int> second;
};

enum class NSDateFormatterStyle { none = 0, shortStyle = 1 };

// What a formatter is set up with. A dateFormat (a pattern of Unicode date fields) overrides the
// styles and the relative words.
struct NSDateFormatter {
    bool doesRelativeDateFormatting = false;
    NSDateFormatterStyle dateStyle = NSDateFormatterStyle::none;
    NSDateFormatterStyle timeStyle = NSDateFormatterStyle::none;
    std::optional<std::string> dateFormat;
    bool operator==(const NSDateFormatter&) const = default;
};

class DateServices {
public:
    virtual ~DateServices() = default;

    // `units` is a sum of NSCalendarUnit values. No sub-second field is ever taken.
    virtual NSDateComponents components(unsigned units, NSDate date) const = 0;

    // Absent fields count as the first of their range; the weekday is ignored. A local time
    // that does not exist moves forward by the gap; one that comes twice is the second.
    virtual NSDate dateFromComponents(const NSDateComponents& components) const = 0;

    // The locale's preferred pattern for a skeleton ("j": the hour); absent where it has none.
    virtual std::optional<std::string> dateFormatFromTemplate(std::string_view skeleton) const = 0;

    // UTF-8. Relative words count from the host's clock.
    virtual std::string stringFromDate(const NSDateFormatter& formatter, NSDate date) const = 0;
};

} // namespace quorvel::platform
