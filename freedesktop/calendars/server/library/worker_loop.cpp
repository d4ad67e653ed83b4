#include "freedesktop/calendars/server/library/worker_loop.h"

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

namespace quorvel::freedesktop::eds {

namespace {

using Call = std::function<void()>;

struct SourceUnref {
    void operator()(GSource* source) const { g_source_unref(source); }
};
using SourceHandle = std::unique_ptr<GSource, SourceUnref>;

// `data` is passed to `run`, and to `release` afterwards.
void attach(GSource* source, GMainContext* context, GSourceFunc run, gpointer data,
            GDestroyNotify release) {
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(source, run, data, release);
    g_source_attach(source, context);
}

SourceHandle attachTimeout(GMainContext* context, guint milliseconds, Call call) {
    const GSourceFunc run = [](gpointer data) -> gboolean {
        (*static_cast<Call*>(data))();
        return G_SOURCE_REMOVE;
    };
    const GDestroyNotify release = [](gpointer data) { delete static_cast<Call*>(data); };
    SourceHandle timeout(g_timeout_source_new(milliseconds));
    attach(timeout.get(), context, run, new Call(std::move(call)), release);
    return timeout;
}

bool isDestroyed(const SourceHandle& source) {
    return g_source_is_destroyed(source.get()) != FALSE;
}

} // namespace

struct Mailbox::Queue {
    std::unique_ptr<GMainContext, decltype(&g_main_context_unref)> context{g_main_context_new(),
                                                                           g_main_context_unref};
    std::mutex mutex;
    std::deque<Call> calls; // guarded by the mutex
    // Those that have not run yet, and some that have; of the loop's thread alone.
    std::vector<SourceHandle> timeouts;

    void addTimeout(guint milliseconds, Call call) {
        std::erase_if(timeouts, isDestroyed);
        timeouts.push_back(attachTimeout(context.get(), milliseconds, std::move(call)));
    }
    // The library may hold the context longer than its thread runs, and would destroy what these
    // calls own on a thread of its own.
    void destroyTimeouts() {
        for (const SourceHandle& timeout : std::exchange(timeouts, {})) {
            g_source_destroy(timeout.get());
        }
    }

    static gboolean runFirst(gpointer data) {
        auto& queue = *static_cast<Queue*>(data);
        Call call;
        {
            const std::lock_guard lock(queue.mutex);
            call = std::move(queue.calls.front());
            queue.calls.pop_front();
        }
        call();
        return G_SOURCE_REMOVE;
    }
};

Mailbox::Mailbox()
    : m_queue(std::make_shared<Queue>()) {}

GMainContext* Mailbox::context() const {
    return m_queue->context.get();
}

// One source for each call: the sources run in the order of the calls, as all have one priority.
void Mailbox::post(Call call) const {
    {
        const std::lock_guard lock(m_queue->mutex);
        m_queue->calls.push_back(std::move(call));
    }
    const SourceHandle source(g_idle_source_new());
    attach(source.get(), context(), Queue::runFirst, m_queue.get(), nullptr);
}

void Mailbox::postLater(double seconds, Call call) const {
    const auto milliseconds = static_cast<guint>(std::clamp(seconds, 0.0, 1e6) * 1000);
    post([queue = m_queue.get(), milliseconds, call = std::move(call)] {
        queue->addTimeout(milliseconds, call);
    });
}

void Mailbox::destroyTimeouts() const {
    m_queue->destroyTimeouts();
}

WorkerLoop::WorkerLoop()
    : m_loop(g_main_loop_new(m_mailbox.context(), FALSE), g_main_loop_unref)
    , m_thread([this] {
        g_main_context_push_thread_default(m_mailbox.context());
        g_main_loop_run(m_loop.get());
        m_mailbox.destroyTimeouts();
        g_main_context_pop_thread_default(m_mailbox.context());
    }) {}

WorkerLoop::~WorkerLoop() {
    m_thread.join();
}

// Posted, since quitting has no effect on a loop that does not run yet.
void WorkerLoop::quit() {
    m_mailbox.post([loop = m_loop.get()] { g_main_loop_quit(loop); });
}

} // namespace quorvel::freedesktop::eds
