#include "shells/embedding/main_context.h"

#include <memory>

#include <glib.h>

namespace quorvel::embedding {

namespace {

struct ContextUnref {
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
};
using ContextHandle = std::unique_ptr<GMainContext, ContextUnref>;

ContextHandle threadContext() {
    return ContextHandle(g_main_context_ref_thread_default());
}

// The bits of GLib's conditions are those of poll() by its definition.
pollfd descriptorOf(const GPollFD& source) {
    return {source.fd, static_cast<short>(source.events), 0};
}

std::vector<GPollFD> queryDescriptors(GMainContext* context, int priority, int& milliseconds) {
    std::vector<GPollFD> descriptors;
    for (;;) {
        const auto room = static_cast<gint>(descriptors.size());
        const gint count =
            g_main_context_query(context, priority, &milliseconds, descriptors.data(), room);
        descriptors.resize(static_cast<std::size_t>(count));
        if (count <= room) {
            return descriptors;
        }
    }
}

} // namespace

Wakeup nextWakeup() {
    const ContextHandle context = threadContext();
    Wakeup wakeup;
    if (g_main_context_acquire(context.get()) == FALSE) {
        return wakeup; // another thread runs it
    }
    int priority = 0;
    const bool isDue = g_main_context_prepare(context.get(), &priority) != FALSE;
    for (const GPollFD& source : queryDescriptors(context.get(), G_MAXINT, wakeup.milliseconds)) {
        wakeup.descriptors.push_back(descriptorOf(source));
    }
    if (isDue) {
        wakeup.milliseconds = 0;
    }
    g_main_context_release(context.get());
    return wakeup;
}

void dispatchDue() {
    const ContextHandle context = threadContext();
    constexpr int most = 64; // a source that is always ready must not stop the program
    for (int i = 0; i < most && g_main_context_iteration(context.get(), FALSE) != FALSE; ++i) {
    }
}

} // namespace quorvel::embedding
