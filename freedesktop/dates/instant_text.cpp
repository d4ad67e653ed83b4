#include "freedesktop/dates/instant_text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "base/ascii_text.h"
#include "base/civil_calendar.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::size_t longestInstant = 64;

// Consumes a text from its start.
class Reader {
public:
    explicit Reader(std::string_view text)
        : m_rest(text) {}

    bool atEnd() const { return m_rest.empty(); }

    bool skip(char c) { return skipAny(std::string_view(&c, 1)); }

    bool skipAny(std::string_view choices) {
        if (m_rest.empty() || choices.find(m_rest.front()) == std::string_view::npos) {
            return false;
        }
        m_rest.remove_prefix(1);
        return true;
    }

    // Exactly `count` digits that make a number of at most `most`.
    std::optional<int> number(std::size_t count, int most) {
        const std::string_view digits = m_rest.substr(0, count);
        if (digits.size() < count || !std::all_of(digits.begin(), digits.end(), isAsciiDigit)) {
            return std::nullopt;
        }
        int value = 0;
        for (const char digit : digits) {
            value = value * 10 + (digit - '0');
        }
        if (value > most) {
            return std::nullopt;
        }
        m_rest.remove_prefix(count);
        return value;
    }

    std::optional<double> fraction() {
        double weight = 0.1;
        std::optional<double> value;
        while (!m_rest.empty() && isAsciiDigit(m_rest.front())) {
            value = value.value_or(0) + weight * (m_rest.front() - '0');
            weight /= 10;
            m_rest.remove_prefix(1);
        }
        return value;
    }

    char front() const { return m_rest.empty() ? '\0' : m_rest.front(); }

private:
    std::string_view m_rest;
};

// The local midnight of the date.
std::optional<CivilTime> readDate(Reader& reader) {
    const auto year = reader.number(4, 9999);
    const auto month = year && reader.skip('-') ? reader.number(2, 12) : std::nullopt;
    const auto day = month && reader.skip('-') ? reader.number(2, 31) : std::nullopt;
    if (!day || *year < 1 ||
        civilDay(dayNumber(*year, *month, *day)) != CivilDay{*year, *month, *day}) {
        return std::nullopt;
    }
    return CivilTime{*year, *month, *day};
}

struct TimeOfDay {
    int hour = 0;
    int minute = 0;
    int second = 0; // 60: a leap second
    double fraction = 0;
};

std::optional<TimeOfDay> readTime(Reader& reader) {
    const auto hour = reader.number(2, 23);
    const auto minute = hour && reader.skip(':') ? reader.number(2, 59) : std::nullopt;
    if (!minute) {
        return std::nullopt;
    }
    if (!reader.skip(':')) {
        return TimeOfDay{*hour, *minute};
    }
    const auto second = reader.number(2, 60);
    const std::optional<double> fraction = second && reader.skipAny(".,") ? reader.fraction() : 0;
    if (!second || !fraction) {
        return std::nullopt;
    }
    return TimeOfDay{*hour, *minute, *second, *fraction};
}

// Seconds east of UTC.
std::optional<int> readOffset(Reader& reader) {
    if (reader.skipAny("zZ")) {
        return 0;
    }
    const int sign = reader.front() == '-' ? -1 : 1;
    const auto hours = reader.skipAny("+-") ? reader.number(2, 23) : std::nullopt;
    if (!hours || reader.atEnd()) {
        return hours ? std::optional(sign * *hours * 3600) : std::nullopt;
    }
    reader.skip(':');
    const auto minutes = reader.number(2, 59);
    return minutes ? std::optional(sign * (*hours * 3600 + *minutes * 60)) : std::nullopt;
}

} // namespace

std::optional<platform::NSDate> parseInstant(std::string_view text, const TimeZone& zone) {
    if (text.size() > longestInstant) {
        return std::nullopt;
    }
    Reader reader(text);
    auto time = readDate(reader);
    if (!time) {
        return std::nullopt;
    }
    if (reader.atEnd()) {
        return dateOf(zone, *time);
    }
    const auto timeOfDay = reader.skipAny("Tt ") ? readTime(reader) : std::nullopt;
    if (!timeOfDay) {
        return std::nullopt;
    }
    time->hour = timeOfDay->hour;
    time->minute = timeOfDay->minute;
    time->second = timeOfDay->second;
    if (reader.atEnd()) {
        return dateOf(zone, *time).dateByAddingTimeInterval(timeOfDay->fraction);
    }
    const auto offset = readOffset(reader);
    if (!offset || !reader.atEnd()) {
        return std::nullopt;
    }
    return dateOf(*utcTimeZone(), *time).dateByAddingTimeInterval(timeOfDay->fraction - *offset);
}

// The format has no seconds in an offset, but old local times do. The local time is then written
// for the offset in whole minutes, so that the instant is correct.
std::string rfc3339(platform::NSDate date, const TimeZone& zone) {
    const int offset = offsetAt(zone, date) / 60 * 60;
    const CivilTime time =
        localTime(*utcTimeZone(), date.dateByAddingTimeInterval(static_cast<double>(offset)));
    const int minutes = std::abs(offset) / 60;
    char text[80];
    std::snprintf(text, sizeof text, "%s%04d-%02d-%02dT%02d:%02d:%02d%c%02d:%02d",
                  time.year < 0 ? "-" : "", std::abs(time.year), time.month, time.day, time.hour,
                  time.minute, time.second, offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
    return text;
}

} // namespace quorvel::freedesktop
