#include "freedesktop/calendars/thunderbird/event_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "base/ascii_text.h"
#include "base/civil_calendar.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

using Kind = EventZone::Kind;

constexpr std::string_view lineEnd = "\r\n";
constexpr std::int64_t firstInstant = -62'135'596'800;      // the year 1
constexpr std::int64_t lastInstant = 253'402'300'799;       // the end of 9999
constexpr std::size_t longestText = std::size_t{16} << 10U; // bytes
constexpr std::size_t longestRules = std::size_t{1} << 20U; // bytes of one event
constexpr std::array<std::string_view, 4> ruleNames{"RRULE", "EXRULE", "RDATE", "EXDATE"};

bool isControl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7F;
}

// As a TEXT value, in one line. Other control characters become spaces.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char character : text.substr(0, longestText)) {
        if (character == '\n') {
            result += "\\n";
        } else if (character == '\\' || character == ';' || character == ',') {
            result += {'\\', character};
        } else if (character != '\r') {
            result += isControl(character) ? ' ' : character;
        }
    }
    return result;
}

std::string inOneLine(std::string_view text) {
    std::string result(text.substr(0, longestText));
    std::ranges::replace_if(result, isControl, ' ');
    return result;
}

std::string civilText(const CivilTime& time, bool isDate) {
    std::array<char, 80> text{};
    if (isDate) {
        std::snprintf(text.data(), text.size(), "%04d%02d%02d", time.year, time.month, time.day);
    } else {
        std::snprintf(text.data(), text.size(), "%04d%02d%02dT%02d%02d%02d", time.year, time.month,
                      time.day, time.hour, time.minute, time.second);
    }
    return text.data();
}

bool canBeWritten(const StoredTime& time) {
    return time.instant >= firstInstant && time.instant <= lastInstant;
}

// Empty where there is no such time, or none that can be written.
std::string timeLine(std::string_view name, const std::optional<StoredTime>& time, bool isDate,
                     EventZones& zones) {
    if (!time || !canBeWritten(*time)) {
        return {};
    }
    const EventZone& zone = zones.zoneOf(time->zone);
    const int offset = zone.kind == Kind::named ? zone.zone->offsetAt(time->instant) : 0;
    const std::string text = civilText(
        civilFromSeconds(std::clamp(time->instant + offset, firstInstant, lastInstant)), isDate);
    std::string line(name);
    if (isDate) {
        line += ";VALUE=DATE:" + text;
    } else if (zone.kind == Kind::named) {
        line += ";TZID=\"" + zone.name + "\":" + text;
    } else {
        line += ':' + text + (zone.kind == Kind::utc ? "Z" : "");
    }
    return line + std::string(lineEnd);
}

bool isRule(std::string_view line) {
    const std::string name = asciiUpperCase(line.substr(0, line.find_first_of(":;")));
    return std::ranges::find(ruleNames, name) != ruleNames.end();
}

// Only the lines of rules, and what continues them.
std::string ruleLines(std::string_view rules) {
    std::string lines;
    bool isWanted = false;
    rules = rules.substr(0, longestRules);
    while (!rules.empty()) {
        const std::size_t end = rules.find_first_of(lineEnd);
        const std::string_view line = rules.substr(0, end);
        rules.remove_prefix(end == std::string_view::npos ? rules.size() : end + 1);
        const bool continues = line.starts_with(' ') || line.starts_with('\t');
        if (!continues && !line.empty()) {
            isWanted = isRule(line);
        }
        if (isWanted && !line.empty()) {
            lines += std::string(line) + std::string(lineEnd);
        }
    }
    return lines;
}

std::string textLine(std::string_view name, std::string_view value) {
    return value.empty() ? std::string()
                         : std::string(name) + ':' + escaped(value) + std::string(lineEnd);
}

} // namespace

std::string eventText(const EventRow& row, EventZones& zones) {
    const std::string start = timeLine("DTSTART", row.start, row.isAllDay, zones);
    if (start.empty()) {
        return {};
    }
    std::string text = "BEGIN:VEVENT\r\nUID:" + inOneLine(row.id) + std::string(lineEnd) + start;
    text += timeLine("DTEND", row.end, row.isAllDay, zones);
    text += timeLine("RECURRENCE-ID", row.recurrenceId, row.isRecurrenceIdDate, zones);
    text += textLine("SUMMARY", row.title);
    text += textLine("LOCATION", row.location);
    text += textLine("STATUS", row.status);
    if (!row.recurrenceId) {
        text += ruleLines(row.rules);
    }
    return text + "END:VEVENT\r\n";
}

} // namespace quorvel::freedesktop::thunderbird
