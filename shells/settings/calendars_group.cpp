#include "shells/settings/calendars_group.h"

#include <algorithm>
#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/preview_command.h"
#include "shells/settings/setting_texts.h"
#include "shells/settings/settings_model.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/welcome_page.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::CalendarSelection;
using freedesktop::SettingDescription;
using freedesktop::translated;

namespace {

constexpr double longestRun = 30; // seconds

// Whether both lists give the same rows, apart from the switches.
bool haveSameRows(const std::vector<ListedCalendar>& a, const std::vector<ListedCalendar>& b) {
    return std::ranges::equal(a, b, [](const ListedCalendar& x, const ListedCalendar& y) {
        return x.identifier == y.identifier && x.title == y.title && x.colour == y.colour &&
               x.origin == y.origin;
    });
}

} // namespace

CalendarsGroup::CalendarsGroup(AdwPreferencesGroup* group, const SettingDescription& follow,
                               SettingsModel& model, const ScratchFolder& scratch,
                               std::string program, const std::string& guide,
                               std::function<void(bool hasCalendars)> onListed)
    : m_group(group)
    , m_model(model)
    , m_scratch(scratch)
    , m_program(std::move(program))
    , m_onListed(std::move(onListed))
    , m_follow(gtk_switch_new())
    , m_status(ADW_ACTION_ROW(adw_action_row_new())) {
    addFollowRow(follow);
    adw_preferences_group_add(m_group, GTK_WIDGET(m_status));
    addHelpRow(guide);
    showStatus(translated(text::calendarsLoading));
    refresh();
}

void CalendarsGroup::addFollowRow(const SettingDescription& follow) {
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    setRowTexts(row, labelOf(follow), translated(text::followMeaning));
    addControl(row, m_follow, labelOf(follow));
    adw_preferences_group_add(m_group, GTK_WIDGET(row));
    m_signals.connect(m_follow, "notify::active", [this] {
        if (!m_isShowing) {
            switchFollowing();
        }
    });
}

void CalendarsGroup::addHelpRow(const std::string& guide) {
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    setRowTexts(row, translated(text::addCalendars), translated(text::addCalendarsMeaning));
    adw_action_row_add_suffix(row, gtk_image_new_from_icon_name("go-next-symbolic"));
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), TRUE);
    m_helpRow = GTK_WIDGET(row);
    adw_preferences_group_add(m_group, m_helpRow);
    m_signals.connect(row, "activated", [this, guide] { showWelcomeDialog(m_helpRow, guide); });
}

void CalendarsGroup::switchFollowing() {
    CalendarSelection selection = m_model.calendarSelection();
    if (gtk_switch_get_active(GTK_SWITCH(m_follow)) != FALSE) {
        selection.followsDesktop = true;
        m_model.selectCalendars(selection);
    } else {
        m_model.selectCalendars(withOwnList(selection, m_calendars));
    }
}

void CalendarsGroup::refresh() {
    m_wasFollowing = m_model.calendarSelection().followsDesktop;
    m_run.reset(); // an older list is no longer wanted
    m_run = std::make_unique<ProgramRun>(
        std::vector<std::string>{m_program, "settings", "calendars", "--json", "--preferences",
                                 m_scratch.existingOrEmpty(m_model.folder())},
        longestRun, [this](const ProgramResult& result) { showList(result); });
}

// The command fails, too, where there are no calendars; its list is then empty.
void CalendarsGroup::showList(const ProgramResult& result) {
    auto calendars = parseCalendarList(result.output);
    if (calendars) {
        showCalendars(*std::move(calendars));
    } else {
        showStatus(filled(translated(text::calendarsNotListed), {failureReason(result.errors)}));
    }
}

void CalendarsGroup::showCalendars(std::vector<ListedCalendar> calendars) {
    const bool isNew = !haveSameRows(calendars, m_calendars);
    m_calendars = std::move(calendars);
    if (isNew) {
        rebuildRows();
    }
    showStatus(m_calendars.empty() ? translated(text::noCalendars) : "");
    update();
    m_onListed(!m_calendars.empty());
}

void CalendarsGroup::rebuildRows() {
    for (const auto& row : m_rows) {
        adw_preferences_group_remove(m_group, row->widget());
    }
    m_rows.clear();
    adw_preferences_group_remove(m_group, GTK_WIDGET(g_object_ref(m_helpRow)));
    for (const ListedCalendar& calendar : m_calendars) {
        m_rows.push_back(std::make_unique<CalendarRow>(
            calendar, [this, identifier = calendar.identifier](bool isOn) {
                m_model.selectCalendars(
                    withCalendar(m_model.calendarSelection(), identifier, isOn));
            }));
        adw_preferences_group_add(m_group, m_rows.back()->widget());
    }
    adw_preferences_group_add(m_group, m_helpRow); // stays the last
    g_object_unref(m_helpRow);
}

void CalendarsGroup::showStatus(const std::string& status) {
    gtk_widget_set_visible(GTK_WIDGET(m_status), status.empty() ? FALSE : TRUE);
    setRowTexts(m_status, status, "");
}

bool CalendarsGroup::isShown(const ListedCalendar& calendar) const {
    const CalendarSelection& selection = m_model.calendarSelection();
    if (selection.followsDesktop) {
        return calendar.isShown;
    }
    return std::ranges::find(selection.identifiers, calendar.identifier) !=
           selection.identifiers.end();
}

void CalendarsGroup::update() {
    const bool follows = m_model.calendarSelection().followsDesktop;
    m_isShowing = true;
    gtk_switch_set_active(GTK_SWITCH(m_follow), follows ? TRUE : FALSE);
    m_isShowing = false;
    for (const auto& row : m_rows) {
        const auto calendar =
            std::ranges::find(m_calendars, row->calendar().identifier, &ListedCalendar::identifier);
        row->show(isShown(*calendar), !follows);
    }
    if (follows != m_wasFollowing) { // what the desktop has chosen is known only after a new list
        refresh();
    }
}

} // namespace quorvel::settings_pages
