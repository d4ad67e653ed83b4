#include "freedesktop/calendars/server/library/calendar_connection.h"

#include <system_error>
#include <thread>
#include <utility>

#include "freedesktop/calendars/server/library/posted_signal.h"

namespace quorvel::freedesktop::eds {

namespace {

// Of the library's wait for a calendar on the network: the events that it has are enough.
constexpr auto withoutWaiting = static_cast<guint32>(-1);

using Self = std::shared_ptr<CalendarConnection>;

bool wasCancelled(const ErrorHandle& error) {
    return error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
}

// A call of the library owns the connection until its callback.
gpointer heldUntilCalled(Self self) {
    return new Self(std::move(self));
}

Self released(gpointer data) {
    const std::unique_ptr<Self> held(static_cast<Self*>(data));
    return std::move(*held);
}

} // namespace

std::vector<CalendarEvents> EventsReply::wait(Deadline deadline) {
    std::unique_lock lock(m_mutex);
    m_complete.wait_until(lock, deadline, [this] { return m_answers.size() >= m_expected; });
    m_isGivenUp = true;
    return std::move(m_answers);
}

bool EventsReply::deliver(CalendarEvents events) {
    const std::lock_guard lock(m_mutex);
    if (m_isGivenUp) {
        return false;
    }
    m_answers.push_back(std::move(events));
    if (m_answers.size() >= m_expected) {
        m_complete.notify_one();
    }
    return true;
}

bool EventsReply::isGivenUp() const {
    const std::lock_guard lock(m_mutex);
    return m_isGivenUp;
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

void CalendarConnection::ask(SearchedRange range, std::shared_ptr<EventsReply> reply) {
    m_next = Question{range, std::move(reply)};
    advance();
}

void CalendarConnection::setFollowing(bool follows) {
    m_isFollowing = follows;
    if (!follows) {
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

// From one step to the next: connected, told of changes, asked.
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
    } else if (m_isFollowing && !m_view && !std::exchange(m_hasTriedView, true)) {
        startView();
    } else if (m_view && m_known && m_known->range.from <= m_current->range.from &&
               m_known->range.to >= m_current->range.to) {
        answer(Outcome::answered, m_known->text, {});
    } else {
        fetch();
    }
}

void CalendarConnection::connect() {
    m_isBusy = true;
    const GAsyncReadyCallback call = [](GObject*, GAsyncResult* result, gpointer data) {
        const Self self = released(data);
        GError* error = nullptr;
        EClient* const client = e_cal_client_connect_finish(result, &error);
        self->m_isBusy = false;
        self->connected(
            ObjectHandle<ECalClient>(client != nullptr ? E_CAL_CLIENT(client) : nullptr),
            ErrorHandle(error));
    };
    e_cal_client_connect(m_source.get(), E_CAL_CLIENT_SOURCE_TYPE_EVENTS, withoutWaiting,
                         m_cancellable.get(), call, heldUntilCalled(shared_from_this()));
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

// All events, without being told those that are there already.
void CalendarConnection::startView() {
    m_isBusy = true;
    const GAsyncReadyCallback call = [](GObject* client, GAsyncResult* result, gpointer data) {
        const Self self = released(data);
        ECalClientView* view = nullptr;
        GError* error = nullptr;
        e_cal_client_get_view_finish(E_CAL_CLIENT(client), result, &view, &error);
        const ErrorHandle held(error);
        self->m_isBusy = false;
        self->viewMade(ObjectHandle<ECalClientView>(view));
    };
    e_cal_client_get_view(m_client.get(), "#t", m_cancellable.get(), call,
                          heldUntilCalled(shared_from_this()));
}

// The view's own calls wait for the server. It tells on the program's main thread.
void CalendarConnection::viewMade(ObjectHandle<ECalClientView> view) {
    if (!view || !m_client || !m_isFollowing || m_isClosed) {
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
    doBeside(
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
    m_known.reset();
    m_hasTriedView = false;
}

void CalendarConnection::changedOnServer() {
    ++m_changes;
    m_known.reset();
    m_events.changed();
}

// On a thread of its own, which a server that stands still may hold for minutes; then on the
// worker's.
void CalendarConnection::doBeside(std::function<void()> work, std::function<void()> done) {
    m_isBusy = true;
    const auto run = [self = shared_from_this(), work = std::move(work), done = std::move(done)] {
        work();
        self->m_mailbox.post([self, done] {
            self->m_isBusy = false;
            done();
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
    doBeside(
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
        auto text = std::make_shared<const std::string>(std::move(events.text));
        if (m_view && !isStale) {
            m_known = Known{m_current->range, text};
        }
        answer(Outcome::answered, std::move(text), {});
    } else if (!wasCancelled(events.error) && !std::exchange(m_current->isSecondTry, true)) {
        disconnect(); // the server may have been started anew since
        advance();
    } else {
        failed(messageOf(events.error));
    }
}

void CalendarConnection::failed(const std::string& problem) {
    disconnect();
    answer(Outcome::failed, {}, "it cannot be read: " + problem);
}

void CalendarConnection::answer(Outcome outcome, std::shared_ptr<const std::string> text,
                                std::string problem) {
    const Question question = std::move(*m_current);
    m_current.reset();
    const bool isInTime =
        question.reply->deliver({m_identifier, outcome, std::move(text), std::move(problem)});
    if (m_next && m_next->reply->isGivenUp()) {
        m_next.reset();
    }
    if (!isInTime && !m_next && outcome == Outcome::answered) {
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
