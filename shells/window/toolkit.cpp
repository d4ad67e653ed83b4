#include "shells/window/toolkit.h"

#include <gtk/gtk.h>

#include "freedesktop/language/messages.h"

namespace quorvel::window {

namespace {

constexpr const char* glSettings = "GDK_GL";

// GDK loads the drivers of OpenGL when it opens a display, which takes longer than the rest of the
// start, and the agenda paints nothing with them. Programs that are started from here must not
// inherit the variable.
void disableGl() {
    const bool isUnset = g_getenv(glSettings) == nullptr;
    g_setenv(glSettings, "disable", FALSE);
    gtk_parse_args(nullptr, nullptr); // reads the environment, and only once
    if (isUnset) {
        g_unsetenv(glSettings);
    }
}

} // namespace

void prepareToolkit() {
    g_set_prgname(applicationId); // a desktop finds the entry and its icon by this name
    gtk_disable_setlocale();      // the process reads and writes numbers the same in every locale
    disableGl();
}

Result<void> startToolkit() {
    gdk_set_program_class(applicationId);
    if (gtk_init_check(nullptr, nullptr) == 0) {
        return Error{freedesktop::translated("there is no display"), {}, {}};
    }
    return {};
}

} // namespace quorvel::window
