#include "shells/settings/calendars_group.h"

#include <algorithm>
#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/preview_command.h"
#include "shells/settings/setting_texts.h"
#include "shells/settings/settings_model.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/subscriptions.h"
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
               x.origin == y.origin && x.subscription == y.subscription;
    });
}

} // namespace

CalendarsGroup::CalendarsGroup(AdwPreferencesGroup* group, const SettingDescription& follow,
                               SettingsModel& model, const ScratchFolder& scratch,
                               std::string program, std::function<void(bool hasCalendars)> onListed)
    : m_group(group)
    , m_model(model)
    , m_scratch(scratch)
    , m_program(std::move(program))
    , m_onListed(std::move(onListed))
    , m_follow(gtk_switch_new())
    , m_status(ADW_ACTION_ROW(adw_action_row_new())) {
    addFollowRow(follow);
    adw_preferences_group_add(m_group, GTK_WIDGET(m_status));
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
        showCalendars(
            withSubscriptions(*std::move(calendars), readSubscriptionList(m_model.folder())));
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
    for (const ListedCalendar& calendar : m_calendars) {
        addRow(calendar);
    }
}

void CalendarsGroup::addRow(const ListedCalendar& calendar) {
    const std::string identifier = calendar.identifier;
    m_rows.push_back(std::make_unique<CalendarRow>(
        calendar,
        [this, identifier](bool isOn) {
            m_model.selectCalendars(withCalendar(m_model.calendarSelection(), identifier, isOn));
        },
        [this, identifier] { askToUnsubscribe(identifier); }));
    adw_preferences_group_add(m_group, m_rows.back()->widget());
}

CalendarRow* CalendarsGroup::rowOf(const std::string& identifier) const {
    const auto row = std::ranges::find(
        m_rows, identifier, [](const auto& each) { return each->calendar().identifier; });
    return row != m_rows.end() ? row->get() : nullptr;
}

void CalendarsGroup::askToUnsubscribe(const std::string& identifier) {
    if (const CalendarRow* const row = rowOf(identifier)) {
        m_dialog = std::make_unique<UnsubscribeDialog>(
            GTK_WIDGET(m_group), row->title(), [this, identifier] { unsubscribe(identifier); });
    }
}

void CalendarsGroup::unsubscribe(const std::string& identifier) {
    if (CalendarRow* const row = rowOf(identifier)) {
        row->setRemoving(true);
        m_removals[identifier] = std::make_unique<ProgramRun>(
            unsubscribeCommand(m_program, m_model.folder(), identifier), longestRun,
            [this, identifier](const ProgramResult& result) {
                finishUnsubscribing(identifier, result);
            });
    }
}

void CalendarsGroup::finishUnsubscribing(const std::string& identifier,
                                         const ProgramResult& result) {
    const auto run = m_removals.extract(identifier); // owns the argument
    if (CalendarRow* const row = rowOf(identifier); row != nullptr && !result.hasSucceeded) {
        row->setRemoving(false);
        row->showProblem(filled(translated(text::notUnsubscribed), {failureReason(result.errors)}));
    } else {
        refresh();
    }
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
    setSwitch(m_follow, follows);
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
