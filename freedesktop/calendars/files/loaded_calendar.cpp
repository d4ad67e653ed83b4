#include "freedesktop/calendars/files/loaded_calendar.h"

#include <algorithm>
#include <utility>

#include "base/stable_hash.h"
#include "freedesktop/calendars/files/calendar_colours.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t longestSlug = 40; // characters

// Each run of other characters than letters, digits, "_" and "." becomes one hyphen.
std::string slugOf(std::string_view name) {
    std::string slug;
    for (const char c : name.substr(0, std::min(name.size(), std::size_t{256}))) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                           (c >= '0' && c <= '9') || c == '_' || c == '.';
        if (plain) {
            slug += c;
        } else if (!slug.empty() && slug.back() != '-') {
            slug += '-';
        }
        if (slug.size() == longestSlug) {
            break;
        }
    }
    while (!slug.empty() && slug.back() == '-') {
        slug.pop_back();
    }
    return slug.empty() ? "calendar" : slug;
}

} // namespace

std::string calendarIdentifier(std::string_view name, std::string_view realPath) {
    return slugOf(name) + "-" + hexDigits(stableHash(realPath), 8);
}

bool LoadedCalendar::couldBeRead() const {
    return files.empty() || std::any_of(files.begin(), files.end(),
                                        [](const auto& file) { return file->ics.isCalendar; });
}

std::shared_ptr<const platform::EKCalendar> namedCalendar(const CalendarNames& names) {
    auto calendar = std::make_shared<platform::EKCalendar>();
    calendar->calendarIdentifier = names.identifier;
    const bool hasTitle = names.title && !names.title->empty();
    calendar->title = hasTitle ? *names.title : icalendar::validUtf8(names.fallbackTitle);
    const auto colour = names.colour ? calendarColour(*names.colour) : std::nullopt;
    calendar->CGColor = colour ? *colour : stableColour(names.identifier);
    return calendar;
}

std::shared_ptr<LoadedCalendar>
makeLoadedCalendar(std::shared_ptr<const platform::EKCalendar> calendar,
                   std::vector<std::shared_ptr<icalendar::LoadedFile>> files) {
    auto result = std::make_shared<LoadedCalendar>();
    result->calendar = std::move(calendar);
    result->files = std::move(files);
    icalendar::EventSet set = icalendar::collectEvents(result->files);
    result->entries = std::move(set.entries);
    result->overrides = std::move(set.overrides);
    return result;
}

} // namespace quorvel::freedesktop::calendars
