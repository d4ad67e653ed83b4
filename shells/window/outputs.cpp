#include "shells/window/outputs.h"

#include "freedesktop/glib/handles.h"
#include "freedesktop/language/messages.h"

namespace quorvel::window {

using freedesktop::translated;

namespace {

// The toolkit knows a monitor's model; only this older function knows its output.
std::string nameOfOutput(int monitor) {
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    const freedesktop::TextHandle name(
        gdk_screen_get_monitor_plug_name(gdk_screen_get_default(), monitor));
    G_GNUC_END_IGNORE_DEPRECATIONS
    return name ? name.get() : "";
}

} // namespace

Result<GdkMonitor*> outputNamed(const std::string& name) {
    if (name.empty()) {
        return static_cast<GdkMonitor*>(nullptr);
    }
    GdkDisplay* display = gdk_display_get_default();
    std::string others;
    for (int i = 0; i < gdk_display_get_n_monitors(display); ++i) {
        const std::string output = nameOfOutput(i);
        if (output == name) {
            return gdk_display_get_monitor(display, i);
        }
        others += (others.empty() ? "" : ", ") + output;
    }
    return Error{filled(translated("there is no output '{1}'"), {name}),
                 {},
                 others.empty() ? translated("connect one")
                                : filled(translated("choose one of {1}"), {others})};
}

} // namespace quorvel::window
