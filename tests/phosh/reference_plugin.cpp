// A plugin of the lock screen that shows one line. The shell itself loses memory whenever it is
// locked and its page of widgets is turned to, so that ours is compared with what this one costs.
#include <phosh-plugin.h>

#include <gtk/gtk.h>

namespace {

struct Reference {
    GtkBox parent;
};

struct ReferenceClass {
    GtkBoxClass parent;
};

void initialize(GTypeInstance* instance, gpointer) {
    GtkWidget* line = gtk_label_new("reference");
    gtk_widget_set_size_request(line, -1, 600); // as high as an agenda that fills the page
    gtk_container_add(GTK_CONTAINER(instance), line);
    gtk_widget_show(line);
}

} // namespace

extern "C" {

[[gnu::visibility("default")]] void g_io_module_load(GIOModule* module) {
    g_type_module_use(G_TYPE_MODULE(module)); // the type must stay
    const GType type =
        g_type_register_static_simple(GTK_TYPE_BOX, "QuorvelTestReference", sizeof(ReferenceClass),
                                      nullptr, sizeof(Reference), initialize, GTypeFlags{});
    g_io_extension_point_implement(PHOSH_PLUGIN_EXTENSION_POINT_LOCKSCREEN_WIDGET, type,
                                   "reference", 10);
}

[[gnu::visibility("default")]] void g_io_module_unload(GIOModule*) {}

[[gnu::visibility("default")]] char** g_io_phosh_plugin_reference_query() {
    const char* points[] = {PHOSH_PLUGIN_EXTENSION_POINT_LOCKSCREEN_WIDGET, nullptr};
    return g_strdupv(const_cast<char**>(points));
}
}
