// A calendar put together from its files.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "icalendar/expansion/occurrences.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop::calendars {

struct LoadedCalendar {
    std::shared_ptr<const platform::EKCalendar> calendar;
    std::vector<std::shared_ptr<icalendar::LoadedFile>> files;
    std::vector<icalendar::EventEntry> entries; // all events, to be passed over quickly
    icalendar::Overrides overrides;

    // A folder of events may be empty; of files that are there, one at least must be a calendar's.
    bool couldBeRead() const;
};

// What a calendar is called, when its own files do not say it.
struct CalendarNames {
    std::string identifier;
    std::optional<std::string> title;
    std::optional<std::string> colour;
    std::string fallbackTitle;
};

// Stable, and plain: from what the calendar is called and where it lies.
std::string calendarIdentifier(std::string_view name, std::string_view place);

std::shared_ptr<const platform::EKCalendar> namedCalendar(const CalendarNames& names);

std::shared_ptr<LoadedCalendar>
makeLoadedCalendar(std::shared_ptr<const platform::EKCalendar> calendar,
                   std::vector<std::shared_ptr<icalendar::LoadedFile>> files);

} // namespace quorvel::freedesktop::calendars
