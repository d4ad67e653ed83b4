#include "shells/phosh/preferences/lock_screen_preferences.h"

#include <exception>
#include <utility>

#include "freedesktop/glib/handles.h"
#include "freedesktop/user_environment.h"
#include "shells/phosh/plugin_folders.h"
#include "shells/phosh/preferences/lock_screen_group.h"
#include "shells/phosh/preferences/preferences_host.h"
#include "shells/phosh/shell_log.h"
#include "shells/settings/settings_page.h"

namespace quorvel::phosh {

using settings_pages::SettingsPage;
using settings_pages::SettingsPageOptions;

namespace {

struct Content {
    ShellLog log;
    SettingsPage page;

    explicit Content(SettingsPageOptions options)
        : page(std::move(options), log) {}
};

struct LockScreenPreferences {
    PreferencesHost host;
    Content* content; // null after it was disposed of
};

struct LockScreenPreferencesClass {
    PreferencesHostClass host;
};

gpointer parentClass = nullptr; // once, before the first instance

SettingsPageOptions optionsFor(PreferencesHost* host) {
    const freedesktop::ProgramFolders folders = pluginFolders();
    SettingsPageOptions options;
    options.preferencesFolder = freedesktop::userPreferencesFolder();
    options.program = folders.command;
    options.dataFolder = folders.data;
    options.showToast = [host](AdwToast* toast) { addToast(host, toast); };
    options.showsPreview = true;
    options.hostGroup = makeLockScreenGroup();
    return options;
}

void addContent(LockScreenPreferences* preferences) {
    PreferencesHost* const host = &preferences->host;
    preferences->content = new Content(optionsFor(host));
    SettingsPage& page = preferences->content->page;
    gtk_widget_insert_action_group(GTK_WIDGET(host), "settings", page.actions());
    addPage(host, page.page());
}

// No exception may leave a function that GTK calls.
void initialize(GTypeInstance* instance, gpointer) {
    auto* const preferences = reinterpret_cast<LockScreenPreferences*>(instance);
    preferences->content = nullptr;
    try {
        addContent(preferences);
    } catch (const std::exception& error) {
        g_warning("the settings of the agenda cannot be shown: %s", error.what());
    }
}

// GTK may call this more than once.
void dispose(GObject* object) {
    auto* const preferences = reinterpret_cast<LockScreenPreferences*>(object);
    delete std::exchange(preferences->content, nullptr);
    G_OBJECT_CLASS(parentClass)->dispose(object);
}

void initializeClass(gpointer classData, gpointer) {
    parentClass = g_type_class_peek_parent(classData);
    G_OBJECT_CLASS(classData)->dispose = dispose;
}

} // namespace

GType lockScreenPreferencesType() {
    static const GType type = g_type_register_static_simple(
        preferencesHostType(), "QuorvelLockScreenPreferences", sizeof(LockScreenPreferencesClass),
        initializeClass, sizeof(LockScreenPreferences), initialize, GTypeFlags{});
    return type;
}

} // namespace quorvel::phosh
