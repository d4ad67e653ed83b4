// The functions that the phone's settings call in the file of the plugin's page.
#include <gio/gio.h>

#include <phosh-plugin.h>

#include "freedesktop/language/catalogs.h"
#include "shells/phosh/plugin_folders.h"
#include "shells/phosh/preferences/lock_screen_preferences.h"

extern "C" {

G_MODULE_EXPORT void g_io_phosh_plugin_prefs_quorvel_load(GIOModule* module) {
    // The types that it registers cannot be unregistered.
    g_type_module_use(G_TYPE_MODULE(module));
    quorvel::freedesktop::useCatalogs(quorvel::phosh::pluginFolders().catalogs);
    // Without a list of modules beside this file, nobody has registered the point before.
    g_io_extension_point_register(PHOSH_PLUGIN_EXTENSION_POINT_LOCKSCREEN_WIDGET_PREFS);
    constexpr int priority = 10; // of pages with the same name
    g_io_extension_point_implement(PHOSH_PLUGIN_EXTENSION_POINT_LOCKSCREEN_WIDGET_PREFS,
                                   quorvel::phosh::lockScreenPreferencesType(), "quorvel",
                                   priority);
}

G_MODULE_EXPORT void g_io_phosh_plugin_prefs_quorvel_unload(GIOModule*) {}

// For the list of modules, which saves the phone's settings from loading all of them to find one.
G_MODULE_EXPORT char** g_io_phosh_plugin_prefs_quorvel_query() {
    const char* const points[] = {PHOSH_PLUGIN_EXTENSION_POINT_LOCKSCREEN_WIDGET_PREFS, nullptr};
    return g_strdupv(const_cast<char**>(points));
}

} // extern "C"
