// The row of one calendar: its colour and name, where it comes from, and a switch.
#pragma once

#include <functional>

#include <adwaita.h>

#include "freedesktop/glib/handles.h"
#include "shells/settings/calendar_choice.h"
#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

class CalendarRow {
public:
    // `onSwitched` is called when the user switches the calendar on or off. It must not destroy the
    // row.
    CalendarRow(ListedCalendar calendar, std::function<void(bool isShown)> onSwitched);
    CalendarRow(const CalendarRow&) = delete;
    CalendarRow& operator=(const CalendarRow&) = delete;

    GtkWidget* widget() const { return GTK_WIDGET(m_row.get()); }
    const ListedCalendar& calendar() const { return m_calendar; }
    // `canSwitch`: the user chooses the calendars, not the desktop.
    void show(bool isShown, bool canSwitch);

private:
    ListedCalendar m_calendar;
    freedesktop::ObjectHandle<AdwActionRow> m_row;
    GtkWidget* m_switch; // GTK owns it
    bool m_isShowing = false;
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
