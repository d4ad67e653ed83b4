#include "freedesktop/calendars/files/loaded_calendar.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <utility>

#include "base/helper_thread.h"
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

// Going through the events takes longer than starting a second thread.
bool areWorthASecondThread(const std::vector<std::shared_ptr<LoadedCalendar>>& calendars) {
    constexpr std::size_t fewestEvents = 20'000;
    std::size_t events = 0;
    for (const auto& calendar : calendars) {
        for (const auto& file : calendar->files) {
            events += file->ics.events.size();
        }
    }
    return events > fewestEvents;
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

void collectEvents(const std::vector<std::shared_ptr<LoadedCalendar>>& calendars) {
    std::atomic<std::size_t> next = 0;
    const auto collectMany = [&] {
        for (std::size_t i = next++; i < calendars.size(); i = next++) {
            icalendar::EventSet set = icalendar::collectEvents(calendars[i]->files);
            calendars[i]->entries = std::move(set.entries);
            calendars[i]->overrides = std::move(set.overrides);
        }
    };
    HelperThread helper;
    if (calendars.size() > 1 && areWorthASecondThread(calendars)) {
        helper.start(collectMany);
    }
    collectMany();
    helper.join();
}

std::shared_ptr<LoadedCalendar>
makeLoadedCalendar(std::shared_ptr<const platform::EKCalendar> calendar,
                   std::vector<std::shared_ptr<icalendar::LoadedFile>> files) {
    auto result = std::make_shared<LoadedCalendar>();
    result->calendar = std::move(calendar);
    result->files = std::move(files);
    collectEvents({result});
    return result;
}

} // namespace quorvel::freedesktop::calendars
