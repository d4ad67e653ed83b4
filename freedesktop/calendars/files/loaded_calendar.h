// A calendar put together from its parsed files, with what a search needs to know about its events.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "icalendar/expansion/event_set.h"
#include "icalendar/expansion/loaded_file.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop::calendars {

// Belongs to the thread that searches it: each file has a cache of what its expansion worked out.
struct LoadedCalendar {
    std::shared_ptr<const platform::EKCalendar> calendar; // never null
    std::string store;         // what the user calls the place of its events, such as a path
    bool isDeselected = false; // the program that has the calendar does not show it
    std::vector<std::shared_ptr<icalendar::LoadedFile>> files;
    std::vector<icalendar::EventEntry> entries; // one for each event
    icalendar::Overrides overrides;

    // At least one file holds a calendar. A folder without files is an empty calendar.
    bool couldBeRead() const;
};

struct CalendarNames {
    std::string identifier;
    std::optional<std::string> title;
    std::optional<std::string> colour; // as calendarColour() reads it
    std::string fallbackTitle;         // where there is no title
};

// Letters and digits of the name, and a hash of the path: the same in every process, and fit for a
// link.
std::string calendarIdentifier(std::string_view name, std::string_view realPath);

std::shared_ptr<const platform::EKCalendar> namedCalendar(const CalendarNames& names);

std::shared_ptr<LoadedCalendar>
makeLoadedCalendar(std::shared_ptr<const platform::EKCalendar> calendar,
                   std::vector<std::shared_ptr<icalendar::LoadedFile>> files);

// Finds out what a search needs to know about the events of calendars that have nothing but their
// names and files; with a second thread where there are many events.
void collectEvents(const std::vector<std::shared_ptr<LoadedCalendar>>& calendars);

} // namespace quorvel::freedesktop::calendars
