#include "freedesktop/eds/session_bus.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#include <gio/gio.h>
#include <unistd.h>

namespace quorvel::freedesktop::eds {

namespace {

// A number that grows with the protocol stands behind it.
constexpr std::string_view servicePrefix = "org.gnome.evolution.dataserver.Sources";

// The address of no bus.
constexpr std::string_view disabledBus = "disabled:";

struct ObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using BusHandle = std::unique_ptr<GDBusConnection, ObjectUnref>;

struct VariantUnref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using VariantHandle = std::unique_ptr<GVariant, VariantUnref>;

std::string takeMessage(GError* error) {
    std::string message = error != nullptr ? error->message : "nobody says why";
    g_clear_error(&error);
    return message;
}

// Of the bus's own lists.
std::optional<std::string> serviceIn(GDBusConnection* bus, const char* list,
                                     GCancellable* cancellable) {
    constexpr int standardTime = -1;
    const VariantHandle answer(g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", list, nullptr,
        G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE, standardTime, cancellable, nullptr));
    if (!answer) {
        return std::nullopt;
    }
    std::optional<std::string> found;
    GVariantIter* names = nullptr;
    const char* name = nullptr;
    g_variant_get(answer.get(), "(as)", &names);
    while (g_variant_iter_next(names, "&s", &name) != FALSE) {
        if (std::string_view(name).starts_with(servicePrefix)) {
            found = name;
        }
    }
    g_variant_iter_free(names);
    return found;
}

} // namespace

bool mayHaveSessionBus() {
    const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr && *address != '\0') {
        return std::string_view(address) != disabledBus;
    }
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    return folder != nullptr && access((std::string(folder) + "/bus").c_str(), F_OK) == 0;
}

SearchEnd::SearchEnd()
    : m_cancellable(g_cancellable_new()) {}

SearchEnd::~SearchEnd() {
    g_object_unref(m_cancellable);
}

void SearchEnd::cancel() {
    g_cancellable_cancel(G_CANCELLABLE(m_cancellable));
}

SourcesService findSourcesService(SearchEnd& end) {
    GCancellable* const cancellable = G_CANCELLABLE(end.m_cancellable);
    GError* error = nullptr;
    const BusHandle bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, &error));
    if (!bus) {
        return {std::nullopt, "the session bus cannot be reached: " + takeMessage(error)};
    }
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    for (const char* const list : {"ListActivatableNames", "ListNames"}) {
        if (auto name = serviceIn(bus.get(), list, cancellable)) {
            return {std::move(name), {}};
        }
    }
    return {std::nullopt, "it is not installed: the package is evolution-data-server"};
}

} // namespace quorvel::freedesktop::eds
