#include "freedesktop/glib/call_after.h"

#include <algorithm>
#include <utility>

namespace quorvel::freedesktop {

namespace {

using Call = std::function<void()>;

guint milliseconds(double seconds) {
    constexpr double longest = 3600;
    constexpr double inASecond = 1000;
    const bool isTime = seconds > 0; // not a number is none
    return isTime ? static_cast<guint>(std::min(seconds, longest) * inASecond) : 0;
}

} // namespace

SourceHandle callAfter(double seconds, Call call) {
    SourceHandle source(g_timeout_source_new(milliseconds(seconds)));
    g_source_set_callback(
        source.get(),
        [](gpointer data) -> gboolean {
            (*static_cast<Call*>(data))();
            return G_SOURCE_REMOVE;
        },
        new Call(std::move(call)), [](gpointer data) { delete static_cast<Call*>(data); });
    g_source_attach(source.get(), nullptr);
    return source;
}

} // namespace quorvel::freedesktop
