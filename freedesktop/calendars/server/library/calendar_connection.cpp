#include "freedesktop/calendars/server/library/calendar_connection.h"

#include <system_error>
#include <thread>
#include <utility>

#include "freedesktop/calendars/server/library/posted_signal.h"

namespace quorvel::freedesktop::eds {

namespace {

// The library does not wait for the network: the events that the server has stored are enough.
constexpr auto withoutWaiting = static_cast<guint32>(-1);

using Self = std::shared_ptr<CalendarConnection>;

bool wasCancelled(const ErrorHandle& error) {
    return error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
}

// A call of the library shares the ownership of the connection until its callback.
gpointer holdUntilCallback(Self self) {
    return new Self(std::move(self));
}

Self releaseHeld(gpointer data) {
    const std::unique_ptr<Self> held(static_cast<Self*>(data));
    return std::move(*held);
}

} // namespace

std::vector<CalendarEvents> EventsReply::wait(Deadline deadline) {
    std::unique_lock lock(m_mutex);
    m_complete.wait_until(lock, deadline, [this] { return m_answers.size() >= m_expected; });
    m_isAbandoned = true;
    return std::move(m_answers);
}

bool EventsReply::deliver(CalendarEvents events) {
    const std::lock_guard lock(m_mutex);
    if (m_isAbandoned) {
        return false;
    }
    m_answers.push_back(std::move(events));
    if (m_answers.size() >= m_expected) {
        m_complete.notify_one();
    }
    return true;
}

bool EventsReply::isAbandoned() const {
    const std::lock_guard lock(m_mutex);
    return m_isAbandoned;
}

CalendarConnection::CalendarConnection(ObjectHandle<ESource> source, Mailbox mailbox, Events events)
    : m_identifier(e_source_get_uid(source.get()))
    , m_source(std::move(source))
    , m_mailbox(std::move(mailbox))
    , m_events(std::move(events))
    , m_cancellable(g_cancellable_new()) {}

CalendarConnection::~CalendarConnection() {
    disconnect();
}

void CalendarConnection::request(SearchedRange range, std::shared_ptr<EventsReply> reply) {
    m_next = EventsRequest{range, std::move(reply)};
    advance();
}

void CalendarConnection::setWatched(bool isWatched) {
    m_isWatched = isWatched;
    if (!isWatched) {
        stopView();
    }
}

void CalendarConnection::close() {
    m_isClosed = true;
    m_next.reset();
    m_current.reset();
    g_cancellable_cancel(m_cancellable.get());
    disconnect();
}

// Takes the next step: connect, watch the calendar, answer a request.
void CalendarConnection::advance() {
    if (m_isBusy || m_isClosed) {
        return;
    }
    if (!m_current) {
        if (!m_next) {
            return;
        }
        m_current = std::exchange(m_next, std::nullopt);
    }
    if (!m_client) {
        connect();
    } else if (m_isWatched && !m_view && !std::exchange(m_hasTriedView, true)) {
        startView();
    } else if (m_view && m_cached && m_cached->range.from <= m_current->range.from &&
               m_cached->range.to >= m_current->range.to) {
        answer(m_cached->text);
    } else {
        fetch();
    }
}

void CalendarConnection::connect() {
    m_isBusy = true;
    const GAsyncReadyCallback call = [](GObject*, GAsyncResult* result, gpointer data) {
        const Self self = releaseHeld(data);
        GError* error = nullptr;
        EClient* const client = e_cal_client_connect_finish(result, &error);
        self->m_isBusy = false;
        self->connected(
            ObjectHandle<ECalClient>(client != nullptr ? E_CAL_CLIENT(client) : nullptr),
            ErrorHandle(error));
    };
    e_cal_client_connect(m_source.get(), E_CAL_CLIENT_SOURCE_TYPE_EVENTS, withoutWaiting,
                         m_cancellable.get(), call, holdUntilCallback(shared_from_this()));
}

void CalendarConnection::connected(ObjectHandle<ECalClient> client, const ErrorHandle& error) {
    if (m_isClosed) {
        return;
    }
    if (!client) {
        failed(messageOf(error));
        return;
    }
    m_client = std::move(client);
    m_hasTriedView = false;
    watchServer();
    advance();
}

// By a weak pointer: another thread may hold the last reference when the library reports the death.
void CalendarConnection::watchServer() {
    const auto died = [weak = weak_from_this(), client = m_client.get()] {
        const Self self = weak.lock();
        if (self && self->m_client.get() == client) {
            self->disconnect();
            self->m_events.died();
        }
    };
    m_deathHandler = connectPosted(m_client.get(), "backend-died", m_mailbox, died);
}

// A view of all events. It notifies of changes only, not of the events that exist already.
void CalendarConnection::startView() {
    m_isBusy = true;
    const GAsyncReadyCallback call = [](GObject* client, GAsyncResult* result, gpointer data) {
        const Self self = releaseHeld(data);
        ECalClientView* view = nullptr;
        GError* error = nullptr;
        e_cal_client_get_view_finish(E_CAL_CLIENT(client), result, &view, &error);
        const ErrorHandle held(error);
        self->m_isBusy = false;
        self->viewMade(ObjectHandle<ECalClientView>(view));
    };
    e_cal_client_get_view(m_client.get(), "#t", m_cancellable.get(), call,
                          holdUntilCallback(shared_from_this()));
}

// The view's calls wait for the server, and its signals come on the program's main thread.
void CalendarConnection::viewMade(ObjectHandle<ECalClientView> view) {
    if (!view || !m_client || !m_isWatched || m_isClosed) {
        advance();
        return;
    }
    m_view = std::move(view);
    const auto changed = [weak = weak_from_this(), view = m_view.get()] {
        const Self self = weak.lock();
        if (self && self->m_view.get() == view) {
            self->changedOnServer();
        }
    };
    for (const char* const signal : {"objects-added", "objects-modified", "objects-removed"}) {
        m_viewHandlers.push_back(connectPosted(m_view.get(), signal, m_mailbox, changed));
    }
    const std::shared_ptr<ECalClientView> held = share(m_view.get());
    runOnOtherThread(
        [held] {
            e_cal_client_view_set_flags(held.get(), E_CAL_CLIENT_VIEW_FLAGS_NONE, nullptr);
            e_cal_client_view_start(held.get(), nullptr);
        },
        [this] { advance(); });
}

void CalendarConnection::stopView() {
    if (m_view) {
        for (const gulong handler : std::exchange(m_viewHandlers, {})) {
            g_signal_handler_disconnect(m_view.get(), handler);
        }
        m_view.reset();
    }
    m_cached.reset();
    m_hasTriedView = false;
}

void CalendarConnection::changedOnServer() {
    ++m_changes;
    m_cached.reset();
    m_events.changed();
}

// Runs the work on a thread of its own, which a server that hangs may block for minutes, and what
// follows on the worker's thread.
void CalendarConnection::runOnOtherThread(std::function<void()> work,
                                          std::function<void()> whenDone) {
    m_isBusy = true;
    const auto run = [self = shared_from_this(), work = std::move(work),
                      whenDone = std::move(whenDone)] {
        work();
        self->m_mailbox.post([self, whenDone] {
            self->m_isBusy = false;
            whenDone();
        });
    };
    try {
        std::thread(run).detach();
    } catch (const std::system_error& error) {
        m_isBusy = false;
        failed(error.what());
    }
}

void CalendarConnection::fetch() {
    struct Work {
        ObjectHandle<ECalClient> client;
        ObjectHandle<GCancellable> cancellable;
        SearchedRange range;
        ZoneTexts zones;
        int changesBefore;
        FetchedEvents events;
    };
    const auto work =
        std::make_shared<Work>(Work{share(m_client.get()), share(m_cancellable.get()),
                                    m_current->range, m_zones, m_changes, FetchedEvents()});
    runOnOtherThread(
        [work] {
            work->events = fetchEvents(*work->client, work->range, work->zones, *work->cancellable);
        },
        [this, work] {
            fetched(std::move(work->events), std::move(work->zones),
                    work->changesBefore != m_changes);
        });
}

void CalendarConnection::fetched(FetchedEvents events, ZoneTexts zones, bool isStale) {
    m_zones = std::move(zones);
    if (m_isClosed || !m_current) {
        return;
    }
    if (!events.error) {
        std::shared_ptr<const std::string> text =
            std::make_shared<const std::string>(std::move(events.text));
        if (m_view && !isStale) {
            m_cached = CachedAnswer{m_current->range, text};
        }
        answer(std::move(text));
    } else if (!wasCancelled(events.error) && !std::exchange(m_current->isSecondTry, true)) {
        disconnect(); // the server may have been restarted
        advance();
    } else {
        failed(messageOf(events.error));
    }
}

void CalendarConnection::failed(const std::string& problem) {
    disconnect();
    answer(ServerFailure{
        ServerFailure::Kind::failed,
        {translatable("it cannot be read: {1}"), {TranslatableText::verbatim(problem)}}});
}

void CalendarConnection::answer(ServerResult<std::shared_ptr<const std::string>> text) {
    const EventsRequest request = std::move(*m_current);
    m_current.reset();
    const bool hasAnswer = text.hasValue();
    const bool isInTime = request.reply->deliver({m_identifier, std::move(text)});
    if (m_next && m_next->reply->isAbandoned()) {
        m_next.reset();
    }
    if (!isInTime && !m_next && hasAnswer) {
        m_events.changed();
    }
    advance();
}

void CalendarConnection::disconnect() {
    stopView();
    if (m_client) {
        g_signal_handler_disconnect(m_client.get(), std::exchange(m_deathHandler, 0));
        m_client.reset();
    }
}

} // namespace quorvel::freedesktop::eds
