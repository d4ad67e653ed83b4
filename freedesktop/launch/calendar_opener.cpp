#include "freedesktop/launch/calendar_opener.h"

#include <array>
#include <vector>

#include <gio/gdesktopappinfo.h>

#include "freedesktop/launch/calendar_applications.h"
#include "freedesktop/launch/gio_handles.h"

namespace quorvel::freedesktop {

using launch::ErrorHandle;
using launch::ObjectHandle;
using launch::SourceHandle;
using launch::VariantHandle;

namespace {

constexpr int longestAnswer = 1500; // milliseconds
constexpr guint longestLaunch = 10; // seconds
constexpr const char* ownEntry = "org.quorvel.Open.desktop";

const char* entryName(GAppInfo* application) {
    const char* name = g_app_info_get_id(application);
    return name != nullptr ? name : "";
}

// A calendar is a text too, so where no application is meant for it the editor is offered.
bool isTextEditor(GAppInfo* application) {
    const ObjectHandle<GAppInfo> editor(g_app_info_get_default_for_type("text/plain", FALSE));
    return editor && g_app_info_equal(application, editor.get()) != FALSE;
}

// Null where there is no calendar application.
ObjectHandle<GAppInfo> installedCalendarApplication() {
    ObjectHandle<GAppInfo> chosen(g_app_info_get_default_for_type("text/calendar", FALSE));
    if (chosen &&
        calendarApplicationOfEntry(entryName(chosen.get())) != CalendarApplication::other) {
        return chosen;
    }
    for (const char* name : {"org.gnome.Evolution.desktop", "org.gnome.Calendar.desktop"}) {
        if (GDesktopAppInfo* info = g_desktop_app_info_new(name)) {
            return ObjectHandle<GAppInfo>(G_APP_INFO(info));
        }
    }
    if (chosen &&
        (isTextEditor(chosen.get()) || std::string_view(entryName(chosen.get())) == ownEntry)) {
        chosen.reset();
    }
    return chosen;
}

ObjectHandle<GDBusConnection> sessionBus() {
    return ObjectHandle<GDBusConnection>(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
}

// Whether an object of the desktop's calendar service is the source of that identifier.
bool isSource(GVariant* interfaces, const std::string& identifier) {
    const VariantHandle source(g_variant_lookup_value(
        interfaces, "org.gnome.evolution.dataserver.Source", G_VARIANT_TYPE_VARDICT));
    const char* uid = nullptr;
    return source && g_variant_lookup(source.get(), "UID", "&s", &uid) != FALSE &&
           identifier == uid;
}

bool isKnownSource(const std::string& identifier) {
    const auto bus = sessionBus();
    if (!bus) {
        return false;
    }
    const VariantHandle answer(g_dbus_connection_call_sync(
        bus.get(), "org.gnome.evolution.dataserver.Sources5",
        "/org/gnome/evolution/dataserver/SourceManager", "org.freedesktop.DBus.ObjectManager",
        "GetManagedObjects", nullptr, G_VARIANT_TYPE("(a{oa{sa{sv}}})"), G_DBUS_CALL_FLAGS_NONE,
        longestAnswer, nullptr, nullptr));
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

struct LaunchAnswer {
    bool isThere = false;
    std::string problem;
};

void takeAnswer(GObject* application, GAsyncResult* result, gpointer data) {
    auto* answer = static_cast<LaunchAnswer*>(data);
    GError* error = nullptr;
    g_app_info_launch_uris_finish(G_APP_INFO(application), result, &error);
    const ErrorHandle held(error);
    answer->isThere = true;
    answer->problem = error != nullptr ? error->message : "";
}

gboolean cancelLaunch(gpointer cancellable) {
    g_cancellable_cancel(G_CANCELLABLE(cancellable));
    return G_SOURCE_REMOVE;
}

// An application that the bus activates has been told when this returns.
std::string launchAndWait(GAppInfo* application, const std::optional<std::string>& link) {
    GList links{link ? const_cast<char*>(link->c_str()) : nullptr, nullptr, nullptr};
    const ObjectHandle<GCancellable> cancellable(g_cancellable_new());
    const SourceHandle timeout(g_timeout_source_new_seconds(longestLaunch));
    g_source_set_callback(timeout.get(), cancelLaunch, cancellable.get(), nullptr);
    g_source_attach(timeout.get(), nullptr);
    LaunchAnswer answer;
    g_app_info_launch_uris_async(application, link ? &links : nullptr, nullptr, cancellable.get(),
                                 takeAnswer, &answer);
    while (!answer.isThere) {
        g_main_context_iteration(nullptr, TRUE);
    }
    return answer.problem;
}

// With arguments of its own behind the program's name.
std::string startWithArguments(GAppInfo* application, const std::vector<std::string>& arguments) {
    std::vector<const char*> argv{g_app_info_get_executable(application)};
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    argv.push_back(nullptr);
    GError* error = nullptr;
    const ObjectHandle<GSubprocess> process(
        g_subprocess_newv(argv.data(), G_SUBPROCESS_FLAGS_NONE, &error));
    const ErrorHandle held(error);
    return error != nullptr ? error->message : "";
}

} // namespace

OpeningOutcome openInCalendarApplication(const CalendarLink& link) {
    const ObjectHandle<GAppInfo> application = installedCalendarApplication();
    if (!application) {
        return {false, "there is no calendar application: install Evolution or GNOME Calendar"};
    }
    const CalendarApplication kind = calendarApplicationOfEntry(entryName(application.get()));
    const auto* event = std::get_if<EventLink>(&link);
    const bool isKnown =
        event != nullptr && kind != CalendarApplication::other && isKnownSource(event->calendar);
    const CalendarOpening opening = openingOf(link, kind, isKnown);
    const std::string problem = opening.arguments.empty()
                                    ? launchAndWait(application.get(), opening.link)
                                    : startWithArguments(application.get(), opening.arguments);
    if (!problem.empty()) {
        return {false, std::string("the application ") + entryName(application.get()) +
                           " could not be started (" + problem + "): try it by hand"};
    }
    return {true, ""};
}

bool notifyUser(const std::string& summary, const std::string& body) {
    const auto bus = sessionBus();
    if (!bus) {
        return false;
    }
    GVariantBuilder actions;
    GVariantBuilder hints;
    g_variant_builder_init(&actions, G_VARIANT_TYPE("as"));
    g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
    constexpr int standardTime = -1;
    const VariantHandle answer(g_dbus_connection_call_sync(
        bus.get(), "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
        "org.freedesktop.Notifications", "Notify",
        g_variant_new("(susssasa{sv}i)", "Quorvel", 0U, "x-office-calendar", summary.c_str(),
                      body.c_str(), &actions, &hints, standardTime),
        G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, longestAnswer, nullptr, nullptr));
    return answer != nullptr;
}

} // namespace quorvel::freedesktop
