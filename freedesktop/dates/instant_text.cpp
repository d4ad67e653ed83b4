#include "freedesktop/dates/instant_text.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "base/civil_calendar.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::size_t longestInstant = 64;

// Reads a text from its beginning; whoever asks for what is not there learns it.
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

    // Exactly `count` digits, not above `most`.
    bool number(std::size_t count, int most, int& value) {
        if (m_rest.size() < count) {
            return false;
        }
        int read = 0;
        for (const char c : m_rest.substr(0, count)) {
            if (!isDigit(c)) {
                return false;
            }
            read = read * 10 + (c - '0');
        }
        if (read > most) {
            return false;
        }
        m_rest.remove_prefix(count);
        value = read;
        return true;
    }

    bool fraction(double& value) {
        double weight = 0.1;
        value = 0;
        bool any = false;
        while (!m_rest.empty() && isDigit(m_rest.front())) {
            value += weight * (m_rest.front() - '0');
            weight /= 10;
            m_rest.remove_prefix(1);
            any = true;
        }
        return any;
    }

    char front() const { return m_rest.empty() ? '\0' : m_rest.front(); }

private:
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }

    std::string_view m_rest;
};

bool readDate(Reader& reader, CivilTime& time) {
    if (!reader.number(4, 9999, time.year) || !reader.skip('-') ||
        !reader.number(2, 12, time.month) || !reader.skip('-') || !reader.number(2, 31, time.day)) {
        return false;
    }
    const CivilDay day = civilDay(dayNumber(time.year, time.month, time.day));
    return time.year >= 1 && day == CivilDay{time.year, time.month, time.day};
}

// A leap second is read as the second after it.
bool readTime(Reader& reader, CivilTime& time, double& fraction) {
    if (!reader.number(2, 23, time.hour) || !reader.skip(':') ||
        !reader.number(2, 59, time.minute)) {
        return false;
    }
    if (!reader.skip(':')) {
        return true;
    }
    return reader.number(2, 60, time.second) &&
           (!reader.skipAny(".,") || reader.fraction(fraction));
}

// Seconds east of Greenwich.
bool readOffset(Reader& reader, int& offset) {
    if (reader.skipAny("zZ")) {
        offset = 0;
        return true;
    }
    const bool west = reader.front() == '-';
    int hours = 0;
    int minutes = 0;
    if (!reader.skipAny("+-") || !reader.number(2, 23, hours)) {
        return false;
    }
    if (!reader.atEnd()) {
        reader.skip(':');
        if (!reader.number(2, 59, minutes)) {
            return false;
        }
    }
    offset = (west ? -1 : 1) * (hours * 3600 + minutes * 60);
    return true;
}

} // namespace

std::optional<platform::NSDate> parseInstant(std::string_view text, const TimeZone& zone) {
    if (text.size() > longestInstant) {
        return std::nullopt;
    }
    Reader reader(text);
    CivilTime time;
    if (!readDate(reader, time)) {
        return std::nullopt;
    }
    if (reader.atEnd()) {
        return dateOf(zone, time);
    }
    double fraction = 0;
    if (!reader.skipAny("Tt ") || !readTime(reader, time, fraction)) {
        return std::nullopt;
    }
    if (reader.atEnd()) {
        return dateOf(zone, time).dateByAddingTimeInterval(fraction);
    }
    int offset = 0;
    if (!readOffset(reader, offset) || !reader.atEnd()) {
        return std::nullopt;
    }
    return dateOf(*utcTimeZone(), time).dateByAddingTimeInterval(fraction - offset);
}

// An offset of old local time has seconds, which the form has no place for: the wall time is
// then written for the whole minutes, so that the instant stays the same.
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
