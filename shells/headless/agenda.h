// The rows of the agenda, as text and as JSON.
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
} // namespace quorvel::icalendar

namespace quorvel::headless {

class WidgetSession;

struct AgendaRow {
    std::string caption; // the text of the date in its cell
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
    bool showsLocations = false; // according to the widget's settings
};

// Loads the widget at that width (points) and scrolls through it page by page, as cells exist for
// visible rows only.
Agenda readAgenda(WidgetSession& session, platform::CGFloat width);

// One line for each row; "No events." without rows.
std::string agendaText(const Agenda& agenda);
// A JSON array of {"caption", "title", "location", "start", "end", "allDay", "calendar", "url"}.
// The times are in RFC 3339 with the zone's offset.
std::string agendaDocument(const Agenda& agenda, const icalendar::TimeZone& zone);

} // namespace quorvel::headless
