#include "platform/memory/memory_date_services.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>

#include "base/integer_division.h"
#include "base/time_units.h"

namespace quorvel::platform::memory {

namespace {

// Years that std::chrono can count, with room for a month's overflow.
constexpr int yearLimit = 30000;
constexpr double instantLimit = 29000.0 * 365 * 86400;

struct LocalTime {
    int year;
    int month;
    int day;
    int weekday; // 1 is Sunday
    int hour;
    int minute;
    int second;
    std::int64_t dayNumber; // days since 1970
};

std::int64_t wholeSecondsSince1970(NSDate date) {
    const double seconds = std::floor(timeIntervalSince1970(date));
    return std::isnan(seconds)
               ? 0
               : static_cast<std::int64_t>(std::clamp(seconds, -instantLimit, instantLimit));
}

LocalTime localTime(std::int64_t localSeconds) {
    const std::int64_t dayNumber = floorDivision(localSeconds, secondsPerDay);
    const int ofDay = static_cast<int>(localSeconds - dayNumber * secondsPerDay);
    const std::chrono::sys_days day{std::chrono::days(dayNumber)};
    const std::chrono::year_month_day civil(day);
    return {static_cast<int>(civil.year()),
            static_cast<int>(static_cast<unsigned>(civil.month())),
            static_cast<int>(static_cast<unsigned>(civil.day())),
            static_cast<int>(std::chrono::weekday(day).c_encoding()) + 1,
            ofDay / 3600,
            ofDay / 60 % 60,
            ofDay % 60,
            dayNumber};
}

std::int64_t localSeconds(const NSDateComponents& components) {
    const std::int64_t months = static_cast<std::int64_t>(components.month.value_or(1)) - 1;
    const std::int64_t monthYears = floorDivision(months, 12);
    const std::int64_t year =
        std::clamp<std::int64_t>(components.year.value_or(1) + monthYears, -yearLimit, yearLimit);
    const std::chrono::year_month_day first(
        std::chrono::year(static_cast<int>(year)),
        std::chrono::month(static_cast<unsigned>(months - monthYears * 12 + 1)),
        std::chrono::day(1));
    const std::int64_t dayNumber =
        std::chrono::sys_days(first).time_since_epoch().count() + components.day.value_or(1) - 1;
    return dayNumber * secondsPerDay + std::int64_t{components.hour.value_or(0)} * 3600 +
           std::int64_t{components.minute.value_or(0)} * 60 + components.second.value_or(0);
}

NSDate dateFromUnix(std::int64_t seconds) {
    return dateWithTimeIntervalSince1970(static_cast<NSTimeInterval>(seconds));
}

std::string padded(int value, std::size_t width) {
    std::string digits = std::to_string(value);
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

constexpr std::array<std::string_view, 7> weekdayNames = {
    "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
constexpr std::array<std::string_view, 12> monthNames = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

std::string name(std::string_view full, bool whole) {
    return std::string(whole ? full : full.substr(0, 3));
}

// One run of the same letter in a pattern.
std::string fieldText(char letter, std::size_t length, const LocalTime& time) {
    switch (letter) {
    case 'y':
        return length == 2 ? padded(time.year % 100, 2) : padded(time.year, length);
    case 'M':
        return length < 3
                   ? padded(time.month, length)
                   : name(monthNames.at(static_cast<std::size_t>(time.month) - 1), length > 3);
    case 'd':
        return padded(time.day, length);
    case 'E':
        return name(weekdayNames.at(static_cast<std::size_t>(time.weekday) - 1), length > 3);
    case 'H':
        return padded(time.hour, length);
    case 'h':
        return padded(time.hour % 12 == 0 ? 12 : time.hour % 12, length);
    case 'm':
        return padded(time.minute, length);
    case 's':
        return padded(time.second, length);
    case 'a':
        return time.hour < 12 ? "AM" : "PM";
    default:
        return std::string(length, letter);
    }
}

// The text in quotes that starts at `position`, which moves behind it. Two quotes are one.
std::string quotedText(std::string_view pattern, std::size_t& position) {
    ++position;
    if (position < pattern.size() && pattern[position] == '\'') {
        ++position;
        return "'";
    }
    std::string text;
    for (; position < pattern.size(); ++position) {
        if (pattern[position] == '\'') {
            ++position;
            if (position >= pattern.size() || pattern[position] != '\'') {
                break;
            }
        }
        text += pattern[position];
    }
    return text;
}

std::optional<std::string> relativeWord(std::int64_t daysFromToday) {
    switch (daysFromToday) {
    case -1:
        return "Yesterday";
    case 0:
        return "Today";
    case 1:
        return "Tomorrow";
    default:
        return std::nullopt;
    }
}

} // namespace

int MemoryDateServices::offsetAt(NSDate date) const {
    int offset = standardOffset;
    for (const auto& change : changes) {
        if (date < change.instant) {
            break;
        }
        offset = change.secondsFromUtc;
    }
    return offset;
}

NSDateComponents MemoryDateServices::components(unsigned wanted, NSDate date) const {
    units.push_back(wanted);
    const LocalTime time = localTime(wholeSecondsSince1970(date) + offsetAt(date));
    const auto ifRequested = [wanted](NSCalendarUnit unit, int value) {
        return (wanted & unit) != 0 ? std::optional<int>(value) : std::nullopt;
    };
    NSDateComponents result;
    result.year = ifRequested(NSYearCalendarUnit, time.year);
    result.month = ifRequested(NSMonthCalendarUnit, time.month);
    result.day = ifRequested(NSDayCalendarUnit, time.day);
    result.weekday = ifRequested(NSWeekdayCalendarUnit, time.weekday);
    result.hour = ifRequested(NSHourCalendarUnit, time.hour);
    result.minute = ifRequested(NSMinuteCalendarUnit, time.minute);
    result.second = ifRequested(NSSecondCalendarUnit, time.second);
    return result;
}

// The later of two instants with that local time comes from the later of two offsets, so the last
// one that fits wins; in a gap the offset before it moves the time forward.
NSDate MemoryDateServices::dateFromComponents(const NSDateComponents& components) const {
    const std::int64_t local = localSeconds(components);
    int before = standardOffset;
    NSDate found = dateFromUnix(local - before);
    for (const auto& change : changes) {
        const NSDate withOffsetBefore = dateFromUnix(local - before);
        const NSDate withOffsetAfter = dateFromUnix(local - change.secondsFromUtc);
        if (withOffsetAfter >= change.instant) {
            found = withOffsetAfter;
        } else if (withOffsetBefore >= change.instant) {
            return withOffsetBefore;
        } else {
            break;
        }
        before = change.secondsFromUtc;
    }
    return found;
}

std::optional<std::string>
MemoryDateServices::dateFormatFromTemplate(std::string_view skeleton) const {
    skeletons.emplace_back(skeleton);
    return skeleton == "j" ? hourPattern : std::nullopt;
}

std::string MemoryDateServices::formatted(std::string_view pattern, NSDate date) const {
    const LocalTime time = localTime(wholeSecondsSince1970(date) + offsetAt(date));
    std::string text;
    for (std::size_t position = 0; position < pattern.size();) {
        const char letter = pattern[position];
        if (letter == '\'') {
            text += quotedText(pattern, position);
            continue;
        }
        const std::size_t end =
            std::min(pattern.find_first_not_of(letter, position), pattern.size());
        text += fieldText(letter, end - position, time);
        position = end;
    }
    return text;
}

std::string MemoryDateServices::shortDate(const NSDateFormatter& formatter, NSDate date) const {
    if (formatter.doesRelativeDateFormatting) {
        const auto dayNumber = [this](NSDate one) {
            return localTime(wholeSecondsSince1970(one) + offsetAt(one)).dayNumber;
        };
        if (auto word = relativeWord(dayNumber(date) - dayNumber(m_clock.now()))) {
            return *word;
        }
    }
    return formatted("M/d/yy", date);
}

std::string MemoryDateServices::stringFromDate(const NSDateFormatter& formatter,
                                               NSDate date) const {
    formatters.push_back(formatter);
    if (formatter.dateFormat) {
        return formatted(*formatter.dateFormat, date);
    }
    const bool hasDate = formatter.dateStyle != NSDateFormatterStyle::none;
    const bool hasTime = formatter.timeStyle != NSDateFormatterStyle::none;
    std::string text;
    if (hasDate) {
        text = shortDate(formatter, date);
    }
    if (hasDate && hasTime) {
        text += ", ";
    }
    if (hasTime) {
        const bool twelveHours = hourPattern && hourPattern->find('a') != std::string::npos;
        text += formatted(twelveHours ? "h:mm a" : "HH:mm", date);
    }
    return text;
}

} // namespace quorvel::platform::memory
