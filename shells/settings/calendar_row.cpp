#include "shells/settings/calendar_row.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/swatch.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::translated;

namespace {

constexpr int swatchSize = 24; // points

GtkWidget* makeColour(const std::string& colour) {
    GtkWidget* const swatch = makeSwatch(swatchSize);
    if (const auto parsed = parseRgba(colour.c_str())) {
        setSwatch(swatch, {{*parsed}});
    }
    return swatch;
}

} // namespace

CalendarRow::CalendarRow(ListedCalendar calendar, std::function<void(bool isShown)> onSwitched)
    : m_calendar(std::move(calendar))
    , m_row(ADW_ACTION_ROW(g_object_ref_sink(adw_action_row_new())))
    , m_switch(gtk_switch_new()) {
    const std::string title =
        m_calendar.title.empty() ? translated(text::untitledCalendar) : m_calendar.title;
    setRowTexts(m_row.get(), title, m_calendar.origin);
    adw_action_row_add_prefix(m_row.get(), makeColour(m_calendar.colour));
    addControl(m_row.get(), m_switch, title);
    m_signals.connect(m_switch, "notify::active", [this, switched = std::move(onSwitched)] {
        if (!m_isShowing) {
            switched(gtk_switch_get_active(GTK_SWITCH(m_switch)) != FALSE);
        }
    });
}

void CalendarRow::show(bool isShown, bool canSwitch) {
    m_isShowing = true;
    gtk_switch_set_active(GTK_SWITCH(m_switch), isShown ? TRUE : FALSE);
    gtk_widget_set_sensitive(widget(), canSwitch ? TRUE : FALSE);
    m_isShowing = false;
}

} // namespace quorvel::settings_pages
