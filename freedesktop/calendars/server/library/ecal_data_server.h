// The calendar server, by way of its own library.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <libecal/libecal.h>

#include "freedesktop/calendars/server/data_server.h"
#include "freedesktop/calendars/server/library/calendar_connection.h"
#include "freedesktop/calendars/server/library/worker_loop.h"
#include "freedesktop/calendars/server/reply.h"
#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop::eds {

// The registry of the calendars and the connections to them. Belongs to the worker's thread.
class ServerConnection : public std::enable_shared_from_this<ServerConnection> {
public:
    ServerConnection(std::string sourcesService, Mailbox mailbox);
    ~ServerConnection();
    ServerConnection(const ServerConnection&) = delete;
    ServerConnection& operator=(const ServerConnection&) = delete;

    // The first step to a list. list() takes it where it was not taken.
    void openRegistry();
    void list(std::shared_ptr<Reply<ServerResult<CalendarList>>> reply);
    void requestEvents(const std::vector<std::string>& calendars, SearchedRange range,
                       const std::shared_ptr<EventsReply>& reply);
    void setChangedHandler(std::function<void()> onChanged);

    // Cancels everything and ignores all further calls. Calls onClosed when no other thread works
    // for it.
    void close(std::function<void()> onClosed);

private:
    void registryOpened(ObjectHandle<ESourceRegistry> registry, const ErrorHandle& error);
    void closeRegistry();
    void startService() const;
    bool hasSources() const;
    void answerWaiting();
    void watchRegistry();
    void watchService();
    void serviceVanished();
    void serverDied();
    void sourcesChanged();
    std::vector<ServerCalendar> enabledCalendars() const;
    void closeConnectionsExcept(const std::vector<ServerCalendar>& calendars);
    std::shared_ptr<CalendarConnection> connectionTo(const std::string& calendar);
    bool isIdle() const;
    void closeWhenIdle();
    void reportChange() const;

    std::string m_sourcesService;
    Mailbox m_mailbox;
    ObjectHandle<GCancellable> m_cancellable;
    ObjectHandle<ESourceRegistry> m_registry; // null: not open
    std::vector<gulong> m_registryHandlers;
    bool m_isOpening = false;
    bool m_hasServiceDied = false; // and was not started since
    guint m_serviceWatch = 0;      // 0: none
    std::vector<std::shared_ptr<Reply<ServerResult<CalendarList>>>> m_waitingReplies;
    std::vector<ServerCalendar> m_listed; // by the last list()
    std::map<std::string, std::shared_ptr<CalendarConnection>> m_connections;
    std::vector<std::shared_ptr<CalendarConnection>> m_closing; // closed, but not idle yet
    std::function<void()> m_onChanged;
    bool m_isDeathPending = false;
    std::optional<double> m_lastDeath; // seconds of the monotonic clock
    std::function<void()> m_onClosed;  // null: it was not closed
};

// Belongs to the thread that made it, which posts to the worker's thread and waits for replies that
// mutexes guard.
class EcalDataServer final : public DataServer {
public:
    explicit EcalDataServer(std::string sourcesService);
    ~EcalDataServer() override;

    ServerResult<CalendarList> calendars(Deadline deadline) override;
    std::vector<CalendarEvents> events(const std::vector<std::string>& calendars,
                                       SearchedRange range, Deadline deadline) override;
    void setChangedHandler(std::function<void()> onChanged) override;

private:
    WorkerLoop m_worker;
    std::shared_ptr<ServerConnection> m_connection; // used on the worker's thread alone
};

} // namespace quorvel::freedesktop::eds
