// The values of an iCalendar text (RFC 5545 3.3): times, durations, offsets, text.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/civil_calendar.h"

namespace quorvel::icalendar {

struct TimeValue {
    CivilTime civil; // midnight for a date
    bool isDate = false;
    bool isUtc = false;
};

// Absent where the text is not a date of the calendar or not a time of day. 24:00:00, which some
// programs write, is the next midnight.
std::optional<TimeValue> parseTime(std::string_view text);

// RFC 5545 3.3.6: days are nominal, to the same local time; seconds are exact.
struct Duration {
    std::int64_t days = 0;
    std::int64_t seconds = 0;
    bool operator==(const Duration&) const = default;

    static constexpr Duration absent() { return {std::numeric_limits<std::int64_t>::min(), 0}; }
};

std::optional<Duration> parseDuration(std::string_view text);

// Seconds east of UTC (RFC 5545 3.3.14), at most a day: "+0200", "-023000".
std::optional<int> parseUtcOffset(std::string_view text);

// An entry of a list of times (RFC 5545 3.8.5.2). A period has an end or a duration.
struct PeriodValue {
    TimeValue start;
    std::optional<TimeValue> end;
    std::optional<Duration> duration;
};

std::optional<PeriodValue> parsePeriodOrTime(std::string_view text);

// UNTIL of a recurrence rule; absent where it is missing or cannot be parsed.
std::optional<TimeValue> untilOf(std::string_view rule);

// The parts between commas.
std::vector<std::string_view> listParts(std::string_view text);

// Without the spaces and tabs at both ends. In line, as nearly all values and parts are short.
inline std::string_view trimmed(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// A TEXT value (RFC 5545 3.3.11) without its escapes, as UTF-8. Text with bytes beyond ASCII but no
// valid UTF-8 is taken for Latin-1; other invalid bytes, and NUL, become U+FFFD.
std::string parseText(std::string_view raw);
std::string validUtf8(std::string_view bytes);
std::string utf8FromLatin1(std::string_view bytes);

} // namespace quorvel::icalendar
