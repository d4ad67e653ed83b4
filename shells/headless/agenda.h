// The rows of the agenda as the widget shows them, for people and for scripts.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/calendar_store.h"
#include "platform/geometry.h"
#include "platform/ns_date.h"

namespace quorvel::icalendar {
class TimeZone;
} // namespace quorvel::freedesktop

namespace quorvel::headless {

class WidgetSession;

struct AgendaRow {
    std::string caption; // as its cell shows it
    std::optional<std::string> title;
    std::optional<std::string> location;
    platform::NSDate start;
    platform::NSDate end;
    bool allDay = false;
    std::optional<std::string> url;
    std::shared_ptr<const platform::EKCalendar> calendar; // may be null
};

struct Agenda {
    std::vector<AgendaRow> rows;
    bool showsLocations = false; // whether the widget's settings show them
};

// Loads the widget at that width (points) and reads its rows, scrolling page by page.
Agenda readAgenda(WidgetSession& session, platform::CGFloat width);

// A line for each row; where there is none, one line that reports it.
std::string agendaText(const Agenda& agenda);
// An array of {"caption", "title", "location", "start", "end", "allDay", "calendar", "url"}; the
// instants in RFC 3339 with the zone's offset.
std::string agendaDocument(const Agenda& agenda, const icalendar::TimeZone& zone);

} // namespace quorvel::headless
