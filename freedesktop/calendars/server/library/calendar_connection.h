// The connection to one calendar of the server, kept for as long as the calendar is there.
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

// The answers of several calendars to one question. For several threads: a mutex guards all of it.
class EventsReply {
public:
    explicit EventsReply(std::size_t expected)
        : m_expected(expected) {}

    // What is there when all are, or at the deadline.
    std::vector<CalendarEvents> wait(Deadline deadline);
    // False where it comes too late.
    bool deliver(CalendarEvents events);
    bool isGivenUp() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_complete;
    std::size_t m_expected;
    std::vector<CalendarEvents> m_answers;
    bool m_isGivenUp = false;
};

// Belongs to the worker's thread. Other threads may hold it and post to its mailbox, which does not
// change, and nothing else.
class CalendarConnection : public std::enable_shared_from_this<CalendarConnection> {
public:
    struct Events {
        std::function<void()> changed; // the calendar, or what is known of it
        std::function<void()> died;    // the server's side of it
    };
    CalendarConnection(ObjectHandle<ESource> source, Mailbox mailbox, Events events);
    ~CalendarConnection();
    CalendarConnection(const CalendarConnection&) = delete;
    CalendarConnection& operator=(const CalendarConnection&) = delete;

    // Connects where it is not connected. A question that is asked while another one waits takes
    // its place.
    void ask(SearchedRange range, std::shared_ptr<EventsReply> reply);
    // Hears of changes from the next question on. What has been answered since then is remembered
    // until something changes.
    void setFollowing(bool follows);
    // Gives up everything, and does nothing from here on.
    void close();
    // Nothing of it runs on another thread.
    bool isIdle() const { return !m_isBusy; }

private:
    struct Question {
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
    void doBeside(std::function<void()> work, std::function<void()> done);
    void fetch();
    void fetched(FetchedEvents events, ZoneTexts zones, bool isStale);
    void failed(const std::string& problem);
    void answer(Outcome outcome, std::shared_ptr<const std::string> text, std::string problem);
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
    bool m_isFollowing = false;
    bool m_hasTriedView = false; // with this client
    bool m_isBusy = false;
    bool m_isClosed = false;
    int m_changes = 0; // how often the server has told of one
    std::optional<Question> m_current;
    std::optional<Question> m_next;
    struct Known {
        SearchedRange range;
        std::shared_ptr<const std::string> text;
    };
    std::optional<Known> m_known; // still right, as the view has told nothing else
};

} // namespace quorvel::freedesktop::eds
