#include "freedesktop/calendars/thunderbird/event_zones.h"

#include "freedesktop/dates/time_zone.h"
#include "icalendar/expansion/defined_time_zone.h"
#include "icalendar/model/ics_file_parser.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

using Kind = EventZone::Kind;

constexpr std::string_view definitionBegin = "BEGIN:VTIMEZONE";
constexpr std::string_view definitionEnd = "END:VTIMEZONE";
constexpr std::size_t longestDefinition = std::size_t{64} << 10U; // bytes
constexpr std::size_t mostDefinitions = 100;
constexpr std::size_t mostZones = 10000; // different ones that are remembered

// The name can stand between quotation marks.
bool isQuotable(std::string_view name) {
    for (const char character : name) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x20 || code == 0x7F || character == '"') {
            return false;
        }
    }
    return !name.empty() && name.size() < 200;
}

bool isNeverKnown(std::string_view) {
    return false;
}

} // namespace

const EventZone& EventZones::zoneOf(const std::string& stored) {
    const auto known = m_zones.find(stored);
    if (known != m_zones.end()) {
        return known->second;
    }
    if (m_zones.size() >= mostZones) {
        m_zones.clear();
    }
    return m_zones.emplace(stored, find(stored)).first->second;
}

std::string EventZones::takeDefinitions() {
    return std::exchange(m_definitions, {});
}

EventZone EventZones::find(std::string_view stored) {
    if (stored.starts_with(definitionBegin)) {
        return define(stored);
    }
    if (stored == "floating" || stored.empty()) {
        return {Kind::floating, {}, nullptr};
    }
    if (stored == "UTC" || !isQuotable(stored)) {
        return {};
    }
    auto zone = namedTimeZone(stored);
    return zone ? EventZone{Kind::named, std::string(stored), std::move(zone)} : EventZone();
}

EventZone EventZones::define(std::string_view definition) {
    const std::size_t end = definition.find(definitionEnd);
    if (end == std::string_view::npos || end > longestDefinition ||
        m_defined.size() >= mostDefinitions) {
        return {};
    }
    const std::string text(definition.substr(0, end + definitionEnd.size()));
    const icalendar::IcsFile file = icalendar::parseIcsFile(
        "BEGIN:VCALENDAR\r\n" + text + "\r\nEND:VCALENDAR\r\n", isNeverKnown);
    if (file.zones.empty() || !isQuotable(file.zones.front().name.name)) {
        return {};
    }
    const std::string& name = file.zones.front().name.name;
    if (isExactTimeZoneName(name)) {
        return find(name);
    }
    // A second definition of a name could not be referred to.
    auto zone = icalendar::makeDefinedTimeZone(file.zones.front());
    if (!zone || !m_defined.insert(name).second) {
        return {};
    }
    m_definitions += text + "\r\n";
    return {Kind::named, name, std::move(zone)};
}

} // namespace quorvel::freedesktop::thunderbird
