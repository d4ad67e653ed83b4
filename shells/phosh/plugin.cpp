// The functions that the shell calls in the plugin's file.
#include <gio/gio.h>

#include <phosh-plugin.h>

#include "shells/phosh/idle_memory.h"
#include "shells/phosh/lock_screen_agenda.h"

extern "C" {

G_MODULE_EXPORT void g_io_phosh_plugin_quorvel_load(GIOModule* module) {
    // The types that it registers cannot be unregistered.
    g_type_module_use(G_TYPE_MODULE(module));
    quorvel::phosh::limitIdleMemory();
    constexpr int priority = 10; // of plugins with the same name
    g_io_extension_point_implement(PHOSH_PLUGIN_EXTENSION_POINT_LOCKSCREEN_WIDGET,
                                   quorvel::phosh::lockScreenAgendaType(), "quorvel", priority);
}

G_MODULE_EXPORT void g_io_phosh_plugin_quorvel_unload(GIOModule*) {}

// For the list of modules, which saves the shell from loading all of them to find one.
G_MODULE_EXPORT char** g_io_phosh_plugin_quorvel_query() {
    const char* const points[] = {PHOSH_PLUGIN_EXTENSION_POINT_LOCKSCREEN_WIDGET, nullptr};
    return g_strdupv(const_cast<char**>(points));
}

} // extern "C"
