#include "freedesktop/calendars/server/bus_sources_search.h"

#include <optional>
#include <string_view>

#include "freedesktop/glib/session_bus.h"

namespace quorvel::freedesktop::eds {

namespace {

// The service's name ends with the version of its protocol.
constexpr std::string_view servicePrefix = "org.gnome.evolution.dataserver.Sources";

// The service in one of the lists of names that the bus offers.
std::optional<std::string> serviceIn(GDBusConnection* bus, const char* list,
                                     GCancellable* cancellable) {
    const VariantHandle answer(callAndWait(
        bus, {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", list},
        nullptr, "(as)", standardAnswer, cancellable));
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

BusSourcesSearch::BusSourcesSearch()
    : m_cancellable(g_cancellable_new()) {}

BusSourcesSearch::~BusSourcesSearch() {
    g_object_unref(m_cancellable);
}

void BusSourcesSearch::cancel() {
    g_cancellable_cancel(G_CANCELLABLE(m_cancellable));
}

Result<std::string, TranslatableText> BusSourcesSearch::find() {
    GCancellable* const cancellable = G_CANCELLABLE(m_cancellable);
    const auto bus = connectToSessionBus(cancellable);
    if (!bus) {
        return TranslatableText{translatable("the session bus cannot be reached: {1}"),
                                {TranslatableText::verbatim(bus.error().what)}};
    }
    for (const char* const list : {"ListActivatableNames", "ListNames"}) {
        if (auto name = serviceIn(bus->get(), list, cancellable)) {
            return *std::move(name);
        }
    }
    return TranslatableText(
        translatable("it is not installed: the package is evolution-data-server"));
}

} // namespace quorvel::freedesktop::eds
