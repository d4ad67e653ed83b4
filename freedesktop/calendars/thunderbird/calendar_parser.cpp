#include "freedesktop/calendars/thunderbird/calendar_parser.h"

#include "freedesktop/calendars/thunderbird/event_text.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

constexpr std::size_t pieceSize = std::size_t{256} << 10U; // bytes

void removeLines(icalendar::IcsFile& file) {
    for (icalendar::IcsEvent& event : file.events) {
        event.line = 0;
    }
    for (icalendar::RuleLine& rule : file.rules) {
        rule.line = 0;
    }
    for (icalendar::FileProblem& problem : file.problems) {
        problem.line = 0;
    }
}

} // namespace

CalendarParser::CalendarParser(const std::function<bool(std::string_view)>& zoneIsKnown,
                               std::size_t mostBytes)
    : m_parser(zoneIsKnown, mostBytes) {
    append("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n");
}

void CalendarParser::add(const EventRow& row) {
    const std::string text = eventText(row, m_zones);
    append(m_zones.takeDefinitions());
    append(text);
}

icalendar::IcsFile CalendarParser::finish() {
    append("END:VCALENDAR\r\n");
    icalendar::IcsFile file = m_parser.finish(m_text);
    removeLines(file);
    return file;
}

void CalendarParser::append(std::string_view text) {
    m_text += text;
    if (m_text.size() >= pieceSize) {
        m_text.erase(0, m_parser.read(m_text));
    }
}

} // namespace quorvel::freedesktop::thunderbird
