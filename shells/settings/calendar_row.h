// The row of one calendar: its colour and name, where it comes from, a switch, and a button that
// ends a subscription to it.
#pragma once

#include <functional>
#include <string>

#include <adwaita.h>

#include "freedesktop/glib/handles.h"
#include "shells/settings/calendar_choice.h"
#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

class CalendarRow {
public:
    // `onSwitched` is called when the user switches the calendar on or off, `onUnsubscribe` when
    // the user wants to end the subscription. Neither may destroy the row.
    CalendarRow(ListedCalendar calendar, std::function<void(bool isShown)> onSwitched,
                std::function<void()> onUnsubscribe);
    CalendarRow(const CalendarRow&) = delete;
    CalendarRow& operator=(const CalendarRow&) = delete;

    GtkWidget* widget() const { return GTK_WIDGET(m_row.get()); }
    const ListedCalendar& calendar() const { return m_calendar; }
    std::string title() const; // never empty
    // `canSwitch`: the user chooses the calendars, not the desktop.
    void show(bool isShown, bool canSwitch);
    void setRemoving(bool isRemoving);             // the subscription is about to end
    void showProblem(const std::string& sentence); // about the end of the subscription

private:
    bool isSubscribed() const;
    std::string origin() const;
    void addUnsubscribeButton(std::function<void()> onUnsubscribe);

    ListedCalendar m_calendar;
    freedesktop::ObjectHandle<AdwActionRow> m_row;
    GtkWidget* m_switch;                      // GTK owns these
    GtkWidget* m_unsubscribeButton = nullptr; // null: it is no subscription
    bool m_isShowing = false;
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
