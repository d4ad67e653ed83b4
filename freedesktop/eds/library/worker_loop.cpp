#include "freedesktop/eds/library/worker_loop.h"

#include <algorithm>
#include <utility>

namespace quorvel::freedesktop::eds {

namespace {

using Call = std::function<void()>;

gboolean run(gpointer data) {
    (*static_cast<Call*>(data))();
    return G_SOURCE_REMOVE;
}

// Takes over the source.
void attach(GSource* source, GMainContext* context, Call call) {
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(source, run, new Call(std::move(call)),
                          [](gpointer data) { delete static_cast<Call*>(data); });
    g_source_attach(source, context);
    g_source_unref(source);
}

} // namespace

void Mailbox::post(Call call) const {
    attach(g_idle_source_new(), m_context.get(), std::move(call));
}

void Mailbox::postLater(double seconds, Call call) const {
    const double milliseconds = std::clamp(seconds, 0.0, 1e6) * 1000;
    attach(g_timeout_source_new(static_cast<guint>(milliseconds)), m_context.get(),
           std::move(call));
}

WorkerLoop::WorkerLoop()
    : m_loop(g_main_loop_new(m_mailbox.context(), FALSE), g_main_loop_unref)
    , m_thread([this] {
        g_main_context_push_thread_default(m_mailbox.context());
        g_main_loop_run(m_loop.get());
        g_main_context_pop_thread_default(m_mailbox.context());
    }) {}

WorkerLoop::~WorkerLoop() {
    m_thread.join();
}

// Posted, since a loop that does not run yet would not hear of it.
void WorkerLoop::quit() {
    m_mailbox.post([loop = m_loop.get()] { g_main_loop_quit(loop); });
}

} // namespace quorvel::freedesktop::eds
