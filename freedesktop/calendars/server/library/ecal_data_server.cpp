#include "freedesktop/calendars/server/library/ecal_data_server.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "freedesktop/calendars/server/library/posted_signal.h"
#include "freedesktop/glib/weak_reference.h"

namespace quorvel::freedesktop::eds {

namespace {

constexpr double longestClosing = 1;      // seconds
constexpr double pollingInterval = 0.005; // seconds
// The death of a process is reported after a pause, as the server's other processes may die with
// it, and less often where they die repeatedly.
constexpr double pauseAfterDeath = 0.5;   // seconds
constexpr double pauseBetweenDeaths = 10; // seconds

using Self = std::shared_ptr<ServerConnection>;

ServerCalendar describe(ESource* source) {
    auto* const calendar =
        E_SOURCE_SELECTABLE(e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR));
    const TextHandle identifier(e_source_dup_uid(source));
    const TextHandle title(e_source_dup_display_name(source));
    const TextHandle colour(e_source_selectable_dup_color(calendar));
    return {identifier.get(), title ? title.get() : "", colour ? colour.get() : "",
            e_source_selectable_get_selected(calendar) != FALSE};
}

} // namespace

ServerConnection::ServerConnection(std::string sourcesService, Mailbox mailbox)
    : m_sourcesService(std::move(sourcesService))
    , m_mailbox(std::move(mailbox))
    , m_cancellable(g_cancellable_new()) {}

ServerConnection::~ServerConnection() {
    closeRegistry();
}

void ServerConnection::list(std::shared_ptr<Reply<ServerResult<CalendarList>>> reply) {
    m_waitingReplies.push_back(std::move(reply));
    if (m_registry && !hasSources()) {
        closeRegistry();
        m_hasServiceDied = true;
    }
    if (m_registry) {
        answerWaiting();
    } else {
        openRegistry();
    }
}

// A registry without any is that of a service that has died.
bool ServerConnection::hasSources() const {
    const ObjectListHandle<GList> sources(
        e_source_registry_list_sources(m_registry.get(), nullptr));
    return sources != nullptr;
}

void ServerConnection::answerWaiting() {
    if (!m_registry || m_waitingReplies.empty()) {
        return;
    }
    if (!hasSources()) {
        m_mailbox.postLater(pollingInterval, [weak = weak_from_this()] {
            if (const Self self = weak.lock()) {
                self->answerWaiting();
            }
        });
        return;
    }
    m_listed = enabledCalendars();
    closeConnectionsExcept(m_listed);
    bool isAnyLate = false;
    for (const auto& waiting : std::exchange(m_waitingReplies, {})) {
        isAnyLate = !waiting->deliver(m_listed) || isAnyLate;
    }
    if (isAnyLate) {
        reportChange();
    }
}

void ServerConnection::openRegistry() {
    if (std::exchange(m_isOpening, true)) {
        return;
    }
    const GAsyncReadyCallback call = [](GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Self> self(static_cast<Self*>(data));
        GError* error = nullptr;
        ESourceRegistry* const registry = e_source_registry_new_finish(result, &error);
        (*self)->m_isOpening = false;
        (*self)->registryOpened(ObjectHandle<ESourceRegistry>(registry), ErrorHandle(error));
    };
    if (std::exchange(m_hasServiceDied, false)) {
        startService();
    }
    e_source_registry_new(m_cancellable.get(), call, new Self(shared_from_this()));
}

// Needed where another part of the process still holds the registry of the dead service.
void ServerConnection::startService() const {
    const ObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (bus) {
        constexpr guint32 noFlags = 0;
        constexpr int standardTime = -1;
        g_dbus_connection_call(bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus", "StartServiceByName",
                               g_variant_new("(su)", m_sourcesService.c_str(), noFlags), nullptr,
                               G_DBUS_CALL_FLAGS_NONE, standardTime, nullptr, nullptr, nullptr);
    }
}

void ServerConnection::registryOpened(ObjectHandle<ESourceRegistry> registry,
                                      const ErrorHandle& error) {
    if (m_onClosed) {
        return;
    }
    if (!registry) {
        for (const auto& reply : std::exchange(m_waitingReplies, {})) {
            reply->deliver(ServerFailure{ServerFailure::Kind::failed,
                                         {translatable("it does not start: {1}"),
                                          {TranslatableText::verbatim(messageOf(error))}}});
        }
        return;
    }
    m_registry = std::move(registry);
    watchRegistry();
    watchService();
    answerWaiting();
}

// The process has one registry. It emits its signals on the thread that asked for it first.
void ServerConnection::watchRegistry() {
    const auto changed = [weak = weak_from_this()] {
        if (const Self self = weak.lock()) {
            self->sourcesChanged();
        }
    };
    for (const char* const signal : {"source-added", "source-changed", "source-removed",
                                     "source-enabled", "source-disabled"}) {
        m_registryHandlers.push_back(connectPosted(m_registry.get(), signal, m_mailbox, changed));
    }
}

// The registry would wait for a service that has died, which starts only on a request.
void ServerConnection::watchService() {
    const GBusNameVanishedCallback vanished = [](GDBusConnection*, const char*, gpointer data) {
        if (const Self self = lockWeakReference<ServerConnection>(data)) {
            self->serviceVanished();
        }
    };
    m_serviceWatch = g_bus_watch_name(
        G_BUS_TYPE_SESSION, m_sourcesService.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr,
        vanished, newWeakReference(weak_from_this()), freeWeakReference<ServerConnection>);
}

// Opens a new registry for the threads that still wait for the list.
void ServerConnection::serviceVanished() {
    closeRegistry();
    m_hasServiceDied = true;
    serverDied();
    std::erase_if(m_waitingReplies, [](const auto& reply) { return reply->isAbandoned(); });
    if (!m_waitingReplies.empty()) {
        openRegistry();
    }
}

void ServerConnection::closeRegistry() {
    if (m_serviceWatch != 0) {
        g_bus_unwatch_name(std::exchange(m_serviceWatch, 0));
    }
    if (m_registry) {
        for (const gulong handler : std::exchange(m_registryHandlers, {})) {
            g_signal_handler_disconnect(m_registry.get(), handler);
        }
        m_registry.reset();
    }
}

// The next request restarts the server.
void ServerConnection::serverDied() {
    if (std::exchange(m_isDeathPending, true)) {
        return;
    }
    const double now = static_cast<double>(g_get_monotonic_time()) / G_USEC_PER_SEC;
    const double pause = m_lastDeath && now - *m_lastDeath < pauseBetweenDeaths ? pauseBetweenDeaths
                                                                                : pauseAfterDeath;
    m_lastDeath = now;
    m_mailbox.postLater(pause, [weak = weak_from_this()] {
        if (const Self self = weak.lock()) {
            self->m_isDeathPending = false;
            self->reportChange();
        }
    });
}

void ServerConnection::sourcesChanged() {
    if (m_registry && enabledCalendars() != m_listed) {
        reportChange();
    }
}

std::vector<ServerCalendar> ServerConnection::enabledCalendars() const {
    const ObjectListHandle<GList> sources(
        e_source_registry_list_enabled(m_registry.get(), E_SOURCE_EXTENSION_CALENDAR));
    std::vector<ServerCalendar> calendars;
    for (const GList* entry = sources.get(); entry != nullptr; entry = entry->next) {
        calendars.push_back(describe(E_SOURCE(entry->data)));
    }
    std::sort(calendars.begin(), calendars.end(), [](const auto& one, const auto& other) {
        return std::tie(one.title, one.identifier) < std::tie(other.title, other.identifier);
    });
    return calendars;
}

void ServerConnection::closeConnectionsExcept(const std::vector<ServerCalendar>& calendars) {
    for (auto entry = m_connections.begin(); entry != m_connections.end();) {
        const bool isListed =
            std::any_of(calendars.begin(), calendars.end(), [&](const ServerCalendar& calendar) {
                return calendar.identifier == entry->first;
            });
        if (isListed) {
            ++entry;
        } else {
            entry->second->close();
            m_closing.push_back(std::move(entry->second));
            entry = m_connections.erase(entry);
        }
    }
    std::erase_if(m_closing, [](const auto& connection) { return connection->isIdle(); });
}

// Null where the server has no such calendar.
std::shared_ptr<CalendarConnection> ServerConnection::connectionTo(const std::string& calendar) {
    const auto known = m_connections.find(calendar);
    if (known != m_connections.end()) {
        return known->second;
    }
    ESource* const source =
        m_registry ? e_source_registry_ref_source(m_registry.get(), calendar.c_str()) : nullptr;
    if (source == nullptr) {
        return nullptr;
    }
    const std::weak_ptr<ServerConnection> weak = weak_from_this();
    auto connection = std::make_shared<CalendarConnection>(
        ObjectHandle<ESource>(source), m_mailbox,
        CalendarConnection::Events{[weak] {
                                       if (const Self self = weak.lock()) {
                                           self->reportChange();
                                       }
                                   },
                                   [weak] {
                                       if (const Self self = weak.lock()) {
                                           self->serverDied();
                                       }
                                   }});
    connection->setWatched(static_cast<bool>(m_onChanged));
    m_connections.emplace(calendar, connection);
    return connection;
}

void ServerConnection::requestEvents(const std::vector<std::string>& calendars, SearchedRange range,
                                     const std::shared_ptr<EventsReply>& reply) {
    for (const std::string& calendar : calendars) {
        if (const auto connection = connectionTo(calendar)) {
            connection->request(range, reply);
        } else {
            reply->deliver({calendar, ServerFailure{ServerFailure::Kind::failed,
                                                    translatable("the server no longer has it")}});
        }
    }
}

void ServerConnection::setChangedHandler(std::function<void()> onChanged) {
    m_onChanged = std::move(onChanged);
    for (const auto& [identifier, connection] : m_connections) {
        connection->setWatched(static_cast<bool>(m_onChanged));
    }
}

void ServerConnection::reportChange() const {
    if (m_onChanged && !m_onClosed) {
        m_onChanged();
    }
}

void ServerConnection::close(std::function<void()> onClosed) {
    m_onClosed = std::move(onClosed);
    m_waitingReplies.clear();
    g_cancellable_cancel(m_cancellable.get());
    closeRegistry();
    closeConnectionsExcept({});
    closeWhenIdle();
}

bool ServerConnection::isIdle() const {
    return !m_isOpening && std::all_of(m_closing.begin(), m_closing.end(),
                                       [](const auto& closing) { return closing->isIdle(); });
}

void ServerConnection::closeWhenIdle() {
    if (isIdle()) {
        m_closing.clear();
        m_onClosed();
    } else {
        m_mailbox.postLater(pollingInterval,
                            [self = shared_from_this()] { self->closeWhenIdle(); });
    }
}

EcalDataServer::EcalDataServer(std::string sourcesService)
    : m_connection(
          std::make_shared<ServerConnection>(std::move(sourcesService), m_worker.mailbox())) {
    m_worker.mailbox().post([connection = m_connection] { connection->openRegistry(); });
}

// A thread that the library does not return from is abandoned.
EcalDataServer::~EcalDataServer() {
    const auto quit = [this] { m_worker.quit(); };
    m_worker.mailbox().post([connection = m_connection, quit] { connection->close(quit); });
    m_worker.mailbox().postLater(longestClosing, quit);
}

ServerResult<CalendarList> EcalDataServer::calendars(Deadline deadline) {
    auto reply = std::make_shared<Reply<ServerResult<CalendarList>>>();
    m_worker.mailbox().post([connection = m_connection, reply] { connection->list(reply); });
    return reply->wait(deadline).value_or(ServerFailure());
}

std::vector<CalendarEvents> EcalDataServer::events(const std::vector<std::string>& calendars,
                                                   SearchedRange range, Deadline deadline) {
    auto reply = std::make_shared<EventsReply>(calendars.size());
    m_worker.mailbox().post([connection = m_connection, calendars, range, reply] {
        connection->requestEvents(calendars, range, reply);
    });
    std::vector<CalendarEvents> answers = reply->wait(deadline);
    std::vector<CalendarEvents> events;
    for (const std::string& calendar : calendars) {
        const auto found =
            std::find_if(answers.begin(), answers.end(),
                         [&](const CalendarEvents& one) { return one.calendar == calendar; });
        events.push_back(found != answers.end() ? std::move(*found)
                                                : CalendarEvents{calendar, ServerFailure()});
    }
    return events;
}

void EcalDataServer::setChangedHandler(std::function<void()> onChanged) {
    m_worker.mailbox().post([connection = m_connection, onChanged = std::move(onChanged)] {
        connection->setChangedHandler(onChanged);
    });
}

} // namespace quorvel::freedesktop::eds
