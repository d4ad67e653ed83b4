#include "shells/settings/settings_page.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/application_row.h"
#include "shells/settings/setting_order.h"
#include "shells/settings/setting_texts.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/value_rows.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::ObjectHandle;
using freedesktop::SettingDescription;
using freedesktop::translated;

namespace {

constexpr std::string_view followKey = "onlySelectedCalendars";
constexpr std::string_view iconKey = "iconFile";
constexpr std::string_view applicationKey = "customLaunchAppBundleID";
constexpr int previewHeight = 130; // points

} // namespace

SettingsPage::SettingsPage(SettingsPageOptions options, platform::SystemLog& log)
    : m_options(std::move(options))
    , m_model(m_options.preferencesFolder)
    , m_page(ADW_PREFERENCES_PAGE(g_object_ref_sink(adw_preferences_page_new())))
    , m_actions(g_simple_action_group_new())
    , m_preview(m_options.program, m_options.preferencesFolder, m_scratch)
    , m_problem([this] { m_model.reload(); })
    , m_undoOffer(G_ACTION_MAP(m_actions.get()), m_options.showToast, [this] { undo(); })
    , m_fileChanges(log, [this] { m_model.reload(); }) {
    adw_preferences_page_set_title(m_page.get(), translated(text::pageTitle));
    adw_preferences_page_set_icon_name(m_page.get(), "preferences-system-symbolic");
    addAction("undo", [this] { undo(); });
    addAction("reset-all", [this] { m_model.resetAll(); });
    addAction("subscribe", [this] { startSubscribing(); });
    addUndoKey();
    adw_preferences_page_add(m_page.get(), m_problem.group());
    addHostGroups();
    addGroups();
    addResetGroup();
    m_model.setChangedHandler([this] {
        update();
        m_preview.refresh();
    });
    m_model.setWrittenHandler([this](const std::string& label) { m_undoOffer.show(label); });
    m_fileChanges.watch({{m_model.filePath()},
                         {m_options.preferencesFolder + '/' +
                          std::string(freedesktop::calendarSelectionFileName)}});
    m_model.reload(); // what has changed before it was watched
}

void SettingsPage::addHostGroups() {
    if (m_options.showsPreview) {
        auto* const group = ADW_PREFERENCES_GROUP(adw_preferences_group_new());
        m_preview.setLeastHeight(previewHeight);
        adw_preferences_group_add(group, preview());
        adw_preferences_page_add(m_page.get(), group);
    }
    if (m_options.hostGroup != nullptr) {
        adw_preferences_page_add(m_page.get(), m_options.hostGroup);
    }
}

void SettingsPage::addGroups() {
    for (const std::string_view name : settingGroups()) {
        addSettings(name);
    }
}

AdwPreferencesGroup* SettingsPage::addGroup(const std::string& title) {
    auto* const group = ADW_PREFERENCES_GROUP(adw_preferences_group_new());
    adw_preferences_group_set_title(group, title.c_str());
    adw_preferences_page_add(m_page.get(), group);
    m_groups.push_back(GTK_WIDGET(group));
    return group;
}

void SettingsPage::addSettings(std::string_view name) {
    AdwPreferencesGroup* const group = addGroup(groupTitle(name));
    for (const SettingDescription* const setting : settingsOfGroup(name)) {
        addSetting(group, *setting);
    }
}

void SettingsPage::addSetting(AdwPreferencesGroup* group, const SettingDescription& setting) {
    if (setting.key == followKey) {
        addCalendars(group, setting);
    } else if (setting.key == iconKey) {
        m_iconRows = std::make_unique<IconRows>(group, setting, m_model, m_options.dataFolder);
    } else {
        m_rows.push_back(setting.key == applicationKey
                             ? std::make_unique<ApplicationRow>(setting, m_model)
                             : makeValueRow(setting, m_model));
        adw_preferences_group_add(group, m_rows.back()->widget());
    }
}

void SettingsPage::addCalendars(AdwPreferencesGroup* group, const SettingDescription& follow) {
    m_calendars = std::make_unique<CalendarsGroup>(
        group, follow, m_model, m_scratch, m_options.program, [this](bool hasCalendars) {
            m_preview.setHasCalendars(hasCalendars);
            if (m_options.onCalendarsListed) {
                m_options.onCalendarsListed(hasCalendars);
            }
        });
    const AddCalendarsOptions options{m_options.program, m_options.preferencesFolder,
                                      m_options.dataFolder + "/your-calendars.md", m_actions.get(),
                                      [this] { refresh(); }};
    m_addCalendars = std::make_unique<AddCalendarsGroup>(addGroup(""), options);
}

void SettingsPage::startSubscribing() {
    if (m_options.showPage) {
        m_options.showPage();
    }
    m_addCalendars->startSubscribing();
}

void SettingsPage::addResetGroup() {
    AdwPreferencesGroup* const group = addGroup(translated(text::groupReset));
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    setRowTexts(row, translated(text::resetAllTitle), translated(text::resetAllMeaning));
    GtkWidget* const button = gtk_button_new_with_mnemonic(translated(text::resetAll));
    nameByMnemonic(button, translated(text::resetAll));
    gtk_widget_add_css_class(button, "destructive-action");
    gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
    adw_action_row_add_suffix(row, button);
    adw_preferences_group_add(group, GTK_WIDGET(row));
    m_signals.connect(button, "clicked", [this] { m_model.resetAll(); });
    m_signals.connect(
        g_action_map_lookup_action(G_ACTION_MAP(m_actions.get()), "reset-all"), "notify::enabled",
        [this, button] { gtk_widget_set_sensitive(button, m_model.canReset() ? TRUE : FALSE); });
}

void SettingsPage::addAction(const char* name, std::function<void()> run) {
    const ObjectHandle<GSimpleAction> action(g_simple_action_new(name, nullptr));
    m_signals.connect(action.get(), "activate", std::move(run));
    g_action_map_add_action(G_ACTION_MAP(m_actions.get()), G_ACTION(action.get()));
}

// What is offered to be undone is undone now, whatever the user has used for it.
void SettingsPage::undo() {
    m_undoOffer.withdraw();
    m_model.undo();
}

// Wherever the focus is in the window of the page.
void SettingsPage::addUndoKey() {
    gtk_widget_insert_action_group(GTK_WIDGET(m_page.get()), "settings", actions());
    GtkEventController* const keys = gtk_shortcut_controller_new();
    gtk_shortcut_controller_set_scope(GTK_SHORTCUT_CONTROLLER(keys), GTK_SHORTCUT_SCOPE_GLOBAL);
    gtk_shortcut_controller_add_shortcut(
        GTK_SHORTCUT_CONTROLLER(keys),
        gtk_shortcut_new(gtk_keyval_trigger_new(GDK_KEY_z, GDK_CONTROL_MASK),
                         gtk_named_action_new("settings.undo")));
    gtk_widget_add_controller(GTK_WIDGET(m_page.get()), keys);
}

void SettingsPage::setActionEnabled(const char* name, bool isEnabled) {
    GAction* const action = g_action_map_lookup_action(G_ACTION_MAP(m_actions.get()), name);
    g_simple_action_set_enabled(G_SIMPLE_ACTION(action), isEnabled ? TRUE : FALSE);
}

void SettingsPage::update() {
    const bool canChange = !m_model.problem();
    m_problem.show(m_model.problem());
    for (GtkWidget* const group : m_groups) {
        gtk_widget_set_sensitive(group, canChange ? TRUE : FALSE);
    }
    for (const auto& row : m_rows) {
        row->update();
    }
    m_iconRows->update();
    m_calendars->update();
    setActionEnabled("undo", canChange && m_model.canUndo());
    setActionEnabled("reset-all", canChange && m_model.canReset());
    setActionEnabled("subscribe", canChange);
}

void SettingsPage::refresh() {
    m_preview.refresh();
    m_calendars->refresh();
}

} // namespace quorvel::settings_pages
