// The connection to one calendar of the server, open for as long as the server has the calendar.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <libecal/libecal.h>

#include "freedesktop/calendars/server/data_server.h"
#include "freedesktop/calendars/server/library/event_query.h"
#include "freedesktop/calendars/server/library/worker_loop.h"
#include "freedesktop/calendars/server/reply.h"
#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop::eds {

// The answers of several calendars to one request. For several threads: a mutex guards everything.
class EventsReply {
public:
    explicit EventsReply(std::size_t expected)
        : m_expected(expected) {}

    // The answers, as soon as all have come, or those that have come at the deadline.
    std::vector<CalendarEvents> wait(Deadline deadline);
    // False where the wait is over.
    bool deliver(CalendarEvents events);
    bool isAbandoned() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_complete;
    std::size_t m_expected;
    std::vector<CalendarEvents> m_answers;
    bool m_isAbandoned = false;
};

// Belongs to the worker's thread. Other threads may share its ownership and post to its mailbox,
// which does not change, and nothing else.
class CalendarConnection : public std::enable_shared_from_this<CalendarConnection> {
public:
    struct Events {
        std::function<void()> changed; // the calendar changed, or a late answer has come
        std::function<void()> died;    // the server's process for this calendar
    };
    CalendarConnection(ObjectHandle<ESource> source, Mailbox mailbox, Events events);
    ~CalendarConnection();
    CalendarConnection(const CalendarConnection&) = delete;
    CalendarConnection& operator=(const CalendarConnection&) = delete;

    // Connects first where that is needed. A request that waits is replaced by a later one.
    void request(SearchedRange range, std::shared_ptr<EventsReply> reply);
    // Whether changes are reported from the next request on. Answers are cached until a change.
    void setWatched(bool isWatched);
    // Cancels everything, and ignores all further calls.
    void close();
    // No other thread works for it.
    bool isIdle() const { return !m_isBusy; }

private:
    struct EventsRequest {
        SearchedRange range;
        std::shared_ptr<EventsReply> reply; // never null
        bool isSecondTry = false;
    };

    void advance();
    void connect();
    void connected(ObjectHandle<ECalClient> client, const ErrorHandle& error);
    void watchServer();
    void startView();
    void viewMade(ObjectHandle<ECalClientView> view);
    void stopView();
    void runOnOtherThread(std::function<void()> work, std::function<void()> whenDone);
    void fetch();
    void fetched(FetchedEvents events, ZoneTexts zones, bool isStale);
    void failed(const std::string& problem);
    void answer(ServerResult<std::shared_ptr<const std::string>> text);
    void disconnect();
    void changedOnServer();

    std::string m_identifier;
    ObjectHandle<ESource> m_source;
    Mailbox m_mailbox;
    Events m_events;
    ObjectHandle<GCancellable> m_cancellable;
    ObjectHandle<ECalClient> m_client; // null: not connected
    gulong m_deathHandler = 0;         // of the client
    ObjectHandle<ECalClientView> m_view;
    std::vector<gulong> m_viewHandlers;
    ZoneTexts m_zones;
    bool m_isWatched = false;
    bool m_hasTriedView = false; // with this client
    bool m_isBusy = false;
    bool m_isClosed = false;
    int m_changes = 0; // that the server has reported
    std::optional<EventsRequest> m_current;
    std::optional<EventsRequest> m_next;
    struct CachedAnswer {
        SearchedRange range;
        std::shared_ptr<const std::string> text;
    };
    std::optional<CachedAnswer> m_cached; // until the view reports a change
};

} // namespace quorvel::freedesktop::eds
