#include "shells/headless/agenda.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "freedesktop/dates/instant_text.h"
#include "freedesktop/language/messages.h"
#include "platform/key_value_coding.h"
#include "platform/ui/ui_label.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_view.h"
#include "shells/headless/json.h"
#include "shells/headless/terminal_text.h"
#include "shells/headless/widget_session.h"
#include "shells/widget/value_of.h"

namespace quorvel::headless {

using platform::CGFloat;
using platform::CGRect;
using platform::EKEvent;
using platform::KeyValueCoding;
using platform::NSDate;
using platform::NSIndexPath;
using platform::NSURL;
using platform::UILabel;
using platform::UITableView;
using platform::UITableViewCell;
using platform::UIView;
using shells::HostedWidget;
using shells::valueOf;

namespace {

// Points of the list that have cells at the same time: few pages, but little memory.
constexpr CGFloat pageHeight = 2000;

std::string captionOfCell(const UITableViewCell& cell) {
    const auto view = valueOf<std::shared_ptr<UIView>>(cell, "relevanceDateLabel");
    const auto* label = view ? dynamic_cast<const UILabel*>(view->get()) : nullptr;
    return label != nullptr ? label->text().value_or("") : std::string();
}

AgendaRow rowOfRecord(const KeyValueCoding& record) {
    AgendaRow row;
    row.title = valueOf<std::string>(record, "title");
    row.location = valueOf<std::string>(record, "location");
    row.start = valueOf<NSDate>(record, "startDate").value_or(NSDate{});
    row.end = valueOf<NSDate>(record, "endDate").value_or(NSDate{});
    row.allDay = valueOf<bool>(record, "isAllDay").value_or(false);
    if (const auto url = valueOf<NSURL>(record, "URL")) {
        row.url = url->absoluteString();
    }
    return row;
}

// The records have the order of the query's events, without absent events.
void addCalendars(std::vector<AgendaRow>& rows, const std::optional<RecordedQuery>& query) {
    if (!query) {
        return;
    }
    auto row = rows.begin();
    for (const std::shared_ptr<const EKEvent>& event : query->events) {
        if (row == rows.end()) {
            return;
        }
        if (event) {
            row->calendar = event->calendar;
            ++row;
        }
    }
}

// Scrolls to the row and reads the captions of the rows that are visible from there on. Returns the
// number of rows.
std::size_t readPageFrom(std::size_t first, UITableView& table, WidgetSession& session,
                         std::vector<AgendaRow>& rows) {
    const CGRect rect = table.rectForRowAtIndexPath({0, static_cast<std::int64_t>(first)});
    table.setContentOffset({0, rect.origin.y});
    session.layOut();
    std::size_t next = first;
    while (next < rows.size()) {
        const auto cell = table.cellForRowAtIndexPath({0, static_cast<std::int64_t>(next)});
        if (!cell) {
            break;
        }
        rows[next].caption = captionOfCell(*cell);
        ++next;
    }
    return next - first;
}

Json instantJson(NSDate date, const icalendar::TimeZone& zone) {
    return freedesktop::rfc3339(date, zone);
}

} // namespace

Agenda readAgenda(WidgetSession& session, CGFloat width) {
    session.loadWithRows(); // also gathers the events, which presenting would only repeat
    session.resizeView({width, pageHeight});

    HostedWidget& widget = session.widget();
    Agenda agenda;
    for (const auto& record : widget.items()) {
        agenda.rows.push_back(rowOfRecord(*record));
    }
    addCalendars(agenda.rows, session.latestQuery());
    agenda.showsLocations =
        valueOf<bool>(widget.processWideValues(), "displayLocation").value_or(false);
    if (UITableView* table = widget.table()) {
        for (std::size_t row = 0; row < agenda.rows.size();) {
            row += std::max<std::size_t>(readPageFrom(row, *table, session, agenda.rows), 1);
        }
    }
    return agenda;
}

std::string agendaText(const Agenda& agenda) {
    if (agenda.rows.empty()) {
        return std::string(freedesktop::translated("No events.")) + '\n';
    }
    std::vector<std::vector<std::string>> rows;
    for (const AgendaRow& row : agenda.rows) {
        std::vector<std::string> cells{row.caption, row.title.value_or("")};
        if (agenda.showsLocations) {
            cells.push_back(row.location.value_or(""));
        }
        rows.push_back(std::move(cells));
    }
    return textInColumns(rows);
}

std::string agendaDocument(const Agenda& agenda, const icalendar::TimeZone& zone) {
    Json document = Json::array();
    for (const AgendaRow& row : agenda.rows) {
        Json& json = document.emplace_back(Json::object());
        json["caption"] = row.caption;
        json["title"] = textJson(row.title);
        json["location"] = textJson(row.location);
        json["start"] = instantJson(row.start, zone);
        json["end"] = instantJson(row.end, zone);
        json["allDay"] = row.allDay;
        json["calendar"] = row.calendar ? Json(row.calendar->title) : Json(nullptr);
        json["url"] = textJson(row.url);
    }
    return documentText(document);
}

} // namespace quorvel::headless
