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

CalendarRow::CalendarRow(ListedCalendar calendar, std::function<void(bool isShown)> onSwitched,
                         std::function<void()> onUnsubscribe)
    : m_calendar(std::move(calendar))
    , m_row(ADW_ACTION_ROW(g_object_ref_sink(adw_action_row_new())))
    , m_switch(gtk_switch_new()) {
    setRowTexts(m_row.get(), title(), origin());
    adw_action_row_add_prefix(m_row.get(), makeColour(m_calendar.colour));
    if (isSubscribed()) {
        addUnsubscribeButton(std::move(onUnsubscribe));
    }
    addControl(m_row.get(), m_switch, title());
    m_signals.connect(m_switch, "notify::active", [this, switched = std::move(onSwitched)] {
        if (!m_isShowing) {
            switched(gtk_switch_get_active(GTK_SWITCH(m_switch)) != FALSE);
        }
    });
}

std::string CalendarRow::title() const {
    return m_calendar.title.empty() ? translated(text::untitledCalendar) : m_calendar.title;
}

bool CalendarRow::isSubscribed() const {
    return m_calendar.subscription != SubscriptionState::none;
}

std::string CalendarRow::origin() const {
    return m_calendar.subscription == SubscriptionState::neverFetched
               ? filled(translated(text::neverFetched), {m_calendar.origin})
               : m_calendar.origin;
}

void CalendarRow::addUnsubscribeButton(std::function<void()> onUnsubscribe) {
    m_unsubscribeButton =
        makeIconButton("user-trash-symbolic", filled(translated(text::unsubscribeFrom), {title()}));
    adw_action_row_add_suffix(m_row.get(), m_unsubscribeButton);
    m_signals.connect(m_unsubscribeButton, "clicked", std::move(onUnsubscribe));
}

// A subscription can end also while the desktop chooses the calendars, so that only its switch is
// insensitive then.
void CalendarRow::show(bool isShown, bool canSwitch) {
    m_isShowing = true;
    setSwitch(m_switch, isShown);
    gtk_widget_set_sensitive(isSubscribed() ? m_switch : widget(), canSwitch ? TRUE : FALSE);
    m_isShowing = false;
}

void CalendarRow::setRemoving(bool isRemoving) {
    if (m_unsubscribeButton != nullptr) {
        gtk_widget_set_sensitive(m_unsubscribeButton, isRemoving ? FALSE : TRUE);
    }
}

void CalendarRow::showProblem(const std::string& sentence) {
    adw_action_row_set_subtitle(m_row.get(), sentence.c_str());
}

} // namespace quorvel::settings_pages
