#include "shells/widget/notices.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/time_units.h"
#include "freedesktop/language/messages.h"
#include "platform/date_services.h"
#include "shells/widget/hosted_widget.h"
#include "shells/widget/value_of.h"

namespace quorvel::shells {

using freedesktop::CalendarProblem;
using freedesktop::translated;
using freedesktop::translatedPlural;
using platform::DateServices;
using platform::NSDate;
using platform::NSDateFormatter;

namespace {

constexpr std::int64_t lastDayNamedByWeekday = 6;
constexpr std::int64_t daysOfAYear = 365;
constexpr std::int64_t mostDays = 4 * 366; // the calendar store searches no more than four years

// Noon is on the same day on both sides of every clock change.
NSDate noonOf(const DateServices& dateServices, NSDate date) {
    using namespace platform;
    auto components =
        dateServices.components(NSYearCalendarUnit | NSMonthCalendarUnit | NSDayCalendarUnit, date);
    components.hour = 12;
    return dateServices.dateFromComponents(components);
}

NSDateFormatter dayFormatter(const DateServices& dateServices, std::int64_t daysAhead) {
    NSDateFormatter formatter;
    if (daysAhead <= lastDayNamedByWeekday) {
        formatter.dateFormat = "EEEE";
    } else {
        formatter.dateStyle = platform::NSDateFormatterStyle::shortStyle;
        formatter.dateFormat =
            dateServices.dateFormatFromTemplate(daysAhead < daysOfAYear ? "MMMMd" : "yMMMMd");
    }
    return formatter;
}

// Without the subject, which the line above names.
std::string reasonOf(const CalendarProblem& problem) {
    constexpr std::string_view subject = "it ";
    const std::string text = translated(problem.what);
    std::string_view what = text;
    if (what.starts_with(subject)) {
        what.remove_prefix(subject.size());
    }
    return std::string(what);
}

} // namespace

std::string nothingPlannedText(const DateServices& dateServices, NSDate now,
                               std::int64_t daysToDisplay) {
    if (daysToDisplay < 0) {
        return translated("Nothing planned");
    }
    if (daysToDisplay == 0) {
        return translated("Nothing today");
    }
    const std::int64_t days = std::min(daysToDisplay, mostDays);
    const NSDate lastDay = noonOf(dateServices, now)
                               .dateByAddingTimeInterval(static_cast<double>(days) * secondsPerDay);
    // Translators: {1} is a weekday, or a date such as "March 12".
    return filled(translated("Nothing until {1}"),
                  {dateServices.stringFromDate(dayFormatter(dateServices, days), lastDay)});
}

std::string noCalendarsText(const CalendarState& calendars) {
    return calendars.unreadable.empty() ? translated("There are no calendars yet")
                                        : translated("The calendars cannot be read");
}

std::optional<ProblemNotice> unreadableNotice(const std::vector<CalendarProblem>& unreadable) {
    if (unreadable.empty()) {
        return std::nullopt;
    }
    std::string name = unreadable.front().file;
    if (unreadable.size() > 1) {
        const std::size_t others = unreadable.size() - 1;
        // Translators: {1} is a file, {2} how many others there are.
        name = filled(translatedPlural("{1} and {2} more", "{1} and {2} more", others),
                      {name, std::to_string(others)});
    }
    return ProblemNotice{std::move(name), reasonOf(unreadable.front())};
}

std::string textOf(const Notices& notices) {
    std::string text = notices.line.value_or("");
    if (notices.problem) {
        text += (text.empty() ? "" : ". ") + notices.problem->name + ": " + notices.problem->reason;
    }
    return text;
}

Notices noticesOf(HostedWidget& widget, const CalendarState& calendars,
                  const DateServices& dateServices, NSDate now) {
    Notices notices;
    notices.problem = unreadableNotice(calendars.unreadable);
    if (!calendars.hasReadable) {
        notices.line = noCalendarsText(calendars);
    } else if (!calendars.isLate && widget.table() != nullptr && widget.items().empty()) {
        const auto days = valueOf<std::int64_t>(widget.processWideValues(), "daysToDisplay");
        notices.line = nothingPlannedText(dateServices, now, days.value_or(0));
    }
    return notices;
}

} // namespace quorvel::shells
