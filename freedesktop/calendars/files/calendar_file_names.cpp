#include "freedesktop/calendars/files/calendar_file_names.h"

#include "icalendar/text/content_lines.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::string_view calendarSuffix = ".ics";

} // namespace

bool hasCalendarSuffix(std::string_view name) {
    return name.size() > calendarSuffix.size() &&
           icalendar::equalsIgnoringCase(name.substr(name.size() - calendarSuffix.size()), ".ICS");
}

bool isMetadataName(std::string_view name) {
    return name == "color" || name == "displayname";
}

std::string_view stemOf(std::string_view name) {
    return hasCalendarSuffix(name) ? name.substr(0, name.size() - calendarSuffix.size()) : name;
}

std::string_view lastComponent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos || path.size() == 1 ? path : path.substr(slash + 1);
}

bool nameMatchesUid(std::string_view stem, std::string_view uid) {
    constexpr std::size_t shortestPart = 8;
    if (stem == uid) {
        return true;
    }
    const bool isShorter = stem.size() < uid.size();
    const std::string_view part = isShorter ? stem : uid;
    const std::string_view whole = isShorter ? uid : stem;
    return part.size() >= shortestPart && whole.find(part) != std::string_view::npos;
}

} // namespace quorvel::freedesktop::calendars
