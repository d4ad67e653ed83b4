#include "tests/freedesktop/calendars/server/server_fixture.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <stdexcept>
#include <thread>

namespace quorvel::testing_eds {

using freedesktop::ErrorHandle;
using freedesktop::ObjectHandle;

namespace {

constexpr auto withoutWaiting = static_cast<guint32>(-1);

void check(GError* error, const char* what) {
    const ErrorHandle held(error);
    if (error != nullptr) {
        throw std::runtime_error(std::string(what) + ": " + error->message);
    }
}

// The process that serves calendars learns of a new source a moment after the registry's own.
EClient* connect(ESource* source) {
    constexpr int attempts = 100;
    for (int attempt = 1;; ++attempt) {
        GError* error = nullptr;
        EClient* const client = e_cal_client_connect_sync(source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS,
                                                          withoutWaiting, nullptr, &error);
        if (client != nullptr || attempt == attempts) {
            check(error, "connect");
            return client;
        }
        g_clear_error(&error);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

GVariant* askBus(const char* method, GVariant* parameters) {
    GError* error = nullptr;
    const ObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error));
    check(error, "bus");
    return g_dbus_connection_call_sync(bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", method, parameters, nullptr,
                                       G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
}

std::vector<std::string> namesOnBus(const std::string& prefix) {
    std::vector<std::string> names;
    GVariant* const answer = askBus("ListNames", nullptr);
    GVariantIter* all = nullptr;
    const char* name = nullptr;
    g_variant_get(answer, "(as)", &all);
    while (g_variant_iter_next(all, "&s", &name) != FALSE) {
        if (std::string(name).starts_with(prefix)) {
            names.emplace_back(name);
        }
    }
    g_variant_iter_free(all);
    g_variant_unref(answer);
    return names;
}

std::vector<pid_t> processesOf(const std::string& prefix) {
    std::vector<pid_t> processes;
    for (const std::string& name : namesOnBus(prefix)) {
        GVariant* const answer =
            askBus("GetConnectionUnixProcessID", g_variant_new("(s)", name.c_str()));
        if (answer != nullptr) {
            guint32 process = 0;
            g_variant_get(answer, "(u)", &process);
            g_variant_unref(answer);
            processes.push_back(static_cast<pid_t>(process));
        }
    }
    return processes;
}

bool eventually(const std::function<bool()>& happened) {
    for (int i = 0; i < 500; ++i) {
        if (happened()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

} // namespace

std::string eventText(std::string lines) {
    std::string text = "BEGIN:VEVENT\r\nDTSTAMP:20260101T000000Z\r\n";
    for (const char letter : lines) {
        text += letter == '|' ? "\r\n" : std::string(1, letter);
    }
    return text + "\r\nEND:VEVENT\r\n";
}

std::vector<pid_t> registryProcess() {
    return processesOf("org.gnome.evolution.dataserver.Sources");
}

std::vector<pid_t> factoryProcesses() {
    std::vector<pid_t> processes = processesOf("org.gnome.evolution.dataserver.Calendar");
    for (const pid_t process : processesOf("org.gnome.evolution.dataserver.Subprocess")) {
        processes.push_back(process);
    }
    return processes;
}

ServerTest::ServerTest() = default;

ServerTest::~ServerTest() {
    goOn();
    m_clients.clear(); // which may be those of a server that is dead
    while (!m_made.empty()) {
        removeCalendar(std::string(m_made.back()));
    }
}

// A registry that was killed leaves this one behind.
ESourceRegistry* ServerTest::registry() {
    GError* error = nullptr;
    m_registry.reset(e_source_registry_new_sync(nullptr, &error));
    check(error, "registry");
    return m_registry.get();
}

void ServerTest::addCalendar(const NewCalendar& calendar) {
    GError* error = nullptr;
    const ObjectHandle<ESource> source(
        e_source_new_with_uid(calendar.identifier.c_str(), nullptr, &error));
    check(error, "source");
    e_source_set_display_name(source.get(), calendar.title.c_str());
    e_source_set_parent(source.get(), "local-stub");
    e_source_set_enabled(source.get(), calendar.isEnabled ? TRUE : FALSE);
    gpointer const extension = e_source_get_extension(source.get(), E_SOURCE_EXTENSION_CALENDAR);
    e_source_backend_set_backend_name(E_SOURCE_BACKEND(extension), "local");
    e_source_selectable_set_color(E_SOURCE_SELECTABLE(extension), calendar.colour.c_str());
    e_source_selectable_set_selected(E_SOURCE_SELECTABLE(extension),
                                     calendar.isSelected ? TRUE : FALSE);
    e_source_registry_commit_source_sync(registry(), source.get(), nullptr, &error);
    check(error, "commit");
    m_made.push_back(calendar.identifier);
    eventually([&] {
        const ObjectHandle<ESource> known(
            e_source_registry_ref_source(registry(), calendar.identifier.c_str()));
        return known != nullptr;
    });
}

void ServerTest::changeCalendar(const std::string& identifier,
                                const std::function<void(ESource*)>& change) {
    const ObjectHandle<ESource> source(
        e_source_registry_ref_source(registry(), identifier.c_str()));
    change(source.get());
    GError* error = nullptr;
    e_source_write_sync(source.get(), nullptr, &error);
    check(error, "write");
}

// The server would find them again in a calendar of the same identifier.
void ServerTest::removeEvents(const std::string& calendar) {
    GSList* list = nullptr;
    GError* error = nullptr;
    e_cal_client_get_object_list_sync(client(calendar), "#t", &list, nullptr, &error);
    const freedesktop::ObjectListHandle<GSList> events(list);
    check(error, "list");
    std::set<std::string> identifiers;
    for (const GSList* entry = list; entry != nullptr; entry = entry->next) {
        identifiers.insert(i_cal_component_get_uid(I_CAL_COMPONENT(entry->data)));
    }
    for (const std::string& identifier : identifiers) {
        remove(calendar, identifier);
    }
}

void ServerTest::removeCalendar(const std::string& identifier) {
    removeEvents(identifier);
    m_clients.erase(identifier);
    std::erase(m_made, identifier);
    const ObjectHandle<ESource> source(
        e_source_registry_ref_source(registry(), identifier.c_str()));
    if (source) {
        GError* error = nullptr;
        e_source_remove_sync(source.get(), nullptr, &error);
        check(error, "remove");
    }
}

ECalClient* ServerTest::client(const std::string& calendar) {
    auto& known = m_clients[calendar];
    if (!known) {
        const ObjectHandle<ESource> source(
            e_source_registry_ref_source(registry(), calendar.c_str()));
        known.reset(E_CAL_CLIENT(connect(source.get())));
    }
    return known.get();
}

void ServerTest::add(const std::string& calendar, const std::string& event) {
    const ObjectHandle<ICalComponent> component(i_cal_component_new_from_string(event.c_str()));
    GError* error = nullptr;
    e_cal_client_create_object_sync(client(calendar), component.get(), E_CAL_OPERATION_FLAG_NONE,
                                    nullptr, nullptr, &error);
    check(error, "create");
}

void ServerTest::addZone(const std::string& calendar, const std::string& definition) {
    const ObjectHandle<ICalComponent> component(
        i_cal_component_new_from_string(definition.c_str()));
    const ObjectHandle<ICalTimezone> zone(i_cal_timezone_new());
    i_cal_timezone_set_component(zone.get(), component.get());
    GError* error = nullptr;
    e_cal_client_add_timezone_sync(client(calendar), zone.get(), nullptr, &error);
    check(error, "zone");
}

void ServerTest::modify(const std::string& calendar, const std::string& event,
                        ECalObjModType what) {
    const ObjectHandle<ICalComponent> component(i_cal_component_new_from_string(event.c_str()));
    GError* error = nullptr;
    e_cal_client_modify_object_sync(client(calendar), component.get(), what,
                                    E_CAL_OPERATION_FLAG_NONE, nullptr, &error);
    check(error, "modify");
}

void ServerTest::remove(const std::string& calendar, const std::string& uid) {
    GError* error = nullptr;
    e_cal_client_remove_object_sync(client(calendar), uid.c_str(), nullptr, E_CAL_OBJ_MOD_ALL,
                                    E_CAL_OPERATION_FLAG_NONE, nullptr, &error);
    check(error, "remove");
}

void ServerTest::disconnect() {
    m_clients.clear();
}

void ServerTest::stop(const std::vector<pid_t>& processes) {
    for (const pid_t process : processes) {
        ::kill(process, SIGSTOP);
        m_stopped.push_back(process);
    }
}

void ServerTest::goOn() {
    for (const pid_t process : m_stopped) {
        ::kill(process, SIGCONT);
    }
    m_stopped.clear();
}

void ServerTest::kill(const std::vector<pid_t>& processes) {
    m_clients.clear();
    m_registry.reset();
    for (const pid_t process : processes) {
        ::kill(process, SIGKILL);
    }
    eventually([&] {
        std::vector<pid_t> left = registryProcess();
        const std::vector<pid_t> factories = factoryProcesses();
        left.insert(left.end(), factories.begin(), factories.end());
        return std::none_of(processes.begin(), processes.end(), [&](pid_t process) {
            return std::find(left.begin(), left.end(), process) != left.end();
        });
    });
}

} // namespace quorvel::testing_eds
