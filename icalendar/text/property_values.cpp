#include "icalendar/text/property_values.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "base/ascii_text.h"
#include "base/time_units.h"
#include "base/utf8.h"
#include "icalendar/text/content_lines.h"

namespace quorvel::icalendar {
namespace {

constexpr int lastYear = 9999; // the four digits of a date
constexpr std::size_t mostDurationDigits = 9;

// Whether so many characters as the type has bytes are digits: the upper half of each is 3, and
// stays so when 6 is added to the lower one. Together, as nearly all values of a calendar are
// times.
template <typename Word>
bool areDigits(const char* characters) {
    constexpr auto ofEach = [](unsigned byte) {
        return static_cast<Word>(std::numeric_limits<Word>::max() / 0xFF * byte);
    };
    Word word = 0;
    std::memcpy(&word, characters, sizeof word);
    const auto moved = static_cast<Word>(word + ofEach(0x06));
    return (word & ofEach(0xF0)) == ofEach(0x30) && (moved & ofEach(0xF0)) == ofEach(0x30);
}

int twoDigits(const char* digits) {
    return (digits[0] - '0') * 10 + (digits[1] - '0');
}

// Of two digits at that place; -1 where there are none.
int number(std::string_view text, std::size_t at) {
    const bool isNumber =
        at + 2 <= text.size() && isAsciiDigit(text[at]) && isAsciiDigit(text[at + 1]);
    return isNumber ? twoDigits(text.data() + at) : -1;
}

bool isDay(int year, int month, int day) {
    return year >= 1 && month >= 1 && month <= 12 && day >= 1 && day <= daysInMonth(year, month);
}

// An undefined escape is left as it is: many programs do not escape a backslash.
std::string unescaped(std::string_view raw) {
    std::string result;
    result.reserve(raw.size());
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] != '\\' || i + 1 == raw.size()) {
            result += raw[i];
            continue;
        }
        const char next = raw[i + 1];
        if (next == 'n' || next == 'N') {
            result += '\n';
        } else if (next == '\\' || next == ';' || next == ',' || next == '"') {
            result += next;
        } else {
            result += '\\';
            continue;
        }
        ++i;
    }
    return result;
}

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// NUL is a character of UTF-8, but none that a text may hold.
bool isDamaged(const DecodedCharacter& next) {
    return next.character.value_or(0) == 0;
}

std::size_t asciiLength(std::string_view text) {
    const auto end = std::find_if(text.begin(), text.end(), [](char c) {
        return c == 0 || static_cast<unsigned char>(c) >= 0x80;
    });
    return static_cast<std::size_t>(end - text.begin());
}

// Some bytes beyond ASCII, none of which begins a character of UTF-8.
bool looksLikeLatin1(std::string_view bytes) {
    bool isAny = false;
    while (!bytes.empty()) {
        const DecodedCharacter next = decodeCharacter(bytes);
        const bool damaged = isDamaged(next);
        if (next.length > 1 || (damaged && static_cast<unsigned char>(bytes.front()) < 0xA0)) {
            return false;
        }
        isAny = isAny || damaged;
        bytes.remove_prefix(1);
    }
    return isAny;
}

// Of 24:00:00; false for a later time, and where that day has no next one.
bool makeNextMidnight(CivilTime& time) {
    const bool isMidnight = time.minute == 0 && time.second == 0;
    time = civilFromSeconds(civilSeconds(time));
    return isMidnight && time.year <= lastYear;
}

} // namespace

std::optional<TimeValue> parseTime(std::string_view text) {
    text = trimmed(text);
    const char* const at = text.data();
    if (text.size() < 8 || !areDigits<std::uint64_t>(at)) {
        return std::nullopt;
    }
    const int year = twoDigits(at) * 100 + twoDigits(at + 2);
    const int month = twoDigits(at + 4);
    const int day = twoDigits(at + 6);
    if (!isDay(year, month, day)) {
        return std::nullopt;
    }
    TimeValue result;
    result.civil = {year, month, day, 0, 0, 0};
    if (text.size() == 8) {
        result.isDate = true;
        return result;
    }
    const bool separated = text[8] == 'T' || text[8] == 't';
    if (!separated || text.size() < 15 || !areDigits<std::uint32_t>(at + 9) ||
        !areDigits<std::uint16_t>(at + 13)) {
        return std::nullopt;
    }
    const int hour = twoDigits(at + 9);
    const int minute = twoDigits(at + 11);
    const int second = twoDigits(at + 13);
    if (hour > 24 || minute > 59 || second > 60) {
        return std::nullopt;
    }
    result.civil.hour = hour;
    result.civil.minute = minute;
    result.civil.second = std::min(second, 59); // a leap second
    if (hour == 24 && !makeNextMidnight(result.civil)) {
        return std::nullopt;
    }
    if (text.size() == 16 && (text[15] == 'Z' || text[15] == 'z')) {
        result.isUtc = true;
        return result;
    }
    return text.size() == 15 ? std::optional(result) : std::nullopt;
}

std::optional<Duration> parseDuration(std::string_view text) {
    text = trimmed(text);
    std::int64_t sign = 1;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        sign = text.front() == '-' ? -1 : 1;
        text.remove_prefix(1);
    }
    if (text.size() < 2 || (text.front() != 'P' && text.front() != 'p')) {
        return std::nullopt;
    }
    text.remove_prefix(1);
    Duration result;
    bool inTime = false;
    bool hasPart = false;
    while (!text.empty()) {
        if (text.front() == 'T' || text.front() == 't') {
            if (inTime) {
                return std::nullopt;
            }
            inTime = true;
            text.remove_prefix(1);
            continue;
        }
        std::size_t digits = 0;
        std::int64_t amount = 0;
        while (digits < text.size() && isAsciiDigit(text[digits]) && digits <= mostDurationDigits) {
            amount = amount * 10 + (text[digits] - '0');
            ++digits;
        }
        if (digits == 0 || digits > mostDurationDigits || digits == text.size()) {
            return std::nullopt;
        }
        switch (text[digits]) {
        case 'W':
        case 'w':
            result.days += amount * 7;
            break;
        case 'D':
        case 'd':
            result.days += amount;
            break;
        case 'H':
        case 'h':
            result.seconds += amount * secondsPerHour;
            break;
        case 'M':
        case 'm':
            result.seconds += amount * secondsPerMinute;
            break;
        case 'S':
        case 's':
            result.seconds += amount;
            break;
        default:
            return std::nullopt;
        }
        hasPart = true;
        text.remove_prefix(digits + 1);
    }
    if (!hasPart) {
        return std::nullopt;
    }
    result.days *= sign;
    result.seconds *= sign;
    return result;
}

std::optional<int> parseUtcOffset(std::string_view text) {
    text = trimmed(text);
    if (text.size() != 5 && text.size() != 7) {
        return std::nullopt;
    }
    const int hours = number(text, 1);
    const int minutes = number(text, 3);
    const int seconds = text.size() == 7 ? number(text, 5) : 0;
    if ((text[0] != '+' && text[0] != '-') || hours < 0 || minutes < 0 || seconds < 0) {
        return std::nullopt;
    }
    const int offset = hours * 3600 + minutes * 60 + seconds;
    if (offset > secondsPerDay) {
        return std::nullopt;
    }
    return text[0] == '-' ? -offset : offset;
}

std::optional<PeriodValue> parsePeriodOrTime(std::string_view text) {
    const std::size_t slash = text.find('/');
    const auto start = parseTime(text.substr(0, slash));
    if (!start) {
        return std::nullopt;
    }
    PeriodValue result;
    result.start = *start;
    if (slash == std::string_view::npos) {
        return result;
    }
    const std::string_view rest = trimmed(text.substr(slash + 1));
    result.end = parseTime(rest);
    if (!result.end) {
        result.duration = parseDuration(rest);
        if (!result.duration) {
            return std::nullopt;
        }
    }
    return result;
}

std::optional<TimeValue> untilOf(std::string_view rule) {
    constexpr std::string_view key = "UNTIL=";
    while (!rule.empty()) {
        const std::size_t end = rule.find(';');
        const std::string_view part = trimmed(rule.substr(0, end));
        if (equalsIgnoringCase(part.substr(0, key.size()), key)) {
            return parseTime(part.substr(key.size()));
        }
        rule.remove_prefix(end == std::string_view::npos ? rule.size() : end + 1);
    }
    return std::nullopt;
}

std::vector<std::string_view> listParts(std::string_view text) {
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t comma = text.find(',');
        parts.push_back(text.substr(0, comma));
        if (comma == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(comma + 1);
    }
}

std::string utf8FromLatin1(std::string_view bytes) {
    std::string result;
    for (const char c : bytes) {
        appendCharacter(result, static_cast<unsigned char>(c));
    }
    return result;
}

std::string validUtf8(std::string_view bytes) {
    std::string result;
    result.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t plain = asciiLength(bytes);
        result += bytes.substr(0, plain);
        bytes.remove_prefix(plain);
        if (bytes.empty()) {
            break;
        }
        const DecodedCharacter next = decodeCharacter(bytes);
        if (isDamaged(next)) {
            appendCharacter(result, replacementCharacter);
        } else {
            result += bytes.substr(0, next.length);
        }
        bytes.remove_prefix(next.length);
    }
    return result;
}

std::string parseText(std::string_view raw) {
    std::string text = raw.find('\\') == std::string_view::npos ? std::string(raw) : unescaped(raw);
    if (isAscii(text) && text.find('\0') == std::string::npos) {
        return text;
    }
    return looksLikeLatin1(text) ? utf8FromLatin1(text) : validUtf8(text);
}

} // namespace quorvel::icalendar
