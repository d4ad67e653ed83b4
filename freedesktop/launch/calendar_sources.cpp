#include "freedesktop/launch/calendar_sources.h"

#include "freedesktop/glib/session_bus.h"

namespace quorvel::freedesktop {

namespace {

// Whether the object with these interfaces is the source with that identifier.
bool isSource(GVariant* interfaces, const std::string& identifier) {
    const VariantHandle source(g_variant_lookup_value(
        interfaces, "org.gnome.evolution.dataserver.Source", G_VARIANT_TYPE_VARDICT));
    const char* uid = nullptr;
    return source && g_variant_lookup(source.get(), "UID", "&s", &uid) != FALSE &&
           identifier == uid;
}

} // namespace

bool isDesktopSource(const std::string& identifier) {
    const BusHandle bus = waitForSessionBus();
    if (!bus) {
        return false;
    }
    const VariantHandle answer = callAndWait(
        bus.get(),
        {"org.gnome.evolution.dataserver.Sources5", "/org/gnome/evolution/dataserver/SourceManager",
         "org.freedesktop.DBus.ObjectManager", "GetManagedObjects"},
        nullptr, "(a{oa{sa{sv}}})", longestAnswer);
    if (!answer) {
        return false;
    }
    const VariantHandle objects(g_variant_get_child_value(answer.get(), 0));
    for (gsize i = 0; i < g_variant_n_children(objects.get()); ++i) {
        const VariantHandle object(g_variant_get_child_value(objects.get(), i));
        const VariantHandle interfaces(g_variant_get_child_value(object.get(), 1));
        if (isSource(interfaces.get(), identifier)) {
            return true;
        }
    }
    return false;
}

} // namespace quorvel::freedesktop
